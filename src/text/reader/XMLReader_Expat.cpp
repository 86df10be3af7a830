#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLReader_Expat.h>

#include "../../sax/ParseScope.h"
#include "ExpatDriver.h"
#include "ExpatNames.h"

namespace Tavrin {

void XMLReader_Expat::ParserDeleter::operator()(XML_ParserStruct* parser) const {
  XML_ParserFree(parser);
}

const XMLReaderType XMLReader_Expat::type_("Expat", &XMLReader_Expat::create);

XMLReader_Expat::XMLReader_Expat() : driver_(std::make_unique<Driver>(*this)) {}

XMLReader_Expat::~XMLReader_Expat() = default;

std::unique_ptr<XMLReader> XMLReader_Expat::create() { return std::make_unique<XMLReader_Expat>(); }

void XMLReader_Expat::setProperty(const std::string& name, void* value) {
  if (name == properties::lexicalHandler) {
    lexicalHandler_ = static_cast<LexicalHandler*>(value);
  } else if (name == properties::declarationHandler) {
    declHandler_ = static_cast<DeclHandler*>(value);
  } else {
    XMLReader::setProperty(name, value);
  }
}

void* XMLReader_Expat::getProperty(const std::string& name) {
  if (name == properties::lexicalHandler) return lexicalHandler_;
  if (name == properties::declarationHandler) return declHandler_;
  return XMLReader::getProperty(name);
}

void XMLReader_Expat::parse(std::istream& stream) { driver_->parse(stream); }

void XMLReader_Expat::parse(const void* data, unsigned long size, bool isFinal) {
  driver_->parse(data, size, isFinal);
}

void XMLReader_Expat::setupParser() {
  driver_->releaseParser();  // An abandoned document may still be open.
  std::unique_ptr<XML_ParserStruct, ParserDeleter> parser(
      XML_ParserCreateNS(nullptr, kExpatSeparator));
  if (!parser) throw SAXException("Cannot create expat xml parser");
  auto locator = std::make_unique<Locator_Expat>(parser.get());
  Driver::Callbacks::install(parser.get(), *driver_);
  // A parser that is kept is one that the next block can be given to, so both are kept at once.
  locator_ = std::move(locator);
  parser_ = std::move(parser);
  if (contentHandler_) contentHandler_->setDocumentLocator(locator_.get());
  if (contentHandler_) contentHandler_->startDocument();  // A handler may take itself off.
}

XMLReader_Expat::Driver::Driver(XMLReader_Expat& reader)
    : EventTarget({reader.contentHandler_, reader.errorHandler_, reader.entityResolver_,
                   reader.dtdHandler_, reader.declHandler_, reader.lexicalHandler_}),
      reader_(reader) {}

// SAX failures leave the reader idle, ready for another document. They leave as the two types that
// callers of parse know, whatever was derived from them. Exceptions of other kinds, from a handler
// or a stream, pass through, and the document stays open.
template <typename Parse>
void XMLReader_Expat::Driver::guardParse(Parse parse) {
  const ParseScope scope(parsing_);
  try {
    parse();
  } catch (const SAXParseException& exception) {
    releaseParser();
    throw SAXParseException(exception);
  } catch (const SAXException& exception) {
    releaseParser();
    throw SAXException(exception);
  }
}

void XMLReader_Expat::Driver::parse(std::istream& stream) {
  guardParse([&] {
    reader_.setupParser();
    const XML_Status status = parseStream(reader_.parser_.get(), stream, kBlockSize);
    if (status == XML_STATUS_ERROR) reportError();
    if (status == XML_STATUS_OK) endDocument();
    releaseParser();
  });
}

void XMLReader_Expat::Driver::parse(const void* data, unsigned long size, bool isFinal) {
  guardParse([&] {
    if (!reader_.parser_) reader_.setupParser();
    if (data == nullptr) {
      if (isFinal) releaseParser();
      return;
    }
    const XML_Status status = XML_Parse(reader_.parser_.get(), static_cast<const char*>(data),
                                        static_cast<std::int32_t>(size), isFinal);
    if (status == XML_STATUS_ERROR) reportError();
    if (!isFinal) return;
    if (status == XML_STATUS_OK) endDocument();
    releaseParser();
  });
}

void XMLReader_Expat::Driver::endDocument() {
  if (handlers.content) handlers.content->endDocument();
}

void XMLReader_Expat::Driver::reportError() {
  XML_Parser parser = reader_.parser_.get();
  const SAXParseException exception(XML_ErrorString(XML_GetErrorCode(parser)), lineOf(parser),
                                    columnOf(parser));
  if (handlers.error) handlers.error->fatalError(exception);
  throw exception;
}

void XMLReader_Expat::Driver::handlerThrew() { XML_StopParser(reader_.parser_.get(), XML_FALSE); }

void XMLReader_Expat::Driver::releaseParser() {
  reader_.locator_.reset();
  reader_.parser_.reset();
  releaseText();
  element_.release();
}

void XMLReader_Expat::Driver::Callbacks::install(XML_Parser parser, Driver& driver) {
  EventTarget* target = &driver;
  XML_SetUserData(parser, target);
  // The external entity callback gets this in place of the parser. expat only passes it on.
  XML_SetExternalEntityRefHandlerArg(parser, target);
  XML_SetReturnNSTriplet(parser, 1);
  XML_SetParamEntityParsing(parser, XML_PARAM_ENTITY_PARSING_ALWAYS);

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

}  // namespace Tavrin
