#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "XML10Writer.h"

namespace {

using namespace Tavrin;

std::string indented(const std::function<void(XML10Writer&)>& events) {
  XML10Writer writer({.indent = true});
  writer.startDocument();
  events(writer);
  writer.endDocument();
  return writer.text();
}

TEST(XML10Indent, PutsEachTagOnALineOfItsOwn) {
  EXPECT_EQ(indented([](XML10Writer& w) {
              w.start("r", {{"a", "1"}});
              w.start("b");
              w.leaf("c");
              w.comment("d");
              w.processingInstruction("t", "");
              w.end("b");
              w.start("e");
              w.characters("text");
              w.end("e");
              w.end("r");
            }),
            "<r a='1'>\n"
            "  <b>\n"
            "    <c/>\n"
            "    <!--d-->\n"
            "    <?t ?>\n"
            "  </b>\n"
            "  <e>text</e>\n"
            "</r>");
}

TEST(XML10Indent, PutsWhatStandsOutsideTheRootOnLines) {
  XML10Writer writer({.indent = true, .declaration = true});
  writer.startDocument();
  writer.comment("a");
  writer.startDTD("r", "", "s");
  writer.elementDecl("r", "ANY");
  writer.skippedEntity("%p");
  writer.endDTD();
  writer.leaf("r");
  writer.comment("z");
  EXPECT_EQ(writer.text(), kDeclaration +
                               "\n<!--a-->\n<!DOCTYPE r SYSTEM \"s\" [\n    <!ELEMENT r ANY>"
                               "\n  %p;\n]>\n<r/>\n<!--z-->");
}

TEST(XML10Indent, PutsNoLineBreakBeforeEverything) {
  EXPECT_EQ(indented([](XML10Writer& w) {
              w.comment("a");
              w.leaf("r");
            }),
            "<!--a-->\n<r/>");
}

TEST(XML10Indent, LeavesMixedContentAsItIs) {
  const std::function<void(XML10Writer&)> texts[] = {
      [](XML10Writer& w) { w.characters("x"); },
      [](XML10Writer& w) { w.ignorableWhitespace(""); },
      [](XML10Writer& w) { w.skippedEntity("lt"); },
  };
  const char* const written[] = {"x", "", "&lt;"};
  for (std::size_t i = 0; i < 3; ++i) {
    // Before, between and behind the children.
    for (int place = 0; place < 3; ++place) {
      const std::string x = written[i];
      EXPECT_EQ(indented([&](XML10Writer& w) {
                  w.start("r");
                  w.start("p");
                  if (place == 0) texts[i](w);
                  w.start("a");
                  w.leaf("b");
                  w.end("a");
                  if (place == 1) texts[i](w);
                  w.comment("c");
                  w.start("d");
                  w.leaf("e");
                  w.end("d");
                  if (place == 2) texts[i](w);
                  w.end("p");
                  w.leaf("q");
                  w.end("r");
                }),
                "<r>\n  <p>" + (place == 0 ? x : "") + "<a><b/></a>" + (place == 1 ? x : "") +
                    "<!--c--><d><e/></d>" + (place == 2 ? x : "") + "</p>\n  <q/>\n</r>");
    }
  }
}

TEST(XML10Indent, TakesWhiteSpaceForText) {
  EXPECT_EQ(indented([](XML10Writer& w) {
              w.start("r");
              w.characters("\n ");
              w.leaf("a");
              w.characters("\n");
              w.end("r");
            }),
            "<r>\n <a/>\n</r>");
}

TEST(XML10Indent, TakesASectionForText) {
  EXPECT_EQ(indented([](XML10Writer& w) {
              w.start("r");
              w.start("a");
              w.leaf("b");
              w.startCDATA();
              w.characters("x");
              w.endCDATA();
              w.leaf("b");
              w.end("a");
              w.start("c");
              w.startCDATA();
              w.endCDATA();
              w.end("c");
              w.end("r");
            }),
            "<r>\n  <a><b/><![CDATA[x]]><b/></a>\n  <c></c>\n</r>");
}

TEST(XML10Indent, LeavesTheRootAloneWhenItTurnsOutToBeMixed) {
  EXPECT_EQ(indented([](XML10Writer& w) {
              w.start("r");
              w.start("a");
              w.leaf("b");
              w.end("a");
              w.characters("x");
              w.start("c");
              w.leaf("d");
              w.end("c");
              w.end("r");
            }),
            "<r><a><b/></a>x<c><d/></c></r>");
}

TEST(XML10Indent, RespectsXmlSpace) {
  const auto start = [](XML10Writer& w, const char* name, const char* space) {
    AttributesImpl attributes;
    attributes.addAttribute(namespaces::xml, "space", "xml:space", "CDATA", space);
    w.startElement("", name, name, attributes);
  };
  EXPECT_EQ(indented([&](XML10Writer& w) {
              w.start("r");
              start(w, "a", "preserve");
              w.start("b");
              w.leaf("c");
              w.end("b");
              start(w, "d", "default");
              w.leaf("e");
              w.end("d");
              w.end("a");
              w.start("f");
              w.leaf("g");
              w.end("f");
              w.end("r");
            }),
            "<r>\n  <a xml:space='preserve'><b><c/></b><d xml:space='default'>\n"
            "      <e/>\n"
            "    </d></a>\n"
            "  <f>\n"
            "    <g/>\n"
            "  </f>\n"
            "</r>");
}

TEST(XML10Indent, IsAsWideAsItIsSet) {
  for (const unsigned width : {0U, 1U, 4U}) {
    XML10Writer writer({.indent = true});
    writer.set(properties::indentWidth, width);
    writer.startDocument();
    writer.start("r");
    writer.start("a");
    writer.leaf("b");
    writer.end("a");
    writer.end("r");
    const std::string one(width, ' ');
    EXPECT_EQ(writer.text(), "<r>\n" + one + "<a>\n" + one + one + "<b/>\n" + one + "</a>\n</r>");
  }
}

TEST(XML10Indent, IsBoundedInDepth) {
  constexpr std::size_t kDepth = 20000;
  XML10Writer writer({.indent = true});
  writer.startDocument();
  std::string expected;
  for (std::size_t i = 0; i < kDepth; ++i) {
    writer.start("e");
    if (i > 0) expected += "\n" + std::string(2 * std::min<std::size_t>(i, 100), ' ');
    expected += i + 1 < kDepth ? "<e>" : "<e/>";
  }
  for (std::size_t i = kDepth; i-- > 0;) {
    writer.end("e");
    if (i + 1 == kDepth) continue;
    expected += "\n" + std::string(2 * std::min<std::size_t>(i, 100), ' ') + "</e>";
  }
  EXPECT_EQ(writer.text(), expected);
}

TEST(XML10Indent, HoldsBackTheRootUntilItIsDecided) {
  XML10Writer writer({.indent = true, .declaration = true});
  writer.startDocument();
  EXPECT_EQ(writer.output.news(), kDeclaration);
  writer.start("r");
  EXPECT_EQ(writer.output.news(), "\n<r");
  writer.leaf("a");
  EXPECT_EQ(writer.output.news(), "");
  writer.end("r");
  EXPECT_EQ(writer.output.news(), ">\n  <a/>\n</r>");

  writer.reset();
  writer.startDocument();
  writer.start("r");
  writer.leaf("a");
  EXPECT_EQ(writer.output.news(), kDeclaration + "\n<r");
  writer.characters("x");
  EXPECT_EQ(writer.output.news(), "><a/>x");
  writer.leaf("b");
  EXPECT_EQ(writer.output.news(), "<b/>");
}

TEST(XML10Indent, IsGivenUpByFlush) {
  XML10Writer writer({.indent = true});
  writer.startDocument();
  writer.start("r");
  writer.start("a");
  writer.leaf("b");
  writer.flush();
  EXPECT_EQ(writer.output.news(), "<r><a><b/>");
  writer.start("c");
  writer.leaf("d");
  writer.end("c");
  writer.end("a");
  writer.end("r");
  writer.comment("e");
  EXPECT_EQ(writer.output.news(), "<c><d/></c></a></r>\n<!--e-->");
}

TEST(XML10Indent, ByFlushMakesNoEmptyElementTwoLines) {
  XML10Writer writer({.indent = true});
  writer.startDocument();
  writer.start("r");
  writer.flush();
  writer.end("r");
  EXPECT_EQ(writer.text(), "<r></r>");
}

TEST(XML10Indent, IsForgottenByReset) {
  XML10Writer writer({.indent = true});
  writer.startDocument();
  writer.start("r");
  writer.leaf("a");
  writer.reset();
  writer.startDocument();
  writer.leaf("s");
  EXPECT_EQ(writer.text(), "<r<s/>");
}

TEST(XML10Indent, IsSwitchedMidway) {
  XML10Writer writer;
  writer.startDocument();
  writer.start("r");
  writer.leaf("a");
  writer.setFeature(features::autoIndent, true);
  writer.leaf("b");
  writer.setFeature(features::autoIndent, false);
  writer.leaf("c");
  writer.end("r");
  EXPECT_EQ(writer.text(), "<r><a/>\n  <b/><c/></r>");
}

TEST(XML10Indent, AfterARefusalIsAsBefore) {
  EXPECT_EQ(indented([](XML10Writer& w) {
              w.start("r");
              w.leaf("a");
              EXPECT_NE(thrown([&] { w.characters("\x01"); }), "nothing");
              EXPECT_NE(thrown([&] { w.start("1"); }), "nothing");
              EXPECT_NE(thrown([&] { w.comment("--"); }), "nothing");
              EXPECT_NE(thrown([&] { w.end("x"); }), "nothing");
              w.leaf("b");
              w.end("r");
            }),
            "<r>\n  <a/>\n  <b/>\n</r>");
}

}  // namespace
