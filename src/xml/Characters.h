#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// What XML 1.0 (fifth edition) and Namespaces in XML allow strings to hold. Strings are UTF-8; one
/// that is not is never allowed.
namespace Tavrin::xml {

inline constexpr std::size_t kAllValid = std::string_view::npos;

/// The position of the first octet that is not part of a character of XML 1.0 (production 2), or
/// kAllValid.
std::size_t findInvalid(std::string_view text);

/// The character that octets begin with.
struct FirstCharacter {
  char32_t character = 0;
  std::size_t octets = 0;  ///< 0 where they begin with no character of XML 1.0.
  bool isCut = false;      ///< Whether there are fewer than its first octet announces.
};
/// @param text not empty
FirstCharacter firstCharacter(std::string_view text);

/// What a message calls what stands at a position that findInvalid returns: "character U+0001" or
/// "UTF-8 octet 0xFF".
std::string describeInvalid(std::string_view text, std::size_t position);

/// Appends a code point in UTF-8 (RFC 3629), whether XML allows it or not.
inline void appendUTF8(char32_t character, std::string& text) {
  const auto append = [&text](char32_t octet) { text += static_cast<char>(octet); };
  if (character < 0x80) {
    append(character);
  } else if (character < 0x800) {
    append(0xC0 | character >> 6);
    append(0x80 | (character & 0x3F));
  } else if (character < 0x10000) {
    append(0xE0 | character >> 12);
    append(0x80 | (character >> 6 & 0x3F));
    append(0x80 | (character & 0x3F));
  } else {
    append(0xF0 | character >> 18);
    append(0x80 | (character >> 12 & 0x3F));
    append(0x80 | (character >> 6 & 0x3F));
    append(0x80 | (character & 0x3F));
  }
}

/// Production 5.
bool isName(std::string_view text);
/// A name without a colon (Namespaces in XML, production 4).
bool isNCName(std::string_view text);
/// A name with at most one colon, which is inside (Namespaces in XML, production 7).
bool isQName(std::string_view text);
/// Production 7.
bool isNmtoken(std::string_view text);
/// Whether all characters may stand in a public identifier (production 13).
bool isPublicId(std::string_view text);
/// Whether a system identifier can be written as a literal (production 11): it does not hold both
/// kinds of quotes, and its characters are allowed.
bool isSystemId(std::string_view text);
/// Whether a text is the number of a version of XML that is read as XML 1.0 (production 26).
bool isVersion(std::string_view text);
/// The warning that a reader gives about a document of such a version; empty for 1.0.
std::string describeOtherVersion(std::string_view version);
/// Whether a processing instruction may have this target: a name without a colon other than "xml"
/// in any case (production 17).
bool isTarget(std::string_view text);

}  // namespace Tavrin::xml
