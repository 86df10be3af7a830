#include <string_view>

#include "Callbacks.h"

namespace Tavrin {

namespace {

struct Name {
  std::string_view uri;
  std::string_view localName;
  std::string_view prefix;
};

/// Takes a name of expat's apart: "local", "uri SEPARATOR local" or "uri SEPARATOR local SEPARATOR
/// prefix".
/// @param skip how much of what follows the namespace name is not searched for the second
///             separator
Name split(std::string_view name, std::size_t uriLength, std::size_t skip) {
  if (uriLength == std::string_view::npos) return {{}, name, {}};
  const std::string_view rest = name.substr(uriLength + 1);
  const std::size_t separator = rest.find(kNameSeparator, skip);
  if (separator == std::string_view::npos) return {name.substr(0, uriLength), rest, {}};
  return {name.substr(0, uriLength), rest.substr(0, separator), rest.substr(separator + 1)};
}

Name splitElementName(std::string_view name) { return split(name, name.find(kNameSeparator), 0); }

/// The second separator of an attribute's name is searched from the length of the namespace name
/// on, so the prefix of a local name shorter than that is not found and stays in the local name.
/// Applications rely on these names: they must not change.
Name splitAttributeName(std::string_view name) {
  const std::size_t uriLength = name.find(kNameSeparator);
  return split(name, uriLength, uriLength);
}

void assignQName(std::string& qName, const Name& name) {
  if (name.prefix.empty()) {
    qName = name.localName;
    return;
  }
  qName.reserve(name.prefix.size() + 1 + name.localName.size());
  qName.append(name.prefix).append(1, ':').append(name.localName);
}

std::string qNameOf(const Name& name) {
  std::string qName;
  assignQName(qName, name);
  return qName;
}

}  // namespace

void XMLReader_Expat::Callbacks::startElementHandler(void* userData, const XML_Char* name,
                                                     const XML_Char** attributes) {
  XMLReader_Expat& reader = from(userData);
  if (!reader.contentHandler_) return;
  guard(reader, [&] {
    AttributesImpl list;
    std::size_t count = 0;
    while (attributes[2 * count]) ++count;
    list.attributes_.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
      const Name split = splitAttributeName(attributes[2 * i]);
      AttributesImpl::Attribute& attribute = list.attributes_[i];
      attribute.uri = split.uri;
      attribute.localName = split.localName;
      assignQName(attribute.qName, split);
      attribute.type = "CDATA";
      attribute.value = attributes[2 * i + 1];
    }
    const Name split = splitElementName(name);
    reader.contentHandler_->startElement(std::string(split.uri), std::string(split.localName),
                                         qNameOf(split), list);
  });
}

void XMLReader_Expat::Callbacks::endElementHandler(void* userData, const XML_Char* name) {
  XMLReader_Expat& reader = from(userData);
  if (!reader.contentHandler_) return;
  guard(reader, [&] {
    const Name split = splitElementName(name);
    reader.contentHandler_->endElement(std::string(split.uri), std::string(split.localName),
                                       qNameOf(split));
  });
}

void XMLReader_Expat::Callbacks::startNamespaceHandler(void* userData, const XML_Char* prefix,
                                                       const XML_Char* uri) {
  XMLReader_Expat& reader = from(userData);
  if (!reader.contentHandler_) return;
  guard(reader, [&] {
    // expat has no namespace name for `xmlns=""`. An undeclaration ends the parse.
    if (uri == nullptr) throw SAXException("Default namespace undeclared");
    reader.contentHandler_->startPrefixMapping(textOrEmpty(prefix), uri);
  });
}

void XMLReader_Expat::Callbacks::endNamespaceHandler(void* userData, const XML_Char* prefix) {
  XMLReader_Expat& reader = from(userData);
  if (!reader.contentHandler_) return;
  guard(reader, [&] { reader.contentHandler_->endPrefixMapping(textOrEmpty(prefix)); });
}

}  // namespace Tavrin
