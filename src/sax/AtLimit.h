#pragma once

#include <Tavrin/Identifiers.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace Tavrin {

/// The message of a failure at a limit: it names the property that would change the limit, by the
/// end of its identifier.
inline std::string atLimit(const std::string& message, std::string_view property) {
  return message + " (property " + std::string(property.substr(property.rfind('/') + 1)) + ")";
}

/// The message about an element for which there are too many around it.
inline std::string tooDeep(std::uint64_t maximumDepth) {
  return atLimit("Elements nested deeper than " + std::to_string(maximumDepth),
                 properties::maximumDepth);
}

}  // namespace Tavrin
