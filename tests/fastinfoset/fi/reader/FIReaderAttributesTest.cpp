#include <gtest/gtest.h>

#include "FIReaderSupport.h"

// Attributes whose values are text. Typed values have a file of their own.

namespace reader_test {
namespace {

/// A document whose only element, `a`, has these attributes; the list's end is written with them.
std::string documentOfAttributes(const std::string& written) {
  return document("7C 00 'a' " + written + " F0");
}

/// What is told of such a document.
std::string wholeAttributes(const std::string& attributes) {
  return whole({"startElement(, a, a, [" + attributes + "])", "endElement(, a, a)"});
}

// --- Names ---

TEST(FIReaderAttributes, MayBeAnEmptyList) {
  EXPECT_EQ(wholeAttributes(""), readNew(documentOfAttributes("FF")));
  EXPECT_EQ(wholeAttributes(""), readNew(documentOfAttributes("F0 F0")));
}

TEST(FIReaderAttributes, KeepTheirOrder) {
  EXPECT_EQ(wholeAttributes("{, c, c, CDATA, 1}, {, b, b, CDATA, 2}, {, d, d, CDATA, 3}"),
            readNew(documentOfAttributes("78 00 'c' 00 '1' 78 00 'b' 00 '2' 78 00 'd' 00 '3' FF")));
}

TEST(FIReaderAttributes, MayHaveTheSameNameTwice) {
  EXPECT_EQ(wholeAttributes("{, b, b, CDATA, 1}, {, b, b, CDATA, 2}"),
            readNew(documentOfAttributes("78 00 'b' 00 '1' 00 00 '2' FF")));
}

// Names that are new in a start tag make their table grow, and it moves.
TEST(FIReaderAttributes, MayBeManyWithNewNames) {
  std::string written;
  std::string expected;
  for (int i = 0; i < 60; ++i) {
    const std::string name = "a" + std::to_string(i);
    const std::string longer = "an-attribute-with-a-long-name-" + std::to_string(10 + i);
    written += " 78 0" + std::to_string(name.size() - 1) + " '" + name + "' 00 'v'";
    written += " 78 1F '" + longer + "' 00 'w'";
    if (i % 7 == 0) written += " 00 00 'x'";  // The first one again.
    expected += (i > 0 ? ", {, " : "{, ") + name + ", " + name + ", CDATA, v}, ";
    expected += "{, " + longer + ", " + longer + ", CDATA, w}";
    if (i % 7 == 0) expected += ", {, a0, a0, CDATA, x}";
  }
  EXPECT_EQ(wholeAttributes(expected), readNew(documentOfAttributes(written + " FF")));
}

TEST(FIReaderAttributes, HaveQualifiedNames) {
  EXPECT_EQ(whole({"startPrefixMapping(p, u)", "startPrefixMapping(q, v)",
                   "startElement(, a, a, [{u, b, p:b, CDATA, 1}, {v, b, q:b, CDATA, 2}, "
                   "{v, b, b, CDATA, 3}, {, b, b, CDATA, 4}])",
                   "endElement(, a, a)", "endPrefixMapping(p)", "endPrefixMapping(q)"}),
            readNew(document("78 CF 00 'p' 00 'u' CF 00 'q' 00 'v' F0 3C 00 'a' "
                             "7B 01 01 00 'b' 00 '1' 7B 82 82 81 00 '2' 79 02 81 00 '3' "
                             "78 81 00 '4' FF F0")));
  EXPECT_EQ(wholeAttributes("{http://www.w3.org/XML/1998/namespace, lang, xml:lang, CDATA, en}"),
            readNew(documentOfAttributes("7B 00 00 03 'lang' 01 'en' FF")));
}

TEST(FIReaderAttributes, RefuseNamePartsAsElementsDo) {
  EXPECT_EQ(failed({}, "Qualified name with a prefix, but without a namespace"),
            readNew(documentOfAttributes("7A 00 00 'b' 00 '1' FF")));
  EXPECT_EQ(failed({}, "Error when parsing prefix"),
            readNew(documentOfAttributes("7B 01 00 00 'b' 00 '1' FF")));
  EXPECT_EQ(failed({}, "Error when parsing namespace"),
            readNew(documentOfAttributes("7B 00 01 00 'b' 00 '1' FF")));
  EXPECT_EQ(failed({}, "Error when decoding string - invalid index"),
            readNew(documentOfAttributes("78 81 00 '1' FF")));
}

TEST(FIReaderAttributes, RefuseOctetsThatAreNoName) {
  for (unsigned octet = 0x70; octet <= 0xFE; ++octet) {
    if ((octet >= 0x78 && octet <= 0x7B) || octet == 0xF0) continue;
    SCOPED_TRACE(octet);
    EXPECT_EQ(failed({}, "Error when decoding attribute name"),
              readNew(document("7C 00 'a' 78 00 'b' 00 '1'") + static_cast<char>(octet) +
                      octets("00 'x' 00 'x' FF F0")));
  }
}

TEST(FIReaderAttributes, HaveATableOfTheirNames) {
  EXPECT_EQ(whole({"startElement(, a, a, [{, b, b, CDATA, 1}, {, c, c, CDATA, 2}])",
                   "startElement(, a, a, [{, c, c, CDATA, 3}, {, b, b, CDATA, 4}])",
                   "endElement(, a, a)", "endElement(, a, a)"}),
            readNew(document("7C 00 'a' 78 00 'b' 00 '1' 78 00 'c' 00 '2' F0 "
                             "40 01 00 '3' 00 00 '4' F0 FF F0")));
  // It is not that of the elements: here stands one name, there two.
  EXPECT_EQ(failed({"startElement(, a, a, [{, b, b, CDATA, 1}])", "startElement(, c, c, [])"},
                   "Error when decoding attribute name - invalid index"),
            readNew(document("7C 00 'a' 78 00 'b' 00 '1' F0 3C 00 'c' 40 01 00 '2' F0")));
}

TEST(FIReaderAttributes, RefuseNamesBeyondTheTable) {
  for (const char* written : {"00", "3F", "40 00", "5F FF", "60 00 00", "6F FF FF"}) {
    EXPECT_EQ(failed({}, "Error when decoding attribute name - invalid index"),
              readNew(documentOfAttributes(std::string(written) + " 00 '1' FF")))
        << written;
  }
}

// --- Values ---

/// The attributes of the element: `b` with the value, and behind it `c` with the value 2.
std::string readValue(const std::string& value) {
  return readNew(documentOfAttributes("78 00 'b' " + value + " 78 00 'c' 00 '2' FF"));
}

TEST(FIReaderAttributeValues, AreStrings) {
  EXPECT_EQ(wholeAttributes("{, b, b, CDATA, x}, {, c, c, CDATA, 2}"), readValue("00 'x'"));
  EXPECT_EQ(wholeAttributes("{, b, b, CDATA, x}, {, c, c, CDATA, 2}"), readValue("40 'x'"));
  EXPECT_EQ(wholeAttributes("{, b, b, CDATA, }, {, c, c, CDATA, 2}"), readValue("FF"));
  EXPECT_EQ(wholeAttributes("{, b, b, CDATA, \\x00\\n}, {, c, c, CDATA, 2}"),
            readValue("01 00 0A"));
}

TEST(FIReaderAttributeValues, OfEveryLengthForm) {
  const struct {
    const char* length;
    std::size_t octetCount;
  } rows[] = {{"00", 1},
              {"07", 8},
              {"08 00", 9},
              {"08 FF", 264},
              {"47", 8},
              {"48 00", 9},
              {"0C 00 00 00 00", 265},
              {"4C 00 00 00 01", 266},
              {"0C 00 01 00 00", 65801}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.length);
    const std::string value(row.octetCount, 'x');
    EXPECT_EQ(
        wholeAttributes("{, b, b, CDATA, " + value + "}"),
        readNew(document("7C 00 'a' 78 00 'b'") + octets(row.length) + value + octets("FF F0")));
  }
  EXPECT_EQ(failed({}, "Error when decoding string length"), readValue("09 'x'"));
  EXPECT_EQ(failed({}, "Error when decoding string length"), readValue("4F 'x'"));
}

TEST(FIReaderAttributeValues, AreAddedWithTheirBitOnly) {
  EXPECT_EQ(wholeAttributes("{, b, b, CDATA, x}, {, b, b, CDATA, y}, {, b, b, CDATA, y}"),
            readNew(documentOfAttributes("78 00 'b' 00 'x' 00 40 'y' 00 80 FF")));
  EXPECT_EQ(failed({}, "Error when decoding string - invalid index"),
            readNew(documentOfAttributes("78 00 'b' 00 'x' 00 80 FF")));
  // The empty string is not added, whatever its octet's bits.
  EXPECT_EQ(failed({}, "Error when decoding string - invalid index"),
            readNew(documentOfAttributes("78 00 'b' FF 00 80 FF")));
}

TEST(FIReaderAttributeValues, MayBeIndicesFromZero) {
  EXPECT_EQ(wholeAttributes("{, b, b, CDATA, x}, {, b, b, CDATA, y}, {, b, b, CDATA, x}, "
                            "{, b, b, CDATA, y}"),
            readNew(documentOfAttributes("78 00 'b' 40 'x' 00 40 'y' 00 80 00 81 FF")));
  EXPECT_EQ(failed({}, "Error when decoding string - invalid index"), readValue("80"));
  EXPECT_EQ(failed({}, "Error when decoding index"), readValue("F0"));
}

TEST(FIReaderAttributeValues, InUTF16AreEmptyAndTheirOctetsTheNextItem) {
  EXPECT_EQ(wholeAttributes("{, b, b, CDATA, }, {, c, c, CDATA, 2}"), readValue("10"));
  EXPECT_EQ(wholeAttributes("{, b, b, CDATA, }, {, c, c, CDATA, 2}"), readValue("17"));
  EXPECT_EQ(wholeAttributes("{, b, b, CDATA, }, {, c, c, CDATA, 2}"), readValue("18 02"));
  EXPECT_EQ(wholeAttributes("{, b, b, CDATA, }, {, c, c, CDATA, 2}"), readValue("1C 00 00 00 01"));
  // The two octets of the string are taken for the next name, index 0, and the start of its value.
  EXPECT_EQ(wholeAttributes("{, b, b, CDATA, }, {, b, b, CDATA, y}, {, c, c, CDATA, 2}"),
            readValue("11 00 00 'y'"));
  EXPECT_EQ(failed({}, "Error when decoding string length"), readValue("19"));
}

TEST(FIReaderAttributeValues, InARestrictedAlphabetAreEmptyAndWhatFollowsTheNextItem) {
  EXPECT_EQ(wholeAttributes("{, b, b, CDATA, }, {, c, c, CDATA, 2}"), readValue("20"));
  EXPECT_EQ(wholeAttributes("{, b, b, CDATA, }, {, c, c, CDATA, 2}"), readValue("2F"));
  EXPECT_EQ(wholeAttributes("{, b, b, CDATA, }, {, b, b, CDATA, y}, {, c, c, CDATA, 2}"),
            readValue("20 00 00 'y'"));
}

TEST(FIReaderAttributeValues, ThatAreNotReadDoNotRepeatTheOneBefore) {
  EXPECT_EQ(wholeAttributes("{, b, b, CDATA, x}, {, b, b, CDATA, }, {, b, b, CDATA, }"),
            readNew(documentOfAttributes("78 00 'b' 00 'x' 00 10 00 20 FF")));
}

TEST(FIReaderAttributeValues, ThatAreNotReadAreAddedAsEmpty) {
  EXPECT_EQ(wholeAttributes("{, b, b, CDATA, }, {, b, b, CDATA, }, {, b, b, CDATA, x}, "
                            "{, b, b, CDATA, }, {, b, b, CDATA, }, {, b, b, CDATA, x}"),
            readNew(documentOfAttributes("78 00 'b' 50 00 60 00 40 'x' 00 80 00 81 00 82 FF")));
}

}  // namespace
}  // namespace reader_test
