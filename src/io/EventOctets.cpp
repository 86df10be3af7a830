#include "EventOctets.h"

#include <algorithm>

namespace Tavrin {

/// Makes room for more in the string, at least as much again as there was.
void EventOctets::growBy(std::size_t size) {
  constexpr std::size_t kLeast = 256;
  const std::size_t before = this->size();
  const std::size_t room = std::max({kLeast, 2 * before, before + size});
  rest_.resize(inFront_ + room);
  char* const begin = rest_.data() + inFront_;
  if (buffer_ != nullptr) std::copy(begin_, at_, begin);
  buffer_ = nullptr;
  begin_ = begin;
  at_ = begin + before;
  end_ = begin + room;
}

void EventOctets::keep() {
  if (buffer_ != nullptr) growBy(0);
  inFront_ += size();
  rest_.resize(inFront_);
}

}  // namespace Tavrin
