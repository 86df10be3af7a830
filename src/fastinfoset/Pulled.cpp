#include <string>

#include "DecodePulled.h"
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
