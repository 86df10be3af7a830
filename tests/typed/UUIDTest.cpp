#include <Tavrin/EncodingAlgorithms.h>
#include <Tavrin/TypedData.h>

#include <gtest/gtest.h>

#include <sstream>
#include <typeinfo>

#include "EventLog.h"
#include "HexOctets.h"
#include "WhatIsThrown.h"

// UUIDs (X.891, 10.10): holder, text and octets.

namespace {

using namespace Tavrin;

const UUID kCounted = {0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07,
                       0x08, 0x09, 0x0A, 0x0B, 0x0C, 0x0D, 0x0E, 0x0F};
const UUID kHigh = {0xF8, 0x1D, 0x4F, 0xAE, 0x7D, 0xEC, 0x11, 0xD0,
                    0xA7, 0x65, 0x00, 0xA0, 0xC9, 0x1E, 0x6B, 0xF6};
const char* const kCountedOctets = "00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F";
const char* const kHighOctets = "F8 1D 4F AE 7D EC 11 D0 A7 65 00 A0 C9 1E 6B F6";
const char* const kCountedText = "00010203-0405-0607-0809-0a0b0c0d0e0f";
const char* const kHighText = "f81d4fae-7dec-11d0-a765-00a0c91e6bf6";

std::string encoded(bool chunk, const std::vector<UUID>& value) {
  UUIDEncodingAlgorithm algorithm;
  std::ostringstream bare;
  algorithm.encodeToOutputStream(chunk, value, bare);
  // A holder gives the same octets as its value.
  std::ostringstream held;
  static_cast<EncodingAlgorithm&>(algorithm).encodeToOutputStream(chunk, UUIDData(value), held);
  EXPECT_EQ(bare.str(), held.str());
  return bare.str();
}

TEST(UUIDs, TextIsInFiveGroups) {
  EXPECT_EQ("", UUIDData().toString());
  EXPECT_EQ(kCountedText, UUIDData({kCounted}).toString());
  EXPECT_EQ(kHighText, UUIDData({kHigh}).toString());
  EXPECT_EQ("00000000-0000-0000-0000-000000000000", UUIDData({UUID{}}).toString());
  EXPECT_EQ(std::string(kHighText) + " " + kCountedText, UUIDData({kHigh, kCounted}).toString());
}

TEST(UUIDs, CloneTakesTheValueOver) {
  UUIDData data({kHigh, kCounted});
  const std::unique_ptr<EncodedData> clone = data.clone();
  const EncodedData& cloned = *clone;
  EXPECT_EQ(typeid(UUIDData), typeid(cloned));
  EXPECT_EQ(std::string(kHighText) + " " + kCountedText, clone->toString());
  EXPECT_TRUE(data.data_.empty());
  EXPECT_EQ("", data.clone()->toString());
}

TEST(UUIDs, AreNoPrimitiveType) {
  EventLog log;
  UUIDData({kHigh}).callContentHandler(log);
  EXPECT_EQ("", log.text());
}

TEST(UUIDs, AreEncodedAsTheirOctets) {
  EXPECT_EQ(octets("8C 22 0D " + std::string(kCountedOctets)), encoded(true, {kCounted}));
  EXPECT_EQ(octets("30 88 07 " + std::string(kHighOctets)), encoded(false, {kHigh}));
  EXPECT_EQ(octets("8C 22 1D " + std::string(kHighOctets) + " " + kCountedOctets),
            encoded(true, {kHigh, kCounted}));
  EXPECT_EQ(octets("30 88 17 " + std::string(kHighOctets) + " " + kCountedOctets),
            encoded(false, {kHigh, kCounted}));
}

TEST(UUIDs, NoneLeaveContentOutAndValuesEmpty) {
  EXPECT_EQ("", encoded(true, {}));
  EXPECT_EQ(octets("FF"), encoded(false, {}));
}

TEST(UUIDs, OfAnotherHolderAreNotEncoded) {
  UUIDEncodingAlgorithm algorithm;
  std::ostringstream stream;
  EXPECT_THROW(
      static_cast<EncodingAlgorithm&>(algorithm).encodeToOutputStream(true, IntData({1}), stream),
      std::bad_cast);
  EXPECT_EQ("", stream.str());
}

const std::vector<UUID>& decodedUUIDs(UUIDEncodingAlgorithm& algorithm, std::uint32_t length,
                                      std::istream& stream) {
  return dynamic_cast<UUIDData&>(algorithm.decodeFromInputStream(length, stream)).data_;
}

TEST(UUIDs, AreDecodedFromTheirOctetsAlone) {
  UUIDEncodingAlgorithm algorithm;
  std::istringstream stream(octets(std::string(kHighOctets) + " " + kCountedOctets + " AA BB"));
  EXPECT_EQ(kHighText, algorithm.decodeFromInputStream(16, stream).toString());
  EXPECT_EQ(16, stream.tellg());
  EXPECT_EQ(kCountedText, algorithm.decodeFromInputStream(16, stream).toString());
  EXPECT_EQ(32, stream.tellg());
  stream.seekg(0);
  EXPECT_EQ((std::vector<UUID>{kHigh, kCounted}), decodedUUIDs(algorithm, 32, stream));
  EXPECT_EQ("", algorithm.decodeFromInputStream(0, stream).toString());
  EXPECT_EQ(32, stream.tellg());
}

TEST(UUIDs, AreDecodedBeyondABlock) {
  constexpr std::size_t kMany = 1025;  // One more than 16384 octets hold.
  std::string all;
  for (std::size_t i = 0; i < kMany; ++i) all += octets(i % 2 ? kHighOctets : kCountedOctets);
  UUIDEncodingAlgorithm algorithm;
  std::istringstream stream(all);
  const std::vector<UUID>& decoded = decodedUUIDs(algorithm, 16 * kMany, stream);
  ASSERT_EQ(kMany, decoded.size());
  for (std::size_t i = 0; i < kMany; ++i) ASSERT_EQ(i % 2 ? kHigh : kCounted, decoded[i]);
}

TEST(UUIDs, HaveSixteenOctets) {
  UUIDEncodingAlgorithm algorithm;
  for (const std::uint32_t length : {1U, 8U, 15U, 17U, 31U, 33U, 4294967295U}) {
    std::istringstream stream(std::string(40, 'x'));
    EXPECT_EQ("EncodingAlgorithmException: Invalid length for encoded uuid data",
              thrown([&] { algorithm.decodeFromInputStream(length, stream); }));
    EXPECT_EQ(0, stream.tellg());
  }
}

TEST(UUIDs, ThatDoNotComeShowInTheStream) {
  UUIDEncodingAlgorithm algorithm;
  std::istringstream stream(octets(kHighOctets) + "x");
  const std::vector<UUID>& decoded = decodedUUIDs(algorithm, 16 * 1000, stream);
  EXPECT_TRUE(stream.fail());
  UUID missing;
  missing.fill(0xFF);
  std::vector<UUID> expected(1000, missing);
  expected[0] = kHigh;
  expected[1][0] = 'x';
  EXPECT_EQ(expected, decoded);
}

TEST(UUIDs, AreNotAmongTheAlgorithmsOfFI) {
  EXPECT_EQ(nullptr, BuiltInAlgorithms().find(algorithms::uuid));
}

}  // namespace
