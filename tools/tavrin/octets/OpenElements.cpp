#include "octets/OpenElements.h"

#include <algorithm>

#include "printing/Text.h"

namespace tool::octets {

namespace {

constexpr std::size_t kLongestPath = 80;
constexpr std::size_t kWindow = 8 * kLongestPath;
constexpr char kCut[] = "...";

}  // namespace

std::string OpenElements::stepOf(const Name& name) const {
  return "/" + escaped(tables_.qualifiedNameOf(name));
}

void OpenElements::open(std::uint32_t index, const Name& name) {
  indexes_.push_back(index);
  if (index == 0) unlisted_.push_back(name);
  begins_.push_back(window_.size());
  window_ += stepOf(name);
  if (window_.size() <= 2 * kWindow) return;
  const auto kept =
      std::ranges::lower_bound(begins_.begin(), begins_.end() - 1, window_.size() - kWindow);
  const std::size_t dropped = *kept;
  window_.erase(0, dropped);
  begins_.erase(begins_.begin(), kept);
  for (std::size_t& begin : begins_) begin -= dropped;
}

void OpenElements::close() {
  if (indexes_.back() == 0) unlisted_.pop_back();
  indexes_.pop_back();
  window_.resize(begins_.back());
  begins_.pop_back();
  if (begins_.size() < indexes_.size() && window_.size() <= 2 * kLongestPath) fillWindow();
}

void OpenElements::fillWindow() {
  std::vector<std::string> steps;  // From the innermost outwards.
  std::size_t unlisted = unlisted_.size();
  std::size_t size = 0;
  for (std::size_t i = indexes_.size(); i-- > 0 && size < kWindow;) {
    const auto* const listed = indexes_[i] != 0 ? tables_.elements.find(indexes_[i]) : nullptr;
    steps.push_back(stepOf(listed != nullptr ? *listed : unlisted_[--unlisted]));
    size += steps.back().size();
  }
  window_.clear();
  begins_.clear();
  std::ranges::reverse(steps);
  for (const std::string& step : steps) {
    begins_.push_back(window_.size());
    window_ += step;
  }
}

std::string OpenElements::path() const {
  const bool isWhole = begins_.size() == indexes_.size();
  if (begins_.empty() || (isWhole && window_.size() <= kLongestPath)) return window_;
  const std::size_t most = window_.size() - std::min(window_.size(), kLongestPath);
  const auto first = std::ranges::lower_bound(begins_.begin(), begins_.end() - 1, most);
  return *first == 0 && isWhole ? window_ : kCut + window_.substr(*first);
}

}  // namespace tool::octets
