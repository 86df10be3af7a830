#include "Decoder.h"

#include <cstdlib>
#include <utility>

#include "../sax/AtLimit.h"
#include "../sax/ParseScope.h"

// The decoder as an object: parse, steps, failures and limits. The format is decoded in the files
// that Decoder.h names.

namespace Tavrin::fastinfoset {

Decoder::Decoder(const Dialect& dialect, const Handlers& handlers)
    : dialect_(dialect),
      contentHandler_(handlers.content),
      errorHandler_(handlers.error),
      dtdHandler_(handlers.dtd),
      input_(dialect.callsGet) {}

void Decoder::parse(std::istream& stream) {
  const ParseScope scope(parsing_);
  decodeStream(stream);
}

void Decoder::parse(std::string_view block, bool isFinal) {
  const ParseScope scope(parsing_);
  decodeNextBlock(block, isFinal);
}

void Decoder::decodeStream(std::istream& stream) {
  isFed_ = false;
  isComplete_ = false;
  input_.open(stream);
  beginDocument();
  decodeDocument();
}

void Decoder::parseVocabulary(std::istream& stream) {
  const ParseScope scope(parsing_);
  input_.open(stream);
  beginDocument();
  decodeHeader();
  decodeVocabularyComponents();
}

void Decoder::decodeNextBlock(std::string_view block, bool isFinal) {
  unusedOctets_ = 0;
  if (!isFed_) {
    const bool isOver = std::exchange(isComplete_, false);
    if (isOver && block.empty() && isFinal) return;
    beginBlocks();
  }
  // Where the document fails or a handler throws, the next block begins another one.
  isFed_ = false;
  blocks_->append(block, isFinal);
  if (blocks_->supply()) {
    decodeBlock();
  } else {
    isFed_ = true;
  }
}

// --- Steps ---

void Decoder::decodeBlock() {
  do {
    try {
      decodeDocument();
      if (!isCut_) {
        unusedOctets_ = blocks_->unread();
        isComplete_ = true;
        return;
      }
      if (isHalted_) return;
    } catch (const Blocks::Incomplete&) {
    }
    undoStep();
  } while (blocks_->supply());
  isFed_ = true;
}

void Decoder::continueDocument() {
  isHalted_ = false;
  isStepwise_ = input_.blocks() != nullptr;
  if (progress_.hasEnded) return;
  isCut_ = false;
  if (input_.blocks() == nullptr) {
    decodeDocument();
  } else {
    decodeBlock();
  }
}

void Decoder::beginBlocks() {
  if (blocks_ == nullptr) blocks_ = std::make_unique<Blocks>();
  blocks_->clear();
  input_.open(*blocks_);
  beginDocument();
  endStep();
}

void Decoder::undoStep() {
  isCut_ = false;
  input_.undoStep();
  tableOctets_ = stepTableOctets_;
  fromTables_ = stepFromTables_;
  stepEntries_.resize(stepEntryCount_);
  for (const unsigned table : stepEntries_) {
    if (table < kStringTables) {
      strings(table).shrinkTo(strings(table).own().size() - 1);
    } else {
      names(table).shrinkTo(names(table).size() - 1);
    }
  }
  stepEntryCount_ = 0;
}

void Decoder::beginDocument() {
  isHalted_ = false;
  isStepwise_ = input_.blocks() != nullptr;
  isCut_ = false;
  isAtEnd_ = false;
  ends_ = 0;
  ended_.reset();
  progress_ = {};
  tag_ = {};
  tableOctets_ = 0;
  fromTables_ = 0;
  openElements_.clear();
  unlistedElements_.clear();
  alphabets_.clear();
  if (!dialect_.keepsVocabulary) setExternalVocabulary(nullptr);
  for (Strings& table : strings_) {
    table.forgetExternalEntries();
    const bool isKept = dialect_.keepsVocabulary && table.table() <= kEncodingAlgorithms;
    if (!isKept) table.shrinkTo(0);
  }
  for (Names& table : names_) {
    table.forgetExternalEntries();
    table.shrinkTo(0);
  }
}

void Decoder::fail(const std::string& message) const {
  throwFailure(message);
  std::abort();  // Every dialect throws.
}

void Decoder::failAtLimit(const std::string& message, const char* property) const {
  fail(atLimit(message, property));
}

void Decoder::failAtEnd() const { fail("Unexpected end of document"); }

void Decoder::checkLiteralLength(std::uint64_t length) const {
  if (length <= maximumLiteralOctets_) return;
  failAtLimit("Literal longer than " + std::to_string(maximumLiteralOctets_) + " octets",
              properties::maximumLiteralOctets);
}

/// Counts memory that is kept for the document.
void Decoder::accountFor(std::uint64_t octets) {
  tableOctets_ += octets;
  if (tableOctets_ > maximumTableOctets_) {
    failAtLimit("Tables larger than " + std::to_string(maximumTableOctets_) + " octets",
                properties::maximumTableOctets);
  }
}

}  // namespace Tavrin::fastinfoset
