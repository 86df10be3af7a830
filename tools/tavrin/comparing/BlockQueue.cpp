#include "comparing/BlockQueue.h"

#include <utility>

namespace tool {

namespace {

constexpr std::size_t kMaximumBlocks = 8;
constexpr std::size_t kMaximumQueued = kMaximumBlocks * Block::kSize;
constexpr std::size_t kBlocksAtOnce = kMaximumBlocks / 2;

}  // namespace

std::unique_ptr<Block> BlockQueue::take() {
  if (toFill_.empty()) {
    const std::lock_guard lock(mutex_);
    toFill_.swap(free_);
  }
  if (toFill_.empty()) return std::make_unique<Block>();
  auto block = std::move(toFill_.back());
  toFill_.pop_back();
  return block;
}

/// A block that is longer than all others may be has the queue for itself.
bool BlockQueue::hasRoomFor(const Block& block) const {
  return blocks_.empty() ||
         (blocks_.size() < kMaximumBlocks && octets_ + block.size <= kMaximumQueued);
}

void BlockQueue::push(std::unique_ptr<Block> block) {
  std::unique_lock lock(mutex_);
  if (!hasRoomFor(*block)) {
    isFull_ = true;
    changed_.notify_one();
    changed_.wait(lock, [&] { return stopped_ || hasRoomFor(*block); });
  }
  if (stopped_) throw Stopped();
  octets_ += block->size;
  blocks_.push_back(std::move(block));
  if (blocks_.size() == kBlocksAtOnce) changed_.notify_one();
}

void BlockQueue::close(std::exception_ptr failure) {
  const std::lock_guard lock(mutex_);
  closed_ = true;
  failure_ = std::move(failure);
  changed_.notify_one();
}

std::unique_ptr<Block> BlockQueue::pop() {
  if (toLookAt_.empty()) {
    std::unique_lock lock(mutex_);
    while (!done_.empty()) {
      free_.push_back(std::move(done_.back()));
      done_.pop_back();
    }
    changed_.wait(lock, [this] { return closed_ || isFull_ || blocks_.size() >= kBlocksAtOnce; });
    toLookAt_.swap(blocks_);
    octets_ = 0;
    if (std::exchange(isFull_, false)) changed_.notify_one();
  }
  if (toLookAt_.empty()) return nullptr;
  auto block = std::move(toLookAt_.front());
  toLookAt_.pop_front();
  return block;
}

void BlockQueue::giveBack(std::unique_ptr<Block> block) {
  block->clear();
  done_.push_back(std::move(block));
}

void BlockQueue::stop() {
  const std::lock_guard lock(mutex_);
  stopped_ = true;
  changed_.notify_one();
}

}  // namespace tool
