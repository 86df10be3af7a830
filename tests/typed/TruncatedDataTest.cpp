#include <Tavrin/EncodingAlgorithms.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <ios>
#include <sstream>
#include <string>
#include <vector>

#include "Kinds.h"

namespace {

using namespace Tavrin;

/// The memory that the items of a holder take, in octets.
template <typename K>
std::size_t memoryOf(const typename K::Value& value) {
  if constexpr (isBoolean<K>) {
    return value.capacity() / 8;
  } else {
    return value.capacity() * sizeof(value[0]);
  }
}

template <typename K>
class DecoderOfTruncatedData : public ::testing::Test {};
TYPED_TEST_SUITE(DecoderOfTruncatedData, AllKinds, KindNames);

TYPED_TEST(DecoderOfTruncatedData, ShowsInTheStateOfTheStream) {
  const std::string data = dataOctets<TypeParam>(someItems<TypeParam>(20));
  for (std::size_t present = 0; present < data.size(); ++present) {
    typename TypeParam::Algorithm algorithm;
    std::istringstream in(data.substr(0, present));
    EXPECT_NO_THROW(algorithm.decodeFromInputStream(static_cast<std::uint32_t>(data.size()), in));
    EXPECT_TRUE(in.fail()) << present;
    EXPECT_TRUE(in.eof()) << present;
    EXPECT_FALSE(in.bad()) << present;
  }
}

TYPED_TEST(DecoderOfTruncatedData, ReadsTheWholeItemsThatAreThere) {
  const auto value = someItems<TypeParam>(20);
  const std::string data = dataOctets<TypeParam>(value);
  for (std::size_t present = 1; present < data.size(); ++present) {
    typename TypeParam::Algorithm algorithm;
    std::istringstream in(data.substr(0, present));
    const auto& items =
        algorithm.decodeFromInputStream(static_cast<std::uint32_t>(data.size()), in).data_;
    const std::size_t whole =
        isBoolean<TypeParam> ? 8 * present - 4 : present / TypeParam::itemOctets;
    ASSERT_GE(items.size(), whole);
    EXPECT_EQ(showData<TypeParam>(typename TypeParam::Value(
                  items.begin(), items.begin() + static_cast<std::ptrdiff_t>(whole))),
              showData<TypeParam>(typename TypeParam::Value(
                  value.begin(), value.begin() + static_cast<std::ptrdiff_t>(whole))));
  }
}

TYPED_TEST(DecoderOfTruncatedData, DecodesTheNextValueAsEver) {
  typename TypeParam::Algorithm algorithm;
  const std::string data = dataOctets<TypeParam>(someItems<TypeParam>(20));
  const auto length = static_cast<std::uint32_t>(data.size());
  std::istringstream cut(data.substr(0, 1));
  algorithm.decodeFromInputStream(length, cut);
  std::istringstream whole(data);
  EXPECT_EQ(showData<TypeParam>(algorithm.decodeFromInputStream(length, whole).data_),
            showData<TypeParam>(someItems<TypeParam>(20)));
  EXPECT_EQ(whole.rdstate(), std::ios::goodbit);
}

TYPED_TEST(DecoderOfTruncatedData, LeavesAStreamFailedThatHadFailedBefore) {
  typename TypeParam::Algorithm algorithm;
  std::istringstream in(std::string(64, '\0'));
  in.setstate(std::ios::failbit);
  EXPECT_NO_THROW(algorithm.decodeFromInputStream(16, in));
  EXPECT_TRUE(in.fail());
  in.clear();
  EXPECT_EQ(in.tellg(), 0);
}

// An end in the middle of the blocks in which arrays are read, and right at their border.
TYPED_TEST(DecoderOfTruncatedData, ShowsBehindTheFirstBlockToo) {
  const std::string data(3 * 8192, '\0');
  for (const std::size_t present : {8191U, 8192U, 8193U, 16383U, 16384U, 16385U, 24575U}) {
    typename TypeParam::Algorithm algorithm;
    std::istringstream in(data.substr(0, present));
    EXPECT_NO_THROW(algorithm.decodeFromInputStream(static_cast<std::uint32_t>(data.size()), in));
    EXPECT_TRUE(in.fail()) << present;
    EXPECT_TRUE(in.eof()) << present;
  }
}

constexpr std::uint32_t kHostileLength = 0xFFFFFFF0;  // A multiple of every item's size.

TYPED_TEST(DecoderOfTruncatedData, TakesNoMemoryForOctetsThatNeverArrive) {
  typename TypeParam::Algorithm algorithm;
  std::istringstream in(octets("01 02 03 04 05 06 07 08 09 0A"));
  const auto& items = algorithm.decodeFromInputStream(kHostileLength, in).data_;
  EXPECT_TRUE(in.fail());
  EXPECT_LE(memoryOf<TypeParam>(items), 65536U);
}

TYPED_TEST(DecoderOfTruncatedData, TakesMemoryByTheOctetsThatArrive) {
  const std::size_t count = isBoolean<TypeParam> ? 799996 : 100000 / TypeParam::itemOctets;
  const auto value = someItems<TypeParam>(count);
  const std::string data = dataOctets<TypeParam>(value);
  ASSERT_EQ(data.size(), 100000U);
  typename TypeParam::Algorithm algorithm;
  std::istringstream in(data);
  const auto& items = algorithm.decodeFromInputStream(kHostileLength, in).data_;
  EXPECT_TRUE(in.fail());
  EXPECT_LE(memoryOf<TypeParam>(items), 1000000U);
  ASSERT_GE(items.size(), count);
  const typename TypeParam::Value arrived(items.begin(),
                                          items.begin() + static_cast<std::ptrdiff_t>(count));
  EXPECT_TRUE(dataOctets<TypeParam>(arrived) == data);
}

TYPED_TEST(DecoderOfTruncatedData, LetsAStreamThrowThatWasToldTo) {
  const std::string data = dataOctets<TypeParam>(someItems<TypeParam>(20));
  const auto length = static_cast<std::uint32_t>(data.size());
  for (const std::ios::iostate told : {std::ios::failbit, std::ios::eofbit}) {
    for (std::size_t present = 0; present < data.size(); ++present) {
      typename TypeParam::Algorithm algorithm;
      std::istringstream in(data.substr(0, present));
      in.exceptions(told);
      EXPECT_THROW(algorithm.decodeFromInputStream(length, in), std::ios_base::failure) << present;
    }
  }
  typename TypeParam::Algorithm algorithm;
  std::istringstream in(data.substr(0, data.size() - 1));
  in.exceptions(std::ios::badbit);
  EXPECT_NO_THROW(algorithm.decodeFromInputStream(length, in));
}

template <typename K>
class StringDecoder : public ::testing::Test {};
TYPED_TEST_SUITE(StringDecoder, StringKinds, KindNames);

/// What a holder with this value has after it decoded that length from that stream.
template <typename K>
std::string readOver(const std::string& before, std::uint32_t length, const std::string& stream) {
  typename K::Algorithm algorithm;
  std::istringstream none;
  auto& holder = algorithm.decodeFromInputStream(0, none);
  holder.data_ = before;
  std::istringstream in(stream);
  algorithm.decodeFromInputStream(length, in);
  return EventLog::showOctets(holder.data_);
}

TYPED_TEST(StringDecoder, FillsAnEmptyHolderUpWithZeros) {
  EXPECT_EQ(readOver<TypeParam>("", 6, "abc"), "61 62 63 00 00 00");
  EXPECT_EQ(readOver<TypeParam>("", 2, ""), "00 00");
}

TYPED_TEST(StringDecoder, KeepsWhatABiggerHolderHadBehindTheEnd) {
  EXPECT_EQ(readOver<TypeParam>("ABCDEFGH", 6, "xyz"), "78 79 7A 44 45 46");
  EXPECT_EQ(readOver<TypeParam>("ABCDEFGH", 8, ""), "41 42 43 44 45 46 47 48");
}

TYPED_TEST(StringDecoder, KeepsWhatASmallerHolderHadAndFillsUpWithZeros) {
  EXPECT_EQ(readOver<TypeParam>("ABCDE", 7, "xyz"), "78 79 7A 44 45 00 00");
}

TYPED_TEST(StringDecoder, ReplacesABiggerHolderByWhatIsThere) {
  EXPECT_EQ(readOver<TypeParam>("ABCDEFGH", 3, "xyz"), "78 79 7A");
  EXPECT_EQ(readOver<TypeParam>("ABCDEFGH", 3, "xyzxyz"), "78 79 7A");
  EXPECT_EQ(readOver<TypeParam>(std::string(100000, '.'), 2, "xy"), "78 79");
}

TEST(BooleanDecoder, HasNoBooleansWithoutAFirstOctet) {
  BooleanEncodingAlgorithm algorithm;
  std::istringstream in(octets("0F"));
  auto& holder = algorithm.decodeFromInputStream(1, in);
  EXPECT_EQ(holder.data_.size(), 4U);
  EXPECT_NO_THROW(algorithm.decodeFromInputStream(1, in));
  EXPECT_TRUE(in.fail());
  EXPECT_NO_THROW(algorithm.decodeFromInputStream(kHostileLength, in));
  EXPECT_LE(memoryOf<BooleanKind>(holder.data_), 65536U);
}

}  // namespace
