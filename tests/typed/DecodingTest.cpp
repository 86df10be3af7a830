#include <Tavrin/EncodingAlgorithms.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <ios>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <vector>

#include "AlgorithmCases.h"
#include "Kinds.h"
#include "Thrown.h"

namespace {

using namespace Tavrin;

template <typename K>
class EveryDecoder : public ::testing::Test {};
TYPED_TEST_SUITE(EveryDecoder, AllKinds, KindNames);

TYPED_TEST(EveryDecoder, ReadsItsOctetsAndNoneBeyond) {
  using Holder = typename TypeParam::Holder;
  typename TypeParam::Algorithm algorithm;
  EncodingAlgorithm& base = algorithm;
  for (const auto& expected : casesOf(TypeParam{})) {
    const std::string data = octets(expected.data);
    std::istringstream in("before" + data + "behind");
    in.ignore(6);
    EncodedData& result = base.decodeFromInputStream(static_cast<std::uint32_t>(data.size()), in);
    ASSERT_EQ(typeid(result), typeid(Holder));
    EXPECT_EQ(showData<TypeParam>(dynamic_cast<Holder&>(result).data_),
              showData<TypeParam>(expected.value));
    EXPECT_TRUE(in.good());
    EXPECT_EQ(rest(in), "behind");
  }
}

TYPED_TEST(EveryDecoder, DoesNotTouchTheEndOfTheStream) {
  for (const auto& expected : casesOf(TypeParam{})) {
    const std::string data = octets(expected.data);
    typename TypeParam::Algorithm algorithm;
    std::istringstream in(data);
    algorithm.decodeFromInputStream(static_cast<std::uint32_t>(data.size()), in);
    EXPECT_EQ(in.rdstate(), std::ios::goodbit);
    EXPECT_EQ(in.tellg(), static_cast<std::streamoff>(data.size()));
  }
}

TYPED_TEST(EveryDecoder, KeepsAllBitsOfEveryItem) {
  for (const std::size_t count : {1U, 2U, 3U, 4U, 5U, 12U, 13U, 100U}) {
    const auto value = someItems<TypeParam>(count);
    const std::string data = dataOctets<TypeParam>(value);
    const auto result = decoded<TypeParam>(data);
    EXPECT_EQ(showData<TypeParam>(result), showData<TypeParam>(value));
    EXPECT_EQ(result.size(), count);
  }
}

TYPED_TEST(EveryDecoder, ReusesItsHolderForTheNextValue) {
  typename TypeParam::Algorithm algorithm;
  const auto decode = [&algorithm](std::size_t count) -> typename TypeParam::Holder& {
    const std::string data = dataOctets<TypeParam>(someItems<TypeParam>(count));
    std::istringstream in(data);
    return holderOf<TypeParam>(algorithm, static_cast<std::uint32_t>(data.size()), in);
  };
  auto& first = decode(20);
  for (const std::size_t count : {5U, 20U, 21U, 1U}) {
    auto& next = decode(count);
    EXPECT_EQ(&next, &first);
    EXPECT_EQ(showData<TypeParam>(first.data_), showData<TypeParam>(someItems<TypeParam>(count)));
  }
}

TYPED_TEST(EveryDecoder, LeavesAClonedValueAlone) {
  typename TypeParam::Algorithm algorithm;
  const std::string data = dataOctets<TypeParam>(someItems<TypeParam>(3));
  const std::string others = dataOctets<TypeParam>(someItems<TypeParam>(8));
  std::istringstream in(data + others);
  auto& holder = holderOf<TypeParam>(algorithm, static_cast<std::uint32_t>(data.size()), in);
  const std::unique_ptr<EncodedData> clone = holder.clone();
  EXPECT_TRUE(holder.data_.empty());
  algorithm.decodeFromInputStream(static_cast<std::uint32_t>(others.size()), in);
  EXPECT_EQ(showData<TypeParam>(dynamic_cast<typename TypeParam::Holder&>(*clone).data_),
            showData<TypeParam>(someItems<TypeParam>(3)));
  EXPECT_EQ(showData<TypeParam>(holder.data_), showData<TypeParam>(someItems<TypeParam>(8)));
}

TYPED_TEST(EveryDecoder, IsNotDisturbedByTheEncoder) {
  typename TypeParam::Algorithm algorithm;
  const std::string data = dataOctets<TypeParam>(someItems<TypeParam>(3));
  std::istringstream in(data);
  auto& holder = holderOf<TypeParam>(algorithm, static_cast<std::uint32_t>(data.size()), in);
  std::ostringstream out;
  algorithm.encodeToOutputStream(true, someItems<TypeParam>(9), out);
  EXPECT_EQ(showData<TypeParam>(holder.data_), showData<TypeParam>(someItems<TypeParam>(3)));
}

TYPED_TEST(EveryDecoder, ReadsFromAStreamThatThrowsAtItsEnd) {
  const std::string data = dataOctets<TypeParam>(someItems<TypeParam>(9));
  std::istringstream in(data);
  in.exceptions(std::ios::badbit | std::ios::failbit | std::ios::eofbit);
  typename TypeParam::Algorithm algorithm;
  EXPECT_NO_THROW(algorithm.decodeFromInputStream(static_cast<std::uint32_t>(data.size()), in));
}

// All but booleans, which need an octet for the number of unused bits.
using KindsThatMayBeEmpty = ::testing::Types<HexadecimalKind, Base64Kind, CDATAKind, ShortKind,
                                             IntKind, LongKind, FloatKind, DoubleKind>;
template <typename K>
class DecoderOfNothing : public ::testing::Test {};
TYPED_TEST_SUITE(DecoderOfNothing, KindsThatMayBeEmpty, KindNames);

TYPED_TEST(DecoderOfNothing, EmptiesItsHolderAndReadsNothing) {
  typename TypeParam::Algorithm algorithm;
  std::istringstream empty;
  EXPECT_TRUE(holderOf<TypeParam>(algorithm, 0, empty).data_.empty());
  EXPECT_EQ(empty.rdstate(), std::ios::goodbit);

  const std::string data = dataOctets<TypeParam>(someItems<TypeParam>(5));
  std::istringstream in(data + "behind");
  auto& holder = holderOf<TypeParam>(algorithm, static_cast<std::uint32_t>(data.size()), in);
  ASSERT_FALSE(holder.data_.empty());
  algorithm.decodeFromInputStream(0, in);
  EXPECT_TRUE(holder.data_.empty());
  EXPECT_TRUE(in.good());
  EXPECT_EQ(rest(in), "behind");
}

struct WrongLengths {
  std::vector<std::uint32_t> lengths;
  std::string message;
};

WrongLengths wrongLengthsOf(ShortKind) {
  return {{1, 3, 9, 8193, 0xFFFFFFFF}, "Invalid length for encoded short data"};
}
WrongLengths wrongLengthsOf(IntKind) {
  return {{1, 2, 3, 5, 6, 7, 8194, 0xFFFFFFFE}, "Invalid length for encoded int data"};
}
WrongLengths wrongLengthsOf(LongKind) {
  return {{1, 2, 3, 4, 5, 6, 7, 9, 12, 8196, 0xFFFFFFFC}, "Invalid length for encoded long data"};
}
WrongLengths wrongLengthsOf(FloatKind) {
  return {{1, 2, 3, 5, 6, 7, 8194, 0xFFFFFFFE}, "Invalid length for encoded float data"};
}
WrongLengths wrongLengthsOf(DoubleKind) {
  return {{1, 2, 3, 4, 5, 6, 7, 9, 12, 8196, 0xFFFFFFFC}, "Invalid length for encoded double data"};
}
WrongLengths wrongLengthsOf(BooleanKind) {
  return {{0}, "Invalid length for encoded boolean data"};
}

using KindsOfCertainLengths =
    ::testing::Types<ShortKind, IntKind, LongKind, BooleanKind, FloatKind, DoubleKind>;
template <typename K>
class DecoderOfWrongLengths : public ::testing::Test {};
TYPED_TEST_SUITE(DecoderOfWrongLengths, KindsOfCertainLengths, KindNames);

TYPED_TEST(DecoderOfWrongLengths, RefusesThemBeforeAnythingIsReadOrChanged) {
  const WrongLengths wrong = wrongLengthsOf(TypeParam{});
  for (const std::uint32_t length : wrong.lengths) {
    typename TypeParam::Algorithm algorithm;
    const std::string data = dataOctets<TypeParam>(someItems<TypeParam>(5));
    std::istringstream in(data + "behind");
    auto& holder = holderOf<TypeParam>(algorithm, static_cast<std::uint32_t>(data.size()), in);
    EXPECT_EQ(
        thrown<EncodingAlgorithmException>([&] { algorithm.decodeFromInputStream(length, in); }),
        wrong.message)
        << length;
    EXPECT_EQ(showData<TypeParam>(holder.data_), showData<TypeParam>(someItems<TypeParam>(5)));
    EXPECT_TRUE(in.good());
    EXPECT_EQ(in.tellg(), static_cast<std::streamoff>(data.size()));
    EXPECT_EQ(rest(in), "behind");
  }
}

TYPED_TEST(DecoderOfWrongLengths, RefusesThemAlsoWhereTheDataIsCutOff) {
  const WrongLengths wrong = wrongLengthsOf(TypeParam{});
  for (const std::uint32_t length : wrong.lengths) {
    typename TypeParam::Algorithm algorithm;
    std::istringstream in;
    EXPECT_EQ(thrown<FastInfosetException>([&] { algorithm.decodeFromInputStream(length, in); }),
              wrong.message);
    EXPECT_EQ(in.rdstate(), std::ios::goodbit);
  }
}

TYPED_TEST(DecoderOfWrongLengths, ReadsOnAfterARefusal) {
  typename TypeParam::Algorithm algorithm;
  const std::string data = dataOctets<TypeParam>(someItems<TypeParam>(5));
  std::istringstream in(data);
  EXPECT_THROW(algorithm.decodeFromInputStream(wrongLengthsOf(TypeParam{}).lengths[0], in),
               EncodingAlgorithmException);
  EXPECT_EQ(showData<TypeParam>(
                holderOf<TypeParam>(algorithm, static_cast<std::uint32_t>(data.size()), in).data_),
            showData<TypeParam>(someItems<TypeParam>(5)));
}

TEST(EncodingAlgorithmException, IsNoSAXException) {
  EXPECT_TRUE((std::is_base_of_v<FastInfosetException, EncodingAlgorithmException>));
  EXPECT_FALSE((std::is_base_of_v<SAXException, EncodingAlgorithmException>));
}

TEST(IntDecoder, ExtendsTheSign) {
  EXPECT_EQ(decoded<IntKind>(octets("FF FF FF FF")), (std::vector<long>{-1}));
  EXPECT_EQ(decoded<IntKind>(octets("80 00 00 00 7F FF FF FF")),
            (std::vector<long>{-2147483648, 2147483647}));
  EXPECT_EQ(decoded<IntKind>(octets("80 00 00 01 00 00 00 05")),
            (std::vector<long>{-2147483647, 5}));
}

TEST(ShortDecoder, ExtendsTheSign) {
  EXPECT_EQ(decoded<ShortKind>(octets("FF FF 80 00 7F FF 00 80")),
            (std::vector<short>{-1, -32768, 32767, 128}));
}

TEST(IntDecoder, BringsBackWhatFitsThirtyTwoBitsAndNothingElse) {
  const std::vector<long> value = {2147483647,  -2147483648, 2147483648,
                                   -2147483649, 4294967301,  std::numeric_limits<long>::min()};
  const std::string content = encoded<IntKind>(true, value);
  EXPECT_EQ(decoded<IntKind>(content.substr(3)),
            (std::vector<long>{2147483647, -2147483648, -2147483648, 2147483647, 5, 0}));
}

// A hexadecimal or base64 value is not parsed: digits stay digits.
TEST(StringDecoders, TakeEveryOctetAsItIs) {
  std::string all;
  for (unsigned octet = 0; octet < 256; ++octet) all += static_cast<char>(octet);
  EXPECT_EQ(decoded<HexadecimalKind>(all), all);
  EXPECT_EQ(decoded<Base64Kind>(all), all);
  EXPECT_EQ(decoded<CDATAKind>(all), all);
  EXPECT_EQ(decoded<HexadecimalKind>("0aFF zz"), "0aFF zz");
  EXPECT_EQ(decoded<Base64Kind>("TQ==\n"), "TQ==\n");
  EXPECT_EQ(decoded<CDATAKind>("]]>\r\n"), "]]>\r\n");
}

/// Decodes into a holder of another type than the algorithm that it replaces.
class ShoutedText : public CDATAEncodingAlgorithm {
 public:
  EncodedData& decodeFromInputStream(std::uint32_t length, std::istream& stream) override {
    CDATAEncodingAlgorithm::decodeFromInputStream(length, stream);
    shouted_.data_ = {length};
    return shouted_;
  }

 private:
  IntData shouted_;
};

TEST(BuiltInAlgorithm, MayBeOverriddenWithAnotherHolder) {
  ShoutedText algorithm;
  std::istringstream in("abc");
  EXPECT_EQ("3",
            static_cast<EncodingAlgorithm&>(algorithm).decodeFromInputStream(3, in).toString());
}

template <typename Algorithm>
using Decode = EncodedData& (Algorithm::*)(std::uint32_t, std::istream&);

template <typename K>
class DecodedHolder : public ::testing::Test {};
TYPED_TEST_SUITE(DecodedHolder, AllKinds, KindNames);

TYPED_TEST(DecodedHolder, IsReturnedAsAnyOther) {
  using Algorithm = typename TypeParam::Algorithm;
  const Decode<Algorithm> decode = &Algorithm::decodeFromInputStream;
  Algorithm algorithm;
  std::istringstream in(std::string(16, '\0'));
  EncodedData& holder = (algorithm.*decode)(16, in);
  EXPECT_EQ(typeid(typename TypeParam::Holder), typeid(holder));
}

}  // namespace
