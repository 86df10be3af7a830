#include <Tavrin/Factories.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "EventTable.h"
#include "XML10Writer.h"

namespace {

using namespace Tavrin;

TEST(XML10Writer, IsRegistered) {
  for (const char* name : {"XML10", "xml10"}) {
    const auto writer = XMLWriterFactory::createXMLWriter(name);
    EXPECT_NE(dynamic_cast<XMLWriter_XML10*>(writer.get()), nullptr);
  }
  const auto writer = XMLWriter_XML10::create();
  EXPECT_EQ(writer->getOutputStream(), nullptr);
  EXPECT_FALSE(writer->getFeature(features::autoIndent));
  EXPECT_TRUE(writer->getFeature(features::emptyTags));
  EXPECT_TRUE(writer->getFeature(features::xmlDeclaration));
  EXPECT_EQ(thrown([&] { writer->setFeature("x", true); }),
            "SAXNotRecognizedException: Feature \"x\" not recognized");
}

// --- Properties ---

template <typename Value>
Value* property(XMLWriter& writer, const char* name) {
  return static_cast<Value*>(writer.getProperty(name));
}

TEST(XML10Property, HasADefaultThatNullRestores) {
  XML10Writer writer;
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(*property<std::string>(writer, properties::documentXMLVersion), "1.0");
    EXPECT_EQ(property<bool>(writer, properties::standalone), nullptr);
    EXPECT_EQ(*property<unsigned>(writer, properties::indentWidth), 2U);
    EXPECT_EQ(*property<char>(writer, properties::quoteCharacter), '\'');
    writer.set(properties::documentXMLVersion, std::string("1.0"));
    writer.set(properties::standalone, true);
    writer.set(properties::indentWidth, 7U);
    writer.set(properties::quoteCharacter, '"');
    writer.reset();
    EXPECT_EQ(*property<std::string>(writer, properties::documentXMLVersion), "1.0");
    EXPECT_TRUE(*property<bool>(writer, properties::standalone));
    EXPECT_EQ(*property<unsigned>(writer, properties::indentWidth), 7U);
    EXPECT_EQ(*property<char>(writer, properties::quoteCharacter), '"');
    for (const char* name : {properties::documentXMLVersion, properties::standalone,
                             properties::indentWidth, properties::quoteCharacter}) {
      writer.setProperty(name, nullptr);
    }
  }
}

