#include <gtest/gtest.h>

#include <string>

#include "TextWriter.h"
#include "WhatIsThrown.h"

// What is open is completed, and the line broken, before an event is refused. What this leaves
// behind is fixed, though the document is lost.

namespace {

using namespace Tavrin;

struct Case {
  Place place;
  void (*send)(TextWriter&);
  const char* refusal;
  const char* plain;
  const char* indented;
};

const char kNotInCDATA[] = "SAXException: You cannot put \"]]>\" into a CDATA section";
const char kNotInComment[] = "SAXException: You cannot put \"-->\" into a comment";
const char kNotWhitespace[] =
    "SAXException: You cannot put non-whitespace characters into ignorable whitespace";
const char kMismatch[] = "SAXException: Name mismatch between start and end element";

void sendBadComment(TextWriter& writer) { writer.comment("a-->b"); }
void sendBadSpace(TextWriter& writer) { writer.ignorableWhitespace(" x"); }
void sendBadEnd(TextWriter& writer) { writer.end("x"); }

const Case kCases[] = {
    {Place::InCDATA, [](TextWriter& w) { w.characters("a]]>b"); }, kNotInCDATA, "<![CDATA[",
     "<![CDATA["},
    {Place::Prolog, &sendBadComment, kNotInComment, "", "\n"},
    {Place::InDTD, &sendBadComment, kNotInComment, " [", " [\n  "},
    {Place::AfterDTD, &sendBadComment, kNotInComment, "", "\n"},
    {Place::InRoot, &sendBadComment, kNotInComment, ">", ">\n  "},
    {Place::InNested, &sendBadComment, kNotInComment, ">", ">\n    "},
    {Place::AfterRoot, &sendBadComment, kNotInComment, "", "\n"},
    {Place::Prolog, &sendBadSpace, kNotWhitespace, "", ""},
    {Place::InDTD, &sendBadSpace, kNotWhitespace, " [", " ["},
    {Place::AfterDTD, &sendBadSpace, kNotWhitespace, "", ""},
    {Place::InRoot, &sendBadSpace, kNotWhitespace, ">", ">"},
    {Place::InNested, &sendBadSpace, kNotWhitespace, ">", ">"},
    {Place::InCDATA, &sendBadSpace, kNotWhitespace, "<![CDATA[", "<![CDATA["},
    {Place::AfterRoot, &sendBadSpace, kNotWhitespace, "", ""},
    {Place::InRoot, &sendBadEnd, kMismatch, "", ""},
    {Place::InNested, &sendBadEnd, kMismatch, "", ""},
};

TEST(RefusedContent, LeavesWhatWasCompletedBeforeIt) {
  for (const auto& c : kCases) {
    for (const bool indent : {false, true}) {
      TextWriter writer({.indent = indent, .declaration = true});
      bringTo(c.place, writer);
      const auto state = writer.state_;
      writer.output.news();
      EXPECT_EQ(thrown([&] { c.send(writer); }), c.refusal);
      EXPECT_EQ(writer.output.news(), indent ? c.indented : c.plain);
      EXPECT_EQ(writer.state_, state);
      EXPECT_TRUE(writer.hasContent_);
    }
  }
}

// The mismatch counts as content, and an end tag completes no start tag.
TEST(RefusedEndElement, CostsTheBracketOfTheStartTag) {
  TextWriter writer;
  writer.startDocument();
  writer.start("r");
  EXPECT_EQ(thrown([&] { writer.end("x"); }), kMismatch);
  writer.flush();
  writer.end("r");
  EXPECT_EQ(writer.text(), "<r</r>");
}

TEST(RefusedEndElement, AfterContentCostsNothing) {
  TextWriter writer;
  writer.startDocument();
  writer.start("r");
  writer.characters("x");
  EXPECT_EQ(thrown([&] { writer.end("x"); }), kMismatch);
  writer.end("r");
  EXPECT_EQ(writer.text(), "<r>x</r>");
}

TEST(RefusedEvent, CompletesAStartTagOnce) {
  TextWriter writer({.indent = true});
  writer.startDocument();
  writer.start("r");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(thrown([&] { writer.elementDecl("e", "ANY"); }),
              "SAXException: You cannot write an element declaration at this point");
  }
  writer.end("r");
  EXPECT_EQ(writer.text(), "<r>\n  \n  \n</r>");
}

TEST(RefusedEvent, OpensAnInternalSubsetThatIsThenClosed) {
  TextWriter writer;
  bringTo(Place::InDTD, writer);
  EXPECT_EQ(thrown([&] { writer.start("r"); }),
            "SAXException: You cannot start an element at this point");
  writer.endDTD();
  EXPECT_EQ(writer.text(), "<!DOCTYPE d SYSTEM \"d.dtd\" []>");
}

TEST(RefusedEvent, OpensACDATASectionThatIsThenClosed) {
  TextWriter writer;
  bringTo(Place::InCDATA, writer);
  EXPECT_EQ(thrown([&] { writer.comment("c"); }),
            "SAXException: You cannot write a comment at this point");
  writer.endCDATA();
  writer.end("r");
  EXPECT_EQ(writer.text(), "<r><![CDATA[]]></r>");
}

TEST(RefusedEvent, WritesNothingBeforeAndAfterTheDocument) {
  for (const Place place : {Place::Initial, Place::Ended}) {
    for (const auto& event : kEvents) {
      if (place == Place::Initial && event.event == Event::startDocument) continue;
      TextWriter writer({.indent = true, .declaration = true});
      bringTo(place, writer);
      writer.output.news();
      EXPECT_NE(thrown([&] { send(event.event, writer); }), "nothing") << event.name;
      EXPECT_EQ(writer.output.news(), "") << event.name;
    }
  }
}

}  // namespace
