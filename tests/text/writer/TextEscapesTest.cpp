#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TextWriter.h"

namespace {

std::string everyOctet() {
  std::string octets;
  for (int octet = 0; octet < 256; ++octet) octets += static_cast<char>(octet);
  return octets;
}

std::string writtenAsText(const std::string& text) {
  TextWriter writer;
  writer.startDocument();
  writer.start("r");
  writer.output.news();
  writer.characters(text);
  return writer.output.news();
}

std::string writtenAsCDATA(const std::string& text) {
  TextWriter writer;
  bringTo(Place::InCDATA, writer);
  writer.output.news();
  writer.characters(text);
  return writer.output.news();
}

std::string writtenAsValue(const std::string& text) {
  TextWriter writer;
  writer.startDocument();
  writer.start("r", {{"a", text}});
  return writer.text();
}

TEST(TextEscapes, OfCharacterDataAreThree) {
  for (const char octet : everyOctet()) {
    const std::string text(1, octet);
    const std::string expected = octet == '<'   ? "&lt;"
                                 : octet == '>' ? "&gt;"
                                 : octet == '&' ? "&amp;"
                                                : text;
    EXPECT_EQ(writtenAsText(text), ">" + expected) << static_cast<int>(octet);
  }
}

TEST(TextEscapes, OfAttributeValuesAreFour) {
  for (const char octet : everyOctet()) {
    const std::string text(1, octet);
    const std::string expected = octet == '<'    ? "&lt;"
                                 : octet == '&'  ? "&amp;"
                                 : octet == '\'' ? "&apos;"
                                 : octet == '\n' ? "&#xA;"
                                                 : text;
    EXPECT_EQ(writtenAsValue(text), "<r a='" + expected + "'") << static_cast<int>(octet);
  }
}

TEST(TextEscapes, OfCDATAAreNone) {
  for (const char octet : everyOctet()) {
    const std::string text(1, octet);
    EXPECT_EQ(writtenAsCDATA(text), "<![CDATA[" + text) << static_cast<int>(octet);
  }
}

// In the ASCII order: `&` then `'` then `<` then `>`.
TEST(TextEscapes, HoldForAllOctetsInOneText) {
  const std::string all = everyOctet();
  EXPECT_EQ(writtenAsText(all), ">" + all.substr(0, 0x26) + "&amp;" + all.substr(0x27, 0x15) +
                                    "&lt;" + "=" + "&gt;" + all.substr(0x3F));
  EXPECT_EQ(writtenAsValue(all), "<r a='" + all.substr(0, 0x0A) + "&#xA;" + all.substr(0x0B, 0x1B) +
                                     "&amp;" + "&apos;" + all.substr(0x28, 0x14) + "&lt;" +
                                     all.substr(0x3D) + "'");
  EXPECT_EQ(writtenAsCDATA(all), "<![CDATA[" + all);
}

TEST(TextEscapes, HoldWhereverTheCharactersStand) {
  const struct {
    const char* text;
    const char* characters;
    const char* value;
  } cases[] = {
      {"", "", ""},
      {"plain", "plain", "plain"},
      {"<a", "&lt;a", "&lt;a"},
      {"a<", "a&lt;", "a&lt;"},
      {"a<b", "a&lt;b", "a&lt;b"},
      {"<<", "&lt;&lt;", "&lt;&lt;"},
      {"<>&", "&lt;&gt;&amp;", "&lt;>&amp;"},
      {"a<<b>>c&&d", "a&lt;&lt;b&gt;&gt;c&amp;&amp;d", "a&lt;&lt;b>>c&amp;&amp;d"},
      {"&amp;", "&amp;amp;", "&amp;amp;"},
      {"&lt;", "&amp;lt;", "&amp;lt;"},
      {"]]>", "]]&gt;", "]]>"},
      {"''", "''", "&apos;&apos;"},
      {"\"'\"", "\"'\"", "\"&apos;\""},
      {"a\nb\n", "a\nb\n", "a&#xA;b&#xA;"},
      {"\r\n", "\r\n", "\r&#xA;"},
      {"\t\r", "\t\r", "\t\r"},
      {"\xC3\xA9 \xE2\x82\xAC", "\xC3\xA9 \xE2\x82\xAC", "\xC3\xA9 \xE2\x82\xAC"},
      {"\xFF\xFE<\x80", "\xFF\xFE&lt;\x80", "\xFF\xFE&lt;\x80"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(writtenAsText(c.text), ">" + std::string(c.characters));
    EXPECT_EQ(writtenAsValue(c.text), "<r a='" + std::string(c.value) + "'");
  }
}

TEST(TextEscapes, LeaveMarkupInCDATAAsItIs) {
  for (const std::string text : {"", "<a b='c'>&amp;</a>", "]] >", "]]", "\n\r\t", "<![CDATA["}) {
    EXPECT_EQ(writtenAsCDATA(text), "<![CDATA[" + text);
  }
}

TEST(TextEscapes, DoNotEndAtANul) {
  EXPECT_EQ(writtenAsText(std::string("a\0<\0", 4)), ">a" + std::string("\0&lt;\0", 6));
  EXPECT_EQ(writtenAsValue(std::string("a\0<\0", 4)), "<r a='a" + std::string("\0&lt;\0", 6) + "'");
  EXPECT_EQ(writtenAsCDATA(std::string("a\0<\0", 4)), "<![CDATA[a" + std::string("\0<\0", 3));
}

TEST(TextEscapes, HoldForLongTexts) {
  constexpr int kCount = 200'000;
  std::string text;
  std::string characters;
  std::string value;
  for (int i = 0; i < kCount; ++i) {
    text += "<'x>";
    characters += "&lt;'x&gt;";
    value += "&lt;&apos;x>";
  }
  EXPECT_EQ(writtenAsText(text), ">" + characters);
  EXPECT_EQ(writtenAsValue(text), "<r a='" + value + "'");
}

TEST(CharacterData, IsWrittenInRunsBetweenTheEscapes) {
  const struct {
    const char* text;
    std::vector<std::string> pieces;
  } cases[] = {
      {"plain text", {"plain text"}},
      {"ab<cd>ef&gh", {"ab", "&lt;", "cd", "&gt;", "ef", "&amp;", "gh"}},
      {"<ab>", {"&lt;", "ab", "&gt;"}},
      {"<>", {"&lt;", "&gt;"}},
  };
  for (const auto& c : cases) {
    TextWriter writer;
    writer.startDocument();
    writer.start("r");
    writer.flush();
    writer.output.keepPieces();
    writer.characters(c.text);
    EXPECT_EQ(writer.output.pieces(), c.pieces);
  }
}

// The caller answers for these: nothing in them is escaped or checked.
TEST(NothingIsEscaped, InNamesInstructionsCommentsAndDeclarations) {
  TextWriter writer;
  const std::string s = "<&'\">\n";
  writer.startDocument();
  writer.startDTD(s, s, s);
  writer.notationDecl(s, s, s);
  writer.unparsedEntityDecl(s, s, s, s);
  writer.internalEntityDecl(s, s);
  writer.externalEntityDecl(s, s, s);
  writer.elementDecl(s, s);
  writer.attributeDecl(s, s, s, s, s);
  writer.endDTD();
  writer.startPrefixMapping(s, s);
  writer.start(s);
  writer.processingInstruction(s, s);
  writer.comment(s);
  writer.end(s);
  const std::string expected =
      "<!DOCTYPE @ PUBLIC \"@\" \"@\" ["
      "  <!NOTATION @ PUBLIC \"@\" \"@\"@>"
      "  <!ENTITY @ PUBLIC \"@\" \"@\"@ NDATA @>"
      "  <!ENTITY @ \"@\">"
      "  <!ENTITY @ PUBLIC \"@\" \"@\">"
      "  <!ELEMENT @ @>"
      "  <!ATTLIST @ @ @ @ \"@\">"
      "]>"
      "<@ xmlns:@='@'><?@ @?><!--@--></@>";
  std::string substituted;
  for (const char c : expected) {
    if (c == '@') {
      substituted += s;
    } else {
      substituted += c;
    }
  }
  EXPECT_EQ(writer.text(), substituted);
}

TEST(NothingIsEscaped, InAttributeNames) {
  TextWriter writer;
  writer.startDocument();
  writer.start("r", {{"<&'\">", "v"}});
  EXPECT_EQ(writer.text(), "<r <&'\">='v'");
}

}  // namespace
