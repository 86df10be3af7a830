#pragma once

#include <string>
#include <vector>

#include "../NameParts.h"
#include "../format/Octets.h"

namespace Tavrin::fastinfoset {

/// The initial vocabulary of a document as it is written (X.891, C.2.5).
struct WrittenVocabulary {
  std::string externalVocabulary;
  std::vector<std::string> restrictedAlphabets;
  std::vector<std::string> encodingAlgorithms;
  std::vector<std::string> prefixes;
  std::vector<std::string> namespaceNames;
  std::vector<std::string> localNames;
  std::vector<std::string> otherNCNames;
  std::vector<std::string> otherURIs;
  std::vector<std::string> attributeValues;
  std::vector<std::string> characterChunks;
  std::vector<std::string> otherStrings;
  std::vector<NameParts> elementNames;
  std::vector<NameParts> attributeNames;

  /// The tables that are written; the bits of fastinfoset::VocabularyTable.
  unsigned tables() const {
    const auto bit = [](const auto& table, unsigned mask) { return table.empty() ? 0U : mask; };
    return bit(externalVocabulary, kExternalVocabulary) |
           bit(restrictedAlphabets, kRestrictedAlphabets) |
           bit(encodingAlgorithms, kEncodingAlgorithms) | bit(prefixes, kPrefixes) |
           bit(namespaceNames, kNamespaceNames) | bit(localNames, kLocalNames) |
           bit(otherNCNames, kOtherNCNames) | bit(otherURIs, kOtherURIs) |
           bit(attributeValues, kAttributeValues) | bit(characterChunks, kContentCharacterChunks) |
           bit(otherStrings, kOtherStrings) | bit(elementNames, kElementNameSurrogates) |
           bit(attributeNames, kAttributeNameSurrogates);
  }
};

}  // namespace Tavrin::fastinfoset
