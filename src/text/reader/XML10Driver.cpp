// expat declares the functions for the limits of entities only then.
#define XML_DTD
#include <expat.h>

#include <algorithm>
#include <limits>
#include <new>
#include <sstream>
#include <typeinfo>

#include "../../sax/AtLimit.h"
#include "../../sax/ParseScope.h"
#include "Callbacks.h"
#include "CharacterEncodings.h"
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

XML_Status XML10Driver::continueParse() {
  XML_Status status = XML_STATUS_OK;
  const bool isStream = document_->stream != nullptr;
  if (document_->scanner) {
    const bool areLast = !isStream && document_->isFinal && document_->rest.empty();
    status = scan(document_->waiting.all(), areLast);
    if (status != XML_STATUS_OK) return status;
  } else {
    XML_ParsingStatus parsing = {};
    XML_GetParsingStatus(parser_.get(), &parsing);
    // Where what was read has ended in an entity, expat was not suspended.
    if (parsing.parsing == XML_SUSPENDED) status = XML_ResumeParser(parser_.get());
    if (status != XML_STATUS_OK) return status;
    XML_GetParsingStatus(parser_.get(), &parsing);
    if (parsing.parsing == XML_FINISHED) return status;
    nameOpenElements();
  }
  const std::string rest = std::exchange(document_->rest, {});
  const bool isFinal = !isStream && document_->isFinal;
  if (!rest.empty()) status = parseBlock(rest.data(), rest.size(), isFinal);
  return isStream && status == XML_STATUS_OK ? parseEntity(*document_->stream, false) : status;
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

namespace {

/// How many octets a stream's buffer has, and no more than `most`; 0 at its end. Where it has none,
/// it waits for one.
std::streamsize countArrived(std::streambuf* source, std::streamsize most) {
  if (source == nullptr || source->sgetc() == std::streambuf::traits_type::eof()) return 0;
  return std::clamp<std::streamsize>(source->in_avail(), 1, most);
}

/// Whether a stream's buffer has no more octets, as far as it can be told without waiting.
bool isKnownToEnd(std::streambuf& source) {
  if (source.in_avail() < 0) return true;
  const bool neverWaits = typeid(source) == typeid(std::stringbuf);  // A derived class may.
  return neverWaits && source.sgetc() == std::streambuf::traits_type::eof();
}

bool showsEncoding(std::string_view start) {
  return encodingOfEntity(start.substr(0, kLongestDeclaration)).has_value();
}

}  // namespace

XML_Status XML10Driver::parseEntity(std::istream& stream, bool isFirst) {
  gate_.settle();  // The stream may throw.
  // The stream's buffer is read, so that the stream's state has no influence.
  std::streamsize arrived = countArrived(stream.rdbuf(), kMostRead);
  for (; arrived > 0; isFirst = false) {
    // Room for no more than that: to allocate it takes longer than to read a small document.
    const auto size = std::max<std::streamsize>(arrived, kLongestDeclaration);
    char* const block = roomFor(static_cast<int>(size));
    if (block == nullptr) return XML_STATUS_ERROR;
    std::string_view octets;
    do {
      char* const free = block + octets.size();
      const std::streamsize count = stream.rdbuf()->sgetn(free, arrived);
      octets = {block, octets.size() + static_cast<std::size_t>(count)};
      const bool needsMore = isFirst && !showsEncoding(octets);
      arrived = needsMore ? countArrived(stream.rdbuf(), block + size - octets.end()) : 0;
    } while (arrived > 0);
    const bool wasScanned = isScanned();
    if (isFirst) chooseEncoding(octets);
    // After a block that is not the last one, expat counts its lines. Measured: small documents are
    // read in a tenth less time where the last one is known.
    const bool isLast = isKnownToEnd(*stream.rdbuf());
    const XML_Status status = wasScanned ? parseScanned(octets, isLast) : parseRoom(octets, isLast);
    if (status != XML_STATUS_OK || isLast) return status;
    if (isPaused() && !document_->isInExternalEntity()) return XML_STATUS_SUSPENDED;
    gate_.settle();
    nameOpenElements();
    arrived = countArrived(stream.rdbuf(), kMostRead);
  }
  if (isScanned()) return scan(document_->waiting.all(), true);
  if (isInProlog()) return parseProlog({}, true);
  const OpenEntity& entity = document_->current();
  return entity.recoder ? parseRecoded(entity.parser, *entity.recoder, {}, true)
                        : XML_Parse(entity.parser, "", 0, XML_TRUE);
}

/// Room for the next octets of the current entity, or null.
char* XML10Driver::roomFor(int size) {
  if (isScanned() || isInProlog()) {
    return document_->waiting.roomFor(static_cast<std::size_t>(size));
  }
  return static_cast<char*>(XML_GetBuffer(document_->current().parser, size));
}

/// Parses what has been written there.
XML_Status XML10Driver::parseRoom(std::string_view octets, bool areLast) {
  if (isInProlog()) {
    document_->waiting.add(octets.size());
    const XML_Status status = parseProlog(octets, areLast);
    if (!isScanned()) document_->waiting = {};
    return status;
  }
  const OpenEntity& entity = document_->current();
  return entity.recoder ? parseRecoded(entity.parser, *entity.recoder, octets, areLast)
                        : XML_ParseBuffer(entity.parser, static_cast<int>(octets.size()), areLast);
}

/// Likewise, if it was to be scanned.
XML_Status XML10Driver::parseScanned(std::string_view octets, bool areLast) {
  if (!isScanned()) return parseBlock(octets.data(), octets.size(), areLast);
  document_->waiting.add(octets.size());
  return scan(document_->waiting.all(), areLast);
}

XML_Status XML10Driver::parseRecoded(XML_Parser parser, Recoder& recoder, std::string_view octets,
                                     bool areLast) {
  const std::string_view text = recoder.convert(octets, areLast);
  // Where the octets were not valid, expat fails here and now.
  const bool isLast = areLast || recoder.hasFailed();
  return XML_Parse(parser, text.data(), static_cast<int>(text.size()),
                   isLast ? XML_TRUE : XML_FALSE);
}

void XML10Driver::chooseEncoding(std::string_view start) {
  const std::string_view first = start.substr(0, kLongestDeclaration);
  const EntityEncoding encoding = encodingOfEntity(first).value_or(EntityEncoding{});
  if (isScanned() && encoding.way != EntityEncoding::Way::Expat) createParser();
  if (encoding.way == EntityEncoding::Way::Recoded) {
    document_->current().recoder = std::make_unique<Recoder>(encoding.name);
  }
  if (encoding.way != EntityEncoding::Way::Expat) {
    XML_Parser parser = document_->current().parser;
    if (XML_SetEncoding(parser, "UTF-8") != XML_STATUS_OK) throw std::bad_alloc();
    return;
  }
  const auto isAt = [start](std::size_t i, char octet) {
    return i < start.size() && start[i] == octet;
  };
  // UTF-16, with a byte order mark or without.
  const bool isUTF16 = isAt(0, '\xFE') || isAt(0, '\xFF') || isAt(0, '\0') || isAt(1, '\0');
  if (isUTF16) document_->checksNames = true;
}

XML_Status XML10Driver::parseFirstBlocks(const char* block, unsigned long size, bool isFinal) {
  // Most often the first block is enough to find the encoding. Then it is not copied.
  std::string& start = *document_->start;
  const std::string_view front(block, std::min<std::size_t>(size, kLongestDeclaration));
  const bool isFirst = start.empty();
  if (!isFirst) start += front;
  const std::string_view known = isFirst ? front : std::string_view(start);
  if (!isFinal && !showsEncoding(known)) {
    if (isFirst) start = front;
    return XML_STATUS_OK;
  }
  chooseEncoding(known);
  const std::string kept = std::move(start);
  document_->start.reset();
  if (isFirst) return parseBlock(block, size, isFinal);
  if (isScanned()) {
    document_->waiting.append(kept.data(), kept.size() - front.size());
    return scanBlock(block, size, isFinal);
  }
  const bool isAll = front.size() == size;
  const XML_Status status = parseBlock(kept.data(), kept.size(), isFinal && isAll);
  if (isAll) return status;
  if (status == XML_STATUS_SUSPENDED) {
    document_->rest.append(block + front.size(), size - front.size());
  }
  if (status != XML_STATUS_OK) return status;
  return parseBlock(block + front.size(), size - front.size(), isFinal);
}

XML_Status XML10Driver::parseBlock(const char* block, unsigned long size, bool isFinal) {
  if (isScanned()) return scanBlock(block, size, isFinal);
  if (isInProlog()) return parseProlog({block, size}, isFinal);
  Recoder* const recoder = document_->current().recoder.get();
  for (; recoder && size > kMostRead; size -= kMostRead, block += kMostRead) {
    const XML_Status status = parseRecoded(parser_.get(), *recoder, {block, kMostRead}, false);
    if (status == XML_STATUS_SUSPENDED) {
      document_->rest.assign(block + kMostRead, size - kMostRead);
    }
    if (status != XML_STATUS_OK) return status;
    nameOpenElements();
  }
  // To expat, the size is an int.
  constexpr unsigned long kMost = 1UL << 30;
  for (; size > kMost; size -= kMost, block += kMost) {
    const XML_Status status = XML_Parse(parser_.get(), block, static_cast<int>(kMost), XML_FALSE);
    if (status == XML_STATUS_SUSPENDED) document_->rest.assign(block + kMost, size - kMost);
    if (status != XML_STATUS_OK) return status;
    nameOpenElements();
  }
  const XML_Status status = recoder
                                ? parseRecoded(parser_.get(), *recoder, {block, size}, isFinal)
                                : XML_Parse(parser_.get(), block, static_cast<int>(size), isFinal);
  if (status == XML_STATUS_OK && !isFinal) nameOpenElements();
  return status;
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
