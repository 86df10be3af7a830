#include "options/Suggestion.h"

#include <algorithm>
#include <cstddef>

namespace tool {

namespace {

constexpr std::size_t kLongestWord = 64;
constexpr std::size_t kLettersForMistake = 3;  // So many letters of a word to each wrong one.

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c; }

/// How many letters have to be put in, left out or replaced, or neighbours exchanged, to make one
/// word of another.
std::size_t distanceOf(std::string_view a, std::string_view b) {
  using Row = std::vector<std::size_t>;
  Row beforeLast(b.size() + 1);
  Row last(b.size() + 1);
  Row current(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) current[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    beforeLast.swap(last);
    last.swap(current);
    current[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const bool isSame = lower(a[i - 1]) == lower(b[j - 1]);
      current[j] = std::min({last[j] + 1, current[j - 1] + 1, last[j - 1] + (isSame ? 0 : 1)});
      const bool isExchanged = i > 1 && j > 1 && lower(a[i - 1]) == lower(b[j - 2]) &&
                               lower(a[i - 2]) == lower(b[j - 1]);
      if (isExchanged) current[j] = std::min(current[j], beforeLast[j - 2] + 1);
    }
  }
  return current[b.size()];
}

}  // namespace

std::string suggestion(std::string_view word, const std::vector<std::string>& names) {
  if (word.empty() || word.size() > kLongestWord) return {};
  const std::string* nearest = nullptr;
  std::size_t least = 0;
  for (const std::string& name : names) {
    const std::size_t distance = distanceOf(word, name);
    const std::size_t letters = std::max(word.size(), name.size());
    if (distance * kLettersForMistake > letters || (nearest && distance >= least)) continue;
    nearest = &name;
    least = distance;
  }
  return nearest ? "did you mean \"" + *nearest + "\"? " : std::string();
}

std::function<std::string(const std::string&)> oneOf(const std::vector<std::string>& words) {
  std::string all = words[0];
  for (std::size_t i = 1; i < words.size(); ++i) {
    all += (i + 1 < words.size() ? ", " : " or ") + words[i];
  }
  return [words, all](const std::string& text) {
    const bool isOne = std::ranges::find(words, text) != words.end();
    return isOne ? std::string() : "\"" + text + "\" is not " + all;
  };
}

}  // namespace tool
