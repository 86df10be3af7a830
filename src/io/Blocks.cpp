#include "Blocks.h"

#include <algorithm>
#include <utility>

namespace Tavrin {

void Blocks::clear() {
  kept_ = {};
  append({}, false);
  wanted_ = 1;
  stream_.clear();
  shownBegin_ = stepBegin_;
  shownOffset_ = 0;
  show({});
}

void Blocks::append(std::string_view block, bool isFinal) {
  rest_ = block;
  keptOfBlock_ = 0;
  copy_ = {};
  isCopied_ = false;
  isFinal_ = isFinal;
}

void Blocks::keepUnread() {
  if (isCopied_) return;
  std::string unread;
  unread.reserve(shown() + rest_.size());
  unread.append(buffer_.gptr(), shown()).append(rest_);
  copy_ = std::move(unread);
  isCopied_ = true;
  kept_ = {};
  keptOfBlock_ = 0;
  rest_ = {};
  wanted_ = 1;
  show(copy_);
}

bool Blocks::supply() {
  const std::size_t left = shown();
  if (kept_.empty()) {
    if (left == 0) {
      wanted_ = 1;
      showBlock();
      return shown() > 0 || isFinal_;
    }
    kept_.assign(buffer_.gptr(), left);
    show(kept_);
    return false;
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
  const bool isLast = rest_.empty() && isFinal_;
  if (!isLast && (octets.empty() || kept_.size() < wanted_)) return false;
  wanted_ = 1;
  return true;
}

std::uint64_t Blocks::undoStep() {
  stream_.clear();
  show({stepBegin_, static_cast<std::size_t>(buffer_.egptr() - stepBegin_)});
  return shownOffset_;
}

/// Shows octets that begin with a step.
void Blocks::show(std::string_view octets) {
  // Nothing is written there.
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast)
  char* const begin = const_cast<char*>(octets.data());
  buffer_.setg(begin, begin, begin + octets.size());
  shownOffset_ += static_cast<std::uint64_t>(stepBegin_ - shownBegin_);
  shownBegin_ = stepBegin_ = begin;
}

/// Shows what was not read of the block where it is, instead of its beginning after what was kept.
void Blocks::showBlock() {
  const std::size_t again = shown();
  const std::string_view octets(rest_.data() - again, again + rest_.size());
  constexpr std::size_t kMostSpare = std::size_t{64} * 1024;  // Much memory is not held for long.
  kept_.clear();
  if (kept_.capacity() > kMostSpare) kept_ = {};
  keptOfBlock_ = 0;
  rest_ = {};
  show(octets);
}

}  // namespace Tavrin
