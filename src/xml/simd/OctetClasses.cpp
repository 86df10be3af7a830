#include "OctetClasses.h"

#ifdef TAVRIN_HAS_AVX2

#include <immintrin.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace Tavrin::xml {

namespace {

#define TAVRIN_AVX2 __attribute__((target("avx2")))

// --- Vectors ---

TAVRIN_AVX2 inline __m128i load16(const void* octets) {
  return _mm_loadu_si128(static_cast<const __m128i*>(octets));
}

TAVRIN_AVX2 inline __m256i load32(const void* octets) {
  return _mm256_loadu_si256(static_cast<const __m256i*>(octets));
}

TAVRIN_AVX2 inline void store16(char* to, __m128i octets) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), octets);
}

TAVRIN_AVX2 inline void store32(char* to, __m256i octets) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), octets);
}

TAVRIN_AVX2 inline __m256i each(unsigned octet) {
  return _mm256_set1_epi8(static_cast<char>(octet));
}

TAVRIN_AVX2 inline __m256i highHalves(__m256i octets) {
  return _mm256_and_si256(_mm256_srli_epi16(octets, 4), each(0x0F));
}

TAVRIN_AVX2 inline __m256i lowHalves(__m256i octets) {
  return _mm256_and_si256(octets, each(0x0F));
}

/// The entries of a table of sixteen.
TAVRIN_AVX2 inline __m256i lookUp(const unsigned char* table, __m256i halves) {
  return _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(load16(table)), halves);
}

/// The classes that each octet is in.
TAVRIN_AVX2 inline __m256i classesOf(const OctetClasses& classes, __m256i octets) {
  return _mm256_and_si256(lookUp(classes.byHighHalf(), highHalves(octets)),
                          lookUp(classes.byLowHalf(), lowHalves(octets)));
}

/// Faults: octets of other classes, continuations that are not expected, and places where one is
/// expected and missing.
/// @param wanted has the high bit where a continuation is expected
TAVRIN_AVX2 inline __m256i strays(__m256i found, __m256i wanted) {
  return _mm256_xor_si256(found, _mm256_and_si256(wanted, each(OctetClasses::kContinuation)));
}

/// Has the high bit where an octet is at least this lead.
TAVRIN_AVX2 inline __m256i from(unsigned lead, __m256i octets) {
  return _mm256_subs_epu8(octets, each(lead - OctetClasses::kContinuation));
}

// --- Checks ---

// Each returns zero for an octet that is no fault. It gets the octets, and those one, two and three
// before each of them.

/// By the classes alone. One or two continuations follow a lead octet.
struct Easy {
  const OctetClasses& classes;

  TAVRIN_AVX2 __m256i faults(__m256i octets, __m256i before, __m256i twoBefore, __m256i) const {
    const __m256i wanted = _mm256_or_si256(from(0xC0, before), from(0xE0, twoBefore));
    return strays(classesOf(classes, octets), wanted);
  }
};

/// Pairs of a lead and a continuation that begin no character: a class for each such lead.
class WrongPairs {
 public:
  constexpr WrongPairs() {
    enter(0xE0, 0x80, 0x9F);  // Two octets would be enough.
    enter(0xED, 0xA0, 0xBF);  // Surrogates.
    enter(0xF0, 0x80, 0x8F);  // Three octets would be enough.
    enter(0xF4, 0x90, 0xBF);  // Above U+10FFFF.
  }

  alignas(16) unsigned char byHighHalfOfLead[16] = {};
  alignas(16) unsigned char byLowHalfOfLead[16] = {};
  alignas(16) unsigned char byHighHalf[16] = {};

 private:
  constexpr void enter(unsigned lead, unsigned first, unsigned last) {
    byHighHalfOfLead[lead >> 4U] |= next_;
    byLowHalfOfLead[lead & 0xFU] |= next_;
    for (unsigned half = first >> 4U; half <= last >> 4U; ++half) byHighHalf[half] |= next_;
    next_ = static_cast<unsigned char>(next_ << 1U);
  }

  unsigned char next_ = 1;
};

constexpr OctetClasses kOctets(OctetClasses::Characters::all);
constexpr WrongPairs kWrongPairs;

/// By the characters of XML. All are of no class that is a fault, but for those that were added.
struct Exact {
  const OctetClasses& classes;

