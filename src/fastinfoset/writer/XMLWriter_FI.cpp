#include <Tavrin/EncodingAlgorithmAttributes.h>
#include <Tavrin/XMLWriter_FI.h>

#include "../../writer/AddDeclaration.h"
#include "../Octets.h"
#include "Event.h"

// The events. The octet forms of names, strings and integers are in Primitives.cpp, typed content
// is in Content.cpp.

namespace Tavrin {

using namespace fastinfoset;

const XMLWriterType XMLWriter_FI::type_("FI", &XMLWriter_FI::create);

XMLWriter_FI::XMLWriter_FI() : XMLWriter_FI(kDialectFI) {}

XMLWriter_FI::XMLWriter_FI(const Dialect& dialect)
    : dialect_(dialect),
      ownVocabulary_(std::make_unique<Vocabulary>()),
      vocabulary_(*ownVocabulary_),
      known_(std::make_unique<KnownNames>()),
      ownLimits_(std::make_unique<Limits>()),
      limits_(ownLimits_.get()) {}

XMLWriter_FI::~XMLWriter_FI() = default;

std::unique_ptr<XMLWriter> XMLWriter_FI::create() { return std::make_unique<XMLWriter_FI>(); }

namespace {

void checkName(const std::string& name) {
  if (name.empty()) throw SAXException("Empty name");
}

}  // namespace

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
  if (out_ == nullptr) return;
  perform([this] {
    for (const unsigned octet : kHeader) put(octet);
    put(0);  // No optional components.
  });
}

void XMLWriter_FI::clearTables() {
  vocabulary_ = {};
  limits_->tableOctets = 0;
  known_->elements.clear();
  known_->attributes.clear();
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
    writeIdentifier(&vocabulary_.otherNCNames, target);
    writeString(&vocabulary_.otherStrings, isIndexed(vocabulary_.otherStrings, data), data);
  });
}

void XMLWriter_FI::comment(const std::string& text) {
  XMLWriter::comment(text);
  perform([&] {
    flushCharacters();
    flushTerminator(false);
    if (!out_) return;
    put(kComment);
    writeString(&vocabulary_.otherStrings, isIndexed(vocabulary_.otherStrings, text), text);
  });
}

// --- Elements ---

void XMLWriter_FI::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  addDeclaration(namespaces_, prefix, uri);
}

// The attributes may be code of an application: it sees in the stream all that stands in front of
// the answer that it gives.
void XMLWriter_FI::startElement(const std::string& uri, const std::string& localName,
                                const std::string& qName, const Attributes& attributes) {
  XMLWriter::startElement(uri, localName, qName, attributes);
  checkTag(localName, attributes);
  perform([&] {
    flushCharacters();
    flushTerminator(false);
    sendOctets();
    const bool hasAttributes = countAttributes(attributes) > 0;
    unsigned flag = hasAttributes ? kElementAttributes : 0;
    if (!namespaces_.empty()) {
      if (out_ != nullptr) {
        put(kNamespacesFollow | flag);
        encodeNamespaces(namespaces_);
      }
      // They are done with, also where the rest of the tag is refused.
      namespaces_.clear();
      flag = 0;  // The octet in front of the declarations carried it.
    }
    if (out_ != nullptr) writeElementName(flag, {uri, localName, qName});
    if (!hasAttributes) return;
    if (out_ != nullptr) encodeAttributes(attributes);
    // The end of the attributes may share an octet with the end of the element.
    pendingTerminator_ = true;
  });
}

/// Refuses a start tag before anything of it is written.
void XMLWriter_FI::checkTag(const std::string& localName, const Attributes& attributes) {
  checkName(localName);
  const int length = attributes.getLength();
  if (length == 0) return;
  const auto* const typed = findTypedForm(attributes, known_->untyped);
  for (int i = 0; i < length; ++i) {
    if (isInXmlns(attributes, i)) continue;
    checkName(attributes.getLocalName(i));
    if (typed != nullptr && typed->getAlgorithmData(i) != nullptr) {
      algorithmOrThrow(typed->getAlgorithmURI(i), typed->getAlgorithmIndex(i));
    }
  }
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

void XMLWriter_FI::writeElementName(unsigned attributeFlag, const Name& name) {
  const auto& [uri, localName, qName] = name;
  const unsigned* index = known_->elements.find(uri, localName, qName);
  if (index == nullptr) {
    assignName(name_, name);
    index = vocabulary_.elementNames.find(name_);
    if (index == nullptr) {
      writeQualifiedName(static_cast<int>(kLiteralElementName | attributeFlag),
                         vocabulary_.elementNames, name_);
      return;
    }
    known_->elements.put(uri, localName, qName, *index);
  }
  putInteger(kElementIndex, attributeFlag, *index);
}

void XMLWriter_FI::writeAttributeName(const Name& name) {
  const auto& [uri, localName, qName] = name;
  const unsigned* index = known_->attributes.find(uri, localName, qName);
  if (index == nullptr) {
    assignName(name_, name);
    index = vocabulary_.attributeNames.find(name_);
    if (index == nullptr) {
      writeQualifiedName(kLiteralAttributeName, vocabulary_.attributeNames, name_);
      return;
    }
    known_->attributes.put(uri, localName, qName, *index);
  }
  encodeIndex(0, *index);
}

int XMLWriter_FI::countAttributes(const Attributes& attributes) const {
  int count = 0;
  const int length = attributes.getLength();
  for (int i = 0; i < length; ++i) {
    if (!isInXmlns(attributes, i)) ++count;
  }
  return count;
}

void XMLWriter_FI::encodeAttributes(const Attributes& attributes) {
  const auto* const typed = findTypedForm(attributes, known_->untyped);
  StringIndexMap& values = vocabulary_.attributeValues;
  perform([&] {
    const int length = attributes.getLength();
    for (int i = 0; i < length; ++i) {
      sendOctets();
      if (isInXmlns(attributes, i)) continue;
      known_->qName = attributes.getQName(i);
      known_->uri = attributes.getURI(i);
      known_->localName = attributes.getLocalName(i);
      const Name name = {known_->uri, known_->localName, known_->qName};
      checkName(name.localName);
      writeAttributeName(name);
      sendOctets();
      if (const EncodedData* const data = typed ? typed->getAlgorithmData(i) : nullptr) {
        EncodingAlgorithm& algorithm =
            algorithmOrThrow(typed->getAlgorithmURI(i), typed->getAlgorithmIndex(i));
        if (out_ != nullptr) algorithm.encodeToOutputStream(false, *data, *out_);
      } else {
        const std::string& value = attributes.getValue(i);
        writeString(&values, isIndexed(values, value), value);
      }
    }
  });
  pendingTerminator_ = true;
}

}  // namespace Tavrin
