#include "xml/TextStore.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Tavrin::xml {
namespace {

/// Texts of all lengths up to that of a block of their own, and some far beyond.
std::vector<std::string> manyTexts() {
  std::vector<std::string> texts;
  for (std::size_t length = 0; length < 700; ++length) {
    texts.emplace_back(length, static_cast<char>('a' + length % 26));
  }
  for (const std::size_t length : {5000U, 16384U, 16385U, 70000U, 3U, 300000U, 1U}) {
    texts.emplace_back(length, 'z');
  }
  return texts;
}

void expectKept(TextStore& store, const std::vector<std::string>& texts) {
  std::vector<std::string_view> kept;
  for (const std::string& text : texts) kept.push_back(store.keep(text));
  for (std::size_t i = 0; i < texts.size(); ++i) {
    EXPECT_EQ(kept[i], texts[i]);
    EXPECT_TRUE(texts[i].empty() || kept[i].data() != texts[i].data());
  }
}

TEST(TextStore, KeepsTextsWhereTheyAre) {
  TextStore store;
  expectKept(store, manyTexts());
}

TEST(TextStore, IsUsedAgain) {
  TextStore store;
  for (int i = 0; i < 3; ++i) {
    expectKept(store, manyTexts());
    store.clear();
    expectKept(store, {"a", "", "bc"});
    store.clear();
    store.clear();
  }
}

TEST(TextStore, MovesWithoutItsTexts) {
  TextStore store;
  const std::string_view first = store.keep("first");
  TextStore other = std::move(store);
  const std::string_view second = other.keep("second");
  store = TextStore();
  const std::string_view third = store.keep("third");
  EXPECT_EQ(first, "first");
  EXPECT_EQ(second, "second");
  EXPECT_EQ(third, "third");
  other = std::move(store);
  EXPECT_EQ(third, "third");
  EXPECT_EQ(other.keep("fourth"), "fourth");
}

}  // namespace
}  // namespace Tavrin::xml
