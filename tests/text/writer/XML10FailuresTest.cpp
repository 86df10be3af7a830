// What fails in the midst of a document, and what the writer does then.

#include <gtest/gtest.h>

#include "WriterFailures.h"
#include "XML10Writer.h"

namespace {

using namespace Tavrin;
using failures::Event;
using failures::failing;
using failures::FailingAttributes;

/// A document with everything in it. What events are given takes no memory while they run.
std::vector<Event> everything() {
  const std::string longText = std::string(300, 'x') + "<&>";
  const std::string plain(300, 'y');
  const std::string name = "an-element-of-a-long-name";
  const FailingAttributes none = failing({});
  const FailingAttributes several =
      failing({{"", "first", "first", "a value"},
               {"urn:a", "second", "p:second", "another value, which is a long one"},
               {"", "third", "third", ""}});
  const FailingAttributes declaring = failing({{"", "", "xmlns:q", "urn:q"},
                                               {"", "", "xmlns", "urn:default"},
                                               {"urn:q", "b", "q:b", "another value"},
                                               {"", "first", "first", "a value"}});
  const std::string p = "p", a = "a", d = "d", e = "e", q = "q", urnA = "urn:a", urnQ = "urn:q";
  const std::string empty, urnDefault = "urn:default", pa = "p:" + name, qd = "q:d";
  const std::string section = "]]>x\r]]>", text = "some text", cdata = "CDATA", any = "ANY";
  const std::string ae = "p:a";
  return {
      [=](XMLWriter& w) { w.startDocument(); },
      [=](XMLWriter& w) { w.comment(text); },
      [=](XMLWriter& w) { w.startDTD(a, p, plain); },
      [=](XMLWriter& w) { w.notationDecl(a, p, plain); },
      [=](XMLWriter& w) { w.unparsedEntityDecl(e, p, plain, a); },
      [=](XMLWriter& w) { w.externalEntityDecl(q, p, plain); },
      [=](XMLWriter& w) { w.internalEntityDecl(d, longText); },
      [=](XMLWriter& w) { w.elementDecl(d, any); },
      [=](XMLWriter& w) { w.attributeDecl(name, ae, cdata, empty, longText); },
      [=](XMLWriter& w) { w.processingInstruction(p, longText); },
      [=](XMLWriter& w) { w.endDTD(); },
      [=](XMLWriter& w) { w.startPrefixMapping(p, urnA); },
      [=](XMLWriter& w) { w.startElement(urnA, name, pa, several); },
      [=](XMLWriter& w) { w.startElement(urnQ, d, qd, declaring); },
      [=](XMLWriter& w) { w.startElement(urnDefault, name, name, none); },
      [=](XMLWriter& w) { w.endElement(urnDefault, name, name); },
      [=](XMLWriter& w) { w.characters(longText); },
      [=](XMLWriter& w) { w.characters(plain); },
      [=](XMLWriter& w) { w.startCDATA(); },
      [=](XMLWriter& w) { w.characters(section); },
      [=](XMLWriter& w) { w.endCDATA(); },
      [=](XMLWriter& w) { w.characters(text); },
      [=](XMLWriter& w) { w.skippedEntity(q); },
      [=](XMLWriter& w) { w.comment(longText); },
      [=](XMLWriter& w) { w.endElement(urnQ, d, qd); },
      [=](XMLWriter& w) { w.startElement(empty, d, d, several); },
      [=](XMLWriter& w) { w.processingInstruction(q, text); },
      [=](XMLWriter& w) { w.endElement(empty, d, d); },
      [=](XMLWriter& w) { w.startElement(urnA, name, pa, several); },
      [=](XMLWriter& w) { w.characters(plain); },
      [=](XMLWriter& w) { w.endElement(urnA, name, pa); },
      [=](XMLWriter& w) { w.endElement(urnA, name, pa); },
      [=](XMLWriter& w) { w.comment(text); },
      [=](XMLWriter& w) { w.endDocument(); },
  };
}

TEST(XML10WriterFailures, LeaveNoTraceOrEndTheDocument) {
  failures::failInEveryWay<XMLWriter_XML10>(everything());
}

TEST(XML10WriterFailures, LeaveNoTraceWhereLinesAreIndented) {
  failures::failInEveryWay<XMLWriter_XML10>(
      everything(), [](XMLWriter_XML10& writer) { writer.setFeature(features::autoIndent, true); });
}

TEST(XML10WriterFailures, OfAStreamEndTheDocument) {
  failures::FailingStream stream;
  XMLWriter_XML10 writer;
  writer.setFeature(features::xmlDeclaration, false);
  writer.setOutputStream(&stream);
  writer.startDocument();
  writer.startElement("", "a", "a", AttributesImpl());
  writer.startPrefixMapping("p", "u");
  writer.startElement("", "b", "b", AttributesImpl());
  EXPECT_EQ(stream.news(), "<a><b xmlns:p='u'");
  stream.failAfter(1);
  EXPECT_THROW(writer.endElement("", "b", "b"), failures::Failure);
  EXPECT_EQ(stream.news(), "/");
  stream.clear();
  const std::string broken = "SAXException: " + std::string(failures::kBroken);
  EXPECT_EQ(thrown([&] { writer.startElement("u", "c", "p:c", AttributesImpl()); }), broken);
  EXPECT_EQ(thrown([&] { writer.startPrefixMapping("q", "u"); }), broken);
  EXPECT_EQ(thrown([&] { writer.characters("x"); }), broken);
  EXPECT_EQ(thrown([&] { writer.skippedEntity("x"); }), broken);
  EXPECT_EQ(thrown([&] { writer.startEntity("x"); }), broken);
  EXPECT_EQ(thrown([&] { writer.startDocument(); }), broken);
  EXPECT_EQ(thrown([&] { writer.flush(); }), broken);
  EXPECT_EQ(stream.news(), "");
  writer.reset();
  writer.startDocument();
  writer.startElement("", "a", "a", AttributesImpl());
  writer.endElement("", "a", "a");
  writer.endDocument();
  EXPECT_EQ(stream.news(), "<a/>");
}

}  // namespace
