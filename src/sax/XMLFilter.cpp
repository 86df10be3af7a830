#include <Tavrin/Connect.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLFilter.h>

#include "Properties.h"
#include "SetIfKnown.h"

namespace Tavrin {

XMLFilter::~XMLFilter() = default;

void XMLFilter::setParent(XMLReader* parent) {
  parent_ = parent;
  if (parent_) attach();
}

bool XMLFilter::isAttached() const { return parent_ && parent_->getContentHandler() == this; }

void XMLFilter::attach() {
  HandlerSet handlers(*this);
  handlers.primitiveTypes = nullptr;
  handlers.encodingAlgorithms = nullptr;
  connect(*parent_, handlers);
  attachTyped();
}

/// Typed content that nobody receives must stay text.
void XMLFilter::attachTyped() {
  PrimitiveTypeContentHandler* const primitiveTypes = primitiveTypeContentHandler_ ? this : nullptr;
  EncodingAlgorithmContentHandler* const algorithms =
      encodingAlgorithmContentHandler_ ? this : nullptr;
  setIfKnown(*parent_, properties::primitiveTypeContentHandler, primitiveTypes);
  setIfKnown(*parent_, properties::encodingAlgorithmContentHandler, algorithms);
}

// --- Features and properties ---

template <typename Access>
bool XMLFilter::accessHandlers(Access access) {
  return access(properties::lexicalHandler, lexicalHandler_) ||
         access(properties::declarationHandler, declHandler_) ||
         access(properties::primitiveTypeContentHandler, primitiveTypeContentHandler_) ||
         access(properties::encodingAlgorithmContentHandler, encodingAlgorithmContentHandler_);
}

void XMLFilter::setFeature(const std::string& name, bool value) {
  parent_ ? parent_->setFeature(name, value) : XMLReader::setFeature(name, value);
}

bool XMLFilter::getFeature(const std::string& name) {
  return parent_ ? parent_->getFeature(name) : XMLReader::getFeature(name);
}

void XMLFilter::setProperty(const std::string& name, void* value) {
  if (accessHandlers(PropertySetter{name, value})) {
    if (isAttached()) attachTyped();
  } else {
    parent_ ? parent_->setProperty(name, value) : XMLReader::setProperty(name, value);
  }
}

void* XMLFilter::getProperty(const std::string& name) {
  void* value = nullptr;
  if (accessHandlers(PropertyGetter{name, value})) return value;
  return parent_ ? parent_->getProperty(name) : XMLReader::getProperty(name);
}

// --- Parsing ---

XMLReader& XMLFilter::attachedParent() {
  if (!parent_) throw SAXException("The filter has no parent");
  if (!isAttached()) attach();
  return *parent_;
}

void XMLFilter::parse(std::istream& stream) { attachedParent().parse(stream); }

void XMLFilter::parse(const void* data, unsigned long size, bool isFinal) {
  attachedParent().parse(data, size, isFinal);
}

// --- Events ---

void XMLFilter::setDocumentLocator(const Locator* locator) {
  if (contentHandler_) contentHandler_->setDocumentLocator(locator);
}
void XMLFilter::startDocument() {
  if (contentHandler_) contentHandler_->startDocument();
}
void XMLFilter::endDocument() {
  if (contentHandler_) contentHandler_->endDocument();
}
void XMLFilter::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  if (contentHandler_) contentHandler_->startPrefixMapping(prefix, uri);
}
void XMLFilter::endPrefixMapping(const std::string& prefix) {
  if (contentHandler_) contentHandler_->endPrefixMapping(prefix);
}
void XMLFilter::startElement(const std::string& uri, const std::string& localName,
                             const std::string& qName, const Attributes& attributes) {
  if (contentHandler_) contentHandler_->startElement(uri, localName, qName, attributes);
}
void XMLFilter::endElement(const std::string& uri, const std::string& localName,
                           const std::string& qName) {
  if (contentHandler_) contentHandler_->endElement(uri, localName, qName);
}
void XMLFilter::characters(const std::string& text) {
  if (contentHandler_) contentHandler_->characters(text);
}
void XMLFilter::ignorableWhitespace(const std::string& text) {
  if (contentHandler_) contentHandler_->ignorableWhitespace(text);
}
void XMLFilter::processingInstruction(const std::string& target, const std::string& data) {
  if (contentHandler_) contentHandler_->processingInstruction(target, data);
}
void XMLFilter::skippedEntity(const std::string& name) {
  if (contentHandler_) contentHandler_->skippedEntity(name);
}

