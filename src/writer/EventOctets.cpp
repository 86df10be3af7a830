#include "EventOctets.h"

// What few events need.

namespace Tavrin {

void EventOctets::appendToRest(std::string_view octets) {
  rest_.append(begin_, at_);
  at_ = end_ = begin_;
  rest_ += octets;
}

void EventOctets::keep() {
  appendToRest(std::string_view());
  isDone_ = true;
}

void EventOctets::truncate(std::size_t size) {
  if (rest_.size() == inFront_) {
    at_ = begin_ + size;
  } else {
    rest_.resize(inFront_ + size);
  }
}

}  // namespace Tavrin
