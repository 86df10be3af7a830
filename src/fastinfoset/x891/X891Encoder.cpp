#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_X891.h>

#include "../../sax/AtLimit.h"
#include "../../xml/Characters.h"
#include "../format/Dialect.h"
#include "X891Encoder.h"

// Properties, the life of a document, and what enters the tables. Beside it in this folder:
// Document.cpp (the prolog), Elements.cpp, Content.cpp, Vocabulary.cpp and Algorithms.cpp.

namespace Tavrin {

using namespace fastinfoset;

XMLWriter_X891::Encoder::Encoder(XMLWriter_X891& writer)
    : fastinfoset::Encoder(kDialectX891, {writer.out_, EncoderState::pendingTerminator,
                                          EncoderState::characters, EncoderState::builtIn}),
      writer_(writer),
      state_(writer.state_),
      hasContent_(writer.hasContent_),
      elements_(writer.elements_) {
  limits_.indexedAttributeValueLength = kIndexedLengthDefault;
  limits_.indexedChunkLength = kIndexedLengthDefault;
  limits_.maximumTableOctets = kMaximumTableOctetsDefault;
  gathers_ = true;  // Also between events: each sends what it has gathered when it is done.
}

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

bool XMLWriter_X891::Encoder::setProperty(const std::string& name, void* value) {
  if (name == properties::documentXMLVersion) {
    checkVersion(value);
    assign(xmlVersion_, value);
  } else if (name == properties::standalone) {
    assign(standalone_, value);
  } else if (name == properties::registeredEncodingAlgorithms) {
    registeredAlgorithms_ = static_cast<EncodingAlgorithmMap*>(value);
  } else if (name == properties::externalVocabularies) {
    externalVocabularies_ = static_cast<ExternalVocabularyMap*>(value);
  } else if (name == properties::externalVocabulary) {
    assign(externalVocabulary_, value);
  } else if (name == properties::initialVocabulary) {
    assign(initialVocabulary_, value);
  } else if (name == properties::indexedAttributeValueLength) {
    assign(limits_.indexedAttributeValueLength, value, kIndexedLengthDefault);
  } else if (name == properties::indexedChunkLength) {
    assign(limits_.indexedChunkLength, value, kIndexedLengthDefault);
  } else if (name == properties::maximumTableOctets) {
    assign(limits_.maximumTableOctets, value, kMaximumTableOctetsDefault);
  } else if (name == properties::maximumDepth) {
    assign(maximumDepth_, value, kMaximumDepthDefault);
  } else {
    return false;
  }
  return true;
}

bool XMLWriter_X891::Encoder::getProperty(const std::string& name, void*& value) {
  if (name == properties::documentXMLVersion) {
    value = addressOf(xmlVersion_);
  } else if (name == properties::standalone) {
    value = addressOf(standalone_);
  } else if (name == properties::registeredEncodingAlgorithms) {
    value = registeredAlgorithms_;
  } else if (name == properties::externalVocabularies) {
    value = externalVocabularies_;
  } else if (name == properties::externalVocabulary) {
    value = addressOf(externalVocabulary_);
  } else if (name == properties::initialVocabulary) {
    value = addressOf(initialVocabulary_);
  } else if (name == properties::indexedAttributeValueLength) {
    value = &limits_.indexedAttributeValueLength;
  } else if (name == properties::indexedChunkLength) {
    value = &limits_.indexedChunkLength;
  } else if (name == properties::maximumTableOctets) {
    value = &limits_.maximumTableOctets;
  } else if (name == properties::maximumDepth) {
    value = &maximumDepth_;
  } else {
    return false;
  }
  return true;
}

// --- The document ---

void XMLWriter_X891::Encoder::startDocument() {
  attempt([this] {
    if (state_ == Initial) findExternalVocabulary();
    writer_.XMLWriter::startDocument();
    pendingTerminator_ = false;
    clearTables();
    beginDocument();
  });
}

/// Nothing is written yet: notations and unparsed entities, which stand in front of the children,
/// are still to come.
void XMLWriter_X891::Encoder::beginDocument() {
  document_ = {};
  characters_.clear();
  namespaces_.clear();
}

void XMLWriter_X891::Encoder::endDocument() {
  attempt([this] {
    if (state_ == Prolog || state_ == AfterDTD) {
      throw SAXException("A document needs a root element");
    }
    isWriting_ = state_ == AfterRoot;  // Else, it is refused.
    writer_.XMLWriter::endDocument();
    finishDocument();
  });
}

void XMLWriter_X891::Encoder::reset() {
  writer_.XMLWriter::reset();
  clearTables();
  pendingTerminator_ = false;
  beginDocument();
}

// --- Failures ---

void XMLWriter_X891::Encoder::requireSound() const {
  if (!document_.isBroken) return;
  throw SAXException("The document cannot go on after a failure: the writer must be reset");
}

void XMLWriter_X891::Encoder::breakOff() noexcept {
  isWriting_ = false;
  document_.isBroken = true;
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
void XMLWriter_X891::Encoder::checkRoom(std::uint64_t octets, std::uint64_t entries) const {
  const std::uint64_t most = std::max(kReadersTableOctets, limits_.maximumTableOctets);
  if (limits_.tableOctets + octets + entries * kEntryOctets > most) {
    throw SAXException(atLimit("The vocabulary takes more than " + std::to_string(most) + " octets",
                               properties::maximumTableOctets));
  }
}

}  // namespace Tavrin
