#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace tool {

/// How many octets a character of UTF-8 has by its first one.
inline std::size_t lengthBy(char firstOctet) {
  const auto first = static_cast<unsigned char>(firstOctet);
  return first < 0xC0 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
}

/// The first character of UTF-8 that is not empty.
inline std::string_view firstOf(std::string_view octets) {
  return octets.substr(0, lengthBy(octets[0]));
}

/// What is left of UTF-8 without the part of a character at its end.
inline std::string_view wholeOf(std::string_view octets) {
  constexpr std::size_t kLongestPart = 3;
  for (std::size_t part = 1; part <= std::min(kLongestPart, octets.size()); ++part) {
    const char first = octets[octets.size() - part];
    if ((static_cast<unsigned char>(first) & 0xC0) == 0x80) continue;
    return octets.substr(0, octets.size() - (lengthBy(first) > part ? part : 0));
  }
  return octets;
}

/// The code point of a character of UTF-8.
inline unsigned codePointOf(std::string_view character) {
  constexpr unsigned kFirstBits[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
  unsigned code = static_cast<unsigned char>(character[0]) & kFirstBits[character.size()];
  for (const char c : character.substr(1)) code = code << 6 | (static_cast<unsigned>(c) & 0x3F);
  return code;
}

}  // namespace tool
