#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLReader_FI.h>

#include "../../sax/Properties.h"
#include "FIDecoder.h"

// The reader as an object. What it decodes, its decoder does.

namespace Tavrin {

const XMLReaderType XMLReader_FI::type_("FI", &XMLReader_FI::create);

class TAVRIN_LOCAL XMLReader_FI::Decoder final : public fastinfoset::FIDecoder {
  using FIDecoder::FIDecoder;
};

XMLReader_FI::XMLReader_FI()
    : decoder_(std::make_unique<Decoder>(
          fastinfoset::Decoder::Handlers{contentHandler_, errorHandler_, dtdHandler_})) {}

XMLReader_FI::~XMLReader_FI() = default;

std::unique_ptr<XMLReader> XMLReader_FI::create() { return std::make_unique<XMLReader_FI>(); }

void XMLReader_FI::setProperty(const std::string& name, void* value) {
  if (!decoder_->accessProperty(PropertySetter{name, value})) XMLReader::setProperty(name, value);
}

void* XMLReader_FI::getProperty(const std::string& name) {
  void* value = nullptr;
  const bool isKnown = decoder_->accessProperty(PropertyGetter{name, value});
  return isKnown ? value : XMLReader::getProperty(name);
}

void XMLReader_FI::parse(std::istream& stream) { decoder_->parse(stream); }

// --- Integers ---

unsigned long XMLReader_FI::decodeIndex(int octet) {
  return decoder_->decodeIndex(static_cast<unsigned>(octet));
}

unsigned long XMLReader_FI::decodeElementIndex(int octet) {
  return decoder_->decodeElementIndex(static_cast<unsigned>(octet));
}

unsigned long XMLReader_FI::decodeCharactersIndex(int octet) {
  return decoder_->decodeCharactersIndex(octet);
}

unsigned long XMLReader_FI::decodeIdentifierLength(int octet) {
  return decoder_->decodeIdentifierLength(static_cast<unsigned>(octet));
}

unsigned long XMLReader_FI::decodeStringLength(int octet) {
  return decoder_->decodeStringLength(static_cast<unsigned>(octet));
}

unsigned long XMLReader_FI::decodeCharactersLength(int octet) {
  return decoder_->decodeCharactersLength(static_cast<unsigned>(octet));
}

unsigned long XMLReader_FI::decodeNumberOfItems() { return decoder_->decodeNumberOfItems(); }

// --- Strings ---

std::string XMLReader_FI::getString(unsigned long index, const std::vector<std::string>* table,
                                    const StringTable* external) const {
  return decoder_->getString(index, table, external);
}

void XMLReader_FI::decodeString(int octet, std::vector<std::string>* table,
                                const StringTable* external, std::string& out) {
  decoder_->decodeString(static_cast<unsigned>(octet), table, external, out);
}

void XMLReader_FI::decodeString(std::vector<std::string>* table, const StringTable* external,
                                std::string& out) {
  decoder_->decodeString(table, external, out);
}

void XMLReader_FI::decodeIdentifier(std::vector<std::string>* table, std::string& out) {
  decoder_->decodeIdentifier(table, out);
}

// --- Document ---

bool XMLReader_FI::isFastInfosetDocument() { return decoder_->isFastInfosetDocument(); }

void XMLReader_FI::decodeAdditionalData() { decoder_->decodeAdditionalData(); }

void XMLReader_FI::decodeInitialVocabulary() { decoder_->decodeInitialVocabulary(); }

void XMLReader_FI::decodeNotations() { decoder_->decodeNotations(); }

void XMLReader_FI::decodeUnparsedEntities() { decoder_->decodeUnparsedEntities(); }

void XMLReader_FI::decodeCharacterEncodingScheme() { decoder_->decodeCharacterEncodingScheme(); }

void XMLReader_FI::decodeVersion() { decoder_->decodeVersion(); }

void XMLReader_FI::decodeStringTable(std::vector<std::string>& table) {
  decoder_->decodeStringTable(table);
}

void XMLReader_FI::decodeIdentifierTable(std::vector<std::string>& table) {
  decoder_->decodeIdentifierTable(table);
}

void XMLReader_FI::decodeQualifiedNameTable(std::vector<QualifiedName>& table) {
  decoder_->decodeQualifiedNameTable(table);
}

bool XMLReader_FI::decodeDTD(int octet) {
  return decoder_->decodeDTD(static_cast<unsigned>(octet));
}

// --- Elements ---

bool XMLReader_FI::decodeElement(int octet) {
  return decoder_->decodeElement(static_cast<unsigned>(octet));
}

void XMLReader_FI::decodeNamespaces(std::vector<std::string>& declarations) {
  decoder_->decodeNamespaces(declarations);
}

XMLReader_FI::QualifiedName& XMLReader_FI::decodeQualifiedName(int octet,
                                                               std::vector<QualifiedName>& table) {
  return decoder_->decodeQualifiedName(static_cast<unsigned>(octet), table);
}

XMLReader_FI::QualifiedName XMLReader_FI::getElementName(unsigned long index) const {
  return decoder_->getElementName(index);
}

XMLReader_FI::QualifiedName XMLReader_FI::getAttributeName(unsigned long index) const {
  return decoder_->getAttributeName(index);
}

bool XMLReader_FI::decodeAttributes(EncodingAlgorithmAttributesImpl& attributes) {
  return decoder_->decodeAttributes(attributes);
}

// --- Content ---

void XMLReader_FI::decodeCharacters(int octet) {
  decoder_->decodeCharacters(static_cast<unsigned>(octet));
}

EncodingAlgorithm* XMLReader_FI::getEncodingAlgorithm(unsigned int field, std::string& uri) {
  return decoder_->getEncodingAlgorithm(field, uri);
}

void XMLReader_FI::decodeComment() { decoder_->decodeComment(); }

void XMLReader_FI::decodeProcessingInstruction() { decoder_->decodeProcessingInstruction(); }

void XMLReader_FI::decodeUnexpandedEntityReference(int octet) {
  decoder_->decodeUnexpandedEntityReference(static_cast<unsigned>(octet));
}

}  // namespace Tavrin
