#include "comparing/RecordReader.h"

#include <utility>

#include "comparing/Numbers.h"

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
  offset_ = 0;
  number_ = 0;
}

/// Makes the first block the one with the current record.
bool RecordReader::load() {
  if (!blocks_.empty() && offset_ == blocks_.front()->size) dropBlock();
  return hasBlock(0);
}

bool RecordReader::find(Record& record) {
  if (!load()) return false;
  record = recordAt(*blocks_.front(), offset_, number_);
  return true;
}

void RecordReader::advance(const Record& record) {
  offset_ += Block::kHeaderSize + record.body.size();
  ++number_;
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
  if (!a.load() || !b.load() || a.offset_ != 0 || b.offset_ != 0) return false;
  const Block& inA = *a.blocks_.front();
  const Block& inB = *b.blocks_.front();
  // Of a text that differs further on, what is in front of that is shown.
  if (inA.size != inB.size || inA.endsInText) return false;
  if (std::memcmp(inA.octets.data(), inB.octets.data(), inA.size) != 0) return false;
  a.dropBlock();
  b.dropBlock();
  return true;
}

// --- Texts ---

std::string_view TextPieces::rest() {
  while (rest_.empty()) {
    if (hasRecord_) records_.advance(record_);
    hasRecord_ = records_.find(record_) && isPartOfText(record_.kind);
    if (!hasRecord_) return {};
    rest_ = record_.body;
    if (record_.kind != RecordKind::Numbers) continue;
    numbers_.clear();
    Numbers::appendText(numbers_, record_.body);
    rest_ = numbers_;
  }
  return rest_;
}

void TextPieces::skip() {
  rest_ = {};
  if (hasRecord_) records_.advance(record_);
  for (hasRecord_ = false; records_.find(record_) && isPartOfText(record_.kind);) {
    records_.advance(record_);
  }
}

bool TextPieces::isCutOff() {
  Record next{};
  return !records_.find(next) && records_.isCutOff();
}

}  // namespace tool
