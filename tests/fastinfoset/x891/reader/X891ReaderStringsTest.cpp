#include <gtest/gtest.h>

#include "X891ReaderSupport.h"

// Strings in UTF-8 and UTF-16 (X.891, C.19 and C.20), and what enters the tables.

namespace x891_test {
namespace {

const char* const kInvalidUTF16 = "Invalid UTF-16";

/// Characters in UTF-16, most significant octet first, and in UTF-8.
struct Text {
  const char* utf16;
  const char* utf8;
};

const Text kTexts[] = {
    {"00 41", "A"},
    {"00 7F", "\x7F"},
    {"00 80", "\xC2\x80"},
    {"07 FF", "\xDF\xBF"},
    {"08 00", "\xE0\xA0\x80"},
    {"20 AC", "\xE2\x82\xAC"},
    {"D7 FF", "\xED\x9F\xBF"},
    {"E0 00", "\xEE\x80\x80"},
    {"FE FF", "\xEF\xBB\xBF"},
    {"FF FD", "\xEF\xBF\xBD"},
    {"D8 00 DC 00", "\xF0\x90\x80\x80"},
    {"D8 34 DD 1E", "\xF0\x9D\x84\x9E"},
    {"DB FF DF FD", "\xF4\x8F\xBF\xBD"},
    {"00 61 D8 00 DF FF 00 62",
     "a\xF0\x90\x8F\xBF"
     "b"},
};

/// A length from 1 to 8 in the low bits of an octet (C.23).
std::string stringHead(unsigned format, std::size_t length) {
  return std::string(1, static_cast<char>(format | (length - 1)));
}

/// A length from 1 to 258 at the end of an octet (C.24).
std::string chunkHead(unsigned format, std::size_t length) {
  if (length <= 2) return std::string(1, static_cast<char>(format | (length - 1)));
  return std::string(1, static_cast<char>(format | 2)) + static_cast<char>(length - 3);
}

TEST(X891ReaderStrings, InUTF16) {
  for (const Text& text : kTexts) {
    const std::string utf16 = octets(text.utf16);
    const std::string shown = EventLog::show(text.utf8);
    EXPECT_EQ(wholeContent({"characters(" + shown + ")"}),
              readNew(document("3C 00 'a'") + chunkHead(0x84, utf16.size()) + utf16 + octets("FF")))
        << text.utf16;
    const std::string string = stringHead(0x10, utf16.size()) + utf16;
    EXPECT_EQ(wholeContent({"comment(" + shown + ")"}),
              readNew(document("3C 00 'a' E2") + string + octets("FF")))
        << text.utf16;
    EXPECT_EQ(wholeContent({"processingInstruction(p, " + shown + ")"}),
              readNew(document("3C 00 'a' E1 00 'p'") + string + octets("FF")))
        << text.utf16;
    EXPECT_EQ(
        whole({"startElement(, a, a, [{, b, b, CDATA, " + shown + "}])", "endElement(, a, a)"}),
        readNew(document("7C 00 'a' 78 00 'b'") + string + octets("FF F0")))
        << text.utf16;
    EXPECT_EQ(wholeContent({"comment(" + shown + ")"}),
              readNew(fromComponents("20 00 04 00") + string + octets("3C 00 'a' E2 80 FF")))
        << text.utf16;
  }
}

TEST(X891ReaderStrings, RefusesWhatIsNotUTF16) {
  for (const char* wrong :
       {"00", "00 41 00", "D8 00", "DB FF", "DC 00", "DF FF", "D8 00 00 41", "D8 00 D8 00",
        "D8 00 D8 00 DC 00", "00 41 D8 00", "DC 00 D8 00", "D8 00 DC 00 DC 00", "D8 00 DC"}) {
    const std::string utf16 = octets(wrong);
    const EventLog::Lines started = {"startDocument()", "startElement(, a, a, [])"};
    expectRefused(document("3C 00 'a'") + chunkHead(0x84, utf16.size()) + utf16, octets("FF"),
                  kInvalidUTF16, started);
    expectRefused(document("3C 00 'a' E2") + stringHead(0x10, utf16.size()) + utf16, octets("FF"),
                  kInvalidUTF16, started);
    expectRefused(document("7C 00 'a' 78 00 'b'") + stringHead(0x10, utf16.size()) + utf16,
                  octets("FF F0"), kInvalidUTF16, {"startDocument()"});
    expectRefused(fromComponents("20 00 08 00") + stringHead(0x10, utf16.size()) + utf16,
                  octets("FF"), kInvalidUTF16);
  }
}

TEST(X891ReaderStrings, RefusesCharactersThatXMLDoesNotHave) {
  const struct {
    const char* utf16;
    const char* utf8;
    const char* name;
  } cases[] = {
      {"00 00", "00", "U+0000"}, {"00 01", "01", "U+0001"},       {"00 08", "08", "U+0008"},
      {"00 0B", "0B", "U+000B"}, {"00 0C", "0C", "U+000C"},       {"00 0E", "0E", "U+000E"},
      {"00 1F", "1F", "U+001F"}, {"FF FE", "EF BF BE", "U+FFFE"}, {"FF FF", "EF BF BF", "U+FFFF"},
  };
  const EventLog::Lines started = {"startDocument()", "startElement(, a, a, [])"};
  for (const auto& each : cases) {
    const std::string message = "Invalid character " + std::string(each.name);
    const std::string utf16 = octets(each.utf16);
    const std::string utf8 = octets(each.utf8);
    expectRefused(document("3C 00 'a'") + chunkHead(0x84, 2) + utf16, "x", message, started);
    expectRefused(document("3C 00 'a'") + chunkHead(0x80, utf8.size()) + utf8, "x", message,
                  started);
    for (const char* item : {"E2", "E1 00 'p'"}) {
      const std::string head = document("3C 00 'a' " + std::string(item));
      expectRefused(head + stringHead(0x10, 2) + utf16, "x", message, started);
      expectRefused(head + stringHead(0x00, utf8.size()) + utf8, "x", message, started);
    }
    const std::string head = document("7C 00 'a' 78 00 'b'");
    expectRefused(head + stringHead(0x10, 2) + utf16, "x", message, {"startDocument()"});
    expectRefused(head + stringHead(0x00, utf8.size()) + utf8, "x", message, {"startDocument()"});
    // A namespace name, a system identifier.
    expectRefused(document("38 CD") + stringHead(0x00, utf8.size()) + utf8, "x", message,
                  {"startDocument()"});
    expectRefused(document("C6") + stringHead(0x00, utf8.size()) + utf8, "x", message,
                  {"startDocument()"});
  }
  EXPECT_EQ(wholeContent({"characters(\\t\\n\\r )"}),
            readNew(documentOfContent("82 01 09 0A 0D 20")));
}

TEST(X891ReaderStrings, RefusesWhatIsNotUTF8) {
  const struct {
    const char* octets;
    const char* message;
  } cases[] = {
      {"80", "0x80"},          {"BF", "0xBF"},          {"C0 80", "0xC0"},
      {"C1 BF", "0xC1"},       {"C2", "0xC2"},          {"C2 41", "0xC2"},
      {"E0 80 80", "0xE0"},    {"E0 9F BF", "0xE0"},    {"E2 82", "0xE2"},
      {"ED A0 80", "0xED"},    {"ED BF BF", "0xED"},    {"F0 8F BF BF", "0xF0"},
      {"F4 90 80 80", "0xF4"}, {"F5 80 80 80", "0xF5"}, {"FE", "0xFE"},
      {"FF", "0xFF"},          {"F0 90 80", "0xF0"},
  };
  for (const auto& each : cases) {
    const std::string text = octets(each.octets);
    const std::string message = "Invalid UTF-8 octet " + std::string(each.message);
    expectRefused(document("3C 00 'a'") + chunkHead(0x80, text.size()) + text, "AAAA", message,
                  {"startDocument()", "startElement(, a, a, [])"});
    expectRefused(document("7C 00 'a' 78 00 'b'") + stringHead(0x00, text.size()) + text, "AAAA",
                  message, {"startDocument()"});
    expectRefused(document("3C") + stringHead(0x00, text.size()) + text, "AAAA",
                  "Invalid name \"" + text + "\"", {"startDocument()"});
  }
  // A character is not completed by the next chunk.
  expectContentRefused("80 C3", "80 A9", "Invalid UTF-8 octet 0xC3");
}

// --- Adding to tables ---

TEST(X891ReaderStrings, AreAddedInEachFormat) {
  // UTF-8, UTF-16, an alphabet, an algorithm; and again by their indexes.
  EXPECT_EQ(wholeContent({"characters(u)", "characters(v)", "characters(12)", "characters(-1)",
                          "characters(u)", "characters(v)", "characters(12)", "characters(-1)"}),
            readNew(documentOfContent("90 'u' 95 00 'v' 98 00 12 9C 09 FF FF A0 A1 A2 A3")));
  EXPECT_EQ(wholeContent({"comment(u)", "comment(v)", "comment(12)", "comment(A1)", "comment(u)",
                          "comment(v)", "comment(12)", "comment(A1)"}),
            readNew(documentOfContent("E2 40 'u' E2 51 00 'v' E2 60 00 12 E2 70 00 A1 "
                                      "E2 80 E2 81 E2 82 E2 83")));
  EXPECT_EQ(whole({"startElement(, a, a, [{, b, b, CDATA, u}, {, c, c, CDATA, v}, "
                   "{, d, d, CDATA, 12}, {, e, e, CDATA, -1, , 2, ShortData{-1}}])",
                   "startElement(, f, f, [{, b, b, CDATA, u}, {, c, c, CDATA, v}, "
                   "{, d, d, CDATA, 12}, {, e, e, CDATA, -1}])",
                   "endElement(, f, f)", "endElement(, a, a)"}),
            readNew(document("7C 00 'a' 78 00 'b' 40 'u' 78 00 'c' 51 00 'v' 78 00 'd' 60 00 12 "
                             "78 00 'e' 70 21 FF FF F0 "
                             "7C 00 'f' 00 80 01 81 02 82 03 83 FF FF")));
}

TEST(X891ReaderStrings, AreNotAddedWithoutTheBit) {
  const char* const noChunk = "Error when decoding character chunk - invalid index";
  const char* const noString = "Error when decoding string - invalid index";
  expectContentRefused("80 'u' 85 00 'v' 88 00 12 8C 09 FF FF A0", "FF", noChunk,
                       {"characters(u)", "characters(v)", "characters(12)", "characters(-1)"});
  expectContentRefused("E2 00 'u' E2 11 00 'v' E2 20 00 12 E2 30 00 A1 E2 80", "FF", noString,
                       {"comment(u)", "comment(v)", "comment(12)", "comment(A1)"});
  expectPrologRefused(
      "7C 00 'a' 78 00 'b' 00 'u' 78 00 'c' 11 00 'v' 78 00 'd' 20 00 12 "
      "78 00 'e' 30 21 FF FF 78 00 'f' 80",
      "FF F0", noString);
}

TEST(X891ReaderStrings, AreAddedOnceMoreEachTime) {
  // Equal strings have an entry each.
  EXPECT_EQ(wholeContent({"characters(u)", "characters(u)", "characters(v)", "characters(u)",
                          "characters(v)"}),
            readNew(documentOfContent("90 'u' 90 'u' 90 'v' A1 A2")));
  EXPECT_EQ(wholeContent({"processingInstruction(p, )", "processingInstruction(p, )",
                          "processingInstruction(q, )", "processingInstruction(q, )"}),
            readNew(documentOfContent("E1 00 'p' FF E1 00 'p' FF E1 00 'q' FF E1 82 FF")));
  // The parts of a name too: a, b, b, c have four local names, and four names.
  EXPECT_EQ(
      wholeContent({"startElement(, b, b, [])", "endElement(, b, b)", "startElement(, b, b, [])",
                    "endElement(, b, b)", "startElement(, c, c, [])", "endElement(, c, c)",
                    "startElement(, c, c, [])", "endElement(, c, c)", "startElement(, c, c, [])",
                    "endElement(, c, c)"}),
      readNew(documentOfContent("3C 00 'b' F0 3C 00 'b' F0 3C 00 'c' F0 03 F0 3C 83 F0")));
}

TEST(X891ReaderStrings, EnterTheTablesInTheOrderOfTheOctets) {
  // Declarations before the name, the name before the attributes, a value behind its name.
  EXPECT_EQ(whole({"startPrefixMapping(p, u)", "startPrefixMapping(q, v)",
                   "startElement(u, a, p:a, [{v, b, q:b, CDATA, w}])",
                   "startElement(v, a, q:a, [{u, b, p:b, CDATA, w}])", "endElement(v, a, q:a)",
                   "endElement(u, a, p:a)", "endPrefixMapping(q)", "endPrefixMapping(p)"}),
            readNew(document("78 CF 00 'p' 00 'u' CF 00 'q' 00 'v' F0 3F 81 81 00 'a' "
                             "7B 82 82 00 'b' 40 'w' F0 "
                             "7F 82 82 80 7B 81 81 81 80 FF FF")));
}

TEST(X891ReaderStrings, OfANameMayBeLiterals) {
  // Prefix and namespace name are added, too: they get the indexes 3 and 3.
  EXPECT_EQ(
      whole({"startPrefixMapping(p, u)", "startElement(u, a, p:a, [])",
             "startElement(u, b, p:b, [])", "endElement(u, b, p:b)", "endElement(u, a, p:a)",
             "endPrefixMapping(p)"}),
      readNew(document("38 CF 00 'p' 00 'u' F0 3F 00 'p' 00 'u' 00 'a' 3F 82 82 00 'b' FF F0")));
  EXPECT_EQ(whole({"startPrefixMapping(p, u)", "startElement(, a, a, [{u, b, p:b, CDATA, }])",
                   "endElement(, a, a)", "endPrefixMapping(p)"}),
            readNew(document("78 CF 00 'p' 00 'u' F0 3C 00 'a' 7B 00 'p' 00 'u' 00 'b' FF FF F0")));
}

TEST(X891ReaderStrings, ThatAreEmptyAreNoEntries) {
  EXPECT_EQ(wholeContent({"comment()", "comment()", "comment(x)", "comment(x)"}),
            readNew(documentOfContent("E2 FF E2 FF E2 40 'x' E2 80")));
}

}  // namespace
}  // namespace x891_test
