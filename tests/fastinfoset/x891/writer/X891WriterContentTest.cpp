#include <HexOctets.h>
#include <gtest/gtest.h>

#include <sstream>

#include "X891WriterSupport.h"

// Text, CDATA sections, comments, instructions and references to entities.

namespace x891_test {
namespace {

using namespace Tavrin;

TEST(X891WriterText, IsOneChunkHoweverItComes) {
  EXPECT_EQ(content([](Writer& writer) {
              writer.characters("a");
              writer.characters("");
              writer.ignorableWhitespace("\n ");
              writer.startEntity("e");
              writer.characters("b");
              writer.endEntity("e");
            }),
            document("3C 00 'a' 92 01 'a' 0A 20 'b' FF"));
  EXPECT_EQ(content([](Writer& writer) { writer.ignorableWhitespace("\t"); }),
            document("3C 00 'a' 90 09 FF"));
}

TEST(X891WriterText, HasNoPlaceOutsideOfTheRoot) {
  EXPECT_EQ(written([](Writer& writer) {
              writer.startDocument();
              writer.ignorableWhitespace("\n");
              writer.leaf("a");
              writer.ignorableWhitespace("\n");
              writer.endDocument();
            }),
            document("3C 00 'a' FF"));
}

TEST(X891WriterText, EntersItsTableUpToALength) {
  const std::string shortOnes = textOf(32);
  const std::string longOnes = textOf(33);
  Writer writer;
  writer.startDocument();
  writer.start("a");
  writer.news();
  const auto chunk = [&](const std::string& text) {
    writer.characters(text);
    writer.comment("");
    return writer.news();
  };
  EXPECT_EQ(chunk(shortOnes), hex("92 1D '" + shortOnes + "' E2 FF"));
  EXPECT_EQ(chunk(shortOnes), hex("A0 E2 FF"));
  EXPECT_EQ(chunk(longOnes), hex("82 1E '" + longOnes + "' E2 FF"));
  EXPECT_EQ(chunk(longOnes), hex("82 1E '" + longOnes + "' E2 FF"));
  writer.set(properties::indexedChunkLength, std::uint64_t{1000});
  EXPECT_EQ(chunk(longOnes), hex("92 1E '" + longOnes + "' E2 FF"));
  EXPECT_EQ(chunk(longOnes), hex("A1 E2 FF"));
}

TEST(X891WriterText, HasALengthOfEveryForm) {
  const auto chunk = [](std::size_t length) {
    const std::string whole =
        content([&](Writer& writer) { writer.characters(std::string(length, 'x')); });
    return whole.substr(0, whole.find(" 78 78"));
  };
  EXPECT_EQ(chunk(2), document("3C 00 'a' 91"));
  EXPECT_EQ(chunk(3), document("3C 00 'a' 92 00"));
  EXPECT_EQ(chunk(258), document("3C 00 'a' 82 FF"));
  EXPECT_EQ(chunk(259), document("3C 00 'a' 83 00 00 00 00"));
  EXPECT_EQ(chunk(65795), document("3C 00 'a' 83 00 01 00 00"));
}

// C.28: the forms of an index begin at 17, 1041 and 263185.
TEST(X891WriterText, HasAnIndexOfEveryForm) {
  Writer writer;
  writer.set(properties::valueIndexing, std::string("always"));
  writer.startDocument();
  writer.start("a");
  std::size_t sent = 0;
  const auto indexOf = [&](std::size_t number) {
    for (; sent <= number; ++sent) {
      writer.characters(shortText(sent));
      writer.comment("");
    }
    writer.news();
    writer.characters(shortText(number));
    writer.comment("");
    return writer.news();
  };
  EXPECT_EQ(indexOf(0), hex("A0 E2 FF"));
  EXPECT_EQ(indexOf(15), hex("AF E2 FF"));
  EXPECT_EQ(indexOf(16), hex("B0 00 E2 FF"));
  EXPECT_EQ(indexOf(1039), hex("B3 FF E2 FF"));
  EXPECT_EQ(indexOf(1040), hex("B4 00 00 E2 FF"));
  EXPECT_EQ(indexOf(263183), hex("B7 FF FF E2 FF"));
  EXPECT_EQ(indexOf(263184), hex("B8 00 00 00 E2 FF"));
}

// Many octets of it are looked at together.
TEST(X891WriterText, MayBeLong) {
  const struct {
    std::string piece;
    std::string fault;
  } cases[] = {
      {"\xC3\xA9", ""},
      {"\xE0\xA4\xA8\xED\x95\x9C", ""},
      {"\xEF\xBF\xBD\xF0\x9F\x8E\x89\r", ""},
      {"\x01", "character U+0001"},
      {"\xEF\xBF\xBE", "character U+FFFE"},
      {"\xC3", "UTF-8 octet 0xC3"},
      {"\xED\xA0\x80", "UTF-8 octet 0xED"},
      {"\xF4\x90\x80\x80", "UTF-8 octet 0xF4"},
  };
  for (const auto& [piece, fault] : cases) {
    for (const std::size_t front : {0, 15, 16, 17, 31, 48, 63}) {
      for (const std::size_t behind : {0, 40, 120}) {
        const std::string text = std::string(front, 'x') + piece + std::string(behind, 'y');
        if (text.size() <= 32) continue;  // Shorter ones enter the table.
        if (!fault.empty()) {
          EXPECT_EQ(refusal([&](Writer& w) { w.characters(text); }),
                    "SAXException: You cannot put " + fault + " into character data");
          continue;
        }
        EXPECT_EQ(written([&](Writer& writer) {
                    writer.startDocument();
                    writer.start("a");
                    writer.characters(text);
                    writer.end("a");
                    writer.endDocument();
                  }),
                  hex("E0 00 00 01 00 3C 00 'a' 82") + ' ' +
                      EventLog::showOctets(static_cast<char>(text.size() - 3) + text + '\xFF'));
      }
    }
  }
}

TEST(X891WriterText, IsRefusedWhereItIsNone) {
  EXPECT_EQ(refusal([](Writer& w) { w.characters(std::string(1, '\0')); }),
            "SAXException: You cannot put character U+0000 into character data");
  EXPECT_EQ(refusal([](Writer& w) { w.characters("a\xED\xA0\x80"); }),
            "SAXException: You cannot put UTF-8 octet 0xED into character data");
  EXPECT_EQ(refusal([](Writer& w) { w.characters("\xEF\xBF\xBF"); }),
            "SAXException: You cannot put character U+FFFF into character data");
  EXPECT_EQ(refusal([](Writer& w) { w.ignorableWhitespace("x"); }),
            "SAXException: You cannot put non-whitespace characters into ignorable whitespace");
  Writer writer;
  writer.startDocument();
  EXPECT_EQ(thrown([&] { writer.characters("x"); }),
            "SAXException: You cannot write character data at this point");
}

TEST(X891WriterSections, AreChunksOfTheirOwn) {
  EXPECT_EQ(content([](Writer& writer) {
              writer.characters("x");
              writer.startCDATA();
              writer.characters("<");
              writer.ignorableWhitespace(" ");
              writer.characters("&");
              writer.endCDATA();
              writer.characters("y");
            }),
            document("3C 00 'a' 90 'x' 8C 26 00 '< &' 90 'y' FF"));
}

TEST(X891WriterSections, LeaveNoTraceWhereTheyAreEmpty) {
  EXPECT_EQ(content([](Writer& writer) {
              writer.leaf("b");
              writer.startCDATA();
              writer.characters("");
              writer.endCDATA();
            }),
            document("3C 00 'a' 3C 00 'b' FF F0"));
}

TEST(X891WriterSections, FollowEachOther) {
  const auto section = [](Writer& writer, const std::string& text) {
    writer.startCDATA();
    writer.characters(text);
    writer.endCDATA();
  };
  EXPECT_EQ(content([&](Writer& writer) {
              section(writer, "]]");
              section(writer, ">");
              section(writer, std::string(259, 'x'));
            }),
            document("3C 00 'a' 8C 25 ']]' 8C 24 '>' 8C 27 00 00 00 00 '" + std::string(259, 'x') +
                     "' FF"));
}

// As text, a section ends with its first "]]>".
TEST(X891WriterSections, AreSeveralWhereTheyHoldTheirOwnEnd) {
  using Pieces = std::vector<std::string>;
  const auto section = [](const Pieces& pieces) {
    return content([&](Writer& writer) {
      writer.startCDATA();
      for (const std::string& piece : pieces) writer.characters(piece);
      writer.endCDATA();
    });
  };
  const std::string two = document("3C 00 'a' 8C 25 ']]' 8C 24 '>' FF");
  for (const Pieces& pieces : {Pieces{"]]>"}, {"]]", ">"}, {"]", "]", ">"}, {"]", "]>"}}) {
    EXPECT_EQ(section(pieces), two);
  }
  EXPECT_EQ(section({"x]]", ">y"}), document("3C 00 'a' 8C 26 00 'x]]' 8C 25 '>y' FF"));
  EXPECT_EQ(section({"]]>]]>"}), document("3C 00 'a' 8C 25 ']]' 8C 26 00 '>]]' 8C 24 '>' FF"));
  EXPECT_EQ(section({"]]]>"}), document("3C 00 'a' 8C 26 00 ']]]' 8C 24 '>' FF"));
  EXPECT_EQ(section({"]]", "]"}), document("3C 00 'a' 8C 26 00 ']]]' FF"));
  EXPECT_EQ(content([](Writer& w) { w.object("", 9, CDATAData("]]>")); }), two);
  EXPECT_EQ(content([](Writer& w) { w.octets("", 9, "]]>"); }), two);
  EXPECT_EQ(content([](Writer& writer) {
              writer.characters("]]");
              writer.startCDATA();
              writer.characters(">");
              writer.endCDATA();
              writer.characters("]]>");
            }),
            document("3C 00 'a' 91 ']]' 8C 24 '>' 92 00 ']]>' FF"));
}

TEST(X891WriterEntities, AreReferencesWithTheIdentifiersThatAreKnown) {
  EXPECT_EQ(written([](Writer& writer) {
              writer.startDocument();
              writer.startDTD("a", "", "s");
              writer.externalEntityDecl("e", "", "s");
              writer.externalEntityDecl("f", "p", "t");
              writer.externalEntityDecl("e", "q", "other");
              writer.skippedEntity("e");
              writer.endDTD();
              writer.skippedEntity("e");
              writer.start("a");
              writer.characters("x");
              writer.skippedEntity("e");
              writer.skippedEntity("f");
              writer.skippedEntity("g");
              writer.skippedEntity("%e");
              writer.skippedEntity("[dtd]");
              writer.skippedEntity("g");
              writer.end("a");
              writer.skippedEntity("e");
              writer.endDocument();
            }),
            document("C6 00 's' F0 3C 00 'a' 90 'x' CA 00 'e' 80 CB 00 'f' 00 't' 00 'p'"
                     "C8 00 'g' C8 82 FF"));
  EXPECT_EQ(refusal([](Writer& w) { w.skippedEntity("a b"); }),
            "SAXException: \"a b\" is not a name");
  EXPECT_EQ(refusal([](Writer& w) { w.skippedEntity(""); }), "SAXException: \"\" is not a name");
}

// A reference in Fast Infoset has identifiers of its own: the reader tells of them in the content.
TEST(X891WriterEntities, MayBeDeclaredInFrontOfAReference) {
  std::istringstream stream(
      octets("E0 00 00 01 00 3C 00 'a' CA 00 'e' 00 's' 3C 00 'b' CB 00 'f' 80 00 'p' F0 "
             "C8 80 FF"));
  Writer writer;
  Tavrin::XMLReader_X891 reader;
  reader.setContentHandler(&writer);
  reader.setProperty(Tavrin::properties::declarationHandler,
                     static_cast<Tavrin::DeclHandler*>(&writer));
  reader.parse(stream);
  // The identifiers stand with each reference.
  EXPECT_EQ(writer.written(),
            document("3C 00 'a' CA 00 'e' 00 's' 3C 00 'b' CB 00 'f' 80 00 'p' F0 CA 80 80 FF"));
}

// A section is text and nothing else.
TEST(X891WriterEntities, AreRefusedInSections) {
  const char* const message = "SAXException: You cannot refer to an entity at this point";
  EXPECT_EQ(content([&](Writer& writer) {
              writer.startCDATA();
              writer.characters("x");
              for (const char* name : {"e", "%e", "", "a b"}) {
                EXPECT_EQ(thrown([&] { writer.skippedEntity(name); }), message);
              }
              writer.skippedEntity("[dtd]");
              writer.characters("y");
              writer.endCDATA();
              writer.skippedEntity("e");
            }),
            document("3C 00 'a' 8C 25 'xy' C8 00 'e' FF"));
}

TEST(X891WriterComments, AreRefusedWhereTheyAreNone) {
  EXPECT_EQ(refusal([](Writer& w) { w.comment("a--b"); }),
            "SAXException: You cannot put \"--\" into a comment");
  EXPECT_EQ(refusal([](Writer& w) { w.comment("a-->"); }),
            "SAXException: You cannot put \"-->\" into a comment");
  EXPECT_EQ(refusal([](Writer& w) { w.comment("a-"); }),
            "SAXException: You cannot end a comment with \"-\"");
  EXPECT_EQ(refusal([](Writer& w) { w.comment("\x0B"); }),
            "SAXException: You cannot put character U+000B into a comment");
}

TEST(X891WriterInstructions, LeaveOutWhiteSpaceInFrontOfTheirData) {
  EXPECT_EQ(written([](Writer& writer) {
              writer.startDocument();
              writer.processingInstruction("t", " \t\r\nd ");
              writer.start("a");
              writer.processingInstruction("t", "\nd ");
              writer.processingInstruction("t", " \n");
              writer.end("a");
              writer.processingInstruction("t", "\t\xC2\xA0");
              writer.endDocument();
            }),
            document("E1 00 't' 41 'd ' 3C 00 'a' E1 80 80 E1 80 FF F0 E1 80 41 C2 A0 F0"));
}

TEST(X891WriterInstructions, AreRefusedWhereTheyAreNone) {
  const auto instruction = [](const std::string& target, const std::string& data) {
    return refusal([&](Writer& w) { w.processingInstruction(target, data); });
  };
  EXPECT_EQ(instruction("", "d"), "SAXException: \"\" is not a name");
  EXPECT_EQ(
      instruction("xMl", "d"),
      "SAXException: \"xMl\" is reserved and cannot be the target of a processing instruction");
  EXPECT_EQ(instruction("a:b", "d"), "SAXException: \"a:b\" is not a name without a colon");
  EXPECT_EQ(instruction("t", " ?>"),
            "SAXException: You cannot put \"?>\" into a processing instruction");
  EXPECT_EQ(instruction("t", "?>"),
            "SAXException: You cannot put \"?>\" into a processing instruction");
  EXPECT_EQ(instruction("t", "\xF5"),
            "SAXException: You cannot put UTF-8 octet 0xF5 into a processing instruction");
}

}  // namespace
}  // namespace x891_test
