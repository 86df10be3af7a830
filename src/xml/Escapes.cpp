#include "Escapes.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <bit>
#include <cstring>

#include "Characters.h"
#include "PlainOctets.h"

namespace Tavrin::xml {

#ifdef __SSE2__

namespace {

constexpr std::size_t kTogether = sizeof(__m128i);

__m128i blockAt(const char* octets) {
  __m128i block;
  std::memcpy(&block, octets, kTogether);
  return block;
}

__m128i equal(__m128i block, char c) { return _mm_cmpeq_epi8(block, _mm_set1_epi8(c)); }

template <typename Blocks>
__m128i equalToOneOf(__m128i block, const Blocks& blocks, std::size_t count) {
  __m128i found = _mm_cmpeq_epi8(block, blockAt(blocks[0].data()));
  for (std::size_t i = 1; i < count; ++i) {
    found = _mm_or_si128(found, _mm_cmpeq_epi8(block, blockAt(blocks[i].data())));
  }
  return found;
}

unsigned positions(__m128i found) { return static_cast<unsigned>(_mm_movemask_epi8(found)); }

/// Octets that may be part of something invalid: controls, and those that are not ASCII.
__m128i uneasy(__m128i block) {
  // Compared with sign, octets from 0x80 on are negative.
  const __m128i below = _mm_cmplt_epi8(block, _mm_set1_epi8(0x20));
  return _mm_andnot_si128(_mm_or_si128(equal(block, '\t'), equal(block, '\n')), below);
}

}  // namespace

#endif

bool Escapes::isVerbatim(std::string_view text) const {
#ifdef __SSE2__
  if (text.size() >= kTogether) {
    unsigned afterLead = 0;  // 1 where the octet in front is the first of two.
    const auto isVerbatimBlock = [&](const char* octets) {
      const __m128i block = blockAt(octets);
      const unsigned hard =
          positions(_mm_or_si128(uneasy(block), equalToOneOf(block, blocks_, count_)));
      if ((hard | afterLead) == 0) return true;
      const OctetSets sets(octets);
      if ((hard & ~sets.high) != 0 || !sets.areSimple(afterLead)) return false;
      afterLead = sets.lead >> (kTogether - 1);
      return true;
    };
    const char* const last = text.data() + text.size() - kTogether;
    for (const char* octets = text.data(); octets < last; octets += kTogether) {
      if (!isVerbatimBlock(octets)) return false;
    }
    // The last octets, with some in front of them that were looked at.
    afterLead = last > text.data() && OctetSets::isLead(last[-1]) ? 1 : 0;
    return isVerbatimBlock(last) && afterLead == 0;
  }
#endif
  unsigned found = 0;
  for (const char c : text) found |= lookUp(c);
  return found == 0;
}

// Most text has none: sixteen characters are looked at together.
std::size_t Escapes::find(std::string_view text, std::size_t begin) const {
  std::size_t i = begin;
#ifdef __SSE2__
  for (; text.size() - i >= kTogether; i += kTogether) {
    const unsigned found = positions(equalToOneOf(blockAt(text.data() + i), blocks_, count_));
    if (found != 0) return i + static_cast<std::size_t>(std::countr_zero(found));
  }
  if (text.size() >= kTogether && i < text.size()) {
    // The rest, behind characters that were looked at.
    const std::size_t last = text.size() - kTogether;
    const unsigned found =
        positions(equalToOneOf(blockAt(text.data() + last), blocks_, count_)) >> (i - last);
    return found == 0 ? text.size() : i + static_cast<std::size_t>(std::countr_zero(found));
  }
#endif
  while (i < text.size() && numberOf(text[i]) == 0) ++i;
  return i;
}

std::size_t Escapes::append(std::string& out, std::string_view text) const {
  if (isVerbatim(text)) {
    out += text;
    return kAllValid;
  }
  if (!isEasyText(text)) {
    const std::size_t invalid = findInvalid(text);
    if (invalid != kAllValid) return invalid;
  }
  for (std::size_t begin = 0;;) {
    const std::size_t end = find(text, begin);
    out.append(text, begin, end - begin);
    if (end == text.size()) return kAllValid;
    out += reference(text[end]);
    begin = end + 1;
  }
}

}  // namespace Tavrin::xml
