#include "CharacterEncodings.h"

#include <iconv.h>
#include <strings.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <new>

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
  explicit Conversion(const char* from, const char* to = "UTF-32BE")
      : handle_(iconv_open(to, from)) {
    // The encoding may be known.
    if (!isKnown() && errno == ENOMEM) throw std::bad_alloc();
  }
  ~Conversion() {
    if (isKnown()) iconv_close(handle_);
  }
  Conversion(const Conversion&) = delete;
  Conversion& operator=(const Conversion&) = delete;

  // iconv_open fails with the pointer that is all ones.
  bool isKnown() const { return reinterpret_cast<std::ptrdiff_t>(handle_) != -1; }

  /// Converts octets; empty where not all of them can be converted.
  std::string convert(std::string_view octets) {
    std::string in(octets);
    std::string out(4 * octets.size(), '\0');
    char* from = in.data();
    char* to = out.data();
    std::size_t inLeft = in.size();
    std::size_t outLeft = out.size();
    if (iconv(handle_, &from, &inLeft, &to, &outLeft) == static_cast<std::size_t>(-1)) return {};
    out.resize(out.size() - outLeft);
    return out;
  }

  /// The character that an octet encodes; -1 for none; -2 where it is not exactly one.
  int characterOf(unsigned char octet) {
    iconv(handle_, nullptr, nullptr, nullptr, nullptr);
    char in = static_cast<char>(octet);
    unsigned char out[16];
    char* from = &in;
    char* to = reinterpret_cast<char*>(out);
    std::size_t inLeft = 1;
    std::size_t outLeft = sizeof out;
    const std::size_t result = iconv(handle_, &from, &inLeft, &to, &outLeft);
    if (result == static_cast<std::size_t>(-1)) return errno == EILSEQ ? -1 : -2;
    // Some converters keep a character that a combining one may follow.
    iconv(handle_, nullptr, nullptr, &to, &outLeft);
    // An octet may also switch to another set of characters, or encode several.
    if (sizeof out - outLeft != 4) return -2;
    return out[0] << 24 | out[1] << 16 | out[2] << 8 | out[3];
  }

 private:
  iconv_t handle_;
};

/// Whether iconv knows a name of UTF-8, and expat does not. iconv does not report which names
/// belong to one encoding, so a character of each length is converted.
bool isUTF8(const char* name) {
  if (!isEncodingName(name) || isKnownToExpat(name)) return false;
  Conversion conversion(name);
  if (!conversion.isKnown()) return false;
  using namespace std::string_view_literals;
  return conversion.convert("A\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80") ==
         "\0\0\0A\0\0\0\xE4\0\0\x20\xAC\0\1\xF6\0"sv;
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

EncodingSupport describeEncoding(const char* name, XML_Encoding& encoding) {
  if (!isEncodingName(name)) return EncodingSupport::unknown;
  Conversion conversion(name);
  if (!conversion.isKnown()) return EncodingSupport::unknown;
  for (int octet = 0; octet < 256; ++octet) {
    const int character = conversion.characterOf(static_cast<unsigned char>(octet));
    if (character == -2) return EncodingSupport::multiByte;
    encoding.map[octet] = character;
  }
  encoding.data = nullptr;
  encoding.convert = nullptr;
  encoding.release = nullptr;
  return EncodingSupport::singleByte;
}

std::string toUTF8(const char* encoding, std::string_view octets) {
  Conversion conversion(encoding, "UTF-8");
  return conversion.isKnown() ? conversion.convert(octets) : std::string();
}

std::optional<bool> declaresUTF8ByAnotherName(std::string_view start) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  constexpr std::string_view kDeclaration = "<?xml";
  if (start.size() < kByteOrderMark.size() && kByteOrderMark.starts_with(start)) return {};
  const bool hasMark = start.starts_with(kByteOrderMark);
  const std::string_view text = start.substr(hasMark ? kByteOrderMark.size() : 0);
  if (text.size() < kDeclaration.size() && kDeclaration.starts_with(text)) return {};
  if (!text.starts_with(kDeclaration)) return false;
  const std::size_t end = text.find("?>");
  if (end == std::string_view::npos) {
    if (start.size() < kLongestDeclaration) return {};
    return false;
  }
  return isUTF8(std::string(encodingOf(text.substr(0, end))).c_str());
}

}  // namespace Tavrin::text
