#include "vocabularies/VocabularyTables.h"

namespace tool {

using Tavrin::ExternalVocabulary;
using Tavrin::OwnedVocabulary;

const StringTableForm kStringTables[10] = {
    {&ExternalVocabulary::restrictedAlphabets, &OwnedVocabulary::addRestrictedAlphabet,
     "restricted alphabets", "addRestrictedAlphabet", 16},
    {&ExternalVocabulary::encodingAlgorithms, &OwnedVocabulary::addEncodingAlgorithm,
     "encoding algorithms", "addEncodingAlgorithm", 32},
    {&ExternalVocabulary::prefixes, &OwnedVocabulary::addPrefix, "prefixes", "addPrefix", 2},
    {&ExternalVocabulary::namespaceNames, &OwnedVocabulary::addNamespaceName, "namespace names",
     "addNamespaceName", 2},
    {&ExternalVocabulary::localNames, &OwnedVocabulary::addLocalName, "local names", "addLocalName",
     1},
    {&ExternalVocabulary::otherNCNames, &OwnedVocabulary::addOtherNCName, "other names",
     "addOtherNCName", 1},
    {&ExternalVocabulary::otherURIs, &OwnedVocabulary::addOtherURI, "other URIs", "addOtherURI", 1},
    {&ExternalVocabulary::attributeValues, &OwnedVocabulary::addAttributeValue, "attribute values",
     "addAttributeValue", 1},
    {&ExternalVocabulary::contentCharacterChunks, &OwnedVocabulary::addCharacters, "character data",
     "addCharacters", 1},
    {&ExternalVocabulary::otherStrings, &OwnedVocabulary::addOtherString, "other strings",
     "addOtherString", 1},
};

const NameTableForm kNameTables[2] = {
    {&ExternalVocabulary::elementNameSurrogates, &OwnedVocabulary::addElementName, "element names",
     "addElementName"},
    {&ExternalVocabulary::attributeNameSurrogates, &OwnedVocabulary::addAttributeName,
     "attribute names", "addAttributeName"},
};

std::string textOf(const char* entry) { return entry == nullptr ? "" : entry; }

QualifiedName::QualifiedName(const char* const (&entry)[3])
    : prefix(textOf(entry[0])), uri(textOf(entry[1])), localName(textOf(entry[2])) {}

std::uint64_t entriesOf(const OwnedVocabulary& vocabulary) {
  const auto tables = vocabulary.tables();
  std::uint64_t count = 0;
  for (const StringTableForm& form : kStringTables) count += ((*tables).*form.table).definedCount;
  for (const NameTableForm& form : kNameTables) count += ((*tables).*form.table).definedCount;
  return count;
}

}  // namespace tool
