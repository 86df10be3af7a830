#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_X891.h>

#include "../../../sax/AtLimit.h"
#include "../../../xml/Characters.h"
#include "../../Dialect.h"
#include "State.h"

// Properties, the life of a document, and what enters the tables. Beside it in this folder:
// Document.cpp (the prolog), Elements.cpp, Content.cpp, Vocabulary.cpp and Algorithms.cpp.

namespace Tavrin {

using namespace fastinfoset;

const XMLWriterType XMLWriter_X891::type_("X891", &XMLWriter_X891::create);

XMLWriter_X891::XMLWriter_X891() : XMLWriter_FI(kDialectX891), own_(std::make_unique<State>()) {
  limits_ = own_.get();
  gathers_ = true;  // Also between events: each sends what it has gathered when it is done.
}

XMLWriter_X891::~XMLWriter_X891() = default;

std::unique_ptr<XMLWriter> XMLWriter_X891::create() { return std::make_unique<XMLWriter_X891>(); }

// --- Properties ---

namespace {

template <typename Value>
void assign(std::optional<Value>& property, const void* value) {
  property.reset();
  if (value != nullptr) property = *static_cast<const Value*>(value);
}

void assign(std::uint64_t& property, const void* value, std::uint64_t standard) {
  property = value != nullptr ? *static_cast<const std::uint64_t*>(value) : standard;
}

template <typename Value>
void* addressOf(std::optional<Value>& property) {
  return property ? &*property : nullptr;
}

void checkVersion(const void* value) {
  if (value == nullptr) return;
  const auto& version = *static_cast<const std::string*>(value);
  if (!xml::isVersion(version)) {
    throw SAXException("\"" + version + "\" is not a version of XML");
  }
}

}  // namespace

void XMLWriter_X891::setProperty(const std::string& name, void* value) {
  if (name == properties::documentXMLVersion) {
    checkVersion(value);
    assign(own_->xmlVersion, value);
  } else if (name == properties::standalone) {
    assign(own_->standalone, value);
  } else if (name == properties::registeredEncodingAlgorithms) {
    own_->registeredAlgorithms = static_cast<EncodingAlgorithmMap*>(value);
  } else if (name == properties::externalVocabularies) {
    own_->externalVocabularies = static_cast<ExternalVocabularyMap*>(value);
  } else if (name == properties::externalVocabulary) {
    assign(own_->externalVocabulary, value);
  } else if (name == properties::initialVocabulary) {
    assign(own_->initialVocabulary, value);
  } else if (name == properties::indexedAttributeValueLength) {
    assign(own_->indexedAttributeValueLength, value, State::kIndexedLengthDefault);
  } else if (name == properties::indexedChunkLength) {
    assign(own_->indexedChunkLength, value, State::kIndexedLengthDefault);
  } else if (name == properties::maximumTableOctets) {
    assign(own_->maximumTableOctets, value, State::kMaximumTableOctetsDefault);
  } else if (name == properties::maximumDepth) {
    assign(own_->maximumDepth, value, State::kMaximumDepthDefault);
  } else {
    XMLWriter_FI::setProperty(name, value);
  }
}

void* XMLWriter_X891::getProperty(const std::string& name) {
  if (name == properties::documentXMLVersion) return addressOf(own_->xmlVersion);
  if (name == properties::standalone) return addressOf(own_->standalone);
  if (name == properties::registeredEncodingAlgorithms) return own_->registeredAlgorithms;
  if (name == properties::externalVocabularies) return own_->externalVocabularies;
  if (name == properties::externalVocabulary) return addressOf(own_->externalVocabulary);
  if (name == properties::initialVocabulary) return addressOf(own_->initialVocabulary);
  if (name == properties::indexedAttributeValueLength) return &own_->indexedAttributeValueLength;
  if (name == properties::indexedChunkLength) return &own_->indexedChunkLength;
  if (name == properties::maximumTableOctets) return &own_->maximumTableOctets;
  if (name == properties::maximumDepth) return &own_->maximumDepth;
  return XMLWriter_FI::getProperty(name);
}

// --- The document ---

void XMLWriter_X891::startDocument() {
  attempt([this] {
    if (state_ == Initial) findExternalVocabulary();
    XMLWriter::startDocument();
    pendingTerminator_ = false;
    clearTables();
    beginDocument();
  });
}

// What writes a string has the tables of this writer, not others.

void XMLWriter_X891::encodeString(StringIndexMap* table, bool addToTable, const std::string& text) {
  writeString(table, addToTable, text);
}

void XMLWriter_X891::encodeIdentifier(StringIndexMap* table, const std::string& text) {
  writeIdentifier(table, text);
}

/// Nothing is written yet: notations and unparsed entities, which stand in front of the children,
/// are still to come.
void XMLWriter_X891::beginDocument() {
  own_->document = {};
  characters_.clear();
  namespaces_.clear();
}

void XMLWriter_X891::endDocument() {
  attempt([this] {
    if (state_ == Prolog || state_ == AfterDTD) {
      throw SAXException("A document needs a root element");
    }
    own_->isWriting = state_ == AfterRoot;  // Else, it is refused.
    XMLWriter_FI::endDocument();
  });
}

void XMLWriter_X891::reset() {
  XMLWriter_FI::reset();
  clearTables();
  pendingTerminator_ = false;
  beginDocument();
}

// --- Failures ---

void XMLWriter_X891::requireSound() const {
  if (!own_->document.isBroken) return;
  throw SAXException("The document cannot go on after a failure: the writer must be reset");
}

void XMLWriter_X891::breakOff() noexcept {
  own_->isWriting = false;
  own_->document.isBroken = true;
  state_ = Ended;
  // What has gathered belongs here, and must not come later. The failure to tell of is the first.
  try {
    sendOctets();
  } catch (...) {
    return;
  }
}

// --- Tables ---

/// Names and identifiers enter a reader's tables in any case: what a reader would refuse is refused
/// here.
void XMLWriter_X891::checkRoom(std::uint64_t octets, std::uint64_t entries) const {
  const std::uint64_t most = std::max(kReadersTableOctets, own_->maximumTableOctets);
  if (own_->tableOctets + octets + entries * kEntryOctets > most) {
    throw SAXException(atLimit("The vocabulary takes more than " + std::to_string(most) + " octets",
                               properties::maximumTableOctets));
  }
}

}  // namespace Tavrin
