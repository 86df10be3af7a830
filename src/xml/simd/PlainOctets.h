#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace Tavrin::xml {

/// Whether an octet is from 0x20 to 0x7F. A char may have a sign or none.
inline bool isPlain(char c) {
  const auto octet = static_cast<unsigned char>(c);
  return octet >= 0x20 && octet < 0x80;
}

/// A word with the high bit of each octet that is not from 0x20 to 0x7F. It is exact up to the
/// first such octet.
inline std::uint64_t notPlain(const char* octets) {
  constexpr std::uint64_t kEach = 0x0101010101010101;
  std::uint64_t word = 0;
  std::memcpy(&word, octets, sizeof word);
  // Where no high bit is set, the subtraction borrows from it exactly below 0x20.
  return (word | (word - kEach * 0x20)) & kEach * 0x80;
}

/// How many octets at the beginning are from 0x20 to 0x7F: characters of ASCII that need no further
/// check.
inline std::size_t plainOctets(std::string_view text) {
  static_assert(std::endian::native == std::endian::little);
  constexpr std::size_t kWord = sizeof(std::uint64_t);
  const char* octets = text.data();
  const std::size_t size = text.size();
  std::size_t i = 0;
  for (; size - i >= kWord; i += kWord) {
    const std::uint64_t found = notPlain(octets + i);
    if (found != 0) return i + static_cast<std::size_t>(std::countr_zero(found)) / 8;
  }
  while (i < size && isPlain(octets[i])) ++i;
  return i;
}

}  // namespace Tavrin::xml
