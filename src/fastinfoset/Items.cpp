#include <string>

#include "DecodeContent.h"
#include "Decoder.h"
#include "Encoder.h"
#include "format/Octets.h"

// Items: processing instructions, entity references, character chunks, comments, the document type,
// unparsed entities and notations (X.891, C.5 to C.11).

namespace Tavrin::fastinfoset {

namespace {

unsigned identifierBits(const ExternalItem& item) {
  return (item.systemId.empty() ? 0 : kSystemIdentifier) |
         (item.publicId.empty() ? 0 : kPublicIdentifier);
}

}  // namespace

void Decoder::decodeProcessingInstruction() {
  std::string target;
  std::string data;
  decodeIdentifier(kOtherNCNames, target);
  decodeString(kOtherStrings, data);
  reportProcessingInstruction(target, data);
}

void Encoder::encodeProcessingInstruction(const std::string& target, const std::string& data) {
  perform([&] {
    flushCharacters();
    flushTerminator(false);
    if (!out_) return;
    put(kProcessingInstruction);
    encodeIdentifier(kOtherNCNames, target);
    encodeString(kOtherStrings, isIndexed(kOtherStrings, data), data);
  });
}

void Decoder::decodeUnexpandedEntityReference(unsigned octet) {
  std::string name;
  std::string systemId;
  std::string publicId;
  decodeIdentifier(kOtherNCNames, name);
  decodeIdentifiers(octet, systemId, publicId);
  reportEntityReference(name, publicId, systemId);
}

void Encoder::encodeEntityReference(const ExternalItem& entity) {
  flushCharacters();
  flushTerminator(false);
  if (!out_) return;
  put(kFirstEntityReference | identifierBits(entity));
  encodeIdentifier(kOtherNCNames, entity.name);
  encodeIdentifiers(entity);
}

// --- Character chunks ---

void Decoder::decodeCharacters(unsigned octet) {
  if (octet < kChunk) fail("Error when decoding character chunk");
  if (octet >= kChunkIndex) {
    if (const std::string* const text = decodeIndexedChunk(octet)) reportCharacters(*text);
    return;
  }
  if ((octet & kChunkEncoding) == kChunkAlgorithm) return decodeTypedChunk(octet);
  // Who pulls has the text until later.
  if (isPulled_) return decodeLiteralChunk(octet, text_);
  // Nothing else may use the memory while a handler has the text.
  std::string text;
  text.swap(text_);
  decodeLiteralChunk(octet, text);
  if (text.capacity() <= kMostKeptText) text_.swap(text);
}

/// @param text receives what is reported
void Decoder::decodeLiteralChunk(unsigned octet, std::string& text) {
  std::uint64_t length = 0;
  const bool isUTF8 = (octet & kChunkEncoding) == kChunkUTF8;
  if (isUTF8) {
    const std::uint64_t begin = input_.count() - 1;
    length = decodeCharactersLength(octet);
    if (isCutBefore(length, begin)) return;
  } else {
    keepItem();
  }
  text.clear();
  if (isUTF8) {
    readText(length, text);
  } else {
    decodeOtherChunk(octet, text);
    checkText(text);
  }
  if (octet & kChunkAddToTable) addEntry(strings(kContentCharacterChunks), text);
  reportCharacters(text);
}

/// Decodes a chunk that an encoding algorithm made, and reports its value.
void Decoder::decodeTypedChunk(unsigned octet) {
  keepItem();
  const bool adds = octet & kChunkAddToTable;
  const Field field = decodeChunkField(octet);
  expectLiteral(field.length);
  std::string uri;
  if (EncodingAlgorithm* algorithm = getEncodingAlgorithm(field.number, uri)) {
    EncodedData& value = decodeData(*algorithm, field);
    checkValue(adds, strings(kContentCharacterChunks), field.number, value);
    reportValue(field.number, uri, value);
    return;
  }
  std::string octets;
  readOctets(field.length, octets);
  reportOctets(adds, field.number, uri, octets);
}

void Decoder::decodeComment() {
  std::string text;
  decodeString(kOtherStrings, text);
  reportComment(text);
}

void Encoder::encodeComment(const std::string& text) {
  perform([&] {
    flushCharacters();
    flushTerminator(false);
    if (!out_) return;
    put(kComment);
    encodeString(kOtherStrings, isIndexed(kOtherStrings, text), text);
  });
}

// --- The document type, unparsed entities and notations ---

bool Decoder::decodeDTD(unsigned octet) {
  std::string systemId;
  std::string publicId;
  decodeIdentifiers(octet, systemId, publicId);
  progress_.hasDTD = true;
  progress_.isInDTD = true;
  endStep();
  reportStartDTD(publicId, systemId);
  return decodeDTDContent();
}

/// Decodes the children of a document type declaration, and its end.
bool Decoder::decodeDTDContent() {
  unsigned octet = readOctet();
  for (; octet == kProcessingInstruction; octet = readOctet()) {
    decodeProcessingInstruction();
    endStep();
  }
  if (octet != kTerminator && octet != kDoubleTerminator) fail("Error while parsing DTD");
  progress_.isInDTD = false;
  reportEndDTD();
  return octet == kDoubleTerminator;
}

/// The identifiers that an octet's low bits announce; absent ones are left alone.
void Decoder::decodeIdentifiers(unsigned octet, std::string& systemId, std::string& publicId) {
  if (octet & kSystemIdentifier) decodeIdentifier(kOtherURIs, systemId);
  if (octet & kPublicIdentifier) decodeIdentifier(kOtherURIs, publicId);
}

void Encoder::encodeDocumentType(const ExternalItem& documentType) {
  flushTerminator(false);
  put(kDocumentType | identifierBits(documentType));
  encodeIdentifiers(documentType);
}

void Encoder::encodeIdentifiers(const ExternalItem& item) {
  if (!item.systemId.empty()) encodeIdentifier(kOtherURIs, item.systemId);
  if (!item.publicId.empty()) encodeIdentifier(kOtherURIs, item.publicId);
}

void Decoder::decodeUnparsedEntities() {
  unsigned octet = readOctet();
  for (; (octet & kUnparsedEntityMask) == kUnparsedEntity; octet = readOctet()) {
    std::string name;
    std::string systemId;
    std::string publicId;
    std::string notation;
    decodeIdentifier(kOtherNCNames, name);
    decodeIdentifier(kOtherURIs, systemId);
    if (octet & kPublicIdentifier) decodeIdentifier(kOtherURIs, publicId);
    decodeIdentifier(kOtherNCNames, notation);
    reportUnparsedEntity(name, publicId, systemId, notation);
    endStep();
  }
  if (octet != kTerminator) fail(dialect_.wrongUnparsedEntity);
}

/// @param entity has a system identifier, as the format requires
void Encoder::encodeUnparsedEntity(const ExternalItem& entity) {
  put(kUnparsedEntity | (entity.publicId.empty() ? 0 : kPublicIdentifier));
  encodeIdentifier(kOtherNCNames, entity.name);
  encodeIdentifiers(entity);
  encodeIdentifier(kOtherNCNames, entity.notation);
}

void Decoder::decodeNotations() {
  unsigned octet = readOctet();
  for (; (octet & kNotationMask) == kNotation; octet = readOctet()) {
    std::string name;
    std::string systemId;
    std::string publicId;
    decodeIdentifier(kOtherNCNames, name);
    decodeIdentifiers(octet, systemId, publicId);
    reportNotation(name, publicId, systemId);
    endStep();
  }
  if (octet != kTerminator) fail(dialect_.wrongNotation);
}

void Encoder::encodeNotation(const ExternalItem& notation) {
  put(kNotation | identifierBits(notation));
  encodeIdentifier(kOtherNCNames, notation.name);
  encodeIdentifiers(notation);
}

}  // namespace Tavrin::fastinfoset
