#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>

#include "comparing/BlockQueue.h"
#include "comparing/Records.h"

namespace tool {

/// The records of a queue, one after the other. It can look ahead, and holds the blocks meanwhile.
class RecordReader {
 public:
  explicit RecordReader(BlockQueue& queue) : queue_(queue) {}

  /// A place between two records, from the current one on. It is valid until the next `advance`.
  struct Position {
    std::size_t block = 0;
    std::size_t offset = 0;
    std::uint32_t number = 0;
  };

  /// Finds the current record, which is valid until the next call.
  /// @return false behind the last one
  bool find(Record& record) {
    if (blocks_.empty() || offset_ == blocks_.front()->size) {
      if (!load()) return false;
    }
    record = recordAt(*blocks_.front(), offset_, number_);
    return true;
  }
  /// Goes on to the record behind the current one.
  void advance(const Record& record) {
    offset_ += Block::kHeaderSize + record.body.size();
    ++number_;
  }

  /// Where the current record is.
  Position position() const { return {0, offset_, number_}; }
  /// Finds the record at a position, and moves this behind it.
  /// @return false behind the last record
  bool findNext(Position& position, Record& record);

  /// Goes past what is left of a block if another reader has the same left, and so does that. Of a
  /// text at the end, the whole stays: where it differs further on, its beginning is shown.
  static bool passEqualBlocks(RecordReader& a, RecordReader& b);

  /// Whether the document could not be read on in the text that comes last. Ask behind it.
  bool isCutOff() const { return isCutOff_; }

 private:
  bool load();
  bool hasBlock(std::size_t index);
  void dropBlock();
  void passToLastText();

  BlockQueue& queue_;
  std::deque<std::unique_ptr<Block>> blocks_;
  std::size_t offset_ = 0;  // Of the current record, in the first block.
  std::uint32_t number_ = 0;
  bool isNew_ = true;  // The first block has not been tried to be passed.
  bool isCutOff_ = false;
};

/// A text, from the current record on, in pieces.
class TextPieces {
 public:
  explicit TextPieces(RecordReader& records) : records_(records) {}

  /// What of the text has not been taken; empty at its end. It is valid until the next call.
  std::string_view rest() { return rest_.empty() ? findRest() : rest_; }
  void take(std::size_t size) { rest_.remove_prefix(size); }
  /// Takes all that is left.
  void skip();
  /// Whether the end of the text is where the document could not be read on. Ask at its end.
  bool isCutOff();

  /// Whether numbers come next of which no text has been made.
  bool areNumbers();
  /// The record of numbers that comes next, of which nothing has been taken; null where something
  /// else comes. It is valid until the next call.
  const Record* numbers();
  /// Takes that record as it is.
  void takeNumbers() { numbersLeft_ = 0; }
  /// Takes numbers that come next and are recognised at the beginning of a text.
  /// @return how many octets of it they are
  std::size_t takeNumbersIn(std::string_view text);

 private:
  static constexpr std::size_t kFew = 4;
  static constexpr std::size_t kMany = 256;

  bool findRecord();
  void findPart();
  std::string_view findRest();

  RecordReader& records_;
  Record record_{};
  bool hasRecord_ = false;       // It is taken, but for the rest.
  std::size_t numbersLeft_ = 0;  // Of it, those of which no text has been made.
  std::size_t toPrint_ = kFew;   // So many at a time, unless they are recognised.
  std::string_view rest_;
  std::string numbers_;  // As text.
};

}  // namespace tool
