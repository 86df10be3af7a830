#pragma once

#include <expat.h>

#include <cstdint>
#include <istream>
#include <memory>
#include <string_view>

namespace Tavrin {

struct ParserFreer {
  void operator()(XML_ParserStruct* parser) const { XML_ParserFree(parser); }
};

/// A parser that somebody owns, or null.
using OwnedParser = std::unique_ptr<XML_ParserStruct, ParserFreer>;

/// The block in which input is read, straight into expat's own buffer.
inline constexpr int kBlockSize = 1024 * 1024;

/// Feeds a whole stream to a parser, in blocks.
/// @param look what is done with the first block before the parser reads it, or null
/// @return the parser's last status; XML_STATUS_ERROR also when it gives no buffer
XML_Status parseStream(XML_Parser parser, std::istream& stream, int blockSize,
                       void (*look)(XML_Parser, std::string_view) = nullptr);

inline std::int32_t lineOf(XML_Parser parser) {
  return static_cast<std::int32_t>(XML_GetCurrentLineNumber(parser));
}

// expat counts columns from 0.
inline std::int32_t columnOf(XML_Parser parser) {
  return static_cast<std::int32_t>(XML_GetCurrentColumnNumber(parser) + 1);
}

}  // namespace Tavrin
