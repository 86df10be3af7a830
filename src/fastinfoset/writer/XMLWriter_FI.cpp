#include <Tavrin/EncodingAlgorithmAttributes.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_FI.h>

#include <string_view>
#include <typeinfo>

#include "../Dialect.h"
#include "../Octets.h"
#include "Event.h"

// The events. The octet forms of names, strings and integers are in Primitives.cpp, typed content
// is in Content.cpp.

namespace Tavrin {

using namespace fastinfoset;

const XMLWriterType XMLWriter_FI::type_("FI", &XMLWriter_FI::create);

XMLWriter_FI::XMLWriter_FI() : XMLWriter_FI(kDialectFI) {}

XMLWriter_FI::XMLWriter_FI(const Dialect& dialect)
    : dialect_(dialect), known_(std::make_unique<KnownNames>()) {}

XMLWriter_FI::~XMLWriter_FI() = default;

std::unique_ptr<XMLWriter> XMLWriter_FI::create() { return std::make_unique<XMLWriter_FI>(); }

namespace {

void checkName(const std::string& name) {
  if (name.empty()) throw SAXException("Empty name");
}

}  // namespace

std::string_view XMLWriter_FI::Name::prefix() const {
  const std::size_t colon = qName.rfind(':');
  return std::string_view(qName).substr(0, colon == std::string::npos ? 0 : colon);
}

/// Assigns over a name that is used again and again: its strings keep their memory.
void XMLWriter_FI::assignName(QualifiedName& name, const Name& from) {
  name.prefix = from.prefix();
  name.namespaceName = from.uri;
  name.localName = from.localName;
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
  clearTables();
  perform([this] { beginDocument(); });
}

void XMLWriter_FI::clearTables() {
  vocabulary_ = {};
  known_->elements.clear();
  known_->attributes.clear();
}

void XMLWriter_FI::beginDocument() {
  if (!out_) return;
  for (const unsigned octet : kHeader) put(octet);
  put(0);  // No optional components.
}

void XMLWriter_FI::endDocument() {
  XMLWriter::endDocument();
  perform([this] {
    flushCharacters();
    flushTerminator(true);
  });
}

void XMLWriter_FI::processingInstruction(const std::string& target, const std::string& data) {
  XMLWriter::processingInstruction(target, data);
  checkName(target);
  perform([&] {
    flushCharacters();
    flushTerminator(false);
    if (!out_) return;
    put(kProcessingInstruction);
    encodeIdentifier(&vocabulary_.otherNCNames, target);
    encodeString(&vocabulary_.otherStrings, isIndexed(vocabulary_.otherStrings, data), data);
  });
}

void XMLWriter_FI::comment(const std::string& text) {
  XMLWriter::comment(text);
  perform([&] {
    flushCharacters();
    flushTerminator(false);
    if (!out_) return;
    put(kComment);
    encodeString(&vocabulary_.otherStrings, isIndexed(vocabulary_.otherStrings, text), text);
  });
}

// --- Elements ---

void XMLWriter_FI::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  namespaces_.push_back(prefix);
  try {
    namespaces_.push_back(uri);
  } catch (...) {  // A prefix alone would make a pair with that of the next mapping.
    namespaces_.pop_back();
    throw;
  }
}

void XMLWriter_FI::startElement(const std::string& uri, const std::string& localName,
                                const std::string& qName, const Attributes& attributes) {
  XMLWriter::startElement(uri, localName, qName, attributes);
  perform([&] { writeStartTag({uri, localName, qName}, attributes); });
}

