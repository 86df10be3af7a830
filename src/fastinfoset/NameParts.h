#pragma once

#include <string>

namespace Tavrin::fastinfoset {

/// A name as the surrogate tables hold it (X.891, 8.5); a part that is absent is empty.
struct NameParts {
  std::string prefix;
  std::string namespaceName;
  std::string localName;

  bool operator==(const NameParts&) const = default;
};

}  // namespace Tavrin::fastinfoset
