#include "measuring/CostlyStrings.h"

#include <algorithm>
#include <tuple>

namespace tool {

void CostlyStrings::add(Use use, std::string_view text, std::uint64_t size, std::uint64_t times,
                        const std::array<std::uint64_t, kEncodingCount>& octets) {
  const std::string_view kept = text.substr(0, kLongestString);
  key_.assign(1, static_cast<char>(use));
  key_.append(reinterpret_cast<const char*>(&size), sizeof size).append(kept);
  const auto [found, isNew] = entries_.try_emplace(key_, Entry{use, {}, size});
  Entry& entry = found->second;
  if (isNew) entry.text = kept;
  entry.times += times;
  for (std::size_t i = 0; i < kEncodingCount; ++i) entry.octets[i] += octets[i];
  if (entries_.size() > kMaximumStrings) forgetHalf();
}

void CostlyStrings::forgetHalf() {
  std::vector<std::uint64_t> sums;
  sums.reserve(entries_.size());
  for (const auto& [key, entry] : entries_) sums.push_back(entry.sum());
  const auto middle = sums.begin() + static_cast<std::ptrdiff_t>(sums.size() / 2);
  std::nth_element(sums.begin(), middle, sums.end());
  const std::uint64_t bound = *middle;
  std::erase_if(entries_, [bound](const auto& item) { return item.second.sum() <= bound; });
  forgotten_ += bound;
}

std::vector<CostlyStrings::Entry> CostlyStrings::costliest(std::size_t number) const {
  std::vector<Entry> result;
  result.reserve(entries_.size());
  for (const auto& [key, entry] : entries_) result.push_back(entry);
  const auto end = result.begin() + static_cast<std::ptrdiff_t>(std::min(number, result.size()));
  std::partial_sort(result.begin(), end, result.end(), [](const Entry& a, const Entry& b) {
    return std::tuple(b.sum(), a.use, std::string_view(a.text), a.size) <
           std::tuple(a.sum(), b.use, std::string_view(b.text), b.size);
  });
  result.erase(end, result.end());
  return result;
}

}  // namespace tool
