#pragma once

#include <string>
#include <string_view>

namespace Tavrin {

/// What messages call a property: the end of its identifier, which no other one has.
inline std::string propertyName(std::string_view identifier) {
  return std::string(identifier.substr(identifier.rfind('/') + 1));
}

}  // namespace Tavrin
