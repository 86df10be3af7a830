#include <Tavrin/EncodingAlgorithms.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iomanip>
#include <ios>
#include <limits>
#include <memory>
#include <ostream>
#include <sstream>
#include <streambuf>
#include <string>
#include <typeinfo>
#include <vector>

#include "AlgorithmCases.h"
#include "Kinds.h"

namespace {

using namespace Tavrin;

template <typename K>
class EveryEncoder : public ::testing::Test {};
TYPED_TEST_SUITE(EveryEncoder, AllKinds, KindNames);

TYPED_TEST(EveryEncoder, WritesBareValues) {
  for (const auto& expected : casesOf(TypeParam{})) {
    EXPECT_EQ(EventLog::showOctets(encoded<TypeParam>(true, expected.value)),
              EventLog::showOctets(octets(expected.chunk + " " + expected.data)));
    EXPECT_EQ(EventLog::showOctets(encoded<TypeParam>(false, expected.value)),
              EventLog::showOctets(octets(expected.attribute + " " + expected.data)));
  }
}

// One object writes all of them: no value leaves anything behind for the next.
TYPED_TEST(EveryEncoder, WritesHoldersThroughTheBase) {
  typename TypeParam::Algorithm algorithm;
  EncodingAlgorithm& base = algorithm;
  std::ostringstream out;
  std::string written;
  for (const auto& expected : casesOf(TypeParam{})) {
    const typename TypeParam::Holder holder(expected.value);
    base.encodeToOutputStream(false, holder, out);
    base.encodeToOutputStream(true, holder, out);
    base.encodeToOutputStream(true, holder, out);
    written += octets(expected.attribute + expected.data);
    written += octets(expected.chunk + expected.data);
    written += octets(expected.chunk + expected.data);
    EXPECT_EQ(showData<TypeParam>(holder.data_), showData<TypeParam>(expected.value));
  }
  EXPECT_EQ(EventLog::showOctets(out.str()), EventLog::showOctets(written));
}

TYPED_TEST(EveryEncoder, LeavesOutEmptyContentAndMarksAnEmptyAttribute) {
  EXPECT_EQ(encoded<TypeParam>(true, {}), "");
  EXPECT_EQ(encoded<TypeParam>(false, {}), octets("FF"));
  typename TypeParam::Algorithm algorithm;
  EncodingAlgorithm& base = algorithm;
  std::ostringstream out;
  base.encodeToOutputStream(true, typename TypeParam::Holder(), out);
  EXPECT_EQ(out.str(), "");
  base.encodeToOutputStream(false, typename TypeParam::Holder(), out);
  EXPECT_EQ(out.str(), octets("FF"));
}

TYPED_TEST(EveryEncoder, DoesNotFollowTheFormatOfTheStream) {
  typename TypeParam::Algorithm algorithm;
  const auto value = someItems<TypeParam>(20);
  std::ostringstream out;
  out << std::hex << std::uppercase << std::showbase << std::setfill('*') << std::left;
  out.width(500);
  algorithm.encodeToOutputStream(true, value, out);
  EXPECT_EQ(EventLog::showOctets(out.str()), EventLog::showOctets(encoded<TypeParam>(true, value)));
  EXPECT_EQ(out.width(), 500);
}

TYPED_TEST(EveryEncoder, TakesAHolderThatIsDerivedFromItsOwn) {
  struct Derived : TypeParam::Holder {
    using TypeParam::Holder::Holder;
  };
  typename TypeParam::Algorithm algorithm;
  EncodingAlgorithm& base = algorithm;
  std::ostringstream out;
  base.encodeToOutputStream(false, Derived(someItems<TypeParam>(4)), out);
  EXPECT_EQ(out.str(), encoded<TypeParam>(false, someItems<TypeParam>(4)));
}

template <typename... K>
std::array<std::unique_ptr<EncodedData>, sizeof...(K)> holdersOf(::testing::Types<K...>) {
  return {std::make_unique<typename K::Holder>(someItems<K>(3))...};
}

template <typename... K>
std::array<std::unique_ptr<EncodingAlgorithm>, sizeof...(K)> algorithmsOf(::testing::Types<K...>) {
  return {std::make_unique<typename K::Algorithm>()...};
}

// Also where the value has the same type: an int is no long, octets are no text.
TEST(Encoders, RefuseEveryOtherHolderAndWriteNothing) {
  const auto holders = holdersOf(AllKinds{});
  const auto encoders = algorithmsOf(AllKinds{});
  for (std::size_t i = 0; i < encoders.size(); ++i) {
    for (std::size_t k = 0; k < holders.size(); ++k) {
      for (const bool chunk : {true, false}) {
        std::ostringstream out;
        if (i == k) {
          EXPECT_NO_THROW(encoders[i]->encodeToOutputStream(chunk, *holders[k], out));
          EXPECT_NE(out.str(), "");
        } else {
          EXPECT_THROW(encoders[i]->encodeToOutputStream(chunk, *holders[k], out), std::bad_cast)
              << i << " of " << k;
          EXPECT_EQ(out.str(), "");
          EXPECT_TRUE(out.good());
        }
      }
    }
  }
}

TEST(Encoders, RefuseAnApplicationsHolderAndWriteNothing) {
  struct OwnData : EncodedDataTemplate<std::vector<short>> {
    std::string toString() const override { return ""; }
    std::unique_ptr<EncodedData> clone() override { return nullptr; }
  };
  OwnData own;
  own.data_ = {1, 2};
  for (const auto& encoder : algorithmsOf(AllKinds{})) {
    for (const bool chunk : {true, false}) {
      std::ostringstream out;
      EXPECT_THROW(encoder->encodeToOutputStream(chunk, own, out), std::bad_cast);
      EXPECT_EQ(out.str(), "");
    }
  }
}

TEST(IntEncoder, WritesTheLowHalfOfEachElement) {
  const struct {
    long value;
    const char* data;
  } cases[] = {
      {4294967301, "00 00 00 05"},
      {4294967296, "00 00 00 00"},
      {4294967295, "FF FF FF FF"},
      {2147483648, "80 00 00 00"},
      {-2147483649, "7F FF FF FF"},
      {-4294967296, "00 00 00 00"},
      {-1, "FF FF FF FF"},
      {0x123456789ABCDEF0, "9A BC DE F0"},
      {std::numeric_limits<long>::min(), "00 00 00 00"},
      {std::numeric_limits<long>::max(), "FF FF FF FF"},
  };
  for (const auto& expected : cases) {
    EXPECT_EQ(EventLog::showOctets(encoded<IntKind>(true, {expected.value})),
              "8C 0E 01 " + std::string(expected.data));
    EXPECT_EQ(EventLog::showOctets(encoded<IntKind>(false, {expected.value})),
              "30 33 " + std::string(expected.data));
  }
}

/// Takes a number of octets, then no more.
class FullDevice : public std::streambuf {
 public:
  explicit FullDevice(std::size_t room) : room_(room) {}

