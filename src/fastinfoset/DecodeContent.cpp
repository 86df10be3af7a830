#include "Decoder.h"

#include <cstddef>
#include <string>

#include "format/Octets.h"

// What an element holds besides elements: character chunks, typed content, comments, processing
// instructions and entity references (X.891, C.5 to C.8 and C.15).

namespace Tavrin::fastinfoset {

namespace {

/// The most octets of memory that are kept from chunk to chunk.
constexpr std::size_t kMostKept = std::size_t{64} * 1024;

}  // namespace

void Decoder::decodeCharacters(int octet) {
  const auto first = static_cast<unsigned>(octet);
  if (first < kChunk) fail("Error when decoding character chunk");
  if (first >= kChunkIndex) {
    const unsigned long index = decodeCharactersIndex(octet);
    if (const StringTable* external = externalEntries(&contentCharacterChunks_)) {
      deliverFromTable(getString(index, &contentCharacterChunks_, external));
      return;
    }
    if (index >= contentCharacterChunks_.size()) {
      fail("Error when decoding character chunk - invalid index");
    }
    deliverFromTable(contentCharacterChunks_[index]);
    return;
  }
  if ((first & kChunkEncoding) == kChunkAlgorithm) {
    decodeAlgorithmData(first);
    return;
  }
  // Nothing else may use the memory while a handler has the text, and much is not held for long.
  std::string text;
  text.swap(text_);
  text.clear();
  if ((first & kChunkEncoding) == kChunkUTF8) {
    readText(decodeCharactersLength(octet), text);
  } else {
    decodeOtherChunk(first, text);
    checkText(text);
  }
  if (first & kChunkAddToTable) addEntry(contentCharacterChunks_, text);
  reportCharacters(text);
  if (text.capacity() <= kMostKept) text_.swap(text);
}

void Decoder::deliverFromTable(const std::string& text) {
  fromTables_ += text.size();
  reportCharacters(text);
}

/// Decodes a chunk whose text an encoding algorithm made, and delivers its value.
void Decoder::decodeAlgorithmData(unsigned octet) {
  const auto [field, length] = decodeChunkField(octet);
  std::string uri;
  if (EncodingAlgorithm* algorithm = getEncodingAlgorithm(field, uri)) {
    EncodedData& value = decodeWith(*algorithm, field, length);
    takeTyped(octet & kChunkAddToTable, contentCharacterChunks_, field, value);
    reportValue(field, uri, value);
    return;
  }
  std::string octets;
  readOctets(length, octets);
  reportOctets(octet & kChunkAddToTable, field, uri, octets);
}

void Decoder::decodeComment() {
  std::string text;
  decodeString(&otherStrings_, externalEntries(&otherStrings_), text);
  reportComment(text);
}

void Decoder::decodeProcessingInstruction() {
  std::string target;
  std::string data;
  decodeIdentifier(&otherNCNames_, target);
  decodeString(&otherStrings_, externalEntries(&otherStrings_), data);
  reportProcessingInstruction(target, data);
}

void Decoder::decodeUnexpandedEntityReference(int octet) {
  std::string name;
  std::string systemId;
  std::string publicId;
  decodeIdentifier(&otherNCNames_, name);
  decodeIdentifiers(static_cast<unsigned>(octet), systemId, publicId);
  reportEntityReference(name, publicId, systemId);
}

}  // namespace Tavrin::fastinfoset
