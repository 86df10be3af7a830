#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "comparing/BlockQueue.h"
#include "comparing/NumberText.h"

namespace tool {

/// Writes records into blocks and hands these over when they are full. Where a block ends depends
/// on the records alone, so that equal documents have equal blocks.
class RecordWriter {
 public:
  /// @param document its number
  RecordWriter(BlockQueue& queue, std::uint64_t document);

  /// Notes a place that no further record stands in front of.
  void setAnchor(const Anchor& anchor) {
    anchor_ = anchor;
    if (block_->places.empty()) block_->anchor = anchor;
  }

  /// @name One record
  /// @{
  void begin(RecordKind kind, const Place& place, const std::string& entity) {
    start_ = block_->size;
    startRecord(*block_, kind, place, entity);
  }
  template <typename... Strings>
  void add(const Strings&... texts) {
    [[maybe_unused]] char* to = grow(*block_, ((sizeof(std::uint32_t) + texts.size()) + ... + 0));
    ((to = put(to, texts)), ...);
  }
  /// Remarks something of the record that is not compared.
  void remark(std::uint32_t attribute, std::string_view text);
  void end() {
    setSize();
    if (block_->size > Block::kSize && start_ > 0) moveToNextBlock();
  }
  /// @}

  /// @name A text, piece by piece
  /// @{
  void addText(std::string_view text, const Place& place, const std::string& entity) {
    // Most texts come in one piece, and have room.
    if (isInText_ || text.empty() || text.size() + Block::kHeaderSize > room()) {
      addParts(text, place, entity);
    } else {
      beginText(RecordKind::Text, place, entity);
      copy(grow(*block_, text.size()), text);
      setSize();
      isOpenText_ = true;
    }
  }
  /// Numbers, which print with blanks between.
  void addNumbers(const Numbers::Array& numbers, const Place& place, const std::string& entity);
  /// Whether the last record belongs to a text.
  bool isInText() const { return isInText_; }
  void endText() { isInText_ = false; }
  /// @}

  /// Hands over what is left.
  /// @param isCutOff the text at the end could not be read on
  void finish(bool isCutOff);

 private:
  static char* grow(Block& block, std::size_t size) {
    const std::size_t end = block.size + size;
    if (end > block.octets.size()) enlarge(block, end);
    char* const to = block.octets.data() + block.size;
    block.size = end;
    return to;
  }
  static void enlarge(Block& block, std::size_t size);
  /// Puts a string with its size in front.
  /// @return what follows it
  static char* put(char* to, std::string_view text) {
    const auto size = static_cast<std::uint32_t>(text.size());
    std::memcpy(to, &size, sizeof size);
    copy(to + sizeof size, text);
    return to + sizeof size + size;
  }
  static void copy(char* to, std::string_view text) {
    const char* const from = text.data();
    const std::size_t size = text.size();
    // Names and most values are short. Two copies of a fixed size, which may overlap, are faster
    // than a call.
    if (size > 2 * sizeof(std::uint64_t)) {
      std::memcpy(to, from, size);
    } else if (size >= sizeof(std::uint64_t)) {
      copyEnds<std::uint64_t>(to, from, size);
    } else if (size >= sizeof(std::uint32_t)) {
      copyEnds<std::uint32_t>(to, from, size);
    } else {
      for (std::size_t i = 0; i < size; ++i) to[i] = from[i];
    }
  }
  template <typename Word>
  static void copyEnds(char* to, const char* from, std::size_t size) {
    Word first;
    Word last;
    std::memcpy(&first, from, sizeof first);
    std::memcpy(&last, from + size - sizeof last, sizeof last);
    std::memcpy(to, &first, sizeof first);
    std::memcpy(to + size - sizeof last, &last, sizeof last);
  }
  static void startRecord(Block& block, RecordKind kind, const Place& place,
                          const std::string& entity) {
    *grow(block, Block::kHeaderSize) = static_cast<char>(kind);
    block.places.push_back(place);
    if (!entity.empty()) noteEntity(block, entity);
  }
  static void noteEntity(Block& block, const std::string& entity);
  std::unique_ptr<Block> newBlock();
  /// Begins a part of a text, the first one or the next.
  void beginText(RecordKind kind, const Place& place, const std::string& entity) {
    if (!isInText_ || block_->size == 0) {
      block_->lastText = block_->size;
      block_->lastTextNumber = static_cast<std::uint32_t>(block_->places.size());
    }
    isInText_ = true;
    begin(kind, place, entity);
  }
  void addParts(std::string_view text, const Place& place, const std::string& entity);
  void setSize() {
    const auto size = static_cast<std::uint32_t>(block_->size - start_ - Block::kHeaderSize);
    std::memcpy(block_->octets.data() + start_ + 1, &size, sizeof size);
  }
  void moveToNextBlock();
  void handOver();
  std::size_t room() const { return Block::kSize - std::min(Block::kSize, block_->size); }

  BlockQueue& queue_;
  const std::uint64_t document_;
  Anchor anchor_;
  std::unique_ptr<Block> block_;
  std::size_t start_ = 0;    // Where the last record begins.
  bool isInText_ = false;    // The last record is a part of a text that may go on.
  bool isOpenText_ = false;  // It is one of octets, to which others may be added.
};

}  // namespace tool
