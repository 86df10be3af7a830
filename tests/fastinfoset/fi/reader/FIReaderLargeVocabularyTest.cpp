#include <gtest/gtest.h>

#include <iterator>

#include "FIReaderSupport.h"

// Tables of every size up to the greatest, and every form of an index into them.

namespace reader_test {
namespace {

// The forms of an index: which of them an item takes depends on where in the octet it starts.
enum Start { kString, kName, kElementName, kChunk };

/// How a table's entries are written, and how the item that takes one is.
struct Kind {
  const char* bits;  ///< The two octets that announce the table.
  Start start;
  const char* entry;  ///< Any but the last.
  const char* lastEntry;
  const char* before;       ///< The children up to the index.
  const char* behind;       ///< And those behind it.
  EventLog::Lines taken;    ///< What is told where the index gives the last entry.
  EventLog::Lines started;  ///< What is told before an index that gives none,
  const char* beyond;       ///< and its failure.
};

const char* const kNoString = "Error when decoding string - invalid index";

const Kind kPrefixes = {"02 00",
                        kString,
                        "00 'x'",
                        "00 'y'",
                        "38 CE",
                        "F0 3C 00 'a' FF",
                        {"startPrefixMapping(y, )", "startElement(, a, a, [])",
                         "endElement(, a, a)", "endPrefixMapping(y)"},
                        {},
                        kNoString};
const Kind kNamespaceNames = {"01 00",
                              kString,
                              "00 'x'",
                              "00 'y'",
                              "38 CD",
                              "F0 3C 00 'a' FF",
                              {"startPrefixMapping(, y)", "startElement(, a, a, [])",
                               "endElement(, a, a)", "endPrefixMapping()"},
                              {},
                              kNoString};
const Kind kLocalNames = {"00 80",
                          kString,
                          "00 'x'",
                          "00 'y'",
                          "3C",
                          "FF",
                          {"startElement(, y, y, [])", "endElement(, y, y)"},
                          {},
                          kNoString};
const Kind kOtherNCNames = {
    "00 40", kString,  "00 'x'", "00 'y'", "E1", "00 'd' F0", {"processingInstruction(y, d)"},
    {},      kNoString};
const Kind kOtherURIs = {
    "00 20", kString,  "00 'x'", "00 'y'", "C6", "FF", {"startDTD(, , y)", "endDTD()"},
    {},      kNoString};
const Kind kAttributeValues = {"00 10",
                               kString,
                               "00 'x'",
                               "00 'y'",
                               "7C 00 'a' 78 00 'b'",
                               "FF F0",
                               {"startElement(, a, a, [{, b, b, CDATA, y}])", "endElement(, a, a)"},
                               {},
                               kNoString};
const Kind kChunks = {"00 08",
                      kChunk,
                      "00 'x'",
                      "00 'y'",
                      "3C 00 'a'",
                      "FF",
                      {"startElement(, a, a, [])", "characters(y)", "endElement(, a, a)"},
                      {"startElement(, a, a, [])"},
                      "Error when decoding character chunk - invalid index"};
const Kind kOtherStrings = {"00 04", kString,        "00 'x'", "00 'y'", "E2",
                            "F0",    {"comment(y)"}, {},       kNoString};
const Kind kElementNames = {"00 02",
                            kElementName,
                            "00 00 'x'",
                            "00 00 'y'",
                            "",
                            "FF",
                            {"startElement(, y, y, [])", "endElement(, y, y)"},
                            {},
                            "Error when decoding element name - invalid index"};
const Kind kAttributeNames = {"00 01",
                              kName,
                              "00 00 'x'",
                              "00 00 'y'",
                              "7C 00 'a'",
                              "00 '1' FF F0",
                              {"startElement(, a, a, [{, y, y, CDATA, 1}])", "endElement(, a, a)"},
                              {},
                              "Error when decoding attribute name - invalid index"};

struct Index {
  unsigned long number;
  const char* octets[4];  ///< By Start.
};

const Index kIndices[] = {
    {0, {"80", "00", "00", "A0"}},
    {15, {"8F", "0F", "0F", "AF"}},
    {16, {"90", "10", "10", "B0 00"}},
    {31, {"9F", "1F", "1F", "B0 0F"}},
    {32, {"A0", "20", "20 00", "B0 10"}},
    {63, {"BF", "3F", "20 1F", "B0 2F"}},
    {64, {"C0 00", "40 00", "20 20", "B0 30"}},
    {126, {"C0 3E", "40 3E", "20 5E", "B0 6E"}},
    {127, {"C0 3F", "40 3F", "20 5F", "B0 6F"}},
    {1039, {"C3 CF", "43 CF", "23 EF", "B3 FF"}},
    {1040, {"C3 D0", "43 D0", "23 F0", "B4 00 00"}},
    {2079, {"C7 DF", "47 DF", "27 FF", "B4 04 0F"}},
    {2080, {"C7 E0", "47 E0", "28 00 00", "B4 04 10"}},
    {8255, {"DF FF", "5F FF", "28 18 1F", "B4 1C 2F"}},
    {8256, {"E0 00 00", "60 00 00", "28 18 20", "B4 1C 30"}},
    {263183, {"E3 E3 CF", "63 E3 CF", "2B FB EF", "B7 FF FF"}},
    {263184, {"E3 E3 D0", "63 E3 D0", "2B FB F0", "B8 00 00 00"}},
    {526367, {"E7 E7 DF", "67 E7 DF", "2F FF FF", "B8 04 04 0F"}},
    {526368, {"E7 E7 E0", "67 E7 E0", "30 00 00 00", "B8 04 04 10"}},
    {1048574, {"EF DF BE", "6F DF BE", "30 07 F7 DE", "B8 0B FB EE"}},
};

const Index& kGreatest = kIndices[std::size(kIndices) - 1];

/// The table's count and entries, the last of which differs from the others.
std::string tableOf(const Kind& kind, unsigned long count) {
  std::string table = count < 0x80 ? bigEndian(count, 1) : bigEndian(0x800000 | count, 3);
  const std::string entry = octets(kind.entry);
  for (unsigned long i = 1; i < count; ++i) table += entry;
  return table + octets(kind.lastEntry);
}

/// What is told of a document with so many entries in the table and an item that takes an index.
std::string read(const Kind& kind, unsigned long count, const Index& index) {
  return readNew(
      fromComponents(std::string("20 ") + kind.bits) + tableOf(kind, count) +
      octets(std::string(kind.before) + " " + index.octets[kind.start] + " " + kind.behind));
}

TEST(FIReaderLargeVocabulary, HasItsLastEntryAtTheLastIndex) {
  for (const Kind& kind :
       {kPrefixes, kNamespaceNames, kLocalNames, kOtherNCNames, kOtherURIs, kAttributeValues,
        kChunks, kOtherStrings, kElementNames, kAttributeNames}) {
    for (const Index& index : kIndices) {
      if (index.number > 8256) break;
      SCOPED_TRACE(std::string(kind.bits) + ", index " + std::to_string(index.number));
      EXPECT_EQ(whole(kind.taken), read(kind, index.number + 1, index));
      if (index.number > 0) {
        EXPECT_EQ(failed(kind.started, kind.beyond), read(kind, index.number, index));
      }
    }
  }
}

TEST(FIReaderLargeVocabulary, IsIndexedInTheLongestForms) {
  for (const Index& index : kIndices) {
    SCOPED_TRACE(index.number);
    if (index.number == 263183 || index.number == 263184) {
      EXPECT_EQ(whole(kChunks.taken), read(kChunks, index.number + 1, index));
    }
    if (index.number == 526367 || index.number == 526368) {
      EXPECT_EQ(whole(kElementNames.taken), read(kElementNames, index.number + 1, index));
    }
  }
}

TEST(FIReaderLargeVocabulary, HasUpToTheGreatestCountOfStrings) {
  EXPECT_EQ(whole(kChunks.taken), read(kChunks, 1048575, kGreatest));
}

TEST(FIReaderLargeVocabulary, HasUpToTheGreatestCountOfIdentifiers) {
  EXPECT_EQ(whole(kAttributeValues.taken), read(kAttributeValues, 1048575, kGreatest));
}

TEST(FIReaderLargeVocabulary, HasUpToTheGreatestCountOfNames) {
  EXPECT_EQ(whole(kElementNames.taken), read(kElementNames, 1048575, kGreatest));
  EXPECT_EQ(whole(kAttributeNames.taken), read(kAttributeNames, 1048575, kGreatest));
}

// --- The tables that items index otherwise, or not at all ---

TEST(FIReaderLargeVocabulary, OfPrefixesIsCountedFromOneInAName) {
  // 64 names: the last is the 64th.
  std::string document = fromComponents("20 03 00 40");
  for (int i = 1; i < 64; ++i) document += octets("00 'x'");
  document += octets("00 'y' 40");
  for (int i = 1; i < 64; ++i) document += octets("00 'u'");
  document += octets("00 'v'");
  EXPECT_EQ(whole({"startElement(v, a, y:a, [])", "endElement(v, a, y:a)"}),
            readNew(document + octets("3F 40 00 40 00 00 'a' FF")));
  EXPECT_EQ(whole({"startElement(u, a, x:a, [])", "endElement(u, a, x:a)"}),
            readNew(document + octets("3F 3F 3F 00 'a' FF")));
  EXPECT_EQ(failed({}, "Error when parsing prefix"),
            readNew(document + octets("3F 40 01 40 00 00 'a' FF")));
  EXPECT_EQ(failed({}, "Error when parsing namespace"),
            readNew(document + octets("3F 40 00 40 01 00 'a' FF")));
}

TEST(FIReaderLargeVocabulary, OfAlgorithmsIsReachedAsFarAsTheFieldGoes) {
  const auto read = [](unsigned long count, const std::string& content) {
    LoggedReader reader;
    reader.log.attachAlgorithmsTo(reader.reader);
    std::string document = fromComponents("20 04 00");
    document += count < 0x80 ? bigEndian(count, 1) : bigEndian(0x800000 | count, 3);
    const std::string entry = octets("00 'x'");
    for (unsigned long i = 1; i < count; ++i) document += entry;
    return reader.read(document + octets("00 'y' 3C 00 'a' " + content));
  };
  EXPECT_EQ(wholeContent({"octets(y, 32, 64)"}), read(1, "8C 80 'd' FF"));
  EXPECT_EQ(wholeContent({"octets(y, 63, 64)"}), read(32, "8C FC 'd' FF"));
  EXPECT_EQ(wholeContent({"octets(y, 158, 64)"}), read(127, "8E 78 'd' FF"));
  EXPECT_EQ(wholeContent({"octets(y, 159, 64)"}), read(128, "8E 7C 'd' FF"));
  EXPECT_EQ(wholeContent({"octets(y, 191, 64)"}), read(160, "8E FC 'd' FF"));
  EXPECT_EQ(wholeContent({"octets(x, 191, 64)"}), read(1048575, "8E FC 'd' FF"));
  EXPECT_EQ(failed({"startElement(, a, a, [])"}, "Unknown encoding algorithm - y"),
            read(224, "7C 00 'b' 78 00 'c' 3F F0 'd' FF FF"));
  EXPECT_EQ(failed({"startElement(, a, a, [])"}, kNoString),
            read(223, "7C 00 'b' 78 00 'c' 3F F0 'd' FF FF"));
}

}  // namespace
}  // namespace reader_test
