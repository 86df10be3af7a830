#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLReader_Expat.h>
#include <expat.h>

#include <cstdint>

#include "../sax/ParseScope.h"
#include "Event.h"

namespace Tavrin {

class XMLReader_Expat::Locator_Expat : public Locator {
 public:
  explicit Locator_Expat(XML_Parser parser) : parser_(parser) {}

  std::string getPublicId() const override { return {}; }
  std::string getSystemId() const override { return {}; }
  std::int32_t getLineNumber() const override { return lineOf(parser_); }
  std::int32_t getColumnNumber() const override { return columnOf(parser_); }

 private:
  XML_Parser parser_;
};

void XMLReader_Expat::ParserDeleter::operator()(XML_ParserStruct* parser) const {
  XML_ParserFree(parser);
}

const XMLReaderType XMLReader_Expat::type_("Expat", &XMLReader_Expat::create);

XMLReader_Expat::XMLReader_Expat() = default;

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

void XMLReader_Expat::setupParser() {
  releaseParser();  // An abandoned document may still be open.
  parser_.reset(createParser());
  if (!parser_) throw SAXException("Cannot create expat xml parser");
  configureParser();
  event_ = std::make_unique<Event>();
  locator_ = createLocator();
  beginDocument();
}

XML_ParserStruct* XMLReader_Expat::createParser() const {
  return XML_ParserCreateNS(nullptr, kNameSeparator);
}

std::unique_ptr<Locator> XMLReader_Expat::createLocator() const {
  return std::make_unique<Locator_Expat>(parser_.get());
}

void XMLReader_Expat::configureParser() { Callbacks::install(parser_.get(), this); }

void XMLReader_Expat::beginDocument() { announceDocument(); }

void XMLReader_Expat::announceDocument() {
  if (contentHandler_) contentHandler_->setDocumentLocator(locator_.get());
  if (contentHandler_) contentHandler_->startDocument();  // A handler may take itself off.
}

bool XMLReader_Expat::makeReady() { return true; }

void XMLReader_Expat::handlerThrew() { XML_StopParser(parser_.get(), XML_FALSE); }

int XMLReader_Expat::parseBlock(const void* data, unsigned long size, bool isFinal) {
  return XML_Parse(parser_.get(), static_cast<const char*>(data), static_cast<std::int32_t>(size),
                   isFinal);
}

void XMLReader_Expat::reportError() {
  const SAXParseException exception(XML_ErrorString(XML_GetErrorCode(parser_.get())),
                                    lineOf(parser_.get()), columnOf(parser_.get()));
  if (errorHandler_) errorHandler_->fatalError(exception);
  throw exception;
}

void XMLReader_Expat::endDocument() {
  if (contentHandler_) contentHandler_->endDocument();
}

void XMLReader_Expat::releaseParser() {
  locator_.reset();
  parser_.reset();
  event_.reset();
}

// SAX failures leave the reader idle, ready for another document. They leave as the two types that
// callers of parse know, whatever was derived from them. Exceptions of other kinds, from a handler
// or a stream, pass through, and the document stays open.
void XMLReader_Expat::leaveParse() {
  try {
    throw;
  } catch (const SAXParseException& exception) {
    releaseParser();
    throw SAXParseException(exception);
  } catch (const SAXException& exception) {
    releaseParser();
    throw SAXException(exception);
  }
}

template <typename Parse>
void XMLReader_Expat::guardParse(Parse parse) {
  const ParseScope scope(parsing_);
  try {
    parse();
  } catch (...) {
    leaveParse();
  }
}

void XMLReader_Expat::parse(std::istream& stream) {
  guardParse([&] {
    setupParser();
    const XML_Status status = parseStream(parser_.get(), stream, kBlockSize);
    if (status == XML_STATUS_ERROR) reportError();
    if (status == XML_STATUS_OK) endDocument();
    releaseParser();
  });
}

void XMLReader_Expat::parse(const void* data, unsigned long size, bool isFinal) {
  guardParse([&] {
    if (!parser_) setupParser();
    if (data == nullptr) {
      if (isFinal) releaseParser();
      return;
    }
    const int status = parseBlock(data, size, isFinal);
    if (status == XML_STATUS_ERROR) reportError();
    if (!isFinal) return;
    if (status == XML_STATUS_OK) endDocument();
    releaseParser();
  });
}

XML_Status parseStream(XML_Parser parser, std::istream& stream, int blockSize) {
  XML_Status status = XML_STATUS_OK;
  bool isFinal = false;
  while (status == XML_STATUS_OK && !isFinal) {
    void* block = XML_GetBuffer(parser, blockSize);
    if (block == nullptr) return XML_STATUS_ERROR;
    // The stream's buffer is read, not the stream: its state flags play no part.
    std::streambuf* source = stream.rdbuf();
    const std::streamsize count = source ? source->sgetn(static_cast<char*>(block), blockSize) : 0;
    isFinal = count < blockSize;
    status = XML_ParseBuffer(parser, static_cast<int>(count), isFinal);
  }
  return status;
}

void XMLReader_Expat::Callbacks::install(XML_Parser parser, XMLReader_Expat* reader) {
  XML_SetUserData(parser, reader);
  // The external entity callback gets this in place of the parser. expat only passes it on.
  XML_SetExternalEntityRefHandlerArg(parser, reader);
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
