#include <Tavrin/Identifiers.h>

#include <gtest/gtest.h>

#include "FIWriterProbe.h"
#include "WhatIsThrown.h"

// Small whole documents, the vocabulary that their elements fill, and what a name may not be.

namespace writer_test {
namespace {

using Tavrin::namespaces::xml;
using Tavrin::namespaces::xmlns;

TEST(WriterDocument, IsTheHeaderAndATerminatorWithoutAnyElement) {
  Probe writer;
  writer.startDocument();
  EXPECT_EQ(writer.written(), "E0 00 00 01 00");
  writer.endDocument();
  EXPECT_EQ(writer.written(), "E0 00 00 01 00 F0");
}

TEST(WriterDocument, OfOneElementEndsWithADoubleTerminator) {
  Probe writer;
  writer.startDocument();
  writer.leaf("r");
  writer.endDocument();
  EXPECT_EQ(writer.written(), document("3C 00 'r' FF"));
}

TEST(WriterDocument, OfAnElementWithText) {
  Probe writer;
  writer.startDocument();
  writer.start("r");
  writer.characters("hi");
  writer.end("r");
  writer.endDocument();
  EXPECT_EQ(writer.written(), document("3C 00 'r' 91 'hi' FF"));
}

TEST(WriterDocument, OfAnElementWithANamespaceDeclarationAndAnAttribute) {
  Probe writer;
  writer.startDocument();
  writer.startPrefixMapping("p", "urn:x");
  writer.startElement("urn:x", "a", "p:a", attributes({{"id", "1"}}));
  writer.endElement("urn:x", "a", "p:a");
  writer.endPrefixMapping("p");
  writer.endDocument();
  EXPECT_EQ(writer.written(), document("78 CF 00 'p' 04 'urn:x' F0"
                                       "3F 81 81 00 'a' 78 01 'id' 40 '1' FF F0"));
}

TEST(WriterDocument, OfAnElementWithAnEmptyChildEndsWithBothTerminatorForms) {
  Probe writer;
  writer.startDocument();
  writer.start("r");
  writer.leaf("e");
  writer.end("r");
  writer.endDocument();
  EXPECT_EQ(writer.written(), document("3C 00 'r' 3C 00 'e' FF F0"));
}

TEST(WriterDocument, HasCommentsAndInstructionsEverywhere) {
  Probe writer;
  writer.startDocument();
  writer.comment("a");
  writer.processingInstruction("t", "d");
  writer.startDTD("r", "", "");
  writer.comment("b");
  writer.endDTD();
  writer.processingInstruction("t", "");
  writer.start("r");
  writer.comment("a");
  writer.processingInstruction("u", "b");
  writer.end("r");
  writer.comment("");
  writer.processingInstruction("u", "12345678");
  writer.endDocument();
  EXPECT_EQ(writer.written(), document("E2 40 'a' E1 00 't' 40 'd' E2 40 'b' E1 80 FF"
                                       "3C 00 'r' E2 80 E1 00 'u' 82"
                                       "F0 E2 FF E1 81 07 '12345678' F0"));
}

TEST(WriterDocument, AddsCommentsAndInstructionsOfFewerThanSevenOctetsToOneTable) {
  Probe writer;
  writer.startDocument();
  for (const char* text : {"123456", "1234567", "1234567", "123456"}) writer.comment(text);
  for (const char* text : {"123456", "abcdef", "abcdefg", "abcdefg"}) {
    writer.processingInstruction("t", text);
  }
  writer.comment("abcdef");
  writer.endDocument();
  EXPECT_EQ(writer.written(),
            document("E2 45 '123456' E2 06 '1234567' E2 06 '1234567' E2 80"
                     "E1 00 't' 80 E1 80 45 'abcdef' E1 80 06 'abcdefg' E1 80 06 'abcdefg'"
                     "E2 81 F0"));
}

TEST(WriterDocument, KeepsItsTablesApart) {
  // One string as everything there is: each table meets it for the first time.
  Probe writer;
  writer.startDocument();
  writer.comment("a");
  writer.processingInstruction("a", "a");
  writer.startPrefixMapping("a", "a");
  writer.startElement("a", "a", "a:a", namedAttributes({{"a", "a", "a:a", "a"}}));
  writer.characters("a");
  writer.comment("a");
  writer.characters("a");
  writer.startElement("", "a", "a", namedAttributes({{"", "a", "a", "a"}}));
  writer.endElement("", "a", "a");
  writer.endElement("a", "a", "a:a");
  writer.endDocument();
  EXPECT_EQ(writer.written(), document("E2 40 'a' E1 00 'a' 80 78 CF 00 'a' 00 'a' F0"
                                       "3F 81 81 00 'a' 7B 81 81 80 40 'a' F0"
                                       "90 'a' E2 80 A0"
                                       "7C 80 78 80 80 FF FF"));
}

TEST(WriterElement, IsAnIndexFromTheSecondTimeOn) {
  Probe writer;
  writer.startDocument();
  writer.start("r");
  writer.leaf("e");
  writer.leaf("e");
  writer.leaf("r", {{"e", ""}});
  writer.leaf("e", {{"e", ""}});
  writer.end("r");
  writer.endDocument();
  EXPECT_EQ(writer.written(),
            document("3C 00 'r' 3C 00 'e' F0 01 F0 40 78 81 FF FF 41 00 FF FF FF"));
}

TEST(WriterElement, CarriesTheAttributesFlagInFrontOfItsDeclarations) {
  Probe writer;
  writer.startDocument();
  writer.startPrefixMapping("", "u");
  writer.startElement("u", "r", "r", attributes({}));
  writer.startPrefixMapping("", "u");
  writer.startElement("u", "r", "r", attributes({{"a", "1"}}));
  writer.startPrefixMapping("", "");
  writer.startElement("", "r", "r", attributes({{"a", "1"}}));
  EXPECT_EQ(writer.written(), document("38 CD 00 'u' F0 3D 81 00 'r'"
                                       "78 CD 80 F0 00 78 00 'a' 40 '1' F0"
                                       "78 CC F0 3C 80 00 80"));
}

TEST(WriterElement, TakesEveryDeclarationThatCameSinceTheLastStartTag) {
  Probe writer;
  writer.startPrefixMapping("early", "u");  // Even in front of the document.
  writer.startDocument();
  writer.startPrefixMapping("p", "u");
  writer.comment("");
  writer.start("r");
  writer.startPrefixMapping("q", "v");
  writer.characters("x");
  writer.leaf("e");
  writer.startPrefixMapping("q", "w");
  writer.end("r");
  writer.endDocument();
  EXPECT_EQ(writer.written(), document("E2 FF 38 CF 04 'early' 00 'u' CF 00 'p' 80 F0 3C 00 'r'"
                                       "90 'x' 38 CF 00 'q' 00 'v' F0 3C 00 'e' FF F0"));
}

TEST(WriterElement, KnowsADeclarationAlsoBehindItsScope) {
  Probe writer;
  writer.startDocument();
  writer.start("r");
  writer.startPrefixMapping("p", "u");
  writer.leaf("e");
  writer.endPrefixMapping("p");
  writer.startElement("u", "e", "p:e", attributes({}));
  EXPECT_EQ(writer.written(),
            document("3C 00 'r' 38 CF 00 'p' 00 'u' F0 3C 00 'e' F0 3F 81 81 81"));
}

TEST(WriterElement, OfADifferentPrefixIsADifferentName) {
  Probe writer;
  writer.startDocument();
  writer.startPrefixMapping("p", "u");
  writer.startPrefixMapping("q", "u");
  writer.startPrefixMapping("", "u");
  writer.startElement("u", "a", "p:a", attributes({}));
  for (const char* qName : {"q:a", "a", "p:a", "q:a", "a"}) {
    writer.startElement("u", "a", qName, attributes({}));
  }
  EXPECT_EQ(writer.written(), document("38 CF 00 'p' 00 'u' CF 00 'q' 80 CD 80 F0 3F 81 81 00 'a'"
                                       "3F 82 81 80 3D 81 80 00 01 02"));
}

TEST(WriterElement, HasAsPrefixWhatStandsBeforeTheLastColon) {
  const auto named = [](const std::string& uri, const std::string& qName) {
    Probe writer;
    writer.startDocument();
    writer.startPrefixMapping("a", "u");
    writer.startPrefixMapping("a:b", "u");
    writer.startPrefixMapping(":", "u");
    writer.start("r");
    writer.output.news();
    writer.startElement(uri, "n", qName, attributes({}));
    return writer.news();
  };
  EXPECT_EQ(named("u", "a:n"), hex("3F 81 81 00 'n'"));
  EXPECT_EQ(named("u", "a:b:n"), hex("3F 82 81 00 'n'"));
  EXPECT_EQ(named("u", "::n"), hex("3F 83 81 00 'n'"));
  EXPECT_EQ(named("u", "a:"), hex("3F 81 81 00 'n'"));
  EXPECT_EQ(named("u", ":n"), hex("3D 81 00 'n'"));
  EXPECT_EQ(named("u", ":"), hex("3D 81 00 'n'"));
  EXPECT_EQ(named("u", "a"), hex("3D 81 00 'n'"));
  EXPECT_EQ(named("u", ""), hex("3D 81 00 'n'"));
  // The rest of the qualified name does not matter, and neither does what it has to do with the
  // namespace.
  EXPECT_EQ(named("u", "a:another"), hex("3F 81 81 00 'n'"));
  EXPECT_EQ(named("", "a:n"), hex("3E 81 00 'n'"));
}

TEST(WriterElement, NeedsNoDeclarationOfTheXmlPrefix) {
  Probe writer;
  writer.startDocument();
  writer.startElement(
      "", "r", "r", namedAttributes({{xml, "lang", "xml:lang", "en"}, {xml, "id", "xml:id", "r"}}));
  writer.startElement(xml, "lang", "xml:lang", attributes({}));
  EXPECT_EQ(writer.written(),
            document("7C 00 'r' 7B 80 80 03 'lang' 41 'en' 7B 80 80 01 'id' 40 'r'"
                     "F0 3F 80 80 81"));
}

TEST(WriterElement, LeavesOutAttributesThatAreNamespaceDeclarations) {
  Probe writer;
  writer.startDocument();
  writer.startElement("", "r", "r", namedAttributes({{xmlns, "p", "xmlns:p", "u"}}));
  writer.startElement("", "e", "e",
                      namedAttributes({{xmlns, "xmlns", "xmlns", "u"},
                                       {"", "a", "a", "1"},
                                       {xmlns, "", "", "not even a name"},
                                       {"", "xmlns", "xmlns", "2"}}));
  writer.endElement("", "e", "e");
  writer.endElement("", "r", "r");
  writer.endDocument();
  EXPECT_EQ(writer.written(),
            document("3C 00 'r' 7C 00 'e' 78 00 'a' 40 '1' 78 04 'xmlns' 40 '2' FF FF"));
}

TEST(WriterElement, TakesAnAttributeAsOftenAsItComes) {
  Probe writer;
  writer.startDocument();
  writer.leaf("r", {{"a", "1"}, {"a", "1"}, {"a", "2"}});
  writer.endDocument();
  EXPECT_EQ(writer.written(), document("7C 00 'r' 78 00 'a' 40 '1' 00 80 00 40 '2' FF F0"));
}

TEST(WriterElement, IsRefusedWithAnUndeclaredName) {
  const auto outcome = [](const std::string& uri, const std::string& qName) {
    Probe writer;
    writer.startDocument();
    writer.startPrefixMapping("p", "u");
    writer.start("r");
    writer.output.news();
    const std::string refused = thrown([&] {
      writer.startElement(uri, "n", qName, attributes({{"n", "1"}}));
    });
    EXPECT_EQ(writer.news(), "");
    // Neither the name nor its local part entered a table.
    writer.startElement("u", "n", "p:n", attributes({{"n", "1"}}));
    EXPECT_EQ(writer.news(), hex("7F 81 81 00 'n' 78 81 40 '1'"));
    return refused;
  };
  EXPECT_EQ(outcome("u", "q:n"), "SAXException: Undeclared prefix \"q\"");
  EXPECT_EQ(outcome("v", "p:n"), "SAXException: Undeclared namespace \"v\"");
  EXPECT_EQ(outcome("v", "q:n"), "SAXException: Undeclared prefix \"q\"");
  EXPECT_EQ(outcome("v", "n"), "SAXException: Undeclared namespace \"v\"");
  EXPECT_EQ(outcome("", "a:b:n"), "SAXException: Undeclared prefix \"a:b\"");
}

TEST(WriterElement, IsRefusedWithAnUndeclaredAttributeName) {
  const auto outcome = [](const std::string& uri, const std::string& qName) {
    Probe writer;
    writer.startDocument();
    writer.startPrefixMapping("p", "u");
    writer.start("r");
    writer.output.news();
    const auto list = namedAttributes({{"u", "m", "p:m", "1"}, {uri, "n", qName, ""}});
    const std::string refused = thrown([&] { writer.startElement("", "r", "r", list); });
    EXPECT_EQ(writer.news(), hex("40 7B 81 81 00 'm' 40 '1'"));  // Up to the name, not of it.
    writer.startElement("", "r", "r", attributes({{"n", "1"}}));
    EXPECT_EQ(writer.news(), hex("40 78 00 'n' 80"));
    return refused;
  };
  EXPECT_EQ(outcome("u", "q:n"), "SAXException: Undeclared prefix \"q\"");
  EXPECT_EQ(outcome("v", "p:n"), "SAXException: Undeclared namespace \"v\"");
  EXPECT_EQ(outcome("v", "q:n"), "SAXException: Undeclared prefix \"q\"");
}

/// A writer in a document in which a terminator, text and a declaration are owed.
class OwingProbe : public Probe {
 public:
  OwingProbe() {
    startDocument();
    start("r");
    leaf("e");
    characters("hi");
    startPrefixMapping("p", "u");
    output.news();
  }

