#pragma once

#include <cstdint>

namespace Tavrin {

/// The message for booleans, also where more bits are stated as unused than there are.
inline constexpr const char* kInvalidBooleanLength = "Invalid length for encoded boolean data";

/// Checks a length that is stated for the data of a built-in algorithm.
/// @param algorithm its number; for any other number, nothing is checked
/// @throws EncodingAlgorithmException for a length that the values cannot have
void checkEncodedLength(int algorithm, std::uint64_t length);

/// How many bits of the first octet of booleans hold the number of unused bits.
inline constexpr unsigned kUnusedBits = 4;

/// The number of encoded booleans, modulo 2^32.
/// @param first  their first octet; it states no more unused bits than there are
/// @param length the stated number of octets, at least one
inline std::uint32_t countBooleans(unsigned first, std::uint64_t length) {
  return static_cast<std::uint32_t>(8 * length - kUnusedBits - (first >> (8 - kUnusedBits)));
}

/// The most octets whose number of booleans fits 32 bits.
inline constexpr std::uint64_t kMostOctetsOfBooleans = 536870912;
inline constexpr const char* kTooManyBooleans = "Booleans longer than 536870912 octets";

/// The number of octets in which booleans are encoded, at least 1.
inline std::uint64_t octetsOfBooleans(std::uint64_t count) { return (count + kUnusedBits + 7) / 8; }

}  // namespace Tavrin
