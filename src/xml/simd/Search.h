#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "PlainOctets.h"

#if defined(__SSE2__) && !defined(TAVRIN_WITHOUT_AVX2)
#include <emmintrin.h>
/// There is code for SSE2, which every x86-64 has.
#define TAVRIN_HAS_SSE2 1
#endif

// Searches of texts that are most often short: sixteen octets at a time, without a call.

namespace Tavrin::xml {

/// The first octet that is one of some, or not from 0x20 to 0x7F; or the end.
/// @tparam passesTabs whether a tab is passed over
template <bool passesTabs, char... sought>
const char* findOctet(const char* at, const char* end) {
#ifdef TAVRIN_HAS_SSE2
  for (; end - at >= 16; at += 16) {
    const __m128i octets = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    // With a sign, an octet from 0x80 on is less than any other.
    __m128i found = _mm_cmplt_epi8(octets, _mm_set1_epi8(0x20));
    if constexpr (passesTabs) {
      found = _mm_andnot_si128(_mm_cmpeq_epi8(octets, _mm_set1_epi8('\t')), found);
    }
    ((found = _mm_or_si128(found, _mm_cmpeq_epi8(octets, _mm_set1_epi8(sought)))), ...);
    const auto positions = static_cast<unsigned>(_mm_movemask_epi8(found));
    if (positions != 0) return at + std::countr_zero(positions);
  }
#endif
  const auto passes = [](char c) {
    return (isPlain(c) || (passesTabs && c == '\t')) && ((c != sought) && ...);
  };
  while (at != end && passes(*at)) ++at;
  return at;
}

#ifdef TAVRIN_HAS_SSE2

/// How many octets of a multiple of sixteen a comparison finds.
template <typename Compare>
std::size_t countVectors(const char* at, const char* end, Compare compare) {
  std::size_t count = 0;
  while (at != end) {
    // Each of sixteen counters has eight bits.
    __m128i counts = _mm_setzero_si128();
    for (int i = 0; i < 255 && at != end; ++i, at += 16) {
      const __m128i octets = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
      counts = _mm_sub_epi8(counts, compare(octets));
    }
    const __m128i sums = _mm_sad_epu8(counts, _mm_setzero_si128());
    count += static_cast<std::size_t>(_mm_cvtsi128_si32(sums)) +
             static_cast<std::size_t>(_mm_extract_epi16(sums, 4));
  }
  return count;
}

#endif

/// How often an octet stands in a text.
inline std::size_t countOctet(char sought, const char* at, const char* end) {
  std::size_t count = 0;
#ifdef TAVRIN_HAS_SSE2
  const char* const last = end - (end - at) % 16;
  const __m128i same = _mm_set1_epi8(sought);
  count = countVectors(at, last, [same](__m128i octets) { return _mm_cmpeq_epi8(octets, same); });
  at = last;
#endif
  for (; at != end; ++at) count += *at == sought ? 1 : 0;
  return count;
}

/// How many characters a text in UTF-8 has.
inline std::size_t countCharacters(const char* at, const char* end) {
  std::size_t count = 0;
#ifdef TAVRIN_HAS_SSE2
  const char* const last = end - (end - at) % 16;
  const __m128i lastContinuation = _mm_set1_epi8(static_cast<char>(0xBF));
  count = countVectors(at, last, [lastContinuation](__m128i octets) {
    return _mm_cmpgt_epi8(octets, lastContinuation);
  });
  at = last;
#endif
  for (; at != end; ++at) count += (static_cast<unsigned char>(*at) & 0xC0) != 0x80 ? 1 : 0;
  return count;
}

}  // namespace Tavrin::xml
