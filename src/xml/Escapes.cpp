#include "Escapes.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <bit>
#include <cstring>

#include "Characters.h"
#include "PlainOctets.h"

namespace Tavrin::xml {

/// Where the next character to escape stands, or the end. Most text has none: sixteen characters
/// are looked at together.
std::size_t Escapes::findEscaped(std::string_view text, std::size_t begin) const {
  std::size_t i = begin;
#ifdef __SSE2__
  constexpr std::size_t kTogether = sizeof(__m128i);
  for (; text.size() - i >= kTogether; i += kTogether) {
    __m128i all;
    std::memcpy(&all, text.data() + i, kTogether);
    __m128i found = _mm_cmpeq_epi8(all, _mm_set1_epi8(characters_[0]));
    for (std::size_t k = 1; k < kMost; ++k) {
      found = _mm_or_si128(found, _mm_cmpeq_epi8(all, _mm_set1_epi8(characters_[k])));
    }
    const auto positions = static_cast<unsigned>(_mm_movemask_epi8(found));
    if (positions != 0) return i + static_cast<std::size_t>(std::countr_zero(positions));
  }
#endif
  while (i < text.size() && numberOf(text[i]) == 0) ++i;
  return i;
}

std::size_t Escapes::append(std::string& out, std::string_view text) const {
  if (!isEasyText(text)) {
    const std::size_t invalid = findInvalid(text);
    if (invalid != kAllValid) return invalid;
  }
  for (std::size_t begin = 0;;) {
    const std::size_t end = findEscaped(text, begin);
    out.append(text, begin, end - begin);
    if (end == text.size()) return kAllValid;
    out += references_[numberOf(text[end])];
    begin = end + 1;
  }
}

}  // namespace Tavrin::xml
