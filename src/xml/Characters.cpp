#include "Characters.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "simd/OctetClasses.h"
#include "simd/PlainOctets.h"

namespace Tavrin::xml {

namespace {

constexpr char32_t kNone = 0xFFFFFFFF;

/// A character and the number of its octets; kNone and 1 where the octets are not UTF-8.
struct Decoded {
  char32_t character;
  std::size_t octets;
};

unsigned octetAt(std::string_view text, std::size_t position) {
  return static_cast<unsigned char>(text[position]);
}

/// Decodes a character (RFC 3629): no overlong forms, no surrogates, nothing above U+10FFFF.
Decoded decode(std::string_view text, std::size_t position) {
  const unsigned first = octetAt(text, position);
  if (first < 0x80) return {first, 1};
  const auto length = static_cast<std::size_t>(std::countl_one(static_cast<std::uint8_t>(first)));
  if (length < 2 || length > 4 || text.size() - position < length) return {kNone, 1};
  char32_t character = first & 0x7FU >> length;
  for (std::size_t i = 1; i < length; ++i) {
    const unsigned next = octetAt(text, position + i);
    if ((next & 0xC0) != 0x80) return {kNone, 1};
    character = character << 6 | (next & 0x3F);
  }
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};  // By length.
  const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
  if (character < kSmallest[length] || character > 0x10FFFF || isSurrogate) return {kNone, 1};
  return {character, length};
}

/// Production 2.
bool isCharacter(char32_t c) {
  if (c < 0x20) return c == '\t' || c == '\n' || c == '\r';
  return c != 0xFFFE && c != 0xFFFF && c != kNone;
}

struct Range {
  char32_t first;
  char32_t last;
};

/// Production 4, from U+0080 on.
constexpr Range kNameStarts[] = {
    {0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},
    {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},
    {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF},
};
/// What production 4a adds from U+0080 on.
constexpr Range kNameRest[] = {{0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};

template <std::size_t Count>
bool isIn(const Range (&ranges)[Count], char32_t c) {
  return std::ranges::any_of(ranges, [c](Range r) { return c >= r.first && c <= r.last; });
}

enum NameClass : std::uint8_t { kNotName = 0, kNameRestOnly, kNameStart };

constexpr std::array<NameClass, 0x80> kASCIINames = [] {
  std::array<NameClass, 0x80> classes{};
  for (unsigned c = 'a'; c <= 'z'; ++c) classes[c] = kNameStart;
  for (unsigned c = 'A'; c <= 'Z'; ++c) classes[c] = kNameStart;
  for (unsigned c = '0'; c <= '9'; ++c) classes[c] = kNameRestOnly;
  classes['_'] = classes[':'] = kNameStart;
  classes['-'] = classes['.'] = kNameRestOnly;
  return classes;
}();

NameClass nameClass(char32_t c) {
  if (c < 0x80) return kASCIINames[c];
  if (c == kNone) return kNotName;
  if (isIn(kNameStarts, c)) return kNameStart;
  return isIn(kNameRest, c) ? kNameRestOnly : kNotName;
}

/// How many octets at the beginning of a text are a name of ASCII without a colon. Nearly all names
/// and prefixes are that.
std::size_t plainNameOctets(std::string_view text) {
  static constexpr std::array<NameClass, 0x100> kClasses = [] {
    std::array<NameClass, 0x100> classes{};
    std::ranges::copy(kASCIINames, classes.begin());
    classes[':'] = kNotName;
    return classes;
  }();
  if (text.empty() || kClasses[octetAt(text, 0)] != kNameStart) return 0;
  std::size_t i = 1;
  while (i < text.size() && kClasses[octetAt(text, i)] != kNotName) ++i;
  return i;
}

bool areNameCharacters(std::string_view text, NameClass least) {
  for (std::size_t i = 0; i < text.size();) {
    // Nearly all are of ASCII.
    if (const unsigned first = octetAt(text, i); first < kASCIINames.size()) {
      if (kASCIINames[first] < least) return false;
      least = kNameRestOnly;
      ++i;
      continue;
    }
    const auto [character, octets] = decode(text, i);
    if (nameClass(character) < least) return false;
    least = kNameRestOnly;
    i += octets;
  }
  return !text.empty();
}

/// How many octets the first character has, if it is one of the common ones whose first octet
/// alone shows that they are valid. Otherwise 0.
std::size_t commonOctets(std::string_view text) {
  const auto isContinuation = [text](std::size_t i) { return (octetAt(text, i) & 0xC0) == 0x80; };
  const unsigned first = octetAt(text, 0);
  if (first == '\n' || first == '\t') return 1;
  if (first >= 0xC2 && first <= 0xDF) return text.size() >= 2 && isContinuation(1) ? 2 : 0;
  if (first >= 0xE1 && first <= 0xEC)
    return text.size() >= 3 && isContinuation(1) && isContinuation(2) ? 3 : 0;
  return 0;
}

}  // namespace

std::size_t findInvalid(std::string_view text) {
#ifdef TAVRIN_HAS_AVX2
  // Measured: text of Asian languages is read as Fast Infoset in a quarter of the time.
  if (text.size() >= kLeastTogether && hasAVX2() && areCharacters(text)) return kAllValid;
#endif
  for (std::size_t i = plainOctets(text);; i += plainOctets(text.substr(i))) {
    if (i == text.size()) return kAllValid;
    std::size_t octets = commonOctets(text.substr(i));
    if (octets == 0) {
      const Decoded decoded = decode(text, i);
      if (!isCharacter(decoded.character)) return i;
      octets = decoded.octets;
    }
    i += octets;
  }
}

FirstCharacter firstCharacter(std::string_view text) {
  const unsigned first = octetAt(text, 0);
  const auto announced =
      static_cast<std::size_t>(std::countl_one(static_cast<std::uint8_t>(first)));
  if (first >= 0xC0 && first <= 0xF4 && text.size() < announced) return {.isCut = true};
  const Decoded decoded = decode(text, 0);
  if (!isCharacter(decoded.character)) return {};
  return {decoded.character, decoded.octets};
}

std::string describeInvalid(std::string_view text, std::size_t position) {
  const char32_t character = decode(text, position).character;
  char description[32];
  if (character == kNone) {
    std::snprintf(description, sizeof description, "UTF-8 octet 0x%02X", octetAt(text, position));
  } else {
    std::snprintf(description, sizeof description, "character U+%04X",
                  static_cast<unsigned>(character));
  }
  return description;
}

bool isName(std::string_view text) { return areNameCharacters(text, kNameStart); }

bool isNCName(std::string_view text) {
  if (const std::size_t octets = plainNameOctets(text); octets == text.size()) return octets > 0;
  return text.find(':') == std::string_view::npos && isName(text);
}

bool isQName(std::string_view text) {
  const std::size_t octets = plainNameOctets(text);
  if (octets == text.size()) return octets > 0;
  if (octets > 0 && text[octets] == ':') return isNCName(text.substr(octets + 1));
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) return isName(text);
  return isNCName(text.substr(0, colon)) && isNCName(text.substr(colon + 1));
}

bool isNmtoken(std::string_view text) { return areNameCharacters(text, kNameRestOnly); }

bool isPublicId(std::string_view text) {
  return std::ranges::all_of(text, [](char c) {
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')) return true;
    return c != '\0' && std::strchr(" \r\n-'()+,./:=?;!*#@$_%", c) != nullptr;
  });
}

bool isSystemId(std::string_view text) {
  const bool hasBothQuotes =
      text.find('"') != std::string_view::npos && text.find('\'') != std::string_view::npos;
  return !hasBothQuotes && findInvalid(text) == kAllValid;
}

bool isVersion(std::string_view text) {
  return text.size() > 2 && text.starts_with("1.") &&
         text.find_first_not_of("0123456789", 2) == std::string_view::npos;
}

std::string describeOtherVersion(std::string_view version) {
  if (version == "1.0") return {};
  return "XML " + std::string(version) + " is read by the rules of XML 1.0";
}

bool isTarget(std::string_view text) {
  const bool isReserved = text.size() == 3 && (text[0] | 0x20) == 'x' && (text[1] | 0x20) == 'm' &&
                          (text[2] | 0x20) == 'l';
  return !isReserved && isNCName(text);
}

}  // namespace Tavrin::xml
