#include "CharacterEncodings.h"

#include <strings.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "Iconv.h"

namespace Tavrin::text {

namespace {

// To iconv, options follow a slash. A name has none (XML 1.0, production 81).
bool isEncodingName(const char* name) { return *name != '\0' && std::strchr(name, '/') == nullptr; }

bool isKnownToExpat(const char* name) {
  constexpr std::array kKnown = {"UTF-8",    "UTF-16",     "UTF-16BE",
                                 "UTF-16LE", "ISO-8859-1", "US-ASCII"};
  return std::ranges::any_of(kKnown,
                             [name](const char* known) { return strcasecmp(name, known) == 0; });
}

/// A conversion to big-endian code points, or to another encoding.
class Conversion {
 public:
  explicit Conversion(const char* from, const char* to = "UTF-32BE") : iconv_(from, to) {}

  bool isKnown() const { return iconv_.isKnown(); }

  /// Converts octets; empty where not all of them can be converted.
  std::string convert(std::string_view octets) {
    std::string in(octets);
    std::string out(4 * octets.size(), '\0');
    char* from = in.data();
    char* to = out.data();
    std::size_t inLeft = in.size();
    std::size_t outLeft = out.size();
    if (iconv_.convert(from, inLeft, to, outLeft) != 0) return {};
    out.resize(out.size() - outLeft);
    return out;
  }

  /// The character that an octet encodes; -1 for none; -2 where it is not exactly one.
  int characterOf(unsigned char octet) {
    iconv_.reset();
    char in = static_cast<char>(octet);
    unsigned char out[16];
    char* from = &in;
    char* to = reinterpret_cast<char*>(out);
    std::size_t inLeft = 1;
    std::size_t outLeft = sizeof out;
    const int error = iconv_.convert(from, inLeft, to, outLeft);
    if (error != 0) return error == EILSEQ ? -1 : -2;
    // Some converters keep a character that a combining one may follow.
    iconv_.finish(to, outLeft);
    // An octet may also switch to another set of characters, or encode several.
    if (sizeof out - outLeft != 4) return -2;
    return out[0] << 24 | out[1] << 16 | out[2] << 8 | out[3];
  }