  TAVRIN_AVX2 __m256i faults(__m256i octets, __m256i before, __m256i twoBefore,
                             __m256i threeBefore) const {
    const __m256i wanted = _mm256_or_si256(
        _mm256_or_si256(from(0xC0, before), from(0xE0, twoBefore)), from(0xF0, threeBefore));
    const __m256i leads = _mm256_and_si256(lookUp(kWrongPairs.byHighHalfOfLead, highHalves(before)),
                                           lookUp(kWrongPairs.byLowHalfOfLead, lowHalves(before)));
    const __m256i wrongPairs =
        _mm256_and_si256(leads, lookUp(kWrongPairs.byHighHalf, highHalves(octets)));
    // U+FFFE and U+FFFF: the difference is zero up to the last octet of U+FFFD.
    const __m256i last = _mm256_and_si256(_mm256_and_si256(_mm256_cmpeq_epi8(twoBefore, each(0xEF)),
                                                           _mm256_cmpeq_epi8(before, each(0xBF))),
                                          _mm256_subs_epu8(octets, each(0xBD)));
    return _mm256_or_si256(strays(classesOf(classes, octets), wanted),
                           _mm256_or_si256(wrongPairs, last));
  }
};

// --- Texts ---

/// The faults of the first sixteen octets of a text.
template <typename Check>
TAVRIN_AVX2 inline __m128i faultsOfFirst16(const Check& check, const char* octets) {
  const __m128i first = load16(octets);
  return _mm256_castsi256_si128(check.faults(_mm256_castsi128_si256(first),
                                             _mm256_castsi128_si256(_mm_slli_si128(first, 1)),
                                             _mm256_castsi128_si256(_mm_slli_si128(first, 2)),
                                             _mm256_castsi128_si256(_mm_slli_si128(first, 3))));
}

/// The faults of sixteen octets after at least three others.
template <typename Check>
TAVRIN_AVX2 inline __m128i faultsOf16(const Check& check, const char* octets) {
  return _mm256_castsi256_si128(check.faults(
      _mm256_castsi128_si256(load16(octets)), _mm256_castsi128_si256(load16(octets - 1)),
      _mm256_castsi128_si256(load16(octets - 2)), _mm256_castsi128_si256(load16(octets - 3))));
}

/// The faults of thirty-two octets after at least three others.
template <typename Check>
TAVRIN_AVX2 inline __m256i faultsOf32(const Check& check, const char* octets) {
  return check.faults(load32(octets), load32(octets - 1), load32(octets - 2), load32(octets - 3));
}

/// Whether the last character is complete.
bool isComplete(std::string_view text) {
  const auto isBelow = [text](std::size_t fromEnd, unsigned lead) {
    return static_cast<unsigned char>(text[text.size() - fromEnd]) < lead;
  };
  return isBelow(1, 0xC0) && isBelow(2, 0xE0) && isBelow(3, 0xF0);
}

// The last octets are checked together with some that were checked already, so that texts of about
// the same length take the same branches.
template <typename Check>
TAVRIN_AVX2 inline bool areFaultless(const Check& check, std::string_view text) {
  const char* const octets = text.data();
  const std::size_t size = text.size();
  __m128i found = faultsOfFirst16(check, octets);
  if (!_mm_testz_si128(found, found)) return false;  // Text of some languages fails early.
  if (size < 16 + 32) {
    found = _mm_or_si128(found, faultsOf16(check, octets + std::min<std::size_t>(16, size - 16)));
    found = _mm_or_si128(found, faultsOf16(check, octets + size - 16));
    return _mm_testz_si128(found, found) && isComplete(text);
  }
  __m256i all = _mm256_set_m128i(_mm_setzero_si128(), found);
  std::size_t i = 16;
  for (; size - i > 64; i += 32) all = _mm256_or_si256(all, faultsOf32(check, octets + i));
  all = _mm256_or_si256(all, faultsOf32(check, octets + std::min(i, size - 32)));
  all = _mm256_or_si256(all, faultsOf32(check, octets + size - 32));
  return _mm256_testz_si256(all, all) && isComplete(text);
}

/// The positions of faults, as bits.
TAVRIN_AVX2 inline std::uint64_t positions(__m128i faults) {
  const __m128i none = _mm_cmpeq_epi8(faults, _mm_setzero_si128());
  return static_cast<unsigned>(_mm_movemask_epi8(none)) ^ 0xFFFFU;
}

TAVRIN_AVX2 inline std::uint64_t positions(__m256i faults) {
  const __m256i none = _mm256_cmpeq_epi8(faults, _mm256_setzero_si256());
  return ~static_cast<unsigned>(_mm256_movemask_epi8(none));
}

