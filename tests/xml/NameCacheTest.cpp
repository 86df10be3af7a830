#include "xml/NameCache.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>

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

using Cache = NameCache<std::size_t>;

std::string nameOf(std::size_t number) { return "attribute" + std::to_string(number); }

/// How many of the names from 0 on are kept. None may be kept for another.
std::size_t countKept(Cache& cache, std::size_t names) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < names; ++i) {
    const std::size_t* const found = cache.find("u", nameOf(i), nameOf(i));
    if (found == nullptr) continue;
    EXPECT_EQ(*found, i);
    ++count;
  }
  return count;
}

TEST(NameCache, KeepsNearlyAllOfManyNames) {
  Cache cache;
  constexpr std::size_t kNames = 10000;
  for (std::size_t i = 0; i < kNames; ++i) cache.put("u", nameOf(i), nameOf(i), i);
  EXPECT_GE(countKept(cache, kNames), kNames * 99 / 100);
  EXPECT_EQ(cache.find("u", "attribute", "attribute"), nullptr);
}

TEST(NameCache, KeepsNoMoreThanItMay) {
  Cache cache;
  constexpr std::size_t kNames = 3 * Cache::kMost;
  for (std::size_t i = 0; i < kNames; ++i) cache.put("u", nameOf(i), nameOf(i), i);
  EXPECT_LE(countKept(cache, kNames), Cache::kMost);
  EXPECT_NE(cache.find("u", nameOf(kNames - 1), nameOf(kNames - 1)), nullptr);
}

TEST(NameCache, KeepsOneValueOfAName) {
  Cache cache;
  for (std::size_t i = 0; i < 3 * Cache::kMost; ++i) cache.put("u", "a", "p:a", i);
  ASSERT_NE(cache.find("u", "a", "p:a"), nullptr);
  EXPECT_EQ(*cache.find("u", "a", "p:a"), 3 * Cache::kMost - 1);
}

// Names with the same qualified name replace one another, and the cache grows meanwhile.
TEST(NameCache, TellsNoValueThatAnotherReplaced) {
  Cache cache;
  std::map<std::pair<std::string, std::string>, std::size_t> values;
  std::size_t random = 1;
  for (std::size_t i = 0; i < 100000; ++i) {
    random = random * 6364136223846793005U + 1442695040888963407U;
    const std::size_t kind = random >> 33U;
    const bool isAlike = kind % 3 != 0;
    const std::string uri = isAlike ? "u" + std::to_string(kind / 3 % 20) : "u";
    const std::string qName = isAlike ? "p:a" : nameOf(kind / 3 % (1 + i / 20));
    const std::size_t* const found = cache.find(uri, "a", qName);
    if (found != nullptr) {
      ASSERT_EQ(*found, values.at({uri, qName})) << i;
    }
    if (i % 2 == 0) {
      cache.put(uri, "a", qName, i);
      values[{uri, qName}] = i;
    }
  }
}

TEST(NameCache, LeavesLongNamesOut) {
  Cache cache;
  const std::string longest(Cache::kLongest - 2, 'n');
  cache.put("u", "a", longest, 1);
  cache.put("u", "a", longest + 'n', 2);
  EXPECT_NE(cache.find("u", "a", longest), nullptr);
  EXPECT_EQ(cache.find("u", "a", longest + 'n'), nullptr);
}

TEST(NameCache, FindsNamesInAnyOrder) {
  Cache cache;
  constexpr std::size_t kNames = 7;
  for (std::size_t i = 0; i < kNames; ++i) cache.put("u", nameOf(i), nameOf(i), i);
  std::size_t name = 0;
  for (std::size_t i = 0; i < 200; ++i) {
    name = (name * 5 + i) % kNames;
    ASSERT_NE(cache.find("u", nameOf(name), nameOf(name)), nullptr);
    EXPECT_EQ(*cache.find("u", nameOf(name), nameOf(name)), name);
    EXPECT_EQ(cache.find("v", nameOf(name), nameOf(name)), nullptr);
  }
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
