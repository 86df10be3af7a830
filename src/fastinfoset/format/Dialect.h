#pragma once

#include "Integers.h"
#include "Octets.h"
#include "Tables.h"

/// What the two families of Fast Infoset types do differently, where a constant can say it. "X891"
/// follows ITU-T X.891. "FI" keeps the octets that its files have always had.
///
/// Other differences are operations of the readers and writers themselves.
namespace Tavrin::fastinfoset {

struct Dialect {
  /// How many entries a table has at most; a literal is then used but not added (X.891, 7.2).
  std::uint32_t maximumEntries;

  /// What is added to the field of a number of items (C.21), in the short and in the long form.
  std::uint32_t itemCountBias;
  std::uint32_t longItemCountBias;

  /// How many built-in entries the index of a prefix or namespace name counts in a namespace
  /// declaration (C.12). In a name (C.17, C.18), both families count one.
  std::uint32_t builtInNamesInDeclarations;

  /// How an index of a character chunk is written (C.28), and which bits of the field of the
  /// longest form are read.
  IntegerEncoding<4> charactersIndexWritten;
  std::uint32_t charactersIndexLongestField;

  /// The tables of which an external vocabulary's entries are used, as bits of C.2.5.
  unsigned externalTables;

  /// Whether the external vocabulary, restricted alphabets and URIs of algorithms are also used for
  /// the documents that follow, until another one has its own.
  bool keepsVocabulary;

  /// Whether prefix and namespace name of a literal name may also be literals (C.17, C.18).
  bool literalNameParts;

  /// The first octet that, at document level, begins a document type declaration (C.9).
  unsigned firstDocumentTypeOctet;

  /// Of the two bits of an algorithm's number in the first octet of a chunk (C.20), those that are
  /// read.
  unsigned chunkFieldReadBits;

  /// The field of the first algorithm that an application defines. In X.891 it has the index 32,
  /// which is written as 31 (7.2.20, C.29).
  unsigned firstApplicationAlgorithm;

  /// Whether the reader reads each octet by one call of the stream's get operation, and each
  /// literal by one bulk read of its buffer: programs can observe it.
  bool callsGet;

  /// The messages for an invalid octet among notations and among unparsed entities.
  const char* wrongNotation;
  const char* wrongUnparsedEntity;

  /// The longest string that is written, in octets (C.22 to C.24).
  std::uint64_t longestStringWritten;
};

inline constexpr Dialect kDialectFI = {
    .maximumEntries = UINT32_MAX,
    .itemCountBias = 0,
    .longItemCountBias = 0,
    .builtInNamesInDeclarations = 0,
    .charactersIndexWritten = kCharactersIndexUnmarked,
    .charactersIndexLongestField = 0xFFFFFF,
    .externalTables = componentBit(kEncodingAlgorithms) | componentBit(kAttributeValues) |
                      componentBit(kElementNames) | componentBit(kAttributeNames),
    .keepsVocabulary = true,
    .literalNameParts = false,
    .firstDocumentTypeOctet = kFirstNonElement,
    .chunkFieldReadBits = 0x02,
    .firstApplicationAlgorithm = 32,
    .callsGet = true,
    .wrongNotation = "Error while parsing namespaces",
    .wrongUnparsedEntity = "Error while parsing namespaces",
    .longestStringWritten = 0xFFFFFFFF,
};

inline constexpr Dialect kDialectX891 = {
    .maximumEntries = kMaximumEntries,
    .itemCountBias = 1,
    .longItemCountBias = 1 + 128,
    .builtInNamesInDeclarations = 1,
    .charactersIndexWritten = kCharactersIndex,
    .charactersIndexLongestField = 0x0FFFFF,
    .externalTables = ~0U,
    .keepsVocabulary = false,
    .literalNameParts = true,
    .firstDocumentTypeOctet = kDocumentType,
    .chunkFieldReadBits = 0x03,
    .firstApplicationAlgorithm = 31,
    .callsGet = false,
    .wrongNotation = "Error while parsing notations",
    .wrongUnparsedEntity = "Error while parsing unparsed entities",
    .longestStringWritten = std::uint64_t{1} << 32,
};

}  // namespace Tavrin::fastinfoset
