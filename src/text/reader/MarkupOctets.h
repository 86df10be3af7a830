#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "CharacterEncodings.h"

// Markup in the octets of an entity, as expat shows them. It begins with a character of ASCII,
// which tells UTF-16 from the encodings in which such characters are single octets.

namespace Tavrin::text {

inline bool isBigEndian(std::string_view octets) { return octets.size() > 1 && octets[0] == '\0'; }
inline bool isLittleEndian(std::string_view octets) {
  return octets.size() > 1 && octets[1] == '\0';
}
inline bool isWide(std::string_view octets) {
  return isBigEndian(octets) || isLittleEndian(octets);
}

/// Whether an octet of UTF-8 is not the first one of its character.
inline bool isContinuation(char octet) {
  return (static_cast<unsigned char>(octet) & 0xC0) == 0x80;
}

/// The characters of ASCII among octets in any encoding.
class Characters {
 public:
  /// @param octets begin with a character of ASCII
  explicit Characters(std::string_view octets)
      : octets_(octets), width_(isWide(octets) ? 2 : 1), low_(isBigEndian(octets) ? 1 : 0) {}

  std::size_t width() const { return width_; }
  /// The character at an octet; 0 where there is another one, or none.
  char at(std::size_t i) const {
    if (i + width_ > octets_.size()) return '\0';
    return width_ == 1 || octets_[i + 1 - low_] == '\0' ? octets_[i + low_] : '\0';
  }

 private:
  std::string_view octets_;
  std::size_t width_;
  std::size_t low_;
};

/// Markup in UTF-8; empty where its octets are not valid.
/// @param from     the octets that the markup begins with tell whether this is UTF-16
/// @param encoding as it was declared, or empty
inline std::string decoded(std::string_view octets, std::string_view from,
                           const std::string& encoding) {
  if (isBigEndian(from)) return toUTF8("UTF-16BE", octets);
  if (isLittleEndian(from)) return toUTF8("UTF-16LE", octets);
  return encoding.empty() ? std::string(octets) : toUTF8(encoding.c_str(), octets);
}

}  // namespace Tavrin::text
