#include "Event.h"

namespace Tavrin {

namespace {

/// The second separator of an attribute's name is searched from the length of the namespace name
/// on, so the prefix of a local name shorter than that is not found and stays in the local name.
/// Applications rely on these names: they must not change.
ExpatName splitAttributeName(std::string_view name) {
  const std::size_t uriLength = name.find(kNameSeparator);
  return splitAt(name, uriLength, uriLength);
}

}  // namespace

void XMLReader_Expat::Callbacks::startElementHandler(void* userData, const XML_Char* name,
                                                     const XML_Char** attributes) {
  XMLReader_Expat& reader = from(userData);
  deliver(reader, reader.contentHandler_, [&](ContentHandler& handler) {
    Event& event = *reader.event_;
    event.takeName(name, true);
    event.attributes.clear();
    for (; *attributes; attributes += 2) {
      event.attributes.add(attributes[0], attributes[1], splitAttributeName);
    }
    handler.startElement(event.uri, event.localName, event.qName, event.attributes);
  });
}

void XMLReader_Expat::Callbacks::endElementHandler(void* userData, const XML_Char* name) {
  XMLReader_Expat& reader = from(userData);
  deliver(reader, reader.contentHandler_, [&](ContentHandler& handler) {
    Event& event = *reader.event_;
    event.takeName(name, true);
    handler.endElement(event.uri, event.localName, event.qName);
  });
}

void XMLReader_Expat::Callbacks::startNamespaceHandler(void* userData, const XML_Char* prefix,
                                                       const XML_Char* uri) {
  XMLReader_Expat& reader = from(userData);
  deliver(reader, reader.contentHandler_, [&](ContentHandler& handler) {
    // expat has no namespace name for `xmlns=""`. An undeclaration ends the parse.
    if (uri == nullptr) throw SAXException("Default namespace undeclared");
    handler.startPrefixMapping(textOrEmpty(prefix), uri);
  });
}

void XMLReader_Expat::Callbacks::endNamespaceHandler(void* userData, const XML_Char* prefix) {
  XMLReader_Expat& reader = from(userData);
  deliver(reader, reader.contentHandler_,
          [&](ContentHandler& handler) { handler.endPrefixMapping(textOrEmpty(prefix)); });
}

}  // namespace Tavrin
