#pragma once

#include <cstdint>

namespace Tavrin {

/// Of booleans, also where more bits are said to be unused than there are.
inline constexpr const char* kInvalidBooleanLength = "Invalid length for encoded boolean data";

/// Checks a length that is stated for the data of a built-in algorithm.
/// @param algorithm its number; any other passes
/// @throws EncodingAlgorithmException for a length that the values cannot have
void checkEncodedLength(int algorithm, std::uint64_t length);

}  // namespace Tavrin