  std::string taken;

 protected:
  int_type overflow(int_type c) override {
    if (taken.size() >= room_) return traits_type::eof();
    taken += traits_type::to_char_type(c);
    return c;
  }
  std::streamsize xsputn(const char* octets, std::streamsize count) override {
    const std::size_t fits = std::min(room_ - taken.size(), static_cast<std::size_t>(count));
    taken.append(octets, fits);
    return static_cast<std::streamsize>(fits);
  }

 private:
  std::size_t room_;
};

TYPED_TEST(EveryEncoder, LeavesAFailureOfTheStreamInItsState) {
  const auto value = someItems<TypeParam>(30);
  const std::string whole = encoded<TypeParam>(true, value);
  for (std::size_t room = 0; room < whole.size(); ++room) {
    FullDevice device(room);
    std::ostream out(&device);
    typename TypeParam::Algorithm algorithm;
    EXPECT_NO_THROW(algorithm.encodeToOutputStream(true, value, out));
    EXPECT_TRUE(out.bad()) << room;
    EXPECT_EQ(device.taken, whole.substr(0, device.taken.size()));
  }
  FullDevice device(whole.size());
  std::ostream out(&device);
  typename TypeParam::Algorithm algorithm;
  algorithm.encodeToOutputStream(true, value, out);
  EXPECT_TRUE(out.good());
  EXPECT_EQ(device.taken, whole);
}

TYPED_TEST(EveryEncoder, WritesNothingToAStreamWithoutADevice) {
  std::ostream out(nullptr);
  typename TypeParam::Algorithm algorithm;
  EXPECT_NO_THROW(algorithm.encodeToOutputStream(false, someItems<TypeParam>(3), out));
  EXPECT_TRUE(out.bad());
}

TYPED_TEST(EveryEncoder, LetsAStreamThrowThatWasToldTo) {
  const auto value = someItems<TypeParam>(3);
  FullDevice device(1);
  std::ostream out(&device);
  out.exceptions(std::ios::badbit | std::ios::failbit);
  typename TypeParam::Algorithm algorithm;
  EXPECT_THROW(algorithm.encodeToOutputStream(true, value, out), std::ios_base::failure);

  std::ostringstream whole;
  whole.exceptions(std::ios::badbit | std::ios::failbit | std::ios::eofbit);
  EXPECT_NO_THROW(algorithm.encodeToOutputStream(true, value, whole));
  EXPECT_EQ(whole.str(), encoded<TypeParam>(true, value));
}

}  // namespace
