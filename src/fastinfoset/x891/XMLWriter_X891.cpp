#include <Tavrin/XMLWriter_X891.h>

#include "X891Encoder.h"

// The writer as an object. What its events do, its encoder does.

namespace Tavrin {

const XMLWriterType XMLWriter_X891::type_("X891", &XMLWriter_X891::create);

XMLWriter_X891::XMLWriter_X891() : encoder_(std::make_unique<Encoder>(*this)) {}

XMLWriter_X891::~XMLWriter_X891() = default;

std::unique_ptr<XMLWriter> XMLWriter_X891::create() { return std::make_unique<XMLWriter_X891>(); }

void XMLWriter_X891::setProperty(const std::string& name, void* value) {
  if (!encoder_->setProperty(name, value)) XMLWriter::setProperty(name, value);
}

void* XMLWriter_X891::getProperty(const std::string& name) {
  void* value = nullptr;
  return encoder_->getProperty(name, value) ? value : XMLWriter::getProperty(name);
}

EncodingAlgorithm* XMLWriter_X891::getEncodingAlgorithm(const std::string& uri, int index) {
  return encoder_->getEncodingAlgorithm(uri, index);
}

// --- Events ---

void XMLWriter_X891::startDocument() { encoder_->startDocument(); }

void XMLWriter_X891::endDocument() { encoder_->endDocument(); }

void XMLWriter_X891::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  encoder_->startPrefixMapping(prefix, uri);
}

void XMLWriter_X891::startElement(const std::string& uri, const std::string& localName,
                                  const std::string& qName, const Attributes& attributes) {
  encoder_->startElement(uri, localName, qName, attributes);
}

void XMLWriter_X891::endElement(const std::string& uri, const std::string& localName,
                                const std::string& qName) {
  encoder_->endElement(uri, localName, qName);
}

void XMLWriter_X891::characters(const std::string& text) { encoder_->characters(text); }

void XMLWriter_X891::ignorableWhitespace(const std::string& text) {
  encoder_->ignorableWhitespace(text);
}

void XMLWriter_X891::processingInstruction(const std::string& target, const std::string& data) {
  encoder_->processingInstruction(target, data);
}

void XMLWriter_X891::skippedEntity(const std::string& name) { encoder_->skippedEntity(name); }

void XMLWriter_X891::notationDecl(const std::string& name, const std::string& publicId,
                                  const std::string& systemId) {
  encoder_->notationDecl(name, publicId, systemId);
}

void XMLWriter_X891::unparsedEntityDecl(const std::string& name, const std::string& publicId,
                                        const std::string& systemId,
                                        const std::string& notationName) {
  encoder_->unparsedEntityDecl(name, publicId, systemId, notationName);
}

void XMLWriter_X891::externalEntityDecl(const std::string& name, const std::string& publicId,
                                        const std::string& systemId) {
  encoder_->externalEntityDecl(name, publicId, systemId);
}

void XMLWriter_X891::internalEntityDecl(const std::string& name, const std::string& value) {
  encoder_->internalEntityDecl(name, value);
}

void XMLWriter_X891::elementDecl(const std::string& name, const std::string& model) {
  encoder_->elementDecl(name, model);
}

void XMLWriter_X891::attributeDecl(const std::string& eName, const std::string& aName,
                                   const std::string& type, const std::string& mode,
                                   const std::string& value) {
  encoder_->attributeDecl(eName, aName, type, mode, value);
}

void XMLWriter_X891::startDTD(const std::string& name, const std::string& publicId,
                              const std::string& systemId) {
  encoder_->startDTD(name, publicId, systemId);
}

void XMLWriter_X891::endDTD() { encoder_->endDTD(); }

void XMLWriter_X891::startCDATA() { encoder_->startCDATA(); }

void XMLWriter_X891::endCDATA() { encoder_->endCDATA(); }

void XMLWriter_X891::comment(const std::string& text) { encoder_->comment(text); }

void XMLWriter_X891::reset() { encoder_->reset(); }

void XMLWriter_X891::bytes(const std::string& data) { encoder_->bytes(data); }

void XMLWriter_X891::shorts(const std::vector<short>& data) { encoder_->shorts(data); }

void XMLWriter_X891::ints(const std::vector<long>& data) { encoder_->ints(data); }

void XMLWriter_X891::longs(const std::vector<long>& data) { encoder_->longs(data); }

void XMLWriter_X891::booleans(const std::vector<bool>& data) { encoder_->booleans(data); }

void XMLWriter_X891::floats(const std::vector<float>& data) { encoder_->floats(data); }

void XMLWriter_X891::doubles(const std::vector<double>& data) { encoder_->doubles(data); }

void XMLWriter_X891::octets(const std::string& uri, int index, const std::string& data) {
  encoder_->octets(uri, index, data);
}

void XMLWriter_X891::object(const std::string& uri, int index, const EncodedData& data) {
  encoder_->object(uri, index, data);
}

}  // namespace Tavrin
