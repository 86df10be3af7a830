#include "fastinfoset/StableList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace reader_test {
namespace {

using List = Tavrin::fastinfoset::StableList<std::string>;

void append(List& list, const std::string& text) {
  list.next() = text;
  list.grow();
}

TEST(StableList, KeepsEntriesWhereTheyAre) {
  List list;
  std::vector<const std::string*> places;
  for (std::size_t i = 0; i < 1000; ++i) {
    append(list, std::to_string(i));
    places.push_back(&list[i]);
  }
  EXPECT_EQ(list.size(), 1000U);
  for (std::size_t i = 0; i < 1000; ++i) {
    EXPECT_EQ(&list[i], places[i]);
    EXPECT_EQ(list[i], std::to_string(i));
  }
}

TEST(StableList, HasNoEntryThatDidNotGrow) {
  List list;
  list.next() = "a";
  EXPECT_EQ(list.size(), 0U);
  append(list, "b");
  EXPECT_EQ(list.size(), 1U);
  EXPECT_EQ(list[0], "b");
}

// Sizes around those of blocks, and of those that are kept.
TEST(StableList, DropsEntriesFromAPositionOn) {
  for (const std::size_t before : {0U, 1U, 15U, 16U, 17U, 63U, 64U, 65U, 80U, 200U}) {
    for (const std::size_t after : {0U, 1U, 15U, 16U, 17U, 63U, 64U, 65U, 80U, 200U, 300U}) {
      List list;
      for (std::size_t i = 0; i < before; ++i) append(list, std::to_string(i));
      std::size_t released = 0;
      list.shrinkTo(after, [&](std::string& entry) {
        entry = "released";
        ++released;
      });
      const std::size_t left = std::min(before, after);
      ASSERT_EQ(list.size(), left);
      EXPECT_LE(released, before - left);
      for (std::size_t i = 0; i < left; ++i) EXPECT_EQ(list[i], std::to_string(i));
      for (std::size_t i = 0; i < 100; ++i) append(list, "new");
      ASSERT_EQ(list.size(), left + 100);
      for (std::size_t i = 0; i < left; ++i) EXPECT_EQ(list[i], std::to_string(i));
    }
  }
}

}  // namespace
}  // namespace reader_test
