#include <gtest/gtest.h>

#include "X891WriterSupport.h"

// Names, namespaces, and what is no start tag.

namespace x891_test {
namespace {

using namespace Tavrin;
using namespaces::xml;
using namespaces::xmlns;

// In declarations and in names, index 1 is the built-in entry.
TEST(X891WriterNames, CountTheBuiltInPrefixEverywhere) {
  EXPECT_EQ(written([](Writer& writer) {
              writer.startDocument();
              writer.startPrefixMapping("p", "u");
              writer.startPrefixMapping("q", "u");
              writer.startElement("u", "a", "q:a",
                                  namedAttributes({{"u", "a", "p:a", "v"}, {"", "a", "a", "v"}}));
              writer.startPrefixMapping("q", "v");
              writer.startElement("v", "a", "q:a", AttributesImpl());
              writer.endElement("v", "a", "q:a");
              writer.startElement("u", "a", "q:a", AttributesImpl());
              writer.endElement("u", "a", "q:a");
              writer.endElement("u", "a", "q:a");
              writer.endDocument();
            }),
            document("78 CF 00 'p' 00 'u' CF 00 'q' 81 F0 3F 82 81 00 'a'"
                     "7B 81 81 80 40 'v' 78 80 80 F0"
                     "38 CF 82 00 'v' F0 3F 82 82 80 F0"
                     "00 FF F0"));
}

TEST(X891WriterNames, NeverDeclareXml) {
  EXPECT_EQ(written([](Writer& writer) {
              writer.startDocument();
              writer.startPrefixMapping("xml", xml);
              writer.startElement(
                  xml, "a", "xml:a",
                  namedAttributes({{xml, "b", "xml:b", "v"}, {xmlns, "xml", "xmlns:xml", xml}}));
              writer.endElement(xml, "a", "xml:a");
              writer.endDocument();
            }),
            document("7F 80 80 00 'a' 7B 80 80 00 'b' 40 'v' FF F0"));
}

TEST(X891WriterNames, TakeAttributesForDeclarationsThatWereNotTold) {
  const auto list = namedAttributes({{"", "xmlns", "xmlns", "u"},
                                     {xmlns, "p", "xmlns:p", "v"},
                                     {"", "q", "xmlns:q", "w"},
                                     {"v", "b", "p:b", "x"}});
  const std::string expected = document(
      "78 CD 00 'u' CF 00 'p' 00 'v' CF 00 'q' 00 'w' F0 3D 81 00 'a' 7B 81 82 00 'b' 40 'x' FF "
      "F0");
  const auto a = [&](Writer& writer) {
    writer.startElement("u", "a", "a", list);
    writer.endElement("u", "a", "a");
    writer.endDocument();
  };
  EXPECT_EQ(written([&](Writer& writer) {
              writer.startDocument();
              a(writer);
            }),
            expected);
  EXPECT_EQ(written([&](Writer& writer) {
              writer.startDocument();
              writer.startPrefixMapping("", "u");
              writer.startPrefixMapping("p", "v");
              writer.startPrefixMapping("q", "w");
              a(writer);
            }),
            expected);
}

// Beside the namespace, the qualified name tells of a declaration, if there is one.
TEST(X891WriterNames, OfTheNamespaceOfDeclarationsNeedNoQualifiedName) {
  EXPECT_EQ(written([](Writer& writer) {
              writer.startDocument();
              writer.startElement(
                  "u", "a", "n:a",
                  namedAttributes({{xmlns, "n", "", "u"}, {xmlns, "xmlns", "", "v"}}));
              writer.endElement("u", "a", "n:a");
              writer.endDocument();
            }),
            document("38 CF 00 'n' 00 'u' CD 00 'v' F0 3F 81 81 00 'a' FF"));
}

TEST(X891WriterNames, LeaveScopeWithTheirElement) {
  EXPECT_EQ(content([](Writer& writer) {
              writer.startPrefixMapping("p", "u");
              writer.startPrefixMapping("", "v");
              writer.startElement("u", "b", "p:b", AttributesImpl());
              writer.endElement("u", "b", "p:b");
              EXPECT_EQ(thrown([&] { writer.startElement("u", "b", "p:b", AttributesImpl()); }),
                        "SAXException: The prefix \"p\" is not declared");
              EXPECT_EQ(thrown([&] { writer.startElement("v", "b", "b", AttributesImpl()); }),
                        "SAXException: The element \"b\" has no prefix, but \"v\" is not the "
                        "default namespace");
            }),
            document("3C 00 'a' 38 CF 00 'p' 00 'u' CD 00 'v' F0 3F 81 81 00 'b' FF F0"));
}

TEST(X891WriterNames, MayLackAQualifiedName) {
  EXPECT_EQ(content([](Writer& writer) {
              writer.startElement("", "b", "", namedAttributes({{"", "c", "", "d"}}));
              writer.endElement("", "b", "");
            }),
            document("3C 00 'a' 7C 00 'b' 78 00 'c' 40 'd' FF FF"));
}

/// What refuses a start tag.
std::string refusalOf(const std::string& uri, const std::string& localName,
                      const std::string& qName, std::initializer_list<Named> list = {}) {
  return refusal([&](Writer& w) { w.startElement(uri, localName, qName, namedAttributes(list)); });
}

TEST(X891WriterNames, AreRefusedWhereTheyAreNone) {
  EXPECT_EQ(refusalOf("", "", ""), "SAXException: \"\" is not a name");
  EXPECT_EQ(refusalOf("", "1", "1"), "SAXException: \"1\" is not a name");
  EXPECT_EQ(refusalOf("", "a:b", "a:b"),
            "SAXException: The local name \"a:b\" does not belong to \"a:b\"");
  EXPECT_EQ(refusalOf("", "\xFF", "\xFF"),
            "SAXException: You cannot put UTF-8 octet 0xFF into a name");
  EXPECT_EQ(refusalOf("", "b", "c"), "SAXException: The local name \"b\" does not belong to \"c\"");
  EXPECT_EQ(refusalOf("", "b", ":b"),
            "SAXException: The local name \"b\" does not belong to \":b\"");
  EXPECT_EQ(refusalOf("u", "b", "p:xb"),
            "SAXException: The local name \"b\" does not belong to \"p:xb\"");
  EXPECT_EQ(refusalOf("", "b", "b", {{"", "", "", "v"}}), "SAXException: \"\" is not a name");
  EXPECT_EQ(refusalOf("", "b", "b", {{"", "c d", "c d", "v"}}),
            "SAXException: \"c d\" is not a name");
}

// As text it would be a declaration, so no reader takes it.
TEST(X891WriterNames, OfAnAttributeAreNotXmlns) {
  const char* const message =
      "SAXException: An attribute with the name \"xmlns\" is a namespace declaration";
  EXPECT_EQ(refusalOf("", "b", "b", {{"", "xmlns", "", "u"}}), message);
  EXPECT_EQ(refusalOf("", "b", "b", {{"", "c", "c", "1"}, {"", "xmlns", "", "u"}}), message);
  EXPECT_EQ(content([](Writer& writer) {
              writer.startElement("", "xmlns", "xmlns", AttributesImpl());
              writer.endElement("", "xmlns", "xmlns");
            }),
            document("3C 00 'a' 3C 04 'xmlns' FF F0"));
}

// No prefix stands for the namespace of declarations but xmlns.
TEST(X891WriterNames, OfTheNamespaceOfDeclarationsAreRefusedWhereTheyAreSpeltOtherwise) {
  EXPECT_EQ(refusalOf("", "b", "b", {{xmlns, "n", "xml:n", "u"}}),
            "SAXException: The prefix \"xml\" is bound to \"" + std::string(xml) +
                "\" and not to \"" + xmlns + '"');
  EXPECT_EQ(refusalOf("", "b", "b", {{xmlns, "n", "p:n", "u"}}),
            "SAXException: The prefix \"p\" is not declared");
  EXPECT_EQ(refusalOf("", "b", "b", {{"", "c", "c", "1"}, {xmlns, "n", "n", "u"}}),
            "SAXException: The attribute \"n\" has a namespace, but no prefix");
  EXPECT_EQ(refusalOf("", "b", "b", {{xmlns, "n", "m", "u"}}),
            "SAXException: The local name \"n\" does not belong to \"m\"");
  EXPECT_EQ(refusalOf("", "b", "b", {{xmlns, "xmlns", "p:xmlns", "u"}}),
            "SAXException: The prefix \"p\" is not declared");
}

TEST(X891WriterNames, AreRefusedWithoutTheirDeclaration) {
  EXPECT_EQ(refusalOf("u", "b", "p:b"), "SAXException: The prefix \"p\" is not declared");
  EXPECT_EQ(refusalOf("", "b", "p:b"), "SAXException: The prefix \"p\" is not declared");
  EXPECT_EQ(refusalOf(xmlns, "b", "xmlns:b"), "SAXException: The prefix \"xmlns\" is not declared");
  EXPECT_EQ(
      refusalOf("u", "b", "b"),
      "SAXException: The element \"b\" has no prefix, but \"u\" is not the default namespace");
  EXPECT_EQ(refusalOf("u", "b", "xml:b"), "SAXException: The prefix \"xml\" is bound to \"" +
                                              std::string(xml) + "\" and not to \"u\"");
  EXPECT_EQ(refusalOf("", "b", "b", {{"u", "c", "p:c", "v"}}),
            "SAXException: The prefix \"p\" is not declared");
  EXPECT_EQ(refusalOf("", "b", "b", {{"u", "c", "c", "v"}}),
            "SAXException: The attribute \"c\" has a namespace, but no prefix");
  Writer writer;
  writer.startDocument();
  writer.startPrefixMapping("", "u");
  EXPECT_EQ(
      thrown([&] { writer.startElement("v", "a", "a", AttributesImpl()); }),
      "SAXException: The element \"a\" has no prefix, but \"v\" is not the default namespace");
  EXPECT_EQ(thrown([&] { writer.startElement("", "a", "a", AttributesImpl()); }),
            "SAXException: The element \"a\" has no namespace, but the default namespace is \"u\"");
  // The declaration waits for a better element.
  writer.startElement("u", "a", "a", AttributesImpl());
  EXPECT_EQ(writer.news(), document("38 CD 00 'u' F0 3D 81 00 'a'"));
}

TEST(X891WriterNames, AreRefusedWhereTheyStandTwice) {
  EXPECT_EQ(refusalOf("", "b", "b", {{"", "c", "c", "1"}, {"", "c", "c", "2"}}),
            "SAXException: The attribute \"c\" is given twice");
  EXPECT_EQ(refusalOf("", "b", "b",
                      {{"", "xmlns", "xmlns:p", "u"},
                       {"", "xmlns", "xmlns:q", "u"},
                       {"u", "c", "p:c", "1"},
                       {"u", "c", "q:c", "2"}}),
            "SAXException: The attribute \"q:c\" is given twice");
  for (const int count : {8, 9, 1000}) {
    AttributesImpl list;
    for (int i = 0; i < count; ++i) {
      const std::string name = "n" + std::to_string(i);
      list.addAttribute("", name, name, "CDATA", "");
    }
    Writer writer;
    writer.startDocument();
    AttributesImpl twice = list;
    twice.addAttribute("", "n0", "n0", "CDATA", "");
    EXPECT_EQ(thrown([&] { writer.startElement("", "a", "a", twice); }),
              "SAXException: The attribute \"n0\" is given twice");
    EXPECT_EQ(thrown([&] { writer.startElement("", "a", "a", list); }), "nothing");
  }
}

TEST(X891WriterNames, AreRefusedInDeclarationsThatAreNotAllowed) {
  const auto mapping = [](const std::string& prefix, const std::string& uri) {
    return refusal([&](Writer& w) { w.startPrefixMapping(prefix, uri); });
  };
  EXPECT_EQ(mapping("p", ""), "SAXException: The prefix \"p\" cannot be undeclared");
  EXPECT_EQ(mapping("xml", "u"),
            "SAXException: The prefix \"xml\" cannot be bound to another namespace");
  EXPECT_EQ(mapping("xmlns", "u"), "SAXException: The prefix \"xmlns\" cannot be declared");
  EXPECT_EQ(mapping("p", xml), "SAXException: The namespace \"" + std::string(xml) +
                                   "\" cannot be bound to another prefix");
  EXPECT_EQ(mapping("p", xmlns),
            "SAXException: The namespace \"" + std::string(xmlns) + "\" cannot be declared");
  EXPECT_EQ(mapping("1", "u"), "SAXException: \"1\" is not a name");
  EXPECT_EQ(mapping("p", "\x02"),
            "SAXException: You cannot put character U+0002 into a namespace name");
  EXPECT_EQ(refusalOf("", "b", "b", {{"", "p", "xmlns:p", ""}}),
            "SAXException: The prefix \"p\" cannot be undeclared");
  EXPECT_EQ(refusalOf("", "b", "b", {{"", "p", "xmlns:p", "u"}, {"", "p", "xmlns:p", "v"}}),
            "SAXException: The prefix \"p\" is declared twice on one element");
  Writer writer;
  EXPECT_EQ(thrown([&] { writer.startPrefixMapping("p", "u"); }),
            "SAXException: You cannot declare a namespace at this point");
  writer.startDocument();
  writer.startPrefixMapping("p", "u");
  EXPECT_EQ(thrown([&] { writer.startPrefixMapping("p", "u"); }),
            "SAXException: The prefix \"p\" is declared twice on one element");
  writer.start("a");
  writer.startPrefixMapping("p", "v");
  EXPECT_EQ(thrown([&] { writer.end("a"); }), "SAXException: A prefix mapping needs an element");
}

TEST(X891WriterNames, MayBeUndeclaredInXML11) {
  EXPECT_EQ(written([](Writer& writer) {
              writer.set(properties::documentXMLVersion, std::string("1.1"));
              writer.startDocument();
              writer.startPrefixMapping("p", "");
              writer.leaf("a");
              writer.endDocument();
            }),
            hex("E0 00 00 01 01 02 '1.1' 38 CE 00 'p' F0 3C 00 'a' FF"));
}

TEST(X891WriterValues, AreRefusedWithWhatIsNoText) {
  EXPECT_EQ(refusalOf("", "b", "b", {{"", "c", "c", "\x1F"}}),
            "SAXException: You cannot put character U+001F into an attribute value");
  EXPECT_EQ(refusalOf("", "b", "b", {{"", "c", "c", "\xC0\x80"}}),
            "SAXException: You cannot put UTF-8 octet 0xC0 into an attribute value");
}

// A refused tag leaves no value in the table that a later one could refer to, looked at or not.
TEST(X891WriterValues, AreRefusedAgainAndLeaveNothing) {
  const std::string refused =
      "SAXException: You cannot put character U+0001 into an attribute value";
  const std::string bad = std::string(25, 'v') + '\x01';
  EXPECT_EQ(written([&](Writer& writer) {
              writer.startDocument();
              writer.start("a");
              for (int i = 0; i < 2; ++i) {
                EXPECT_EQ(thrown([&] {
                            writer.startElement(
                                "", "b", "b",
                                namedAttributes({{"", "c", "c", "good"}, {"", "d", "d", bad}}));
                          }),
                          refused);
              }
              writer.leaf("b", {{"c", "good"}});
              writer.leaf("b", {{"c", "good"}});
              EXPECT_EQ(thrown([&] { writer.leaf("b", {{"c", bad}}); }), refused);
              writer.end("a");
              writer.endDocument();
            }),
            hex("E0 00 00 01 00 3C 00 'a' 7C 00 'b' 78 00 'c' 43 'good' FF 41 00 80 FF FF"));
}

TEST(X891WriterElements, AreRefusedWhereTheyCannotEnd) {
  EXPECT_EQ(refusal([](Writer& w) { w.end("b"); }),
            "SAXException: Name mismatch between start and end element");
}

TEST(X891WriterElements, AreRefusedWhereTheyAreTooDeep) {
  Writer writer;
  EXPECT_EQ(UINT64_MAX, *static_cast<std::uint64_t*>(writer.getProperty(properties::maximumDepth)));
  writer.set(properties::maximumDepth, std::uint64_t{2});
  writer.startDocument();
  writer.start("a");
  writer.start("b");
  writer.news();
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(thrown([&] { writer.start("c"); }),
              "SAXException: Elements nested deeper than 2 (property maximum-depth)");
  }
  EXPECT_EQ(writer.news(), "");
  writer.setProperty(properties::maximumDepth, nullptr);
  writer.leaf("c");
  writer.end("b");
  writer.end("a");
  writer.endDocument();
  EXPECT_EQ(writer.written(), document("3C 00 'a' 3C 00 'b' 3C 00 'c' FF FF"));
}

}  // namespace
}  // namespace x891_test
