#include <Tavrin/EncodingAlgorithms.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "Kinds.h"
#include "Thrown.h"

namespace {

using namespace Tavrin;

/// The octets of a number of booleans, by hand.
struct BooleanCase {
  std::string chunk;
  std::string attribute;
  std::string allTrue;
  std::string allFalse;
  std::string alternating;  ///< The first is true.
};

/// By the number of booleans.
const std::vector<BooleanCase> kBooleans = {
    {"", "FF", "", "", ""},
    {"8C 14", "30 50", "38", "30", "38"},
    {"8C 14", "30 50", "2C", "20", "28"},
    {"8C 14", "30 50", "1E", "10", "1A"},
    {"8C 14", "30 50", "0F", "00", "0A"},
    {"8C 15", "30 51", "7F 80", "70 00", "7A 80"},
    {"8C 15", "30 51", "6F C0", "60 00", "6A 80"},
    {"8C 15", "30 51", "5F E0", "50 00", "5A A0"},
    {"8C 15", "30 51", "4F F0", "40 00", "4A A0"},
    {"8C 15", "30 51", "3F F8", "30 00", "3A A8"},
    {"8C 15", "30 51", "2F FC", "20 00", "2A A8"},
    {"8C 15", "30 51", "1F FE", "10 00", "1A AA"},
    {"8C 15", "30 51", "0F FF", "00 00", "0A AA"},
    {"8C 16 00", "30 52", "7F FF 80", "70 00 00", "7A AA 80"},
    {"8C 16 00", "30 52", "6F FF C0", "60 00 00", "6A AA 80"},
    {"8C 16 00", "30 52", "5F FF E0", "50 00 00", "5A AA A0"},
    {"8C 16 00", "30 52", "4F FF F0", "40 00 00", "4A AA A0"},
    {"8C 16 00", "30 52", "3F FF F8", "30 00 00", "3A AA A8"},
    {"8C 16 00", "30 52", "2F FF FC", "20 00 00", "2A AA A8"},
    {"8C 16 00", "30 52", "1F FF FE", "10 00 00", "1A AA AA"},
    {"8C 16 00", "30 52", "0F FF FF", "00 00 00", "0A AA AA"},
};

std::vector<bool> alternating(std::size_t count) {
  std::vector<bool> value(count);
  for (std::size_t i = 0; i < count; i += 2) value[i] = true;
  return value;
}

/// Calls check(case, value, data) for every number of booleans and every pattern.
template <typename Check>
void forEachPattern(Check check) {
  for (std::size_t count = 0; count < kBooleans.size(); ++count) {
    SCOPED_TRACE(count);
    const BooleanCase& expected = kBooleans[count];
    check(expected, std::vector<bool>(count, true), expected.allTrue);
    check(expected, std::vector<bool>(count, false), expected.allFalse);
    check(expected, alternating(count), expected.alternating);
  }
}

TEST(BooleanEncoder, WritesUpToTwentyBooleans) {
  forEachPattern(
      [](const BooleanCase& expected, const std::vector<bool>& value, const std::string& data) {
        EXPECT_EQ(EventLog::showOctets(encoded<BooleanKind>(true, value)),
                  EventLog::showOctets(octets(expected.chunk + " " + data)));
        EXPECT_EQ(EventLog::showOctets(encoded<BooleanKind>(false, value)),
                  EventLog::showOctets(octets(expected.attribute + " " + data)));
      });
}

TEST(BooleanDecoder, ReadsUpToTwentyBooleans) {
  forEachPattern([](const BooleanCase&, const std::vector<bool>& value, const std::string& data) {
    if (value.empty()) return;
    EXPECT_EQ(decoded<BooleanKind>(octets(data)), value);
  });
}

TEST(BooleanAlgorithm, GivesEveryBooleanItsOwnBit) {
  const std::vector<std::string> data = {"08 00", "04 00", "02 00", "01 00", "00 80", "00 40",
                                         "00 20", "00 10", "00 08", "00 04", "00 02", "00 01"};
  for (std::size_t i = 0; i < data.size(); ++i) {
    std::vector<bool> value(12);
    value[i] = true;
    EXPECT_EQ(EventLog::showOctets(encoded<BooleanKind>(true, value)), "8C 15 " + data[i]);
    EXPECT_EQ(decoded<BooleanKind>(octets(data[i])), value);
  }
}

TEST(BooleanEncoder, ChangesTheFormOfTheLengthWhereItMust) {
  struct {
    std::size_t count;
    std::string chunk;
    std::string attribute;
    std::string firstData;
    std::size_t octets;
  } const cases[] = {
      {60, "8C 16 05", "30 57", "0F FF", 8},
      {61, "8C 16 06", "30 58 00", "7F FF", 9},
      {2060, "8C 16 FF", "30 58 F9", "0F FF", 258},
      {2061, "8C 17 00 00 00 00", "30 58 FA", "7F FF", 259},
      {2108, "8C 17 00 00 00 05", "30 58 FF", "0F FF", 264},
      {2109, "8C 17 00 00 00 06", "30 5C 00 00 00 00", "7F FF", 265},
  };
  for (const auto& expected : cases) {
    const std::vector<bool> value(expected.count, true);
    const std::string chunk = encoded<BooleanKind>(true, value);
    const std::string attribute = encoded<BooleanKind>(false, value);
    const std::string chunkHead = octets(expected.chunk + expected.firstData);
    const std::string attributeHead = octets(expected.attribute + expected.firstData);
    EXPECT_EQ(EventLog::showOctets(chunk.substr(0, chunkHead.size())),
              EventLog::showOctets(chunkHead));
    EXPECT_EQ(EventLog::showOctets(attribute.substr(0, attributeHead.size())),
              EventLog::showOctets(attributeHead));
    EXPECT_EQ(chunk.size(), octets(expected.chunk).size() + expected.octets);
    EXPECT_EQ(attribute.size(), octets(expected.attribute).size() + expected.octets);
  }
}

TEST(BooleanDecoder, DoesNotLookAtTheUnusedBits) {
  EXPECT_EQ(decoded<BooleanKind>(octets("1B")), (std::vector<bool>{true, false, true}));
  EXPECT_EQ(decoded<BooleanKind>(octets("37")), (std::vector<bool>{false}));
  EXPECT_EQ(decoded<BooleanKind>(octets("70 7F")), std::vector<bool>(5, false));
}

TEST(BooleanDecoder, RefusesMoreUnusedBitsThanThereAre) {
  for (const char* const data :
       {"50", "5F", "60", "70", "80", "F0", "FF", "D0 00", "E0 00", "F0 00", "FF FF"}) {
    BooleanEncodingAlgorithm algorithm;
    const std::string all = octets(data);
    std::istringstream in(all + "behind");
    EXPECT_EQ(thrown<EncodingAlgorithmException>([&] {
                algorithm.decodeFromInputStream(static_cast<std::uint32_t>(all.size()), in);
              }),
              "Invalid length for encoded boolean data")
        << data;
  }
}

TEST(BooleanDecoder, ReadsOnlyTheOctetsThatHoldBooleans) {
  struct {
    const char* data;
    std::vector<bool> value;
    std::size_t left;  ///< Octets of the data that stay in the stream.
  } const cases[] = {
      {"4F", {}, 0},
      {"C0 FF", {}, 1},
      {"BF FF", {true}, 1},
      {"AA FF", {true, false}, 1},
      {"9B FF", {true, false, true}, 1},
      {"8A FF", {true, false, true, false}, 1},
      {"8A A5 FF",
       {true, false, true, false, true, false, true, false, false, true, false, true},
       1},
      {"FF 80 FF", {true, true, true, true, true}, 1},
      {"E5 55 FF", {false, true, false, true, false, true}, 1},
      {"CA A5 FF", {true, false, true, false, true, false, true, false}, 1},
      {"FF FF FF FF", std::vector<bool>(13, true), 1},
      {"F0 00 00 00 00 00 00 00 00 FF", std::vector<bool>(61, false), 1},
      {"80 00 00 00 00 00 00 00 00 FF", std::vector<bool>(68, false), 1},
  };
  for (const auto& expected : cases) {
    SCOPED_TRACE(expected.data);
    const std::string data = octets(expected.data);
    BooleanEncodingAlgorithm algorithm;
    std::istringstream in(data);
    const auto& holder =
        holderOf<BooleanKind>(algorithm, static_cast<std::uint32_t>(data.size()), in);
    EXPECT_EQ(holder.data_, expected.value);
    EXPECT_TRUE(in.good());
    EXPECT_EQ(rest(in).size(), expected.left);
  }
}

TEST(BooleanDecoder, ForgetsItsOldValueAlsoForNone) {
  BooleanEncodingAlgorithm algorithm;
  std::istringstream in(octets("0F 4F"));
  auto& holder = holderOf<BooleanKind>(algorithm, 1, in);
  EXPECT_EQ(holder.data_, std::vector<bool>(4, true));
  algorithm.decodeFromInputStream(1, in);
  EXPECT_EQ(holder.data_, std::vector<bool>());
}

}  // namespace
