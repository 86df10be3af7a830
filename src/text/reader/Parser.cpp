#include "Parser.h"

namespace Tavrin {

XML_Status parseStream(XML_Parser parser, std::istream& stream, int blockSize,
                       void (*look)(XML_Parser, std::string_view)) {
  XML_Status status = XML_STATUS_OK;
  bool isFinal = false;
  while (status == XML_STATUS_OK && !isFinal) {
    void* block = XML_GetBuffer(parser, blockSize);
    if (block == nullptr) return XML_STATUS_ERROR;
    // The stream's buffer is read, not the stream: its state flags play no part.
    std::streambuf* source = stream.rdbuf();
    const std::streamsize count = source ? source->sgetn(static_cast<char*>(block), blockSize) : 0;
    isFinal = count < blockSize;
    if (look != nullptr) {
      look(parser, {static_cast<const char*>(block), static_cast<std::size_t>(count)});
      look = nullptr;
    }
    status = XML_ParseBuffer(parser, static_cast<int>(count), isFinal);
  }
  return status;
}

}  // namespace Tavrin
