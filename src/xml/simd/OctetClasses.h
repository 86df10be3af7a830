#pragma once

#include <cstddef>
#include <string_view>

#if defined(__x86_64__) && !defined(TAVRIN_WITHOUT_AVX2)
/// There is code for AVX2. Whether the processor has it is found when the program runs.
#define TAVRIN_HAS_AVX2 1
#endif

namespace Tavrin::xml {

/// Which octets a text may have without a closer check. All others are faults. Thirty-two octets
/// are checked together.
///
/// Each octet belongs to classes, and all classes but one are faults. Two shuffles find the
/// classes, by tables for the higher and the lower four bits of an octet. The method was published
/// for UTF-8 validation (J. Keiser, D. Lemire, "Validating UTF-8 In Less Than One Instruction Per
/// Byte", Software: Practice and Experience 51 (5), 2021) and for JSON (G. Langdale, D. Lemire,
/// "Parsing Gigabytes of JSON per Second", VLDB Journal 28 (6), 2019).
class OctetClasses {
 public:
  /// The characters of XML whose octets are no faults.
  enum class Characters {
    easy,  ///< Those whose first octet shows that they are valid, if continuations follow.
    all,   ///< All. These classes do not show whether the second octet may follow the first.
  };

  constexpr explicit OctetClasses(Characters characters = Characters::easy) {
    for (unsigned octet = 0; octet < 0x100; ++octet) enter(octet, classOf(octet, characters));
  }

  /// Makes a character a fault: a control, or one from 0x20 to 0x3F.
  constexpr void addFault(char c) {
    constexpr Class kByHighHalf[] = {kLowControl, kHighControl, kSign, kOtherSign};
    const auto octet = static_cast<unsigned char>(c);
    enter(octet, kByHighHalf[octet >> 4U]);
  }

  /// The class that is no fault: continuations of a character. They are faults where none is
  /// expected; where one is expected, all other octets are.
  static constexpr unsigned char kContinuation = 0x80;

  /// The classes of an octet, as the two tables give them.
  constexpr unsigned find(unsigned octet) const {
    return unsigned{byHighHalf_[octet >> 4U]} & byLowHalf_[octet & 0xFU];
  }

  // The classes that an octet may have by its higher and by its lower four bits. It belongs to
  // those that stand in both tables.
  const unsigned char* byHighHalf() const { return byHighHalf_; }
  const unsigned char* byLowHalf() const { return byLowHalf_; }

 private:
  // Octets of one class have the same higher half, or any lower half.
  enum Class : unsigned char {
    kNone = 0,
    kLowControl = 0x01,   // 0x00 to 0x0F, except white space that is no fault.
    kHighControl = 0x02,  // 0x10 to 0x1F.
    kSign = 0x04,         // Faults from 0x20 to 0x2F.
    kOtherSign = 0x08,    // Faults from 0x30 to 0x3F.
    kOverlong = 0x10,     // Leads two octets, where one would be enough.
    kSuspect = 0x20,      // Leads three octets, which may not be a character of XML.
    kOfFour = 0x40,       // Leads four octets, or is not part of UTF-8.
  };

  static constexpr unsigned char classOf(unsigned octet, Characters characters) {
    const bool areAll = characters == Characters::all;
    if (octet == '\t' || octet == '\n' || (octet == '\r' && areAll)) return kNone;
    if (octet < 0x10) return kLowControl;
    if (octet < 0x20) return kHighControl;
    if (octet < 0x80) return kNone;
    if (octet < 0xC0) return kContinuation;
    if (octet < 0xC2) return kOverlong;
    if (areAll) return octet < 0xF5 ? kNone : kOfFour;
    if (octet == 0xE0 || octet == 0xED || octet == 0xEF) return kSuspect;
    return octet < 0xF0 ? kNone : kOfFour;
  }

  constexpr void enter(unsigned octet, unsigned char ofClass) {
    byHighHalf_[octet >> 4U] |= ofClass;
    byLowHalf_[octet & 0xFU] |= ofClass;
  }

  alignas(16) unsigned char byHighHalf_[16] = {};
  alignas(16) unsigned char byLowHalf_[16] = {};
};

/// The shortest text that is checked in this way: three octets, and sixteen that depend on them.
inline constexpr std::size_t kLeastTogether = 19;

#ifdef TAVRIN_HAS_AVX2

inline bool hasAVX2() { return __builtin_cpu_supports("avx2"); }

// Only for processors with AVX2.

/// Whether no octet of a text is a fault. After the first octets, no branch depends on them.
bool areFaultless(const OctetClasses& classes, std::string_view text);

/// The position of the first fault, or the end.
/// @param begin there is no fault before it
std::size_t findFault(const OctetClasses& classes, std::string_view text, std::size_t begin);

/// Copies a text from a position on, up to the first fault or the end.
/// @param begin there is no fault before it
/// @param to    has room for the rest of the text; what is behind the copy may be overwritten there
/// @return the position of the fault, or the end
std::size_t copyFaultless(const OctetClasses& classes, std::string_view text, std::size_t begin,
                          char* to);

/// Likewise. A fault is also an octet that cannot follow those before it in a character of XML.
/// @param classes of all characters, with some faults added
std::size_t copyCharacters(const OctetClasses& classes, std::string_view text, std::size_t begin,
                           char* to);

/// The first octet of a text that is of a class of faults or is not part of a character of XML, or
/// the end. A character that is cut off or wrong is found by its first octet.
/// @param classes of all characters, with some faults added
/// @param text    of at least kLeastTogether octets
std::size_t findInCharacters(const OctetClasses& classes, std::string_view text);

/// Whether a text consists of characters of XML. It takes twice as long as areFaultless.
bool areCharacters(std::string_view text);

#endif

}  // namespace Tavrin::xml
