#include <Tavrin/EncodingAlgorithms.h>
#include <Tavrin/Vocabulary.h>

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <type_traits>

namespace {

using namespace Tavrin;

template <typename Table>
void expectEmpty(const Table& table) {
  EXPECT_EQ(table.entries, nullptr);
  EXPECT_EQ(table.definedCount, 0U);
  EXPECT_EQ(table.occupiedCount, 0U);
}

TEST(ExternalVocabulary, IsEmptyByDefault) {
  // In memory that nothing has zeroed.
  const auto vocabulary = std::make_unique_for_overwrite<ExternalVocabulary>();
  const auto& [alphabets, algorithmURIs, prefixes, namespaceNames, localNames, ncNames, uris,
               values, chunks, strings, elements, attributes] = *vocabulary;
  expectEmpty(alphabets);
  expectEmpty(algorithmURIs);
  expectEmpty(prefixes);
  expectEmpty(namespaceNames);
  expectEmpty(localNames);
  expectEmpty(ncNames);
  expectEmpty(uris);
  expectEmpty(values);
  expectEmpty(chunks);
  expectEmpty(strings);
  expectEmpty(elements);
  expectEmpty(attributes);
}

TEST(ExternalVocabulary, ListsItsTablesInTheOrderOfTheStandard) {
  const ExternalVocabulary vocabulary;
  const auto& [alphabets, algorithmURIs, prefixes, namespaceNames, localNames, ncNames, uris,
               values, chunks, strings, elements, attributes] = vocabulary;
  EXPECT_EQ(&alphabets, &vocabulary.restrictedAlphabets);
  EXPECT_EQ(&algorithmURIs, &vocabulary.encodingAlgorithms);
  EXPECT_EQ(&prefixes, &vocabulary.prefixes);
  EXPECT_EQ(&namespaceNames, &vocabulary.namespaceNames);
  EXPECT_EQ(&localNames, &vocabulary.localNames);
  EXPECT_EQ(&ncNames, &vocabulary.otherNCNames);
  EXPECT_EQ(&uris, &vocabulary.otherURIs);
  EXPECT_EQ(&values, &vocabulary.attributeValues);
  EXPECT_EQ(&chunks, &vocabulary.contentCharacterChunks);
  EXPECT_EQ(&strings, &vocabulary.otherStrings);
  EXPECT_EQ(&elements, &vocabulary.elementNameSurrogates);
  EXPECT_EQ(&attributes, &vocabulary.attributeNameSurrogates);
}

// As an application writes it: constant arrays, a null text for an empty string, more positions
// taken up than there are entries.
TEST(ExternalVocabulary, TakesConstantArrays) {
  static const char* const values[] = {"a", nullptr};
  static const char* const names[][3] = {{"p", "urn:p", "a"}, {nullptr, nullptr, "b"}};
  ExternalVocabulary vocabulary;
  vocabulary.attributeValues = {values, 2, 10};
  vocabulary.elementNameSurrogates = {names, 2, 2};
  EXPECT_STREQ(vocabulary.attributeValues.entries[0], "a");
  EXPECT_EQ(vocabulary.attributeValues.entries[1], nullptr);
  EXPECT_EQ(vocabulary.attributeValues.definedCount, 2U);
  EXPECT_EQ(vocabulary.attributeValues.occupiedCount, 10U);
  EXPECT_STREQ(vocabulary.elementNameSurrogates.entries[0][1], "urn:p");
  EXPECT_EQ(vocabulary.elementNameSurrogates.entries[1][0], nullptr);
  EXPECT_STREQ(vocabulary.elementNameSurrogates.entries[1][2], "b");
}

// The reader converts an untyped pointer to exactly these.
TEST(Maps, AreTheTypesBehindTheProperties) {
  EXPECT_TRUE((std::is_same_v<ExternalVocabularyMap, std::map<std::string, ExternalVocabulary*>>));
  EXPECT_TRUE((std::is_same_v<EncodingAlgorithmMap, std::map<std::string, EncodingAlgorithm*>>));
}

}  // namespace
