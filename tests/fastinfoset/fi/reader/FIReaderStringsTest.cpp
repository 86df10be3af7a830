#include <gtest/gtest.h>

#include "FIReaderPrimitives.h"

// Looking strings up and decoding them, through the operations that do it.

namespace reader_test {
namespace {

using Strings = Primitives::Strings;

const char* const kInvalidIndex = "SAXException: Error when decoding string - invalid index";

// --- Looking up ---

/// Five entries that take up eight positions.
const char* const kExternalTexts[] = {"e0", "e1", nullptr, "e3", "e4"};
const Tavrin::StringTable kExternal = {kExternalTexts, 5, 8};

/// The string at an index, or how the lookup failed.
std::string lookUp(unsigned long index, const Strings* table, const Tavrin::StringTable* external) {
  const Primitives reader;
  Strings copy = table ? *table : Strings();
  std::string found;
  const std::string outcome =
      outcomeOf([&] { found = reader.getString(index, table ? &copy : nullptr, external); });
  if (table) {
    EXPECT_EQ(*table, copy);
  }
  return outcome == "done" ? "\"" + found + "\"" : outcome;
}

TEST(FIReaderLookup, CountsTheTableOfTheDocumentFromZero) {
  const Strings table = {"t0", "", "t2"};
  EXPECT_EQ("\"t0\"", lookUp(0, &table, nullptr));
  EXPECT_EQ("\"\"", lookUp(1, &table, nullptr));
  EXPECT_EQ("\"t2\"", lookUp(2, &table, nullptr));
  EXPECT_EQ(kInvalidIndex, lookUp(3, &table, nullptr));
  EXPECT_EQ(kInvalidIndex, lookUp(1056831, &table, nullptr));
  EXPECT_EQ(kInvalidIndex, lookUp(~0UL, &table, nullptr));
}

TEST(FIReaderLookup, FindsNothingInAnEmptyTable) {
  const Strings table;
  EXPECT_EQ(kInvalidIndex, lookUp(0, &table, nullptr));
}

TEST(FIReaderLookup, FailsOtherwiseWithoutATable) {
  EXPECT_EQ("SAXException: Error when decoding string", lookUp(0, nullptr, nullptr));
  EXPECT_EQ("SAXException: Error when decoding string", lookUp(63, nullptr, nullptr));
}

TEST(FIReaderLookup, TakesTheExternalEntriesFirstAndLeavesTheGapInvalid) {
  const Strings table = {"t0", "t1"};
  EXPECT_EQ("\"e0\"", lookUp(0, &table, &kExternal));
  EXPECT_EQ("\"e1\"", lookUp(1, &table, &kExternal));
  EXPECT_EQ("\"\"", lookUp(2, &table, &kExternal));  // A null text.
  EXPECT_EQ("\"e4\"", lookUp(4, &table, &kExternal));
  EXPECT_EQ(kInvalidIndex, lookUp(5, &table, &kExternal));
  EXPECT_EQ(kInvalidIndex, lookUp(6, &table, &kExternal));
  EXPECT_EQ(kInvalidIndex, lookUp(7, &table, &kExternal));
  EXPECT_EQ("\"t0\"", lookUp(8, &table, &kExternal));
  EXPECT_EQ("\"t1\"", lookUp(9, &table, &kExternal));
  EXPECT_EQ(kInvalidIndex, lookUp(10, &table, &kExternal));
}

TEST(FIReaderLookup, NeedsNoTableOfTheDocumentForExternalEntries) {
  EXPECT_EQ("\"e3\"", lookUp(3, nullptr, &kExternal));
  EXPECT_EQ(kInvalidIndex, lookUp(5, nullptr, &kExternal));
  EXPECT_EQ("SAXException: Error when decoding string", lookUp(8, nullptr, &kExternal));
}

TEST(FIReaderLookup, GoesThroughAnExternalTableWithoutEntries) {
  const Strings table = {"t0"};
  const Tavrin::StringTable empty;
  EXPECT_EQ("\"t0\"", lookUp(0, &table, &empty));
  const Tavrin::StringTable reserved = {nullptr, 0, 2};
  EXPECT_EQ(kInvalidIndex, lookUp(0, &table, &reserved));
  EXPECT_EQ(kInvalidIndex, lookUp(1, &table, &reserved));
  EXPECT_EQ("\"t0\"", lookUp(2, &table, &reserved));
}

// --- Non-identifying strings ---

/// Decodes a string over the text "before", with a table of one entry, and shows text and table.
std::string decodeString(const std::string& octets, const Tavrin::StringTable* external = nullptr) {
  Primitives reader;
  Strings table = {"t0"};
  std::string text = "before";
  const std::string outcome =
      reader.run(octets, [&] { reader.decodeString(&table, external, text); });
  std::string shown = outcome == "done" ? "\"" + text + "\"" : outcome;
  for (const std::string& entry : table) shown += " " + entry;
  return shown;
}

TEST(FIReaderStrings, LiteralsAreAddedWithTheirBitOnly) {
  EXPECT_EQ("\"x\" t0", decodeString(octets("00 'x'")));
  EXPECT_EQ("\"x\" t0 x", decodeString(octets("40 'x'")));
  EXPECT_EQ("\"12345678\" t0", decodeString(octets("07 '12345678'")));
  EXPECT_EQ("\"12345678\" t0 12345678", decodeString(octets("47 '12345678'")));
  // What is added again is a further entry.
  EXPECT_EQ("\"t0\" t0 t0", decodeString(octets("41 't0'")));
}

TEST(FIReaderStrings, LiteralsOfEveryLengthForm) {
  const struct {
    const char* length;
    std::size_t octetCount;
  } rows[] = {{"00", 1},
              {"07", 8},
              {"08 00", 9},
              {"08 FF", 264},
              {"0C 00 00 00 00", 265},
              {"0C 00 00 00 01", 266},
              {"0C 00 00 FE F7", 65536},
              {"0C 00 00 FE F8", 65537},
              {"0C 00 03 FF FF", 262408}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.length);
    std::string literal(row.octetCount, 'x');
    literal.back() = 'y';
    EXPECT_EQ("\"" + literal + "\" t0", decodeString(octets(row.length) + literal));
  }
}

TEST(FIReaderStrings, LiteralsAreTakenOctetForOctet) {
  // Neither zeros nor octets that are no UTF-8 are looked at.
  EXPECT_EQ(octets("'\"' 00 FF C3 F0 '\" t0'"), decodeString(octets("03 00 FF C3 F0")));
}

TEST(FIReaderStrings, UTF16LeavesTheTextAndItsOctetsAlone) {
  EXPECT_EQ("\"before\" t0", decodeString(octets("10")));
  EXPECT_EQ("\"before\" t0", decodeString(octets("17")));
  EXPECT_EQ("\"before\" t0", decodeString(octets("18 05")));
  EXPECT_EQ("\"before\" t0", decodeString(octets("1C 00 00 00 05")));
  EXPECT_EQ("\"before\" t0 before", decodeString(octets("50")));
  EXPECT_EQ("\"before\" t0 before", decodeString(octets("5C FF FF FF FF")));
}

TEST(FIReaderStrings, OtherEncodingsHaveNotEvenALength) {
  for (const char* written : {"20", "27", "29", "2C", "2F", "30", "37", "39", "3C", "3F"}) {
    EXPECT_EQ("\"before\" t0", decodeString(octets(written))) << written;
  }
  for (const char* written : {"60", "67", "69", "6C", "6F", "70", "77", "79", "7C", "7F"}) {
    EXPECT_EQ("\"before\" t0 before", decodeString(octets(written))) << written;
  }
}

TEST(FIReaderStrings, LengthsThatAreNoneAreRefused) {
  const std::string refused = "SAXException: Error when decoding string length t0";
  for (const char* written : {"09", "0A", "0B", "0D", "0E", "0F", "49", "4F", "19", "1F", "59"}) {
    EXPECT_EQ(refused, decodeString(octets(written))) << written;
  }
}

TEST(FIReaderStrings, IndicesGoThroughTheTables) {
  EXPECT_EQ("\"t0\" t0", decodeString(octets("80")));
  EXPECT_EQ(std::string(kInvalidIndex) + " t0", decodeString(octets("81")));
  EXPECT_EQ(std::string(kInvalidIndex) + " t0", decodeString(octets("BF")));
  EXPECT_EQ(std::string(kInvalidIndex) + " t0", decodeString(octets("C0 00")));
  EXPECT_EQ(std::string(kInvalidIndex) + " t0", decodeString(octets("E0 00 00")));
  EXPECT_EQ("SAXException: Error when decoding index t0", decodeString(octets("F0")));
  EXPECT_EQ("SAXException: Error when decoding index t0", decodeString(octets("FE")));

  EXPECT_EQ("\"e0\" t0", decodeString(octets("80"), &kExternal));
  EXPECT_EQ("\"\" t0", decodeString(octets("82"), &kExternal));
  EXPECT_EQ(std::string(kInvalidIndex) + " t0", decodeString(octets("85"), &kExternal));
  EXPECT_EQ("\"t0\" t0", decodeString(octets("88"), &kExternal));
}

TEST(FIReaderStrings, OneOctetMeansTheEmptyString) {
  EXPECT_EQ("\"\" t0", decodeString(octets("FF")));
  EXPECT_EQ("\"\" t0", decodeString(octets("FF"), &kExternal));
}

TEST(FIReaderStrings, WithoutATableNothingIsAddedAndIndicesFail) {
  const auto decode = [](const char* written) {
    Primitives reader;
    std::string text = "before";
    const std::string outcome =
        reader.run(octets(written), [&] { reader.decodeString(nullptr, nullptr, text); });
    return outcome == "done" ? text : outcome;
  };
  EXPECT_EQ("x", decode("00 'x'"));
  EXPECT_EQ("x", decode("40 'x'"));
  EXPECT_EQ("before", decode("50"));
  EXPECT_EQ("before", decode("60"));
  EXPECT_EQ("before", decode("70"));
  EXPECT_EQ("", decode("FF"));
  EXPECT_EQ("SAXException: Error when decoding string", decode("80"));
}

TEST(FIReaderStrings, AreTheSameWithTheirFirstOctetReadBefore) {
  const auto decode = [](int octet, const char* following) {
    Primitives reader;
    Strings table = {"t0"};
    std::string text = "before";
    EXPECT_EQ("done", reader.run(octets(following),
                                 [&] { reader.decodeString(octet, &table, nullptr, text); }));
    for (const std::string& entry : table) text += " " + entry;
    return text;
  };
  EXPECT_EQ("xy t0", decode(0x01, "'xy'"));
  EXPECT_EQ("xy t0 xy", decode(0x41, "'xy'"));
  EXPECT_EQ("before t0 before", decode(0x58, "07"));
  EXPECT_EQ("before t0 before", decode(0x60, ""));
  EXPECT_EQ("t0 t0", decode(0x80, ""));
  EXPECT_EQ(" t0", decode(0xFF, ""));
}

// --- Identifying strings ---

std::string decodeIdentifier(const std::string& octets) {
  Primitives reader;
  Strings table = {"t0"};
  std::string text = "before";
  const std::string outcome = reader.run(octets, [&] { reader.decodeIdentifier(&table, text); });
  std::string shown = outcome == "done" ? "\"" + text + "\"" : outcome;
  for (const std::string& entry : table) shown += " " + entry;
  return shown;
}

TEST(FIReaderIdentifiers, AreAlwaysAdded) {
  EXPECT_EQ("\"x\" t0 x", decodeIdentifier(octets("00 'x'")));
  EXPECT_EQ("\"t0\" t0 t0", decodeIdentifier(octets("01 't0'")));
}

TEST(FIReaderIdentifiers, OfEveryLengthForm) {
  const struct {
    const char* length;
    std::size_t octetCount;
  } rows[] = {{"00", 1},
              {"3F", 64},
              {"40 00", 65},
              {"40 FF", 320},
              {"60 00 00 00 00", 321},
              {"60 00 00 00 01", 322},
              {"60 00 00 FE BF", 65536},
              {"60 00 00 FE C0", 65537}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.length);
    std::string literal(row.octetCount, 'x');
    literal.back() = 'y';
    EXPECT_EQ("\"" + literal + "\" t0 " + literal, decodeIdentifier(octets(row.length) + literal));
  }
}

