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
  unsigned leadOfTwo;     ///< 0xC2 to 0xDF.
  unsigned leadOfThree;   ///< 0xE1 to 0xEC, 0xEE: any two continuations make a character of XML.
  unsigned control;       ///< Below 0x20, but for tab and line feed.

  static constexpr std::size_t kCount = 16;

  explicit OctetSets(const char* octets) {
    __m128i all;
    std::memcpy(&all, octets, sizeof all);
    const auto each = [](int octet) { return _mm_set1_epi8(static_cast<char>(octet)); };
    const auto set = [](__m128i found) { return static_cast<unsigned>(_mm_movemask_epi8(found)); };
    // Compared with sign, octets from 0x80 on are negative.
    const auto isBelow = [&](int octet) { return _mm_cmplt_epi8(all, each(octet)); };
    const auto is = [&](int octet) { return _mm_cmpeq_epi8(all, each(octet)); };
    high = set(all);
    continuation = set(isBelow(0xC0));
    leadOfTwo = set(_mm_andnot_si128(isBelow(0xC2), isBelow(0xE0)));
    leadOfThree = set(_mm_or_si128(_mm_andnot_si128(isBelow(0xE1), isBelow(0xED)), is(0xEE)));
    control = set(_mm_andnot_si128(_mm_or_si128(is('\t'), is('\n')), isBelow(0x20))) & ~high;
  }

  /// Where continuations have to stand; beyond the sixteen octets, too.
  unsigned expected() const { return (leadOfTwo | leadOfThree) << 1 | leadOfThree << 2; }

  /// Whether the first ones are ASCII characters of XML or belong to characters of two or three
  /// octets.
  /// @param owed  where the octets in front want continuations
  /// @param count how many are looked at
  bool areSimple(unsigned owed, unsigned count = kCount) const {
    const unsigned all = (1U << count) - 1;
    const unsigned other = (continuation ^ (expected() | owed)) | control |
                           (high ^ (continuation | leadOfTwo | leadOfThree));
    return (other & all) == 0;
  }
  /// Where the octets behind the first ones must be continuations.
  /// @param ofFront where the octets in front of all wanted them
  unsigned owed(unsigned ofFront = 0, unsigned count = kCount) const {
    return (expected() | ofFront) >> count;
  }

  /// Leaves the first ones out.
  void drop(unsigned count) {
    for (unsigned* const set : {&high, &continuation, &leadOfTwo, &leadOfThree, &control}) {
      *set >>= count;
    }
  }
};

/// Where octets behind a text must be continuations, as OctetSets::owed tells it.
inline unsigned owedBehind(std::string_view text) {
  const auto at = [text](std::size_t fromEnd) {
    return fromEnd > text.size()
               ? 0U
               : unsigned{static_cast<unsigned char>(text[text.size() - fromEnd])};
  };
  const auto leadsThree = [](unsigned octet) {
    return (octet >= 0xE1 && octet <= 0xEC) || octet == 0xEE;
  };
  const unsigned last = at(1);
  if (last >= 0xC2 && last <= 0xDF) return 0b01;
  if (leadsThree(last)) return 0b11;
  return leadsThree(at(2)) ? 0b01 : 0;
}

/// Whether a text of at least 16 octets is characters of one or two octets, and most of three,
/// alone, as that of most languages is. What follows a character does not depend on it, so it takes
/// no branch that could be guessed wrong. Measured: reading such text as Fast Infoset takes a fifth
/// less time.
inline bool isSimpleText(std::string_view text) {
  unsigned owed = 0;
  for (std::size_t i = 0; text.size() - i >= OctetSets::kCount; i += OctetSets::kCount) {
    const OctetSets sets(text.data() + i);
    if (!sets.areSimple(owed)) return false;
    owed = sets.owed();
  }
  // The last octets, with some in front of them that were looked at.
  const std::size_t last = text.size() - OctetSets::kCount;
  const OctetSets sets(text.data() + last);
  return sets.areSimple(owedBehind(text.substr(0, last))) && sets.owed() == 0;
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