  /// What the next element brings out: everything that was owed must still be there.
  std::string rest() {
    leaf("e");
    return news();
  }
};

const std::string kOwed = hex("F0 91 'hi' 38 CF 00 'p' 00 'u' F0 01");

TEST(WriterElement, IsRefusedWithAnEmptyLocalName) {
  OwingProbe writer;
  EXPECT_EQ(thrown([&] { writer.startElement("", "", "n", attributes({})); }),
            "SAXException: Empty name");
  EXPECT_EQ(writer.news(), "");
  EXPECT_EQ(writer.rest(), kOwed);
}

TEST(WriterElement, IsRefusedWithAnEmptyLocalNameOfAnyAttribute) {
  OwingProbe writer;
  EXPECT_EQ(thrown([&] {
              writer.startElement("", "n", "n",
                                  namedAttributes({{"", "a", "a", "1"}, {"", "", "b", "2"}}));
            }),
            "SAXException: Empty name");
  EXPECT_EQ(writer.news(), "");
  EXPECT_EQ(writer.rest(), kOwed);
}

TEST(WriterInstruction, IsRefusedWithAnEmptyTarget) {
  OwingProbe writer;
  EXPECT_EQ(thrown([&] { writer.processingInstruction("", "data"); }), "SAXException: Empty name");
  EXPECT_EQ(writer.news(), "");
  EXPECT_EQ(writer.rest(), kOwed);
}

}  // namespace
}  // namespace writer_test
