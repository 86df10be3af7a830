#include "ExpatNames.h"
#include "XML10Document.h"

namespace Tavrin {

void XMLReader_XML10::Callbacks::splitElementName(Document& document, const XML_Char* name) {
  // The end tag of an element without child elements, say, follows its start tag.
  if (document.elementName == name) return;
  document.elementName = name;
  if (document.features.namespaces) {
    const ExpatName split = splitName(document.elementName);
    document.uri = split.uri;
    document.localName = split.localName;
    assignQName(document.qName, split);
  } else {
    document.qName = document.elementName;
  }
}

void XMLReader_XML10::Callbacks::startElementHandler(void* userData, const XML_Char* name,
                                                     const XML_Char** attributes) {
  XMLReader_XML10& reader = from(userData);
  deliver(reader, reader.contentHandler_, [&](ContentHandler& handler) {
    Document& document = *reader.document_;
    splitElementName(document, name);
    ElementAttributes& list = document.attributes;
    list.clear();
    for (const auto& [prefix, uri] : document.declarations) {
      list.addDeclaration(prefix, uri, document.features.xmlnsURIs);
    }
    for (; *attributes; attributes += 2) {
      list.add(attributes[0], attributes[1], document.features.namespaces);
    }
    if (!document.attributeTypes.isEmpty()) {
      list.setTypes(document.attributeTypes.find(document.qName));
    }
    handler.startElement(document.uri, document.localName, document.qName, list);
  });
  reader.document_->declarations.clear();
}

void XMLReader_XML10::Callbacks::endElementHandler(void* userData, const XML_Char* name) {
  XMLReader_XML10& reader = from(userData);
  deliver(reader, reader.contentHandler_, [&](ContentHandler& handler) {
    Document& document = *reader.document_;
    splitElementName(document, name);
    handler.endElement(document.uri, document.localName, document.qName);
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

void XMLReader_XML10::Callbacks::characterDataHandler(void* userData, const XML_Char* text,
                                                      int length) {
  XMLReader_XML10& reader = from(userData);
  deliver(reader, reader.contentHandler_, [&](ContentHandler& handler) {
    std::string& kept = reader.document_->text;
    kept.assign(text, static_cast<std::size_t>(length));
    handler.characters(kept);
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
