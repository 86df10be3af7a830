#pragma once

#include <string>

#include "Decoder.h"
#include "format/Octets.h"

// Content of elements (X.891, C.3.7.5): which item an octet begins.

namespace Tavrin::fastinfoset {

/// The text of a chunk that refers to the table; null where that is unknown octets, which are
/// reported.
inline const std::string* Decoder::decodeIndexedChunk(unsigned octet) {
  const unsigned long index = decodeCharactersIndex(static_cast<int>(octet));
  Strings& table = strings(kContentCharacterChunks);
  const std::string* const text = table.find(index);
  if (text == nullptr) fail("Error when decoding character chunk - invalid index");
  if (const RawOctets* const raw = text->empty() ? table.findRaw(index) : nullptr) {
    reportRaw(*raw);
    return nullptr;
  }
  fromTables_ += text->size();
  return text;
}

/// Decodes an item of content, or what begins it, where it is an element.
/// @return how many elements the octet ends, the innermost first
inline unsigned Decoder::decodeContentItem(unsigned octet) {
  if (octet < kFirstNonElement) {
    beginElement(octet);
  } else if (octet <= kLastCharacterChunk) {
    decodeCharacters(octet);
  } else if (octet >= kFirstEntityReference && octet <= kLastEntityReference) {
    keepItem();
    decodeUnexpandedEntityReference(octet);
  } else if (octet == kProcessingInstruction) {
    keepItem();
    decodeProcessingInstruction();
  } else if (octet == kComment) {
    keepItem();
    decodeComment();
  } else if (octet == kTerminator) {
    return 1;
  } else if (octet == kDoubleTerminator) {
    return 2;
  } else {
    fail("Error when decoding element children");
  }
  return 0;
}

}  // namespace Tavrin::fastinfoset
