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
  if (text_.capacity() > kMostKeptText) std::string().swap(text_);
  if (input_.blocks() == nullptr) return pullItem();
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
Decoder::Pulled Decoder::pullItem() {
  if (!openElements_.empty() || tag_.part != StartTag::kNone) {
    isAtEnd_ = pullContent();
    return Pulled::item;
  }
  return pullDocument();
}

/// @return whether the document ends, too
bool Decoder::pullContent() {
  if (ends_ == 0) {
    if (tag_.part == StartTag::kNone) {
      if (!nextStep()) return false;
      ends_ = decodeContentItem(readOctet());
    }
    if (tag_.part != StartTag::kNone) {
      if (decodeStartTag()) ends_ = 1;
      return false;
    }
    if (ends_ == 0) return false;
  }
  closeElement();
  --ends_;
  return ends_ > 0 && openElements_.empty();
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
