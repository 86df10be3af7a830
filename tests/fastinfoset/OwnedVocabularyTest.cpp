#include <Tavrin/Tavrin.h>

#include <Allocations.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "VocabularySupport.h"
#include "WhatIsThrown.h"

// The entries of a vocabulary: their indexes, what is refused, copies, and the tables.

namespace vocabulary_test {
namespace {

using namespace Tavrin;

std::string shown(const StringTable& table) {
  EXPECT_EQ(table.definedCount, table.occupiedCount);
  std::string text;
  for (std::uint32_t i = 0; i < table.definedCount; ++i) {
    text += (i > 0 ? " " : "") + std::string(table.entries[i]);
  }
  return text;
}

std::string shown(const QualifiedNameTable& table) {
  EXPECT_EQ(table.definedCount, table.occupiedCount);
  std::string text;
  for (std::uint32_t i = 0; i < table.definedCount; ++i) {
    const auto& [prefix, uri, localName] = table.entries[i];
    text += (i > 0 ? " " : "") + std::string(prefix) + "|" + uri + "|" + localName;
  }
  return text;
}

/// The entries of all tables, in the standard's order.
std::vector<std::string> entriesOf(const ExternalVocabulary& tables) {
  return {shown(tables.restrictedAlphabets),
          shown(tables.encodingAlgorithms),
          shown(tables.prefixes),
          shown(tables.namespaceNames),
          shown(tables.localNames),
          shown(tables.otherNCNames),
          shown(tables.otherURIs),
          shown(tables.attributeValues),
          shown(tables.contentCharacterChunks),
          shown(tables.otherStrings),
          shown(tables.elementNameSurrogates),
          shown(tables.attributeNameSurrogates)};
}

using Entries = std::vector<std::string>;

const Entries kNone(12);

TEST(OwnedVocabulary, IsEmptyAtFirst) {
  const OwnedVocabulary vocabulary;
  EXPECT_TRUE(vocabulary.isEmpty());
  EXPECT_EQ(kNone, entriesOf(*vocabulary.tables()));
}

// 7.2: what is built in, or reserved, comes before the entries.
TEST(OwnedVocabulary, GivesTheIndexesOfTheStandard) {
  OwnedVocabulary vocabulary;
  EXPECT_EQ(16U, vocabulary.addRestrictedAlphabet("01"));
  EXPECT_EQ(17U, vocabulary.addRestrictedAlphabet("ab"));
  EXPECT_EQ(32U, vocabulary.addEncodingAlgorithm("u:a"));
  EXPECT_EQ(33U, vocabulary.addEncodingAlgorithm("u:b"));
  EXPECT_EQ(2U, vocabulary.addPrefix("p"));
  EXPECT_EQ(3U, vocabulary.addPrefix("q"));
  EXPECT_EQ(2U, vocabulary.addNamespaceName("u"));
  EXPECT_EQ(3U, vocabulary.addNamespaceName("v"));
  EXPECT_EQ(1U, vocabulary.addLocalName("l"));
  EXPECT_EQ(2U, vocabulary.addLocalName("m"));
  EXPECT_EQ(1U, vocabulary.addOtherNCName("n"));
  EXPECT_EQ(1U, vocabulary.addOtherURI("s"));
  EXPECT_EQ(1U, vocabulary.addAttributeValue("v"));
  EXPECT_EQ(1U, vocabulary.addCharacters("c"));
  EXPECT_EQ(1U, vocabulary.addOtherString("t"));
  EXPECT_EQ(1U, vocabulary.addElementName("", "l"));
  EXPECT_EQ(2U, vocabulary.addElementName("u", "l", "p:l"));
  EXPECT_EQ(1U, vocabulary.addAttributeName("", "l"));
  EXPECT_FALSE(vocabulary.isEmpty());
  EXPECT_EQ((Entries{"01 ab", "u:a u:b", "p q", "u v", "l m", "n", "s", "v", "c", "t", "||l p|u|l",
                     "||l"}),
            entriesOf(*vocabulary.tables()));
}

TEST(OwnedVocabulary, AddsAnEntryOnce) {
  OwnedVocabulary vocabulary = oneOfEach();
  const Entries entries = entriesOf(*vocabulary.tables());
  EXPECT_EQ(16U, vocabulary.addRestrictedAlphabet("01"));
  EXPECT_EQ(32U, vocabulary.addEncodingAlgorithm("u:a"));
  EXPECT_EQ(2U, vocabulary.addPrefix("p"));
  EXPECT_EQ(2U, vocabulary.addNamespaceName("u"));
  EXPECT_EQ(2U, vocabulary.addLocalName("b"));
  EXPECT_EQ(1U, vocabulary.addOtherNCName("n"));
  EXPECT_EQ(1U, vocabulary.addOtherURI("s"));
  EXPECT_EQ(1U, vocabulary.addAttributeValue("v"));
  EXPECT_EQ(1U, vocabulary.addCharacters("c"));
  EXPECT_EQ(1U, vocabulary.addOtherString("t"));
  EXPECT_EQ(1U, vocabulary.addElementName("u", "l", "p:l"));
  EXPECT_EQ(1U, vocabulary.addAttributeName("", "b", "b"));
  EXPECT_EQ(entries, entriesOf(*vocabulary.tables()));
  EXPECT_EQ(2U, vocabulary.addElementName("u", "l"));  // Without a prefix it is another name.
}

TEST(OwnedVocabulary, HasWhatIsBuiltIn) {
  OwnedVocabulary vocabulary;
  EXPECT_EQ(1U, vocabulary.addPrefix("xml"));
  EXPECT_EQ(1U, vocabulary.addNamespaceName(namespaces::xml));
  EXPECT_TRUE(vocabulary.isEmpty());
  EXPECT_EQ(1U, vocabulary.addAttributeName(namespaces::xml, "lang", "xml:lang"));
  EXPECT_EQ(1U, vocabulary.addPrefix("xml"));
  Entries expected = kNone;
  expected[4] = "lang";
  expected[11] = std::string("xml|") + namespaces::xml + "|lang";
  EXPECT_EQ(expected, entriesOf(*vocabulary.tables()));
}

TEST(OwnedVocabulary, AddsThePartsOfNamesThatAreMissing) {
  OwnedVocabulary vocabulary;
  vocabulary.addLocalName("m");
  vocabulary.addNamespaceName("v");
  vocabulary.addElementName("u", "l", "p:l");
  vocabulary.addElementName("v", "m", "p:m");
  vocabulary.addAttributeName("u", "m", "q:m");
  vocabulary.addElementName("u", "k");
  EXPECT_EQ(
      (Entries{"", "", "p q", "v u", "m l k", "", "", "", "", "", "p|u|l p|v|m |u|k", "q|u|m"}),
      entriesOf(*vocabulary.tables()));
}

TEST(OwnedVocabulary, RefusesWhatNoDocumentCanUse) {
  OwnedVocabulary vocabulary = oneOfEach();
  const Entries entries = entriesOf(*vocabulary.tables());
  using V = OwnedVocabulary;
  const auto refused = [&](auto add, const std::string& entry) {
    return thrown([&] { (vocabulary.*add)(entry); });
  };
  for (const auto add :
       {&V::addRestrictedAlphabet, &V::addEncodingAlgorithm, &V::addPrefix, &V::addNamespaceName,
        &V::addLocalName, &V::addOtherNCName, &V::addOtherURI, &V::addAttributeValue,
        &V::addCharacters, &V::addOtherString}) {
    EXPECT_EQ("SAXException: An entry of the vocabulary is empty", refused(add, ""));
  }
  EXPECT_EQ("SAXException: A restricted alphabet of the vocabulary has fewer than two characters",
            refused(&V::addRestrictedAlphabet, "\xC3\xA9"));
  EXPECT_EQ("SAXException: A restricted alphabet of the vocabulary repeats a character",
            refused(&V::addRestrictedAlphabet, "aba"));
  for (const auto add : {&V::addPrefix, &V::addLocalName, &V::addOtherNCName}) {
    EXPECT_EQ("SAXException: \"a:b\" is not a name without a colon", refused(add, "a:b"));
  }
  for (const auto add : {&V::addAttributeValue, &V::addCharacters, &V::addOtherString}) {
    EXPECT_EQ("SAXException: You cannot put character U+0001 into the vocabulary",
              refused(add, "a\x01"));
    EXPECT_EQ("SAXException: You cannot put character U+0000 into the vocabulary",
              refused(add, std::string("a\0b", 3)));
  }
  for (const auto add : {&V::addNamespaceName, &V::addOtherURI, &V::addEncodingAlgorithm}) {
    EXPECT_EQ("SAXException: You cannot put UTF-8 octet 0xFF into a URI", refused(add, "\xFF"));
  }
  EXPECT_EQ(entries, entriesOf(*vocabulary.tables()));
}

// A name that is refused leaves none of its parts.
TEST(OwnedVocabulary, RefusesNamesThatNoDocumentCanUse) {
  OwnedVocabulary vocabulary = oneOfEach();
  const Entries entries = entriesOf(*vocabulary.tables());
  const auto refused = [&](const std::string& uri, const std::string& localName,
                           const std::string& qName = {}) {
    return thrown([&] { vocabulary.addElementName(uri, localName, qName); });
  };
  EXPECT_EQ("SAXException: \"\" is not a name", refused("x", ""));
  EXPECT_EQ("SAXException: \"1\" is not a name", refused("x", "1"));
  EXPECT_EQ("SAXException: A name of the vocabulary has a prefix, but no namespace",
            refused("", "x", "y:x"));
  EXPECT_NE("nothing", refused("x", "x", "y:z"));
  EXPECT_NE("nothing", refused("x", "x", ":x"));
  EXPECT_NE("nothing", refused("x", "x", "y:"));
  EXPECT_NE("nothing", refused("x", "x", "a:y:x"));
  EXPECT_NE("nothing", refused("x", "x", "xml:x"));
  EXPECT_NE("nothing", refused("x", "x", "xmlns:x"));
  EXPECT_NE("nothing", refused(namespaces::xml, "x", "y:x"));
  EXPECT_NE("nothing", refused(namespaces::xmlns, "x"));
  EXPECT_NE("nothing", refused("\xFF", "x"));
  // An attribute without a prefix is in no namespace.
  EXPECT_NE("nothing", thrown([&] { vocabulary.addAttributeName("x", "x"); }));
  EXPECT_NE("nothing", thrown([&] { vocabulary.addAttributeName("", "xmlns"); }));
  EXPECT_EQ(entries, entriesOf(*vocabulary.tables()));
}

TEST(OwnedVocabulary, HasAsManyEntriesAsThereAreIndexes) {
  OwnedVocabulary vocabulary;
  const auto addMany = [](int count, auto add) {
    for (int i = 0; i < count; ++i) add("n" + std::to_string(i));
  };
  addMany(225, [&](const std::string& text) { vocabulary.addEncodingAlgorithm(text); });
  EXPECT_EQ(256U, vocabulary.addEncodingAlgorithm("n224"));
  EXPECT_EQ("SAXException: More than 225 encoding algorithms",
            thrown([&] { vocabulary.addEncodingAlgorithm("n225"); }));
  for (int i = 0; i < 241; ++i) {
    vocabulary.addRestrictedAlphabet({'a', static_cast<char>('0' + i / 100),
                                      static_cast<char>('A' + i / 10 % 10),
                                      static_cast<char>('k' + i % 10)});
  }
  EXPECT_EQ("SAXException: More than 241 restricted alphabets",
            thrown([&] { vocabulary.addRestrictedAlphabet("xyz"); }));
  const std::string tooMany =
      "SAXException: A table of the vocabulary has more than 1048576 entries";
  addMany((1 << 20) - 1, [&](const std::string& text) { vocabulary.addPrefix(text); });
  EXPECT_EQ(tooMany, thrown([&] { vocabulary.addPrefix("p"); }));
  EXPECT_EQ(1U << 20, vocabulary.addPrefix("n1048574"));
  // The parts of a name need room, too; nothing of the name is added without.
  EXPECT_EQ(tooMany, thrown([&] { vocabulary.addElementName("u", "l", "p:l"); }));
  EXPECT_EQ(2U, vocabulary.addNamespaceName("v"));
  EXPECT_EQ(1U, vocabulary.addElementName("u", "l", "n7:l"));
}

// --- Copies ---

TEST(OwnedVocabulary, CopiesShareNothingThatChanges) {
  OwnedVocabulary first;
  first.addLocalName("a");
  OwnedVocabulary second = first;
  second.addLocalName("b");
  first.addLocalName("c");
  EXPECT_EQ("a c", shown(first.tables()->localNames));
  EXPECT_EQ("a b", shown(second.tables()->localNames));
  first = second;
  first = *&first;
  EXPECT_EQ("a b", shown(first.tables()->localNames));
  second = OwnedVocabulary();
  EXPECT_TRUE(second.isEmpty());
  EXPECT_EQ("a b", shown(first.tables()->localNames));
}

TEST(OwnedVocabulary, MovedOneIsEmptyAndGoesOn) {
  OwnedVocabulary first = oneOfEach();
  const Entries entries = entriesOf(*first.tables());
  OwnedVocabulary second = std::move(first);
  EXPECT_EQ(entries, entriesOf(*second.tables()));
  EXPECT_TRUE(first.isEmpty());
  EXPECT_EQ(1U, first.addLocalName("z"));
  EXPECT_EQ(1U, second.addElementName("u", "l", "p:l"));
}

TEST(OwnedVocabulary, TablesStayAsTheyWere) {
  std::shared_ptr<const ExternalVocabulary> tables;
  {
    OwnedVocabulary vocabulary;
    vocabulary.addLocalName("a");
    tables = vocabulary.tables();
    vocabulary.addLocalName("b");
    EXPECT_EQ("a b", shown(vocabulary.tables()->localNames));
  }
  EXPECT_EQ("a", shown(tables->localNames));
}

TEST(OwnedVocabulary, CopyCostsNoMemory) {
  if (!allocations::areCounted()) {
    GTEST_SKIP() << "valgrind has functions of its own in place";
  }
  OwnedVocabulary vocabulary;
  for (int i = 0; i < 1000; ++i) vocabulary.addLocalName("n" + std::to_string(i));
  const OwnedVocabulary first = vocabulary;
  EXPECT_EQ(0U, allocations::peakOf([&] { const OwnedVocabulary second = vocabulary; }));
}

// Where an allocation fails, the entry is not there, and can be added again.
TEST(OwnedVocabulary, GoesOnAfterAnAllocationThatFailed) {
  if (!allocations::areCounted()) {
    GTEST_SKIP() << "valgrind has functions of its own in place";
  }
  const std::string text = "a text that does not fit into the string itself";
  for (std::size_t number = 0;; ++number) {
    OwnedVocabulary vocabulary;
    vocabulary.addCharacters("c");
    const OwnedVocabulary copy = vocabulary;
    bool failed = false;
    {
      const allocations::Failure failure(number);
      try {
        vocabulary.addCharacters(text);
      } catch (const std::bad_alloc&) {
        failed = true;
      }
      if (!failure.happened()) break;
    }
    EXPECT_EQ(failed ? "c" : "c " + text, shown(vocabulary.tables()->contentCharacterChunks));
    EXPECT_EQ(2U, vocabulary.addCharacters(text));
    EXPECT_EQ("c " + text, shown(vocabulary.tables()->contentCharacterChunks));
    EXPECT_EQ("c", shown(copy.tables()->contentCharacterChunks));
  }
}

}  // namespace
}  // namespace vocabulary_test
