#include <Tavrin/Handlers.h>

// The defaults, which do nothing. They are not inline, so that each interface has one virtual
// table, in the library.

namespace Tavrin {

// Of these two, all other operations are pure: only the destructor can bring the virtual table.
Attributes::~Attributes() = default;
Locator::~Locator() = default;
OctetLocator::~OctetLocator() = default;

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

void DTDHandler::notationDecl(const std::string&, const std::string&, const std::string&) {}
void DTDHandler::unparsedEntityDecl(const std::string&, const std::string&, const std::string&,
                                    const std::string&) {}

void DeclHandler::elementDecl(const std::string&, const std::string&) {}
void DeclHandler::attributeDecl(const std::string&, const std::string&, const std::string&,
                                const std::string&, const std::string&) {}
void DeclHandler::internalEntityDecl(const std::string&, const std::string&) {}
void DeclHandler::externalEntityDecl(const std::string&, const std::string&, const std::string&) {}

void LexicalHandler::startDTD(const std::string&, const std::string&, const std::string&) {}
void LexicalHandler::endDTD() {}
void LexicalHandler::startEntity(const std::string&) {}
void LexicalHandler::endEntity(const std::string&) {}
void LexicalHandler::startCDATA() {}
void LexicalHandler::endCDATA() {}
void LexicalHandler::comment(const std::string&) {}

void ErrorHandler::warning(const SAXParseException&) {}
void ErrorHandler::error(const SAXParseException&) {}
void ErrorHandler::fatalError(const SAXParseException&) {}

std::unique_ptr<std::istream> EntityResolver::resolveEntity(const std::string&,
                                                            const std::string&) {
  return nullptr;
}

}  // namespace Tavrin
