#pragma once

#include <string>
#include <utility>
#include <vector>

namespace Tavrin {

/// Adds a namespace declaration to those of the next start tag, or leaves them as they are: half a
/// declaration would be read beyond its end.
/// @param declarations prefix, namespace name, prefix, ...
/// @param uri          may be one of them, which a subclass reaches
inline void addDeclaration(std::vector<std::string>& declarations, const std::string& prefix,
                           const std::string& uri) {
  std::string name = uri;
  declarations.push_back(prefix);
  try {
    declarations.push_back(std::move(name));
  } catch (...) {
    declarations.pop_back();
    throw;
  }
}

}  // namespace Tavrin
