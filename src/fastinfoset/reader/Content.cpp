#include <Tavrin/XMLReader_FI.h>

#include <cstddef>
#include <string>

#include "../Octets.h"

// What an element holds besides elements: character chunks, typed content, comments, processing
// instructions and entity references (X.891, C.5 to C.8 and C.15).

namespace Tavrin {

using namespace fastinfoset;

namespace {

/// The most octets of memory that are kept from chunk to chunk.
constexpr std::size_t kMostKept = std::size_t{64} * 1024;

}  // namespace

void XMLReader_FI::decodeCharacters(int octet) {
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
    dialectDecodeOtherChunk(first, text);
    dialectCheckText(text);
  }
  if (first & kChunkAddToTable) addEntry(contentCharacterChunks_, text);
  dialectDeliverCharacters(text);
  if (text.capacity() <= kMostKept) text_.swap(text);
}

void XMLReader_FI::deliverFromTable(const std::string& text) {
  fromTables_ += text.size();
  dialectDeliverCharacters(text);
}

/// Decodes a chunk whose text an encoding algorithm made, and delivers its value.
void XMLReader_FI::decodeAlgorithmData(unsigned octet) {
  const auto [field, length] = decodeChunkField(octet);
  std::string uri;
  if (EncodingAlgorithm* algorithm = getEncodingAlgorithm(field, uri)) {
    EncodedData& value = dialectDecodeWith(*algorithm, field, length);
    dialectTakeTyped(octet & kChunkAddToTable, contentCharacterChunks_, field, value);
    dialectDeliver(field, uri, value);
    return;
  }
  std::string octets;
  readOctets(length, octets);
  dialectDeliverOctets(octet & kChunkAddToTable, field, uri, octets);
}

void XMLReader_FI::decodeComment() {
  std::string text;
  decodeString(&otherStrings_, externalEntries(&otherStrings_), text);
  dialectDeliverComment(text);
}

void XMLReader_FI::decodeProcessingInstruction() {
  std::string target;
  std::string data;
  decodeIdentifier(&otherNCNames_, target);
  decodeString(&otherStrings_, externalEntries(&otherStrings_), data);
  dialectDeliverInstruction(target, data);
}

void XMLReader_FI::decodeUnexpandedEntityReference(int octet) {
  std::string name;
  std::string systemId;
  std::string publicId;
  decodeIdentifier(&otherNCNames_, name);
  decodeIdentifiers(static_cast<unsigned>(octet), systemId, publicId);
  dialectDeliverEntityReference(name, publicId, systemId);
}

}  // namespace Tavrin
