#include <gtest/gtest.h>

#include "X891ReaderSupport.h"

// Lengths and indexes in all their forms (X.891, C.21 to C.29), each where it stands in a document.

namespace x891_test {
namespace {

/// A length and the octets that begin with it. C.22 has the whole first octet, C.23 and C.24 the
/// end of one that begins otherwise.
struct Length {
  std::size_t length;
  const char* octets;
};

TEST(X891ReaderIntegers, LengthsOfIdentifyingStrings) {
  for (const auto& [length, written] : std::initializer_list<Length>{{1, "00"},
                                                                     {2, "01"},
                                                                     {63, "3E"},
                                                                     {64, "3F"},
                                                                     {65, "40 00"},
                                                                     {66, "40 01"},
                                                                     {319, "40 FE"},
                                                                     {320, "40 FF"},
                                                                     {321, "60 00 00 00 00"},
                                                                     {322, "60 00 00 00 01"},
                                                                     {577, "60 00 00 01 00"},
                                                                     {66000, "60 00 01 00 8F"}}) {
    const std::string name(length, 'n');
    EXPECT_EQ(whole({"startElement(, " + name + ", " + name + ", [])",
                     "endElement(, " + name + ", " + name + ")"}),
              readNew(document("3C " + std::string(written)) + name + octets("FF")))
        << length;
  }
}

TEST(X891ReaderIntegers, LengthsOfAttributeValues) {
  for (const auto& [length, written] : std::initializer_list<Length>{{1, "00"},
                                                                     {7, "06"},
                                                                     {8, "07"},
                                                                     {9, "08 00"},
                                                                     {10, "08 01"},
                                                                     {263, "08 FE"},
                                                                     {264, "08 FF"},
                                                                     {265, "0C 00 00 00 00"},
                                                                     {266, "0C 00 00 00 01"},
                                                                     {521, "0C 00 00 01 00"},
                                                                     {66000, "0C 00 01 00 C7"}}) {
    const std::string value(length, 'v');
    EXPECT_EQ(
        whole({"startElement(, a, a, [{, b, b, CDATA, " + value + "}])", "endElement(, a, a)"}),
        readNew(document("7C 00 'a' 78 00 'b' " + std::string(written)) + value + octets("FF F0")))
        << length;
  }
}

TEST(X891ReaderIntegers, LengthsOfChunks) {
  for (const auto& [length, written] : std::initializer_list<Length>{{1, "80"},
                                                                     {2, "81"},
                                                                     {3, "82 00"},
                                                                     {4, "82 01"},
                                                                     {257, "82 FE"},
                                                                     {258, "82 FF"},
                                                                     {259, "83 00 00 00 00"},
                                                                     {260, "83 00 00 00 01"},
                                                                     {515, "83 00 00 01 00"},
                                                                     {66000, "83 00 01 00 CD"}}) {
    const std::string text(length, 't');
    EXPECT_EQ(wholeContent({"characters(" + text + ")"}),
              readNew(document("3C 00 'a' " + std::string(written)) + text + octets("FF")))
        << length;
  }
}

TEST(X891ReaderIntegers, LengthsBehindNumbersOfAlgorithms) {
  for (const auto& [length, written] : std::initializer_list<Length>{
           {8, "97"}, {9, "98 00"}, {264, "98 FF"}, {265, "9C 00 00 00 00"}}) {
    const std::string text(length, 't');
    EXPECT_EQ(wholeContent({"comment(" + text + ")"}),
              readNew(document("3C 00 'a' E2 30 " + std::string(written)) + text + octets("FF")))
        << length;
  }
  for (const auto& [length, written] : std::initializer_list<Length>{
           {2, "25"}, {3, "26 00"}, {258, "26 FF"}, {259, "27 00 00 00 00"}}) {
    const std::string text(length, 't');
    EXPECT_EQ(wholeContent({"startCDATA()", "characters(" + text + ")", "endCDATA()"}),
              readNew(document("3C 00 'a' 8C " + std::string(written)) + text + octets("FF")))
        << length;
  }
}

TEST(X891ReaderIntegers, RefusesFormsOfLengthsThatAreNone) {
  for (const char* octet : {"41", "42", "50", "5F", "61", "62", "70", "7F"}) {
    expectPrologRefused("3C " + std::string(octet), "00 00 00 00 'a'",
                        "Error when parsing identifier");
  }
  for (const char* octet : {"09", "0A", "0B", "0D", "0E", "0F"}) {
    expectPrologRefused("7C 00 'a' 78 00 'b' " + std::string(octet), "00 00 00 00 'a'",
                        "Error when decoding string length");
    expectContentRefused("E2 40 'x' E2 " + std::string(octet), "00 00",
                         "Error when decoding string length", {"comment(x)"});
    expectContentRefused("E2 30 9" + std::string(octet).substr(1), "00 00",
                         "Error when decoding string length");
  }
}

TEST(X891ReaderIntegers, RefusesLengthsThatDoNotCome) {
  const char* const end = "Unexpected end of document";
  expectPrologRefused("3C 00", "", end);
  expectPrologRefused("3C 01 'a'", "", end);
  expectPrologRefused("3C 40", "", end);
  expectPrologRefused("3C 60 00 00 00", "", end);
  expectPrologRefused("3C 60 00 00 00 00 'a'", "", end);
  expectContentRefused("83 00 00 00 00 'a'", "", end);
  expectContentRefused("83 00 00", "", end);
}

TEST(X891ReaderIntegers, RefusesLengthsOverTheLimitOfALiteral) {
  // The default limit is 2^30 octets; lengths over 2^32 are none of the format's at all.
  const char* const tooLong =
      "Literal longer than 1073741824 octets (property maximum-literal-octets)";
  expectPrologRefused("3C 60 3F FF FE C0", "'a'", tooLong);                    // 2^30 + 1
  expectPrologRefused("3C 60 3F FF FE BF", "", "Unexpected end of document");  // 2^30
  expectPrologRefused("3C 60 FF FF FF FF", "'a'", tooLong);                    // 2^32 + 320
  expectContentRefused("E2 0C FF FF FF FF", "'a'", tooLong);
  expectContentRefused("83 FF FF FF FF", "'a'", tooLong);
  expectContentRefused("87 FF FF FF FF", "'a'", tooLong);
  expectContentRefused("88 03 FF FF FF FF", "'a'", tooLong);
  expectContentRefused("8C 03 FF FF FF FF", "'a'", tooLong);
  expectContentRefused("8C 03 40 00 00 00", "'a'", tooLong);
}

TEST(X891ReaderIntegers, RefusesEncodedDataThatNoAlgorithmCanHave) {
  X891Reader reader;
  std::uint64_t most = UINT64_MAX;
  reader.reader.setProperty(Tavrin::properties::maximumLiteralOctets, &most);
  EXPECT_EQ(failure({"startDocument()", "startElement(, a, a, [])"},
                    "Encoded data longer than 4294967295 octets", 14),
            reader.read(documentOfContent("8C 03 FF FF FF FF 'a'")));
}

// --- Indexes ---

constexpr std::size_t kMost = std::size_t{1} << 20;

/// A document up to its first child, with an initial vocabulary of one table that is full: `f`,
/// `x`, ..., `x`, `l`.
std::string withFullTable(const char* bits, std::size_t entries = kMost) {
  std::string all =
      fromComponents("20 " + std::string(bits)) + bigEndian(0x800000 + entries - 129, 3);
  all += octets("00 'f'");
  for (std::size_t i = 2; i < entries; ++i) all += octets("00 'x'");
  return all + octets("00 'l'");
}

/// Likewise of names, with local names of these characters.
std::string withFullNames(const char* bits) {
  std::string all = fromComponents("20 " + std::string(bits) + " 02 00 'f' 00 'x' 00 'l'") +
                    bigEndian(0x800000 + kMost - 129, 3) + octets("00 00");
  for (std::size_t i = 2; i < kMost; ++i) all += octets("00 01");
  return all + octets("00 02");
}

/// The octets of an index, and the entry that it is of.
struct Index {
  const char* octets;
  const char* text;
};

TEST(X891ReaderIntegers, IndexesOfNonIdentifyingStrings) {
  const std::string table = withFullTable("00 04");
  std::string all = table + octets("3C 00 'a'");
  EventLog::Lines events;
  // C.26: 0 | 1, 2, 64 | 65, 66, 8256 | 8257, 8258, 2^20 - 1, 2^20.
  for (const auto& [written, text] : std::initializer_list<Index>{{"FF", ""},
                                                                  {"80", "f"},
                                                                  {"81", "x"},
                                                                  {"BF", "x"},
                                                                  {"C0 00", "x"},
                                                                  {"C0 01", "x"},
                                                                  {"DF FF", "x"},
                                                                  {"E0 00 00", "x"},
                                                                  {"E0 00 01", "x"},
                                                                  {"EF DF BE", "x"},
                                                                  {"EF DF BF", "l"}}) {
    all += octets("E2 " + std::string(written));
    events.push_back("comment(" + std::string(text) + ")");
  }
  EXPECT_EQ(wholeContent(events), readNew(all + octets("FF")));
  // A full table takes no more: what would be added is used, and no index leads to it.
  events.push_back("comment(more)");
  all += octets("E2 43 'more'");
  EXPECT_EQ(wholeContent(events), readNew(all + octets("FF")));
  expectRefused(table + octets("3C 00 'a' E2 43 'more' E2 EF DF C0"), octets("FF"),
                "Error when decoding string - invalid index",
                {"startDocument()", "startElement(, a, a, [])", "comment(more)"});
}

TEST(X891ReaderIntegers, IndexesAtTheThresholdsAreThoseEntries) {
  // Entries 64, 65, 8256 and 8257 are told apart from their neighbours.
  std::string all = fromComponents("20 00 04") + bigEndian(0x800000 + 8258 - 129, 3);
  for (std::size_t i = 1; i <= 8258; ++i) {
    const char c = i == 64 ? 'p' : i == 65 ? 'q' : i == 8256 ? 'r' : i == 8257 ? 's' : 'x';
    all += std::string(1, '\0') + c;
  }
  EXPECT_EQ(wholeContent({"comment(p)", "comment(q)", "comment(r)", "comment(s)"}),
            readNew(all + octets("3C 00 'a' E2 BF E2 C0 00 E2 DF FF E2 E0 00 00 FF")));
}

TEST(X891ReaderIntegers, IndexesOfElementNamesAtTheThresholds) {
  // C.27: 32 | 33, 2080 | 2081, 526368 | 526369. Local names x, p, q, ..., u.
  std::string all = fromComponents("20 00 82 06 00 'x' 00 'p' 00 'q' 00 'r' 00 's' 00 't' 00 'u'") +
                    bigEndian(0x800000 + 526370 - 129, 3);
  for (std::size_t i = 1; i <= 526370; ++i) {
    const char local = i == 32       ? 1
                       : i == 33     ? 2
                       : i == 2080   ? 3
                       : i == 2081   ? 4
                       : i == 526368 ? 5
                       : i == 526369 ? 6
                                     : 0;
    all += std::string(1, '\0') + local;
  }
  EventLog::Lines events = {"startElement(, x, x, [])"};
  for (const char* name : {"p", "q", "r", "s", "t", "u"}) {
    const std::string names = std::string(", ") + name + ", " + name;
    events.push_back("startElement(" + names + ", [])");
    events.push_back("endElement(" + names + ")");
  }
  events.push_back("endElement(, x, x)");
  EXPECT_EQ(whole(events),
            readNew(all + octets("00 1F F0 20 00 F0 27 FF F0 28 00 00 F0 2F FF FF F0 "
                                 "30 00 00 00 FF F0")));
}

TEST(X891ReaderIntegers, IndexesOfElementNamesInAFullTable) {
  const std::string table = withFullNames("00 82");
  // 2^20 is the field 07F7DF of the last form.
  EXPECT_EQ(whole({"startElement(, f, f, [])", "startElement(, l, l, [])", "endElement(, l, l)",
                   "startElement(, x, x, [])", "endElement(, x, x)", "endElement(, f, f)"}),
            readNew(table + octets("00 30 07 F7 DF F0 30 07 F7 DE FF F0")));
  // No more names are added: the literal's is not there.
  expectRefused(table + octets("3C 00 'n' 00 30 07 F7 E0"), octets("FF"),
                "Error when decoding element name - invalid index",
                {"startDocument()", "startElement(, n, n, [])", "startElement(, f, f, [])"});
}

TEST(X891ReaderIntegers, LongestFormsHavePadding) {
  const char* const padding = "Padding bits that are not zero";
  for (const char* octet : {"10", "20", "40", "80", "FF"}) {
    expectPrologRefused("30 " + std::string(octet) + " F7 DF", "FF", padding);
    expectContentRefused("B8 " + std::string(octet) + " FB EF", "FF", padding);
  }
  for (const char* octet : {"31", "34", "37"}) {
    expectPrologRefused(octet, "07 F7 DF FF", "Error when decoding element name");
  }
  for (const char* octet : {"B9", "BA", "BB", "BC", "BF", "C0", "C3", "C4", "C7"}) {
    expectContentRefused(octet, "00 00 00 FF", "Error when decoding character chunk");
  }
  for (const char* octet : {"70", "77", "7C", "7F", "80", "E1"}) {
    expectPrologRefused("7C 00 'a' " + std::string(octet), "00",
                        "Error when decoding attribute name");
  }
  // Without padding, only the entry is missing.
  expectPrologRefused("30 0F FF FF", "FF", "Error when decoding element name - invalid index");
  expectContentRefused("B8 0F FF FF", "FF", "Error when decoding character chunk - invalid index");
}

TEST(X891ReaderIntegers, RefusesOctetsThatBeginNoElementName) {
  for (const char* octet : {"39", "3A", "3B", "79", "7A", "7B"}) {
    expectPrologRefused(octet, "00 'a' FF", "Error when decoding element name");
  }
  expectPrologRefused("38 CD 00 'u' F0 38", "F0 3C 00 'a'", "Error when decoding element name");
}

TEST(X891ReaderIntegers, IndexesOfAttributeNamesAndValues) {
  // C.25 and C.26, each element with one attribute.
  const std::string table = withFullNames("00 81");
  std::string all = table + octets("3C 00 'a'");
  EventLog::Lines events;
  for (const auto& [written, text] : std::initializer_list<Index>{{"00", "f"},
                                                                  {"01", "x"},
                                                                  {"3F", "x"},
                                                                  {"40 00", "x"},
                                                                  {"5F FF", "x"},
                                                                  {"60 00 00", "x"},
                                                                  {"6F DF BE", "x"},
                                                                  {"6F DF BF", "l"}}) {
    const std::string name = text;
    all += octets("7C 00 'e' " + std::string(written) + " FF FF");
    events.push_back("startElement(, e, e, [{, " + name + ", " + name + ", CDATA, }])");
    events.push_back("endElement(, e, e)");
  }
  EXPECT_EQ(wholeContent(events), readNew(all + octets("FF")));
  // A literal is used, though the table is full; it is told from others, but has no index.
  expectRefused(
      table + octets("7C 00 'a' 78 00 'n' FF 00 FF F0 7C 00 'a' 78 00 'n' FF 6F DF C0"),
      octets("FF"), "Error when decoding attribute name - invalid index",
      {"startDocument()", "startElement(, a, a, [{, n, n, CDATA, }, {, f, f, CDATA, }])"});
  expectRefused(table + octets("7C 00 'a' 78 00 'n' FF 78 00 'n'"), octets("FF FF F0"),
                "The attribute \"n\" is given twice", {"startDocument()"});
}

TEST(X891ReaderIntegers, IndexesOfChunksAtTheThresholds) {
  // C.28: 16 | 17, 1040 | 1041, 263184 | 263185.
  std::string all = fromComponents("20 00 08") + bigEndian(0x800000 + 263186 - 129, 3);
  for (std::size_t i = 1; i <= 263186; ++i) {
    const char c = i == 16       ? 'p'
                   : i == 17     ? 'q'
                   : i == 1040   ? 'r'
                   : i == 1041   ? 's'
                   : i == 263184 ? 't'
                   : i == 263185 ? 'u'
                                 : 'x';
    all += std::string(1, '\0') + c;
  }
  EXPECT_EQ(wholeContent({"characters(x)", "characters(p)", "characters(q)", "characters(r)",
                          "characters(s)", "characters(t)", "characters(u)", "characters(x)"}),
            readNew(all + octets("3C 00 'a' A0 AF B0 00 B3 FF B4 00 00 B7 FF FF B8 00 00 00 "
                                 "B8 00 00 01 FF")));
}

TEST(X891ReaderIntegers, IndexesOfChunksInAFullTable) {
  const std::string table = withFullTable("00 08");
  const EventLog::Lines started = {"startDocument()", "startElement(, a, a, [])"};
  // 2^20 is the field 0BFBEF of the last form.
  EXPECT_EQ(wholeContent({"characters(l)", "characters(x)", "characters(m)", "characters(l)"}),
            readNew(table + octets("3C 00 'a' B8 0B FB EF B8 0B FB EE 90 'm' B8 0B FB EF FF")));
  expectRefused(table + octets("3C 00 'a' B8 0B FB F0"), octets("FF"),
                "Error when decoding character chunk - invalid index", started);
}

TEST(X891ReaderIntegers, IndexesOfPrefixesCountTheBuiltInOne) {
  // With it, 2^20 - 1 own ones fill the table.
  const std::string table = withFullTable("02 00", kMost - 1);
  const auto declared = [](const char* prefix) {
    const std::string name = prefix;
    return whole({"startPrefixMapping(" + name + ", u)", "startElement(, a, a, [])",
                  "endElement(, a, a)", "endPrefixMapping(" + name + ")"});
  };
  EXPECT_EQ(declared("f"), readNew(table + octets("38 CF 81 00 'u' F0 3C 00 'a' FF")));
  EXPECT_EQ(declared("l"), readNew(table + octets("38 CF EF DF BF 00 'u' F0 3C 00 'a' FF")));
  EXPECT_EQ(declared("m"), readNew(table + octets("38 CF 00 'm' 00 'u' F0 3C 00 'a' FF")));
  expectRefused(table + octets("38 CF 00 'm' 00 'u' CF EF DF C0"), octets("00 'u'"),
                "Error when decoding string - invalid index", {"startDocument()"});
  expectRefused(
      fromComponents("20 02 00 8F FF 7F") + table.substr(10) + octets("00 'm' 38 CF EF DF C0"),
      octets("00 'u'"), "Error when decoding string - invalid index", {"startDocument()"});
}

TEST(X891ReaderIntegers, RefusesIndexesThatAreNone) {
  for (const char* octet : {"F0", "F1", "F8", "FE"}) {
    expectContentRefused("E2 " + std::string(octet), "00", "Error when decoding index");
    expectContentRefused("E1 00 'p' " + std::string(octet), "00", "Error when decoding index");
    expectPrologRefused("7C 00 'a' 78 00 'b' " + std::string(octet), "00",
                        "Error when decoding index");
  }
  // An identifying string has no index 0.
  for (const char* octet : {"F0", "FE", "FF"}) {
    expectContentRefused("E1 " + std::string(octet), "00", "Error when decoding index");
    expectPrologRefused("3C " + std::string(octet), "00", "Error when decoding index");
    expectPrologRefused("38 CD " + std::string(octet), "00", "Error when decoding index");
    expectPrologRefused("C6 " + std::string(octet), "00", "Error when decoding index");
    expectPrologRefused("3D " + std::string(octet), "00", "Error when decoding index");
  }
}

}  // namespace
}  // namespace x891_test
