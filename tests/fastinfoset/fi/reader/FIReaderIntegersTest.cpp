#include <gtest/gtest.h>

#include <cstdint>

#include "FIReaderPrimitives.h"

// Every integer of the stream, through the operation that decodes it: each first octet there is,
// and behind it the least and the greatest field.

namespace reader_test {
namespace {

/// First octets that are read alike.
struct Row {
  unsigned first;
  unsigned last;
  const char* following;        ///< The octets behind each of them.
  std::uint64_t value;          ///< Of the first.
  std::uint64_t step;           ///< From one to the next.
  const char* error = nullptr;  ///< In place of a value.
};

using Rows = std::vector<Row>;
using Operation = std::function<unsigned long(Primitives&, int octet)>;

const Operation kIndex = [](Primitives& reader, int octet) { return reader.decodeIndex(octet); };
const Operation kElementIndex = [](Primitives& reader, int octet) {
  return reader.decodeElementIndex(octet);
};
const Operation kChunkIndex = [](Primitives& reader, int octet) {
  return reader.decodeCharactersIndex(octet);
};
const Operation kIdentifierLength = [](Primitives& reader, int octet) {
  return reader.decodeIdentifierLength(octet);
};
const Operation kStringLength = [](Primitives& reader, int octet) {
  return reader.decodeStringLength(octet);
};
const Operation kCharactersLength = [](Primitives& reader, int octet) {
  return reader.decodeCharactersLength(octet);
};
const Operation kNumberOfItems = [](Primitives& reader, int) {
  return reader.decodeNumberOfItems();
};

/// @param ignored bits of the first octet that change nothing
void check(const Rows& rows, const Operation& operation, const std::vector<unsigned>& ignored) {
  for (const Row& row : rows) {
    for (unsigned first = row.first; first <= row.last; ++first) {
      for (const unsigned bits : ignored) {
        const unsigned octet = first | bits;
        SCOPED_TRACE("octet " + std::to_string(octet) + ", then " + row.following);
        Primitives reader;
        unsigned long value = 0;
        const std::string outcome = reader.run(
            octets(row.following), [&] { value = operation(reader, static_cast<int>(octet)); });
        if (row.error) {
          EXPECT_EQ(std::string("SAXException: ") + row.error, outcome);
        } else {
          EXPECT_EQ("done", outcome);
          EXPECT_EQ(row.value + (first - row.first) * row.step, value);
        }
      }
    }
  }
}

TEST(FIReaderIntegers, IndexStartsOnTheSecondBit) {
  const char* const error = "Error when decoding index";
  check({{0x00, 0x3F, "", 0, 1},
         {0x40, 0x5F, "00", 64, 256},
         {0x40, 0x5F, "FF", 319, 256},
         {0x5F, 0x5F, "FF", 8255, 0},
         {0x60, 0x6F, "00 00", 8256, 65536},
         {0x60, 0x60, "00 01", 8257, 0},
         {0x60, 0x60, "01 00", 8512, 0},
         {0x60, 0x6F, "FF FF", 73791, 65536},
         {0x6F, 0x6F, "FF FF", 1056831, 0},
         {0x70, 0x7F, "", 0, 0, error}},
        kIndex, {0x00, 0x80});
}

TEST(FIReaderIntegers, ElementIndexStartsOnTheThirdBit) {
  const char* const error = "Error when decoding element name";
  check({{0x00, 0x1F, "", 0, 1},
         {0x20, 0x27, "00", 32, 256},
         {0x20, 0x27, "FF", 287, 256},
         {0x27, 0x27, "FF", 2079, 0},
         {0x28, 0x2F, "00 00", 2080, 65536},
         {0x28, 0x28, "01 00", 2336, 0},
         {0x2F, 0x2F, "FF FF", 526367, 0},
         {0x30, 0x30, "00 00 00", 526368, 0},
         {0x30, 0x30, "00 00 01", 526369, 0},
         {0x30, 0x30, "01 02 03", 592419, 0},
         {0x30, 0x30, "0F FF FF", 1574943, 0},
         // The first four of the 24 bits are padding.
         {0x30, 0x30, "10 00 00", 526368, 0},
         {0x30, 0x30, "F0 00 00", 526368, 0},
         {0x30, 0x30, "FF FF FF", 1574943, 0},
         {0x31, 0x3F, "", 0, 0, error}},
        kElementIndex, {0x00});
}

TEST(FIReaderIntegers, ChunkIndexStartsOnTheFourthBit) {
  const char* const error = "Error when decoding character chunk";
  check({{0xA0, 0xAF, "", 0, 1},
         {0xB0, 0xB3, "00", 16, 256},
         {0xB0, 0xB3, "FF", 271, 256},
         {0xB3, 0xB3, "FF", 1039, 0},
         {0xB4, 0xB7, "00 00", 1040, 65536},
         {0xB4, 0xB4, "01 00", 1296, 0},
         {0xB7, 0xB7, "FF FF", 263183, 0},
         {0xB8, 0xB8, "00 00 00", 263184, 0},
         {0xB8, 0xB8, "00 00 01", 263185, 0},
         // All 24 bits count, unlike those of an element's index.
         {0xB8, 0xB8, "10 00 00", 1311760, 0},
         {0xB8, 0xB8, "FF FF FF", 17040399, 0},
         {0xB9, 0xC7, "", 0, 0, error}},
        kChunkIndex, {0x00});
}

TEST(FIReaderIntegers, IdentifierLengthStartsOnTheSecondBit) {
  const char* const error = "Error when parsing identifier";
  check({{0x00, 0x3F, "", 1, 1},
         {0x40, 0x40, "00", 65, 0},
         {0x40, 0x40, "FF", 320, 0},
         {0x41, 0x5F, "", 0, 0, error},
         {0x60, 0x60, "00 00 00 00", 321, 0},
         {0x60, 0x60, "01 02 03 04", 16909381, 0},
         // The sum passes 32 bits and does not wrap.
         {0x60, 0x60, "FF FF FF FF", 4294967616, 0},
         {0x61, 0x7F, "", 0, 0, error}},
        kIdentifierLength, {0x00, 0x80});
}

// The octet counts in whole, also where it holds no index.
TEST(FIReaderIntegers, CharactersIndexBelowItsLongerFormsIsOfFourBits) {
  for (int octet = 0; octet < 0xB0; ++octet) {
    Primitives reader;
    unsigned long index = 0;
    EXPECT_EQ("done", reader.run("", [&] { index = reader.decodeCharactersIndex(octet); }));
    EXPECT_EQ(static_cast<unsigned long>(octet) & 0x0F, index) << octet;
  }
}

TEST(FIReaderIntegers, StringLengthStartsOnTheFifthBit) {
  const char* const error = "Error when decoding string length";
  check({{0x0, 0x7, "", 1, 1},
         {0x8, 0x8, "00", 9, 0},
         {0x8, 0x8, "FF", 264, 0},
         {0x9, 0xB, "", 0, 0, error},
         {0xC, 0xC, "00 00 00 00", 265, 0},
         {0xC, 0xC, "01 02 03 04", 16909325, 0},
         {0xC, 0xC, "FF FF FF FF", 4294967560, 0},
         {0xD, 0xF, "", 0, 0, error}},
        kStringLength, {0x00, 0x10, 0x40, 0x70, 0x80, 0xF0});
}

TEST(FIReaderIntegers, CharactersLengthStartsOnTheSeventhBitAndIsNeverWrong) {
  check({{0, 1, "", 1, 1},
         {2, 2, "00", 3, 0},
         {2, 2, "FF", 258, 0},
         {3, 3, "00 00 00 00", 259, 0},
         {3, 3, "01 02 03 04", 16909319, 0},
         {3, 3, "FF FF FF FF", 4294967554, 0}},
        kCharactersLength, {0x00, 0x04, 0x08, 0x10, 0x80, 0x90, 0xFC});
}

TEST(FIReaderIntegers, NumberOfItemsIsTheFieldItself) {
  const auto numberOfItems = [](const std::string& written) {
    Primitives reader;
    unsigned long count = 0;
    EXPECT_EQ("done", reader.run(octets(written), [&] { count = reader.decodeNumberOfItems(); }));
    return count;
  };
  EXPECT_EQ(0U, numberOfItems("00"));
  EXPECT_EQ(1U, numberOfItems("01"));
  EXPECT_EQ(127U, numberOfItems("7F"));
  EXPECT_EQ(0U, numberOfItems("80 00 00"));
  EXPECT_EQ(1U, numberOfItems("80 00 01"));
  EXPECT_EQ(128U, numberOfItems("80 00 80"));
  EXPECT_EQ(256U, numberOfItems("80 01 00"));
  EXPECT_EQ(65535U, numberOfItems("80 FF FF"));
  EXPECT_EQ(65536U, numberOfItems("81 00 00"));
  EXPECT_EQ(1048575U, numberOfItems("8F FF FF"));
  // Three bits behind the first are not looked at.
  EXPECT_EQ(0U, numberOfItems("F0 00 00"));
  EXPECT_EQ(66051U, numberOfItems("91 02 03"));
  EXPECT_EQ(1048575U, numberOfItems("FF FF FF"));
}

TEST(FIReaderIntegers, CutOffAreTheEndOfTheDocument) {
  const struct {
    const Operation& operation;
    int first;
    const char* following;
  } rows[] = {
      {kIndex, 0x40, ""},
      {kIndex, 0x60, ""},
      {kIndex, 0x60, "00"},
      {kElementIndex, 0x20, ""},
      {kElementIndex, 0x28, ""},
      {kElementIndex, 0x28, "00"},
      {kElementIndex, 0x30, ""},
      {kElementIndex, 0x30, "00"},
      {kElementIndex, 0x30, "00 00"},
      {kChunkIndex, 0xB0, ""},
      {kChunkIndex, 0xB4, ""},
      {kChunkIndex, 0xB4, "00"},
      {kChunkIndex, 0xB8, ""},
      {kChunkIndex, 0xB8, "00"},
      {kChunkIndex, 0xB8, "00 00"},
      {kIdentifierLength, 0x40, ""},
      {kIdentifierLength, 0x60, ""},
      {kIdentifierLength, 0x60, "00 00 00"},
      {kStringLength, 0x08, ""},
      {kStringLength, 0x0C, ""},
      {kStringLength, 0x0C, "00 00 00"},
      {kCharactersLength, 0x02, ""},
      {kCharactersLength, 0x03, ""},
      {kCharactersLength, 0x03, "00 00 00"},
      {kNumberOfItems, 0, ""},
      {kNumberOfItems, 0, "80"},
      {kNumberOfItems, 0, "80 00"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::to_string(row.first) + ", then " + row.following);
    Primitives reader;
    EXPECT_EQ("SAXException: Unexpected end of document",
              reader.runCutOff(octets(row.following), [&] { row.operation(reader, row.first); }));
  }
}

}  // namespace
}  // namespace reader_test
