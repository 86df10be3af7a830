#include <Tavrin/EncodingAlgorithms.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

#include "EventLog.h"
#include "HexOctets.h"

namespace {

using namespace Tavrin;

std::string sizeOctets(int index, bool chunk, std::uint32_t length) {
  const ShortEncodingAlgorithm algorithm{};
  std::ostringstream out;
  algorithm.writeSize(index, chunk, length, out);
  return EventLog::showOctets(out.str());
}

/// The two octets that name an algorithm, the bits of the length zero.
struct IndexCase {
  int index;
  std::string chunk;
  std::string attribute;
};

const std::vector<IndexCase> kIndices = {
    {0, "8C 00", "30 00"},   {1, "8C 04", "30 10"},   {2, "8C 08", "30 20"},
    {3, "8C 0C", "30 30"},   {4, "8C 10", "30 40"},   {5, "8C 14", "30 50"},
    {6, "8C 18", "30 60"},   {7, "8C 1C", "30 70"},   {8, "8C 20", "30 80"},
    {9, "8C 24", "30 90"},   {15, "8C 3C", "30 F0"},  {16, "8C 40", "31 00"},
    {31, "8C 7C", "31 F0"},  {32, "8C 80", "32 00"},  {63, "8C FC", "33 F0"},
    {64, "8D 00", "34 00"},  {127, "8D FC", "37 F0"}, {128, "8E 00", "38 00"},
    {191, "8E FC", "3B F0"}, {192, "8F 00", "3C 00"}, {255, "8F FC", "3F F0"},
};

/// The bits of a length in the second octet, and the octets that follow.
struct LengthCase {
  std::uint32_t length;
  unsigned bits;
  std::string tail;
};

const std::vector<LengthCase> kChunkLengths = {
    {1, 0x00, ""},
    {2, 0x01, ""},
    {3, 0x02, "00"},
    {4, 0x02, "01"},
    {8, 0x02, "05"},
    {9, 0x02, "06"},
    {257, 0x02, "FE"},
    {258, 0x02, "FF"},
    {259, 0x03, "00 00 00 00"},
    {260, 0x03, "00 00 00 01"},
    {264, 0x03, "00 00 00 05"},
    {265, 0x03, "00 00 00 06"},
    {266, 0x03, "00 00 00 07"},
    {514, 0x03, "00 00 00 FF"},
    {515, 0x03, "00 00 01 00"},
    {65795, 0x03, "00 01 00 00"},
    {16777475, 0x03, "01 00 00 00"},
    {0x80000000, 0x03, "7F FF FE FD"},
    {0xFFFFFFFF, 0x03, "FF FF FE FC"},
};

const std::vector<LengthCase> kAttributeLengths = {
    {1, 0x00, ""},
    {2, 0x01, ""},
    {3, 0x02, ""},
    {4, 0x03, ""},
    {5, 0x04, ""},
    {6, 0x05, ""},
    {7, 0x06, ""},
    {8, 0x07, ""},
    {9, 0x08, "00"},
    {10, 0x08, "01"},
    {258, 0x08, "F9"},
    {259, 0x08, "FA"},
    {260, 0x08, "FB"},
    {263, 0x08, "FE"},
    {264, 0x08, "FF"},
    {265, 0x0C, "00 00 00 00"},
    {266, 0x0C, "00 00 00 01"},
    {520, 0x0C, "00 00 00 FF"},
    {521, 0x0C, "00 00 01 00"},
    {65801, 0x0C, "00 01 00 00"},
    {16777481, 0x0C, "01 00 00 00"},
    {0x80000000, 0x0C, "7F FF FE F7"},
    {0xFFFFFFFF, 0x0C, "FF FF FE F6"},
};

std::string expectedOctets(const std::string& name, const LengthCase& length) {
  std::string expected = octets(name);
  expected.back() = static_cast<char>(static_cast<unsigned char>(expected.back()) | length.bits);
  return EventLog::showOctets(expected + octets(length.tail));
}

TEST(WriteSize, IntroducesEveryAlgorithmAndLengthInContent) {
  for (const IndexCase& name : kIndices) {
    for (const LengthCase& length : kChunkLengths) {
      EXPECT_EQ(sizeOctets(name.index, true, length.length), expectedOctets(name.chunk, length))
          << "index " << name.index << ", length " << length.length;
    }
  }
}

TEST(WriteSize, IntroducesEveryAlgorithmAndLengthInAttributes) {
  for (const IndexCase& name : kIndices) {
    for (const LengthCase& length : kAttributeLengths) {
      EXPECT_EQ(sizeOctets(name.index, false, length.length),
                expectedOctets(name.attribute, length))
          << "index " << name.index << ", length " << length.length;
    }
  }
}

TEST(WriteSize, WritesTheseWholeOctets) {
  struct {
    int index;
    bool chunk;
    std::uint32_t length;
    const char* octets;
  } const cases[] = {
      {3, true, 1, "8C 0C"},
      {3, true, 2, "8C 0D"},
      {3, true, 3, "8C 0E 00"},
      {3, true, 259, "8C 0F 00 00 00 00"},
      {3, false, 8, "30 37"},
      {3, false, 9, "30 38 00"},
      {3, false, 265, "30 3C 00 00 00 00"},
      {9, true, 1, "8C 24"},
      {9, false, 1, "30 90"},
      {0, true, 258, "8C 02 FF"},
      {0, false, 264, "30 08 FF"},
      {8, true, 16, "8C 22 0D"},
      {8, false, 16, "30 88 07"},
      {63, true, 0xFFFFFFFF, "8C FF FF FF FE FC"},
      {64, true, 2, "8D 01"},
      {64, false, 8, "34 07"},
      {255, true, 259, "8F FF 00 00 00 00"},
      {255, false, 0xFFFFFFFF, "3F FC FF FF FE F6"},
  };
  for (const auto& expected : cases) {
    EXPECT_EQ(sizeOctets(expected.index, expected.chunk, expected.length), expected.octets);
  }
}

TEST(WriteSize, LeavesEmptyContentOut) {
  for (int index = 0; index < 256; ++index) EXPECT_EQ(sizeOctets(index, true, 0), "") << index;
}

TEST(WriteSize, WritesAnEmptyAttributeAsTheEmptyString) {
  for (int index = 0; index < 256; ++index) EXPECT_EQ(sizeOctets(index, false, 0), "FF") << index;
}

TEST(WriteSize, DoesNotFollowTheFormatOfTheStream) {
  const ShortEncodingAlgorithm algorithm{};
  std::ostringstream out;
  out << std::hex << std::showbase << std::setfill('*') << std::left;
  out.width(20);
  algorithm.writeSize(9, true, 260, out);
  algorithm.writeSize(9, false, 0, out);
  EXPECT_EQ(EventLog::showOctets(out.str()), "8C 27 00 00 00 01 FF");
}

/// An algorithm of an application: every octet is stored with its bits inverted.
class InvertingAlgorithm : public EncodingAlgorithm {
 public:
  EncodedData& decodeFromInputStream(std::uint32_t length, std::istream& stream) override {
    holder_.data_.clear();
    for (std::uint32_t i = 0; i < length; ++i) {
      holder_.data_ += static_cast<char>(~stream.get() & 0xFF);
    }
    return holder_;
  }