void XMLFilter::notationDecl(const std::string& name, const std::string& publicId,
                             const std::string& systemId) {
  if (dtdHandler_) dtdHandler_->notationDecl(name, publicId, systemId);
}
void XMLFilter::unparsedEntityDecl(const std::string& name, const std::string& publicId,
                                   const std::string& systemId, const std::string& notationName) {
  if (dtdHandler_) dtdHandler_->unparsedEntityDecl(name, publicId, systemId, notationName);
}

void XMLFilter::elementDecl(const std::string& name, const std::string& model) {
  if (declHandler_) declHandler_->elementDecl(name, model);
}
void XMLFilter::attributeDecl(const std::string& eName, const std::string& aName,
                              const std::string& type, const std::string& mode,
                              const std::string& value) {
  if (declHandler_) declHandler_->attributeDecl(eName, aName, type, mode, value);
}
void XMLFilter::internalEntityDecl(const std::string& name, const std::string& value) {
  if (declHandler_) declHandler_->internalEntityDecl(name, value);
}
void XMLFilter::externalEntityDecl(const std::string& name, const std::string& publicId,
                                   const std::string& systemId) {
  if (declHandler_) declHandler_->externalEntityDecl(name, publicId, systemId);
}

void XMLFilter::startDTD(const std::string& name, const std::string& publicId,
                         const std::string& systemId) {
  if (lexicalHandler_) lexicalHandler_->startDTD(name, publicId, systemId);
}
void XMLFilter::endDTD() {
  if (lexicalHandler_) lexicalHandler_->endDTD();
}
void XMLFilter::startEntity(const std::string& name) {
  if (lexicalHandler_) lexicalHandler_->startEntity(name);
}
void XMLFilter::endEntity(const std::string& name) {
  if (lexicalHandler_) lexicalHandler_->endEntity(name);
}
void XMLFilter::startCDATA() {
  if (lexicalHandler_) lexicalHandler_->startCDATA();
}
void XMLFilter::endCDATA() {
  if (lexicalHandler_) lexicalHandler_->endCDATA();
}
void XMLFilter::comment(const std::string& text) {
  if (lexicalHandler_) lexicalHandler_->comment(text);
}

void XMLFilter::warning(const SAXParseException& exception) {
  if (errorHandler_) errorHandler_->warning(exception);
}
void XMLFilter::error(const SAXParseException& exception) {
  if (errorHandler_) errorHandler_->error(exception);
}
void XMLFilter::fatalError(const SAXParseException& exception) {
  if (errorHandler_) errorHandler_->fatalError(exception);
}

std::unique_ptr<std::istream> XMLFilter::resolveEntity(const std::string& publicId,
                                                       const std::string& systemId) {
  return entityResolver_ ? entityResolver_->resolveEntity(publicId, systemId) : nullptr;
}

void XMLFilter::bytes(const std::string& data) {
  if (primitiveTypeContentHandler_) primitiveTypeContentHandler_->bytes(data);
}
void XMLFilter::shorts(const std::vector<short>& data) {
  if (primitiveTypeContentHandler_) primitiveTypeContentHandler_->shorts(data);
}
void XMLFilter::ints(const std::vector<long>& data) {
  if (primitiveTypeContentHandler_) primitiveTypeContentHandler_->ints(data);
}
void XMLFilter::longs(const std::vector<long>& data) {
  if (primitiveTypeContentHandler_) primitiveTypeContentHandler_->longs(data);
}
void XMLFilter::booleans(const std::vector<bool>& data) {
  if (primitiveTypeContentHandler_) primitiveTypeContentHandler_->booleans(data);
}
void XMLFilter::floats(const std::vector<float>& data) {
  if (primitiveTypeContentHandler_) primitiveTypeContentHandler_->floats(data);
}
void XMLFilter::doubles(const std::vector<double>& data) {
  if (primitiveTypeContentHandler_) primitiveTypeContentHandler_->doubles(data);
}

void XMLFilter::octets(const std::string& uri, int index, const std::string& data) {
  if (encodingAlgorithmContentHandler_) encodingAlgorithmContentHandler_->octets(uri, index, data);
}
void XMLFilter::object(const std::string& uri, int index, const EncodedData& data) {
  if (encodingAlgorithmContentHandler_) encodingAlgorithmContentHandler_->object(uri, index, data);
}

}  // namespace Tavrin
