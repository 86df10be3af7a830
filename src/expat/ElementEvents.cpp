#include "ExpatNames.h"

namespace Tavrin {

namespace {

/// The second separator of an attribute's name is searched from the length of the namespace name
/// on, so the prefix of a local name shorter than that is not found and stays in the local name.
/// Applications rely on these names: they must not change.
ExpatName splitAttributeName(std::string_view name) {
  const std::size_t uriLength = name.find(kNameSeparator);
  return splitAt(name, uriLength, uriLength);
}

std::string qNameOf(const ExpatName& name) {
  std::string qName;
  assignQName(qName, name);
  return qName;
}

}  // namespace

void XMLReader_Expat::Callbacks::startElementHandler(void* userData, const XML_Char* name,
                                                     const XML_Char** attributes) {
  XMLReader_Expat& reader = from(userData);
  deliver(reader, reader.contentHandler_, [&](ContentHandler& handler) {
    AttributesImpl list;
    std::size_t count = 0;
    while (attributes[2 * count]) ++count;
    list.attributes_.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
      const ExpatName split = splitAttributeName(attributes[2 * i]);
      AttributesImpl::Attribute& attribute = list.attributes_[i];
      attribute.uri = split.uri;
      attribute.localName = split.localName;
      assignQName(attribute.qName, split);
      attribute.type = "CDATA";
      attribute.value = attributes[2 * i + 1];
    }
    const ExpatName split = splitName(name);
    handler.startElement(std::string(split.uri), std::string(split.localName), qNameOf(split),
                         list);
  });
}

void XMLReader_Expat::Callbacks::endElementHandler(void* userData, const XML_Char* name) {
  XMLReader_Expat& reader = from(userData);
  deliver(reader, reader.contentHandler_, [&](ContentHandler& handler) {
    const ExpatName split = splitName(name);
    handler.endElement(std::string(split.uri), std::string(split.localName), qNameOf(split));
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
