#include "SingleByteEncoding.h"

#include <iconv.h>
#include <strings.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <new>
#include <string>
#include <string_view>

namespace Tavrin {

namespace {

// What follows a slash are orders to iconv, and not part of a name (XML 1.0, production 81).
bool isName(const char* name) { return *name != '\0' && std::strchr(name, '/') == nullptr; }

bool isKnownToExpat(const char* name) {
  constexpr std::array kKnown = {"UTF-8",    "UTF-16",     "UTF-16BE",
                                 "UTF-16LE", "ISO-8859-1", "US-ASCII"};
  return std::ranges::any_of(kKnown,
                             [name](const char* known) { return strcasecmp(name, known) == 0; });
}

constexpr char kCodePoints[] = "UTF-32BE";

/// A conversion to big-endian code points, or to another encoding.
class Conversion {
 public:
  explicit Conversion(const char* from, const char* to = kCodePoints)
      : handle_(iconv_open(to, from)) {
    // Not to be taken for an encoding that nobody knows.
    if (!isKnown() && errno == ENOMEM) throw std::bad_alloc();
  }
  ~Conversion() {
    if (isKnown()) iconv_close(handle_);
  }
  Conversion(const Conversion&) = delete;
  Conversion& operator=(const Conversion&) = delete;

  // iconv_open fails with the pointer that is all ones.
  bool isKnown() const { return reinterpret_cast<std::ptrdiff_t>(handle_) != -1; }

  /// What octets stand for, all of them; empty where that is not so.
  std::string characters(std::string_view octets) {
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

  /// The character that an octet stands for; -1 for none; -2 when it is not a whole character.
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
    // Some converters keep a character back that a combining one may follow.
    iconv(handle_, nullptr, nullptr, &to, &outLeft);
    // An octet may also switch to another set of characters, or stand for several.
    if (sizeof out - outLeft != 4) return -2;
    return out[0] << 24 | out[1] << 16 | out[2] << 8 | out[3];
  }

 private:
  iconv_t handle_;
};

}  // namespace

EncodingSupport describeEncoding(const char* name, XML_Encoding& encoding) {
  if (!isName(name)) return EncodingSupport::unknown;
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

// iconv does not tell which names are of one encoding, so a character of each length is tried.
bool isUTF8(const char* name) {
  if (!isName(name) || isKnownToExpat(name)) return false;
  Conversion conversion(name);
  if (!conversion.isKnown()) return false;
  using namespace std::string_view_literals;
  return conversion.characters("A\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80") ==
         "\0\0\0A\0\0\0\xE4\0\0\x20\xAC\0\1\xF6\0"sv;
}

std::string toUTF8(const char* encoding, std::string_view octets) {
  Conversion conversion(encoding, "UTF-8");
  return conversion.isKnown() ? conversion.characters(octets) : std::string();
}

}  // namespace Tavrin
