#include <Tavrin/Factories.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_XML.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <iterator>
#include <string>

#include "TextWriter.h"

namespace {

using namespace Tavrin;

/// A small document with most of what start tags and text can hold, given to interfaces.
void sendSmallDocument(ContentHandler& handler) {
  AttributesImpl attributes;
  attributes.addAttribute("", "id", "id", "CDATA", "1<2 & 'x'\n");
  handler.startDocument();
  handler.startPrefixMapping("p", "urn:x");
  handler.startElement("urn:x", "a", "p:a", attributes);
  handler.characters("x>y");
  handler.startElement("", "b", "b", AttributesImpl());
  handler.endElement("", "b", "b");
  handler.endElement("urn:x", "a", "p:a");
  handler.endPrefixMapping("p");
  handler.endDocument();
}

TEST(SmallDocument, IsWrittenOctetForOctet) {
  Output output;
  const auto writer = XMLWriterFactory::createXMLWriter("XML");
  writer->setOutputStream(&output);
  sendSmallDocument(*writer);
  EXPECT_EQ(output.text(),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
            "<p:a xmlns:p='urn:x' id='1&lt;2 &amp; &apos;x&apos;&#xA;'>x&gt;y<b/></p:a>");
}

TEST(SmallDocument, IsIndentedOctetForOctet) {
  Output output;
  const auto writer = XMLWriterFactory::createXMLWriter();
  writer->setOutputStream(&output);
  writer->setFeature(features::autoIndent, true);
  sendSmallDocument(*writer);
  EXPECT_EQ(output.text(),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<p:a xmlns:p='urn:x' id='1&lt;2 &amp; &apos;x&apos;&#xA;'>x&gt;y\n"
            "  <b/>\n"
            "</p:a>");
}

struct Step {
  void (*send)(TextWriter&);
  const char* plain;
  const char* indented;
};

const Step kSteps[] = {
    {[](TextWriter& w) { w.startDocument(); }, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>",
     "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"},
    {[](TextWriter& w) { w.comment(" first "); }, "<!-- first -->", "\n<!-- first -->"},
    {[](TextWriter& w) { w.ignorableWhitespace("\n"); }, "\n", "\n"},
    {[](TextWriter& w) { w.startDTD("r", "-//P", "s.dtd"); },
     "<!DOCTYPE r PUBLIC \"-//P\" \"s.dtd\"", "\n<!DOCTYPE r PUBLIC \"-//P\" \"s.dtd\""},
    {[](TextWriter& w) { w.notationDecl("n", "p", "s"); }, " [  <!NOTATION n PUBLIC \"p\" \"s\"n>",
     " [\n    <!NOTATION n PUBLIC \"p\" \"s\"n>"},
    {[](TextWriter& w) { w.attributeDecl("r", "a", "CDATA", "", "v"); },
     "  <!ATTLIST r a CDATA  \"v\">", "\n    <!ATTLIST r a CDATA  \"v\">"},
    {[](TextWriter& w) { w.processingInstruction("t", "d"); }, "<?t d?>", "\n  <?t d?>"},
    {[](TextWriter& w) { w.endDTD(); }, "]>", "\n]>"},
    {[](TextWriter& w) { w.startPrefixMapping("", "urn:d"); }, "", ""},
    {[](TextWriter& w) { w.startPrefixMapping("p", "urn:p"); }, "", ""},
    {[](TextWriter& w) {
       w.start("r", {{"a", "\"1\""}, {"b", "<2>"}});
     },
     "<r xmlns='urn:d' xmlns:p='urn:p' a='\"1\"' b='&lt;2>'",
     "\n<r xmlns='urn:d' xmlns:p='urn:p' a='\"1\"' b='&lt;2>'"},
    {[](TextWriter& w) { w.startPrefixMapping("q", "urn:q"); }, "", ""},
    {[](TextWriter& w) { w.start("a"); }, "><a xmlns:q='urn:q'", ">\n  <a xmlns:q='urn:q'"},
    {[](TextWriter& w) { w.end("a"); }, "/>", "/>"},
    {[](TextWriter& w) { w.endPrefixMapping("q"); }, "", ""},
    {[](TextWriter& w) { w.start("b"); }, "<b", "\n  <b"},
    {[](TextWriter& w) { w.flush(); }, ">", ">"},
    {[](TextWriter& w) { w.start("c"); }, "<c", "\n    <c"},
    {[](TextWriter& w) { w.characters("1 < 2"); }, ">1 &lt; 2", ">1 &lt; 2"},
    {[](TextWriter& w) { w.end("c"); }, "</c>", "\n    </c>"},
    {[](TextWriter& w) { w.startCDATA(); }, "", ""},
    {[](TextWriter& w) { w.characters("1 < 2"); }, "<![CDATA[1 < 2", "<![CDATA[1 < 2"},
    {[](TextWriter& w) { w.ignorableWhitespace(" "); }, " ", " "},
    {[](TextWriter& w) { w.endCDATA(); }, "]]>", "]]>"},
    {[](TextWriter& w) { w.startCDATA(); }, "", ""},
    {[](TextWriter& w) { w.endCDATA(); }, "", ""},
    {[](TextWriter& w) { w.end("b"); }, "</b>", "\n  </b>"},
    {[](TextWriter& w) { w.skippedEntity("e"); }, "", ""},
    {[](TextWriter& w) { w.processingInstruction("u", ""); }, "<?u ?>", "\n  <?u ?>"},
    {[](TextWriter& w) { w.end("r"); }, "</r>", "\n</r>"},
    {[](TextWriter& w) { w.comment("last"); }, "<!--last-->", "\n<!--last-->"},
    {[](TextWriter& w) { w.ignorableWhitespace("\n"); }, "\n", "\n"},
    {[](TextWriter& w) { w.endDocument(); }, "", ""},
    {[](TextWriter& w) { w.flush(); }, "", ""},
};

TEST(Document, IsWrittenAtOnceEventByEvent) {
  for (const bool indent : {false, true}) {
    TextWriter writer({.indent = indent, .declaration = true});
    for (std::size_t i = 0; i < std::size(kSteps); ++i) {
      kSteps[i].send(writer);
      EXPECT_EQ(writer.output.news(), indent ? kSteps[i].indented : kSteps[i].plain)
          << "step " << i << (indent ? ", indented" : "");
    }
  }
}

TEST(Document, IsCheckedAndNotWrittenWithoutAStream) {
  for (const bool indent : {false, true}) {
    TextWriter writer({.indent = indent, .declaration = true});
    writer.setOutputStream(nullptr);
    for (const Step& step : kSteps) step.send(writer);
    EXPECT_EQ(static_cast<int>(writer.state_), 7);
    EXPECT_EQ(writer.text(), "");
  }
}

TEST(Document, IsTheSameWhenSentThroughTheInterfaces) {
  for (const bool indent : {false, true}) {
    TextWriter direct({.indent = indent, .declaration = true});
    TextWriter through({.indent = indent, .declaration = true});
    const Event events[] = {Event::startDocument,
                            Event::comment,
                            Event::startDTD,
                            Event::notationDecl,
                            Event::unparsedEntityDecl,
                            Event::internalEntityDecl,
                            Event::externalEntityDecl,
                            Event::elementDecl,
                            Event::attributeDecl,
                            Event::processingInstruction,
                            Event::ignorableWhitespace,
                            Event::endDTD,
                            Event::startElement,
                            Event::characters,
                            Event::startCDATA,
                            Event::characters,
                            Event::endCDATA};
    for (const Event event : events) {
      send(event, direct);
      sendThroughInterface(event, through);
      EXPECT_EQ(through.text(), direct.text());
    }
  }
}

TEST(Document, WithoutAnyElementIsWritten) {
  TextWriter writer({.declaration = true});
  writer.startDocument();
  writer.endDocument();
  EXPECT_EQ(writer.text(), kDeclaration);
}

TEST(Document, FollowsAnotherOnTheSameStreamAfterReset) {
  TextWriter writer({.indent = true, .declaration = true});
  for (int i = 0; i < 2; ++i) {
    writer.startDocument();
    writer.start("r");
    writer.leaf("a");
    writer.end("r");
    writer.endDocument();
    writer.reset();
  }
  const std::string one = kDeclaration + "\n<r>\n  <a/>\n</r>";
  EXPECT_EQ(writer.text(), one + one);
}

TEST(Document, FollowsAnAbandonedOneAfterReset) {
  const struct {
    Place place;
    const char* left;
  } cases[] = {
      {Place::Initial, ""},
      {Place::Prolog, ""},
      {Place::InDTD, "<!DOCTYPE d SYSTEM \"d.dtd\""},
      {Place::AfterDTD, "<!DOCTYPE d SYSTEM \"d.dtd\">"},
      {Place::InRoot, "<r"},
      {Place::InNested, "<r><r"},
      {Place::InCDATA, "<r>"},
      {Place::AfterRoot, "<r/>"},
      {Place::Ended, "<r/>"},
  };
  for (const auto& c : cases) {
    TextWriter writer;
    bringTo(c.place, writer);
    writer.startPrefixMapping("p", "urn:p");
    writer.reset();
    writer.reset();
    writer.flush();
    writer.startDocument();
    writer.start("s");
    writer.leaf("t");
    writer.end("s");
    writer.endDocument();
    EXPECT_EQ(writer.text(), std::string(c.left) + "<s><t/></s>");
  }
}

TEST(Document, MayNestAMillionElements) {
  constexpr int kDepth = 1'000'000;
  TextWriter writer;
  writer.startDocument();
  const AttributesImpl none;
  const std::string name = "e";
  for (int i = 0; i < kDepth; ++i) writer.startElement("", name, name, none);
  for (int i = 0; i < kDepth; ++i) writer.endElement("", name, name);
  writer.endDocument();
  std::string expected;
  for (int i = 1; i < kDepth; ++i) expected += "<e>";
  expected += "<e/>";
  for (int i = 1; i < kDepth; ++i) expected += "</e>";
  EXPECT_TRUE(writer.text() == expected);
}

TEST(Document, MayHoldTwentyMegabytesOfText) {
  const std::string block(1'000'000, 'x');
  TextWriter writer;
  writer.startDocument();
  writer.start("r");
  for (int i = 0; i < 20; ++i) writer.characters(block);
  writer.end("r");
  const std::string& text = writer.text();
  ASSERT_EQ(text.size(), 3U + 20'000'000U + 4U);
  EXPECT_EQ(text.substr(0, 4), "<r>x");
  EXPECT_EQ(text.find_first_not_of('x', 3), 3U + 20'000'000U);
  EXPECT_EQ(text.substr(3U + 20'000'000U), "</r>");
}

TEST(TextWriterFromTheRegistry, IsNewEveryTime) {
  const auto first = XMLWriterFactory::createXMLWriter("xml");
  const auto second = XMLWriter_XML::create();
  EXPECT_NE(dynamic_cast<XMLWriter_XML*>(first.get()), nullptr);
  EXPECT_NE(dynamic_cast<XMLWriter_XML*>(second.get()), nullptr);
  EXPECT_NE(first, second);
  EXPECT_EQ(first->getOutputStream(), nullptr);
  EXPECT_EQ(second->getOutputStream(), nullptr);
}

}  // namespace