// XML 1.0 (fifth edition), section 2.8: a document of version 1.x is read as XML 1.0, and should
// not be called anything else.
TEST(XML10Property, IsAnyVersionThatIsReadAsXML10) {
  for (const std::string version : {"1.0", "1.1", "1.7", "1.10"}) {
    XML10Writer writer({.declaration = true});
    writer.set(properties::documentXMLVersion, version);
    EXPECT_EQ(*property<std::string>(writer, properties::documentXMLVersion), version);
    writer.startDocument();
    writer.leaf("r");
    writer.endDocument();
    EXPECT_EQ(writer.text(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?><r/>");
  }
}

TEST(XML10Property, RefusesWhatItCannotBe) {
  XML10Writer writer;
  for (const std::string no : {"", "1", "1.", "2.0", "1.x", "1.0 "}) {
    EXPECT_EQ(thrown([&] { writer.set(properties::documentXMLVersion, no); }),
              "SAXException: \"" + no + "\" is not a version of XML");
  }
  EXPECT_EQ(thrown([&] { writer.set(properties::quoteCharacter, '`'); }),
            "SAXException: Attribute values can stand in apostrophes or quotation marks only");
  EXPECT_EQ(*property<char>(writer, properties::quoteCharacter), '\'');
  EXPECT_EQ(thrown([&] { writer.setProperty("x", nullptr); }),
            "SAXNotRecognizedException: Property \"x\" not recognized");
  EXPECT_EQ(thrown([&] { writer.getProperty(properties::lexicalHandler); }),
            std::string("SAXNotRecognizedException: Property \"") + properties::lexicalHandler +
                "\" not recognized");
}

TEST(XML10Property, StandaloneIsDeclared) {
  const std::string begin = "<?xml version=\"1.0\" encoding=\"UTF-8\"";
  XML10Writer writer({.declaration = true});
  writer.startDocument();
  EXPECT_EQ(writer.output.news(), begin + "?>");
  for (const bool standalone : {true, false}) {
    writer.reset();
    writer.set(properties::standalone, standalone);
    writer.startDocument();
    EXPECT_EQ(writer.output.news(),
              begin + (standalone ? " standalone=\"yes\"?>" : " standalone=\"no\"?>"));
  }
}

// --- Order of events ---

// What the base refuses at a place is refused with its words, before anything is written.
TEST(XML10Order, IsThatOfAllWriters) {
  for (const auto& place : kPlaces) {
    for (const auto& event : kEvents) {
      XML10Writer writer;
      bringTo(place.place, writer);
      const std::string before = writer.text();
      const auto state = writer.state_;
      const bool hadContent = writer.hasContent_;
      const std::string openBefore = writer.openElements();
      std::string expected = "nothing";
      {
        TextWriter sibling;
        bringTo(place.place, sibling);
        expected = thrown([&] { send(event.event, sibling); });
      }
      const std::string got = thrown([&] { send(event.event, writer); });
      const bool isOwnRefusal = expected == "nothing" && got != "nothing";
      EXPECT_EQ(got, isOwnRefusal ? got : expected) << event.name << " at " << place.name;
      if (got == "nothing") continue;
      EXPECT_EQ(writer.text(), before);
      EXPECT_EQ(writer.state_, state);
      EXPECT_EQ(writer.hasContent_, hadContent);
      EXPECT_EQ(writer.openElements(), openBefore);
    }
  }
}

TEST(XML10Order, NeedsAnElement) {
  XML10Writer writer;
  writer.startDocument();
  EXPECT_EQ(thrown([&] { writer.endDocument(); }),
            "SAXException: You cannot end a document without an element");
  writer.startDTD("r", "", "");
  writer.endDTD();
  EXPECT_EQ(thrown([&] { writer.endDocument(); }),
            "SAXException: You cannot end a document without an element");
  writer.leaf("r");
  writer.endDocument();
  EXPECT_EQ(writer.text(), "<!DOCTYPE r><r/>");
}

TEST(XML10Order, RefusesAnEndTagOfAnotherName) {
  EXPECT_EQ(refusedInRoot([](XML10Writer& w) { w.end("s"); }),
            "SAXException: Name mismatch between start and end element");
}

// --- Stream ---

TEST(XML10Stream, GetsEachEventInOnePiece) {
  XML10Writer writer({.declaration = true});
  writer.output.keepPieces();
  writer.startDocument();
  writer.startDTD("r", "p", "s");
  writer.attributeDecl("r", "a", "CDATA", "", "<");
  writer.endDTD();
  writer.startPrefixMapping("p", "urn:p");
  writer.start("r", {{"a", "1"}, {"b", "<&>"}});
  writer.characters("x<y>z");
  writer.comment("c");
  writer.startCDATA();
  writer.characters("]]>");
  writer.endCDATA();
  writer.leaf("e");
  writer.end("r");
  writer.endDocument();
  EXPECT_EQ(writer.output.pieces(),
            (std::vector<std::string>{
                kDeclaration, "<!DOCTYPE r PUBLIC \"p\" \"s\"", " [  <!ATTLIST r a CDATA '&lt;'>",
                "]>", "<r xmlns:p='urn:p' a='1' b='&lt;&amp;>'", ">x&lt;y&gt;z", "<!--c-->",
                "<![CDATA[]]]]><![CDATA[>", "]]>", "<e", "/>", "</r>"}));
  EXPECT_EQ(writer.output.flushes(), 0);
}

TEST(XML10Stream, MayBeMissing) {
  for (const bool indent : {false, true}) {
    XML10Writer writer({.indent = indent});
    writer.setOutputStream(nullptr);
    writer.startDocument();
    writer.startPrefixMapping("p", "urn:p");
    writer.startElement("urn:p", "r", "p:r", AttributesImpl());
    EXPECT_EQ(thrown([&] { writer.startElement("urn:q", "e", "q:e", AttributesImpl()); }),
              "SAXException: The prefix \"q\" is not declared");
    EXPECT_EQ(thrown([&] { writer.characters("\x01"); }),
              "SAXException: You cannot put character U+0001 into character data");
    writer.leaf("e");
    writer.flush();
    writer.endElement("urn:p", "r", "p:r");
    writer.endDocument();
    EXPECT_EQ(writer.text(), "");
  }
}

TEST(XML10Stream, ThatFailsIsNotNoticed) {
  XML10Writer writer;
  writer.startDocument();
  writer.start("r");
  writer.output.fill();
  writer.leaf("a");
  EXPECT_TRUE(writer.output.bad());
  writer.output.empty();
  writer.leaf("b");
  writer.end("r");
  EXPECT_EQ(writer.text(), "<r<b/></r>");
}

TEST(XML10Stream, MayThrow) {
  XML10Writer writer;
  writer.output.exceptions(std::ios_base::badbit);
  writer.startDocument();
  writer.output.fill();
  EXPECT_THROW(writer.start("r"), std::ios_base::failure);
  writer.output.empty();
  writer.reset();
  writer.startDocument();
  writer.leaf("s");
  EXPECT_EQ(writer.text(), "<s/>");
}

// What a stream that throws has lost is lost; the document goes on behind it.
TEST(XML10Stream, MayThrowAtText) {
  for (const std::size_t length : {1, 1000}) {
    for (const std::string end : {"", "<"}) {
      XML10Writer writer;
      writer.startDocument();
      writer.start("r");
      writer.output.exceptions(std::ios_base::badbit);
      writer.output.fill();
      EXPECT_THROW(writer.characters(std::string(length, 'a') + end), std::ios_base::failure);
      writer.output.empty();
      EXPECT_EQ(
          thrown([&] { writer.characters("b"); }),
          "SAXException: The document cannot go on after a failure: the writer must be reset");
      EXPECT_EQ(writer.text(), "<r");
      writer.reset();
      writer.startDocument();
      writer.leaf("s");
      EXPECT_EQ(writer.text(), "<r<s/>") << length << end;
    }
  }
}

// --- Reset ---

TEST(XML10Reset, MakesTheWriterNew) {
  XML10Writer writer;
  writer.startDocument();
  writer.startDTD("r", "", "s");
  writer.skippedEntity("%p");
  writer.startEntity("[dtd]");
  writer.reset();
  writer.startDocument();
  writer.startDTD("r", "", "");
  writer.comment("c");
  writer.endDTD();
  writer.startPrefixMapping("p", "urn:p");
  writer.startElement("urn:p", "r", "p:r", AttributesImpl());
  writer.startPrefixMapping("q", "urn:q");
  writer.reset();
  writer.output.news();
  writer.startDocument();
  EXPECT_EQ(thrown([&] { writer.startElement("urn:p", "r", "p:r", AttributesImpl()); }),
            "SAXException: The prefix \"p\" is not declared");
  writer.start("r");
  EXPECT_EQ(thrown([&] { writer.skippedEntity("e"); }),
            "SAXException: The entity \"e\" is not declared");
  writer.startCDATA();
  writer.characters("]]");
  writer.reset();
  writer.startDocument();
  writer.start("r");
  writer.startCDATA();
  writer.characters(">");
  writer.endCDATA();
  writer.end("r");
  writer.endDocument();
  EXPECT_EQ(writer.output.news(), "<r><![CDATA[]]<r><![CDATA[>]]></r>");
}

TEST(XML10Writer, RefusesElementsThatAreTooDeep) {
  const std::string refused =
      "SAXException: Elements nested deeper than 2 (property maximum-depth)";
  for (const bool indent : {false, true}) {
    XML10Writer writer({.indent = indent});
    EXPECT_EQ(UINT64_MAX,
              *static_cast<std::uint64_t*>(writer.getProperty(properties::maximumDepth)));
    writer.set(properties::maximumDepth, std::uint64_t{2});
    writer.startDocument();
    writer.start("a");
    writer.start("b");
    EXPECT_EQ(thrown([&] { writer.start("c"); }), refused);
    EXPECT_EQ(thrown([&] { writer.start("c"); }), refused);
    writer.end("b");
    writer.leaf("d");
    writer.setProperty(properties::maximumDepth, nullptr);
    writer.start("e");
    writer.leaf("f");
    writer.end("e");
    writer.end("a");
    writer.endDocument();
    EXPECT_EQ(writer.text(), indent ? "<a>\n  <b/>\n  <d/>\n  <e>\n    <f/>\n  </e>\n</a>"
                                    : "<a><b/><d/><e><f/></e></a>");
  }
}

}  // namespace
