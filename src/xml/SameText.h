#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace Tavrin::xml {

/// Whether two texts are the same. Names are so short that a call of the C library takes longer
/// than the comparison. Measured: writing Fast Infoset with many attributes takes a twelfth less
/// time.
inline bool sameText(std::string_view a, std::string_view b) {
  const std::size_t size = a.size();
  if (size != b.size()) return false;
  const char* one = a.data();
  const char* other = b.data();
  const auto differ = [&](auto word, std::size_t at) {
    auto otherWord = word;
    std::memcpy(&word, one + at, sizeof word);
    std::memcpy(&otherWord, other + at, sizeof word);
    return word != otherWord;
  };
  // The last word may overlap the one before it.
  constexpr std::size_t kLong = sizeof(std::uint64_t);
  constexpr std::size_t kShort = sizeof(std::uint32_t);
  if (size >= kLong) {
    for (std::size_t i = 0; i < size - kLong; i += kLong) {
      if (differ(std::uint64_t{}, i)) return false;
    }
    return !differ(std::uint64_t{}, size - kLong);
  }
  if (size >= kShort) return !differ(std::uint32_t{}, 0) && !differ(std::uint32_t{}, size - kShort);
  for (std::size_t i = 0; i < size; ++i) {
    if (one[i] != other[i]) return false;
  }
  return true;
}

}  // namespace Tavrin::xml
