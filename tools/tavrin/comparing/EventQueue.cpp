#include "comparing/EventQueue.h"

#include <utility>

namespace tool {

namespace {

constexpr std::size_t kMaximumBatches = 4;

}  // namespace

void EventQueue::push(EventBatch batch) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return stopped_ || batches_.size() < kMaximumBatches; });
  if (stopped_) throw Stopped();
  batches_.push_back(std::move(batch));
  changed_.notify_one();
}

void EventQueue::close(std::exception_ptr failure) {
  const std::lock_guard lock(mutex_);
  closed_ = true;
  failure_ = std::move(failure);
  changed_.notify_one();
}

bool EventQueue::pop(EventBatch& batch) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return closed_ || !batches_.empty(); });
  if (batches_.empty()) return false;
  batch = std::move(batches_.front());
  batches_.pop_front();
  changed_.notify_one();
  return true;
}

void EventQueue::stop() {
  const std::lock_guard lock(mutex_);
  stopped_ = true;
  changed_.notify_one();
}

}  // namespace tool
