#pragma once

#include <Tavrin/Identifiers.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace Tavrin {

/// What messages call a property: the end of its identifier, which is unique.
inline std::string propertyName(std::string_view identifier) {
  return std::string(identifier.substr(identifier.rfind('/') + 1));
}

/// The message of a failure at a limit, with the property that changes the limit.
inline std::string atLimit(const std::string& message, std::string_view property) {
  return message + " (property " + propertyName(property) + ")";
}

/// The message about an element that has too many ancestors.
inline std::string tooDeep(std::uint64_t maximumDepth) {
  return atLimit("Elements nested deeper than " + std::to_string(maximumDepth),
                 properties::maximumDepth);
}

}  // namespace Tavrin
