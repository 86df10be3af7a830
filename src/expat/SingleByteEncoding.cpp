#include "SingleByteEncoding.h"

#include <iconv.h>

#include <cerrno>
#include <cstddef>
#include <cstring>

namespace Tavrin {

namespace {

/// A conversion to big-endian code points.
class Conversion {
 public:
  explicit Conversion(const char* encoding) : handle_(iconv_open("UTF-32BE", encoding)) {}
  ~Conversion() {
    if (isKnown()) iconv_close(handle_);
  }
  Conversion(const Conversion&) = delete;
  Conversion& operator=(const Conversion&) = delete;

  // iconv_open fails with the pointer that is all ones.
  bool isKnown() const { return reinterpret_cast<std::ptrdiff_t>(handle_) != -1; }

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
  // What follows a slash are orders to iconv, and not part of a name (XML 1.0, production 81).
  if (std::strchr(name, '/') != nullptr) return EncodingSupport::unknown;
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

}  // namespace Tavrin
