#include <gtest/gtest.h>

#include "FIReaderSupport.h"

// Initial vocabularies: which tables they fill, with how many entries, and for how long.

namespace reader_test {
namespace {

/// One table of an initial vocabulary, and children that take its entries 0 and 1.
struct Table {
  const char* name;
  const char* bits;     ///< The two octets that announce it alone.
  const char* entries;  ///< Two entries.
  const char* children;
  EventLog::Lines events;
  /// What the children give where the table is empty.
  std::string empty;
};

const char* const kNoString = "Error when decoding string - invalid index";

/// All but restricted alphabets, of which no item takes entries.
const std::vector<Table>& tables() {
  static const std::vector<Table> tables = {
      {"encoding algorithms",
       "04 00",
       "04 'urn:x' 04 'urn:y'",
       "3C 00 'a' 8C 80 'd' 8C 84 'e' FF",
       {"startElement(, a, a, [])", "octets(urn:x, 32, 64)", "octets(urn:y, 33, 65)",
        "endElement(, a, a)"},
       failed({"startElement(, a, a, [])"}, kNoString)},
      {"prefixes",
       "02 00",
       "00 'p' 01 'qq'",
       "38 CE 80 CE 81 F0 3C 00 'a' FF",
       {"startPrefixMapping(p, )", "startPrefixMapping(qq, )", "startElement(, a, a, [])",
        "endElement(, a, a)", "endPrefixMapping(p)", "endPrefixMapping(qq)"},
       failed({}, kNoString)},
      {"namespace names",
       "01 00",
       "00 'u' 01 'vv'",
       "38 CD 80 CD 81 F0 3D 02 00 'a' FF",
       {"startPrefixMapping(, u)", "startPrefixMapping(, vv)", "startElement(vv, a, a, [])",
        "endElement(vv, a, a)", "endPrefixMapping()", "endPrefixMapping()"},
       failed({}, kNoString)},
      {"local names",
       "00 80",
       "00 'l' 01 'mm'",
       "3C 80 3C 81 FF F0",
       {"startElement(, l, l, [])", "startElement(, mm, mm, [])", "endElement(, mm, mm)",
        "endElement(, l, l)"},
       failed({}, kNoString)},
      {"other NCNames",
       "00 40",
       "00 'n' 01 'oo'",
       "E1 80 00 'd' E1 81 00 'd' F0",
       {"processingInstruction(n, d)", "processingInstruction(oo, d)"},
       failed({}, kNoString)},
      {"other URIs",
       "00 20",
       "00 's' 01 'pp'",
       "C7 80 81 FF",
       {"startDTD(, pp, s)", "endDTD()"},
       failed({}, kNoString)},
      {"attribute values",
       "00 10",
       "00 'v' 01 'ww'",
       "7C 00 'a' 78 00 'b' 80 78 00 'b' 81 FF F0",
       {"startElement(, a, a, [{, b, b, CDATA, v}, {, b, b, CDATA, ww}])", "endElement(, a, a)"},
       failed({}, kNoString)},
      {"content character chunks",
       "00 08",
       "00 'x' 01 'yy'",
       "3C 00 'a' A0 A1 FF",
       {"startElement(, a, a, [])", "characters(x)", "characters(yy)", "endElement(, a, a)"},
       failed({"startElement(, a, a, [])"}, "Error when decoding character chunk - invalid index")},
      {"other strings",
       "00 04",
       "00 'c' 01 'dd'",
       "E2 80 E2 81 F0",
       {"comment(c)", "comment(dd)"},
       failed({}, kNoString)},
      {"element names",
       "00 02",
       "00 00 'e' 01 00 00 'f'",
       "00 01 FF F0",
       {"startElement(, e, e, [])", "startElement(http://www.w3.org/XML/1998/namespace, f, f, [])",
        "endElement(http://www.w3.org/XML/1998/namespace, f, f)", "endElement(, e, e)"},
       failed({}, "Error when decoding element name - invalid index")},
      {"attribute names",
       "00 01",
       "00 00 'g' 03 00 00 00 'h'",
       "7C 00 'a' 00 00 '1' 01 00 '2' FF F0",
       {"startElement(, a, a, [{, g, g, CDATA, 1}, "
        "{http://www.w3.org/XML/1998/namespace, h, xml:h, CDATA, 2}])",
        "endElement(, a, a)"},
       failed({}, "Error when decoding attribute name - invalid index")},
  };
  return tables;
}

/// A document with an initial vocabulary, from the two octets that announce its tables on.
std::string withVocabulary(const std::string& written) { return fromComponents("20 " + written); }

/// What a new reader whose encoding algorithms are handled tells of a document.
std::string read(const std::string& document) {
  LoggedReader reader;
  reader.log.attachAlgorithmsTo(reader.reader);
  return reader.read(document);
}

TEST(FIReaderVocabulary, FillsEachTableAlone) {
  for (const Table& table : tables()) {
    EXPECT_EQ(whole(table.events), read(withVocabulary(std::string(table.bits) + " 02 " +
                                                       table.entries + " " + table.children)))
        << table.name;
  }
}

TEST(FIReaderVocabulary, LeavesEachTableEmptyThatHasNoEntries) {
  for (const Table& table : tables()) {
    EXPECT_EQ(table.empty, read(withVocabulary(std::string(table.bits) + " 00 " + table.children)))
        << table.name;
    EXPECT_EQ(table.empty, read(document(table.children))) << table.name;
  }
}

TEST(FIReaderVocabulary, MayAnnounceNoTable) {
  EXPECT_EQ(whole({"comment(c)"}), read(withVocabulary("00 00 E2 00 'c' F0")));
}

TEST(FIReaderVocabulary, DoesNotLookAtThreeBits) {
  EXPECT_EQ(whole({"comment(c)"}), read(withVocabulary("E0 04 01 00 'c' E2 80 F0")));
}

TEST(FIReaderVocabulary, HasRestrictedAlphabetsThatAreReadOver) {
  EXPECT_EQ(whole({"comment(c)"}),
            read(withVocabulary("08 04 03 02 'abc' FF 40 'x' 01 00 'c' E2 80 F0")));
}

TEST(FIReaderVocabulary, HasItsTablesInTheOrderOfTheirBits) {
  const std::string uri = "urn:v";
  Tavrin::ExternalVocabulary external;
  Tavrin::ExternalVocabularyMap map = {{uri, &external}};
  LoggedReader reader;
  reader.log.attachAlgorithmsTo(reader.reader);
  reader.reader.setProperty(Tavrin::properties::externalVocabularies, &map);

  std::string vocabulary = "1F FF 04 'urn:v' 01 02 'abc' ";
  for (const Table& table : tables()) vocabulary += std::string("02 ") + table.entries + " ";
  for (const Table& table : tables()) {
    EXPECT_EQ(whole(table.events), reader.read(withVocabulary(vocabulary + table.children)))
        << table.name;
  }
}

TEST(FIReaderVocabulary, IsFollowedByTheEntriesOfTheDocument) {
  EXPECT_EQ(whole({"comment(c)", "comment(d)", "comment(d)", "comment(c)"}),
            read(withVocabulary("00 04 01 00 'c' E2 80 E2 40 'd' E2 81 E2 80 F0")));
  EXPECT_EQ(wholeContent({"startElement(, b, b, [])", "startElement(, a, a, [])",
                          "endElement(, a, a)", "endElement(, b, b)"}),
            read(withVocabulary("00 02 01 00 00 'b' 3C 00 'a' 00 01 FF FF")));
}

TEST(FIReaderVocabulary, TakesItsNamesFromItsOwnTables) {
  EXPECT_EQ(whole({"startElement(v, m, q:m, [{u, l, p:l, CDATA, 1}])", "endElement(v, m, q:m)"}),
            read(withVocabulary("03 83 02 00 'p' 00 'q' 02 00 'u' 00 'v' 02 00 'l' 00 'm' "
                                "01 03 02 02 81 01 03 01 01 80 40 00 00 '1' FF F0")));
}

TEST(FIReaderVocabulary, AddsTheLocalNamesOfItsNames) {
  // The names' literal parts are entries like any others.
  EXPECT_EQ(whole({"startElement(, e, e, [])", "endElement(, e, e)"}),
            read(withVocabulary("00 02 01 00 00 'e' 3C 80 FF")));
}

TEST(FIReaderVocabulary, RefusesIndicesInItsTables) {
  for (const Table& table : tables()) {
    const std::string bits = table.bits;
    if (bits == "00 02" || bits == "00 01") continue;  // Their parts may well be indices.
    const bool ofStrings = bits == "00 08" || bits == "00 04";
    EXPECT_EQ(ofStrings ? "SAXException: Error when decoding string\n"
                        : "SAXException: Error when parsing identifier\n",
              read(withVocabulary(bits + " 02 00 'x' 80 F0")))
        << table.name;
  }
  EXPECT_EQ("SAXException: Error when decoding string\n",
            read(withVocabulary("08 00 02 00 'x' 80 F0")));
}

TEST(FIReaderVocabulary, HasAttributeValuesAsIdentifyingStrings) {
  const std::string value(65, 'v');
  EXPECT_EQ(
      whole({"startElement(, a, a, [{, b, b, CDATA, " + value + "}])", "endElement(, a, a)"}),
      read(withVocabulary("00 10 01 40 00") + value + octets("7C 00 'a' 78 00 'b' 80 FF F0")));
  EXPECT_EQ("SAXException: Error when parsing identifier\n",
            read(withVocabulary("00 10 01 FF F0")));
}

TEST(FIReaderVocabulary, RefusesNamesAsAnElementDoes) {
  EXPECT_EQ("SAXException: Qualified name with a prefix, but without a namespace\n",
            read(withVocabulary("00 02 01 02 00 00 'e' F0")));
  EXPECT_EQ("SAXException: Error when parsing prefix\n",
            read(withVocabulary("00 01 01 03 01 00 00 'e' F0")));
  EXPECT_EQ("SAXException: Error when parsing namespace\n",
            read(withVocabulary("00 01 01 01 01 00 'e' F0")));
  EXPECT_EQ("SAXException: Error when decoding string - invalid index\n",
            read(withVocabulary("00 01 01 00 80 F0")));
}

// --- From document to document ---

TEST(FIReaderVocabulary, IsGoneInTheNextDocumentButForTheAlgorithms) {
  for (const Table& table : tables()) {
    LoggedReader reader;
    reader.log.attachAlgorithmsTo(reader.reader);
    EXPECT_EQ(whole(table.events),
              reader.read(withVocabulary(std::string(table.bits) + " 02 " + table.entries + " " +
                                         table.children)));
    const bool stays = std::string(table.bits) == "04 00";
    EXPECT_EQ(stays ? whole(table.events) : table.empty, reader.read(document(table.children)))
        << table.name;
  }
}

TEST(FIReaderVocabulary, OfAlgorithmsIsReplacedByTheNext) {
  LoggedReader reader;
  reader.log.attachAlgorithmsTo(reader.reader);
  EXPECT_EQ(wholeContent({"octets(x, 32, 64)", "octets(y, 33, 64)"}),
            reader.read(withVocabulary("04 00 02 00 'x' 00 'y' 3C 00 'a' 8C 80 'd' 8C 84 'd' FF")));
  EXPECT_EQ(wholeContent({"octets(y, 33, 64)", "octets(x, 32, 64)"}),
            reader.read(documentOfContent("8C 84 'd' 8C 80 'd'")));
  EXPECT_EQ(failedContent({"octets(z, 32, 64)"}, kNoString),
            reader.read(withVocabulary("04 00 01 00 'z' 3C 00 'a' 8C 80 'd' 8C 84 'd' FF")));
  EXPECT_EQ(failedContent({}, kNoString),
            reader.read(withVocabulary("04 00 00 3C 00 'a' 8C 80 'd' FF")));
}

TEST(FIReaderVocabulary, OfAlgorithmsStaysBehindAFailure) {
  LoggedReader reader;
  reader.log.attachAlgorithmsTo(reader.reader);
  EXPECT_EQ(failed({}, "Error while parsing document"),
            reader.read(withVocabulary("04 00 01 00 'x' E0")));
  EXPECT_EQ("SAXException: Not a Fast Infoset document\n", reader.read("<a/>"));
  EXPECT_EQ(wholeContent({"octets(x, 32, 64)"}), reader.read(documentOfContent("8C 80 'd'")));
}

}  // namespace
}  // namespace reader_test
