#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_XML.h>

#include <gtest/gtest.h>

#include <iomanip>
#include <ios>
#include <string>

#include "TextWriter.h"
#include "WhatIsThrown.h"

namespace {

using namespace Tavrin;

/// A text writer whose stream is not set yet.
struct WriterWithoutStream : TextWriter {
  explicit WriterWithoutStream(Settings settings = {}) : TextWriter(settings) { disconnect(); }
  void connect() { setOutputStream(&output); }
  void disconnect() { setOutputStream(nullptr); }
};

TEST(WithoutStream, NothingIsWrittenAndTheOrderIsChecked) {
  for (const bool indent : {false, true}) {
    WriterWithoutStream writer({.indent = indent, .emptyTags = false, .declaration = true});
    writer.startDocument();
    EXPECT_EQ(thrown([&] { writer.startDocument(); }),
              "SAXException: You cannot start a document at this point");
    writer.startDTD("d", "p", "s");
    writer.elementDecl("e", "ANY");
    writer.notationDecl("n", "p", "s");
    writer.flush();
    writer.endDTD();
    writer.startPrefixMapping("p", "urn:p");
    writer.start("r", {{"a", "<"}});
    writer.leaf("e");
    writer.characters("<&>");
    EXPECT_EQ(thrown([&] { writer.end("e"); }),
              "SAXException: Name mismatch between start and end element");
    writer.startCDATA();
    EXPECT_EQ(thrown([&] { writer.characters("]]>"); }),
              "SAXException: You cannot put \"]]>\" into a CDATA section");
    writer.endCDATA();
    EXPECT_EQ(thrown([&] { writer.comment("-->"); }),
              "SAXException: You cannot put \"-->\" into a comment");
    writer.processingInstruction("t", "d");
    writer.ignorableWhitespace(" ");
    writer.end("r");
    writer.endDocument();
    EXPECT_EQ(static_cast<int>(writer.state_), 7);
    writer.connect();
    writer.flush();
    EXPECT_EQ(writer.text(), "");
  }
}

TEST(WithoutStream, PrefixMappingsAreNotRecorded) {
  WriterWithoutStream writer;
  writer.startDocument();
  writer.startPrefixMapping("p", "urn:p");
  writer.connect();
  writer.startPrefixMapping("q", "urn:q");
  writer.leaf("r");
  EXPECT_EQ(writer.text(), "<r xmlns:q='urn:q'/>");
}

TEST(WithoutStream, FlushLeavesTheStartTagOpen) {
  WriterWithoutStream writer;
  bringTo(Place::InRoot, writer);
  writer.flush();
  EXPECT_FALSE(writer.hasContent_);
  writer.connect();
  writer.flush();
  EXPECT_EQ(writer.text(), ">");
}

TEST(StreamSetLater, GetsWhatFollows) {
  const struct {
    Place place;
    void (*send)(TextWriter&);
    const char* text;
  } cases[] = {
      {Place::Prolog, [](TextWriter& w) { w.leaf("r"); }, "<r/>"},
      {Place::InDTD, [](TextWriter& w) { w.endDTD(); }, ">"},
      {Place::InDTD,
       [](TextWriter& w) {
         w.elementDecl("e", "ANY");
         w.endDTD();
       },
       " [  <!ELEMENT e ANY>]>"},
      {Place::AfterDTD, [](TextWriter& w) { w.leaf("r"); }, "<r/>"},
      {Place::InRoot, [](TextWriter& w) { w.end("r"); }, "/>"},
      {Place::InRoot,
       [](TextWriter& w) {
         w.characters("x");
         w.end("r");
       },
       ">x</r>"},
      {Place::InNested,
       [](TextWriter& w) {
         w.end("r");
         w.end("r");
       },
       "/></r>"},
      {Place::InCDATA,
       [](TextWriter& w) {
         w.endCDATA();
         w.end("r");
       },
       "</r>"},
      {Place::InCDATA,
       [](TextWriter& w) {
         w.characters("x");
         w.endCDATA();
         w.end("r");
       },
       "<![CDATA[x]]></r>"},
      {Place::AfterRoot, [](TextWriter& w) { w.comment("c"); }, "<!--c-->"},
  };
  for (const auto& c : cases) {
    WriterWithoutStream writer;
    bringTo(c.place, writer);
    writer.connect();
    c.send(writer);
    EXPECT_EQ(writer.text(), c.text);
  }
}

TEST(StreamSetLater, DoesNotGetTheDeclaration) {
  WriterWithoutStream writer({.indent = true, .declaration = true});
  writer.startDocument();
  writer.connect();
  writer.leaf("r");
  EXPECT_EQ(writer.text(), "\n<r/>");
}

TEST(StreamSetLater, GetsTheEndTagOfAnElementWithContent) {
  WriterWithoutStream writer;
  bringTo(Place::InRoot, writer);
  writer.characters("x");
  writer.connect();
  writer.end("r");
  EXPECT_EQ(writer.text(), "</r>");
}

TEST(StreamRemovedMidway, MissesWhatFollows) {
  WriterWithoutStream writer;
  writer.connect();
  writer.startDocument();
  writer.start("r");
  writer.leaf("a");
  writer.disconnect();
  writer.leaf("b");
  writer.characters("x");
  writer.connect();
  writer.leaf("c");
  writer.end("r");
  EXPECT_EQ(writer.text(), "<r><a/><c/></r>");
}

// The content came while there was nowhere to write the bracket before it.
TEST(StreamRemovedMidway, MissesTheBracketOfAStartTagThatWasOpen) {
  WriterWithoutStream writer;
  writer.connect();
  writer.startDocument();
  writer.start("r");
  writer.disconnect();
  writer.characters("x");
  writer.connect();
  writer.end("r");
  EXPECT_EQ(writer.text(), "<r</r>");
}

TEST(StreamRemovedMidway, LeavesRecordedPrefixMappingsToTheNextElement) {
  WriterWithoutStream writer;
  writer.connect();
  writer.startDocument();
  writer.startPrefixMapping("p", "urn:p");
  writer.disconnect();
  writer.start("r");
  writer.connect();
  writer.leaf("a");
  writer.end("r");
  EXPECT_EQ(writer.text(), "><a/></r>");
}

TEST(StreamReplacedMidway, GetsTheRest) {
  TextWriter writer({.indent = true, .declaration = true});
  Output second;
  writer.startDocument();
  writer.startPrefixMapping("p", "urn:p");
  writer.start("r");
  writer.setOutputStream(&second);
  writer.leaf("a");
  writer.end("r");
  writer.endDocument();
  EXPECT_EQ(writer.text(), kDeclaration + "\n<r xmlns:p='urn:p'");
  EXPECT_EQ(second.text(), ">\n  <a/>\n</r>");
}

TEST(Stream, IsNeverFlushed) {
  for (const bool indent : {false, true}) {
    Output output;
    {
      const auto writer = XMLWriter_XML::create();
      writer->setOutputStream(&output);
      writer->setFeature(features::autoIndent, indent);
      for (int i = 0; i < 2; ++i) {
        writer->startDocument();
        writer->startDTD("d", "", "");
        writer->elementDecl("e", "ANY");
        writer->endDTD();
        writer->startElement("", "r", "r", AttributesImpl());
        writer->flush();
        writer->characters("a\nb");
        writer->startCDATA();
        writer->flush();
        writer->endCDATA();
        writer->endElement("", "r", "r");
        writer->comment("c");
        writer->endDocument();
        writer->flush();
        writer->reset();
      }
    }
    EXPECT_EQ(output.flushes(), 0);
    EXPECT_FALSE(output.text().empty());
  }
}

TEST(Stream, OutlivesTheWriterWithAllThatWasWritten) {
  Output output;
  {
    const auto writer = XMLWriter_XML::create();
    writer->setOutputStream(&output);
    writer->startDocument();
    writer->startElement("", "r", "r", AttributesImpl());
  }
  EXPECT_EQ(output.text(), kDeclaration + "<r");
  output << "!";
  EXPECT_EQ(output.text(), kDeclaration + "<r!");
}

TEST(Stream, KeepsItsFormatToItself) {
  TextWriter writer({.indent = true, .declaration = true});
  writer.output << std::setfill('*') << std::hex << std::showbase << std::right;
  writer.output.width(60);
  writer.startDocument();
  writer.output.width(60);
  writer.startPrefixMapping("p", "urn:p");
  writer.start("r", {{"a", "<"}});
  writer.output.width(60);
  writer.characters("x<");
  writer.output.width(60);
  writer.end("r");
  EXPECT_EQ(writer.text(), kDeclaration + "\n<r xmlns:p='urn:p' a='&lt;'>x&lt;\n</r>");
}

TEST(FailingStream, IsNotNoticed) {
  TextWriter writer;
  writer.startDocument();
  writer.start("r");
  writer.output.fill();
  writer.leaf("a");
  writer.characters("x");
  EXPECT_TRUE(writer.output.bad());
  EXPECT_EQ(thrown([&] { writer.end("b"); }),
            "SAXException: Name mismatch between start and end element");
  writer.output.empty();
  writer.leaf("c");
  writer.end("r");
  writer.endDocument();
  EXPECT_EQ(writer.text(), "<r<c/></r>");
}

TEST(FailingStream, MayHaveFailedBeforeTheDocument) {
  for (const auto state : {std::ios_base::failbit, std::ios_base::badbit, std::ios_base::eofbit}) {
    TextWriter writer({.declaration = true});
    writer.output.setstate(state);
    bringTo(Place::Ended, writer);
    EXPECT_EQ(static_cast<int>(writer.state_), 7);
    EXPECT_EQ(writer.text(), "");
    EXPECT_TRUE((writer.output.rdstate() & state) != 0);
  }
}

}  // namespace
