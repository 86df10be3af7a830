#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace Tavrin {

/// Copies octets that are few, most often. A call of the C library would take longer than the copy
/// of a short piece. Measured: XML10 writes attributes in a seventh less time.
/// @return the end of the copy
inline char* copyOctets(char* to, std::string_view octets) {
  const std::size_t size = octets.size();
  const char* const from = octets.data();
  // Words, of which the last may overlap the one before it.
  const auto copyWord = [to, from](auto word, std::size_t at) {
    std::memcpy(&word, from + at, sizeof word);
    std::memcpy(to + at, &word, sizeof word);
  };
  constexpr std::size_t kLong = sizeof(std::uint64_t);
  constexpr std::size_t kShort = sizeof(std::uint32_t);
  if (size > 2 * kLong) {
    std::memcpy(to, from, size);
  } else if (size >= kLong) {
    copyWord(std::uint64_t{}, 0);
    copyWord(std::uint64_t{}, size - kLong);
  } else if (size >= kShort) {
    copyWord(std::uint32_t{}, 0);
    copyWord(std::uint32_t{}, size - kShort);
  } else {
    for (std::size_t i = 0; i < size; ++i) to[i] = from[i];
  }
  return to + size;
}

}  // namespace Tavrin
