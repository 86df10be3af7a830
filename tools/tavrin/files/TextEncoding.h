#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tool {

/// The encoding of XML text, as its first octets tell it.
struct TextEncoding {
  std::string name;          ///< Empty for UTF-8.
  std::size_t unitSize = 1;  ///< So many octets, at least, are a character.
  bool isBigEndian = false;

  static TextEncoding of(std::string_view beginning);
};

/// So many octets have the whole XML declaration, if the library reads the document.
inline constexpr std::size_t kLongestDeclaration = 1024;

/// Whether nothing speaks for another encoding than UTF-8. It may be that and not be recognised.
/// @param beginning the first octets of the document, kLongestDeclaration or all
bool isSurelyUTF8(std::string_view beginning);

}  // namespace tool
