#pragma once

#include <algorithm>
#include <cstddef>
#include <istream>
#include <string_view>

namespace Tavrin::fastinfoset {

// What a document of Fast Infoset begins with: the part of its header that begins no text, or an
// XML declaration up to its encoding (X.891, 12.3).
inline constexpr std::string_view kIdentification("\xE0\0", 2);
inline constexpr std::string_view kTextStarts[] = {"<?xml encoding='finf'",
                                                   "<?xml version='1.0' encoding='finf'",
                                                   "<?xml version='1.1' encoding='finf'"};

/// So many octets are enough to tell.
inline constexpr std::size_t kLongestStart = kTextStarts[1].size();

inline bool isFastInfoset(std::string_view start) {
  if (start.empty()) return false;
  if (start.starts_with(kIdentification.substr(0, start.size()))) return true;
  return std::ranges::any_of(kTextStarts, [&](auto each) { return start.starts_with(each); });
}

/// Whether a stream begins like that, as far as its buffer has octets. It may wait for the first.
bool beginsFastInfoset(std::istream& stream);

/// Whether these octets are too few to tell.
inline bool mayBeFastInfoset(std::string_view start) {
  return std::ranges::any_of(kTextStarts, [&](auto each) {
    return each.size() > start.size() && each.starts_with(start);
  });
}

}  // namespace Tavrin::fastinfoset
