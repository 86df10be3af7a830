#include "xml/NameCache.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <tuple>

#include "xml/SameText.h"

namespace Tavrin::xml {
namespace {

TEST(SameText, IsThatOfEqualOctets) {
  // Lengths around those of the words that are compared.
  for (std::size_t length = 0; length <= 40; ++length) {
    const std::string text(length, 'a');
    EXPECT_TRUE(sameText(text, std::string(length, 'a')));
    EXPECT_FALSE(sameText(text, text + 'a'));
    EXPECT_FALSE(sameText(text + '\0', text));
    for (std::size_t i = 0; i < length; ++i) {
      for (const char other : {'b', '\0', '\xE1'}) {
        std::string changed = text;
        changed[i] = other;
        EXPECT_FALSE(sameText(text, changed)) << length << " octets, another at " << i;
        EXPECT_FALSE(sameText(changed, text)) << length << " octets, another at " << i;
      }
    }
  }
}

TEST(NameCache, FindsANameByAllItsParts) {
  NameCache<int> cache;
  EXPECT_EQ(cache.find("", "", ""), nullptr);
  cache.put("urn:a", "b", "p:b", 1);
  ASSERT_NE(cache.find("urn:a", "b", "p:b"), nullptr);
  EXPECT_EQ(*cache.find("urn:a", "b", "p:b"), 1);
  EXPECT_EQ(cache.find("urn:b", "b", "p:b"), nullptr);
  EXPECT_EQ(cache.find("urn:a", "c", "p:b"), nullptr);
  EXPECT_EQ(cache.find("urn:a", "b", "q:b"), nullptr);
  EXPECT_EQ(cache.find("urn:a", "b", "b"), nullptr);
  EXPECT_EQ(cache.find("", "", ""), nullptr);
}

TEST(NameCache, KeepsTheEmptyName) {
  NameCache<int> cache;
  cache.put("", "", "", 7);
  ASSERT_NE(cache.find("", "", ""), nullptr);
  EXPECT_EQ(*cache.find("", "", ""), 7);
}

TEST(NameCache, KeepsTwoNamesThatWantTheSamePlace) {
  // Of one length, with the same first, middle and last octet.
  NameCache<int> cache;
  cache.put("", "axcxe", "axcxe", 1);
  cache.put("", "aycye", "aycye", 2);
  ASSERT_NE(cache.find("", "axcxe", "axcxe"), nullptr);
  EXPECT_EQ(*cache.find("", "axcxe", "axcxe"), 1);
  EXPECT_EQ(*cache.find("", "aycye", "aycye"), 2);
  cache.put("", "azcze", "azcze", 3);
  EXPECT_EQ(cache.find("", "axcxe", "axcxe"), nullptr);
  EXPECT_EQ(*cache.find("", "aycye", "aycye"), 2);
  EXPECT_EQ(*cache.find("", "azcze", "azcze"), 3);
}

TEST(NameCache, TellsNothingWrongOfNamesThatItHasForgotten) {
  NameCache<int> cache;
  std::map<std::string, int> all;
  for (int i = 0; i < 2000; ++i) {
    const std::string name = "n" + std::to_string(i * 37 % 1000);
    cache.put("u", name, name, i);
    all[name] = i;
    for (const auto& [known, value] : all) {
      const int* const found = cache.find("u", known, known);
      if (found != nullptr) {
        EXPECT_EQ(*found, value);
      }
    }
    EXPECT_NE(cache.find("u", name, name), nullptr);
  }
}

TEST(NameCache, IsEmptyWhenCleared) {
  NameCache<int> cache;
  cache.put("u", "a", "a", 1);
  cache.clear();
  EXPECT_EQ(cache.find("u", "a", "a"), nullptr);
  cache.put("u", "a", "a", 2);
  EXPECT_EQ(*cache.find("u", "a", "a"), 2);
}

}  // namespace
}  // namespace Tavrin::xml
