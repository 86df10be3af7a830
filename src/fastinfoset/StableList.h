#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

namespace Tavrin::fastinfoset {

/// Entries that stay where they are when the list grows, and are used again after it was emptied.
template <typename Entry>
class StableList {
 public:
  std::size_t size() const { return size_; }
  Entry& operator[](std::size_t position) { return blocks_[position / kBlock][position % kBlock]; }
  const Entry& operator[](std::size_t position) const {
    return blocks_[position / kBlock][position % kBlock];
  }
  Entry& back() { return (*this)[size_ - 1]; }

  /// The entry after the last one, which `grow` makes a part of the list. It is a new one, or one
  /// that was in the list.
  Entry& next() {
    if (size_ == blocks_.size() * kBlock) blocks_.push_back(std::make_unique<Entry[]>(kBlock));
    return (*this)[size_];
  }
  void grow() { ++size_; }

  /// Drops the entries from a position on.
  /// @param release is called with each that is kept for later
  template <typename Release>
  void shrinkTo(std::size_t size, Release release) {
    if (size >= size_) return;
    const std::size_t blocks = std::max(kMostSpare, (size + kBlock - 1) / kBlock);
    if (blocks_.size() > blocks) blocks_.resize(blocks);
    const std::size_t kept = std::min(size_, blocks_.size() * kBlock);
    for (std::size_t i = size; i < kept; ++i) release((*this)[i]);
    size_ = size;
  }

 private:
  static constexpr std::size_t kBlock = 16;
  static constexpr std::size_t kMostSpare = 4;  // Blocks.

  std::vector<std::unique_ptr<Entry[]>> blocks_;
  std::size_t size_ = 0;
};

}  // namespace Tavrin::fastinfoset