TEST(FIReaderIdentifiers, MayBeIndicesIntoTheirTable) {
  EXPECT_EQ("\"t0\" t0", decodeIdentifier(octets("80")));
  EXPECT_EQ(std::string(kInvalidIndex) + " t0", decodeIdentifier(octets("81")));
  EXPECT_EQ(std::string(kInvalidIndex) + " t0", decodeIdentifier(octets("DF FF")));
  EXPECT_EQ(std::string(kInvalidIndex) + " t0", decodeIdentifier(octets("EF FF FF")));
  // The octet of an empty string is none here.
  EXPECT_EQ("SAXException: Error when decoding index t0", decodeIdentifier(octets("FF")));
}

TEST(FIReaderIdentifiers, LengthsThatAreNoneAreRefused) {
  for (const char* written : {"41", "5F", "61", "7F"}) {
    EXPECT_EQ("SAXException: Error when parsing identifier t0", decodeIdentifier(octets(written)));
  }
}

TEST(FIReaderIdentifiers, WithoutATableAreLiteralsOnly) {
  const auto decode = [](const char* written) {
    Primitives reader;
    std::string text = "before";
    const std::string outcome =
        reader.run(octets(written), [&] { reader.decodeIdentifier(nullptr, text); });
    return outcome == "done" ? text : outcome;
  };
  EXPECT_EQ("x", decode("00 'x'"));
  // Refused before the index is decoded.
  for (const char* written : {"80", "F0", "FF"}) {
    EXPECT_EQ("SAXException: Error when parsing identifier", decode(written)) << written;
  }
}

// --- Both, cut off ---

TEST(FIReaderStrings, CutOffAreTheEndOfTheDocument) {
  const char* const rows[] = {
      "",   "00", "01 'x'", "08", "08 00 'abcdefgh'", "0C 00 00 00", "0C FF FF FF FF 'x'",
      "18", "C0", "E0 00"};
  for (const char* written : rows) {
    SCOPED_TRACE(written);
    Primitives reader;
    std::string text;
    EXPECT_EQ("SAXException: Unexpected end of document", reader.runCutOff(octets(written), [&] {
      reader.decodeString(nullptr, nullptr, text);
    }));
  }
}

TEST(FIReaderIdentifiers, CutOffAreTheEndOfTheDocument) {
  for (const char* written :
       {"", "00", "01 'x'", "40", "60 00 00 00", "60 FF FF FF FF 'x'", "C0"}) {
    SCOPED_TRACE(written);
    Primitives reader;
    Strings table = {"t0"};
    std::string text;
    EXPECT_EQ("SAXException: Unexpected end of document",
              reader.runCutOff(octets(written), [&] { reader.decodeIdentifier(&table, text); }));
    EXPECT_EQ(Strings{"t0"}, table);
  }
}

}  // namespace
}  // namespace reader_test
