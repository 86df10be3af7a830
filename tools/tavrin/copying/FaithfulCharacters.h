#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "copying/Recoding.h"

namespace tool {

/// The characters that an encoding gives back as they were. iconv takes more: it writes the yen
/// sign for a backslash, and two characters for one that is composed.
///
/// Each is tried once, when it is asked for.
class FaithfulCharacters {
 public:
  explicit FaithfulCharacters(const std::string& encoding);

  /// Whether iconv knows the encoding. Else nothing may be asked.
  bool areKnown() const { return encoder_.isKnown() && decoder_.isKnown(); }

  /// @param character in UTF-8
  bool contain(std::string_view character);

  /// Whether characters that come back alone do so together. What some encodings switch with
  /// between sets of characters is written wrongly, and others order characters anew.
  bool comeBackTogether();

  /// How many octets stand before the first character that is not one of these.
  /// @param text whole characters in UTF-8
  std::size_t lengthOfRun(std::string_view text);

 private:
  bool comeBack(std::string_view text);
  bool comeBackWhole(std::string_view character);
  bool saysNothing(std::string_view octets);

  Recoding encoder_;
  Recoding decoder_;
  bool areAll_;
  std::array<bool, 0x80> ascii_{};
  // Two bits for each code point: whether it was tried, and whether it came back.
  std::vector<std::uint8_t> tried_;
};

}  // namespace tool
