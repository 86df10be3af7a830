#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "../io/CopyOctets.h"

namespace Tavrin::xml {

/// Keeps copies of short texts, one after the other in few blocks of memory. A copy stays where it
/// is until all are forgotten.
class TextStore {
 public:
  TextStore() = default;
  TextStore(TextStore&& other) noexcept { swap(other); }
  TextStore& operator=(TextStore&& other) noexcept {
    TextStore moved(std::move(other));
    swap(moved);
    return *this;
  }
  TextStore(const TextStore&) = delete;
  TextStore& operator=(const TextStore&) = delete;
  ~TextStore() = default;

  /// A copy of a text.
  std::string_view keep(std::string_view text) {
    char* const begin =
        text.size() <= room() ? std::exchange(at_, at_ + text.size()) : makeRoom(text.size());
    copyOctets(begin, text);
    return {begin, text.size()};
  }

  /// Forgets all texts. Little memory is kept.
  void clear() {
    others_ = Blocks();
    if (blockSize_ > kMostKept) {
      block_.reset();
      blockSize_ = 0;
    }
    at_ = block_.get();
  }

 private:
  using Block = std::unique_ptr<char[]>;
  using Blocks = std::vector<Block>;

  static constexpr std::size_t kFirst = 512;
  static constexpr std::size_t kLargest = std::size_t{64} * 1024;
  static constexpr std::size_t kMostKept = 4096;
  // Less than this part of a block stays unused.
  static constexpr std::size_t kPart = 4;

  std::size_t room() const { return blockSize_ - static_cast<std::size_t>(at_ - block_.get()); }

  /// Memory for a text that does not fit: in a new block, or one of its own.
  char* makeRoom(std::size_t size) {
    const std::size_t next = std::clamp(2 * blockSize_, kFirst, kLargest);
    if (size > next / kPart) {
      others_.push_back(std::make_unique_for_overwrite<char[]>(size));
      return others_.back().get();
    }
    auto block = std::make_unique_for_overwrite<char[]>(next);
    if (block_ != nullptr) others_.push_back(std::move(block_));
    block_ = std::move(block);
    blockSize_ = next;
    at_ = block_.get() + size;
    return block_.get();
  }

  void swap(TextStore& other) noexcept {
    std::swap(block_, other.block_);
    std::swap(blockSize_, other.blockSize_);
    std::swap(at_, other.at_);
    std::swap(others_, other.others_);
  }

  Block block_;  // That texts are added to.
  std::size_t blockSize_ = 0;
  char* at_ = nullptr;  // The end of its texts.
  Blocks others_;       // Full ones, and those of long texts.
};

}  // namespace Tavrin::xml
