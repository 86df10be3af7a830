#include "comparing/BlockQueue.h"

#include <utility>

namespace tool {

namespace {

constexpr std::size_t kMaximumBlocks = 8;
constexpr std::size_t kMaximumQueued = kMaximumBlocks * Block::kSize;

}  // namespace

std::unique_ptr<Block> BlockQueue::take() {
  {
    const std::lock_guard lock(mutex_);
    if (!free_.empty()) {
      auto block = std::move(free_.back());
      free_.pop_back();
      return block;
    }
  }
  return std::make_unique<Block>();
}

/// A block that is longer than all others may be has the queue for itself.
bool BlockQueue::hasRoomFor(const Block& block) const {
  return blocks_.empty() ||
         (blocks_.size() < kMaximumBlocks && octets_ + block.size <= kMaximumQueued);
}

void BlockQueue::push(std::unique_ptr<Block> block) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [&] { return stopped_ || hasRoomFor(*block); });
  if (stopped_) throw Stopped();
  octets_ += block->size;
  blocks_.push_back(std::move(block));
  changed_.notify_one();
}

void BlockQueue::close(std::exception_ptr failure) {
  const std::lock_guard lock(mutex_);
  closed_ = true;
  failure_ = std::move(failure);
  changed_.notify_one();
}

std::unique_ptr<Block> BlockQueue::pop() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return closed_ || !blocks_.empty(); });
  if (blocks_.empty()) return nullptr;
  auto block = std::move(blocks_.front());
  blocks_.pop_front();
  octets_ -= block->size;
  // The reading thread is woken for more than one block.
  if (blocks_.size() <= kMaximumBlocks / 2) changed_.notify_one();
  return block;
}

void BlockQueue::giveBack(std::unique_ptr<Block> block) {
  block->clear();
  const std::lock_guard lock(mutex_);
  free_.push_back(std::move(block));
}

void BlockQueue::stop() {
  const std::lock_guard lock(mutex_);
  stopped_ = true;
  changed_.notify_one();
}

}  // namespace tool
