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

constexpr std::size_t kTogether = OctetSets::kCount;

__m128i blockAt(const char* octets) {
  __m128i block;
  std::memcpy(&block, octets, kTogether);
  return block;
}

constexpr std::size_t kFew = 4;

/// The octets of a text of kFew or more, but less than a block; some of them twice.
__m128i blockOf(std::string_view text) {
  std::uint64_t first = 0;
  std::uint64_t last = 0;
  const char* const octets = text.data();
  if (text.size() >= sizeof first) {
    std::memcpy(&first, octets, sizeof first);
    std::memcpy(&last, octets + text.size() - sizeof last, sizeof last);
  } else {
    std::memcpy(&first, octets, kFew);
    std::memcpy(&last, octets + text.size() - kFew, kFew);
    first |= last << 32U;
    last = first;
  }
  return _mm_set_epi64x(static_cast<long long>(first), static_cast<long long>(last));
}

template <typename Blocks>
__m128i equalToOneOf(__m128i block, const Blocks& blocks, std::size_t count) {
  __m128i found = _mm_cmpeq_epi8(block, blockAt(blocks[0].data()));
  for (std::size_t i = 1; i < count; ++i) {
    found = _mm_or_si128(found, _mm_cmpeq_epi8(block, blockAt(blocks[i].data())));
  }
  return found;
}

unsigned positions(__m128i found) { return static_cast<unsigned>(_mm_movemask_epi8(found)); }

/// Octets to look at closer: controls, line breaks among them, and those that are not ASCII.
__m128i uneasy(__m128i block) {
  // Compared with sign, octets from 0x80 on are negative.
  return _mm_cmplt_epi8(block, _mm_set1_epi8(0x20));
}

}  // namespace

#endif

bool Escapes::isVerbatim(std::string_view text) const {
#ifdef __SSE2__
  if (text.size() >= kTogether) {
    unsigned owed = 0;  // Where continuations must stand.
    const auto isVerbatimBlock = [&](const char* octets) {
      const __m128i block = blockAt(octets);
      const __m128i escaped = equalToOneOf(block, blocks_, count_);
      if ((positions(_mm_or_si128(escaped, uneasy(block))) | owed) == 0) return true;
      const OctetSets sets(octets);
      if (positions(escaped) != 0 || !sets.areSimple(owed)) return false;
      owed = sets.owed();
      return true;
    };
    const std::size_t last = text.size() - kTogether;
    for (std::size_t i = 0; i < last; i += kTogether) {
      if (!isVerbatimBlock(text.data() + i)) return false;
    }
    // The last octets, with some in front of them that were looked at.
    owed = owedBehind(text.substr(0, last));
    return isVerbatimBlock(text.data() + last) && owed == 0;
  }
  if (text.size() >= kFew) {
    const __m128i block = blockOf(text);
    if (positions(_mm_or_si128(uneasy(block), equalToOneOf(block, blocks_, count_))) == 0) {
      return true;
    }
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
  if (i == 0 && text.size() >= kFew && text.size() < kTogether &&
      positions(equalToOneOf(blockOf(text), blocks_, count_)) == 0) {
    return text.size();
  }
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
