#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>
#include <stdexcept>
#include <tuple>

#include "fastinfoset/IndexMap.h"

// The tables of the writer beside ordered ones.

namespace writer_test {
namespace {

using Strings = Tavrin::fastinfoset::IndexMap<std::string>;
using Names = Tavrin::fastinfoset::IndexMap<Tavrin::fastinfoset::NameParts>;

/// Short strings of few different octets, zeros among them: many are the beginning of others.
std::string randomText(std::mt19937& random, std::size_t longest) {
  const std::string octets("ab\0\xFF", 4);
  std::string text(random() % (longest + 1), ' ');
  for (char& octet : text) octet = octets[random() % octets.size()];
  return text;
}

TEST(WriterIndexMap, FindsStringsAsAnOrderedMapDoes) {
  std::mt19937 random(1);
  Strings table;
  std::map<std::string, unsigned> expected;
  for (unsigned i = 0; i < 20000; ++i) {
    const std::string text = randomText(random, i % 20);
    const unsigned* const found = table.find(text);
    const auto known = expected.find(text);
    ASSERT_EQ(found != nullptr, known != expected.end()) << text;
    if (found != nullptr) {
      ASSERT_EQ(*found, known->second);
    } else {
      expected.emplace(text, table.positions());
      table.add(text);
    }
  }
  EXPECT_EQ(table.size(), expected.size());
  for (const auto& [text, index] : expected) EXPECT_EQ(table.at(text), index);
}

TEST(WriterIndexMap, FindsNamesAsAnOrderedMapDoes) {
  std::mt19937 random(2);
  Names table;
  std::map<std::tuple<std::string, std::string, std::string>, unsigned> expected;
  for (unsigned i = 0; i < 20000; ++i) {
    const Tavrin::fastinfoset::NameParts name = {randomText(random, 2), randomText(random, 9),
                                                 randomText(random, 3)};
    const auto [known, isNew] = expected.emplace(
        std::tuple(name.prefix, name.namespaceName, name.localName), table.positions());
    const unsigned* const found = table.find(name);
    ASSERT_EQ(found == nullptr, isNew);
    if (isNew) {
      table.add(name);
    } else {
      ASSERT_EQ(*found, known->second);
    }
  }
  EXPECT_EQ(table.size(), expected.size());
}

TEST(WriterIndexMap, HoldsTheEmptyString) {
  Strings table;
  EXPECT_EQ(table.find(""), nullptr);
  table.add("");
  table.add("a");
  ASSERT_NE(table.find(""), nullptr);
  EXPECT_EQ(*table.find(""), 0U);
  EXPECT_EQ(*table.find("a"), 1U);
}

TEST(WriterIndexMap, FindsTheFirstOfEqualEntries) {
  Strings table;
  table.add("a");
  table.add("a");
  table.add("b");
  EXPECT_EQ(*table.find("a"), 0U);
  EXPECT_EQ(*table.find("b"), 2U);
  EXPECT_EQ(table.positions(), 3U);
  EXPECT_EQ(table.size(), 2U);
}

TEST(WriterIndexMap, CountsPositionsAtWhichNothingIsFound) {
  Strings table;
  table.skip(5);
  table.add("a");
  EXPECT_EQ(*table.find("a"), 5U);
  EXPECT_EQ(table.positions(), 6U);
  table.clear();
  EXPECT_EQ(table.positions(), 0U);
  EXPECT_TRUE(table.empty());
  EXPECT_EQ(table.find("a"), nullptr);
}

TEST(WriterIndexMap, FindsWhatWasAddedWithTheHashOfASearch) {
  Names table;
  for (unsigned i = 0; i < 1000; ++i) {
    const Tavrin::fastinfoset::NameParts name = {"p", i % 3 == 0 ? "urn:a" : "urn:b",
                                                 std::to_string(i)};
    Tavrin::fastinfoset::KeyHash hash;
    ASSERT_EQ(table.find(name, hash), nullptr);
    table.addNew(name, hash);
    ASSERT_NE(table.find(name, hash), nullptr);
    EXPECT_EQ(*table.find(name), i);
  }
  EXPECT_EQ(table.find({"p", "urn:b", "0"}), nullptr);
  EXPECT_EQ(table.find({"", "urn:a", "0"}), nullptr);
}

TEST(WriterIndexMap, CopiesShareNothing) {
  Strings base;
  base.add("a");
  auto table = std::make_unique<Strings>();
  table->setBase(base);
  for (unsigned i = 0; i < 1000; ++i) table->add("entry " + std::to_string(i));
  Strings copy = *table;
  EXPECT_TRUE(copy == *table);
  table->add("b");
  EXPECT_FALSE(copy == *table);
  table.reset();
  EXPECT_EQ(*copy.find("a"), 0U);
  for (unsigned i = 0; i < 1000; ++i) EXPECT_EQ(copy.at("entry " + std::to_string(i)), i + 1);
  EXPECT_EQ(copy.find("b"), nullptr);
  EXPECT_EQ(copy.positions(), 1001U);
  Strings other;
  other.add("c");
  other = copy;
  EXPECT_EQ(other.find("c"), nullptr);
  EXPECT_TRUE(other == copy);
}

TEST(WriterIndexMap, HasNoIndexOfWhatItDoesNotHold) {
  const Strings table = {{"a", 3}};
  EXPECT_EQ(table.at("a"), 3U);
  EXPECT_THROW(table.at("b"), std::out_of_range);
  EXPECT_THROW(Strings().at(""), std::out_of_range);
}

TEST(WriterIndexMap, IsEqualToOneWithTheSameEntries) {
  EXPECT_EQ((Strings{{"a", 0}, {"b", 1}}), (Strings{{"b", 1}, {"a", 0}}));
  EXPECT_FALSE((Strings{{"a", 0}, {"b", 1}}) == (Strings{{"a", 0}, {"b", 2}}));
  EXPECT_FALSE((Strings{{"a", 0}, {"b", 1}}) == (Strings{{"a", 0}, {"c", 1}}));
  EXPECT_FALSE((Strings{{"a", 0}}) == (Strings{{"a", 0}, {"b", 1}}));
}

}  // namespace
}  // namespace writer_test
