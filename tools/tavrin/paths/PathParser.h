#pragma once

#include <map>
#include <string>
#include <string_view>

#include "paths/Path.h"

namespace tool {

/// The namespace names that the prefixes of a path stand for.
class PathNamespaces {
 public:
  PathNamespaces();
  /// @param setting "PREFIX=URI"; without a prefix for the names of elements that have none
  /// @throws Failure for any other text, and for a prefix that is bound already
  void add(const std::string& setting);
  /// The namespace name of a prefix, or null.
  const std::string* find(std::string_view prefix) const;

 private:
  std::map<std::string, std::string, std::less<>> uris_;
};

/// Understands paths, separated by "|": a part of XPath 1.0.
/// @throws Failure with the column, and a caret in front of the place, for what is no such path
Paths parsePaths(std::string_view text, const PathNamespaces& namespaces);

}  // namespace tool
