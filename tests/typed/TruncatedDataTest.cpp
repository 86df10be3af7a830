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

/// What is decoded of octets behind which all others are missing.
template <typename K>
std::string decodedOf(const std::string& present, std::uint32_t length) {
  typename K::Algorithm algorithm;
  std::istringstream in(present);
  return showData<K>(holderOf<K>(algorithm, length, in).data_);
}

template <typename K>
void expectOfFullLength(const std::string& data) {
  for (const std::size_t present : {std::size_t{1}, std::size_t{2}, std::size_t{7}, std::size_t{8},
                                    std::size_t{9}, data.size() / 2, data.size() - 1}) {
    std::string counted = data.substr(0, present);
    counted.resize(data.size(), isString<K> ? '\0' : '\xFF');
    EXPECT_EQ(decodedOf<K>(counted, static_cast<std::uint32_t>(data.size())),
              decodedOf<K>(data.substr(0, present), static_cast<std::uint32_t>(data.size())))
        << present;
  }
}

// A number counts an octet that is missing as 0xFF, the end of the stream as an octet; what is
// missing of a string is zero.
TYPED_TEST(DecoderOfTruncatedData, HasTheStatedLength) {
  expectOfFullLength<TypeParam>(dataOctets<TypeParam>(someItems<TypeParam>(20)));
}

TYPED_TEST(DecoderOfTruncatedData, HasTheStatedLengthHoweverLongItIs) {
  const std::size_t count = isBoolean<TypeParam> ? 799996 : 100000 / TypeParam::itemOctets;
  expectOfFullLength<TypeParam>(dataOctets<TypeParam>(someItems<TypeParam>(count)));
}

TYPED_TEST(DecoderOfTruncatedData, HasTheStatedLengthWithoutAnOctet) {
  typename TypeParam::Algorithm algorithm;
  std::istringstream in;
  const auto& data = holderOf<TypeParam>(algorithm, 80000, in).data_;
  if constexpr (isBoolean<TypeParam>) {
    // The first octet says that fifteen bits are unused.
    EXPECT_EQ(std::vector<bool>(8U * 80000 - 4 - 15, true), data);
  } else {
    EXPECT_EQ(80000 / TypeParam::itemOctets, data.size());
    EXPECT_EQ(std::string(80000, isString<TypeParam> ? '\0' : '\xFF'), dataOctets<TypeParam>(data));
  }
}

TYPED_TEST(DecoderOfTruncatedData, TakesItsMemoryAtOnce) {
  if constexpr (!isString<TypeParam>) {
    typename TypeParam::Algorithm algorithm;
    std::istringstream in(std::string(1, '\0'));
    const auto& items = holderOf<TypeParam>(algorithm, 80000, in).data_;
    typename TypeParam::Value reserved;
    reserved.reserve(items.size());
    EXPECT_EQ(reserved.capacity(), items.capacity());
  }
}

TYPED_TEST(DecoderOfTruncatedData, DecodesTheNextValueAsEver) {
  typename TypeParam::Algorithm algorithm;
  const std::string data = dataOctets<TypeParam>(someItems<TypeParam>(20));
  const auto length = static_cast<std::uint32_t>(data.size());
  std::istringstream cut(data.substr(0, 1));
  algorithm.decodeFromInputStream(length, cut);
  std::istringstream whole(data);
  EXPECT_EQ(showData<TypeParam>(holderOf<TypeParam>(algorithm, length, whole).data_),
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
  auto& holder = holderOf<K>(algorithm, 0, none);
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

/// Counts the reads of its blocks.
class CountingBuffer : public std::stringbuf {
 public:
  using std::stringbuf::stringbuf;
  std::vector<std::streamsize> reads;

 protected:
  std::streamsize xsgetn(char* octets, std::streamsize count) override {
    reads.push_back(count);
    return std::stringbuf::xsgetn(octets, count);
  }
};

TYPED_TEST(StringDecoder, ReadsOneBlock) {
  for (const std::uint32_t length : {1U, 8192U, 8193U, 100000U}) {
    for (const std::size_t present :
         {std::size_t{0}, std::size_t{length} / 2, std::size_t{length}}) {
      CountingBuffer buffer(std::string(present, 'x'), std::ios_base::in);
      std::istream in(&buffer);
      typename TypeParam::Algorithm algorithm;
      const std::string& text = holderOf<TypeParam>(algorithm, length, in).data_;
      EXPECT_EQ(std::string(present, 'x') + std::string(length - present, '\0'), text);
      EXPECT_EQ(std::vector<std::streamsize>{length}, buffer.reads);
    }
  }
}

// 0xFF in its place says that more bits are unused than there are; that is no wrong length.
TEST(BooleanDecoder, HasNoBooleansWithoutAFirstOctetOfFew) {
  BooleanEncodingAlgorithm algorithm;
  std::istringstream in(octets("0F"));
  auto& holder = holderOf<BooleanKind>(algorithm, 1, in);
  EXPECT_EQ(holder.data_.size(), 4U);
  for (const std::uint32_t length : {1U, 2U}) {
    EXPECT_NO_THROW(algorithm.decodeFromInputStream(length, in));
    EXPECT_TRUE(in.fail());
    EXPECT_TRUE(holder.data_.empty());
  }
}

}  // namespace
