#include <string>

#include "../sax/ParseScope.h"
#include "DecodeContent.h"
#include "Decoder.h"
#include "format/Octets.h"

// Decoding item by item, for who takes events one after another. Each call reports one hot event at
// most: where an octet ends two elements, or an element without content, the ends come with later
// calls.

namespace Tavrin::fastinfoset {

void Decoder::beginPulling(std::istream& stream) {
  isPulled_ = true;
  input_.open(stream);
  beginDocument();
}

void Decoder::supply(std::string_view block, bool isFinal) {
  isPulled_ = true;
  unusedOctets_ = 0;
  if (!isFed_) beginBlocks();
  isFed_ = true;
  blocks_->append(block, isFinal);
  hasOctets_ = blocks_->supply();
}

Decoder::Pulled Decoder::pull() {
  const ParseScope scope(parsing_);
  return input_.blocks() == nullptr ? pullItem() : pullFromBlock();
}

Decoder::Pulled Decoder::pullFromBlock() {
  while (hasOctets_) {
    try {
      const Pulled pulled = pullItem();
      if (!isCut_) {
        if (pulled == Pulled::end) {
          isFed_ = false;
          unusedOctets_ = blocks_->unread();
        }
        return pulled;
      }
    } catch (const Blocks::Incomplete&) {
    } catch (...) {
      isFed_ = false;
      throw;
    }
    undoStep();
    hasOctets_ = blocks_->supply();
  }
  return Pulled::needsBlock;
}

/// What it returns is of no account where the step was cut.
inline Decoder::Pulled Decoder::pullItem() {
  const bool isInElement = !openElements_.empty() || tag_.part != StartTag::kNone;
  return isInElement ? pullContent() : pullDocument();
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

/// Much memory is not held for long.
void Decoder::forgetText() {
  if (text_.capacity() > kMostKeptText) std::string().swap(text_);
}

Decoder::Pulled Decoder::pullDocument() {
  if (!progress_.hasStarted) {
    decodeBeginning();
    return Pulled::item;
  }
  if (!isAtEnd_) {
    if (!nextStep()) return Pulled::item;
    if (progress_.isInDTD) {
      isAtEnd_ = decodeDTDContent();
    } else if (const unsigned octet = readOctet(); octet < kFirstNonElement) {
      beginRootElement(octet);
      if (decodeStartTag()) ends_ = 1;
    } else {
      isAtEnd_ = decodeChild(octet);
    }
    if (!isAtEnd_) return Pulled::item;
    endStep();
  }
  endDocument();
  return Pulled::end;
}

}  // namespace Tavrin::fastinfoset
