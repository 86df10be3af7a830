#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "XML10Writer.h"

namespace {

using namespace Tavrin;

const std::string kXML = "http://www.w3.org/XML/1998/namespace";
const std::string kXMLNS = "http://www.w3.org/2000/xmlns/";

// --- Attribute values ---

TEST(XML10AttributeValue, ComesBackAsItWas) {
  EXPECT_EQ(inRoot([](XML10Writer& w) {
              w.start("e", {{"a", "<>&'\" \t\n\r"}, {"b", ""}, {"c", "\xC3\xA4'"}});
              w.end("e");
            }),
            "<e a='&lt;>&amp;&apos;\" &#x9;&#xA;&#xD;' b='' c='\xC3\xA4&apos;'/>");
}

TEST(XML10AttributeValue, StandsInTheQuotesThatAreSet) {
  XML10Writer writer;
  writer.set(properties::quoteCharacter, '"');
  writer.startDocument();
  writer.startPrefixMapping("", "urn:\"'");
  writer.startElement("urn:\"'", "r", "r", namedAttributes({{"", "a", "a", "<>&'\" \t\n\r"}}));
  writer.endElement("urn:\"'", "r", "r");
  EXPECT_EQ(writer.text(), "<r xmlns=\"urn:&quot;'\" a=\"&lt;>&amp;'&quot; &#x9;&#xA;&#xD;\"/>");
}

TEST(XML10NamespaceName, IsEscapedAsAnAttributeValue) {
  EXPECT_EQ(inRoot([](XML10Writer& w) {
              w.startPrefixMapping("p", "<&'\t\n\r>");
              w.startElement("<&'\t\n\r>", "e", "p:e", AttributesImpl());
              w.endElement("<&'\t\n\r>", "e", "p:e");
            }),
            "<p:e xmlns:p='&lt;&amp;&apos;&#x9;&#xA;&#xD;>'/>");
}

// --- Names ---

TEST(XML10Name, MustBeOne) {
  const struct {
    const char* name;
    const char* refusal;
  } cases[] = {
      {"", "\"\" is not a name"},
      {"1", "\"1\" is not a name"},
      {"-a", "\"-a\" is not a name"},
      {"a b", "\"a b\" is not a name"},
      {"a>", "\"a>\" is not a name"},
      {"lang\nxml", "\"lang\nxml\" is not a name"},
      {":", "\":\" is not a qualified name"},
      {":a", "\":a\" is not a qualified name"},
      {"a:", "\"a:\" is not a qualified name"},
      {"a:b:c", "\"a:b:c\" is not a qualified name"},
      {"a:1", "\"a:1\" is not a qualified name"},
  };
  for (const auto& c : cases) {
    const std::string refusal = std::string("SAXException: ") + c.refusal;
    EXPECT_EQ(refusedInRoot([&](XML10Writer& w) { w.start(c.name); }), refusal);
    EXPECT_EQ(refusedInRoot([&](XML10Writer& w) { w.start("e", {{c.name, "v"}}); }), refusal);
  }
  EXPECT_EQ(inRoot([](XML10Writer& w) {
              w.start("\xC3\xA4_-.1", {{"\xF0\x90\x80\x80", "v"}});
              w.end("\xC3\xA4_-.1");
            }),
            "<\xC3\xA4_-.1 \xF0\x90\x80\x80='v'/>");
}

TEST(XML10Name, PartsMustFitEachOther) {
  EXPECT_EQ(refusedInRoot([](XML10Writer& w) { w.startElement("", "a", "b", AttributesImpl()); }),
            "SAXException: The local name \"a\" does not belong to \"b\"");
  EXPECT_EQ(
      refusedInRoot([](XML10Writer& w) { w.startElement("urn:u", "", "b", AttributesImpl()); }),
      "SAXException: The local name \"\" does not belong to \"b\"");
  EXPECT_EQ(
      refusedInRoot([](XML10Writer& w) { w.startElement("", "p:a", "p:a", AttributesImpl()); }),
      "SAXException: The local name \"p:a\" does not belong to \"p:a\"");
  EXPECT_EQ(refusedInRoot([](XML10Writer& w) {
              w.startElement("", "e", "e", namedAttributes({{"", "a", "b", ""}}));
            }),
            "SAXException: The local name \"a\" does not belong to \"b\"");
}

TEST(XML10Name, ThatWasRightMustStillFit) {
  XML10Writer writer;
  writer.startDocument();
  writer.start("r", {{"a", "1"}});
  writer.start("e", {{"a", "2"}});
  EXPECT_EQ(thrown([&] { writer.startElement("", "x", "e", AttributesImpl()); }),
            "SAXException: The local name \"x\" does not belong to \"e\"");
  EXPECT_EQ(thrown([&] {
              writer.startElement("", "e", "e", namedAttributes({{"", "x", "a", ""}}));
            }),
            "SAXException: The local name \"x\" does not belong to \"a\"");
  EXPECT_EQ(thrown([&] {
              writer.startElement("", "e", "e", namedAttributes({{"urn:u", "a", "a", ""}}));
            }),
            "SAXException: The attribute \"a\" has a namespace, but no prefix");
}

TEST(XML10Prefix, OfARefusedStartTagIsForgotten) {
  XML10Writer writer;
  writer.startDocument();
  writer.start("r");
  EXPECT_EQ(thrown([&] {
              writer.startElement(
                  "", "", "e",
                  namedAttributes({{"", "", "xmlns:p", "urn:p"}, {"", "", "a", "\x01"}}));
            }),
            "SAXException: You cannot put character U+0001 into an attribute value");
  EXPECT_EQ(thrown([&] { writer.startElement("urn:p", "e", "p:e", AttributesImpl()); }),
            "SAXException: The prefix \"p\" is not declared");
  writer.end("r");
  EXPECT_EQ(writer.text(), "<r/>");
}

TEST(XML10Prefix, MustBeBoundToTheNamespace) {
  XML10Writer writer;
  writer.startDocument();
  writer.startPrefixMapping("p", "urn:p");
  writer.startElement("urn:p", "r", "p:r", namedAttributes({{"urn:p", "a", "p:a", "1"}}));
  EXPECT_EQ(thrown([&] { writer.startElement("urn:q", "e", "p:e", AttributesImpl()); }),
            "SAXException: The prefix \"p\" is bound to \"urn:p\" and not to \"urn:q\"");
  EXPECT_EQ(thrown([&] { writer.startElement("urn:p", "e", "q:e", AttributesImpl()); }),
            "SAXException: The prefix \"q\" is not declared");
  EXPECT_EQ(thrown([&] { writer.startElement("", "e", "p:e", AttributesImpl()); }),
            "SAXException: The prefix \"p\" is bound to \"urn:p\" and not to \"\"");
  EXPECT_EQ(thrown([&] {
              writer.startElement("", "e", "e", namedAttributes({{"urn:q", "a", "p:a", ""}}));
            }),
            "SAXException: The prefix \"p\" is bound to \"urn:p\" and not to \"urn:q\"");
  EXPECT_EQ(thrown([&] {
              writer.startElement("", "e", "e", namedAttributes({{"urn:q", "a", "q:a", ""}}));
            }),
            "SAXException: The prefix \"q\" is not declared");
  EXPECT_EQ(thrown([&] {
              writer.startElement("", "e", "e", namedAttributes({{"urn:p", "a", "a", ""}}));
            }),
            "SAXException: The attribute \"a\" has a namespace, but no prefix");
  // Redeclared inside, and as before behind that.
  writer.startPrefixMapping("p", "urn:q");
  writer.startElement("urn:q", "e", "p:e", namedAttributes({{"urn:q", "a", "p:a", "2"}}));
  EXPECT_EQ(thrown([&] { writer.startElement("urn:p", "e", "p:e", AttributesImpl()); }),
            "SAXException: The prefix \"p\" is bound to \"urn:q\" and not to \"urn:p\"");
  writer.endElement("urn:q", "e", "p:e");
  writer.endPrefixMapping("p");
  writer.startElement("urn:p", "e", "p:e", namedAttributes({{"urn:p", "a", "p:a", "3"}}));
  writer.endElement("urn:p", "e", "p:e");
  writer.endElement("urn:p", "r", "p:r");
  EXPECT_EQ(writer.text(),
            "<p:r xmlns:p='urn:p' p:a='1'><p:e xmlns:p='urn:q' p:a='2'/><p:e p:a='3'/></p:r>");
}

TEST(XML10Prefix, XmlIsAlwaysBound) {
  EXPECT_EQ(inRoot([](XML10Writer& w) {
              w.startElement("", "e", "e", namedAttributes({{kXML, "lang", "xml:lang", "de"}}));
              w.endElement("", "e", "e");
            }),
            "<e xml:lang='de'/>");
  EXPECT_EQ(refusedInRoot([](XML10Writer& w) {
              w.startElement("", "e", "e", namedAttributes({{"urn:x", "lang", "xml:lang", "de"}}));
            }),
            "SAXException: The prefix \"xml\" is bound to \"" + kXML + "\" and not to \"urn:x\"");
  EXPECT_EQ(refusedInRoot(
                [](XML10Writer& w) { w.startElement(kXMLNS, "e", "xmlns:e", AttributesImpl()); }),
            "SAXException: The prefix \"xmlns\" is not declared");
}

TEST(XML10DefaultNamespace, CountsForElementsWithoutPrefix) {
  XML10Writer writer;
  writer.startDocument();
  EXPECT_EQ(thrown([&] { writer.startElement("urn:d", "r", "r", AttributesImpl()); }),
            "SAXException: The element \"r\" has no prefix, but \"urn:d\" is not the default "
            "namespace");
  writer.startPrefixMapping("", "urn:d");
  writer.startElement("urn:d", "r", "r", namedAttributes({{"", "a", "a", ""}}));
  EXPECT_EQ(thrown([&] { writer.start("b"); }),
            "SAXException: The element \"b\" has no namespace, but the default namespace is "
            "\"urn:d\"");
  writer.startPrefixMapping("", "");
  writer.start("b");
  writer.leaf("c");
  EXPECT_EQ(thrown([&] { writer.startElement("urn:d", "c", "c", AttributesImpl()); }),
            "SAXException: The element \"c\" has no prefix, but \"urn:d\" is not the default "
            "namespace");
  writer.end("b");
  writer.startElement("urn:d", "d", "d", AttributesImpl());
  writer.endElement("urn:d", "d", "d");
  writer.endElement("urn:d", "r", "r");
  EXPECT_EQ(writer.text(), "<r xmlns='urn:d' a=''><b xmlns=''><c/></b><d/></r>");
}

// --- Declarations ---

TEST(XML10Declaration, MustBeAllowed) {
  const struct {
    std::string prefix;
    std::string uri;
    std::string refusal;
  } cases[] = {
      {"xmlns", "urn:x", "The prefix \"xmlns\" cannot be declared"},
      {"p", kXMLNS, "The namespace \"" + kXMLNS + "\" cannot be declared"},
      {"", kXMLNS, "The namespace \"" + kXMLNS + "\" cannot be declared"},
      {"xml", "urn:x", "The prefix \"xml\" cannot be bound to another namespace"},
      {"p", kXML, "The namespace \"" + kXML + "\" cannot be bound to another prefix"},
      {"", kXML, "The namespace \"" + kXML + "\" cannot be bound to another prefix"},
      {"p", "", "The prefix \"p\" cannot be undeclared"},
      {"1", "urn:x", "\"1\" is not a name"},
      {"a:b", "urn:x", "\"a:b\" is not a name without a colon"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(refusedInRoot([&](XML10Writer& w) { w.startPrefixMapping(c.prefix, c.uri); }),
              "SAXException: " + c.refusal);
    if (c.prefix.find_first_of("1:") != std::string::npos) continue;
    const std::string qName = c.prefix.empty() ? "xmlns" : "xmlns:" + c.prefix;
    EXPECT_EQ(refusedInRoot([&](XML10Writer& w) {
                w.startElement("", "", "e", namedAttributes({{"", "", qName, c.uri}}));
              }),
              "SAXException: " + c.refusal);
  }
  EXPECT_EQ(inRoot([](XML10Writer& w) {
              w.startPrefixMapping("xml", kXML);
              w.leaf("e");
            }),
            "<e xmlns:xml='" + kXML + "'/>");
}

TEST(XML10Declaration, CanStandOnlyOnceOnAnElement) {
  XML10Writer writer;
  writer.startDocument();
  writer.startPrefixMapping("p", "urn:p");
  writer.startPrefixMapping("q", "urn:p");
  writer.startPrefixMapping("p", "urn:p");
  EXPECT_EQ(thrown([&] { writer.start("r"); }),
            "SAXException: The prefix \"p\" is declared twice on one element");
  EXPECT_EQ(writer.text(), "");
}

TEST(XML10Declaration, CannotComeWhereNoElementCan) {
  for (const auto& place : kPlaces) {
    XML10Writer writer;
    bringTo(place.place, writer);
    const bool isElementAllowed = place.state == 1 || place.state == 3 || place.state == 4;
    EXPECT_EQ(
        thrown([&] { writer.startPrefixMapping("p", "urn:p"); }),
        isElementAllowed ? "nothing" : "SAXException: You cannot declare a namespace at this point")
        << place.name;
  }
}

TEST(XML10Declaration, AsAttributeCountsAsAMapping) {
  EXPECT_EQ(inRoot([](XML10Writer& w) {
              w.startElement("urn:p", "e", "p:e",
                             namedAttributes({{kXMLNS, "p", "xmlns:p", "urn:p"},
                                              {"urn:p", "a", "p:a", "1"},
                                              {kXMLNS, "xmlns", "xmlns", "urn:d"}}));
              w.startElement("urn:d", "f", "f", namedAttributes({{"", "", "xmlns:q", "urn:<"}}));
              w.endElement("urn:d", "f", "f");
              w.endElement("urn:p", "e", "p:e");
            }),
            "<p:e xmlns:p='urn:p' p:a='1' xmlns='urn:d'><f xmlns:q='urn:&lt;'/></p:e>");
}

TEST(XML10Declaration, AsAttributeIsNotWrittenBesideItsMapping) {
  EXPECT_EQ(inRoot([](XML10Writer& w) {
              w.startPrefixMapping("p", "urn:p");
              w.startPrefixMapping("", "urn:d");
              w.startElement("urn:d", "e", "e",
                             namedAttributes({{"", "a", "a", "1"},
                                              {"", "", "xmlns", "urn:d"},
                                              {"", "", "xmlns:q", "urn:q"},
                                              {"", "", "xmlns:p", "urn:p"}}));
              w.endElement("urn:d", "e", "e");
            }),
            "<e xmlns:p='urn:p' xmlns='urn:d' a='1' xmlns:q='urn:q'/>");
}

TEST(XML10Declaration, AsAttributeMustAgreeWithItsMapping) {
  XML10Writer writer;
  writer.startDocument();
  writer.startPrefixMapping("p", "urn:p");
  EXPECT_EQ(thrown([&] {
              writer.startElement("", "r", "r", namedAttributes({{"", "", "xmlns:p", "urn:q"}}));
            }),
            "SAXException: The prefix \"p\" is declared twice on one element");
  EXPECT_EQ(refusedInRoot([](XML10Writer& w) {
              w.startElement(
                  "", "e", "e",
                  namedAttributes({{"", "", "xmlns:p", "urn:p"}, {"", "", "xmlns:p", "urn:p"}}));
            }),
            "SAXException: The prefix \"p\" is declared twice on one element");
  EXPECT_EQ(
      refusedInRoot([](XML10Writer& w) {
        w.startElement("", "e", "e", namedAttributes({{"urn:x", "p", "xmlns:p", "urn:p"}}));
      }),
      "SAXException: The prefix \"xmlns\" is bound to \"" + kXMLNS + "\" and not to \"urn:x\"");
  EXPECT_EQ(refusedInRoot([](XML10Writer& w) {
              w.startElement("", "e", "e", namedAttributes({{kXMLNS, "q", "xmlns:p", "urn:p"}}));
            }),
            "SAXException: The local name \"q\" does not belong to \"xmlns:p\"");
  EXPECT_EQ(refusedInRoot([](XML10Writer& w) {
              w.startElement("", "e", "e", namedAttributes({{"", "", "xmlns:", "urn:p"}}));
            }),
            "SAXException: \"xmlns:\" is not a qualified name");
}

TEST(XML10Declaration, IsNotAnyNameThatBeginsLikeOne) {
  EXPECT_EQ(inRoot([](XML10Writer& w) {
              w.start("e", {{"xmlnsx", "1"}, {"xmln", "2"}});
              w.end("e");
            }),
            "<e xmlnsx='1' xmln='2'/>");
}

// --- Events without namespaces ---

TEST(XML10RawNames, AreWrittenWhereTheirPrefixesAreBound) {
  EXPECT_EQ(inRoot([](XML10Writer& w) {
              w.startElement("", "", "p:e",
                             namedAttributes({{"", "", "p:a", "1"}, {"", "", "xmlns:p", "urn:p"}}));
              w.startElement("", "", "p:f", namedAttributes({{"", "", "xmlns", "urn:d"}}));
              w.startElement("", "", "g", AttributesImpl());
              w.endElement("", "", "g");
              w.endElement("", "", "p:f");
              w.endElement("", "", "p:e");
            }),
            "<p:e p:a='1' xmlns:p='urn:p'><p:f xmlns='urn:d'><g/></p:f></p:e>");
  EXPECT_EQ(refusedInRoot([](XML10Writer& w) { w.startElement("", "", "q:e", AttributesImpl()); }),
            "SAXException: The prefix \"q\" is not declared");
  EXPECT_EQ(refusedInRoot([](XML10Writer& w) {
              w.startElement("", "", "e", namedAttributes({{"", "", "q:a", ""}}));
            }),
            "SAXException: The prefix \"q\" is not declared");
}

// --- Empty elements ---

TEST(XML10EmptyElement, HasATagOrTwo) {
  for (const bool emptyTags : {true, false}) {
    XML10Writer writer({.emptyTags = emptyTags});
    writer.startDocument();
    writer.leaf("r");
    writer.reset();
    writer.startDocument();
    writer.start("r");
    writer.start("e", {{"a", "1"}});
    writer.end("e");
    writer.leaf("e");
    writer.end("r");
    EXPECT_EQ(writer.text(),
              emptyTags ? "<r/><r><e a='1'/><e/></r>" : "<r></r><r><e a='1'></e><e></e></r>");
  }
}

}  // namespace
