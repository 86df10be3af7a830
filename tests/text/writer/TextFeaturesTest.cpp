#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_XML.h>

#include <gtest/gtest.h>

#include <string>

#include "TextWriter.h"
#include "WhatIsThrown.h"

namespace {

using namespace Tavrin;

const std::string kAutoIndent = "http://tavrin/sax/features/auto-indent";
const std::string kEmptyTags = "http://tavrin/sax/features/empty-tags";
const std::string kXMLDeclaration = "http://tavrin/sax/features/xml-declaration";

std::string featuresOf(XMLWriter& writer) {
  std::string features;
  for (const std::string& name : {kAutoIndent, kEmptyTags, kXMLDeclaration}) {
    features += writer.getFeature(name) ? '1' : '0';
  }
  return features;
}

TEST(TextFeatures, BeginWithTheirDefaults) {
  const auto writer = XMLWriter_XML::create();
  EXPECT_EQ(featuresOf(*writer), "011");
}

TEST(TextFeatures, AreSetOneByOne) {
  const auto writer = XMLWriter_XML::create();
  const struct {
    std::string name;
    bool value;
    const char* features;
  } cases[] = {
      {kAutoIndent, true, "111"},      {kAutoIndent, true, "111"},  {kEmptyTags, false, "101"},
      {kXMLDeclaration, false, "100"}, {kAutoIndent, false, "000"}, {kEmptyTags, true, "010"},
      {kXMLDeclaration, true, "011"},  {kEmptyTags, true, "011"},
  };
  for (const auto& c : cases) {
    writer->setFeature(c.name, c.value);
    EXPECT_EQ(featuresOf(*writer), c.features);
  }
}

TEST(TextFeatures, BelongToOneWriterEach) {
  const auto first = XMLWriter_XML::create();
  const auto second = XMLWriter_XML::create();
  first->setFeature(kAutoIndent, true);
  first->setFeature(kXMLDeclaration, false);
  EXPECT_EQ(featuresOf(*first), "110");
  EXPECT_EQ(featuresOf(*second), "011");
}

TEST(TextFeatures, OutliveReset) {
  TextWriter writer({.indent = true, .emptyTags = false, .declaration = false});
  bringTo(Place::InRoot, writer);
  writer.reset();
  EXPECT_EQ(featuresOf(writer), "100");
}

TEST(TextFeatures, OfOtherNamesAreRefused) {
  const auto writer = XMLWriter_XML::create();
  const std::string names[] = {
      "",
      "x",
      "a\"b",
      "/sax/features/auto-indent",
      "auto-indent",
      "http://tavrin/sax/features/Auto-Indent",
      "HTTP://TAVRIN/SAX/FEATURES/AUTO-INDENT",
      "http://tavrin/sax/features/auto-indent ",
      "http://tavrin/sax/features/auto-inden",
      "http://tavrin/sax/features/",
      "http://tavrin/sax/features/indent",
      "http://xml.org/sax/features/namespaces",
      kEmptyTags + std::string(1, '\0'),
      properties::lexicalHandler,
  };
  for (const std::string& name : names) {
    const std::string refusal =
        "SAXNotRecognizedException: Feature \"" + name + "\" not recognized";
    EXPECT_EQ(thrown([&] { writer->setFeature(name, true); }), refusal);
    EXPECT_EQ(thrown([&] { writer->setFeature(name, false); }), refusal);
    EXPECT_EQ(thrown([&] { writer->getFeature(name); }), refusal);
  }
  EXPECT_EQ(featuresOf(*writer), "011");
}

TEST(TextFeatures, AreNoProperties) {
  const auto writer = XMLWriter_XML::create();
  bool value = true;
  for (const std::string& name :
       {kAutoIndent, kEmptyTags, kXMLDeclaration, std::string(),
        std::string(properties::lexicalHandler), std::string(properties::declarationHandler)}) {
    const std::string refusal =
        "SAXNotRecognizedException: Property \"" + name + "\" not recognized";
    EXPECT_EQ(thrown([&] { writer->setProperty(name, &value); }), refusal);
    EXPECT_EQ(thrown([&] { writer->getProperty(name); }), refusal);
  }
}

TEST(XMLDeclaration, HasThirtyEightOctets) {
  TextWriter writer({.declaration = true});
  writer.startDocument();
  EXPECT_EQ(writer.text(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
  EXPECT_EQ(writer.text().size(), 38U);
}

TEST(XMLDeclaration, IsLeftOutOnRequest) {
  for (const bool indent : {false, true}) {
    TextWriter writer({.indent = indent, .declaration = false});
    writer.startDocument();
    EXPECT_EQ(writer.text(), "");
    writer.leaf("r");
    EXPECT_EQ(writer.text(), "<r/>");
  }
}

// --- Changed in the middle of a document ---

TEST(ChangedFeature, OfIndentationCountsFromTheNextEvent) {
  TextWriter writer({.declaration = true});
  writer.startDocument();
  writer.comment("a");
  writer.setFeature(kAutoIndent, true);
  writer.comment("b");
  writer.start("r");
  writer.leaf("c");
  writer.setFeature(kAutoIndent, false);
  writer.leaf("d");
  writer.start("e");
  writer.setFeature(kAutoIndent, true);
  writer.leaf("f");
  writer.end("e");
  writer.setFeature(kAutoIndent, false);
  writer.end("r");
  EXPECT_EQ(writer.text(),
            kDeclaration + "<!--a-->\n<!--b-->\n<r>\n  <c/><d/><e>\n    <f/>\n  </e></r>");
}

TEST(ChangedFeature, OfEmptyTagsCountsAtTheEndTag) {
  TextWriter writer;
  writer.startDocument();
  writer.start("r");
  writer.start("a");
  writer.setFeature(kEmptyTags, false);
  writer.end("a");
  writer.start("b");
  writer.setFeature(kEmptyTags, true);
  writer.end("b");
  writer.end("r");
  EXPECT_EQ(writer.text(), "<r><a></a><b/></r>");
}

TEST(ChangedFeature, OfEmptyTagsCountsForTheRootToo) {
  TextWriter writer;
  writer.startDocument();
  writer.start("r");
  writer.setFeature(kEmptyTags, false);
  writer.end("r");
  EXPECT_EQ(writer.text(), "<r</r>");
}

TEST(ChangedFeature, OfTheDeclarationBringsNoneLater) {
  TextWriter writer({.declaration = false});
  writer.startDocument();
  writer.setFeature(kXMLDeclaration, true);
  writer.leaf("r");
  EXPECT_EQ(writer.text(), "<r/>");
}

// Line breaks of the prolog follow the feature as it is, not the declaration that was written.
TEST(ChangedFeature, OfTheDeclarationDecidesTheLineBreaksOfTheProlog) {
  TextWriter writer({.indent = true, .declaration = true});
  writer.startDocument();
  writer.comment("a");
  writer.setFeature(kXMLDeclaration, false);
  writer.comment("b");
  writer.setFeature(kXMLDeclaration, true);
  writer.leaf("r");
  writer.setFeature(kXMLDeclaration, false);
  writer.comment("c");
  EXPECT_EQ(writer.text(), kDeclaration + "\n<!--a--><!--b-->\n<r/>\n<!--c-->");
}

TEST(ChangedFeature, OfIndentationCountsInsideTheInternalSubset) {
  TextWriter writer;
  bringTo(Place::InDTD, writer);
  writer.elementDecl("a", "ANY");
  writer.setFeature(kAutoIndent, true);
  writer.elementDecl("b", "ANY");
  writer.setFeature(kAutoIndent, false);
  writer.endDTD();
  EXPECT_EQ(writer.text(),
            "<!DOCTYPE d SYSTEM \"d.dtd\" [  <!ELEMENT a ANY>\n    <!ELEMENT b ANY>]>");
}

}  // namespace
