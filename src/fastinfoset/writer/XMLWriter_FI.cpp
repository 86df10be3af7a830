#include <Tavrin/EncodingAlgorithmAttributes.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_FI.h>

#include <string_view>

#include "../Dialect.h"
#include "../Octets.h"
#include "PutInteger.h"

// The events. The octet forms of names, strings and integers are in Primitives.cpp, typed content
// is in Content.cpp.

namespace Tavrin {

using namespace fastinfoset;

const XMLWriterType XMLWriter_FI::type_("FI", &XMLWriter_FI::create);

XMLWriter_FI::XMLWriter_FI() : XMLWriter_FI(kDialectFI) {}

XMLWriter_FI::XMLWriter_FI(const Dialect& dialect) : dialect_(dialect) {}

XMLWriter_FI::~XMLWriter_FI() = default;

std::unique_ptr<XMLWriter> XMLWriter_FI::create() { return std::make_unique<XMLWriter_FI>(); }

namespace {

void checkName(const std::string& name) {
  if (name.empty()) throw SAXException("Empty name");
}

void assignPrefix(std::string& prefix, const std::string& qName) {
  const std::size_t colon = qName.rfind(':');
  prefix.assign(qName, 0, colon == std::string::npos ? 0 : colon);
}

}  // namespace

/// Assigns over a name that is used again and again: its strings keep their memory.
void XMLWriter_FI::assignName(QualifiedName& name, const std::string& uri,
                              const std::string& localName, const std::string& qName) {
  assignPrefix(name.prefix, qName);
  name.namespaceName = uri;
  name.localName = localName;
}

bool XMLWriter_FI::isDeclaration(const Attributes& attributes, int index) const {
  constexpr std::string_view kXmlns = namespaces::xmlns;
  return attributes.getURI(index) == kXmlns;  // Looks at the length first.
}

// --- Properties ---

void XMLWriter_FI::setProperty(const std::string& name, void* value) {
  if (name == properties::registeredEncodingAlgorithms ||
      name == properties::externalVocabularies) {
    return;
  }
  XMLWriter::setProperty(name, value);
}

void* XMLWriter_FI::getProperty(const std::string& name) {
  if (name == properties::registeredEncodingAlgorithms ||
      name == properties::externalVocabularies) {
    return nullptr;
  }
  return XMLWriter::getProperty(name);
}

// --- What is owed ---

void XMLWriter_FI::flushTerminator(bool final) {
  if (pendingTerminator_) {
    pendingTerminator_ = false;
    if (out_) put(final ? kDoubleTerminator : kTerminator);
  } else if (final && out_) {
    put(kTerminator);
  }
}

void XMLWriter_FI::flushCharacters() {
  if (characters_.empty()) return;
  flushTerminator(false);
  if (out_) encodeCharacters(characters_);
  characters_.clear();
}

// --- Document ---

void XMLWriter_FI::startDocument() {
  XMLWriter::startDocument();
  pendingTerminator_ = false;
  // A document that went on counting in the tables of another could not be read by itself.
  vocabulary_ = {};
  beginDocument();
}

void XMLWriter_FI::beginDocument() {
  if (!out_) return;
  for (const unsigned octet : kHeader) put(octet);
  put(0);  // No optional components.
}

void XMLWriter_FI::endDocument() {
  XMLWriter::endDocument();
  flushCharacters();
  flushTerminator(true);
}

void XMLWriter_FI::processingInstruction(const std::string& target, const std::string& data) {
  XMLWriter::processingInstruction(target, data);
  checkName(target);
  flushCharacters();
  flushTerminator(false);
  if (!out_) return;
  put(kProcessingInstruction);
  encodeIdentifier(&vocabulary_.otherNCNames, target);
  encodeString(&vocabulary_.otherStrings, isIndexed(vocabulary_.otherStrings, data), data);
}

void XMLWriter_FI::comment(const std::string& text) {
  XMLWriter::comment(text);
  flushCharacters();
  flushTerminator(false);
  if (!out_) return;
  put(kComment);
  encodeString(&vocabulary_.otherStrings, isIndexed(vocabulary_.otherStrings, text), text);
}

// --- Elements ---

void XMLWriter_FI::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  namespaces_.push_back(prefix);
  namespaces_.push_back(uri);
}

