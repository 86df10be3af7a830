#include <gtest/gtest.h>

#include <functional>

#include "FIWriterProbe.h"
#include "WhatIsThrown.h"

// Text and CDATA sections, and what leaves no trace.

namespace writer_test {
namespace {

/// The document of a root, `r`, with some content.
std::string withContent(const std::function<void(Probe&)>& content) {
  Probe writer;
  writer.startDocument();
  writer.start("r");
  content(writer);
  writer.end("r");
  writer.endDocument();
  return writer.written();
}

/// The same from the notation of the content. What it leaves must be whole octets.
std::string documentOf(const std::string& content) {
  return document("3C 00 'r' " + content + " FF");
}

TEST(WriterText, GathersIntoOneChunk) {
  EXPECT_EQ(withContent([](Probe& writer) {
              writer.characters("ab");
              writer.characters("");
              writer.characters("cd");
            }),
            documentOf("92 01 'abcd'"));
  EXPECT_EQ(withContent([](Probe& writer) {
              for (int i = 0; i < 7; ++i) writer.characters("x");
            }),
            documentOf("82 04 'xxxxxxx'"));
  const std::string all = withContent([](Probe& writer) {
    for (int i = 0; i < 259; ++i) writer.characters(".");
  });
  EXPECT_EQ(all, documentOf("83 00 00 00 00 '" + std::string(259, '.') + "'"));
}

TEST(WriterText, IsNothingWhenEmpty) {
  EXPECT_EQ(withContent([](Probe& writer) { writer.characters(""); }), documentOf(""));
  EXPECT_EQ(withContent([](Probe& writer) {
              writer.leaf("e");
              writer.characters("");
            }),
            document("3C 00 'r' 3C 00 'e' FF F0"));
}

TEST(WriterText, EndsWhereAnItemBeginsOrEnds) {
  EXPECT_EQ(withContent([](Probe& writer) {
              writer.characters("a");
              writer.start("e");
              writer.characters("b");
              writer.end("e");
              writer.characters("c");
              writer.comment("");
              writer.characters("d");
              writer.processingInstruction("t", "");
              writer.characters("e");
              writer.shorts({1});
              writer.characters("f");
            }),
            documentOf("90 'a' 3C 00 'e' 90 'b' F0 90 'c' E2 FF 90 'd' E1 00 't' FF 90 'e'"
                       "8C 09 00 01 90 'f'"));
}

TEST(WriterText, EndsAtTypedContentThatIsEmpty) {
  EXPECT_EQ(withContent([](Probe& writer) {
              writer.characters("a");
              writer.shorts({});
              writer.characters("b");
            }),
            documentOf("90 'a' 90 'b'"));
}

TEST(WriterText, OfSixOctetsIsIndexedAndOfSevenNever) {
  EXPECT_EQ(
      withContent([](Probe& writer) {
        for (const char* text : {"abcdef", "abcdef", "abcdefg", "abcdefg"}) {
          writer.characters(text);
          writer.comment("");
        }
      }),
      documentOf("92 03 'abcdef' E2 FF A0 E2 FF 82 04 'abcdefg' E2 FF 82 04 'abcdefg' E2 FF"));
}

TEST(WriterText, OfTheSeventeenthChunkIsTheIndexOfTheFirstAndANullOctet) {
  EXPECT_EQ(withContent([](Probe& writer) {
              for (const char c : std::string("abcdefghijklmnopqpa")) {
                writer.characters(std::string(1, c));
                writer.comment("");
              }
              writer.characters("q");
            }),
            documentOf("90 'a' E2 FF 90 'b' E2 FF 90 'c' E2 FF 90 'd' E2 FF 90 'e' E2 FF"
                       "90 'f' E2 FF 90 'g' E2 FF 90 'h' E2 FF 90 'i' E2 FF 90 'j' E2 FF"
                       "90 'k' E2 FF 90 'l' E2 FF 90 'm' E2 FF 90 'n' E2 FF 90 'o' E2 FF"
                       "90 'p' E2 FF 90 'q' E2 FF AF E2 FF A0 E2 FF A0 00"));
}

TEST(WriterText, IsCarriedOctetForOctet) {
  const std::string odd("\0\r\n\x7F\xC3\xA9\xFF<&]]>", 12);
  Probe writer;
  writer.startDocument();
  writer.start("r");
  writer.characters(odd);
  writer.end("r");
  writer.endDocument();
  EXPECT_EQ(writer.output.text(), octets("E0 00 00 01 00 3C 00 'r' 82 09") + odd + octets("FF"));
}

TEST(WriterCDATA, IsAChunkOfItsAlgorithm) {
  const auto section = [](const std::string& text) {
    return withContent([&text](Probe& writer) {
      writer.startCDATA();
      writer.characters(text);
      writer.endCDATA();
    });
  };
  EXPECT_EQ(section("a"), documentOf("8C 24 'a'"));
  EXPECT_EQ(section("ab"), documentOf("8C 25 'ab'"));
  EXPECT_EQ(section("abc"), documentOf("8C 26 00 'abc'"));
  EXPECT_EQ(section(textOf(258)), documentOf("8C 26 FF '" + textOf(258) + "'"));
  EXPECT_EQ(section(textOf(259)), documentOf("8C 27 00 00 00 00 '" + textOf(259) + "'"));
  EXPECT_EQ(section(textOf(260)), documentOf("8C 27 00 00 00 01 '" + textOf(260) + "'"));
}

TEST(WriterCDATA, TakesInTheTextInFrontOfItAndNoneBehindIt) {
  EXPECT_EQ(withContent([](Probe& writer) {
              writer.characters("ab");
              writer.startCDATA();
              writer.characters("c");
              writer.characters("d");
              writer.endCDATA();
              writer.characters("ef");
              writer.startCDATA();
              writer.endCDATA();
              writer.characters("g");
            }),
            documentOf("8C 26 01 'abcd' 8C 25 'ef' 90 'g'"));
}

TEST(WriterCDATA, OfNeighbouringSectionsStayApart) {
  EXPECT_EQ(withContent([](Probe& writer) {
              for (const char* text : {"a", "", "a"}) {
                writer.startCDATA();
                writer.characters(text);
                writer.endCDATA();
              }
            }),
            documentOf("8C 24 'a' 8C 24 'a'"));
}

TEST(WriterCDATA, IsNothingWhenEmptyButTheTerminatorInFrontOfIt) {
  const auto empty = [](Probe& writer) {
    writer.startCDATA();
    writer.endCDATA();
  };
  EXPECT_EQ(withContent(empty), documentOf(""));
  EXPECT_EQ(withContent([&empty](Probe& writer) {
              writer.leaf("e");
              empty(writer);
            }),
            documentOf("3C 00 'e' F0"));
  EXPECT_EQ(withContent([](Probe& writer) {
              writer.startCDATA();
              writer.characters("");
              writer.ignorableWhitespace(" ");
              writer.endCDATA();
            }),
            documentOf(""));
}

TEST(WriterCDATA, EntersNoTable) {
  EXPECT_EQ(withContent([](Probe& writer) {
              writer.startCDATA();
              writer.characters("a");
              writer.endCDATA();
              writer.characters("a");
              writer.comment("");
              writer.startCDATA();
              writer.characters("a");
              writer.endCDATA();
              writer.characters("a");
            }),
            documentOf("8C 24 'a' 90 'a' E2 FF 8C 24 'a' A0"));
}

TEST(WriterCDATA, IsBrokenByTypedContent) {
  EXPECT_EQ(withContent([](Probe& writer) {
              writer.characters("a");
              writer.startCDATA();
              writer.characters("b");
              writer.shorts({1});
              writer.characters("c");
              writer.endCDATA();
            }),
            documentOf("91 'ab' 8C 09 00 01 8C 24 'c'"));
}

TEST(WriterCDATA, KeepsWhatItHadWhenItsEndIsRefused) {
  EXPECT_EQ(withContent([](Probe& writer) {
              writer.startCDATA();
              writer.characters("a]]");
              EXPECT_EQ(thrown([&] { writer.characters("]]>"); }),
                        "SAXException: You cannot put \"]]>\" into a CDATA section");
              writer.characters(">");  // Only whole calls are looked at.
              writer.endCDATA();
            }),
            documentOf("8C 26 01 'a]]>'"));
}

TEST(WriterTrace, IsLeftByNothingThatIsNoContent) {
  Probe writer;
  writer.setDocumentLocator(nullptr);
  writer.startDocument();
  writer.ignorableWhitespace("\n");
  writer.startDTD("r", "p", "s");
  writer.notationDecl("n", "p", "s");
  writer.unparsedEntityDecl("u", "p", "s", "n");
  writer.elementDecl("r", "ANY");
  writer.attributeDecl("r", "a", "CDATA", "#IMPLIED", "");
  writer.internalEntityDecl("i", "v");
  writer.externalEntityDecl("x", "p", "s");
  writer.startEntity("[dtd]");
  writer.ignorableWhitespace(" ");
  writer.endEntity("[dtd]");
  writer.endDTD();
  writer.ignorableWhitespace("\t");
  writer.start("r");
  writer.characters("a");
  writer.ignorableWhitespace(" ");
  writer.characters("b");
  writer.startEntity("e");
  writer.characters("c");
  writer.endEntity("e");
  writer.characters("d");
  writer.skippedEntity("s");
  writer.characters("e");
  writer.endPrefixMapping("p");
  writer.characters("f");
  writer.flush();
  writer.characters("g");
  writer.end("r");
  writer.ignorableWhitespace("");
  writer.endDocument();
  EXPECT_EQ(writer.written(), documentOf("82 04 'abcdefg'"));
}

}  // namespace
}  // namespace writer_test
