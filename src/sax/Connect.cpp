#include <Tavrin/Connect.h>
#include <Tavrin/Identifiers.h>

#include "SetIfKnown.h"

namespace Tavrin {

void connect(XMLReader& reader, XMLWriter& writer) {
  HandlerSet handlers(writer);
  handlers.errors = nullptr;
  handlers.entities = nullptr;
  connect(reader, handlers);
  // Another handler would keep typed content from a writer that has it as text.
  setIfKnown(reader, properties::primitiveTypeContentHandler, handlers.primitiveTypes);
  setIfKnown(reader, properties::encodingAlgorithmContentHandler, handlers.encodingAlgorithms);
}

void connect(XMLReader& reader, const HandlerSet& handlers) {
  if (handlers.content) reader.setContentHandler(handlers.content);
  if (handlers.dtd) reader.setDTDHandler(handlers.dtd);
  if (handlers.errors) reader.setErrorHandler(handlers.errors);
  if (handlers.entities) reader.setEntityResolver(handlers.entities);
  const auto set = [&reader](const char* property, void* handler) {
    if (handler) setIfKnown(reader, property, handler);
  };
  set(properties::declarationHandler, handlers.declarations);
  set(properties::lexicalHandler, handlers.lexical);
  set(properties::primitiveTypeContentHandler, handlers.primitiveTypes);
  set(properties::encodingAlgorithmContentHandler, handlers.encodingAlgorithms);
}

}  // namespace Tavrin