  void encodeToOutputStream(bool chunk, const EncodedData& data, std::ostream& stream) override {
    const std::string& value = dynamic_cast<const CDATAData&>(data).data_;
    writeSize(32, chunk, static_cast<std::uint32_t>(value.size()), stream);
    for (const char c : value) stream.put(static_cast<char>(~c));
  }

 private:
  CDATAData holder_;
};

TEST(WriteSize, ServesAnApplicationsOwnAlgorithm) {
  InvertingAlgorithm algorithm;
  std::ostringstream out;
  algorithm.encodeToOutputStream(true, CDATAData(octets("00 0F FF")), out);
  algorithm.encodeToOutputStream(false, CDATAData(octets("00 0F FF")), out);
  EXPECT_EQ(EventLog::showOctets(out.str()), "8C 82 00 FF F0 00 32 02 FF F0 00");
  std::istringstream in(octets("FF F0 00"));
  EXPECT_EQ(algorithm.decodeFromInputStream(3, in).toString(), octets("00 0F FF"));
}

TEST(Algorithms, HaveTheNumbersOfTheStream) {
  EXPECT_EQ(algorithms::hexadecimal, 0);
  EXPECT_EQ(algorithms::base64, 1);
  EXPECT_EQ(algorithms::shortInteger, 2);
  EXPECT_EQ(algorithms::integer, 3);
  EXPECT_EQ(algorithms::longInteger, 4);
  EXPECT_EQ(algorithms::boolean, 5);
  EXPECT_EQ(algorithms::floatNumber, 6);
  EXPECT_EQ(algorithms::doubleNumber, 7);
  EXPECT_EQ(algorithms::cdata, 9);
}

}  // namespace