/// The first fault, or the end.
/// @param begin there is no fault before it
template <typename Check>
TAVRIN_AVX2 inline std::size_t findFault(const Check& check, std::string_view text,
                                         std::size_t begin) {
  const char* const octets = text.data();
  const std::size_t size = text.size();
  std::size_t i = begin;
  const auto firstOf = [](std::uint64_t found, std::size_t at) {
    return at + static_cast<std::size_t>(std::countr_zero(found));
  };
  if (i < 3) {
    const std::uint64_t found = positions(faultsOfFirst16(check, octets)) >> i;
    if (found != 0) return firstOf(found, i);
    i = 16;
  }
  for (; size - i >= 32; i += 32) {
    const std::uint64_t found = positions(faultsOf32(check, octets + i));
    if (found != 0) return firstOf(found, i);
  }
  // The rest, with some octets before it. These have no fault, or precede `begin`.
  while (i < size) {
    const std::size_t at = std::min(i, size - 16);
    const std::uint64_t found = positions(faultsOf16(check, octets + at)) >> (i - at);
    if (found != 0) return firstOf(found, i);
    i = at + 16;
  }
  return size;
}

/// Copies up to the first fault. Each vector is stored before it is known whether it has one.
template <typename Check>
TAVRIN_AVX2 inline std::size_t copyFaultless(const Check& check, std::string_view text,
                                             std::size_t begin, char* to) {
  const char* const octets = text.data();
  const std::size_t size = text.size();
  std::size_t i = begin;
  const auto firstOf = [](std::uint64_t found, std::size_t at) {
    return at + static_cast<std::size_t>(std::countr_zero(found));
  };
  if (i < 3) {
    store16(to, load16(octets + i));
    const std::uint64_t found = positions(faultsOfFirst16(check, octets)) >> i;
    if (found != 0) return firstOf(found, i);
    i = 16;
  }
  for (; size - i >= 32; i += 32) {
    store32(to + (i - begin), load32(octets + i));
    const std::uint64_t found = positions(faultsOf32(check, octets + i));
    if (found != 0) return firstOf(found, i);
  }
  // The rest, with some octets before it, which are copied again.
  if (i < size && size >= 3 + 32 && size - 32 >= begin) {
    const std::size_t at = size - 32;
    store32(to + (at - begin), load32(octets + at));
    const std::uint64_t found = positions(faultsOf32(check, octets + at)) >> (i - at);
    return found != 0 ? firstOf(found, i) : size;
  }
  while (i < size) {
    const std::size_t at = std::min(i, size - 16);
    if (at >= begin) {
      store16(to + (at - begin), load16(octets + at));
    } else {
      std::memcpy(to, octets + begin, size - begin);  // There is something else before `to`.
    }
    const std::uint64_t found = positions(faultsOf16(check, octets + at)) >> (i - at);
    if (found != 0) return firstOf(found, i);
    i = at + 16;
  }
  return size;
}

}  // namespace

TAVRIN_AVX2 std::size_t copyFaultless(const OctetClasses& classes, std::string_view text,
                                      std::size_t begin, char* to) {
  return copyFaultless(Easy{classes}, text, begin, to);
}

TAVRIN_AVX2 std::size_t copyCharacters(const OctetClasses& classes, std::string_view text,
                                       std::size_t begin, char* to) {
  return copyFaultless(Exact{classes}, text, begin, to);
}

TAVRIN_AVX2 bool areFaultless(const OctetClasses& classes, std::string_view text) {
  return areFaultless(Easy{classes}, text);
}

TAVRIN_AVX2 bool areCharacters(std::string_view text) { return areFaultless(Exact{kOctets}, text); }

TAVRIN_AVX2 std::size_t findFault(const OctetClasses& classes, std::string_view text,
                                  std::size_t begin) {
  return findFault(Easy{classes}, text, begin);
}

TAVRIN_AVX2 std::size_t findInCharacters(const OctetClasses& classes, std::string_view text) {
  const std::size_t found = findFault(Exact{classes}, text, 0);
  // A character is missing a continuation, or one of its continuations is the fault.
  for (std::size_t i = 1; i <= std::min<std::size_t>(found, 3); ++i) {
    const auto octet = static_cast<unsigned char>(text[found - i]);
    if (octet < 0x80) break;
    if (octet < 0xC0) continue;
    const auto announced = static_cast<std::size_t>(std::countl_one(octet));
    return announced > i ? found - i : found;
  }
  return found;
}

}  // namespace Tavrin::xml

#endif
