#include <Tavrin/XMLWriter.h>

#include <gtest/gtest.h>

#include <string>

#include "WhatIsThrown.h"
#include "WriterProbe.h"

namespace {

using namespace Tavrin;

using BaseWriter = Probe<XMLWriter>;

/// A text as characters, comment or white space.
using SendText = void (XMLWriter::*)(const std::string&);

/// Sends a text in a place, to a writer whose container has no content yet. The writer must be in
/// the same place afterwards and have content, whether the text was taken or not.
std::string sendText(Place place, SendText event, const std::string& text) {
  BaseWriter writer;
  bringTo(place, writer);
  writer.hasContent_ = false;
  const auto state = writer.state_;
  const std::string open = writer.openElements();
  const std::string result = thrown([&] { (writer.*event)(text); });
  EXPECT_EQ(writer.state_, state);
  EXPECT_EQ(writer.openElements(), open);
  EXPECT_TRUE(writer.hasContent_);
  return result;
}

const char kNotInCDATA[] = "SAXException: You cannot put \"]]>\" into a CDATA section";
const char kNotInComment[] = "SAXException: You cannot put \"-->\" into a comment";
const char kNotWhitespace[] =
    "SAXException: You cannot put non-whitespace characters into ignorable whitespace";

TEST(TextInCDATA, MustNotContainItsEnd) {
  for (const std::string& text :
       {std::string("]]>"), std::string("a]]>b"), std::string("]]]>"), std::string("]]>]]>"),
        std::string("\0]]>", 4), std::string(1'000'000, 'x') + "]]>"}) {
    EXPECT_EQ(sendText(Place::InCDATA, &XMLWriter::characters, text), kNotInCDATA);
  }
}

TEST(TextInCDATA, MayComeCloseToItsEnd) {
  for (const std::string& text :
       {std::string(), std::string("]"), std::string("]]"), std::string("]>"), std::string(">"),
        std::string("]] >"), std::string("]]]"), std::string("] ]>"), std::string("]]&gt;"),
        std::string("]]\0>", 4), std::string("<&>"), std::string(1'000'000, ']')}) {
    EXPECT_EQ(sendText(Place::InCDATA, &XMLWriter::characters, text), "nothing");
  }
}

TEST(TextInCDATA, IsCheckedOneEventAtATime) {
  BaseWriter writer;
  bringTo(Place::InCDATA, writer);
  writer.characters("]");
  writer.characters("]");
  writer.characters(">");
  EXPECT_EQ(static_cast<int>(writer.state_), 5);
}

TEST(TextInAnElement, IsNotExamined) {
  for (const Place place : {Place::InRoot, Place::InNested}) {
    for (const char* text : {"]]>", "a]]>b", "-->", "<&>", ""}) {
      EXPECT_EQ(sendText(place, &XMLWriter::characters, text), "nothing") << text;
    }
  }
}

const Place kPlacesForComments[] = {Place::Prolog, Place::InDTD,    Place::AfterDTD,
                                    Place::InRoot, Place::InNested, Place::AfterRoot};

TEST(Comment, MustNotContainItsEnd) {
  for (const Place place : kPlacesForComments) {
    for (const char* text : {"-->", "a-->b", "--->", "-->-->", "<!---->"}) {
      EXPECT_EQ(sendText(place, &XMLWriter::comment, text), kNotInComment) << text;
    }
    EXPECT_EQ(sendText(place, &XMLWriter::comment, std::string("\0-->", 4)), kNotInComment);
  }
}

TEST(Comment, MayContainTwoHyphensAndEndInOne) {
  for (const Place place : kPlacesForComments) {
    for (const char* text :
         {"", "-", "--", "a--b", "a-", "a--", "->", ">", "-- >", "- ->", "<!--"}) {
      EXPECT_EQ(sendText(place, &XMLWriter::comment, text), "nothing") << text;
    }
    EXPECT_EQ(sendText(place, &XMLWriter::comment, std::string("--\0>", 4)), "nothing");
  }
}

const Place kPlacesForWhitespace[] = {Place::Prolog,   Place::InDTD,    Place::AfterDTD,
                                      Place::InRoot,   Place::InNested, Place::InCDATA,
                                      Place::AfterRoot};

TEST(IgnorableWhitespace, IsMadeOfFourCharactersOnly) {
  for (int octet = 0; octet < 256; ++octet) {
    const bool isSpace = octet == 0x20 || octet == 0x09 || octet == 0x0D || octet == 0x0A;
    const std::string text(1, static_cast<char>(octet));
    const char* const expected = isSpace ? "nothing" : kNotWhitespace;
    for (const Place place : kPlacesForWhitespace) {
      EXPECT_EQ(sendText(place, &XMLWriter::ignorableWhitespace, text), expected) << octet;
      EXPECT_EQ(sendText(place, &XMLWriter::ignorableWhitespace, " \t\r\n" + text), expected)
          << octet;
      EXPECT_EQ(sendText(place, &XMLWriter::ignorableWhitespace, text + " \t\r\n"), expected)
          << octet;
    }
  }
}

TEST(IgnorableWhitespace, MayBeEmptyOrLong) {
  for (const Place place : kPlacesForWhitespace) {
    EXPECT_EQ(sendText(place, &XMLWriter::ignorableWhitespace, ""), "nothing");
    EXPECT_EQ(sendText(place, &XMLWriter::ignorableWhitespace, " \t\r\n"), "nothing");
    EXPECT_EQ(sendText(place, &XMLWriter::ignorableWhitespace, std::string(100'000, ' ')),
              "nothing");
  }
}

TEST(IgnorableWhitespace, RefusesTheWideSpacesOfUnicode) {
  for (const char* text : {"\xC2\xA0", "\xC2\x85", "\xE2\x80\x83", "\xE3\x80\x80"}) {
    EXPECT_EQ(sendText(Place::InRoot, &XMLWriter::ignorableWhitespace, text), kNotWhitespace);
  }
}

// The place is checked before the text.
TEST(ContentChecks, ComeAfterTheCheckOfTheState) {
  BaseWriter writer;
  EXPECT_EQ(thrown([&] { writer.comment("-->"); }),
            "SAXException: You cannot write a comment at this point");
  EXPECT_EQ(thrown([&] { writer.ignorableWhitespace("x"); }),
            "SAXException: You cannot write whitespace at this point");
  EXPECT_EQ(thrown([&] { writer.characters("]]>"); }),
            "SAXException: You cannot write character data at this point");
  EXPECT_FALSE(writer.hasContent_);
}

// --- Names of start and end ---

const char kMismatch[] = "SAXException: Name mismatch between start and end element";

TEST(EndElement, MustHaveTheThreeNamesOfItsStart) {
  const std::string nul("p:a\0b", 5);
  const struct {
    std::string uri;
    std::string localName;
    std::string qName;
  } cases[] = {
      {"", "a", "p:a"},       {"urn:y", "a", "p:a"}, {"urn:x ", "a", "p:a"}, {"URN:X", "a", "p:a"},
      {"urn:x", "b", "p:a"},  {"urn:x", "", "p:a"},  {"urn:x", "A", "p:a"},  {"urn:x", "aa", "p:a"},
      {"urn:x", "a", "q:a"},  {"urn:x", "a", "a"},   {"urn:x", "a", ""},     {"urn:x", "a", "p:A"},
      {"urn:x", "a", nul},    {"a", "urn:x", "p:a"}, {"", "", ""},           {"urn:x", "p:a", "a"},
      {"urn:x", "a", "p:a "}, {"urn", "a", "p:a"},   {"urn:x", "a", "p:"},
  };
  for (const auto& c : cases) {
    BaseWriter writer;
    writer.startDocument();
    writer.startElement("urn:x", "a", "p:a", AttributesImpl());
    EXPECT_EQ(thrown([&] { writer.endElement(c.uri, c.localName, c.qName); }), kMismatch)
        << c.uri << " " << c.localName << " " << c.qName;
    EXPECT_TRUE(writer.hasContent_);
    EXPECT_EQ(static_cast<int>(writer.state_), 4);
    EXPECT_EQ(writer.openElements(), "a");

    writer.endElement("urn:x", "a", "p:a");
    EXPECT_EQ(static_cast<int>(writer.state_), 6);
  }
}

TEST(EndElement, ComparesNamesBeyondAnEmbeddedNul) {
  const std::string name("a\0b", 3);
  BaseWriter writer;
  writer.startDocument();
  writer.startElement(name, name, name, AttributesImpl());
  EXPECT_EQ(thrown([&] { writer.endElement(name, name, "a"); }), kMismatch);
  EXPECT_EQ(thrown([&] { writer.endElement(name, name, std::string("a\0c", 3)); }), kMismatch);
  writer.endElement(name, name, name);
  EXPECT_EQ(static_cast<int>(writer.state_), 6);
}

TEST(EndElement, EndsTheInnermostElementOnly) {
  BaseWriter writer;
  writer.startDocument();
  writer.startElement("", "a", "a", AttributesImpl());
  writer.startElement("", "b", "b", AttributesImpl());
  EXPECT_EQ(thrown([&] { writer.endElement("", "a", "a"); }), kMismatch);
  EXPECT_EQ(writer.openElements(), "ab");
  writer.endElement("", "b", "b");
  EXPECT_EQ(thrown([&] { writer.endElement("", "b", "b"); }), kMismatch);
  EXPECT_EQ(writer.openElements(), "a");
  EXPECT_EQ(static_cast<int>(writer.state_), 4);
  writer.endElement("", "a", "a");
  EXPECT_EQ(static_cast<int>(writer.state_), 6);
}

TEST(EndElement, TakesEmptyNamesThatWereStarted) {
  BaseWriter writer;
  writer.startDocument();
  writer.startElement("", "", "", AttributesImpl());
  EXPECT_EQ(thrown([&] { writer.endElement("", "", "a"); }), kMismatch);
  writer.endElement("", "", "");
  EXPECT_EQ(static_cast<int>(writer.state_), 6);
}

}  // namespace
