#include "Event.h"

namespace Tavrin {

void XMLReader_Expat::Callbacks::characterDataHandler(void* userData, const XML_Char* text,
                                                      int length) {
  XMLReader_Expat& reader = from(userData);
  deliver(reader, reader.contentHandler_, [&](ContentHandler& handler) {
    std::string& kept = reader.event_->text;
    kept.assign(text, static_cast<std::size_t>(length));
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
