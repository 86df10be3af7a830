#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "TextWriter.h"
#include "WhatIsThrown.h"

namespace {

using namespace Tavrin;

/// A writer in its prolog.
struct PrologWriter : TextWriter {
  explicit PrologWriter(Settings settings = {}) : TextWriter(settings) { startDocument(); }
};

TEST(StartTag, StaysOpenUntilContentComes) {
  PrologWriter writer;
  writer.start("r");
  EXPECT_EQ(writer.text(), "<r");
  writer.characters("");
  EXPECT_EQ(writer.text(), "<r>");
}

TEST(StartTag, ShowsTheQualifiedNameOnly) {
  PrologWriter writer;
  writer.startElement("urn:x", "local", "p:other", AttributesImpl());
  writer.endElement("urn:x", "local", "p:other");
  EXPECT_EQ(writer.text(), "<p:other/>");
}

TEST(StartTag, TakesAnEmptyName) {
  PrologWriter writer;
  writer.start("");
  writer.characters("x");
  writer.end("");
  EXPECT_EQ(writer.text(), "<>x</>");
}

TEST(Attributes, AreWrittenInTheirOrderBetweenApostrophes) {
  PrologWriter writer;
  writer.start("r", {{"b", "2"}, {"a", "1"}, {"p:c", ""}, {"b", "again"}});
  EXPECT_EQ(writer.text(), "<r b='2' a='1' p:c='' b='again'");
}

TEST(Attributes, KeepDoubleQuotesAndAngleBracketsThatEnd) {
  PrologWriter writer;
  writer.start("r", {{"a", "say \"hi\" > there"}});
  EXPECT_EQ(writer.text(), "<r a='say \"hi\" > there'");
}

TEST(Attributes, AreWrittenByQualifiedNameAndValueOnly) {
  AttributesImpl attributes;
  attributes.addAttribute("urn:x", "local", "p:other", "ID", "v");
  PrologWriter writer;
  writer.startElement("", "r", "r", attributes);
  EXPECT_EQ(writer.text(), "<r p:other='v'");
}

// A list may be one of the application's own, whose length is whatever it says.
TEST(Attributes, OfANegativeLengthAreNone) {
  class NegativeLength : public AttributesImpl {
   public:
    explicit NegativeLength(int length) : length_(length) {}
    int getLength() const override { return length_; }

   private:
    int length_;
  };
  for (const int length : {0, -1, std::numeric_limits<int>::min()}) {
    PrologWriter writer;
    writer.startElement("", "r", "r", NegativeLength(length));
    writer.end("r");
    EXPECT_EQ(writer.text(), "<r/>") << length;
  }
}

TEST(Attributes, MayBeMany) {
  AttributesImpl attributes;
  std::string expected = "<r";
  for (int i = 0; i < 10'000; ++i) {
    const std::string number = std::to_string(i);
    attributes.addAttribute("", "a" + number, "a" + number, "CDATA", number);
    expected += " a" + number + "='" + number + "'";
  }
  PrologWriter writer;
  writer.startElement("", "r", "r", attributes);
  EXPECT_EQ(writer.text(), expected);
}

TEST(NamespaceDeclarations, StandInTheirOrderBeforeTheAttributes) {
  PrologWriter writer;
  writer.startPrefixMapping("q", "urn:q");
  writer.startPrefixMapping("", "urn:d");
  writer.startPrefixMapping("p", "urn:p");
  writer.start("r", {{"a", "1"}});
  EXPECT_EQ(writer.text(), "<r xmlns:q='urn:q' xmlns='urn:d' xmlns:p='urn:p' a='1'");
}

TEST(NamespaceDeclarations, OfTheEmptyPrefixHaveNoColon) {
  PrologWriter writer;
  writer.startPrefixMapping("", "urn:d");
  writer.leaf("r");
  EXPECT_EQ(writer.text(), "<r xmlns='urn:d'/>");
}

TEST(NamespaceDeclarations, MayBeEmptyOnBothSides) {
  PrologWriter writer;
  writer.startPrefixMapping("", "");
  writer.startPrefixMapping("p", "");
  writer.leaf("r");
  EXPECT_EQ(writer.text(), "<r xmlns='' xmlns:p=''/>");
}

TEST(NamespaceDeclarations, AreNotEscaped) {
  PrologWriter writer;
  writer.startPrefixMapping("p", "urn:x?a=1&b='2'<\n>");
  writer.leaf("r");
  EXPECT_EQ(writer.text(), "<r xmlns:p='urn:x?a=1&b='2'<\n>'/>");
}

TEST(NamespaceDeclarations, AreWrittenAsOftenAsTheyCome) {
  PrologWriter writer;
  writer.startPrefixMapping("p", "urn:1");
  writer.startPrefixMapping("p", "urn:2");
  writer.startPrefixMapping("p", "urn:1");
  writer.leaf("r");
  EXPECT_EQ(writer.text(), "<r xmlns:p='urn:1' xmlns:p='urn:2' xmlns:p='urn:1'/>");
}

TEST(NamespaceDeclarations, StandOnTheNextStartTagOnly) {
  PrologWriter writer;
  writer.startPrefixMapping("p", "urn:p");
  writer.start("r");
  writer.leaf("a");
  writer.startPrefixMapping("q", "urn:q");
  EXPECT_EQ(writer.text(), "<r xmlns:p='urn:p'><a/>");
  writer.leaf("b");
  writer.leaf("c");
  writer.end("r");
  EXPECT_EQ(writer.text(), "<r xmlns:p='urn:p'><a/><b xmlns:q='urn:q'/><c/></r>");
}

TEST(NamespaceDeclarations, AreNoContent) {
  PrologWriter writer;
  writer.start("r");
  writer.startPrefixMapping("p", "urn:p");
  EXPECT_EQ(writer.text(), "<r");
  writer.end("r");
  EXPECT_EQ(writer.text(), "<r/>");
}

TEST(NamespaceDeclarations, WaitPastOtherEvents) {
  PrologWriter writer;
  writer.startPrefixMapping("p", "urn:p");
  writer.comment("c");
  writer.startDTD("r", "", "");
  writer.endDTD();
  writer.startPrefixMapping("q", "urn:q");
  writer.endPrefixMapping("p");
  writer.flush();
  writer.leaf("r");
  EXPECT_EQ(writer.text(), "<!--c--><!DOCTYPE r><r xmlns:p='urn:p' xmlns:q='urn:q'/>");
}

TEST(NamespaceDeclarations, AreTakenBeforeTheDocumentBegins) {
  TextWriter writer;
  writer.startPrefixMapping("p", "urn:p");
  writer.startDocument();
  writer.leaf("r");
  EXPECT_EQ(writer.text(), "<r xmlns:p='urn:p'/>");
}

TEST(NamespaceDeclarations, OutliveARefusedStartElement) {
  TextWriter writer;
  bringTo(Place::InCDATA, writer);
  writer.startPrefixMapping("p", "urn:p");
  EXPECT_EQ(thrown([&] { writer.start("a"); }),
            "SAXException: You cannot start an element at this point");
  writer.endCDATA();
  writer.leaf("b");
  EXPECT_EQ(writer.text(), "<r><![CDATA[]]><b xmlns:p='urn:p'/>");
}

TEST(NamespaceDeclarations, AreForgottenByReset) {
  PrologWriter writer;
  writer.startPrefixMapping("p", "urn:p");
  writer.reset();
  writer.startDocument();
  writer.leaf("r");
  EXPECT_EQ(writer.text(), "<r/>");
}

/// Declares the namespace that it has declared first once more.
struct RepeatingWriter : PrologWriter {
  void repeat(const std::string& prefix) { startPrefixMapping(prefix, namespaces_.at(1)); }
};

TEST(NamespaceDeclarations, MayBeMadeOfThoseBefore) {
  const std::string uri(50, 'u');
  RepeatingWriter writer;
  writer.startPrefixMapping("a", uri);
  writer.repeat("b");
  writer.repeat("c");
  writer.leaf("r");
  EXPECT_EQ(writer.text(),
            "<r xmlns:a='" + uri + "' xmlns:b='" + uri + "' xmlns:c='" + uri + "'/>");
}

// A reader that reports a declaration both ways gets it twice.
TEST(AttributesOfTheXmlnsNamespace, AreWrittenLikeAnyOther) {
  AttributesImpl attributes;
  attributes.addAttribute(namespaces::xmlns, "p", "xmlns:p", "CDATA", "urn:'p'");
  attributes.addAttribute(namespaces::xmlns, "xmlns", "xmlns", "CDATA", "urn:d");
  attributes.addAttribute(namespaces::xml, "lang", "xml:lang", "CDATA", "en");
  PrologWriter writer;
  writer.startPrefixMapping("p", "urn:'p'");
  writer.startPrefixMapping("", "urn:d");
  writer.startElement("", "r", "r", attributes);
  writer.end("r");
  EXPECT_EQ(writer.text(),
            "<r xmlns:p='urn:'p'' xmlns='urn:d' xmlns:p='urn:&apos;p&apos;' xmlns='urn:d' "
            "xml:lang='en'/>");
}

}  // namespace
