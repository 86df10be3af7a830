#include "EventQueue.h"

#include <algorithm>
#include <utility>

namespace Tavrin {

namespace {

// More memory is not held for long.
constexpr std::size_t kMostKept = std::size_t{256} * 1024;

constexpr std::size_t kFirst = std::size_t{4} * 1024;

}  // namespace

void QueuedAttributes::append(const Attributes& attributes) {
  const int length = attributes.getLength();
  for (int i = 0; i < length; ++i) {
    if (count_ == records_.size()) records_.emplace_back();
    AttributesImpl::Attribute& record = records_[count_++];
    record.uri = attributes.getURI(i);
    record.localName = attributes.getLocalName(i);
    record.qName = attributes.getQName(i);
    record.type = attributes.getType(i);
    record.value = attributes.getValue(i);
    octets_ += record.uri.size() + record.qName.size() + record.value.size() + sizeof record;
  }
}

void QueuedAttributes::clear() {
  if (octets_ > kMostKept) records_ = {};
  count_ = 0;
  octets_ = 0;
  show(0, 0);
}

void EventQueue::grow(std::size_t octets) {
  const std::size_t capacity = std::max(2 * capacity_, used_ + octets + kFirst);
  std::unique_ptr<char[]> memory(new char[capacity]);
  if (used_ > 0) std::memcpy(memory.get(), memory_.get(), used_);
  memory_ = std::move(memory);
  capacity_ = capacity;
}

void EventQueue::readStartTag(PullState& state, std::size_t attributeCount) {
  attributes_.show(shownAttributes_, attributeCount);
  shownAttributes_ += attributeCount;
  state.attributes = &attributes_;
  state.mappings = mappings_.data();
  state.mappingCount = mappings_.size();
}

void EventQueue::clear() {
  if (capacity_ > kMostKept) {
    memory_.reset();
    capacity_ = 0;
  }
  used_ = 0;
  size_ = 0;
  next_ = 0;
  attributes_.clear();
  shownAttributes_ = 0;
  mappings_.clear();
  positions_.clear();
}

}  // namespace Tavrin
