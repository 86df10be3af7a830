#include <gtest/gtest.h>

#include "X891ReaderSupport.h"

// Initial vocabularies (X.891, C.2.5 and 7.2): which tables they fill, and how.

namespace x891_test {
namespace {

const char* const kNoString = "Error when decoding string - invalid index";
const char* const kPadding = "Padding bits that are not zero";

/// One table of an initial vocabulary, and children that take its first two entries.
struct Table {
  const char* name;
  const char* bits;     ///< The two octets that announce it alone.
  const char* entries;  ///< Two entries.
  const char* children;
  EventLog::Lines events;
};

const char* const kXML = "http://www.w3.org/XML/1998/namespace";

const std::vector<Table>& tables() {
  static const std::vector<Table> tables = {
      {"restricted alphabets",
       "08 00",
       "01 'ab' 02 'xyz'",
       "3C 00 'a' 88 3C 1F 88 40 93 FF",
       {"startElement(, a, a, [])", "characters(ab)", "characters(zyx)", "endElement(, a, a)"}},
      {"encoding algorithms",
       "04 00",
       "04 'urn:x' 04 'urn:y'",
       "3C 00 'a' 8C 7C 'd' 8C 80 'e' FF",
       {"startElement(, a, a, [])", "octets(urn:x, 31, 64)", "octets(urn:y, 32, 65)",
        "endElement(, a, a)"}},
      {"prefixes",
       "02 00",
       "00 'p' 01 'qq'",
       "38 CF 81 00 'u' CF 82 00 'v' F0 3C 00 'a' FF",
       {"startPrefixMapping(p, u)", "startPrefixMapping(qq, v)", "startElement(, a, a, [])",
        "endElement(, a, a)", "endPrefixMapping(qq)", "endPrefixMapping(p)"}},
      {"namespace names",
       "01 00",
       "00 'u' 01 'vv'",
       "38 CD 81 CF 00 'p' 82 F0 3D 81 00 'a' FF",
       {"startPrefixMapping(, u)", "startPrefixMapping(p, vv)", "startElement(u, a, a, [])",
        "endElement(u, a, a)", "endPrefixMapping(p)", "endPrefixMapping()"}},
      {"local names",
       "00 80",
       "00 'l' 01 'mm'",
       "3C 80 3C 81 FF F0",
       {"startElement(, l, l, [])", "startElement(, mm, mm, [])", "endElement(, mm, mm)",
        "endElement(, l, l)"}},
      {"other NCNames",
       "00 40",
       "00 'n' 01 'oo'",
       "E1 80 00 'd' E1 81 00 'd' 3C 00 'a' FF",
       {"processingInstruction(n, d)", "processingInstruction(oo, d)", "startElement(, a, a, [])",
        "endElement(, a, a)"}},
      {"other URIs",
       "00 20",
       "00 's' 01 'pp'",
       "C7 80 81 F0 3C 00 'a' FF",
       {"startDTD(a, pp, s)", "endDTD()", "startElement(, a, a, [])", "endElement(, a, a)"}},
      {"attribute values",
       "00 10",
       "00 'v' 01 'ww'",
       "7C 00 'a' 78 00 'b' 80 78 00 'c' 81 FF F0",
       {"startElement(, a, a, [{, b, b, CDATA, v}, {, c, c, CDATA, ww}])", "endElement(, a, a)"}},
      {"content character chunks",
       "00 08",
       "00 'x' 01 'yy'",
       "3C 00 'a' A0 A1 FF",
       {"startElement(, a, a, [])", "characters(x)", "characters(yy)", "endElement(, a, a)"}},
      {"other strings",
       "00 04",
       "00 'c' 01 'dd'",
       "E2 80 E2 81 3C 00 'a' FF",
       {"comment(c)", "comment(dd)", "startElement(, a, a, [])", "endElement(, a, a)"}},
  };
  return tables;
}

/// A document with an initial vocabulary, from the two octets that announce its tables on.
std::string withVocabulary(const std::string& written) { return fromComponents("20 " + written); }

/// What a new reader whose encoding algorithms are handled tells of a document.
std::string read(const std::string& document) {
  X891Reader reader;
  reader.log.attachAlgorithmsTo(reader.reader);
  return reader.read(document);
}

TEST(X891ReaderVocabulary, FillsEachTableAlone) {
  for (const Table& table : tables()) {
    EXPECT_EQ(whole(table.events), read(withVocabulary(std::string(table.bits) + " 01 " +
                                                       table.entries + " " + table.children)))
        << table.name;
  }
}

TEST(X891ReaderVocabulary, HasRestrictedAlphabetsFromTheSixteenthOn) {
  // "ab" has codes of two bits: 00 01 00 1(1). In chunks the number takes the last two bits of the
  // first octet: 15 is 00 001111, 16 is 00 010000.
  EXPECT_EQ(wholeContent({"characters(abab)", "characters(zyx)"}),
            read(withVocabulary("08 00 01 01 'ab' 02 'xyz' 3C 00 'a' 88 3C 11 88 40 93 FF")));
  EXPECT_EQ(whole({"startElement(, a, a, [{, b, b, CDATA, ba}])", "endElement(, a, a)"}),
            read(withVocabulary("08 00 00 01 'ab' 7C 00 'a' 78 00 'b' 20 F0 4F FF F0")));
}

TEST(X891ReaderVocabulary, HasTheTablesInTheOrderOfTheirBits) {
  const std::string uri = "urn:v";
  Tavrin::ExternalVocabulary external;
  Tavrin::ExternalVocabularyMap map = {{uri, &external}};
  X891Reader reader;
  reader.log.attachAlgorithmsTo(reader.reader);
  reader.reader.setProperty(Tavrin::properties::externalVocabularies, &map);

  std::string vocabulary = "1F FF 04 'urn:v' ";
  for (const Table& table : tables()) vocabulary += std::string("01 ") + table.entries + " ";
  vocabulary += "00 00 00 00 00 00 ";  // An element name and an attribute name, both the first.
  for (const Table& table : tables()) {
    EXPECT_EQ(whole(table.events), reader.read(withVocabulary(vocabulary + table.children)))
        << table.name;
  }
  EXPECT_EQ(whole({"startElement(, l, l, [{, l, l, CDATA, v}])", "endElement(, l, l)"}),
            reader.read(withVocabulary(vocabulary + "40 00 80 FF F0")));
}

TEST(X891ReaderVocabulary, IsFollowedByTheEntriesOfTheDocument) {
  EXPECT_EQ(wholeContent({"comment(c)", "comment(d)", "comment(d)", "comment(c)"}),
            read(withVocabulary("00 04 00 00 'c' 3C 00 'a' E2 80 E2 40 'd' E2 81 E2 80 FF")));
  EXPECT_EQ(
      whole({"startElement(, b, b, [])", "startElement(, l, l, [])", "startElement(, b, b, [])",
             "endElement(, b, b)", "endElement(, l, l)", "endElement(, b, b)"}),
      read(withVocabulary("00 82 00 00 'l' 00 00 00 3C 00 'b' 00 01 FF FF")));
}

TEST(X891ReaderVocabulary, IsGoneInTheNextDocument) {
  for (const Table& table : tables()) {
    X891Reader reader;
    reader.log.attachAlgorithmsTo(reader.reader);
    const std::string first = reader.read(
        withVocabulary(std::string(table.bits) + " 01 " + table.entries + " " + table.children));
    EXPECT_EQ(whole(table.events), first) << table.name;
    // What the document adds itself comes first now, or nothing is there.
    const std::string second = reader.read(document(table.children));
    EXPECT_NE(first, second) << table.name;
    EXPECT_EQ(readNew(document(table.children)), second) << table.name;
  }
  X891Reader reader;
  EXPECT_EQ(wholeContent({"characters(ab)"}),
            reader.read(withVocabulary("08 00 00 01 'ab' 3C 00 'a' 88 3C 1F FF")));
  EXPECT_EQ(failure({"startDocument()", "startElement(, a, a, [])"}, kNoString, 10),
            reader.read(documentOfContent("88 3C 1F")));
}

TEST(X891ReaderVocabulary, IsNotEmpty) {
  expectRefused(withVocabulary("00 00"), octets("3C 00 'a' FF"),
                "Initial vocabulary without a component");
}

TEST(X891ReaderVocabulary, RefusesPadding) {
  for (const char* octet : {"20", "40", "80", "E0", "FF"}) {
    expectRefused(withVocabulary(octet), octets("04 00 00 'c' 3C 00 'a' FF"), kPadding);
  }
  // Of a number of entries in the long form.
  expectRefused(withVocabulary("00 04 90"), octets("00 00 00 'c'"), kPadding);
  // Of encoded strings.
  for (const char* table : {"00 10", "00 08", "00 04"}) {
    for (const char* octet : {"40", "80", "C0", "FF"}) {
      expectRefused(withVocabulary(std::string(table) + " 00 " + octet), octets("'c'"), kPadding);
    }
  }
  // Of name surrogates, and of the indexes in them.
  for (const char* table : {"00 82", "00 81"}) {
    for (const char* octet : {"04", "08", "10", "20", "40", "80", "FC"}) {
      expectRefused(withVocabulary(std::string(table) + " 00 00 'l' 00 " + octet), octets("00"),
                    kPadding);
    }
    for (const char* octet : {"80", "FF"}) {
      expectRefused(withVocabulary(std::string(table) + " 00 00 'l' 00 00 " + octet), octets("00"),
                    kPadding);
    }
  }
}

TEST(X891ReaderVocabulary, RefusesIndexesForStrings) {
  for (const char* table :
       {"10 00", "08 00", "04 00", "02 00", "01 00", "00 80", "00 40", "00 20"}) {
    const std::string count = std::string(table) == "10 00" ? "" : "00 ";
    expectRefused(withVocabulary(std::string(table) + " " + count + "80"), octets("3C 00 'a' FF"),
                  "Error when parsing identifier");
  }
}

TEST(X891ReaderVocabulary, RefusesWhatIsNoName) {
  for (const char* table : {"02 00", "00 80", "00 40"}) {
    expectRefused(withVocabulary(std::string(table) + " 01 00 'n' 02 'p:q'"), "x",
                  "Invalid name \"p:q\"");
    expectRefused(withVocabulary(std::string(table) + " 00 01 '1a'"), "x", "Invalid name \"1a\"");
  }
  for (const char* table : {"08 00", "04 00", "01 00", "00 20", "00 10", "00 08", "00 04"}) {
    expectRefused(withVocabulary(std::string(table) + " 00 01 'a' 01"), "x",
                  "Invalid character U+0001");
    expectRefused(withVocabulary(std::string(table) + " 00 01 'a' FF"), "x",
                  "Invalid UTF-8 octet 0xFF");
  }
}

// --- Numbers of entries ---

/// So many comments with one character each, and as many that are indexes.
TEST(X891ReaderVocabulary, HasListsOfEachLength) {
  const struct {
    std::size_t entries;
    const char* count;
  } cases[] = {{1, "00"},           {2, "01"},          {127, "7E"},       {128, "7F"},
               {129, "80 00 00"},   {130, "80 00 01"},  {384, "80 00 FF"}, {385, "80 01 00"},
               {65664, "80 FF FF"}, {65665, "81 00 00"}};
  for (const auto& each : cases) {
    std::string vocabulary = octets("00 04 " + std::string(each.count));
    for (std::size_t i = 0; i + 1 < each.entries; ++i) vocabulary += octets("00 'x'");
    vocabulary += octets("00 'l'");
    // The last entry by its index (C.26), and none behind it.
    const std::size_t last = each.entries - 1;
    const auto index = [](std::size_t at) {
      if (at < 64) return std::string(1, static_cast<char>(0x80 | at));
      if (at < 8256) {
        return std::string(1, static_cast<char>(0xC0 | (at - 64) >> 8)) +
               static_cast<char>(at - 64);
      }
      return std::string(1, static_cast<char>(0xE0 | (at - 8256) >> 16)) +
             bigEndian((at - 8256) & 0xFFFF, 2);
    };
    EXPECT_EQ(wholeContent({"comment(l)"}),
              readNew(fromComponents("20") + vocabulary + octets("3C 00 'a' E2") + index(last) +
                      octets("FF")))
        << each.entries;
    expectRefused(fromComponents("20") + vocabulary + octets("3C 00 'a' E2") + index(last + 1),
                  octets("FF"), kNoString, {"startDocument()", "startElement(, a, a, [])"});
  }
}

TEST(X891ReaderVocabulary, RefusesTooManyEntries) {
  // 2^20 is field 0FFF7F of the long form.
  const char* const tooMany = "Initial vocabulary with more than 1048576 entries of a kind";
  for (const char* table :
       {"02 00", "01 00", "00 80", "00 40", "00 20", "00 10", "00 08", "00 04", "00 02", "00 01"}) {
    expectRefused(withVocabulary(std::string(table) + " 8F FF 80"), "x", tooMany);
    expectRefused(withVocabulary(std::string(table) + " 8F FF FF"), "x", tooMany);
    expectRefused(withVocabulary(std::string(table) + " 8F FF 7F"), "",
                  "Unexpected end of document");
  }
  for (const char* table : {"08 00", "04 00"}) {
    // 257 is field 000080, 256 is 00007F.
    expectRefused(withVocabulary(std::string(table) + " 80 00 80"), "x",
                  "Initial vocabulary with more than 256 entries of a kind");
    expectRefused(withVocabulary(std::string(table) + " 80 00 7F"), "",
                  "Unexpected end of document");
  }
}

TEST(X891ReaderVocabulary, HasAsManyAlgorithmsAsTheNumberCanName) {
  std::string vocabulary = octets("04 00 80 00 7F");  // 256, of which 225 can be named.
  for (int i = 0; i < 256; ++i) vocabulary += octets(i == 224 ? "00 'l'" : "00 'x'");
  EXPECT_EQ(wholeContent({"octets(l, 255, 64)"}),
            read(fromComponents("20") + vocabulary + octets("3C 00 'a' 8F FC 'd' FF")));
}

// --- Name surrogates ---

TEST(X891ReaderVocabulary, HasNamesOfIndexes) {
  // Prefix and namespace name count the built-in entry: q is the third prefix.
  EXPECT_EQ(whole({"startPrefixMapping(q, v)", "startElement(v, m, q:m, [{, l, l, CDATA, 1}])",
                   "endElement(v, m, q:m)", "endPrefixMapping(q)"}),
            read(withVocabulary("03 83 01 00 'p' 00 'q' 01 00 'u' 00 'v' 01 00 'l' 00 'm' "
                                "00 03 02 02 01 00 00 00 78 CF 82 82 F0 00 00 00 '1' FF F0")));
}

TEST(X891ReaderVocabulary, HasNamesWithEachCombinationOfParts) {
  EXPECT_EQ(whole({"startElement(, l, l, [])", "endElement(, l, l)"}),
            read(withVocabulary("00 82 00 00 'l' 00 00 00 00 FF")));
  EXPECT_EQ(whole({"startPrefixMapping(, u)", "startElement(u, l, l, [])", "endElement(u, l, l)",
                   "endPrefixMapping()"}),
            read(withVocabulary("01 82 00 00 'u' 00 00 'l' 00 01 01 00 38 CD 81 F0 00 FF")));
  EXPECT_EQ(whole({"startElement(, a, a, [{" + std::string(kXML) + ", l, xml:l, CDATA, 1}])",
                   "endElement(, a, a)"}),
            read(withVocabulary("00 81 00 00 'l' 00 03 00 00 00 7C 00 'a' 00 00 '1' FF F0")));
  for (const char* table : {"00 82", "00 81"}) {
    expectRefused(withVocabulary(std::string(table) + " 00 00 'l' 00 02"), octets("00 00"),
                  "Qualified name with a prefix, but without a namespace");
  }
}

TEST(X891ReaderVocabulary, RefusesNamesOfIndexesThatAreNot) {
  for (const char* bits : {"02", "01"}) {
    const std::string names = bits;
    // The table of local names has one entry; of the others only the built-in one is there.
    expectRefused(withVocabulary("00 8" + names.substr(1) + " 00 00 'l' 00 00 01"), "x", kNoString);
    expectRefused(withVocabulary("00 8" + names.substr(1) + " 00 00 'l' 00 01 01"), "x", kNoString);
    expectRefused(withVocabulary("00 8" + names.substr(1) + " 00 00 'l' 00 03 01"), "x", kNoString);
    expectRefused(withVocabulary("00 8" + names.substr(1) + " 00 00 'l' 00 03 00 01"), "x",
                  kNoString);
    // Longer forms, and the one that does not exist.
    expectRefused(withVocabulary("00 8" + names.substr(1) + " 00 00 'l' 00 00 40 00"), "x",
                  kNoString);
    expectRefused(withVocabulary("00 8" + names.substr(1) + " 00 00 'l' 00 00 60 00 00"), "x",
                  kNoString);
    expectRefused(withVocabulary("00 8" + names.substr(1) + " 00 00 'l' 00 00 70"), "x",
                  "Error when decoding index");
    // No local name at all.
    expectRefused(withVocabulary("00 0" + names.substr(1) + " 00 00 00"), "x", kNoString);
  }
}

TEST(X891ReaderVocabulary, ChecksTheBindingOfItsNamesWhereTheyAreUsed) {
  // The prefix p is not bound in the root element.
  expectRefused(withVocabulary("03 82 00 00 'p' 00 00 'u' 00 00 'l' 00 03 01 01 00 00"), "\xFF",
                "The prefix \"p\" is not declared", {"startDocument()"});
  // One that is not used harms no one.
  EXPECT_EQ(wholeContent({}), read(withVocabulary("03 82 00 00 'p' 00 00 'u' 00 00 'l' "
                                                  "00 03 01 01 00 3C 00 'a' FF")));
}

// --- Formats of encoded strings ---

TEST(X891ReaderVocabulary, HasStringsInEachFormat) {
  EXPECT_EQ(wholeContent({"characters(x)", "characters(y)", "characters(12)", "characters(-1)"}),
            read(withVocabulary("00 08 03 00 'x' 11 00 'y' 20 00 12 30 21 FF FF "
                                "3C 00 'a' A0 A1 A2 A3 FF")));
  EXPECT_EQ(wholeContent({"comment(ab)"}),
            read(withVocabulary("08 04 00 01 'ab' 00 20 F0 1F 3C 00 'a' E2 80 FF")));
  expectRefused(withVocabulary("00 08 00 30 A0"), "x", "Reserved encoding algorithm 11");
  expectRefused(withVocabulary("00 08 00 20 20"), "x", "Reserved restricted alphabet 3");
  expectRefused(withVocabulary("04 08 00 04 'urn:x' 00 31 F0"), "x",
                "Unknown encoding algorithm - urn:x (add it to the property "
                "registered-encoding-algorithms, or set raw-octets)");
}

}  // namespace
}  // namespace x891_test
