#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLReader_X891.h>

#include <algorithm>
#include <limits>
#include <utility>

#include "../../sax/ParseScope.h"
#include "../../sax/Properties.h"
#include "PulledReader.h"
#include "VocabularyChecks.h"
#include "X891Decoder.h"

// The reader as an object: creation, properties, failures. Beside it in this folder:
// X891Document.cpp (header and components), X891Values.cpp (typed values), X891Checks.cpp
// (checks) and X891Reports.cpp (reports to handlers). All else is what readers of Fast Infoset
// share.

namespace Tavrin {

const XMLReaderType XMLReader_X891::type_("X891", &XMLReader_X891::create);

class TAVRIN_LOCAL XMLReader_X891::Decoder final : public fastinfoset::X891Decoder {
 public:
  explicit Decoder(XMLReader_X891& reader)
      : X891Decoder({reader.contentHandler_, reader.errorHandler_, reader.dtdHandler_}),
        reader_(reader) {}

  // Handlers that the reader sets without their properties.
  using X891Decoder::declHandler_;
  using X891Decoder::encodingAlgorithmContentHandler_;
  using X891Decoder::lexicalHandler_;
  using X891Decoder::primitiveTypeContentHandler_;

 private:
  /// A derived reader may put another algorithm in its place.
  EncodingAlgorithm* getEncodingAlgorithm(unsigned field, std::string& uri) override {
    return reader_.getEncodingAlgorithm(field, uri);
  }

