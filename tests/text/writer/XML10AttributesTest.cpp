#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "XML10Writer.h"

namespace {

using namespace Tavrin;

// --- Duplicates ---

/// Attributes a0, a1, ... and then two that are given.
AttributesImpl withOthers(int others, const Named& one, const Named& other) {
  std::vector<Named> attributes{one};
  for (int i = 0; i < others; ++i) {
    const std::string name = "a" + std::to_string(i);
    attributes.push_back({"", name, name, ""});
  }
  attributes.push_back(other);
  return namedAttributes(attributes);
}

TEST(XML10Attributes, MustDiffer) {
  for (const int others : {0, 7, 30, 31, 1000}) {
    XML10Writer writer;
    writer.startDocument();
    writer.startPrefixMapping("p", "urn:p");
    writer.startPrefixMapping("q", "urn:p");
    writer.startPrefixMapping("s", "urn:s");
    writer.start("r");
    const auto refusal = [&](const Named& one, const Named& other) {
      return thrown([&] { writer.startElement("", "e", "e", withOthers(others, one, other)); });
    };
    EXPECT_EQ(refusal({"", "b", "b", "1"}, {"", "b", "b", "2"}),
              "SAXException: The attribute \"b\" is given twice");
    EXPECT_EQ(refusal({"urn:p", "b", "p:b", "1"}, {"urn:p", "b", "p:b", "1"}),
              "SAXException: The attribute \"p:b\" is given twice");
    EXPECT_EQ(refusal({"urn:p", "b", "p:b", "1"}, {"urn:p", "b", "q:b", "1"}),
              "SAXException: The attribute \"q:b\" is given twice");
    EXPECT_EQ(refusal({"", "", "p:b", "1"}, {"urn:p", "b", "q:b", "1"}),
              "SAXException: The attribute \"q:b\" is given twice");
    EXPECT_EQ(refusal({"urn:p", "b", "p:b", "1"}, {"urn:s", "b", "s:b", "1"}), "nothing");
    EXPECT_EQ(refusal({"urn:p", "b", "p:b", "1"}, {"", "b", "b", "1"}), "nothing");
  }
}

TEST(XML10Attributes, OfAnyNumberTakeTimeInProportion) {
  XML10Writer writer;
  writer.startDocument();
  writer.startElement("", "r", "r", withOthers(50000, {"", "b", "b", ""}, {"", "c", "c", ""}));
  for (int i = 0; i < 50000; ++i) {
    writer.startPrefixMapping("p" + std::to_string(i), "urn:p");
  }
  writer.leaf("e");
  writer.end("r");
  EXPECT_TRUE(writer.text().ends_with(" xmlns:p49999='urn:p'/></r>"));
}

// --- Defaults of attributes ---

/// What the start of an element `e` throws in a document that declares an attribute of it.
std::string withDefault(const char* name, const char* mode, const char* value,
                        const std::vector<Named>& attributes) {
  XML10Writer writer;
  writer.startDocument();
  writer.startDTD("r", "", "");
  writer.attributeDecl("e", name, "CDATA", mode, value);
  writer.attributeDecl("e", name, "CDATA", "", "urn:other");
  writer.endDTD();
  writer.startPrefixMapping("p", "urn:p");
  writer.startPrefixMapping("q", "urn:p");
  writer.leaf("f");
  writer.reset();
  writer.startDocument();
  writer.startDTD("r", "", "");
  writer.attributeDecl("e", name, "CDATA", mode, value);
  writer.attributeDecl("e", name, "CDATA", "", "urn:other");
  writer.endDTD();
  writer.startPrefixMapping("p", "urn:p");
  writer.startPrefixMapping("q", "urn:p");
  writer.start("r");
  return thrown([&] { writer.startElement("", "e", "e", namedAttributes(attributes)); });
}

TEST(XML10DefaultedAttribute, MustNotChangeANamespace) {
  const std::string refusal =
      "SAXException: The element \"e\" has \"xmlns:p\" by default, but does not declare it";
  EXPECT_EQ(withDefault("xmlns:p", "", "urn:x", {}), refusal);
  EXPECT_EQ(withDefault("xmlns:p", "#FIXED", "urn:x", {}), refusal);
  EXPECT_EQ(withDefault("xmlns:p", "", "urn:x", {{"", "", "xmlns:p", "urn:x"}}), "nothing");
  EXPECT_EQ(withDefault("xmlns:p", "", "urn:p", {}), "nothing");
  EXPECT_EQ(withDefault("xmlns:p", "#IMPLIED", "", {}), "nothing");
  EXPECT_EQ(withDefault("xmlns", "", "urn:x", {}),
            "SAXException: The element \"e\" has \"xmlns\" by default, but does not declare it");
}

TEST(XML10DefaultedAttribute, MustNotBeAnotherNameForAnAttribute) {
  EXPECT_EQ(withDefault("p:a", "", "v", {}), "nothing");
  EXPECT_EQ(withDefault("p:a", "", "v", {{"urn:p", "a", "p:a", "w"}}), "nothing");
  EXPECT_EQ(withDefault("p:a", "", "v", {{"urn:p", "a", "q:a", "w"}}),
            "SAXException: The attribute \"p:a\" is given twice");
  EXPECT_EQ(withDefault("x:a", "", "v", {}), "SAXException: The prefix \"x\" is not declared");
  EXPECT_EQ(withDefault("x:a", "#REQUIRED", "", {}), "nothing");
  EXPECT_EQ(withDefault("xml:lang", "", "de", {}), "nothing");
}

}  // namespace
