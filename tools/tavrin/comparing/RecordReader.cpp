#include "comparing/RecordReader.h"

#include <algorithm>
#include <utility>

#include "comparing/NumberText.h"

namespace tool {

bool RecordReader::hasBlock(std::size_t index) {
  while (blocks_.size() <= index) {
    auto block = queue_.pop();
    if (!block) return false;
    isCutOff_ = block->isCutOff;
    if (block->size > 0) blocks_.push_back(std::move(block));
  }
  return true;
}

void RecordReader::dropBlock() {
  queue_.giveBack(std::move(blocks_.front()));
  blocks_.pop_front();
  isNew_ = true;
  offset_ = 0;
  number_ = 0;
}

/// Makes the first block the one with the current record.
bool RecordReader::load() {
  if (!blocks_.empty() && offset_ == blocks_.front()->size) dropBlock();
  return hasBlock(0);
}

bool RecordReader::findNext(Position& position, Record& record) {
  if (!hasBlock(position.block)) return false;
  if (position.offset == blocks_[position.block]->size) {
    if (!hasBlock(position.block + 1)) return false;
    position = {position.block + 1, 0, 0};
  }
  record = recordAt(*blocks_[position.block], position.offset, position.number++);
  position.offset += Block::kHeaderSize + record.body.size();
  return true;
}

bool RecordReader::passEqualBlocks(RecordReader& a, RecordReader& b) {
  if (!a.load() || !b.load() || (!a.isNew_ && !b.isNew_)) return false;
  a.isNew_ = b.isNew_ = false;
  const Block& inA = *a.blocks_.front();
  const Block& inB = *b.blocks_.front();
  const std::size_t left = inA.size - a.offset_;
  if (inB.size - b.offset_ != left || inA.size - inA.lastText != inB.size - inB.lastText ||
      inA.lastText <= a.offset_) {
    return false;
  }
  if (std::memcmp(inA.octets.data() + a.offset_, inB.octets.data() + b.offset_, left) != 0) {
    return false;
  }
  a.passToLastText();
  b.passToLastText();
  return true;
}

void RecordReader::passToLastText() {
  const Block& block = *blocks_.front();
  offset_ = block.lastText;
  number_ = block.lastTextNumber;
}

// --- Texts ---

bool TextPieces::findRecord() {
  if (hasRecord_) records_.advance(record_);
  hasRecord_ = records_.find(record_) && isPartOfText(record_.kind);
  return hasRecord_;
}

/// Makes sure that something of the current record is left, if a record is.
void TextPieces::findPart() {
  if (!rest_.empty() || numbersLeft_ > 0 || !findRecord()) return;
  if (record_.kind == RecordKind::Numbers) {
    numbersLeft_ = Numbers::countOf(record_.body);
  } else {
    rest_ = record_.body;
  }
}

bool TextPieces::areNumbers() {
  findPart();
  return rest_.empty() && numbersLeft_ > 0;
}

const Record* TextPieces::numbers() {
  return areNumbers() && numbersLeft_ == Numbers::countOf(record_.body) ? &record_ : nullptr;
}

std::size_t TextPieces::takeNumbersIn(std::string_view text) {
  const std::size_t first = Numbers::countOf(record_.body) - numbersLeft_;
  const auto [numbers, octets] = Numbers::recognise(record_.body, first, text);
  numbersLeft_ -= numbers;
  if (numbers > 0) toPrint_ = kFew;
  return octets;
}

std::string_view TextPieces::findRest() {
  if (areNumbers()) {
    const std::size_t first = Numbers::countOf(record_.body) - numbersLeft_;
    const std::size_t count = std::min(numbersLeft_, toPrint_);
    // Where a block of the text ends, only one or two are not recognised.
    toPrint_ = std::min(2 * toPrint_, kMany);
    numbers_.clear();
    Numbers::appendText(numbers_, record_.body, first, count);
    numbersLeft_ -= count;
    rest_ = numbers_;
  }
  return rest_;
}

void TextPieces::skip() {
  rest_ = {};
  numbersLeft_ = 0;
  while (findRecord()) {
  }
}

bool TextPieces::isCutOff() {
  Record next{};
  return !records_.find(next) && records_.isCutOff();
}

}  // namespace tool
