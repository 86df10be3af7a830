#include <Tavrin/XMLReader_FI.h>

#include <iostream>

#include "../Octets.h"

// What an element holds besides elements: character chunks, typed content, comments, processing
// instructions and entity references (X.891, C.5 to C.8 and C.15).

namespace Tavrin {

using namespace fastinfoset;

void XMLReader_FI::decodeCharacters(int octet) {
  const auto first = static_cast<unsigned>(octet);
  if (first < kChunk) throw SAXException("Error when decoding character chunk");
  std::string text;
  if (first >= kChunkIndex) {
    const unsigned long index = decodeCharactersIndex(octet);
    if (index >= contentCharacterChunks_.size()) {
      throw SAXException("Error when decoding character chunk - invalid index");
    }
    text = contentCharacterChunks_[index];
  } else {
    switch (first & kChunkEncoding) {
      case kChunkUTF8:
        readOctets(decodeCharactersLength(octet), text);
        break;
      case kChunkUTF16:
        decodeCharactersLength(octet);  // The text itself is taken for the next item.
        break;
      case kChunkRestrictedAlphabet:
        readOctet();  // The rest is taken for the next item.
        break;
      default:
        decodeAlgorithmData(first);
        return;
    }
    if (first & kChunkAddToTable) contentCharacterChunks_.push_back(text);
  }
  if (contentHandler_) contentHandler_->characters(text);
}

/// Decodes a chunk whose text an encoding algorithm made, and delivers its value.
void XMLReader_FI::decodeAlgorithmData(unsigned octet) {
  const unsigned next = readOctet();
  const unsigned field =
      (octet & kChunkFieldReadBits) << kChunkFieldLowBits | next >> (8 - kChunkFieldLowBits);
  const unsigned long length = decodeCharactersLength(static_cast<int>(next));
  std::string uri;
  if (EncodingAlgorithm* algorithm = getEncodingAlgorithm(field, uri)) {
    deliver(field, uri, decodeWith(*algorithm, length));
    return;
  }
  std::string octets;
  readOctets(length, octets);
  if (encodingAlgorithmContentHandler_) {
    encodingAlgorithmContentHandler_->octets(uri, static_cast<int>(field), octets);
  }
}

void XMLReader_FI::deliver(unsigned field, const std::string& uri, const EncodedData& value) {
  if (contentHandler_ && field == algorithms::cdata) {
    if (lexicalHandler_) lexicalHandler_->startCDATA();
    if (contentHandler_) contentHandler_->characters(value.toString());
    if (lexicalHandler_) lexicalHandler_->endCDATA();
  } else if (primitiveTypeContentHandler_ && field < kFirstApplicationAlgorithm) {
    value.callContentHandler(*primitiveTypeContentHandler_);
  } else if (encodingAlgorithmContentHandler_) {
    encodingAlgorithmContentHandler_->object(uri, static_cast<int>(field), value);
  } else if (contentHandler_) {
    contentHandler_->characters(value.toString());
  }
}

void XMLReader_FI::decodeComment() {
  std::string text;
  decodeString(&otherStrings_, nullptr, text);
  if (lexicalHandler_) lexicalHandler_->comment(text);
}

void XMLReader_FI::decodeProcessingInstruction() {
  std::string target;
  std::string data;
  decodeIdentifier(&otherNCNames_, target);
  decodeString(&otherStrings_, nullptr, data);
  if (contentHandler_) contentHandler_->processingInstruction(target, data);
}

void XMLReader_FI::decodeUnexpandedEntityReference(int octet) {
  std::string name;
  std::string systemId;
  std::string publicId;
  decodeIdentifier(&otherNCNames_, name);
  decodeIdentifiers(static_cast<unsigned>(octet), systemId, publicId);
  std::cout << "unexpanded entity reference - name = \"" << name << "\", systemID = \"" << systemId
            << "\", publicID = \"" << publicId << "\"\n";
}

}  // namespace Tavrin
