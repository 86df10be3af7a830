#pragma once

#include <expat.h>

#include <cstdint>
#include <istream>
#include <memory>

namespace Tavrin {

struct ParserFreer {
  void operator()(XML_ParserStruct* parser) const { XML_ParserFree(parser); }
};

/// A parser that somebody owns, or null.
using OwnedParser = std::unique_ptr<XML_ParserStruct, ParserFreer>;

/// The block in which input is read, straight into expat's own buffer.
inline constexpr int kBlockSize = 1024 * 1024;

/// Feeds a whole stream to a parser, in blocks.
/// @return the parser's last status; XML_STATUS_ERROR also when it gives no buffer
XML_Status parseStream(XML_Parser parser, std::istream& stream, int blockSize);

inline std::int32_t lineOf(XML_Parser parser) {
  return static_cast<std::int32_t>(XML_GetCurrentLineNumber(parser));
}

// expat counts columns from 0.
inline std::int32_t columnOf(XML_Parser parser) {
  return static_cast<std::int32_t>(XML_GetCurrentColumnNumber(parser) + 1);
}

}  // namespace Tavrin
