#include <Tavrin/Identifiers.h>

#include <gtest/gtest.h>

#include "FIWriterProbe.h"
#include "WhatIsThrown.h"

// Qualified names and namespace declarations through the primitives that write them.

namespace writer_test {
namespace {

using Tavrin::namespaces::xml;
using Tavrin::namespaces::xmlns;

using Name = Probe::QualifiedName;

TEST(WriterQualifiedName, IsOrderedByLocalNameThenPrefixThenNamespaceName) {
  const std::vector<Name> ordered = {
      {"", "", ""},    {"p", "u", ""},      {"z", "z", "a"},       {"", "", "aa"},
      {"", "", "b"},   {"", "u", "b"},      {"", "v", "b"},        {"p", "", "b"},
      {"p", "u", "b"}, {"p", "u\x01", "b"}, {"p", "v", "b"},       {"pp", "", "b"},
      {"q", "", "b"},  {"", "", "b\x7F"},   {"", "", "b\xC3\xA9"}, {"", "", "c"},
  };
  for (std::size_t i = 0; i < ordered.size(); ++i) {
    for (std::size_t k = 0; k < ordered.size(); ++k) {
      EXPECT_EQ(ordered[i] < ordered[k], i < k) << i << " and " << k;
    }
  }
}

/// The names of no part, a namespace name, a prefix and both, as literals.
std::string literals(int bits) {
  Probe writer;
  Probe::NameMap table;
  writer.encodeNamespaces({"p", "u"});
  writer.output.news();
  for (const Name& name : {Name{"", "", "a"}, {"", "u", "b"}, {"p", "", "c"}, {"p", "u", "d"}}) {
    writer.encodeQualifiedName(bits, table, name);
  }
  return writer.news();
}

TEST(WriterQualifiedName, BeginsWithAnOctetThatTellsItsParts) {
  EXPECT_EQ(literals(0x3C), hex("3C 00 'a' 3D 81 00 'b' 3E 81 00 'c' 3F 81 81 00 'd'"));
  EXPECT_EQ(literals(0x7C), hex("7C 00 'a' 7D 81 00 'b' 7E 81 00 'c' 7F 81 81 00 'd'"));
  EXPECT_EQ(literals(0x78), hex("78 00 'a' 79 81 00 'b' 7A 81 00 'c' 7B 81 81 00 'd'"));
}

TEST(WriterQualifiedName, CountsDeclaredPartsFromOne) {
  Probe writer;
  Probe::NameMap table;
  writer.encodeNamespaces({"p", "u", "q", "v"});
  writer.output.news();
  writer.encodeQualifiedName(0x3C, table, {"p", "v", "a"});
  EXPECT_EQ(writer.news(), hex("3F 81 82 00 'a'"));
  writer.encodeQualifiedName(0x3C, table, {"q", "u", "a"});
  EXPECT_EQ(writer.news(), hex("3F 82 81 80"));
}

TEST(WriterQualifiedName, HasBuiltInXmlParts) {
  Probe writer;
  Probe::NameMap table;
  writer.encodeQualifiedName(0x78, table, {"xml", xml, "lang"});
  EXPECT_EQ(writer.news(), hex("7B 80 80 03 'lang'"));
  writer.encodeQualifiedName(0x3C, table, {"xml", xml, "lang"});
  EXPECT_EQ(writer.news(), hex("3F 80 80 80"));
  writer.encodeQualifiedName(0x3C, table, {"", xml, "lang"});
  EXPECT_EQ(writer.news(), hex("3D 80 80"));
  writer.encodeQualifiedName(0x3C, table, {"xml", "", "lang"});
  EXPECT_EQ(writer.news(), hex("3E 80 80"));
}

TEST(WriterQualifiedName, TakesTheBuiltInPartAlsoWhereItWasDeclared) {
  Probe writer;
  Probe::NameMap table;
  writer.encodeNamespaces({"xml", xml, "p", "u"});
  writer.output.news();
  writer.encodeQualifiedName(0x3C, table, {"xml", xml, "a"});
  writer.encodeQualifiedName(0x3C, table, {"p", "u", "a"});
  EXPECT_EQ(writer.news(), hex("3F 80 80 00 'a' 3F 82 82 80"));
}

TEST(WriterQualifiedName, EntersItsTableInOrderOfAppearance) {
  Probe writer;
  Probe::NameMap table;
  writer.encodeQualifiedName(0x3C, table, {"", "", "b"});
  writer.encodeQualifiedName(0x3C, table, {"", "", "a"});
  writer.encodeQualifiedName(0x3C, table, {"xml", xml, "a"});
  EXPECT_EQ(writer.written(), hex("3C 00 'b' 3C 00 'a' 3F 80 80 81"));
  EXPECT_EQ(table.size(), 3U);
  EXPECT_EQ(table.at({"", "", "b"}), 0U);
  EXPECT_EQ(table.at({"", "", "a"}), 1U);
  EXPECT_EQ(table.at({"xml", xml, "a"}), 2U);
}

/// What refuses a name when the prefix `p` and the namespace name `u` are declared. Nothing may
/// have been written, and no table may have changed.
std::string refusal(const Name& name) {
  Probe writer;
  Probe::NameMap table;
  writer.encodeNamespaces({"p", "u"});
  writer.output.news();
  const std::string outcome = thrown([&] { writer.encodeQualifiedName(0x3C, table, name); });
  if (!writer.output.news().empty()) return "something was written";
  if (!table.empty()) return "the name was added";
  writer.encodeQualifiedName(0x3C, table, {"p", "u", name.localName});
  if (writer.news() != hex("3F 81 81 00 '" + name.localName + "'")) return "a table changed";
  return outcome;
}

TEST(WriterQualifiedName, IsRefusedWhenAPartWasNotDeclared) {
  EXPECT_EQ(refusal({"q", "u", "a"}), "SAXException: Undeclared prefix \"q\"");
  EXPECT_EQ(refusal({"p", "v", "a"}), "SAXException: Undeclared namespace \"v\"");
  EXPECT_EQ(refusal({"q", "v", "a"}), "SAXException: Undeclared prefix \"q\"");
  EXPECT_EQ(refusal({"q", "", "a"}), "SAXException: Undeclared prefix \"q\"");
  EXPECT_EQ(refusal({"", "v", "a"}), "SAXException: Undeclared namespace \"v\"");
  EXPECT_EQ(refusal({"u", "p", "a"}), "SAXException: Undeclared prefix \"u\"");
  EXPECT_EQ(refusal({"P", "u", "a"}), "SAXException: Undeclared prefix \"P\"");
  EXPECT_EQ(refusal({"xml", "v", "a"}), "SAXException: Undeclared namespace \"v\"");
  EXPECT_EQ(refusal({"q", xml, "a"}), "SAXException: Undeclared prefix \"q\"");
  EXPECT_EQ(refusal({"xmlns", xmlns, "a"}), "SAXException: Undeclared prefix \"xmlns\"");
  EXPECT_EQ(refusal({"", xmlns, "a"}),
            "SAXException: Undeclared namespace \"" + std::string(xmlns) + "\"");
  EXPECT_EQ(refusal({"a\"b", "u", "a"}), "SAXException: Undeclared prefix \"a\"b\"");
}

/// What a list of declarations writes.
std::string declarations(const std::vector<std::string>& pairs) {
  Probe writer;
  writer.encodeNamespaces(pairs);
  return writer.written();
}

TEST(WriterNamespaces, BeginWithAnOctetThatTellsTheirPartsAndEndWithATerminator) {
  EXPECT_EQ(declarations({}), "F0");
  EXPECT_EQ(declarations({"p", "u"}), hex("CF 00 'p' 00 'u' F0"));
  EXPECT_EQ(declarations({"", "u"}), hex("CD 00 'u' F0"));
  EXPECT_EQ(declarations({"p", ""}), hex("CE 00 'p' F0"));
  EXPECT_EQ(declarations({"", ""}), hex("CC F0"));
}

TEST(WriterNamespaces, CountFromZeroWithoutABuiltInEntry) {
  EXPECT_EQ(declarations({"p", "u", "p", "u"}), hex("CF 00 'p' 00 'u' CF 80 80 F0"));
  EXPECT_EQ(declarations({"p", "u", "q", "u", "p", "v", "", "v", "q", ""}),
            hex("CF 00 'p' 00 'u' CF 00 'q' 80 CF 80 00 'v' CD 81 CE 81 F0"));
  EXPECT_EQ(declarations({"xml", xml, "xml", xml}),
            hex("CF 02 'xml' 23 'http://www.w3.org/XML/1998/namespace' CF 80 80 F0"));
}

TEST(WriterNamespaces, KeepPrefixesAndNamespaceNamesApart) {
  EXPECT_EQ(declarations({"a", "b", "b", "a", "a", "a"}),
            hex("CF 00 'a' 00 'b' CF 00 'b' 00 'a' CF 80 81 F0"));
}

TEST(WriterNamespaces, HaveAFormForEveryLength) {
  Probe writer;
  writer.encodeNamespaces({textOf(64), textOf(65), textOf(320), textOf(321)});
  EXPECT_EQ(writer.output.text(), octets("CF 3F") + textOf(64) + octets("40 00") + textOf(65) +
                                      octets("CF 40 FF") + textOf(320) + octets("60 00 00 00 00") +
                                      textOf(321) + octets("F0"));
}

TEST(WriterAttributes, AreCountedWithoutNamespaceDeclarations) {
  const Probe writer;
  EXPECT_EQ(writer.countAttributes(Tavrin::AttributesImpl()), 0);
  EXPECT_EQ(writer.countAttributes(namedAttributes({{xmlns, "p", "xmlns:p", "u"}})), 0);
  EXPECT_EQ(writer.countAttributes(namedAttributes({{xmlns, "p", "xmlns:p", "u"},
                                                    {"", "a", "a", ""},
                                                    {xmlns, "xmlns", "xmlns", "v"},
                                                    {"u", "b", "p:b", ""},
                                                    {"", "xmlns", "xmlns", "no declaration"}})),
            3);
}

TEST(WriterAttributes, AreNameAndValueAndOweATerminator) {
  Probe writer;
  writer.encodeNamespaces({"p", "u"});
  writer.output.news();
  const auto list = namedAttributes({{"", "a", "a", "1"},
                                     {xmlns, "p", "xmlns:p", "u"},
                                     {"u", "a", "p:a", ""},
                                     {"", "a", "a", "1"},
                                     {xml, "a", "xml:a", "1234567"}});
  writer.encodeAttributes(list);
  EXPECT_EQ(writer.news(), hex("78 00 'a' 40 '1' 7B 81 81 80 FF 00 80 7B 80 80 80 06 '1234567'"));
  writer.encodeAttributes(list);
  EXPECT_EQ(writer.news(), hex("00 80 01 FF 00 80 02 06 '1234567'"));
  writer.flushTerminator(true);
  EXPECT_EQ(writer.news(), "FF");
}

TEST(WriterAttributes, StopAtTheFirstUndeclaredName) {
  Probe writer;
  EXPECT_EQ(thrown([&] {
              writer.encodeAttributes(namedAttributes(
                  {{"", "a", "a", "1"}, {"u", "b", "p:b", "2"}, {"", "c", "c", "3"}}));
            }),
            "SAXException: Undeclared prefix \"p\"");
  EXPECT_EQ(writer.news(), hex("78 00 'a' 40 '1'"));
  writer.encodeAttributes(attributes({{"b", "2"}, {"a", "1"}}));
  EXPECT_EQ(writer.news(), hex("78 00 'b' 40 '2' 00 80"));  // What was refused entered no table.
}

TEST(WriterAttributes, ValuesOfFewerThanSevenOctetsAreAdded) {
  Probe writer;
  writer.encodeAttributes(attributes({{"a", "123456"}, {"a", "1234567"}}));
  writer.output.news();
  writer.encodeAttributes(attributes({{"a", "1234567"}, {"a", "123456"}, {"a", "x"}, {"a", ""}}));
  EXPECT_EQ(writer.news(), hex("00 06 '1234567' 00 80 00 40 'x' 00 FF"));
}

}  // namespace
}  // namespace writer_test