void XMLWriter_FI::writeStartTag(const Name& name, const Attributes& attributes) {
  recogniseAttributes(attributes);
  if (!declarations_.empty()) takeDeclarations(attributes, declarations_);
  const unsigned index = takeElementName(name);
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
    if (index != kNoIndex) {
      putInteger(kElementIndex, flag, index);
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
  perform([this] {
    flushCharacters();
    if (pendingTerminator_) {
      flushTerminator(true);
    } else {
      pendingTerminator_ = true;
    }
  });
}

// --- Names and attributes ---

unsigned XMLWriter_FI::takeElementName(const Name& name) {
  const auto& [uri, localName, qName] = name;
  if (const unsigned* const known = known_->elements.find(uri, localName, qName)) {
    checkElementName(name, *known, true);
    return *known;
  }
  assignName(elementName_, name);
  const unsigned* const found = vocabulary_.elementNames.find(elementName_);
  const unsigned index = found ? *found : kNoIndex;
  checkElementName(name, index, false);
  if (found) known_->elements.put(uri, localName, qName, index);
  return index;
}

int XMLWriter_FI::countAttributes(const Attributes& attributes) const {
  int count = 0;
  const int length = attributes.getLength();
  for (int i = 0; i < length; ++i) {
    if (!isDeclaration(attributes, i)) ++count;
  }
  return count;
}

/// The attributes with their typed values, or null. Sources tend to use one class of attributes.
const EncodingAlgorithmAttributes* XMLWriter_FI::typedForm(const Attributes& attributes) {
  if (&typeid(attributes) == untyped_) return nullptr;
  const auto* const typed = dynamic_cast<const EncodingAlgorithmAttributes*>(&attributes);
  if (typed == nullptr) untyped_ = &typeid(attributes);
  return typed;
}

/// Tells attributes from declarations. A name that is known is that of no declaration.
void XMLWriter_FI::recogniseAttributes(const Attributes& attributes) {
  taken_.clear();
  declarations_.clear();
  const int length = attributes.getLength();
  for (int i = 0; i < length; ++i) {
    const unsigned* const known = known_->attributes.find(
        attributes.getURI(i), attributes.getLocalName(i), attributes.getQName(i));
    if (known != nullptr) {
      taken_.push_back({i, *known, kNoIndex, true});
    } else if (isDeclaration(attributes, i)) {
      declarations_.push_back(i);
    } else {
      taken_.push_back({i, kNoIndex, kNoIndex, false});
    }
  }
}

/// Looks at attributes before anything of the tag is written: refuses what cannot be, and looks up
/// their names.
void XMLWriter_FI::takeAttributes(const Attributes& attributes) {
  if (taken_.empty()) return;
  const EncodingAlgorithmAttributes* const typed = typedForm(attributes);
  for (auto& [i, index, valueIndex, isKnown] : taken_) {
    const Name name = {attributes.getURI(i), attributes.getLocalName(i), attributes.getQName(i)};
    if (!isKnown) {
      assignName(name_, name);
      if (const unsigned* const found = vocabulary_.attributeNames.find(name_)) index = *found;
    }
    checkAttributeName(name, index, isKnown);
    if (!isKnown && index != kNoIndex) {
      known_->attributes.put(name.uri, name.localName, name.qName, index);
    }
    if (const EncodedData* const data = typed ? typed->getAlgorithmData(i) : nullptr) {
      checkTypedValue(typed->getAlgorithmURI(i), typed->getAlgorithmIndex(i), *data);
      continue;
    }
    const std::string& value = attributes.getValue(i);
    if (value.empty()) continue;  // It is written as itself.
    if (const unsigned* const found = vocabulary_.attributeValues.find(value)) valueIndex = *found;
    checkValue(value, valueIndex);
  }
}

// They are left out.
void XMLWriter_FI::takeDeclarations(const Attributes&, const std::vector<int>&) {}

void XMLWriter_FI::checkElementName(const Name& name, unsigned, bool) { checkName(name.localName); }

void XMLWriter_FI::checkAttributeName(const Name& name, unsigned, bool) {
  checkName(name.localName);
}

void XMLWriter_FI::checkTypedValue(const std::string& uri, int index, const EncodedData&) {
  algorithmOrThrow(uri, index);
}

void XMLWriter_FI::checkValue(const std::string&, unsigned) const {}

void XMLWriter_FI::beginTag() {}

void XMLWriter_FI::encodeAttributes(const Attributes& attributes) {
  recogniseAttributes(attributes);
  takeAttributes(attributes);
  encodeTakenAttributes(attributes);
}

void XMLWriter_FI::encodeTakenAttributes(const Attributes& attributes) {
  const EncodingAlgorithmAttributes* const typed = typedForm(attributes);
  StringIndexMap& values = vocabulary_.attributeValues;
  const unsigned lookedUp = values.positions();
  for (const auto& [i, index, valueIndex, isKnown] : taken_) {
    if (index != kNoIndex) {
      encodeIndex(0, index);
    } else {
      encodeNewAttributeName(
          {attributes.getURI(i), attributes.getLocalName(i), attributes.getQName(i)});
    }
    if (const EncodedData* const data = typed ? typed->getAlgorithmData(i) : nullptr) {
      encodeTypedValue(typed->getAlgorithmURI(i), typed->getAlgorithmIndex(i), *data);
    } else if (valueIndex != kNoIndex) {
      encodeIndex(kStringIndex, valueIndex);
    } else {
      const std::string& value = attributes.getValue(i);
      const bool add = isIndexed(values, value);
      if (values.positions() == lookedUp) {
        encodeNewString(add ? &values : nullptr, value);
      } else {
        encodeString(&values, add, value);  // It may have come since, in this very tag.
      }
    }
  }
  pendingTerminator_ = true;
}

/// Writes a name that was in no table when the tag began. The same one may have come since.
void XMLWriter_FI::encodeNewAttributeName(const Name& name) {
  assignName(name_, name);
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
