#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "EventLog.h"
#include "TextWriter.h"

namespace {

using namespace Tavrin;

// --- What is left open, and who completes it ---

TEST(Flush, CompletesWhatIsOpenInEveryPlace) {
  const struct {
    Place place;
    const char* text;
  } cases[] = {
      {Place::Initial, ""},          {Place::Prolog, ""},    {Place::InDTD, " ["},
      {Place::AfterDTD, ""},         {Place::InRoot, ">"},   {Place::InNested, ">"},
      {Place::InCDATA, "<![CDATA["}, {Place::AfterRoot, ""}, {Place::Ended, ""},
  };
  for (const bool indent : {false, true}) {
    for (const auto& c : cases) {
      TextWriter writer({.indent = indent, .declaration = true});
      bringTo(c.place, writer);
      writer.hasContent_ = false;
      const auto state = writer.state_;
      writer.output.news();
      writer.flush();
      EXPECT_EQ(writer.output.news(), c.text);
      EXPECT_EQ(writer.hasContent_, *c.text != '\0');
      writer.flush();
      EXPECT_EQ(writer.output.news(), "");
      EXPECT_EQ(writer.state_, state);
    }
  }
}

TEST(Flush, WritesNothingBehindContent) {
  for (const auto& place : kPlaces) {
    TextWriter writer;
    bringTo(place.place, writer);
    writer.hasContent_ = true;
    writer.output.news();
    writer.flush();
    EXPECT_EQ(writer.output.news(), "") << place.name;
    EXPECT_TRUE(writer.hasContent_);
  }
}

TEST(Flush, MakesAnEmptyElementHaveBothTags) {
  for (const bool emptyTags : {false, true}) {
    TextWriter writer({.emptyTags = emptyTags});
    writer.startDocument();
    writer.start("r");
    writer.flush();
    writer.end("r");
    EXPECT_EQ(writer.text(), "<r></r>");
  }
}

// --- CDATA sections ---

TEST(CDATASection, WithoutContentLeavesNoTraceOfItself) {
  TextWriter writer;
  writer.startDocument();
  writer.start("r");
  writer.characters("x");
  writer.output.news();
  writer.startCDATA();
  writer.endCDATA();
  writer.startCDATA();
  writer.endCDATA();
  EXPECT_EQ(writer.output.news(), "");
  writer.end("r");
  EXPECT_EQ(writer.text(), "<r>x</r>");
}

TEST(CDATASection, WithoutContentIsContentOfItsElement) {
  TextWriter writer;
  writer.startDocument();
  writer.start("r");
  writer.startCDATA();
  writer.endCDATA();
  writer.end("r");
  EXPECT_EQ(writer.text(), "<r></r>");
}

TEST(CDATASection, WithoutContentGetsALineForTheEndTag) {
  TextWriter writer({.indent = true});
  writer.startDocument();
  writer.start("r");
  writer.startCDATA();
  writer.endCDATA();
  writer.end("r");
  EXPECT_EQ(writer.text(), "<r>\n</r>");
}

TEST(CDATASection, OpensForItsFirstContent) {
  const struct {
    void (*send)(TextWriter&);
    const char* text;
  } cases[] = {
      {[](TextWriter& w) { w.characters("a<b"); }, "<r><![CDATA[a<b]]></r>"},
      {[](TextWriter& w) { w.characters(""); }, "<r><![CDATA[]]></r>"},
      {[](TextWriter& w) { w.ignorableWhitespace(" \n"); }, "<r><![CDATA[ \n]]></r>"},
      {[](TextWriter& w) { w.flush(); }, "<r><![CDATA[]]></r>"},
      {[](TextWriter& w) {
         w.characters("a");
         w.flush();
         w.ignorableWhitespace("\t");
         w.characters("&b");
       },
       "<r><![CDATA[a\t&b]]></r>"},
  };
  for (const auto& c : cases) {
    TextWriter writer;
    bringTo(Place::InCDATA, writer);
    EXPECT_EQ(writer.text(), "<r>");
    c.send(writer);
    writer.endCDATA();
    writer.end("r");
    EXPECT_EQ(writer.text(), c.text);
  }
}

TEST(CDATASection, FollowsAnotherAndTextDirectly) {
  TextWriter writer;
  writer.startDocument();
  writer.start("r");
  writer.characters("<");
  for (const char* text : {"<", "]]"}) {
    writer.startCDATA();
    writer.characters(text);
    writer.endCDATA();
  }
  writer.characters(">");
  writer.end("r");
  EXPECT_EQ(writer.text(), "<r>&lt;<![CDATA[<]]><![CDATA[]]]]>&gt;</r>");
}

// --- Elements without content ---

TEST(ElementWithoutContent, IsAnEmptyElementTag) {
  TextWriter writer;
  writer.startDocument();
  writer.start("r");
  writer.leaf("a");
  writer.leaf("b");
  writer.end("r");
  EXPECT_EQ(writer.text(), "<r><a/><b/></r>");
}

TEST(ElementWithoutContent, HasTwoTagsWithEmptyTagsOff) {
  TextWriter writer({.emptyTags = false});
  writer.startDocument();
  writer.start("r");
  writer.leaf("a");
  writer.start("b", {{"c", "d"}});
  writer.end("b");
  writer.end("r");
  EXPECT_EQ(writer.text(), "<r><a></a><b c='d'></b></r>");
}

TEST(ElementWithoutContent, HasNoLineForItsEndTag) {
  TextWriter writer({.indent = true, .emptyTags = false});
  writer.startDocument();
  writer.start("r");
  writer.leaf("a");
  writer.end("r");
  EXPECT_EQ(writer.text(), "<r>\n  <a></a>\n</r>");
}

TEST(ElementWithoutContent, LacksABracketWhenItIsTheRootAndEmptyTagsAreOff) {
  const struct {
    Settings settings;
    std::string text;
  } cases[] = {
      {{.emptyTags = false}, "<r</r>"},
      {{.emptyTags = false, .declaration = true}, kDeclaration + "<r</r>"},
      {{.indent = true, .emptyTags = false}, "<r</r>"},
      {{.indent = true, .emptyTags = false, .declaration = true}, kDeclaration + "\n<r</r>"},
  };
  for (const auto& c : cases) {
    TextWriter writer(c.settings);
    writer.startDocument();
    writer.leaf("r");
    EXPECT_FALSE(writer.hasContent_);
    writer.flush();
    writer.endDocument();
    EXPECT_EQ(writer.text(), c.text);
  }
}

TEST(ElementWithEmptyContent, HasTwoTags) {
  const struct {
    void (*send)(TextWriter&);
    const char* text;
  } cases[] = {
      {[](TextWriter& w) { w.characters(""); }, "<r></r>"},
      {[](TextWriter& w) { w.ignorableWhitespace(""); }, "<r></r>"},
      {[](TextWriter& w) { w.comment(""); }, "<r><!----></r>"},
      {[](TextWriter& w) { w.processingInstruction("", ""); }, "<r><? ?></r>"},
  };
  for (const auto& c : cases) {
    TextWriter writer;
    writer.startDocument();
    writer.start("r");
    c.send(writer);
    writer.end("r");
    EXPECT_EQ(writer.text(), c.text);
  }
}

// --- Instructions and comments ---

TEST(ProcessingInstruction, HasASpaceBeforeItsDataEvenWithoutData) {
  TextWriter writer;
  writer.startDocument();
  writer.processingInstruction("t", "");
  writer.processingInstruction("t", " d ");
  writer.processingInstruction("t", "?>");
  EXPECT_EQ(writer.text(), "<?t ?><?t  d ?><?t ?>?>");
}

TEST(CommentText, IsWrittenWithTwoHyphensAndWithOneAtItsEnd) {
  TextWriter writer;
  writer.startDocument();
  writer.comment("a--b");
  writer.comment("c-");
  writer.comment("");
  EXPECT_EQ(writer.text(), "<!--a--b--><!--c---><!---->");
}

// --- Indentation ---

TEST(Indentation, GoesTwoSpacesDeeperWithEveryElement) {
  TextWriter writer({.indent = true, .declaration = true});
  writer.startDocument();
  writer.start("a");
  writer.start("b");
  writer.start("c");
  writer.leaf("d");
  writer.comment("e");
  writer.end("c");
  writer.processingInstruction("f", "g");
  writer.end("b");
  writer.end("a");
  writer.endDocument();
  EXPECT_EQ(writer.text(), kDeclaration +
                               "\n<a>"
                               "\n  <b>"
                               "\n    <c>"
                               "\n      <d/>"
                               "\n      <!--e-->"
                               "\n    </c>"
                               "\n    <?f g?>"
                               "\n  </b>"
                               "\n</a>");
}

TEST(Indentation, BreaksNoLineBeforeTextAndCDATA) {
  TextWriter writer({.indent = true});
  writer.startDocument();
  writer.start("r");
  writer.characters("x");
  writer.leaf("a");
  writer.characters("y");
  writer.startCDATA();
  writer.characters("z");
  writer.endCDATA();
  writer.end("r");
  EXPECT_EQ(writer.text(), "<r>x\n  <a/>y<![CDATA[z]]>\n</r>");
}

TEST(Indentation, PutsTheEndTagBehindTextOnANewLine) {
  TextWriter writer({.indent = true});
  writer.startDocument();
  writer.start("r");
  writer.start("a");
  writer.characters("x");
  writer.end("a");
  writer.end("r");
  EXPECT_EQ(writer.text(), "<r>\n  <a>x\n  </a>\n</r>");
}

TEST(Indentation, KeepsIgnorableWhitespaceBesideItsOwn) {
  TextWriter writer({.indent = true});
  writer.startDocument();
  writer.start("r");
  writer.ignorableWhitespace("\n\t");
  writer.leaf("a");
  writer.ignorableWhitespace("\n");
  writer.end("r");
  EXPECT_EQ(writer.text(), "<r>\n\t\n  <a/>\n\n</r>");
}

TEST(Indentation, SurroundsTheRootAndEndsWithoutALineBreak) {
  TextWriter writer({.indent = true, .declaration = true});
  writer.startDocument();
  writer.comment("1");
  writer.startDTD("r", "", "");
  writer.endDTD();
  writer.comment("2");
  writer.leaf("r");
  writer.comment("3");
  writer.processingInstruction("4", "");
  writer.endDocument();
  EXPECT_EQ(writer.text(),
            kDeclaration + "\n<!--1-->\n<!DOCTYPE r>\n<!--2-->\n<r/>\n<!--3-->\n<?4 ?>");
}

TEST(Indentation, BeginsBehindThePrologOfADocumentWithoutDeclaration) {
  TextWriter writer({.indent = true});
  writer.startDocument();
  writer.comment("1");
  writer.processingInstruction("2", "");
  writer.startDTD("r", "", "");
  writer.endDTD();
  writer.comment("3");
  writer.leaf("r");
  writer.comment("4");
  EXPECT_EQ(writer.text(), "<!--1--><?2 ?><!DOCTYPE r>\n<!--3-->\n<r/>\n<!--4-->");
}

/// Hears of the white space on its way into the document.
class WhitespaceListener : public TextWriter {
 public:
  WhitespaceListener() : TextWriter({.indent = true, .declaration = true}) {}
  void ignorableWhitespace(const std::string& text) override {
    heard.push_back(EventLog::show(text));
    if (passesOn) XMLWriter_XML::ignorableWhitespace(text);
  }
  std::vector<std::string> heard;
  bool passesOn = true;
};

void writeOneOfEach(TextWriter& writer) {
  writer.startDocument();
  writer.startDTD("r", "", "");
  writer.elementDecl("r", "ANY");
  writer.endDTD();
  writer.start("r");
  writer.leaf("a");
  writer.characters("x");
  writer.end("r");
  writer.comment("c");
  writer.endDocument();
}

TEST(Indentation, PassesThroughTheWritersOwnIgnorableWhitespace) {
  WhitespaceListener writer;
  writeOneOfEach(writer);
  EXPECT_EQ(writer.heard,
            (std::vector<std::string>{"\\n", "\\n  ", "\\n", "\\n", "\\n  ", "\\n", "\\n"}));
  EXPECT_EQ(writer.text(), kDeclaration +
                               "\n<!DOCTYPE r [\n    <!ELEMENT r ANY>\n]>\n<r>\n  <a/>x\n</r>"
                               "\n<!--c-->");
}

TEST(Indentation, IsLeftOutByAWriterThatDropsWhitespace) {
  WhitespaceListener writer;
  writer.passesOn = false;
  writeOneOfEach(writer);
  EXPECT_EQ(writer.text(), kDeclaration + "<!DOCTYPE r [  <!ELEMENT r ANY>]><r><a/>x</r><!--c-->");
}

}  // namespace
