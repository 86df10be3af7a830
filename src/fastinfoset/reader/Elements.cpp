#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLReader_FI.h>

#include "../Octets.h"

// Elements, their names and namespace declarations (X.891, C.3, C.12, C.17 and C.18).

namespace Tavrin {

using namespace fastinfoset;

namespace {

std::string textOrEmpty(const char* text) { return text ? text : std::string(); }

/// An entry of a table of names: the external entries first, then the document's own.
template <typename QualifiedName>
QualifiedName nameAt(unsigned long index, const std::vector<QualifiedName>& table,
                     const QualifiedNameTable* external, const char* message) {
  if (external != nullptr) {
    if (index < external->definedCount) {
      const char* const(&entry)[3] = external->entries[index];
      return {textOrEmpty(entry[0]), textOrEmpty(entry[1]), textOrEmpty(entry[2])};
    }
    if (index < external->occupiedCount) throw SAXException(message);
    index -= external->occupiedCount;
  }
  if (index >= table.size()) throw SAXException(message);
  return table[index];
}

}  // namespace

bool XMLReader_FI::decodeElement(int octet) {
  const std::size_t outer = openElements_.size();
  if (startElement(octet)) {
    endElement();
    return false;
  }
  while (openElements_.size() > outer) {
    const unsigned child = readOctet();
    if (child < kFirstNonElement) {
      if (startElement(static_cast<int>(child))) endElement();
    } else if (child <= kLastCharacterChunk) {
      decodeCharacters(static_cast<int>(child));
    } else if (child >= kFirstEntityReference && child <= kLastEntityReference) {
      decodeUnexpandedEntityReference(static_cast<int>(child));
    } else if (child == kProcessingInstruction) {
      decodeProcessingInstruction();
    } else if (child == kComment) {
      decodeComment();
    } else if (child == kTerminator) {
      endElement();
    } else if (child == kDoubleTerminator) {
      endElement();
      if (openElements_.size() == outer) return true;
      endElement();
    } else {
      throw SAXException("Error when decoding element children");
    }
  }
  return false;
}

/// Decodes an element up to its children.
/// @return true when it has none: the end of the attributes was also that of the element
bool XMLReader_FI::startElement(int octet) {
  const auto first = static_cast<unsigned>(octet);
  openElements_.emplace_back();
  OpenElement& element = openElements_.back();

  auto nameOctet = first;
  if ((first & kNamespacesFollowMask) == kNamespacesFollow) {
    decodeNamespaces(element.declarations);
    for (std::size_t i = 0; i < element.declarations.size(); i += 2) {
      if (!contentHandler_) break;  // A handler may take itself off at any event.
      contentHandler_->startPrefixMapping(element.declarations[i], element.declarations[i + 1]);
    }
    nameOctet = readOctet();
  }

  const unsigned nameBits = nameOctet & kElementNameBits;
  QualifiedName name;
  if (nameBits <= kLastElementIndex) {
    name = getElementName(decodeElementIndex(static_cast<int>(nameBits)));
  } else if ((nameBits & kLiteralElementName) == kLiteralElementName) {
    name = decodeQualifiedName(static_cast<int>(nameBits), elementNames_);
  } else {
    throw SAXException("Error when decoding element name");
  }
  element.qName = name.qName();
  element.uri = std::move(name.namespaceName);
  element.localName = std::move(name.localName);

  EncodingAlgorithmAttributesImpl attributes;
  const bool ended = (first & kElementAttributes) && decodeAttributes(attributes);
  if (contentHandler_) {
    contentHandler_->startElement(element.uri, element.localName, element.qName, attributes);
  }
  return ended;
}

void XMLReader_FI::endElement() {
  const OpenElement& element = openElements_.back();
  if (contentHandler_) {
    contentHandler_->endElement(element.uri, element.localName, element.qName);
  }
  for (std::size_t i = 0; i < element.declarations.size(); i += 2) {
    if (!contentHandler_) break;
    contentHandler_->endPrefixMapping(element.declarations[i]);
  }
  openElements_.pop_back();
}

void XMLReader_FI::decodeNamespaces(std::vector<std::string>& declarations) {
  unsigned octet = readOctet();
  for (; (octet & kNamespaceDeclarationMask) == kNamespaceDeclaration; octet = readOctet()) {
    std::string prefix;
    std::string namespaceName;
    if (octet & kPrefixPresent) decodeIdentifier(&prefixes_, prefix);
    if (octet & kNamespacePresent) decodeIdentifier(&namespaceNames_, namespaceName);
    declarations.push_back(std::move(prefix));
    declarations.push_back(std::move(namespaceName));
  }
  if (octet != kTerminator) throw SAXException("Error while parsing namespaces");
}

std::string XMLReader_FI::QualifiedName::qName() const {
  return prefix.empty() ? localName : prefix + ":" + localName;
}

const XMLReader_FI::QualifiedName& XMLReader_FI::decodeQualifiedName(
    int octet, std::vector<QualifiedName>& table) {
  table.emplace_back();
  decodeNameParts(static_cast<unsigned>(octet), table.back());
  return table.back();
}

/// Decodes the parts of a literal name that an octet's low bits announce.
void XMLReader_FI::decodeNameParts(unsigned octet, QualifiedName& name) {
  if ((octet & kPrefixPresent) && !(octet & kNamespacePresent)) {
    throw SAXException("Qualified name with a prefix, but without a namespace");
  }
  const auto decodePart = [this](const std::vector<std::string>& table, const char* builtIn,
                                 const char* message) -> std::string {
    const unsigned long index = decodeIndex(static_cast<int>(readOctet()));
    if (index == kBuiltInNameIndex) return builtIn;
    if (index - kBuiltInNames >= table.size()) throw SAXException(message);
    return table[index - kBuiltInNames];
  };
  if (octet & kPrefixPresent)
    name.prefix = decodePart(prefixes_, "xml", "Error when parsing prefix");
  if (octet & kNamespacePresent) {
    name.namespaceName =
        decodePart(namespaceNames_, namespaces::xml, "Error when parsing namespace");
  }
  decodeIdentifier(&localNames_, name.localName);
}

XMLReader_FI::QualifiedName XMLReader_FI::getElementName(unsigned long index) const {
  return nameAt(index, elementNames_,
                externalVocabulary_ ? &externalVocabulary_->elementNameSurrogates : nullptr,
                "Error when decoding element name - invalid index");
}

XMLReader_FI::QualifiedName XMLReader_FI::getAttributeName(unsigned long index) const {
  return nameAt(index, attributeNames_,
                externalVocabulary_ ? &externalVocabulary_->attributeNameSurrogates : nullptr,
                "Error when decoding attribute name - invalid index");
}

}  // namespace Tavrin
