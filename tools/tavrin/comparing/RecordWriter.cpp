#include "comparing/RecordWriter.h"

#include <algorithm>
#include <utility>

namespace tool {

RecordWriter::RecordWriter(BlockQueue& queue, std::uint64_t document)
    : queue_(queue), document_(document), block_(newBlock()) {}

std::unique_ptr<Block> RecordWriter::newBlock() {
  auto block = queue_.take();
  block->document = document_;
  block->anchor = anchor_;
  return block;
}

void RecordWriter::enlarge(Block& block, std::size_t size) {
  block.octets.resize(std::max({Block::kRoom, size, block.octets.size() * 2}));
}

void RecordWriter::noteEntity(Block& block, const std::string& entity) {
  if (block.entities.empty() || block.entities.back() != entity) block.entities.push_back(entity);
  block.entityOf.resize(block.places.size());
  block.entityOf.back() = static_cast<std::uint32_t>(block.entities.size());
}

void RecordWriter::remark(std::uint32_t attribute, std::string_view text) {
  const auto record = static_cast<std::uint32_t>(block_->places.size() - 1);
  block_->remarks.push_back({record, attribute, std::string(text)});
}

/// The last record has no room in its block.
void RecordWriter::moveToNextBlock() {
  const Record record =
      recordAt(*block_, start_, static_cast<std::uint32_t>(block_->places.size() - 1));
  auto next = newBlock();
  startRecord(*next, record.kind, record.place(), record.entity());
  std::memcpy(next->octets.data() + 1, block_->octets.data() + start_ + 1, sizeof(std::uint32_t));
  copy(grow(*next, record.body.size()), record.body);
  auto& remarks = block_->remarks;
  while (!remarks.empty() && remarks.back().record == record.number) {
    next->remarks.push_back({0, remarks.back().attribute, std::move(remarks.back().text)});
    remarks.pop_back();
  }
  block_->size = block_->lastText = start_;
  block_->places.pop_back();
  block_->entityOf.resize(std::min(block_->entityOf.size(), block_->places.size()));
  queue_.push(std::exchange(block_, std::move(next)));
  start_ = 0;
}

void RecordWriter::handOver() {
  isOpenText_ = false;
  if (!isInText_) block_->lastText = block_->size;
  queue_.push(std::exchange(block_, newBlock()));
}

void RecordWriter::addParts(std::string_view text, const Place& place, const std::string& entity) {
  if (!isInText_) isOpenText_ = false;
  while (!text.empty()) {
    if (room() <= (isOpenText_ ? 0 : Block::kHeaderSize)) handOver();
    if (!isOpenText_) beginText(RecordKind::Text, place, entity);
    isOpenText_ = true;
    const std::size_t size = std::min(room(), text.size());
    copy(grow(*block_, size), text.substr(0, size));
    setSize();
    text.remove_prefix(size);
  }
}

void RecordWriter::addNumbers(const Numbers::Array& numbers, const Place& place,
                              const std::string& entity) {
  constexpr std::size_t kHeader = Block::kHeaderSize + Numbers::kHeaderSize;
  std::string_view octets = numbers.octets;
  for (bool isContinued = false; !octets.empty(); isContinued = true) {
    if (room() < kHeader + numbers.size) handOver();
    const std::size_t whole = (room() - kHeader) / numbers.size * numbers.size;
    const std::string_view part = octets.substr(0, whole);
    beginText(RecordKind::Numbers, place, entity);
    Numbers::putHeader(grow(*block_, Numbers::kHeaderSize), numbers.mark, isContinued);
    copy(grow(*block_, part.size()), part);
    setSize();
    octets.remove_prefix(part.size());
  }
  isOpenText_ = false;
}

void RecordWriter::finish(bool isCutOff) {
  block_->isCutOff = isCutOff && isInText_;
  if (block_->size > 0 || block_->isCutOff) handOver();
  endText();
}

}  // namespace tool
