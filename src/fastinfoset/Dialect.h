#pragma once

#include "Integers.h"

/// What the two families of Fast Infoset types do differently, as far as it is a matter of numbers.
/// "X891" does what ITU-T X.891 says. "FI" keeps the stream that its files have always had.
///
/// What is more than a number is an overridden step of XMLReader_X891 and XMLWriter_X891.
namespace Tavrin::fastinfoset {

struct Dialect {
  /// What is added to the field of a number of items (C.21), in the short and in the long form.
  std::uint32_t itemCountBias;
  std::uint32_t longItemCountBias;

  /// How many built-in entries the index of a prefix or namespace name counts in a namespace
  /// declaration (C.12). In a name (C.17, C.18), both families count one.
  std::uint32_t builtInNamesInDeclarations;

  /// How an index of a character chunk is written (C.28), and which bits of the longest form's
  /// field are read.
  IntegerEncoding<4> charactersIndexWritten;
  std::uint32_t charactersIndexLongestField;

  /// Of the two bits of an algorithm's number in the first octet of a chunk (C.20), those that are
  /// read.
  unsigned chunkFieldReadBits;

  /// The longest string that is written, in octets (C.22 to C.24).
  std::uint64_t longestStringWritten;
};

inline constexpr Dialect kDialectFI = {
    .itemCountBias = 0,
    .longItemCountBias = 0,
    .builtInNamesInDeclarations = 0,
    .charactersIndexWritten = kCharactersIndexUnmarked,
    .charactersIndexLongestField = 0xFFFFFF,
    .chunkFieldReadBits = 0x02,
    .longestStringWritten = 0xFFFFFFFF,
};

inline constexpr Dialect kDialectX891 = {
    .itemCountBias = 1,
    .longItemCountBias = 1 + 128,
    .builtInNamesInDeclarations = 1,
    .charactersIndexWritten = kCharactersIndex,
    .charactersIndexLongestField = 0x0FFFFF,
    .chunkFieldReadBits = 0x03,
    .longestStringWritten = 0x100000000,
};

/// Tables have at most this many entries (X.891, 7.2), restricted alphabets and encoding algorithms
/// 256. "FI" does not look.
inline constexpr std::uint32_t kMaximumEntries = 1 << 20;

}  // namespace Tavrin::fastinfoset
