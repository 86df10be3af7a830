#include "Blocks.h"

#include <algorithm>

namespace Tavrin {

void Blocks::clear() {
  kept_ = {};
  append({}, false);
  stream_.clear();
  show({});
  endStep(0);
}

void Blocks::append(std::string_view block, bool isFinal) {
  rest_ = block;
  keptOfBlock_ = 0;
  isFinal_ = isFinal;
}

bool Blocks::supply() {
  const std::size_t left = shown();
  if (kept_.empty() && left > 0) {
    kept_.assign(buffer_.gptr(), left);
    show(kept_);
    return false;
  }
  if (kept_.empty() || (left <= keptOfBlock_ && !rest_.empty())) {
    // The step begins in the block. Much memory is not held for long.
    constexpr std::size_t kMostSpare = std::size_t{64} * 1024;
    kept_.clear();
    if (kept_.capacity() > kMostSpare) kept_ = {};
    show({rest_.data() - left, left + rest_.size()});
    rest_ = {};
    return shown() > 0 || isFinal_;
  }
  // Most steps are shorter; a longer one is tried again when there is twice as much of it.
  constexpr std::uint64_t kFew = 256;
  const std::uint64_t missing = wanted_ - std::min<std::uint64_t>(wanted_, left);
  const std::string_view octets = rest_.substr(0, std::max<std::uint64_t>({missing, left, kFew}));
  kept_.erase(0, kept_.size() - left);
  kept_ += octets;
  keptOfBlock_ = std::min(keptOfBlock_, left) + octets.size();
  rest_.remove_prefix(octets.size());
  show(kept_);
  if (rest_.empty() && isFinal_) return true;
  return !octets.empty() && kept_.size() >= wanted_;
}

std::uint64_t Blocks::undoStep() {
  stream_.clear();
  show({stepBegin_, static_cast<std::size_t>(buffer_.egptr() - stepBegin_)});
  return stepCount_;
}

void Blocks::show(std::string_view octets) {
  char* const begin = const_cast<char*>(octets.data());  // Nothing is written there.
  buffer_.setg(begin, begin, begin + octets.size());
  stepBegin_ = begin;
}

void Blocks::waitFor(std::uint64_t length) {
  wanted_ = static_cast<std::uint64_t>(buffer_.gptr() - stepBegin_) + length;
  throw Incomplete();
}

}  // namespace Tavrin
