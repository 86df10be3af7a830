#pragma once

#include <cstdint>

namespace Tavrin {

/// Of booleans, also where more bits are said to be unused than there are.
inline constexpr const char* kInvalidBooleanLength = "Invalid length for encoded boolean data";

/// Checks a length that is stated for the data of a built-in algorithm.
/// @param algorithm its number; any other passes
/// @throws EncodingAlgorithmException for a length that the values cannot have
void checkEncodedLength(int algorithm, std::uint64_t length);

/// How many bits of the first octet of booleans hold the number of unused bits.
inline constexpr unsigned kUnusedBits = 4;

/// How many booleans there are, in 32 bits, however many octets are said to hold them.
/// @param first  their first octet; at most as many bits are unused as there are
/// @param length how many octets are stated, at least one
inline std::uint32_t countBooleans(unsigned first, std::uint64_t length) {
  return static_cast<std::uint32_t>(8 * length - kUnusedBits - (first >> (8 - kUnusedBits)));
}

/// So many octets hold no more booleans than 32 bits can count.
inline constexpr std::uint64_t kMostOctetsOfBooleans = 536870912;
inline constexpr const char* kTooManyBooleans = "Booleans longer than 536870912 octets";

/// How many octets hold so many booleans: at least the first.
inline std::uint64_t octetsOfBooleans(std::uint64_t count) { return (count + kUnusedBits + 7) / 8; }

}  // namespace Tavrin
