#include <Tavrin/EncodingAlgorithms.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "Kinds.h"

namespace {

using namespace Tavrin;

// Arrays travel in blocks of this many octets; strings in such that double in size.
constexpr std::size_t kBlock = 8192;

/// Numbers of items that end at the border of a block, one before and one behind.
template <typename K>
std::vector<std::size_t> countsAtBorders() {
  std::vector<std::size_t> counts;
  for (const std::size_t octets : {kBlock, 2 * kBlock, 3 * kBlock, 4 * kBlock}) {
    const std::size_t items = isBoolean<K> ? 8 * octets : octets / K::itemOctets;
    counts.insert(counts.end(), {items - 1, items, items + 1});
    if (isBoolean<K>) {
      // The first octet, of four booleans, stands for itself when it is read.
      counts.insert(counts.end(), {items - 5, items - 4, items - 3});
      counts.insert(counts.end(), {items + 3, items + 4, items + 5});
    }
  }
  return counts;
}

template <typename K>
std::string introduced(bool chunk, const std::string& data) {
  const typename K::Algorithm algorithm{};
  std::ostringstream out;
  algorithm.writeSize(K::index, chunk, static_cast<std::uint32_t>(data.size()), out);
  return out.str() + data;
}

// Compared with EXPECT_TRUE: a failure must not print all of it.
template <typename K>
void expectRoundTrip(std::size_t count) {
  SCOPED_TRACE(count);
  const auto value = someItems<K>(count);
  const std::string data = dataOctets<K>(value);
  EXPECT_TRUE(encoded<K>(true, value) == introduced<K>(true, data));
  EXPECT_TRUE(encoded<K>(false, value) == introduced<K>(false, data));

  typename K::Algorithm algorithm;
  std::istringstream in(data + "behind");
  const auto& items = holderOf<K>(algorithm, static_cast<std::uint32_t>(data.size()), in).data_;
  EXPECT_EQ(items.size(), count);
  EXPECT_TRUE(dataOctets<K>(items) == data);
  EXPECT_TRUE(in.good());
  EXPECT_EQ(rest(in), "behind");
}

template <typename K>
class LargeData : public ::testing::Test {};
TYPED_TEST_SUITE(LargeData, AllKinds, KindNames);

TYPED_TEST(LargeData, GoesThereAndBackAtTheBordersOfBlocks) {
  for (const std::size_t count : countsAtBorders<TypeParam>()) expectRoundTrip<TypeParam>(count);
}

TYPED_TEST(LargeData, GoesThereAndBackWhole) {
  expectRoundTrip<TypeParam>(100003);
  expectRoundTrip<TypeParam>(1000000 / TypeParam::itemOctets);
}

TEST(LargeShorts, AreIntroducedByTheirLength) {
  const struct {
    std::size_t count;
    const char* chunk;
    const char* attribute;
  } cases[] = {
      {4095, "8C 0B 00 00 1E FB 00 00", "30 2C 00 00 1E F5 00 00"},
      {4096, "8C 0B 00 00 1E FD 00 00", "30 2C 00 00 1E F7 00 00"},
      {4097, "8C 0B 00 00 1E FF 00 00", "30 2C 00 00 1E F9 00 00"},
  };
  for (const auto& expected : cases) {
    const std::vector<short> value(expected.count, 0);
    EXPECT_EQ(EventLog::showOctets(encoded<ShortKind>(true, value).substr(0, 8)), expected.chunk);
    EXPECT_EQ(EventLog::showOctets(encoded<ShortKind>(false, value).substr(0, 8)),
              expected.attribute);
    EXPECT_EQ(encoded<ShortKind>(true, value).size(), 6 + 2 * expected.count);
  }
}

}  // namespace
