#include "Event.h"
#include "XML10Document.h"

namespace Tavrin {

void XMLReader_XML10::Callbacks::startElementHandler(void* userData, const XML_Char* name,
                                                     const XML_Char** attributes) {
  XMLReader_XML10& reader = from(userData);
  deliver(reader, reader.contentHandler_, [&](ContentHandler& handler) {
    Document& document = *reader.document_;
    Event& event = *reader.event_;
    event.takeName(name, document.features.namespaces);
    ElementAttributes& list = event.attributes;
    list.clear();
    for (const auto& [prefix, uri] : document.declarations) {
      list.addDeclaration(prefix, uri, document.features.xmlnsURIs);
    }
    for (; *attributes; attributes += 2) {
      list.add(attributes[0], attributes[1], document.features.namespaces ? splitName : nullptr);
    }
    if (!document.attributeTypes.isEmpty()) {
      list.setTypes(document.attributeTypes.find(event.qName));
    }
    handler.startElement(event.uri, event.localName, event.qName, list);
  });
  reader.document_->declarations.clear();
}

void XMLReader_XML10::Callbacks::endElementHandler(void* userData, const XML_Char* name) {
  XMLReader_XML10& reader = from(userData);
  deliver(reader, reader.contentHandler_, [&](ContentHandler& handler) {
    Event& event = *reader.event_;
    event.takeName(name, reader.document_->features.namespaces);
    handler.endElement(event.uri, event.localName, event.qName);
  });
}

void XMLReader_XML10::Callbacks::startNamespaceHandler(void* userData, const XML_Char* prefix,
                                                       const XML_Char* uri) {
  XMLReader_XML10& reader = from(userData);
  // expat has no namespace name for `xmlns=""`.
  deliver(reader, reader.contentHandler_, [&](ContentHandler& handler) {
    Document& document = *reader.document_;
    if (document.features.namespacePrefixes) {
      document.declarations.emplace_back(textOrEmpty(prefix), textOrEmpty(uri));
    }
    handler.startPrefixMapping(textOrEmpty(prefix), textOrEmpty(uri));
  });
}

void XMLReader_XML10::Callbacks::skippedEntityHandler(void* userData, const XML_Char* name,
                                                      int isParameterEntity) {
  XMLReader_XML10& reader = from(userData);
  deliver(reader, reader.contentHandler_, [&](ContentHandler& handler) {
    handler.skippedEntity(isParameterEntity ? std::string("%") + name : name);
  });
}

}  // namespace Tavrin
