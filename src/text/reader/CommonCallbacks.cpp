#include <cstdlib>
#include <memory>

#include "Callbacks.h"
#include "ContentModel.h"

namespace Tavrin {

void Callbacks::endNamespaceHandler(void* userData, const XML_Char* prefix) {
  EventTarget& target = from(userData);
  target.deliver(target.handlers.content,
                 [&](ContentHandler& handler) { handler.endPrefixMapping(textOrEmpty(prefix)); });
}

void Callbacks::characterDataHandler(void* userData, const XML_Char* text, int length) {
  EventTarget& target = from(userData);
  target.deliver(target.handlers.content, [&](ContentHandler& handler) {
    const auto size = static_cast<std::size_t>(length);
    if (size > kMostKept) return handler.characters(std::string(text, size));
    target.text.assign(text, size);
    handler.characters(target.text);
  });
}

void Callbacks::processingInstructionHandler(void* userData, const XML_Char* instructionTarget,
                                             const XML_Char* data) {
  EventTarget& target = from(userData);
  target.deliver(target.handlers.content, [&](ContentHandler& handler) {
    handler.processingInstruction(instructionTarget, data);
  });
}

void Callbacks::startCdataSectionHandler(void* userData) {
  EventTarget& target = from(userData);
  target.deliver(target.handlers.lexical, [](LexicalHandler& handler) { handler.startCDATA(); });
}

void Callbacks::endCdataSectionHandler(void* userData) {
  EventTarget& target = from(userData);
  target.deliver(target.handlers.lexical, [](LexicalHandler& handler) { handler.endCDATA(); });
}

void Callbacks::commentHandler(void* userData, const XML_Char* text) {
  EventTarget& target = from(userData);
  target.deliver(target.handlers.lexical, [&](LexicalHandler& handler) { handler.comment(text); });
}

void Callbacks::startDoctypeDeclHandler(void* userData, const XML_Char* name,
                                        const XML_Char* systemId, const XML_Char* publicId, int) {
  EventTarget& target = from(userData);
  target.deliver(target.handlers.lexical, [&](LexicalHandler& handler) {
    handler.startDTD(name, textOrEmpty(publicId), textOrEmpty(systemId));
  });
}

void Callbacks::endDoctypeDeclHandler(void* userData) {
  EventTarget& target = from(userData);
  target.deliver(target.handlers.lexical, [](LexicalHandler& handler) { handler.endDTD(); });
}

void Callbacks::elementDeclHandler(void* userData, const XML_Char* name, XML_Content* model) {
  // The model belongs to the callback. It is one block from malloc, expat's default allocator.
  struct Release {
    void operator()(XML_Content* block) const { std::free(block); }
  };
  const std::unique_ptr<XML_Content, Release> owned(model);

  EventTarget& target = from(userData);
  target.deliver(target.handlers.decl, [&](DeclHandler& handler) {
    handler.elementDecl(name, contentModelText(*model));
  });
}

}  // namespace Tavrin
