#pragma once

#include <cstddef>
#include <string>

/// Asks about texts of every length, up to the longest, that have a sequence at every place.
template <typename Check>
void atEveryPlace(const std::string& sequence, std::size_t longest, Check check) {
  for (std::size_t length = sequence.size(); length <= longest; ++length) {
    for (std::size_t at = 0; at + sequence.size() <= length; ++at) {
      std::string text(length, 'a');
      text.replace(at, sequence.size(), sequence);
      check(text, at);
    }
  }
}
