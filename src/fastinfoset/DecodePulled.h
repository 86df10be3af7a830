#pragma once

#include <cstdint>
#include <string>

#include "../sax/ParseScope.h"
#include "DecodeContent.h"
#include "Decoder.h"
#include "format/Octets.h"

// What a pull most often does: content of elements. It is inline, because an item takes little more
// time than a call. Pulled.cpp has the rest.

namespace Tavrin::fastinfoset {

/// Decodes a chunk in UTF-8 that enters no table, most often without a copy.
inline Decoder::Pulled Decoder::pullText(unsigned octet) {
  const std::uint64_t begin = input_.count() - 1;
  const std::uint64_t length = decodeCharactersLength(octet);
  if (isCutBefore(length, begin)) return Pulled::item;
  checkLiteralLength(length);
  if (const char* const octets = input_.consumeBuffered(length)) {
    pulledText_ = {octets, length};
    checkText(pulledText_);
    return Pulled::text;
  }
  readText(length, text_);
  reportCharacters(text_);
  return Pulled::item;
}

inline Decoder::Pulled Decoder::pullIndexedText(unsigned octet) {
  const std::string* const text = decodeIndexedChunk(octet);
  if (text == nullptr) return Pulled::item;
  pulledText_ = *text;
  checkAmplification();
  return text->empty() ? Pulled::item : Pulled::text;
}

inline Decoder::Pulled Decoder::pullContent() {
  if (ends_ == 0) {
    if (tag_.part == StartTag::kNone) {
      if (!nextItem()) return Pulled::item;
      const unsigned octet = readOctet();
      if ((octet & kPlainChunkMask) == kChunk) return pullText(octet);
      if (octet >= kChunkIndex && octet <= kLastCharacterChunk) return pullIndexedText(octet);
      ends_ = decodeContentItem(octet);
    }
    if (tag_.part != StartTag::kNone) {
      if (decodeStartTag()) ends_ = 1;
      return Pulled::item;
    }
    if (ends_ == 0) return Pulled::item;
  }
  closeElement();
  --ends_;
  isAtEnd_ = ends_ > 0 && openElements_.empty();
  return Pulled::item;
}

/// What it returns is of no account where the step was cut.
inline Decoder::Pulled Decoder::pullItem() {
  const bool isInElement = !openElements_.empty() || tag_.part != StartTag::kNone;
  return isInElement ? pullContent() : pullDocument();
}

inline Decoder::Pulled Decoder::pull() {
  const ParseScope scope(parsing_);
  return input_.blocks() == nullptr ? pullItem() : pullFromBlock();
}

}  // namespace Tavrin::fastinfoset
