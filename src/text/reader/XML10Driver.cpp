// expat declares the functions for the limits of entities only then.
#define XML_DTD
#include <expat.h>

#include <algorithm>
#include <limits>
#include <new>

#include "../../sax/AtLimit.h"
#include "../../sax/ParseScope.h"
#include "Callbacks.h"
#include "XML10Driver.h"

namespace Tavrin::text {

namespace {

class Locator_XML10 : public OctetLocator {
 public:
  explicit Locator_XML10(const XML10Document& document) : document_(document) {}

  std::string getPublicId() const override { return document_.current().entity->publicId; }
  std::string getSystemId() const override { return document_.current().entity->systemId; }
  std::int32_t getLineNumber() const override {
    return static_cast<std::int32_t>(document_.current().line());
  }
  std::int32_t getColumnNumber() const override {
    return static_cast<std::int32_t>(document_.current().column());
  }
  std::uint64_t getOctetOffset() const override { return document_.current().octetsRead(); }

 private:
  const XML10Document& document_;
};

}  // namespace

template <typename Parse>
void XML10Driver::guardParse(Parse parse) {
  try {
    parse();
  } catch (...) {
    if (!gate_.absorbs()) {
      releaseParser();
      throw;
    }
  }
  if (gate_.isStopped()) releaseParser();
}

void XML10Driver::parse(std::istream& stream) {
  const ParseScope scope(parsing_);
  checkNotPaused("parse");
  guardParse([&] {
    beginDocument();
    setReparseDeferral();
    document_->stream = &stream;
    finishParse(parseEntity(stream, true), true);
  });
}

void XML10Driver::parse(const void* data, unsigned long size, bool isFinal) {
  const ParseScope scope(parsing_);
  checkNotPaused("parse");
  guardParse([&] {
    if (!document_) beginDocument();
    if (data == nullptr) size = 0;
    if (size == 0 && !isFinal) return;
    setReparseDeferral();
    document_->isFinal = isFinal;
    const auto* block = static_cast<const char*>(data);
    const XML_Status status = document_->start ? parseFirstBlocks(block, size, isFinal)
                                               : parseBlock(block, size, isFinal);
    finishParse(status, isFinal);
  });
}

void XML10Driver::finishParse(XML_Status status, bool isFinal) {
  if (document_->failure) std::rethrow_exception(document_->failure);
  if (gate_.isStopped()) return;
  if (status == XML_STATUS_ERROR) reportError();
  if (status == XML_STATUS_OK && isFinal) endDocument();
}

// --- Stopping and pausing ---

void XML10Driver::checkNotPaused(const char* operation) const {
  if (!isPaused()) return;
  throw SAXException(std::string(operation) + " called while the reader is paused");
}

void XML10Driver::stop() {
  if (!document_) return;
  gate_.stop();
  if (parsing_) {
    stopParser(XML_FALSE);
  } else {
    releaseParser();
  }
}

void XML10Driver::pause() {
  if (!parsing_) return;
  gate_.pause();
  suspendOutsideOfEntities();
}

/// expat cannot be suspended in a parameter entity, and after a suspension in an internal entity it
/// does not check that the elements of that entity end in it. The gate keeps what follows in an
/// entity of either kind, and the document's parser is suspended when the entity has been left.
void XML10Driver::suspendOutsideOfEntities() {
  if (document_->scanner) return document_->scanner->halt();
  if (!document_->isInExternalEntity() && !isInInternalEntity()) stopParser(XML_TRUE);
}

void XML10Driver::stopParser(XML_Bool isResumable) {
  if (document_->scanner) return document_->scanner->halt();
  XML_Parser parser = document_->current().parser;
  XML_ParsingStatus status = {};
  XML_GetParsingStatus(parser, &status);
  // A parser that has not begun or is at its end would only record another error.
  if (status.parsing == XML_PARSING) XML_StopParser(parser, isResumable);
}

void XML10Driver::resume() {
  const ParseScope scope(parsing_, "resume");
  if (!isPaused()) throw SAXException("resume called while the reader is not paused");
  guardParse([&] {
    if (!gate_.resume()) return;
    if (document_->hasEnded) return releaseParser();
    const bool isFinal = document_->stream != nullptr || document_->isFinal;
    finishParse(continueParse(), isFinal);
  });
}

bool XML10Driver::pull() {
  const ParseScope scope(parsing_);
  bool isHalted = false;
  guardParse([&] {
    isHalted = document_->scanner->pull();
    if (!isHalted) isHalted = pullRarer();
  });
  return isHalted;
}

bool XML10Driver::pullRarer() {
  const XML10Scanner::Outcome outcome = document_->scanner->goOn();
  if (document_->scanner->isHaltedHere()) return true;
  finishParse(afterScan(outcome, document_->isFinal), document_->isFinal);
  return isHaltedHere();
}

void XML10Driver::beginDocument() {
  releaseParser();  // An abandoned document may still be open.
  maximumCoalescedOctets_ = settings.limits.maximumCoalescedOctets;
  gate_.begin(settings.features.coalesceCharacters, maximumCoalescedOctets_);
  document_ = std::make_unique<XML10Document>(settings);
  locator_ = std::make_unique<Locator_XML10>(*document_);
  if (settings.textScanner == XML10Settings::kExpat) {
    createParser();
  } else {
    const XML10Settings::Features& features = settings.features;
    const XML10Scanner::Settings ways = {.splitsNames = features.namespaces,
                                         .listsDeclarations = features.namespacePrefixes,
                                         .namesXmlns = features.xmlnsURIs};
    ScannedEvents& events = pulledEvents != nullptr ? *pulledEvents : *this;
    document_->scanner = std::make_unique<XML10Scanner>(events, ways);
    document_->current().scanner = document_->scanner.get();
  }
  // makeReady announces the document, at its XML declaration or the first other event.
  ready_ = false;
}

/// The document's parser, instead of the scanner.
void XML10Driver::createParser() {
  const XML10Settings& current = document_->settings;
  parser_.reset(current.features.namespaces ? XML_ParserCreateNS(nullptr, kXML10Separator)
                                            : XML_ParserCreate(nullptr));
  if (!parser_) throw std::bad_alloc();
  XML_Parser parser = parser_.get();
  document_->open.front().parser = parser;
  document_->open.front().scanner = nullptr;
  document_->scanner.reset();
  installDocumentCallbacks();
  const XMLReader_XML10::Limits& limits = current.limits;
  const double factor =
      std::min<double>(limits.entityAmplificationFactor, std::numeric_limits<float>::max());
  XML_SetBillionLaughsAttackProtectionMaximumAmplification(parser, static_cast<float>(factor));
  XML_SetBillionLaughsAttackProtectionActivationThreshold(parser,
                                                          limits.entityAmplificationThreshold);
}

void XML10Driver::installDocumentCallbacks() {
  installCallbacks(parser_.get(), *this);
  XML_SetXmlDeclHandler(parser_.get(), on<&XML10Driver::xmlDecl>);
  setUnknownEncodingHandler(parser_.get());
}

void XML10Driver::setReparseDeferral() {
#ifdef TAVRIN_HAS_REPARSE_DEFERRAL
  if (parser_ == nullptr) return;  // The scanner never waits.
  XML_SetReparseDeferralEnabled(parser_.get(), settings.reparseDeferral ? XML_TRUE : XML_FALSE);
#endif
}

bool XML10Driver::makeReady() {
  if (document_->failure) return false;
  ready_ = true;
  facts = {document_->version, document_->standalone};
  if (handlers.content) handlers.content->setDocumentLocator(locator_.get());
  if (handlers.content) handlers.content->startDocument();  // A handler may unset itself.
  return true;
}

void XML10Driver::handlerThrew() {
  ready_ = false;
  if (!document_->failure) document_->failure = std::current_exception();
  // The parsers of the entities around this one stop when it is left.
  XML_StopParser(document_->current().parser, XML_FALSE);
}

void XML10Driver::reportError() {
  if (!ready_) makeReady();
  failAsParser();
}

void XML10Driver::failAsParser() {
  const XML_Error code = XML_GetErrorCode(document_->current().parser);
  if (code == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
  std::string message = XML_ErrorString(code);
  if (code == XML_ERROR_UNKNOWN_ENCODING) message += document_->encodingProblem;
  message += describeFailure(code);
  if (code == XML_ERROR_AMPLIFICATION_LIMIT_BREACH) {
    message = atLimit(message, properties::entityAmplificationFactor);
  }
  fail(message);
}

SAXParseException XML10Driver::exceptionAt(const std::string& message,
                                           const Position& position) const {
  const DeclaredEntity& entity = *document_->current().entity;
  const std::string place = document_->isInExternalEntity() ? " (in the entity " + entity.name +
                                                                  ", \"" + entity.systemId + "\")"
                                                            : std::string();
  return {message + place, position.line, position.column};
}

void XML10Driver::failAt(const std::string& message, const Position& position) {
  gate_.prepareFailure();
  const SAXParseException exception = exceptionAt(message, position);
  if (handlers.error) handlers.error->fatalError(exception);
  throw exception;
}

void XML10Driver::endDocument() {
  if (!ready_) makeReady();
  document_->hasEnded = true;
  if (handlers.content) handlers.content->endDocument();
  if (!isPaused()) releaseParser();
}

void XML10Driver::releaseParser() {
  gate_.end();
  locator_.reset();
  parser_.reset();
  document_.reset();
  releaseMemory();
}

}  // namespace Tavrin::text
