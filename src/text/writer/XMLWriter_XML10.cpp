#include <Tavrin/XMLWriter_XML10.h>

#include "XML10Composer.h"

// The writer as an object. What its events write, its composer does.

namespace Tavrin {

const XMLWriterType XMLWriter_XML10::type_("XML10", &XMLWriter_XML10::create);

XMLWriter_XML10::XMLWriter_XML10() : composer_(std::make_unique<Composer>(*this)) {}

XMLWriter_XML10::~XMLWriter_XML10() = default;

std::unique_ptr<XMLWriter> XMLWriter_XML10::create() { return std::make_unique<XMLWriter_XML10>(); }

// --- Features and properties ---

void XMLWriter_XML10::setFeature(const std::string& name, bool value) {
  if (bool* const feature = composer_->findFeature(name)) {
    *feature = value;
  } else {
    XMLWriter::setFeature(name, value);
  }
}

bool XMLWriter_XML10::getFeature(const std::string& name) {
  if (const bool* const feature = composer_->findFeature(name)) return *feature;
  return XMLWriter::getFeature(name);
}

void XMLWriter_XML10::setProperty(const std::string& name, void* value) {
  if (!composer_->setProperty(name, value)) XMLWriter::setProperty(name, value);
}

void* XMLWriter_XML10::getProperty(const std::string& name) {
  void* value = nullptr;
  return composer_->getProperty(name, value) ? value : XMLWriter::getProperty(name);
}

void XMLWriter_XML10::flush() { composer_->flush(); }

void XMLWriter_XML10::reset() { composer_->reset(); }

// --- Events ---

void XMLWriter_XML10::startDocument() { composer_->startDocument(); }

void XMLWriter_XML10::endDocument() { composer_->endDocument(); }

void XMLWriter_XML10::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  composer_->startPrefixMapping(prefix, uri);
}

void XMLWriter_XML10::startElement(const std::string& uri, const std::string& localName,
                                   const std::string& qName, const Attributes& attributes) {
  composer_->startElement(uri, localName, qName, attributes);
}

void XMLWriter_XML10::endElement(const std::string& uri, const std::string& localName,
                                 const std::string& qName) {
  composer_->endElement(uri, localName, qName);
}

void XMLWriter_XML10::characters(const std::string& text) { composer_->characters(text); }

void XMLWriter_XML10::ignorableWhitespace(const std::string& text) {
  composer_->ignorableWhitespace(text);
}

void XMLWriter_XML10::processingInstruction(const std::string& target, const std::string& data) {
  composer_->processingInstruction(target, data);
}

void XMLWriter_XML10::skippedEntity(const std::string& name) { composer_->skippedEntity(name); }

void XMLWriter_XML10::notationDecl(const std::string& name, const std::string& publicId,
                                   const std::string& systemId) {
  composer_->notationDecl(name, publicId, systemId);
}

void XMLWriter_XML10::unparsedEntityDecl(const std::string& name, const std::string& publicId,
                                         const std::string& systemId,
                                         const std::string& notationName) {
  composer_->unparsedEntityDecl(name, publicId, systemId, notationName);
}

void XMLWriter_XML10::elementDecl(const std::string& name, const std::string& model) {
  composer_->elementDecl(name, model);
}

void XMLWriter_XML10::attributeDecl(const std::string& eName, const std::string& aName,
                                    const std::string& type, const std::string& mode,
                                    const std::string& value) {
  composer_->attributeDecl(eName, aName, type, mode, value);
}

void XMLWriter_XML10::internalEntityDecl(const std::string& name, const std::string& value) {
  composer_->internalEntityDecl(name, value);
}

void XMLWriter_XML10::externalEntityDecl(const std::string& name, const std::string& publicId,
                                         const std::string& systemId) {
  composer_->externalEntityDecl(name, publicId, systemId);
}

void XMLWriter_XML10::startDTD(const std::string& name, const std::string& publicId,
                               const std::string& systemId) {
  composer_->startDTD(name, publicId, systemId);
}

void XMLWriter_XML10::endDTD() { composer_->endDTD(); }

void XMLWriter_XML10::startEntity(const std::string& name) { composer_->startEntity(name); }

void XMLWriter_XML10::endEntity(const std::string& name) { composer_->endEntity(name); }

void XMLWriter_XML10::startCDATA() { composer_->startCDATA(); }

void XMLWriter_XML10::endCDATA() { composer_->endCDATA(); }

void XMLWriter_XML10::comment(const std::string& text) { composer_->comment(text); }

}  // namespace Tavrin
