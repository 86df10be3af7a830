#include "Escapes.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <algorithm>
#include <bit>
#include <cstring>

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
  const auto isPlain = [this](__m128i block) {
    return positions(_mm_or_si128(uneasy(block), equalToOneOf(block, blocks_, printable_))) == 0;
  };
  if (text.size() >= kTogether) {
    const std::size_t last = text.size() - kTogether;
    std::size_t i = 0;
    while (i < last && isPlain(blockAt(text.data() + i))) i += kTogether;
    // The last octets, with some in front of them that were looked at.
    return (i >= last && isPlain(blockAt(text.data() + last))) || isVerbatimFrom(text, i);
  }
  if (text.size() >= kFew && isPlain(blockOf(text))) return true;
#endif
  unsigned found = 0;
  for (const char c : text) found |= lookUp(c);
  return found == 0;
}

#ifdef __SSE2__

/// As isVerbatim, where the text holds more than ASCII or line breaks, or something to escape.
/// @param begin a multiple of a block; what is in front of it is verbatim, and complete
bool Escapes::isVerbatimFrom(std::string_view text, std::size_t begin) const {
  unsigned owed = 0;  // Where continuations must stand.
  const auto isVerbatimBlock = [&](const char* octets) {
    if (positions(equalToOneOf(blockAt(octets), blocks_, count_)) != 0) return false;
    const OctetSets sets(octets);
    if (!sets.areSimple(owed)) return false;
    owed = sets.owed();
    return true;
  };
  const std::size_t last = text.size() - kTogether;
  for (std::size_t i = begin; i < last; i += kTogether) {
    if (!isVerbatimBlock(text.data() + i)) return false;
  }
  owed = owedBehind(text.substr(0, last));
  return isVerbatimBlock(text.data() + last) && owed == 0;
}

#endif

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

/// Where the next character to escape stands, or one that is not easy to see as a character, or the
/// end. Looks at text once that has some of the former and characters of other languages.
std::size_t Escapes::findUneasy(std::string_view text, std::size_t begin) const {
  std::size_t i = begin;
#ifdef __SSE2__
  if (text.size() < kTogether && begin == 0 && isVerbatim(text)) return text.size();
  const auto characterBefore = [text](std::size_t position) {
    do --position;
    while (position > 0 && (static_cast<unsigned char>(text[position]) & 0xC0) == 0x80);
    return position;
  };
  unsigned owed = 0;  // Where continuations must stand.
  while (text.size() >= kTogether && i < text.size()) {
    const auto left = static_cast<unsigned>(std::min(text.size() - i, kTogether));
    const unsigned known = kTogether - left;  // Octets in front of the last ones.
    const char* const octets = text.data() + i - known;
    const __m128i block = blockAt(octets);
    const unsigned escaped = positions(equalToOneOf(block, blocks_, count_)) >> known;
    if ((escaped | owed | positions(uneasy(block)) >> known) == 0) {
      i += left;
      continue;
    }
    OctetSets sets(octets);
    sets.drop(known);
    const unsigned easy = escaped == 0 ? left : static_cast<unsigned>(std::countr_zero(escaped));
    if (!sets.areSimple(owed, easy)) return owed == 0 ? i : characterBefore(i);
    owed = sets.owed(owed, easy);
    i += easy;
    if (easy < left) return (owed & 1U) == 0 ? i : characterBefore(i);
  }
  if (owed != 0) return characterBefore(i);
#endif
  while (i < text.size() && lookUp(text[i]) == 0) ++i;
  return i;
}

}  // namespace Tavrin::xml