void XMLWriter_FI::startElement(const std::string& uri, const std::string& localName,
                                const std::string& qName, const Attributes& attributes) {
  XMLWriter::startElement(uri, localName, qName, attributes);
  assignName(elementName_, uri, localName, qName);
  const unsigned* const index = vocabulary_.elementNames.find(elementName_);
  checkElementName(elementName_, qName, index);
  takeAttributes(attributes);
  beginTag();
  flushCharacters();
  flushTerminator(false);

  const bool hasAttributes = !taken_.empty();
  if (out_) {
    unsigned flag = hasAttributes ? kElementAttributes : 0;
    if (!namespaces_.empty()) {
      put(kNamespacesFollow | flag);
      encodeNamespaces(namespaces_);
      flag = 0;  // The octet in front of the declarations carried it.
    }
    if (index != nullptr) {
      putInteger(kElementIndex, flag, *index);
    } else {
      encodeQualifiedName(static_cast<int>(kLiteralElementName | flag), vocabulary_.elementNames,
                          elementName_);
    }
    if (hasAttributes) encodeTakenAttributes(attributes);
  }
  namespaces_.clear();
  // The end of the attributes is owed; it may share an octet with the end of the element.
  pendingTerminator_ = hasAttributes;
}

void XMLWriter_FI::endElement(const std::string& uri, const std::string& localName,
                              const std::string& qName) {
  XMLWriter::endElement(uri, localName, qName);
  flushCharacters();
  if (pendingTerminator_) {
    flushTerminator(true);
  } else {
    pendingTerminator_ = true;
  }
}

int XMLWriter_FI::countAttributes(const Attributes& attributes) const {
  int count = 0;
  const int length = attributes.getLength();
  for (int i = 0; i < length; ++i) {
    if (!isDeclaration(attributes, i)) ++count;
  }
  return count;
}

/// Looks at attributes before anything of the tag is written: refuses what cannot be, and looks up
/// their names.
void XMLWriter_FI::takeAttributes(const Attributes& attributes) {
  taken_.clear();
  const int length = attributes.getLength();
  if (length == 0) return;
  const auto* typed = dynamic_cast<const EncodingAlgorithmAttributes*>(&attributes);
  for (int i = 0; i < length; ++i) {
    if (isDeclaration(attributes, i)) continue;
    assignName(name_, attributes.getURI(i), attributes.getLocalName(i), attributes.getQName(i));
    const unsigned* const index = vocabulary_.attributeNames.find(name_);
    checkAttributeName(name_, attributes.getQName(i), index);
    if (const EncodedData* const data = typed ? typed->getAlgorithmData(i) : nullptr) {
      checkTypedValue(typed->getAlgorithmURI(i), typed->getAlgorithmIndex(i), *data);
    } else {
      checkValue(attributes.getValue(i));
    }
    taken_.push_back({i, index});
  }
}

void XMLWriter_FI::checkElementName(const QualifiedName& name, const std::string&,
                                    const unsigned*) {
  checkName(name.localName);
}

void XMLWriter_FI::checkAttributeName(const QualifiedName& name, const std::string&,
                                      const unsigned*) {
  checkName(name.localName);
}

void XMLWriter_FI::checkTypedValue(const std::string& uri, int index, const EncodedData&) {
  algorithmOrThrow(uri, index);
}

void XMLWriter_FI::checkValue(const std::string&) const {}

void XMLWriter_FI::beginTag() {}

void XMLWriter_FI::encodeAttributes(const Attributes& attributes) {
  takeAttributes(attributes);
  encodeTakenAttributes(attributes);
}

void XMLWriter_FI::encodeTakenAttributes(const Attributes& attributes) {
  const auto* typed = dynamic_cast<const EncodingAlgorithmAttributes*>(&attributes);
  for (const auto& [i, index] : taken_) {
    if (index != nullptr) {
      encodeIndex(0, *index);
    } else {
      encodeNewAttributeName(attributes, i);
    }
    if (const EncodedData* const data = typed ? typed->getAlgorithmData(i) : nullptr) {
      encodeTypedValue(typed->getAlgorithmURI(i), typed->getAlgorithmIndex(i), *data);
    } else {
      const std::string& value = attributes.getValue(i);
      encodeString(&vocabulary_.attributeValues, isIndexed(vocabulary_.attributeValues, value),
                   value);
    }
  }
  pendingTerminator_ = true;
}

/// Writes a name that was in no table when the tag began. The same one may have come since.
void XMLWriter_FI::encodeNewAttributeName(const Attributes& attributes, int i) {
  assignName(name_, attributes.getURI(i), attributes.getLocalName(i), attributes.getQName(i));
  if (const unsigned* const index = vocabulary_.attributeNames.find(name_)) {
    encodeIndex(0, *index);
  } else {
    encodeQualifiedName(kLiteralAttributeName, vocabulary_.attributeNames, name_);
  }
}

void XMLWriter_FI::encodeTypedValue(const std::string& uri, int index, const EncodedData& data) {
  algorithmOrThrow(uri, index).encodeToOutputStream(false, data, stream());
}

}  // namespace Tavrin