 private:
  Iconv iconv_;
};

/// Whether a conversion is one of UTF-8. iconv does not report which names belong to one encoding,
/// so a character of each length is converted.
bool isUTF8(Conversion& conversion) {
  using namespace std::string_view_literals;
  return conversion.convert("A\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80") ==
         "\0\0\0A\0\0\0\xE4\0\0\x20\xAC\0\1\xF6\0"sv;
}

/// Whether expat takes a table: the octets of ASCII have to be its characters, but for some that no
/// markup has, and no character may be above U+FFFF.
bool isTakenByExpat(const XML_Encoding& encoding) {
  constexpr std::string_view kOthers = "$@\\^`{}~";
  for (int octet = 0; octet < 256; ++octet) {
    const int character = encoding.map[octet];
    if (character > 0xFFFF) return false;
    if (character >= 0 && character < 0x80 && character != octet) return false;
    const bool isFree = octet > 0x7E ||
                        kOthers.find(static_cast<char>(octet)) != std::string_view::npos ||
                        (octet < 0x20 && octet != '\t' && octet != '\n' && octet != '\r');
    if (!isFree && character != octet) return false;
  }
  return true;
}

std::string_view trimmedLeft(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
}

/// The encoding that a declaration names, or an empty one. expat checks the declaration itself.
std::string_view encodingOf(std::string_view declaration) {
  constexpr std::string_view kName = "encoding";
  const std::size_t name = declaration.find(kName);
  if (name == std::string_view::npos) return {};
  const std::string_view rest = trimmedLeft(declaration.substr(name + kName.size()));
  if (!rest.starts_with('=')) return {};
  const std::string_view value = trimmedLeft(rest.substr(1));
  if (value.empty() || (value[0] != '\'' && value[0] != '"')) return {};
  const std::size_t end = value.find(value[0], 1);
  return end == std::string_view::npos ? std::string_view() : value.substr(1, end - 1);
}

}  // namespace

namespace {

/// Fills expat's table.
bool describe(Conversion& conversion, XML_Encoding& encoding) {
  for (int octet = 0; octet < 256; ++octet) {
    const int character = conversion.characterOf(static_cast<unsigned char>(octet));
    if (character == -2) return false;
    encoding.map[octet] = character;
  }
  encoding.data = nullptr;
  encoding.convert = nullptr;
  encoding.release = nullptr;
  return isTakenByExpat(encoding);
}

/// How to read an entity whose declaration names an encoding.
/// @param declaration the octets of the declaration
/// @param text        the same in UTF-8
EntityEncoding encodingFor(std::string_view declaration, std::string_view text) {
  const std::string name(encodingOf(text));
  if (!isEncodingName(name.c_str()) || isKnownToExpat(name.c_str())) return {};
  Conversion conversion(name.c_str());
  if (!conversion.isKnown()) return {};
  if (isUTF8(conversion)) return {EntityEncoding::Way::UTF8, name};
  // The declaration has to be what it says it is.
  if (toUTF8(name.c_str(), declaration) != text) return {};
  XML_Encoding table;
  if (describe(conversion, table)) return {};
  return {EntityEncoding::Way::Recoded, name};
}

/// Whether octets begin with others, or may do so once there are more.
bool mayBegin(std::string_view octets, std::string_view sought) {
  const std::size_t size = std::min(octets.size(), sought.size());
  return octets.substr(0, size) == sought.substr(0, size);
}

struct FirstOctets {
  std::string_view octets;
  const char* encoding;
};

using namespace std::string_view_literals;

constexpr const char* kEBCDIC = "IBM037";

/// What cannot be read before it is known (XML 1.0, appendix F): a byte order mark or "<" of
/// UTF-32;
/// "<?xm" in the characters that all forms of EBCDIC share; what text of ISO-2022-KR begins with
/// (RFC 1557).
constexpr FirstOctets kFirstOctets[] = {
    {"\0\0\xFE\xFF"sv, "UTF-32BE"}, {"\xFF\xFE\0\0"sv, "UTF-32LE"},  {"\0\0\0<"sv, "UTF-32BE"},
    {"<\0\0\0"sv, "UTF-32LE"},      {"\x4C\x6F\xA7\x94"sv, kEBCDIC}, {"\x1B$)C"sv, "ISO-2022-KR"},
};

std::optional<EntityEncoding> encodingOfEBCDIC(std::string_view start) {
  const std::size_t end = start.find("\x6F\x6E");  // "?>"
  if (end == std::string_view::npos) {
    if (start.size() < kLongestDeclaration) return {};
    return EntityEncoding{};
  }
  const std::string_view declaration = start.substr(0, end);
  return encodingFor(declaration, toUTF8(kEBCDIC, declaration));
}

}  // namespace

bool describeEncoding(const char* name, XML_Encoding& encoding) {
  if (!isEncodingName(name)) return false;
  Conversion conversion(name);
  return conversion.isKnown() && describe(conversion, encoding);
}

bool isKnownEncoding(const char* name) {
  return isEncodingName(name) && Conversion(name).isKnown();
}

bool isFourOctets(std::string_view name) {
  std::string letters;
  for (const char c : name) {
    if (c != '-' && c != '_') letters += static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c);
  }
  return letters.find("UTF32") != std::string::npos || letters.find("UCS4") != std::string::npos;
}

std::string toUTF8(const char* encoding, std::string_view octets) {
  Conversion conversion(encoding, "UTF-8");
  return conversion.isKnown() ? conversion.convert(octets) : std::string();
}

std::optional<EntityEncoding> encodingOfEntity(std::string_view start) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  constexpr std::string_view kDeclaration = "<?xml";
  if (start.empty()) return {};
  for (const FirstOctets& first : kFirstOctets) {
    if (!mayBegin(start, first.octets)) continue;
    if (start.size() < first.octets.size()) return {};
    if (first.encoding == kEBCDIC) return encodingOfEBCDIC(start);
    return EntityEncoding{EntityEncoding::Way::Recoded, first.encoding};
  }
  if (start.size() < kByteOrderMark.size() && kByteOrderMark.starts_with(start)) return {};
  const bool hasMark = start.starts_with(kByteOrderMark);
  const std::string_view text = start.substr(hasMark ? kByteOrderMark.size() : 0);
  if (text.size() < kDeclaration.size() && kDeclaration.starts_with(text)) return {};
  if (!text.starts_with(kDeclaration)) return EntityEncoding{};
  const std::size_t end = text.find("?>");
  if (end == std::string_view::npos) {
    if (start.size() < kLongestDeclaration) return {};
    return EntityEncoding{};
  }
  const std::string_view declaration = text.substr(0, end);
  EntityEncoding encoding = encodingFor(declaration, declaration);
  // The mark is that of UTF-8 alone.
  if (hasMark && encoding.way == EntityEncoding::Way::Recoded) return EntityEncoding{};
  return encoding;
}

}  // namespace Tavrin::text
