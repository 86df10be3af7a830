#include "EventOctets.h"

#include <algorithm>

namespace Tavrin {

/// Moves the octets into the string, with a capacity that at least doubles.
void EventOctets::growBy(std::size_t size) {
  constexpr std::size_t kLeast = 256;
  const std::size_t before = this->size();
  const std::size_t capacity = std::max({kLeast, 2 * before, before + size});
  rest_.resize(kept_ + capacity);
  char* const begin = rest_.data() + kept_;
  if (buffer_ != nullptr) std::copy(begin_, at_, begin);
  buffer_ = nullptr;
  begin_ = begin;
  at_ = begin + before;
  end_ = begin + capacity;
}

void EventOctets::keep() {
  if (buffer_ != nullptr) growBy(0);
  kept_ += size();
  rest_.resize(kept_);
}

}  // namespace Tavrin
