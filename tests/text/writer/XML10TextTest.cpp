#include <gtest/gtest.h>

#include <string>

#include "XML10Writer.h"

namespace {

using namespace Tavrin;

const std::string kNul(1, '\0');

// --- Text ---

TEST(XML10Text, EscapesWhatAParserWouldChange) {
  const struct {
    std::string text;
    std::string written;
  } cases[] = {
      {"", ""},
      {"a", "a"},
      {"a<b>c&d", "a&lt;b&gt;c&amp;d"},
      {"]]>", "]]&gt;"},
      {"\r", "&#xD;"},
      {"\r\n", "&#xD;\n"},
      {"'\"\t\n", "'\"\t\n"},
      {"12345678<", "12345678&lt;"},
      {"<12345678", "&lt;12345678"},
      {"1234567\r9", "1234567&#xD;9"},
      {"&&&&&&&&&", "&amp;&amp;&amp;&amp;&amp;&amp;&amp;&amp;&amp;"},
      {"\x7F\xC2\x80\xEF\xBF\xBD\xF4\x8F\xBF\xBF", "\x7F\xC2\x80\xEF\xBF\xBD\xF4\x8F\xBF\xBF"},
      {"\xC3\xA4<\xC3\xB6\r\xE2\x82\xAC&\xF0\x9F\x8C\xB3",
       "\xC3\xA4&lt;\xC3\xB6&#xD;\xE2\x82\xAC&amp;\xF0\x9F\x8C\xB3"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(inRoot([&](XML10Writer& w) { w.characters(c.text); }), c.written);
  }
}

TEST(XML10Text, IsEscapedInEveryCall) {
  EXPECT_EQ(inRoot([](XML10Writer& w) {
              w.characters("]");
              w.characters("]");
              w.characters(">");
              w.characters("\r");
              w.characters("\n");
            }),
            "]]&gt;&#xD;\n");
}

TEST(XML10Text, OfAMillionCharactersIsWritten) {
  const std::string text(1000000, '<');
  std::string written;
  for (int i = 0; i < 1000000; ++i) written += "&lt;";
  EXPECT_EQ(inRoot([&](XML10Writer& w) { w.characters(text); }), written);
}

TEST(XML10Text, OfAnyLengthIsWrittenOrNot) {
  for (const std::size_t length : {0, 1, 255, 256, 257, 511, 512, 513, 100000}) {
    const std::string text(length, 'a');
    for (const std::string end : {"", "<", "\n\xC3\xA4"}) {
      const std::string written = text + (end == "<" ? "&lt;" : end);
      EXPECT_EQ(inRoot([&](XML10Writer& w) {
                  w.characters(text + end);
                  w.characters(text + end);
                }),
                written + written)
          << length;
    }
    for (const std::string end : {"\x01", "<\xC3", "\xFF"}) {
      EXPECT_TRUE(refusedInRoot([&](XML10Writer& w) {
                    w.characters(text + end);
                  }).starts_with("SAXException: You cannot put "))
          << length;
    }
  }
}

TEST(XML10Text, RefusesWhatIsNoCharacter) {
  const struct {
    std::string text;
    std::string what;
  } cases[] = {
      {kNul, "character U+0000"},           {"a\x01", "character U+0001"},
      {"12345678\x1F", "character U+001F"}, {"\x0B", "character U+000B"},
      {"\xEF\xBF\xBE", "character U+FFFE"}, {"\xC3\xA4\xEF\xBF\xBF", "character U+FFFF"},
      {"\xED\xA0\x80", "UTF-8 octet 0xED"}, {"\xC0\x80", "UTF-8 octet 0xC0"},
      {"a\xC3", "UTF-8 octet 0xC3"},        {"\x80", "UTF-8 octet 0x80"},
      {"\xFF", "UTF-8 octet 0xFF"},         {"\xF4\x90\x80\x80", "UTF-8 octet 0xF4"},
  };
  for (const auto& c : cases) {
    const std::string begin = "SAXException: You cannot put " + c.what + " into ";
    EXPECT_EQ(refusedInRoot([&](XML10Writer& w) { w.characters(c.text); }),
              begin + "character data");
    EXPECT_EQ(refusedInRoot([&](XML10Writer& w) { w.comment(c.text); }), begin + "a comment");
    EXPECT_EQ(refusedInRoot([&](XML10Writer& w) { w.processingInstruction("t", c.text); }),
              begin + "a processing instruction");
    EXPECT_EQ(refusedInRoot([&](XML10Writer& w) { w.processingInstruction(c.text, ""); }),
              begin + "a name");
    EXPECT_EQ(refusedInRoot([&](XML10Writer& w) {
                w.start("e", {{"a", c.text}});
              }),
              begin + "an attribute value");
    EXPECT_EQ(refusedInRoot([&](XML10Writer& w) { w.start(c.text); }), begin + "a name");
    EXPECT_EQ(refusedInRoot([&](XML10Writer& w) { w.startPrefixMapping("p", c.text); }),
              begin + "a namespace name");
    EXPECT_EQ(refusedInRoot([&](XML10Writer& w) { w.startPrefixMapping(c.text, "urn:p"); }),
              begin + "a name");
    EXPECT_EQ(refusedInRoot([&](XML10Writer& w) { w.skippedEntity(c.text); }), begin + "a name");
    EXPECT_EQ(refusedInDTD([&](XML10Writer& w) { w.notationDecl("n", c.text, ""); }),
              begin + "a public identifier");
    EXPECT_EQ(refusedInDTD([&](XML10Writer& w) { w.notationDecl("n", "", c.text); }),
              begin + "a system identifier");
    EXPECT_EQ(refusedInDTD([&](XML10Writer& w) { w.internalEntityDecl("e", c.text); }),
              begin + "the text of an entity");
    EXPECT_EQ(refusedInDTD([&](XML10Writer& w) { w.elementDecl("e", c.text); }),
              begin + "a content model");
    EXPECT_EQ(refusedInDTD([&](XML10Writer& w) { w.attributeDecl("e", "a", c.text, "", ""); }),
              begin + "the type of an attribute");
    EXPECT_EQ(refusedInDTD([&](XML10Writer& w) { w.attributeDecl("e", "a", "ID", c.text, ""); }),
              begin + "the default of an attribute");
    EXPECT_EQ(refusedInDTD([&](XML10Writer& w) { w.attributeDecl("e", "a", "ID", "", c.text); }),
              begin + "the default of an attribute");
  }
}

// Many octets are looked at together, also of text that has something to escape.
TEST(XML10Text, OfAnyLanguageMayBeLong) {
  for (const std::string piece :
       {"\xC3\xA9", "\xE0\xA4\xA8\xED\x95\x9C", "\xEF\xBF\xBD\xF0\x9F\x8E\x89", "\n\t"}) {
    for (const std::size_t front : {0, 15, 16, 17, 31, 48, 63}) {
      for (const std::size_t behind : {0, 19, 120}) {
        const std::string begin(front, 'x');
        const std::string end(behind, 'y');
        EXPECT_EQ(inRoot([&](XML10Writer& w) { w.characters(begin + piece + end); }),
                  begin + piece + end);
        EXPECT_EQ(inRoot([&](XML10Writer& w) {
                    w.characters(begin + '<' + piece + end + "&" + piece + '\r');
                  }),
                  begin + "&lt;" + piece + end + "&amp;" + piece + "&#xD;");
      }
    }
  }
}

TEST(XML10Text, OfAnyLengthIsRefusedForItsFirstFault) {
  const struct {
    std::string piece;
    std::string what;
  } cases[] = {{"\x01", "character U+0001"},         {"\xEF\xBF\xBE", "character U+FFFE"},
               {"\xC3<\x01", "UTF-8 octet 0xC3"},    {"\xE3\x81\x01", "UTF-8 octet 0xE3"},
               {"\xED\xA0\x80", "UTF-8 octet 0xED"}, {"\xF4\x90\x80\x80", "UTF-8 octet 0xF4"}};
  for (const auto& c : cases) {
    for (const std::size_t front : {0, 15, 16, 17, 31, 48, 63}) {
      for (const std::size_t behind : {0, 19, 120}) {
        for (const std::string escaped : {"", "&\xC3\xA9"}) {
          const std::string text =
              std::string(front, 'x') + escaped + c.piece + std::string(behind, 'y');
          EXPECT_EQ(refusedInRoot([&](XML10Writer& w) { w.characters(text); }),
                    "SAXException: You cannot put " + c.what + " into character data");
          EXPECT_EQ(refusedInRoot([&](XML10Writer& w) {
                      w.start("e", {{"a", text}});
                    }),
                    "SAXException: You cannot put " + c.what + " into an attribute value");
        }
      }
    }
  }
}

TEST(XML10Text, MayNotSplitACharacterBetweenCalls) {
  EXPECT_EQ(refusedInRoot([](XML10Writer& w) { w.characters("\xE2\x82"); }),
            "SAXException: You cannot put UTF-8 octet 0xE2 into character data");
  EXPECT_EQ(refusedInRoot([](XML10Writer& w) { w.characters("\xAC"); }),
            "SAXException: You cannot put UTF-8 octet 0xAC into character data");
}

TEST(XML10IgnorableWhitespace, ComesBackAsItWas) {
  EXPECT_EQ(inRoot([](XML10Writer& w) { w.ignorableWhitespace(" \t\r\n"); }), " \t&#xD;\n");
  EXPECT_EQ(refusedInRoot([](XML10Writer& w) { w.ignorableWhitespace(" x"); }),
            "SAXException: You cannot put non-whitespace characters into ignorable whitespace");
  XML10Writer writer;
  writer.startDocument();
  writer.ignorableWhitespace("\n");
  writer.startDTD("r", "", "");
  writer.ignorableWhitespace("\t");
  writer.endDTD();
  writer.leaf("r");
  writer.ignorableWhitespace("\r");
  EXPECT_EQ(writer.text(), "\n<!DOCTYPE r [\t]><r/>\r");
}

// --- CDATA sections ---

std::string section(std::initializer_list<const char*> texts) {
  return inRoot([&](XML10Writer& w) {
    w.startCDATA();
    for (const char* text : texts) w.characters(text);
    w.endCDATA();
  });
}

TEST(XML10Section, HoldsItsTextAsItIs) {
  EXPECT_EQ(section({"a<b>&'\"\t\n"}), "<![CDATA[a<b>&'\"\t\n]]>");
  EXPECT_EQ(section({"a", "", "b"}), "<![CDATA[ab]]>");
  EXPECT_EQ(section({"\xE2\x82\xAC"}), "<![CDATA[\xE2\x82\xAC]]>");
}

TEST(XML10Section, IsSplitWhereItsEndWouldStandInIt) {
  EXPECT_EQ(section({"]]>"}), "<![CDATA[]]]]><![CDATA[>]]>");
  EXPECT_EQ(section({"a]]>b"}), "<![CDATA[a]]]]><![CDATA[>b]]>");
  EXPECT_EQ(section({"]", "]", ">"}), "<![CDATA[]]]]><![CDATA[>]]>");
  EXPECT_EQ(section({"]]", "", ">"}), "<![CDATA[]]]]><![CDATA[>]]>");
  EXPECT_EQ(section({"]]]]>"}), "<![CDATA[]]]]]]><![CDATA[>]]>");
  EXPECT_EQ(section({"]]>]]>"}), "<![CDATA[]]]]><![CDATA[>]]]]><![CDATA[>]]>");
  EXPECT_EQ(section({"]]>", ">"}), "<![CDATA[]]]]><![CDATA[>>]]>");
}

TEST(XML10Section, IsNotSplitElsewhere) {
  EXPECT_EQ(section({"]]"}), "<![CDATA[]]]]>");
  EXPECT_EQ(section({"]>"}), "<![CDATA[]>]]>");
  EXPECT_EQ(section({"] ]>"}), "<![CDATA[] ]>]]>");
  EXPECT_EQ(section({">]]"}), "<![CDATA[>]]]]>");
  EXPECT_EQ(inRoot([](XML10Writer& w) {
              w.startCDATA();
              w.characters("]]");
              w.endCDATA();
              w.startCDATA();
              w.characters(">");
              w.endCDATA();
            }),
            "<![CDATA[]]]]><![CDATA[>]]>");
}

TEST(XML10Section, GivesACarriageReturnAsAReferenceBetweenSections) {
  EXPECT_EQ(section({"\r"}), "&#xD;");
  EXPECT_EQ(section({"a\r\nb"}), "<![CDATA[a]]>&#xD;<![CDATA[\nb]]>");
  EXPECT_EQ(section({"a\r", "\rb"}), "<![CDATA[a]]>&#xD;&#xD;<![CDATA[b]]>");
  EXPECT_EQ(section({"]]\r>"}), "<![CDATA[]]]]>&#xD;<![CDATA[>]]>");
}

TEST(XML10Section, LeavesNoTraceWhereItIsEmpty) {
  EXPECT_EQ(section({}), "");
  EXPECT_EQ(section({""}), "");
  EXPECT_EQ(inRoot([](XML10Writer& w) {
              w.startCDATA();
              w.endCDATA();
              w.startCDATA();
              w.ignorableWhitespace("");
              w.endCDATA();
              w.leaf("e");
            }),
            "<e/>");
}

TEST(XML10Section, TakesIgnorableWhitespaceAsText) {
  EXPECT_EQ(inRoot([](XML10Writer& w) {
              w.startCDATA();
              w.ignorableWhitespace(" \r ");
              w.endCDATA();
            }),
            "<![CDATA[ ]]>&#xD;<![CDATA[ ]]>");
}

TEST(XML10Section, RefusesWhatIsNoCharacterAndGoesOn) {
  EXPECT_EQ(inRoot([](XML10Writer& w) {
              w.startCDATA();
              EXPECT_EQ(thrown([&] { w.characters("a\x02"); }),
                        "SAXException: You cannot put character U+0002 into a CDATA section");
              EXPECT_EQ(thrown([&] { w.skippedEntity("lt"); }),
                        "SAXException: You cannot refer to an entity at this point");
              w.characters("b");
              w.endCDATA();
            }),
            "<![CDATA[b]]>");
}

// --- Comments and instructions ---

TEST(XML10Comment, IsWrittenAsItIs) {
  EXPECT_EQ(inRoot([](XML10Writer& w) {
              w.comment("");
              w.comment("<&>'\"]]>");
              w.comment("-a-b->c- - ");
            }),
            "<!----><!--<&>'\"]]>--><!---a-b->c- - -->");
}

TEST(XML10Comment, RefusesHyphensThatWouldEndIt) {
  const std::string twice = "SAXException: You cannot put \"--\" into a comment";
  const std::string atEnd = "SAXException: You cannot end a comment with \"-\"";
  EXPECT_EQ(refusedInRoot([](XML10Writer& w) { w.comment("a--b"); }), twice);
  EXPECT_EQ(refusedInRoot([](XML10Writer& w) { w.comment("--"); }), twice);
  EXPECT_EQ(refusedInRoot([](XML10Writer& w) { w.comment("-"); }), atEnd);
  EXPECT_EQ(refusedInRoot([](XML10Writer& w) { w.comment("a-"); }), atEnd);
  EXPECT_EQ(refusedInRoot([](XML10Writer& w) { w.comment("a-->b"); }),
            "SAXException: You cannot put \"-->\" into a comment");
}

TEST(XML10Instruction, NeedsATarget) {
  EXPECT_EQ(inRoot([](XML10Writer& w) {
              w.processingInstruction("t", "");
              w.processingInstruction("xml-stylesheet", "a='b' ? > <&");
              w.processingInstruction("xmlx", "?");
            }),
            "<?t ?><?xml-stylesheet a='b' ? > <&?><?xmlx ?\?>");
  const struct {
    const char* target;
    const char* refusal;
  } cases[] = {
      {"", "\"\" is not a name"},
      {"1", "\"1\" is not a name"},
      {"a b", "\"a b\" is not a name"},
      {"a:b", "\"a:b\" is not a name without a colon"},
      {"xml", "\"xml\" is reserved and cannot be the target of a processing instruction"},
      {"XmL", "\"XmL\" is reserved and cannot be the target of a processing instruction"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(refusedInRoot([&](XML10Writer& w) { w.processingInstruction(c.target, "d"); }),
              std::string("SAXException: ") + c.refusal);
  }
  EXPECT_EQ(refusedInRoot([](XML10Writer& w) { w.processingInstruction("t", "a?>"); }),
            "SAXException: You cannot put \"?>\" into a processing instruction");
}

// --- References ---

TEST(XML10Reference, NeedsADeclaration) {
  EXPECT_EQ(refusedInRoot([](XML10Writer& w) { w.skippedEntity("e"); }),
            "SAXException: The entity \"e\" is not declared");
  EXPECT_EQ(refusedInRoot([](XML10Writer& w) { w.skippedEntity("1"); }),
            "SAXException: \"1\" is not a name");
  EXPECT_EQ(refusedInRoot([](XML10Writer& w) { w.skippedEntity("a:b"); }),
            "SAXException: \"a:b\" is not a name without a colon");
  EXPECT_EQ(refusedInRoot([](XML10Writer& w) { w.skippedEntity("%e"); }),
            "SAXException: You cannot refer to an entity at this point");
  EXPECT_EQ(inRoot([](XML10Writer& w) {
              w.skippedEntity("lt");
              w.skippedEntity("[dtd]");
            }),
            "&lt;");
}

TEST(XML10Reference, IsWrittenWhereTheEntityMayBeDeclared) {
  XML10Writer writer;
  writer.startDocument();
  writer.startDTD("r", "", "s");
  writer.externalEntityDecl("x", "", "x.xml");
  writer.internalEntityDecl("t", "text");
  writer.internalEntityDecl("m", "<e/>");
  writer.internalEntityDecl("c", "]]>");
  writer.unparsedEntityDecl("u", "", "u.gif", "gif");
  writer.endDTD();
  EXPECT_EQ(thrown([&] { writer.skippedEntity("x"); }),
            "SAXException: You cannot refer to an entity at this point");
  writer.start("r");
  writer.skippedEntity("x");
  writer.skippedEntity("t");
  writer.skippedEntity("elsewhere");
  EXPECT_EQ(thrown([&] { writer.skippedEntity("m"); }),
            "SAXException: You cannot refer to the entity \"m\", whose text holds markup");
  EXPECT_EQ(thrown([&] { writer.skippedEntity("c"); }),
            "SAXException: You cannot refer to the entity \"c\", whose text holds markup");
  EXPECT_EQ(thrown([&] { writer.skippedEntity("u"); }),
            "SAXException: You cannot refer to the unparsed entity \"u\"");
  writer.end("r");
  EXPECT_EQ(writer.text(),
            "<!DOCTYPE r SYSTEM \"s\" [  <!ENTITY x SYSTEM \"x.xml\">  <!ENTITY t \"text\">"
            "  <!ENTITY m \"<e/>\">  <!ENTITY c \"]]>\">  <!ENTITY u SYSTEM \"u.gif\" NDATA gif>]>"
            "<r>&x;&t;&elsewhere;</r>");
}

TEST(XML10Reference, NeedsADeclarationHereInAStandaloneDocument) {
  XML10Writer writer({.declaration = true});
  writer.set(properties::standalone, true);
  writer.startDocument();
  writer.startDTD("r", "", "s");
  EXPECT_EQ(thrown([&] { writer.skippedEntity("%p"); }),
            "SAXException: The entity \"%p\" is not declared");
  writer.internalEntityDecl("t", "text");
  writer.endDTD();
  writer.start("r");
  EXPECT_EQ(thrown([&] { writer.skippedEntity("e"); }),
            "SAXException: The entity \"e\" is not declared");
  writer.skippedEntity("t");
  writer.end("r");
  EXPECT_EQ(writer.text(),
            "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>"
            "<!DOCTYPE r SYSTEM \"s\" [  <!ENTITY t \"text\">]><r>&t;</r>");
}

TEST(XML10Entity, ThatWasReadIsWrittenAsItsText) {
  EXPECT_EQ(inRoot([](XML10Writer& w) {
              w.startEntity("e");
              w.characters("x");
              w.endEntity("e");
            }),
            "x");
}

}  // namespace
