#include <Tavrin/EncodingAlgorithms.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "typed/ExactNumbers.h"

// What is parsed from the text of a value is that value.

namespace {

using namespace Tavrin;

template <typename Number>
using BitsOf = std::conditional_t<sizeof(Number) == 4, std::uint32_t, std::uint64_t>;

/// The bits of numbers, where a NaN is like any other.
template <typename Number>
std::vector<BitsOf<Number>> bitsOf(const std::vector<Number>& numbers) {
  std::vector<BitsOf<Number>> bits;
  for (const Number number : numbers) {
    const bool isNaN = std::isnan(number);
    bits.push_back(
        std::bit_cast<BitsOf<Number>>(isNaN ? std::numeric_limits<Number>::quiet_NaN() : number));
  }
  return bits;
}

template <typename Algorithm, typename Holder, typename Number>
void expectBack(const std::vector<Number>& numbers) {
  const std::string text = Holder(numbers).toString();
  EXPECT_EQ(bitsOf(numbers), bitsOf(Algorithm::fromText(text).data_));
}

void expectFloats(const std::vector<float>& numbers) {
  expectBack<FloatEncodingAlgorithm, ExactFloatData>(numbers);
}
void expectDoubles(const std::vector<double>& numbers) {
  expectBack<DoubleEncodingAlgorithm, ExactDoubleData>(numbers);
}

TEST(FromTextRoundTrip, AllShorts) {
  std::vector<short> numbers;
  for (int i = -32768; i <= 32767; ++i) numbers.push_back(static_cast<short>(i));
  EXPECT_EQ(numbers, ShortEncodingAlgorithm::fromText(ShortData(numbers).toString()).data_);
}

TEST(FromTextRoundTrip, IntegersOfAllLengths) {
  std::vector<long> ints;
  std::vector<long> longs;
  for (int bit = 0; bit < 64; ++bit) {
    for (const std::uint64_t near : {-1, 0, 1}) {
      const auto number = static_cast<long>((std::uint64_t{1} << bit) + near);
      for (const long each : {number, static_cast<long>(0 - static_cast<std::uint64_t>(number))}) {
        longs.push_back(each);
        if (each == static_cast<std::int32_t>(each)) ints.push_back(each);
      }
    }
  }
  EXPECT_EQ(ints, IntEncodingAlgorithm::fromText(IntData(ints).toString()).data_);
  EXPECT_EQ(longs, LongEncodingAlgorithm::fromText(LongData(longs).toString()).data_);
}

TEST(FromTextRoundTrip, FloatsOfAllExponents) {
  // With the shortest and longest fractions; the last exponent is that of infinity and NaN.
  std::vector<float> numbers;
  for (std::uint32_t exponent = 0; exponent < 512; ++exponent) {
    for (const std::uint32_t fraction : {0U, 1U, 2U, 0x3FFFFFU, 0x400000U, 0x555555U, 0x7FFFFFU}) {
      numbers.push_back(std::bit_cast<float>(exponent << 23 | fraction));
    }
  }
  expectFloats(numbers);
}

TEST(FromTextRoundTrip, DoublesOfAllExponents) {
  std::vector<double> numbers;
  for (std::uint64_t exponent = 0; exponent < 4096; ++exponent) {
    for (const std::uint64_t fraction :
         {std::uint64_t{0}, std::uint64_t{1}, std::uint64_t{0x5555555555555},
          (std::uint64_t{1} << 52) - 1}) {
      numbers.push_back(std::bit_cast<double>(exponent << 52 | fraction));
    }
  }
  expectDoubles(numbers);
}

TEST(FromTextRoundTrip, MillionsOfFloatsAndDoubles) {
  std::mt19937_64 random(891);
  for (int block = 0; block < 20; ++block) {
    std::vector<float> floats;
    std::vector<double> doubles;
    for (int i = 0; i < 50000; ++i) {
      const std::uint64_t bits = random();
      floats.push_back(std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
      floats.push_back(std::bit_cast<float>(static_cast<std::uint32_t>(bits >> 32)));
      doubles.push_back(std::bit_cast<double>(bits));
    }
    expectFloats(floats);
    expectDoubles(doubles);
  }
}

TEST(FromTextRoundTrip, Octets) {
  std::mt19937 random(7);
  for (std::size_t length = 0; length < 300; ++length) {
    std::string octets;
    while (octets.size() < length) octets += static_cast<char>(random());
    EXPECT_EQ(octets,
              HexadecimalEncodingAlgorithm::fromText(HexadecimalData(octets).toString()).data_);
    EXPECT_EQ(octets, Base64EncodingAlgorithm::fromText(Base64Data(octets).toString()).data_);
  }
}

TEST(FromTextRoundTrip, BooleansAndUUIDs) {
  std::mt19937 random(8);
  std::vector<bool> booleans;
  std::vector<UUID> uuids;
  for (int i = 0; i < 1000; ++i) {
    booleans.push_back(random() % 2 == 0);
    UUID uuid{};
    for (std::uint8_t& octet : uuid) octet = static_cast<std::uint8_t>(random());
    uuids.push_back(uuid);
  }
  EXPECT_EQ(booleans, BooleanEncodingAlgorithm::fromText(BooleanData(booleans).toString()).data_);
  EXPECT_EQ(uuids, UUIDEncodingAlgorithm::fromText(UUIDData(uuids).toString()).data_);
}

}  // namespace
