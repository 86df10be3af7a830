#include "Event.h"

namespace Tavrin {

namespace {

// The memory of a longer text is not kept for all the short ones.
constexpr std::size_t kMostKept = std::size_t{64} * 1024;

}  // namespace

void XMLReader_Expat::Callbacks::characterDataHandler(void* userData, const XML_Char* text,
                                                      int length) {
  XMLReader_Expat& reader = from(userData);
  deliver(reader, reader.contentHandler_, [&](ContentHandler& handler) {
    const auto size = static_cast<std::size_t>(length);
    if (size > kMostKept) return handler.characters(std::string(text, size));
    std::string& kept = reader.event_->text;
    kept.assign(text, size);
    handler.characters(kept);
  });
}

void XMLReader_Expat::Callbacks::processingInstructionHandler(void* userData,
                                                              const XML_Char* target,
                                                              const XML_Char* data) {
  XMLReader_Expat& reader = from(userData);
  deliver(reader, reader.contentHandler_,
          [&](ContentHandler& handler) { handler.processingInstruction(target, data); });
}

void XMLReader_Expat::Callbacks::skippedEntityHandler(void* userData, const XML_Char* name, int) {
  XMLReader_Expat& reader = from(userData);
  deliver(reader, reader.contentHandler_,
          [&](ContentHandler& handler) { handler.skippedEntity(name); });
}

void XMLReader_Expat::Callbacks::startCdataSectionHandler(void* userData) {
  XMLReader_Expat& reader = from(userData);
  deliver(reader, reader.lexicalHandler_, [](LexicalHandler& handler) { handler.startCDATA(); });
}

void XMLReader_Expat::Callbacks::endCdataSectionHandler(void* userData) {
  XMLReader_Expat& reader = from(userData);
  deliver(reader, reader.lexicalHandler_, [](LexicalHandler& handler) { handler.endCDATA(); });
}

void XMLReader_Expat::Callbacks::commentHandler(void* userData, const XML_Char* text) {
  XMLReader_Expat& reader = from(userData);
  deliver(reader, reader.lexicalHandler_, [&](LexicalHandler& handler) { handler.comment(text); });
}

}  // namespace Tavrin
