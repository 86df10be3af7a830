#include <gtest/gtest.h>

#include "X891ReaderSupport.h"

// External vocabularies (X.891, 7.2.13): all tables are consulted, and stand in front of those of
// the document.

namespace x891_test {
namespace {

const char* const kNoString = "Error when decoding string - invalid index";
const char* const kXML = "http://www.w3.org/XML/1998/namespace";

/// A reader that knows the vocabulary `v`: of each table two entries are defined and three
/// positions taken.
class ExternalReader : public X891Reader {
 public:
  ExternalReader() {
    reader.setProperty(Tavrin::properties::externalVocabularies, &map);
    log.attachAlgorithmsTo(reader);
  }

  const char* alphabets[2] = {"ab", "xyz"};
  const char* uris[2] = {"u", "v"};
  const char* names[2] = {"p", "q"};
  const char* texts[2] = {"t", nullptr};
  const char* qualified[2][3] = {{"p", "u", "l"}, {nullptr, nullptr, "m"}};
  Tavrin::ExternalVocabulary vocabulary = {
      {alphabets, 2, 3}, {uris, 2, 3},  {names, 2, 3},     {uris, 2, 3},
      {names, 2, 3},     {names, 2, 3}, {uris, 2, 3},      {texts, 2, 3},
      {texts, 2, 3},     {texts, 2, 3}, {qualified, 2, 3}, {qualified, 2, 3},
  };
  Tavrin::ExternalVocabularyMap map = {{"v", &vocabulary}};
};

/// A document that refers to it and has tables of its own.
std::string with(const std::string& written) {
  return fromComponents("20 10 00 00 'v' " + written);
}

/// What is told where all is well, or the failure.
std::string read(const std::string& document) { return ExternalReader().read(document); }

TEST(X891ReaderExternal, GivesEntriesOfAllTables) {
  EXPECT_EQ(wholeContent({"characters(ab)", "characters(zyx)"}),
            read(with("3C 00 'a' 88 3C 1F 88 40 93 FF")));
  EXPECT_EQ(wholeContent({"octets(u, 31, 64)", "octets(v, 32, 65)"}),
            read(with("3C 00 'a' 8C 7C 'd' 8C 80 'e' FF")));
  EXPECT_EQ(
      whole({"startPrefixMapping(p, u)", "startPrefixMapping(q, v)", "startElement(v, q, q:q, [])",
             "endElement(v, q, q:q)", "endPrefixMapping(q)", "endPrefixMapping(p)"}),
      read(with("38 CF 81 81 CF 82 82 F0 3F 82 82 81 FF")));
  EXPECT_EQ(whole({"startDTD(a, v, u)", "processingInstruction(p, t)", "processingInstruction(q, )",
                   "endDTD()", "startElement(, a, a, [])", "endElement(, a, a)"}),
            read(with("C7 80 81 E1 80 80 E1 81 81 F0 3C 00 'a' FF")));
  EXPECT_EQ(whole({"startElement(, a, a, [{, b, b, CDATA, t}, {, c, c, CDATA, }])", "characters(t)",
                   "endElement(, a, a)"}),
            read(with("7C 00 'a' 78 00 'b' 80 78 00 'c' 81 F0 A0 A1 FF")));
  EXPECT_EQ(whole({"startPrefixMapping(p, u)",
                   "startElement(u, l, p:l, [{u, l, p:l, CDATA, x}, "
                   "{, m, m, CDATA, y}])",
                   "startElement(, m, m, [])", "endElement(, m, m)", "endElement(u, l, p:l)",
                   "endPrefixMapping(p)"}),
            read(with("78 CF 81 81 F0 00 00 00 'x' 01 00 'y' F0 01 FF F0")));
}

TEST(X891ReaderExternal, HasGapsThatNoIndexMayName) {
  const EventLog::Lines none;
  const EventLog::Lines begun = {"startDocument()"};
  const EventLog::Lines inA = {"startDocument()", "startElement(, a, a, [])"};
  const struct {
    const char* document;
    const char* message;
    const EventLog::Lines& events;
  } cases[] = {
      {"3C 00 'a' 88 44", kNoString, inA},
      {"3C 00 'a' 8C 84",
       "No URI for the encoding algorithm 34 in the vocabulary (the external one is in the "
       "property "
       "external-vocabularies)",
       inA},
      {"38 CF 83", kNoString, begun},
      {"38 CD 83", kNoString, begun},
      {"3C 82", kNoString, begun},
      {"3D 83", "Error when parsing namespace", begun},
      {"3F 83", "Error when parsing prefix", begun},
      {"E1 82", kNoString, begun},
      {"C6 82", kNoString, begun},
      {"7C 00 'a' 78 00 'b' 82", kNoString, begun},
      {"3C 00 'a' A2", "Error when decoding character chunk - invalid index", inA},
      {"E2 82", kNoString, begun},
      {"02", "Error when decoding element name - invalid index", begun},
      {"7C 00 'a' 02", "Error when decoding attribute name - invalid index", begun},
  };
  for (const auto& each : cases) {
    const std::string document = with(each.document);
    EXPECT_EQ(failure(each.events, each.message, document.size()),
              read(document + octets("00 00 FF F0")))
        << each.document;
  }
}

TEST(X891ReaderExternal, IsFollowedByTheEntriesOfTheInitialVocabularyAndTheDocument) {
  // Three positions are taken: the own entries are the fourth and the fifth of each table.
  const auto both = [](const std::string& written) { return fromComponents("20 " + written); };
  EXPECT_EQ(wholeContent({"comment(t)", "comment(o)", "comment(n)", "comment(n)", "comment(o)"}),
            read(both("10 04 00 'v' 00 00 'o' 3C 00 'a' E2 80 E2 83 E2 40 'n' E2 84 E2 83 FF")));
  EXPECT_EQ(wholeContent({"characters(o)", "characters(n)", "characters(n)", "characters(t)"}),
            read(both("10 08 00 'v' 00 00 'o' 3C 00 'a' A3 90 'n' A4 A0 FF")));
  EXPECT_EQ(whole({"startElement(, a, a, [{, b, b, CDATA, o}, {, c, c, CDATA, n}, "
                   "{, d, d, CDATA, n}])",
                   "endElement(, a, a)"}),
            read(both("10 10 00 'v' 00 00 'o' 7C 00 'a' 78 00 'b' 83 78 00 'c' 40 'n' 78 00 'd' 84 "
                      "FF F0")));
  // Prefixes and namespace names: one more, for the built-in entry.
  EXPECT_EQ(whole({"startPrefixMapping(o, n)", "startElement(n, a, o:a, [])",
                   "endElement(n, a, o:a)", "endPrefixMapping(o)"}),
            read(both("13 00 00 'v' 00 00 'o' 00 00 'n' 38 CF 84 84 F0 3F 84 84 00 'a' FF")));
  EXPECT_EQ(
      whole({"startElement(, o, o, [])", "startElement(, n, n, [])", "startElement(, n, n, [])",
             "endElement(, n, n)", "endElement(, n, n)", "endElement(, o, o)"}),
      read(both("10 80 00 'v' 00 00 'o' 3C 83 3C 00 'n' 3C 84 FF FF")));
  EXPECT_EQ(whole({"processingInstruction(o, )", "processingInstruction(n, )",
                   "processingInstruction(n, )", "startElement(, a, a, [])", "endElement(, a, a)"}),
            read(both("10 40 00 'v' 00 00 'o' E1 83 FF E1 00 'n' FF E1 84 FF 3C 00 'a' FF")));
  EXPECT_EQ(
      whole({"startDTD(a, n, o)", "endDTD()", "startElement(, a, a, [])", "endElement(, a, a)"}),
      read(both("10 20 00 'v' 01 00 'o' 00 'n' C7 83 84 F0 3C 00 'a' FF")));
  // Alphabets and algorithms: the fields 18 and 34.
  EXPECT_EQ(wholeContent({"characters(10)", "octets(o, 34, 64)"}),
            read(both("1C 00 00 'v' 00 01 '01' 00 00 'o' 3C 00 'a' 88 48 4F 8C 88 'd' FF")));
  // Names: surrogates of external strings, own names, names of the document.
  EXPECT_EQ(whole({"startPrefixMapping(p, u)", "startElement(u, q, p:q, [{, p, p, CDATA, 1}])",
                   "startElement(, n, n, [{, n, n, CDATA, 2}])",
                   "startElement(, n, n, [{, n, n, CDATA, 3}])", "endElement(, n, n)",
                   "endElement(, n, n)", "endElement(u, q, p:q)", "endPrefixMapping(p)"}),
            read(both("10 03 00 'v' 00 03 01 01 01 00 00 00 "
                      "78 CF 81 81 F0 03 03 00 '1' F0 "
                      "7C 00 'n' 78 83 00 '2' F0 44 04 00 '3' FF FF F0")));
}

TEST(X891ReaderExternal, NamesAreCheckedForTheirBindings) {
  const std::string document = with("00");
  EXPECT_EQ(failure({"startDocument()"}, "The prefix \"p\" is not declared", document.size()),
            read(document + octets("FF")));
  const std::string attribute = with("7C 00 'a' 00");
  EXPECT_EQ(failure({"startDocument()"}, "The prefix \"p\" is not declared", attribute.size()),
            read(attribute + octets("FF FF F0")));
  // A prefix without a namespace name binds nothing.
  ExternalReader reader;
  reader.qualified[0][1] = nullptr;
  EXPECT_EQ(failure({"startDocument()"}, "The prefix \"p\" is not declared", document.size()),
            reader.read(document + octets("FF")));
  // The same attribute name, once external and once the document's own.
  const std::string twice = with("7C 00 'a' 01 00 'x' 78 00 'm'");
  EXPECT_EQ(failure({"startDocument()"}, "The attribute \"m\" is given twice", twice.size()),
            read(twice + octets("FF FF F0")));
  const std::string again = with("7C 00 'a' 01 00 'x' 01");
  EXPECT_EQ(failure({"startDocument()"}, "The attribute \"m\" is given twice", again.size()),
            read(again + octets("FF FF F0")));
}

TEST(X891ReaderExternal, IsRefusedWhereItIsUnknown) {
  const std::string document = with("");
  const std::string rest = octets("3C 00 'a' FF");
  const std::string failed = failure({},
                                     "Unknown external vocabulary - v (add it to the property "
                                     "external-vocabularies)",
                                     document.size());
  EXPECT_EQ(failed, readNew(document + rest));
  ExternalReader reader;
  EXPECT_EQ(wholeContent({}), reader.read(document + rest));
  reader.map.clear();
  EXPECT_EQ(failed, reader.read(document + rest));
  reader.map = {{"v", nullptr}};
  EXPECT_EQ(failed, reader.read(document + rest));
  reader.map = {{"V", &reader.vocabulary}, {"v ", &reader.vocabulary}};
  EXPECT_EQ(failed, reader.read(document + rest));
  reader.reader.setProperty(Tavrin::properties::externalVocabularies, nullptr);
  EXPECT_EQ(failed, reader.read(document + rest));
  expectRefused(fromComponents("20 10 00 80"), rest, "Error when parsing identifier");
  expectRefused(fromComponents("20 10 00 00 01"), rest, "Invalid character U+0001");
}

TEST(X891ReaderExternal, IsGoneInTheNextDocument) {
  ExternalReader reader;
  EXPECT_EQ(wholeContent({"comment(t)"}), reader.read(with("3C 00 'a' E2 80 FF")));
  EXPECT_EQ(failure({"startDocument()", "startElement(, a, a, [])"}, kNoString, 10),
            reader.read(documentOfContent("E2 80")));
}

TEST(X891ReaderExternal, LeavesTheBuiltInEntriesInFront) {
  EXPECT_EQ(whole({"startElement(, a, a, [{" + std::string(kXML) + ", b, xml:b, CDATA, }])",
                   "endElement(, a, a)"}),
            read(with("7C 00 'a' 7B 80 80 00 'b' FF FF F0")));
  EXPECT_EQ(wholeContent({"characters(12.5)", "object(, 2, ShortData{-1})"}),
            read(with("3C 00 'a' 88 01 12 C5 8C 09 FF FF FF")));
}

TEST(X891ReaderExternal, CountsAmongTheEntriesThatATableHas) {
  // The application's tables are full, or nearly.
  ExternalReader reader;
  reader.vocabulary.otherStrings.occupiedCount = 1048575;
  EXPECT_EQ(wholeContent({"comment(n)", "comment(m)", "comment(n)"}),
            reader.read(with("3C 00 'a' E2 40 'n' E2 40 'm' E2 EF DF BF FF")));
  reader.vocabulary.elementNameSurrogates.occupiedCount = 1048575;
  EXPECT_EQ(
      whole({"startElement(, n, n, [])", "startElement(, o, o, [])", "startElement(, n, n, [])",
             "endElement(, n, n)", "endElement(, o, o)", "endElement(, n, n)"}),
      reader.read(with("3C 00 'n' 3C 00 'o' 30 07 F7 DF FF FF")));
  // Of two surrogates one finds a place.
  const std::string document =
      fromComponents("20 10 02 00 'v' 01 00 00 00 01 30 07 F7 DF F0 30 07 F7 E0");
  EXPECT_EQ(failure({"startDocument()", "startElement(, p, p, [])", "endElement(, p, p)"},
                    "Found more than one element on the top level", document.size() - 3),
            reader.read(document));
  const std::string beyond = fromComponents("20 10 02 00 'v' 01 00 00 00 01 30 07 F7 E0");
  EXPECT_EQ(failure({"startDocument()"}, "Error when decoding element name - invalid index",
                    beyond.size()),
            reader.read(beyond + octets("FF")));
}

TEST(X891ReaderExternal, NamesWithoutAPlaceInATableCountAllTheSame) {
  // The reader remembers attributes to tell whether one is there twice: without end, they would
  // take memory without end. Each counts with 323 octets, and so does an element while it is open;
  // an attribute with 256 more while its tag is read.
  ExternalReader reader;
  reader.vocabulary.localNames.occupiedCount = 1048576;
  reader.vocabulary.elementNameSurrogates.occupiedCount = 1048576;
  reader.vocabulary.attributeNameSurrogates.occupiedCount = 1048576;
  std::uint64_t most = 4 * 323 + 256 + 2 * 323;
  reader.reader.setProperty(Tavrin::properties::maximumTableOctets, &most);
  const std::string fits = with(
      "7C 00 'a' 78 00 'b' FF F0 7C 00 'a' 78 00 'c' FF FF 7C 00 'a' 78 00 'd' FF FF "
      "7C 00 'a' 78 00 'c' FF FF");
  EventLog::Lines events = {"startDocument()", "startElement(, a, a, [{, b, b, CDATA, }])"};
  for (const char* name : {"c", "d", "c"}) {
    const std::string attribute = name;
    events.push_back("startElement(, a, a, [{, " + attribute + ", " + attribute + ", CDATA, }])");
    events.push_back("endElement(, a, a)");
  }
  const std::string tooMany = fits + octets("7C 00 'a' 78 00 'e'");
  EXPECT_EQ(failure(events, "Tables larger than 2194 octets (property maximum-table-octets)",
                    tooMany.size()),
            reader.read(tooMany + octets("FF FF FF")));
}

}  // namespace
}  // namespace x891_test
