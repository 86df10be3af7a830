#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLReader_FI.h>

#include <cstdlib>

#include "../../sax/ParseScope.h"
#include "../Dialect.h"

// The reader as an object: creation, properties and parse. The format is decoded in the other files
// of this folder: Primitives.cpp (octets, integers and strings), Document.cpp, Vocabulary.cpp,
// Elements.cpp, Attributes.cpp, Content.cpp and Algorithms.cpp. Delivery.cpp calls the handlers,
// and has the other steps that the "X891" reader (folder x891) takes otherwise.

namespace Tavrin {

const XMLReaderType XMLReader_FI::type_("FI", &XMLReader_FI::create);

XMLReader_FI::XMLReader_FI() : XMLReader_FI(fastinfoset::kDialectFI) {}

XMLReader_FI::XMLReader_FI(const fastinfoset::Dialect& dialect)
    : dialect_(dialect), callsGet_(dialect.callsGet) {}

XMLReader_FI::~XMLReader_FI() = default;

std::unique_ptr<XMLReader> XMLReader_FI::create() { return std::make_unique<XMLReader_FI>(); }

void XMLReader_FI::setProperty(const std::string& name, void* value) {
  if (name == properties::lexicalHandler) {
    lexicalHandler_ = static_cast<LexicalHandler*>(value);
  } else if (name == properties::declarationHandler) {
    declHandler_ = static_cast<DeclHandler*>(value);
  } else if (name == properties::primitiveTypeContentHandler) {
    primitiveTypeContentHandler_ = static_cast<PrimitiveTypeContentHandler*>(value);
  } else if (name == properties::encodingAlgorithmContentHandler) {
    encodingAlgorithmContentHandler_ = static_cast<EncodingAlgorithmContentHandler*>(value);
  } else if (name == properties::registeredEncodingAlgorithms) {
    registeredEncodingAlgorithms_ = static_cast<EncodingAlgorithmMap*>(value);
  } else if (name == properties::externalVocabularies) {
    externalVocabularies_ = static_cast<ExternalVocabularyMap*>(value);
  } else {
    XMLReader::setProperty(name, value);
  }
}

void* XMLReader_FI::getProperty(const std::string& name) {
  if (name == properties::lexicalHandler) return lexicalHandler_;
  if (name == properties::declarationHandler) return declHandler_;
  if (name == properties::primitiveTypeContentHandler) return primitiveTypeContentHandler_;
  if (name == properties::encodingAlgorithmContentHandler) return encodingAlgorithmContentHandler_;
  if (name == properties::registeredEncodingAlgorithms) return registeredEncodingAlgorithms_;
  if (name == properties::externalVocabularies) return externalVocabularies_;
  return XMLReader::getProperty(name);
}

void XMLReader_FI::parse(std::istream& stream) {
  const ParseScope scope(parsing_);
  stream_ = &stream;
  source_ = &stream;
  octetsRead_ = 0;
  tableOctets_ = 0;
  fromTables_ = 0;
  openElements_.clear();
  dialectClearTables();
  dialectDecodeDocument();
}

// Restricted alphabets, algorithm URIs and the external vocabulary outlive a document.
void XMLReader_FI::dialectClearTables() {
  prefixes_.clear();
  namespaceNames_.clear();
  localNames_.clear();
  otherNCNames_.clear();
  otherURIs_.clear();
  attributeValues_.clear();
  contentCharacterChunks_.clear();
  otherStrings_.clear();
  elementNames_.clear();
  attributeNames_.clear();
}

void XMLReader_FI::dialectDecodeDocument() {
  if (!isFastInfosetDocument()) fail("Not a Fast Infoset document");
  decodeOptionalComponents();
  if (contentHandler_) contentHandler_->startDocument();
  decodeChildren();
  if (contentHandler_) contentHandler_->endDocument();
}

void XMLReader_FI::fail(const std::string& message) const {
  dialectThrowFailure(message);
  std::abort();  // A dialect that does not throw is wrong.
}

void XMLReader_FI::dialectThrowFailure(const std::string& message) const {
  throw SAXException(message);
}

}  // namespace Tavrin
