#include "Escapes.h"

#include "Characters.h"

namespace Tavrin::xml {

/// Most text has nothing to escape: eight characters at a time.
std::size_t Escapes::findNumbered(std::string_view text, std::size_t begin, unsigned mask) const {
  std::size_t i = begin;
  for (; text.size() - i >= 8; i += 8) {
    const char* const c = text.data() + i;
    const unsigned any = numberOf(c[0]) | numberOf(c[1]) | numberOf(c[2]) | numberOf(c[3]) |
                         numberOf(c[4]) | numberOf(c[5]) | numberOf(c[6]) | numberOf(c[7]);
    if ((any & mask) != 0) break;
  }
  while (i < text.size() && (numberOf(text[i]) & mask) == 0) ++i;
  return i;
}

std::size_t Escapes::append(std::string& out, std::string_view text) const {
  unsigned mask = 0xFF;
  std::size_t begin = 0;
  std::size_t end = 0;
  while (true) {
    end = findNumbered(text, end, mask);
    if (end < text.size() && numberOf(text[end]) == kDoubtful) {
      // The first doubtful character has the rest examined once; then none is doubtful any more.
      const std::size_t invalid = findInvalid(text.substr(end));
      if (invalid != kAllValid) return end + invalid;
      mask = kDoubtful - 1U;
      continue;
    }
    out.append(text, begin, end - begin);
    if (end == text.size()) return kAllValid;
    out += references_[numberOf(text[end])];
    begin = ++end;
  }
}

}  // namespace Tavrin::xml