  XMLReader_X891& reader_;
};

XMLReader_X891::XMLReader_X891() : decoder_(std::make_unique<Decoder>(*this)) {}

XMLReader_X891::~XMLReader_X891() = default;

std::unique_ptr<XMLReader> XMLReader_X891::create() { return std::make_unique<XMLReader_X891>(); }

void XMLReader_X891::setProperty(const std::string& name, void* value) {
  if (name == properties::amplificationFactor) checkFactor(name, value);
  decoder_->forgetAllowance();
  if (!decoder_->accessProperty(PropertySetter{name, value})) XMLReader::setProperty(name, value);
}

void* XMLReader_X891::getProperty(const std::string& name) {
  if (name == kDecoderProperty) return static_cast<fastinfoset::X891Decoder*>(decoder_.get());
  void* value = nullptr;
  const bool isKnown = decoder_->accessProperty(PropertyGetter{name, value});
  return isKnown ? value : XMLReader::getProperty(name);
}

void XMLReader_X891::setLimits(const Limits& limits) {
  checkFactor(properties::amplificationFactor, &limits.amplificationFactor);
  decoder_->setLimits(limits);
}

XMLReader_X891::Limits XMLReader_X891::getLimits() const { return decoder_->limits(); }

void XMLReader_X891::addExternalVocabulary(const std::string& uri,
                                           const OwnedVocabulary& vocabulary) {
  fastinfoset::checkEntry(fastinfoset::kOtherURIs, uri);
  decoder_->addExternalVocabulary(uri, vocabulary);
}

void XMLReader_X891::setLexicalHandler(LexicalHandler* handler) {
  decoder_->lexicalHandler_ = handler;
}

LexicalHandler* XMLReader_X891::getLexicalHandler() const { return decoder_->lexicalHandler_; }

void XMLReader_X891::setDeclHandler(DeclHandler* handler) { decoder_->declHandler_ = handler; }

DeclHandler* XMLReader_X891::getDeclHandler() const { return decoder_->declHandler_; }

void XMLReader_X891::setPrimitiveTypeContentHandler(PrimitiveTypeContentHandler* handler) {
  decoder_->primitiveTypeContentHandler_ = handler;
}

PrimitiveTypeContentHandler* XMLReader_X891::getPrimitiveTypeContentHandler() const {
  return decoder_->primitiveTypeContentHandler_;
}

void XMLReader_X891::setEncodingAlgorithmContentHandler(EncodingAlgorithmContentHandler* handler) {
  decoder_->encodingAlgorithmContentHandler_ = handler;
}

EncodingAlgorithmContentHandler* XMLReader_X891::getEncodingAlgorithmContentHandler() const {
  return decoder_->encodingAlgorithmContentHandler_;
}

void XMLReader_X891::setRawOctets(bool value) { decoder_->setRawOctets(value); }

bool XMLReader_X891::getRawOctets() const { return decoder_->rawOctets(); }

void XMLReader_X891::setFeature(const std::string& name, bool value) {
  if (name == features::isStandalone) throwCanOnlyBeAsked("Feature", name);
  if (name != features::coalesceCharacters) return XMLReader::setFeature(name, value);
  decoder_->setCoalescesCharacters(value);
}

bool XMLReader_X891::getFeature(const std::string& name) {
  if (name == features::isStandalone) return decoder_->isStandalone();
  if (name == features::coalesceCharacters) return decoder_->coalescesCharacters();
  return XMLReader::getFeature(name);
}

void XMLReader_X891::parse(std::istream& stream) { decoder_->parse(stream); }

void XMLReader_X891::parse(const void* data, unsigned long size, bool isFinal) {
  decoder_->parse({static_cast<const char*>(data), data == nullptr ? 0 : size}, isFinal);
}

unsigned long XMLReader_X891::unusedOctets() const { return decoder_->unusedOctets(); }

void XMLReader_X891::stop() { decoder_->stop(); }

bool XMLReader_X891::isStopped() const { return decoder_->isStopped(); }

void XMLReader_X891::pause() { decoder_->pause(); }

bool XMLReader_X891::isPaused() const { return decoder_->isPaused(); }

void XMLReader_X891::resume() { decoder_->resume(); }

EncodingAlgorithm* XMLReader_X891::getEncodingAlgorithm(unsigned int field, std::string& uri) {
  return decoder_->findAlgorithm(field, uri);
}

// --- The decoder ---

namespace fastinfoset {

X891Decoder::X891Decoder(const Handlers& handlers) : Decoder(kDialectX891, handlers) {
  setLimits({});
}

void X891Decoder::setLimits(const Limits& limits) {
  amplificationFactor_ = limits.amplificationFactor;
  amplificationThreshold_ = limits.amplificationThreshold;
  maximumTableOctets_ = limits.maximumTableOctets;
  maximumLiteralOctets_ = limits.maximumLiteralOctets;
  maximumDepth_ = limits.maximumDepth;
  maximumCoalescedOctets_ = limits.maximumCoalescedOctets;
  forgetAllowance();
}

X891Decoder::Limits X891Decoder::limits() const {
  return {amplificationFactor_,  amplificationThreshold_, maximumTableOctets_,
          maximumLiteralOctets_, maximumDepth_,           maximumCoalescedOctets_};
}

std::int32_t X891Decoder::columnHere() const {
  constexpr std::uint64_t kMost = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::min(input_.count(), kMost));
}

SAXParseException X891Decoder::exceptionHere(const std::string& message) const {
  return {message, kNoLine, columnHere()};
}

void X891Decoder::throwFailure(const std::string& message) const {
  gate_.prepareFailure();
  const SAXParseException exception = exceptionHere(
      document_.isVocabularyUnknown ? message + " (with the unknown external vocabulary " +
                                          document_.externalVocabulary.value_or("") + ")"
                                    : message);
  if (handlers_.error) handlers_.error->fatalError(exception);
  throw exception;
}

void X891Decoder::Document::renew() {
  xml::UniqueAttributes kept = std::move(attributes);
  kept.clear();
  *this = {};
  attributes = std::move(kept);
}

void X891Decoder::beginDocument() {
  gate_.begin(coalescesCharacters_, maximumCoalescedOctets_);
  Decoder::beginDocument();
  attributes_.clear();
  if (isUsed_) document_.renew();
  isUsed_ = true;
}

// --- Stopping and pausing ---
// An event closes the gate, and decoding halts with the step that the event belongs to.

void X891Decoder::checkNotPaused(const char* operation) const {
  if (gate_.isPaused())
    throw SAXException(std::string(operation) + " called while the reader is paused");
}

void X891Decoder::checkNotPulled() const {
  if (isPulled_) throw SAXException("stop or pause called of a pull reader's reader");
}

/// Reads a part of a document, until it is complete, fails, halts or lacks octets.
template <typename Read>
void X891Decoder::guardDocument(Read read) {
  try {
    read();
  } catch (...) {
    if (!gate_.absorbs()) throw;
  }
  if (input_.blocks() == nullptr) return;
  if (gate_.isStopped()) unusedOctets_ = blocks_->unread();
  if (gate_.isPaused() && !progress_.hasEnded) blocks_->keepUnread();
}

void X891Decoder::parse(std::istream& stream) {
  const ParseScope scope(parsing_);
  checkNotPaused("parse");
  guardDocument([&] { decodeStream(stream); });
}

void X891Decoder::parse(std::string_view block, bool isFinal) {
  const ParseScope scope(parsing_);
  checkNotPaused("parse");
  guardDocument([&] { decodeNextBlock(block, isFinal); });
}

void X891Decoder::resume() {
  const ParseScope scope(parsing_, "resume");
  if (!gate_.isPaused()) throw SAXException("resume called while the reader is not paused");
  guardDocument([&] {
    if (gate_.resume()) continueDocument();
  });
}

void X891Decoder::pause() {
  checkNotPulled();
  if (!parsing_) return;
  gate_.pause();
  halt();
}

void X891Decoder::stop() {
  checkNotPulled();
  if (!parsing_ && !isFed_ && !gate_.isPaused()) return;
  gate_.stop();
  halt();
  if (parsing_) return;
  isFed_ = false;
  if (blocks_ != nullptr) blocks_->clear();
}

}  // namespace fastinfoset

}  // namespace Tavrin
