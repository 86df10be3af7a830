#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <tuple>

#include "Integers.h"
#include "Octets.h"

namespace Tavrin::fastinfoset {

/// What precedes the octets that an encoding algorithm made: the number of the algorithm and the
/// length of the octets.
struct EncodedAlgorithmField {
  std::array<char, 1 + std::tuple_size_v<decltype(EncodedInteger::octets)>> octets;
  std::size_t length;
};

/// Encodes the number of an algorithm and a length (C.19, C.20 and C.29).
/// @param chunk  whether it begins a character chunk, otherwise a non-identifying string
/// @param field  the number, from 0 to kLastAlgorithmField
/// @param length at least 1: nothing is written of an empty value
constexpr EncodedAlgorithmField encodeAlgorithmField(bool chunk, unsigned field,
                                                     std::uint64_t length) {
  const unsigned lowBits = chunk ? kChunkFieldLowBits : kStringFieldLowBits;
  const unsigned begin = chunk ? kChunk | kChunkAlgorithm : kStringAlgorithm;
  const unsigned bits = field << (8 - lowBits) & 0xFF;
  const EncodedInteger integer = chunk ? encodeInteger(kCharactersLength, bits, length)
                                       : encodeInteger(kStringLength, bits, length);
  EncodedAlgorithmField result{{}, 1 + integer.length};
  result.octets[0] = static_cast<char>(begin | field >> lowBits);
  std::ranges::copy(integer.octets, result.octets.begin() + 1);
  return result;
}

}  // namespace Tavrin::fastinfoset
