/// @file
/// External vocabularies: tables that the reader and the writer of a Fast Infoset document have
/// agreed on (X.891, 7.2.13).
#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace Tavrin {

/// A table of strings. The arrays belong to the application and must outlive the reader's use.
struct StringTable {
  const char* const* entries = nullptr;  ///< The defined entries; a null text is the empty string.
  std::uint32_t definedCount = 0;        ///< How many entries there are.
  /// How many index positions the table has, at least definedCount. An index from definedCount up
  /// to this number is invalid; the document's own entries begin at it.
  std::uint32_t occupiedCount = 0;
};

/// A table of names. The arrays belong to the application and must outlive the reader's use.
struct QualifiedNameTable {
  /// The defined entries, each prefix, namespace name and local name; a null text is the empty
  /// string.
  const char* const (*entries)[3] = nullptr;
  std::uint32_t definedCount = 0;   ///< As in StringTable.
  std::uint32_t occupiedCount = 0;  ///< As in StringTable.
};

/// The twelve tables of a vocabulary, in the standard's order, all empty by default.
///
/// The "FI" reader consults four of them: encodingAlgorithms, attributeValues,
/// elementNameSurrogates and attributeNameSurrogates.
struct ExternalVocabulary {
  StringTable restrictedAlphabets;             ///< Characters of each alphabet.
  StringTable encodingAlgorithms;              ///< URIs.
  StringTable prefixes;                        ///< Prefixes.
  StringTable namespaceNames;                  ///< Namespace names.
  StringTable localNames;                      ///< Local names.
  StringTable otherNCNames;                    ///< Names of entities and notations, targets.
  StringTable otherURIs;                       ///< System and public identifiers.
  StringTable attributeValues;                 ///< Attribute values.
  StringTable contentCharacterChunks;          ///< Character chunks.
  StringTable otherStrings;                    ///< Comments, data, versions.
  QualifiedNameTable elementNameSurrogates;    ///< Element names.
  QualifiedNameTable attributeNameSurrogates;  ///< Attribute names.
};

/// The vocabularies that an application knows, by URI. The map owns nothing.
using ExternalVocabularyMap = std::map<std::string, ExternalVocabulary*>;

}  // namespace Tavrin
