#include <Tavrin/DefaultHandler.h>
#include <Tavrin/Handlers.h>

// The defaults, which do nothing. They are not inline, so that each interface has one virtual
// table, in the library.

namespace Tavrin {

Attributes::~Attributes() = default;

Locator::~Locator() = default;
OctetLocator::~OctetLocator() = default;

ContentHandler::~ContentHandler() = default;
void ContentHandler::setDocumentLocator(const Locator*) {}
void ContentHandler::startDocument() {}
void ContentHandler::endDocument() {}
void ContentHandler::startPrefixMapping(const std::string&, const std::string&) {}
void ContentHandler::endPrefixMapping(const std::string&) {}
void ContentHandler::startElement(const std::string&, const std::string&, const std::string&,
                                  const Attributes&) {}
void ContentHandler::endElement(const std::string&, const std::string&, const std::string&) {}
void ContentHandler::characters(const std::string&) {}
void ContentHandler::ignorableWhitespace(const std::string&) {}
void ContentHandler::processingInstruction(const std::string&, const std::string&) {}
void ContentHandler::skippedEntity(const std::string&) {}

DTDHandler::~DTDHandler() = default;
void DTDHandler::notationDecl(const std::string&, const std::string&, const std::string&) {}
void DTDHandler::unparsedEntityDecl(const std::string&, const std::string&, const std::string&,
                                    const std::string&) {}

DeclHandler::~DeclHandler() = default;
void DeclHandler::elementDecl(const std::string&, const std::string&) {}
void DeclHandler::attributeDecl(const std::string&, const std::string&, const std::string&,
                                const std::string&, const std::string&) {}
void DeclHandler::internalEntityDecl(const std::string&, const std::string&) {}
void DeclHandler::externalEntityDecl(const std::string&, const std::string&, const std::string&) {}

LexicalHandler::~LexicalHandler() = default;
void LexicalHandler::startDTD(const std::string&, const std::string&, const std::string&) {}
void LexicalHandler::endDTD() {}
void LexicalHandler::startEntity(const std::string&) {}
void LexicalHandler::endEntity(const std::string&) {}
void LexicalHandler::startCDATA() {}
void LexicalHandler::endCDATA() {}
void LexicalHandler::comment(const std::string&) {}

ErrorHandler::~ErrorHandler() = default;
void ErrorHandler::warning(const SAXParseException&) {}
void ErrorHandler::error(const SAXParseException&) {}
void ErrorHandler::fatalError(const SAXParseException&) {}

EntityResolver::~EntityResolver() = default;
std::unique_ptr<std::istream> EntityResolver::resolveEntity(const std::string&,
                                                            const std::string&) {
  return nullptr;
}

DefaultHandler::~DefaultHandler() = default;
void DefaultHandler::fatalError(const SAXParseException& exception) { throw exception; }

}  // namespace Tavrin
