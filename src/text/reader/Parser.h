#pragma once

#include <expat.h>

#include <cstddef>
#include <cstdint>
#include <istream>
#include <memory>
#include <string_view>

namespace Tavrin::text {

struct ParserDeleter {
  void operator()(XML_ParserStruct* parser) const { XML_ParserFree(parser); }
};

using OwnedParser = std::unique_ptr<XML_ParserStruct, ParserDeleter>;

/// The size of the blocks in which documents are read, straight into expat's own buffer.
inline constexpr int kBlockSize = 1024 * 1024;

/// Parses a whole stream, block by block.
/// @return the parser's last status; XML_STATUS_ERROR also where it has no memory for a block
inline XML_Status parseStream(XML_Parser parser, std::istream& stream, int blockSize) {
  for (;;) {
    void* const block = XML_GetBuffer(parser, blockSize);
    if (block == nullptr) return XML_STATUS_ERROR;
    // The stream's buffer is read, so that the stream's state has no influence.
    std::streambuf* const source = stream.rdbuf();
    const std::streamsize count = source ? source->sgetn(static_cast<char*>(block), blockSize) : 0;
    const bool isFinal = count < blockSize;
    const XML_Status status = XML_ParseBuffer(parser, static_cast<int>(count), isFinal);
    if (status != XML_STATUS_OK || isFinal) return status;
  }
}

/// The octets from the current event on; none where expat was built without XML_CONTEXT_BYTES.
inline std::string_view octetsFromHere(XML_Parser parser) {
  int offset = 0;
  int size = 0;
  const char* const buffer = XML_GetInputContext(parser, &offset, &size);
  if (buffer == nullptr || offset < 0 || offset > size) return {};
  return {buffer + offset, static_cast<std::size_t>(size - offset)};
}

/// A place in an entity, counted from 1.
struct Position {
  std::int32_t line;
  std::int32_t column;
};

inline std::int32_t lineOf(XML_Parser parser) {
  return static_cast<std::int32_t>(XML_GetCurrentLineNumber(parser));
}

// expat counts columns from 0.
inline std::int32_t columnOf(XML_Parser parser) {
  return static_cast<std::int32_t>(XML_GetCurrentColumnNumber(parser) + 1);
}

inline Position positionOf(XML_Parser parser) { return {lineOf(parser), columnOf(parser)}; }

}  // namespace Tavrin::text
