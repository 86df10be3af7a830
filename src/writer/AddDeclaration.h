#pragma once

#include <string>
#include <vector>

namespace Tavrin {

/// Adds a namespace declaration to those of the next start tag, or leaves them as they are: half a
/// declaration would be read beyond its end.
/// @param declarations prefix, namespace name, prefix, ...
inline void addDeclaration(std::vector<std::string>& declarations, const std::string& prefix,
                           const std::string& uri) {
  declarations.push_back(prefix);
  try {
    declarations.push_back(uri);
  } catch (...) {
    declarations.pop_back();
    throw;
  }
}

}  // namespace Tavrin
