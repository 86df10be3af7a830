// Without this, expat.h keeps the limits of entities to itself.
#define XML_DTD
#include <expat.h>

#include <algorithm>
#include <limits>
#include <new>

#include "../../sax/AtLimit.h"
#include "../../sax/ParseScope.h"
#include "DeclaredEncoding.h"
#include "ExpatNames.h"
#include "XML10Driver.h"

namespace Tavrin {

class XMLReader_XML10::Driver::Locator_XML10 : public Locator {
 public:
  explicit Locator_XML10(const XML10Document& document) : document_(document) {}

  std::string getPublicId() const override { return document_.current().entity->publicId; }
  std::string getSystemId() const override { return document_.current().entity->systemId; }
  std::int32_t getLineNumber() const override { return lineOf(document_.current().parser); }
  std::int32_t getColumnNumber() const override { return columnOf(document_.current().parser); }

 private:
  const XML10Document& document_;
};

XMLReader_XML10::Driver::Driver(const HandlerPointers& pointers, XML10Settings& settings)
    : EventTarget(pointers), settings_(settings) {}

XMLReader_XML10::Driver::~Driver() = default;

template <typename Parse>
void XMLReader_XML10::Driver::guardParse(Parse parse) {
  const ParseScope scope(parsing_);
  try {
    parse();
  } catch (...) {
    releaseParser();
    throw;
  }
}

void XMLReader_XML10::Driver::parse(std::istream& stream) {
  guardParse([&] {
    setupParser();
    if (parseStream(parser_.get(), stream, kBlockSize, chooseEncoding) != XML_STATUS_OK)
      reportError();
    endDocument();
    releaseParser();
  });
}

void XMLReader_XML10::Driver::parse(const void* data, unsigned long size, bool isFinal) {
  guardParse([&] {
    if (!parser_) setupParser();
    if (data == nullptr) size = 0;
    if (size == 0 && !isFinal) return;
    const auto* block = static_cast<const char*>(data);
    const XML_Status status = document_->start ? parseFirstBlocks(block, size, isFinal)
                                               : parseBlock(block, size, isFinal);
    if (status != XML_STATUS_OK) reportError();
    if (!isFinal) return;
    endDocument();
    releaseParser();
  });
}

void XMLReader_XML10::Driver::setupParser() {
  releaseParser();  // An abandoned document may still be open.
  const XML10Settings::Features& features = settings_.features;
  parser_.reset(features.namespaces ? XML_ParserCreateNS(nullptr, kXML10Separator)
                                    : XML_ParserCreate(nullptr));
  if (!parser_) throw std::bad_alloc();
  XML_Parser parser = parser_.get();
  document_ = std::make_unique<XML10Document>(parser, settings_);
  locator_ = std::make_unique<Locator_XML10>(*document_);
  Callbacks::install(parser, *this);
  const double factor =
      std::min<double>(settings_.amplificationFactor, std::numeric_limits<float>::max());
  XML_SetBillionLaughsAttackProtectionMaximumAmplification(parser, static_cast<float>(factor));
  XML_SetBillionLaughsAttackProtectionActivationThreshold(parser, settings_.amplificationThreshold);
  // The document begins with its XML declaration or the first other event: makeReady.
  ready_ = false;
}

void XMLReader_XML10::Driver::Callbacks::install(XML_Parser parser, Driver& driver) {
  EventTarget* target = &driver;
  XML_SetUserData(parser, target);
  // These get it in place of the parser, and beside it. expat only passes it on.
  XML_SetExternalEntityRefHandlerArg(parser, target);
  XML_SetUnknownEncodingHandler(parser, unknownEncodingHandler, target);
  XML_SetReturnNSTriplet(parser, 1);
  XML_SetParamEntityParsing(parser, XML_PARAM_ENTITY_PARSING_ALWAYS);

  XML_SetXmlDeclHandler(parser, xmlDeclHandler);
  XML_SetNamespaceDeclHandler(parser, startNamespaceHandler, endNamespaceHandler);
  XML_SetElementHandler(parser, startElementHandler, endElementHandler);
  XML_SetCharacterDataHandler(parser, characterDataHandler);
  XML_SetProcessingInstructionHandler(parser, processingInstructionHandler);
  XML_SetSkippedEntityHandler(parser, skippedEntityHandler);
  XML_SetNotationDeclHandler(parser, notationDeclHandler);
  XML_SetElementDeclHandler(parser, elementDeclHandler);
  XML_SetAttlistDeclHandler(parser, attlistDeclHandler);
  XML_SetEntityDeclHandler(parser, entityDeclHandler);
  XML_SetDoctypeDeclHandler(parser, startDoctypeDeclHandler, endDoctypeDeclHandler);
  XML_SetExternalEntityRefHandler(parser, externalEntityRefHandler);
  XML_SetCdataSectionHandler(parser, startCdataSectionHandler, endCdataSectionHandler);
  XML_SetCommentHandler(parser, commentHandler);
}

bool XMLReader_XML10::Driver::makeReady() {
  if (document_->failure) return false;
  ready_ = true;
  settings_.version = document_->version;
  settings_.standalone = document_->standalone;
  settings_.losses = 0;
  if (handlers.content) handlers.content->setDocumentLocator(locator_.get());
  if (handlers.content) handlers.content->startDocument();  // A handler may take itself off.
  return true;
}

void XMLReader_XML10::Driver::handlerThrew() {
  ready_ = false;
  if (!document_->failure) document_->failure = std::current_exception();
  // The parsers of the entities around this one end as soon as it is left.
  XML_StopParser(document_->current().parser, XML_FALSE);
}

void XMLReader_XML10::Driver::chooseEncoding(XML_Parser parser, std::string_view start) {
  static_cast<Driver*>(static_cast<EventTarget*>(XML_GetUserData(parser)))
      ->document_->noteStart(start);
  if (!declaresUTF8ByAnotherName(start.substr(0, kLongestDeclaration)).value_or(false)) return;
  if (XML_SetEncoding(parser, "UTF-8") != XML_STATUS_OK) throw std::bad_alloc();
}

XML_Status XMLReader_XML10::Driver::parseFirstBlocks(const char* block, unsigned long size,
                                                     bool isFinal) {
  // Nothing is copied where the first block tells it, as it most often does.
  std::string& start = *document_->start;
  const std::string_view front(block, std::min<std::size_t>(size, kLongestDeclaration));
  const bool isFirst = start.empty();
  if (!isFirst) start += front;
  const std::string_view looked = isFirst ? front : std::string_view(start);
  if (!isFinal && !declaresUTF8ByAnotherName(looked.substr(0, kLongestDeclaration))) {
    if (isFirst) start = front;
    return XML_STATUS_OK;
  }
  chooseEncoding(parser_.get(), looked);
  const std::string kept = std::move(start);
  document_->start.reset();
  if (isFirst) return parseBlock(block, size, isFinal);
  const bool isAll = front.size() == size;
  const XML_Status status = parseBlock(kept.data(), kept.size(), isFinal && isAll);
  if (status != XML_STATUS_OK || isAll) return status;
  return parseBlock(block + front.size(), size - front.size(), isFinal);
}

XML_Status XMLReader_XML10::Driver::parseBlock(const char* block, unsigned long size,
                                               bool isFinal) {
  // expat takes no more at a time than a signed 32-bit count.
  constexpr unsigned long kMost = 1UL << 30;
  for (; size > kMost; size -= kMost, block += kMost) {
    const XML_Status status = XML_Parse(parser_.get(), block, static_cast<int>(kMost), XML_FALSE);
    if (status != XML_STATUS_OK) return status;
  }
  return XML_Parse(parser_.get(), block, static_cast<int>(size), isFinal);
}

void XMLReader_XML10::Driver::reportError() {
  if (document_->failure) std::rethrow_exception(document_->failure);
  if (!ready_) makeReady();
  failAsParser();
}

void XMLReader_XML10::Driver::failAsParser() {
  const XML_Error code = XML_GetErrorCode(document_->current().parser);
  // That is no fault of the document.
  if (code == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
  std::string message = XML_ErrorString(code);
  if (code == XML_ERROR_UNKNOWN_ENCODING) message += document_->encodingProblem;
  if (code == XML_ERROR_AMPLIFICATION_LIMIT_BREACH) {
    message = atLimit(message, properties::entityAmplificationFactor);
  }
  fail(message);
}

SAXParseException XMLReader_XML10::Driver::exceptionAt(const std::string& message,
                                                       const XML10Position& position) const {
  const DeclaredEntity& entity = *document_->current().entity;
  const bool isDocument = document_->open.size() == 1;
  return {isDocument
              ? message
              : message + " (in the entity " + entity.name + ", \"" + entity.systemId + "\")",
          position.line, position.column};
}

void XMLReader_XML10::Driver::failAt(const std::string& message, const XML10Position& position) {
  const SAXParseException exception = exceptionAt(message, position);
  if (handlers.error) handlers.error->fatalError(exception);
  throw exception;
}

void XMLReader_XML10::Driver::endDocument() {
  if (document_->failure) std::rethrow_exception(document_->failure);
  if (!ready_) makeReady();
  if (handlers.content) handlers.content->endDocument();
}

std::uint64_t XML10Document::octetsRead() const {
  std::uint64_t octets = entityOctets;
  for (const OpenEntity& entity : open) {
    octets +=
        static_cast<std::uint64_t>(std::max(XML_GetCurrentByteIndex(entity.parser), XML_Index{0}));
  }
  return octets;
}

void XMLReader_XML10::Driver::addDefaults(std::uint64_t octets) {
  std::uint64_t& added = document_->defaultOctets;
  added += octets;
  if (added <= document_->amplificationThreshold) return;
  // As expat counts it for entities: what is there in the end, for what was read.
  const auto read = static_cast<double>(document_->octetsRead());
  if (read + static_cast<double>(added) <= document_->amplificationFactor * read) return;
  fail(atLimit("limit on input amplification factor (from defaults of attributes) breached",
               properties::entityAmplificationFactor));
}

void XMLReader_XML10::Driver::releaseParser() {
  locator_.reset();
  parser_.reset();
  document_.reset();
  text = std::string();
}

}  // namespace Tavrin
