#include <Tavrin/XMLReader_X891.h>
#include <Tavrin/XMLWriter_X891.h>

#include "../../sax/AtLimit.h"
#include "../../sax/Properties.h"
#include "../../xml/Rules.h"
#include "X891Encoder.h"

// The writer as an object, its properties, the beginning and end of a document, and common checks.
// The other events are in X891EncoderProlog.cpp, X891EncoderElements.cpp, X891EncoderContent.cpp
// and X891EncoderAlgorithms.cpp.

namespace Tavrin {

using namespace fastinfoset;

const XMLWriterType XMLWriter_X891::type_("X891", &XMLWriter_X891::create);

XMLWriter_X891::XMLWriter_X891() : encoder_(std::make_unique<Encoder>(*this)) {}

XMLWriter_X891::~XMLWriter_X891() = default;

std::unique_ptr<XMLWriter> XMLWriter_X891::create() { return std::make_unique<XMLWriter_X891>(); }

XMLWriter_X891::Encoder::Encoder(XMLWriter_X891& writer)
    : fastinfoset::Encoder(kDialectX891, {writer.out_, EncoderState::pendingTerminator,
                                          EncoderState::characters, EncoderState::builtIn}),
      writer_(writer) {
  limits_.indexedAttributeValueLength = kIndexedLengthDefault;
  limits_.indexedChunkLength = kIndexedLengthDefault;
  limits_.maximumTableOctets = kMaximumTableOctetsDefault;
  isInPlace_ = true;
  isBuffering_ = true;  // Also between events: each sends its octets at its end.
}

// --- Properties ---

template <typename Access>
bool XMLWriter_X891::Encoder::accessProperty(Access access) {
  return access(properties::documentXMLVersion, xmlVersion_) ||
         access(properties::standalone, standalone_) ||
         access(properties::registeredEncodingAlgorithms, registeredAlgorithms_) ||
         access(properties::encodingAlgorithmURIs, algorithmURIs_) ||
         access(properties::externalVocabularies, externalVocabularies_) ||
         access(properties::externalVocabulary, externalVocabulary_) ||
         access(properties::initialVocabulary, initialVocabulary_) ||
         access(properties::valueIndexing, valueIndexing_, std::string(kAdaptive)) ||
         access(properties::indexedAttributeValueLength, limits_.indexedAttributeValueLength,
                kIndexedLengthDefault) ||
         access(properties::indexedChunkLength, limits_.indexedChunkLength,
                kIndexedLengthDefault) ||
         access(properties::maximumTableOctets, limits_.maximumTableOctets,
                kMaximumTableOctetsDefault) ||
         access(properties::maximumDepth, maximumDepth_, std::uint64_t{UINT64_MAX});
}

void XMLWriter_X891::setProperty(const std::string& name, void* value) {
  if (name == properties::documentXMLVersion && value != nullptr) {
    xml::refuseIf(xml::whyNotVersion(*static_cast<const std::string*>(value)));
  }
  if (name == properties::initialVocabulary) encoder_->sharedInitial_.reset();
  if (name == properties::valueIndexing) {
    return encoder_->setValueIndexing(value == nullptr ? Encoder::kAdaptive
                                                       : *static_cast<const std::string*>(value));
  }
  if (!encoder_->accessProperty(PropertySetter{name, value})) {
    XMLWriter::setProperty(name, value);
  }
}

void XMLWriter_X891::Encoder::setValueIndexing(const std::string& mode) {
  if (mode != kAlways && mode != kNever && mode != kAdaptive) {
    throw SAXException("Property \"" + std::string(properties::valueIndexing) +
                       "\" must be always, never or adaptive");
  }
  valueIndexing_ = mode;
  isAdaptive_ = mode == kAdaptive;
  limits_.addsValues = mode != kNever;
}

void XMLWriter_X891::setInitialVocabulary(const OwnedVocabulary& vocabulary) {
  encoder_->setInitialVocabulary(vocabulary);
}

void XMLWriter_X891::setExternalVocabulary(const std::string& uri,
                                           const OwnedVocabulary& vocabulary) {
  encoder_->setExternalVocabulary(uri, vocabulary);
}

void* XMLWriter_X891::getProperty(const std::string& name) {
  void* value = nullptr;
  const bool isKnown = encoder_->accessProperty(PropertyGetter{name, value});
  return isKnown ? value : XMLWriter::getProperty(name);
}

// --- The document ---

void XMLWriter_X891::startDocument() {
  encoder_->attempt([this](Encoder& encoder) {
    if (state_ == Initial) encoder.findExternalVocabulary();
    XMLWriter::startDocument();
    encoder.beginDocument();
    encoder.isClear_ = false;
  });
}

void XMLWriter_X891::Encoder::beginDocument() {
  if (isClear_) return;
  clearTables();
  xml::UniqueAttributes kept = std::move(document_.attributes);
  kept.clear();
  document_ = {};
  document_.attributes = std::move(kept);
  pendingTerminator = false;
  characters.clear();
  namespaces_.clear();
  isClear_ = true;
}

void XMLWriter_X891::endDocument() {
  encoder_->attempt([this](Encoder& encoder) {
    if (state_ == Prolog || state_ == AfterDTD) {
      throw SAXException("You cannot end a document without an element");
    }
    encoder.isWriting_ = state_ == AfterRoot;  // Otherwise it is refused.
    XMLWriter::endDocument();
    encoder.finishDocument();
  });
}

void XMLWriter_X891::reset() {
  XMLWriter::reset();
  encoder_->beginDocument();
}

void XMLWriter_X891::Encoder::breakOff() noexcept {
  isWriting_ = false;
  document_.isBroken = true;
  writer_.state_ = Ended;
  // The octets of this event must not be written by another one. Only the first failure is
  // reported.
  try {
    sendOctets();
  } catch (...) {
    return;
  }
}

// --- Checks ---

void XMLWriter_X891::Encoder::checkTableOctets(std::uint64_t octets, std::uint64_t entries) const {
  // A reader adds names and identifiers to its tables in any case. What a reader refuses by default
  // is not written.
  constexpr std::uint64_t kReadersLimit = XMLReader_X891::Limits().maximumTableOctets;
  const std::uint64_t most = std::max(kReadersLimit, limits_.maximumTableOctets);
  if (limits_.tableOctets + octets + entries * kEntryOctets > most) {
    throw SAXException(atLimit("The vocabulary takes more than " + std::to_string(most) + " octets",
                               properties::maximumTableOctets));
  }
}

void fastinfoset::checkLength(std::uint64_t octets) {
  if (octets <= kLongestString) return;
  throw SAXException("String longer than " + std::to_string(kLongestString) + " octets");
}

void fastinfoset::checkText(const std::string& text, const char* place) {
  checkLength(text.size());
  xml::refuseIf(xml::whyNotText(text, place));
}

void fastinfoset::checkNCName(std::string_view name) {
  checkLength(name.size());
  xml::refuseIf(xml::whyNotNCName(name));
}

void fastinfoset::checkIdentifiers(const std::string& publicId, const std::string& systemId) {
  checkLength(publicId.size());
  checkLength(systemId.size());
  xml::refuseIf(xml::whyNotPublicId(publicId));
  xml::refuseIf(xml::whyNotSystemId(systemId));
}

}  // namespace Tavrin
