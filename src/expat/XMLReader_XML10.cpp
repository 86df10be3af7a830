// Without this, expat.h keeps the limits of entities to itself.
#define XML_DTD
#include <Tavrin/XMLReader_XML10.h>
#include <expat.h>

#include <algorithm>
#include <limits>

#include "XML10Document.h"

namespace Tavrin {

class XMLReader_XML10::Locator_XML10 : public Locator {
 public:
  explicit Locator_XML10(const Document& document) : document_(document) {}

  std::string getPublicId() const override { return document_.current().entity->publicId; }
  std::string getSystemId() const override { return document_.current().entity->systemId; }
  std::int32_t getLineNumber() const override { return lineOf(document_.current().parser); }
  std::int32_t getColumnNumber() const override { return columnOf(document_.current().parser); }

 private:
  const Document& document_;
};

const XMLReaderType XMLReader_XML10::type_("XML10", &XMLReader_XML10::create);

XMLReader_XML10::XMLReader_XML10() : settings_(std::make_unique<Settings>()) {}

XMLReader_XML10::~XMLReader_XML10() = default;

std::unique_ptr<XMLReader> XMLReader_XML10::create() { return std::make_unique<XMLReader_XML10>(); }

XML_ParserStruct* XMLReader_XML10::createParser() const {
  return settings_->features.namespaces ? XMLReader_Expat::createParser()
                                        : XML_ParserCreate(nullptr);
}

std::unique_ptr<Locator> XMLReader_XML10::createLocator() const {
  return std::make_unique<Locator_XML10>(*document_);
}

void XMLReader_XML10::configureParser() {
  document_ = std::make_unique<Document>(parser(), *settings_);
  XMLReader_Expat::configureParser();
  Callbacks::install(parser(), settings_->features);
  XML_SetUnknownEncodingHandler(parser(), Callbacks::unknownEncodingHandler, this);
  const double factor =
      std::min<double>(settings_->amplificationFactor, std::numeric_limits<float>::max());
  XML_SetBillionLaughsAttackProtectionMaximumAmplification(parser(), static_cast<float>(factor));
  XML_SetBillionLaughsAttackProtectionActivationThreshold(parser(),
                                                          settings_->amplificationThreshold);
}

void XMLReader_XML10::Callbacks::install(XML_Parser parser, const Settings::Features& features) {
  XML_SetXmlDeclHandler(parser, xmlDeclHandler);
  XML_SetElementHandler(parser, startElementHandler, endElementHandler);
  if (features.namespaces) XML_SetStartNamespaceDeclHandler(parser, startNamespaceHandler);
  XML_SetSkippedEntityHandler(parser, skippedEntityHandler);
  XML_SetStartDoctypeDeclHandler(parser, startDoctypeDeclHandler);
  XML_SetNotationDeclHandler(parser, notationDeclHandler);
  XML_SetEntityDeclHandler(parser, entityDeclHandler);
  XML_SetElementDeclHandler(parser, elementDeclHandler);
  XML_SetAttlistDeclHandler(parser, attlistDeclHandler);
  XML_SetExternalEntityRefHandler(parser, externalEntityRefHandler);
}

// The document begins with its XML declaration or the first other event: makeReady.
void XMLReader_XML10::beginDocument() { ready_ = false; }

bool XMLReader_XML10::makeReady() {
  if (document_->failure) return false;
  ready_ = true;
  settings_->version = document_->version;
  settings_->standalone = document_->standalone;
  announceDocument();
  return true;
}

void XMLReader_XML10::handlerThrew() {
  ready_ = false;
  if (!document_->failure) document_->failure = std::current_exception();
  // The parsers of the entities around this one end as soon as it is left.
  XML_StopParser(document_->current().parser, XML_FALSE);
}

int XMLReader_XML10::parseBlock(const void* data, unsigned long size, bool isFinal) {
  // expat takes no more at a time than a signed 32-bit count.
  constexpr unsigned long kMost = 1UL << 30;
  const char* block = static_cast<const char*>(data);
  for (; size > kMost; size -= kMost, block += kMost) {
    const int status = XML_Parse(parser(), block, static_cast<int>(kMost), XML_FALSE);
    if (status != XML_STATUS_OK) return status;
  }
  return XML_Parse(parser(), block, static_cast<int>(size), isFinal);
}

void XMLReader_XML10::reportError() {
  if (document_->failure) std::rethrow_exception(document_->failure);
  if (!ready_) makeReady();
  failAsParser();
}

void XMLReader_XML10::failAsParser() {
  const XML_Error code = XML_GetErrorCode(document_->current().parser);
  std::string message = XML_ErrorString(code);
  if (code == XML_ERROR_UNKNOWN_ENCODING) message += document_->encodingProblem;
  fail(message);
}

void XMLReader_XML10::fail(const std::string& message) {
  const Document::OpenEntity& current = document_->current();
  const DeclaredEntity& entity = *current.entity;
  const bool isDocument = document_->open.size() == 1;
  const SAXParseException exception(
      isDocument ? message
                 : message + " (in the entity " + entity.name + ", \"" + entity.systemId + "\")",
      lineOf(current.parser), columnOf(current.parser));
  if (errorHandler_) errorHandler_->fatalError(exception);
  throw exception;
}

void XMLReader_XML10::endDocument() {
  if (document_->failure) std::rethrow_exception(document_->failure);
  if (!ready_) makeReady();
  XMLReader_Expat::endDocument();
}

void XMLReader_XML10::leaveParse() {
  releaseParser();
  throw;
}

void XMLReader_XML10::releaseParser() {
  XMLReader_Expat::releaseParser();
  document_.reset();
}

}  // namespace Tavrin
