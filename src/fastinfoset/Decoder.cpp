#include "Decoder.h"

#include <cstdlib>

#include "../sax/AtLimit.h"
#include "../sax/ParseScope.h"

// The decoder as an object: properties, parse and failures. The format is decoded in the files of
// the folder reader: Primitives.cpp (octets, integers and strings), Document.cpp, Elements.cpp,
// Attributes.h, Content.cpp and Algorithms.cpp.

namespace Tavrin::fastinfoset {

Decoder::Decoder(const Dialect& dialect, const Handlers& handlers)
    : dialect_(dialect),
      contentHandler_(handlers.content),
      errorHandler_(handlers.error),
      dtdHandler_(handlers.dtd),
      callsGet_(dialect.callsGet) {}

bool Decoder::setProperty(const std::string& name, void* value) {
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
    return false;
  }
  return true;
}

bool Decoder::getProperty(const std::string& name, void*& value) const {
  if (name == properties::lexicalHandler) {
    value = lexicalHandler_;
  } else if (name == properties::declarationHandler) {
    value = declHandler_;
  } else if (name == properties::primitiveTypeContentHandler) {
    value = primitiveTypeContentHandler_;
  } else if (name == properties::encodingAlgorithmContentHandler) {
    value = encodingAlgorithmContentHandler_;
  } else if (name == properties::registeredEncodingAlgorithms) {
    value = registeredEncodingAlgorithms_;
  } else if (name == properties::externalVocabularies) {
    value = externalVocabularies_;
  } else {
    return false;
  }
  return true;
}

void Decoder::parse(std::istream& stream) {
  const ParseScope scope(parsing_);
  stream_ = &stream;
  source_ = &stream;
  octetsRead_ = 0;
  tableOctets_ = 0;
  fromTables_ = 0;
  openElements_.clear();
  unlistedElements_.clear();
  externalNames_.clear();
  externalValues_.clear();
  clearTables();
  decodeDocument();
}

void Decoder::clearTables() {
  prefixes_.clear();
  namespaceNames_.clear();
  localNames_.clear();
  otherNCNames_.clear();
  otherURIs_.clear();
  attributeValues_.clear();
  contentCharacterChunks_.clear();
  otherStrings_.clear();
  elementNames_.shrinkTo(0);
  attributeNames_.shrinkTo(0);
}

void Decoder::fail(const std::string& message) const {
  throwFailure(message);
  std::abort();  // A dialect that does not throw is wrong.
}

/// Of all limits it is told in the same way what to change.
void Decoder::failAtLimit(const std::string& message, const char* property) const {
  fail(atLimit(message, property));
}

}  // namespace Tavrin::fastinfoset
