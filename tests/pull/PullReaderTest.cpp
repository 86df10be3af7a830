#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <sstream>
#include <vector>

#include "PullLog.h"
#include "WhatIsThrown.h"

// The operations of the pull reader, on both encodings.

namespace {

using namespace Tavrin;

class PullReaders : public testing::TestWithParam<const char*> {
 protected:
  /// A document in the encoding.
  std::string encode(const std::string& text) {
    if (std::string(GetParam()) == "XML10") return text;
    std::ostringstream out;
    XMLWriter_X891 writer;
    writer.setOutputStream(&out);
    XMLReader_XML10 reader;
    connect(reader, writer);
    reader.parse(text.data(), text.size(), true);
    return out.str();
  }
};

INSTANTIATE_TEST_SUITE_P(Types, PullReaders, testing::Values("XML10", "X891"));

constexpr const char* kMenu =
    "<menu day='Friday'><dish price='7'>Fish <i>and <b>chips</b></i>!</dish><dish/>"
    "<note>n<!--c--><?p d?><x><x><x/></x></x></note>tail</menu>";

TEST_P(PullReaders, ReadTextIsThatOfAllThatIsInside) {
  const std::string octets = encode(kMenu);
  MemoryStream stream(octets);
  PullReader reader(stream);
  std::vector<std::string> told;
  while (reader.nextElement()) {
    const std::string name(reader.qName());
    if (name == "menu") continue;
    told.push_back(name + "=" + reader.readText());
    EXPECT_EQ(PullEvent::endElement, reader.event());
    EXPECT_EQ(name, reader.qName());
    EXPECT_EQ(2u, reader.depth());
  }
  EXPECT_EQ((std::vector<std::string>{"dish=Fish and chips!", "dish=", "note=n"}), told);
  EXPECT_TRUE(reader.hasEnded());
  EXPECT_EQ(0u, reader.depth());
}

TEST_P(PullReaders, SkipElementGoesToItsEnd) {
  const std::string octets = encode(kMenu);
  MemoryStream stream(octets);
  PullReader reader(stream);
  PullLog log(reader);
  while (reader.next()) {
    log.deliver();
    if (reader.event() == PullEvent::startElement && reader.depth() == 2) {
      EXPECT_TRUE(reader.skipElement());
      log.deliver();
    }
  }
  EXPECT_EQ(
      "startDocument()\n"
      "startElement(, menu, menu, [{, day, day, CDATA, Friday}])\n"
      "startElement(, dish, dish, [{, price, price, CDATA, 7}])\n"
      "endElement(, dish, dish)\n"
      "startElement(, dish, dish, [])\n"
      "endElement(, dish, dish)\n"
      "startElement(, note, note, [])\n"
      "endElement(, note, note)\n"
      "characters(tail)\n"
      "endElement(, menu, menu)\n"
      "endDocument()\n",
      log.log.text());
}

TEST_P(PullReaders, GoOnWhereABlockEndedWithinAnElement) {
  const std::string octets = encode(kMenu);
  for (std::size_t size = 1; size < 40; ++size) {
    PullReader reader;
    std::string text;
    std::vector<std::string> told;
    bool isReading = false;
    for (std::size_t begin = 0; !reader.hasEnded() && begin < octets.size(); begin += size) {
      const std::string block = octets.substr(begin, size);
      reader.supply(block.data(), block.size(), begin + size >= octets.size());
      for (;;) {
        if (!isReading && !reader.nextElement()) break;
        if (!isReading && reader.localName() == "menu") continue;
        isReading = !reader.readText(text);
        if (isReading) break;
        told.push_back(std::exchange(text, {}));
      }
    }
    EXPECT_EQ((std::vector<std::string>{"Fish and chips!", "", "n"}), told) << size;
    EXPECT_TRUE(reader.hasEnded());
  }
}

TEST_P(PullReaders, RefuseWhatCannotBe) {
  const std::string octets = encode("<a>text</a>");
  MemoryStream stream(octets);
  PullReader reader(stream);
  EXPECT_EQ("SAXException: skipElement called where there is no start tag",
            thrown([&] { reader.skipElement(); }));
  ASSERT_TRUE(reader.nextElement());
  ASSERT_TRUE(reader.next());
  EXPECT_EQ("SAXException: readText called where there is no start tag",
            thrown([&] { reader.readText(); }));
  EXPECT_EQ("SAXException: supply called of a pull reader that reads a stream",
            thrown([&] { reader.supply("", 0, true); }));
  EXPECT_EQ("SAXException: parse called of a pull reader's reader",
            thrown([&] { reader.reader().parse(stream); }));
  EXPECT_EQ("SAXException: parse called of a pull reader's reader",
            thrown([&] { reader.reader().parse("", 0, true); }));
  EXPECT_EQ("SAXException: Coalescing of characters asked of a pull reader's reader",
            thrown([&] { reader.reader().setFeature(features::coalesceCharacters, true); }));
  reader.reader().setFeature(features::coalesceCharacters, false);
  EXPECT_EQ("text", reader.text());

  PullReader blocks;
  EXPECT_TRUE(blocks.needsBlock());
  EXPECT_FALSE(blocks.next());
  EXPECT_EQ("SAXException: The encoding of the document is not known yet",
            thrown([&] { blocks.reader(); }));
  blocks.supply(octets.data(), octets.size(), true);
  EXPECT_EQ("SAXException: supply called while the last block is being read",
            thrown([&] { blocks.supply(octets.data(), octets.size(), true); }));
  ASSERT_TRUE(blocks.next());
  EXPECT_EQ("SAXException: supply called while the last block is being read",
            thrown([&] { blocks.supply(octets.data(), octets.size(), true); }));
  EXPECT_EQ("SAXException: No pull reader of type \"FI\"", thrown([] { PullReader("FI"); }));
}

/// Calls an operation of the standard reader, whichever it is.
template <typename Operation>
void callOf(XMLReader& reader, Operation operation) {
  if (auto* const text = dynamic_cast<XMLReader_XML10*>(&reader)) return operation(*text);
  operation(dynamic_cast<XMLReader_X891&>(reader));
}

TEST_P(PullReaders, CannotBeStoppedOrPaused) {
  const std::string refusal = "SAXException: stop or pause called of a pull reader's reader";
  const std::string octets = encode("<a>text<b/></a>");
  {
    PullReader reader(GetParam());
    reader.supply(octets.data(), 8, false);
    ASSERT_TRUE(reader.nextElement());
    EXPECT_EQ(refusal, thrown([&] {
                callOf(reader.reader(), [](auto& standard) { standard.stop(); });
                while (reader.next()) {
                }
                reader.supply(octets.data() + 8, octets.size() - 8, true);
                while (reader.next()) {
                }
              }));
  }
  // Text can be paused only while it is parsed, as by a handler of errors or a resolver.
  if (std::string(GetParam()) == "X891") {
    MemoryStream stream(octets);
    PullReader reader(stream);
    ASSERT_TRUE(reader.nextElement());
    EXPECT_EQ(refusal,
              thrown([&] { callOf(reader.reader(), [](auto& standard) { standard.pause(); }); }));
    EXPECT_TRUE(reader.next());
    EXPECT_EQ("text", reader.text());
    return;
  }
  struct Pauser : DefaultHandler {
    std::unique_ptr<std::istream> resolveEntity(const std::string&, const std::string&) override {
      reader->pause();
      return nullptr;
    }
    XMLReader_XML10* reader = nullptr;
  } pauser;
  const std::string document = "<!DOCTYPE a [<!ENTITY e SYSTEM 'e'>]><a>&e;<b/></a>";
  MemoryStream stream(document);
  PullReader reader(stream);
  pauser.reader = &dynamic_cast<XMLReader_XML10&>(reader.reader());
  reader.reader().setEntityResolver(&pauser);
  EXPECT_EQ(refusal, thrown([&] {
              while (reader.next()) {
              }
            }));
}

TEST_P(PullReaders, ReadTextNeedsAllBlocks) {
  const std::string octets = encode("<a>text<b/></a>");
  PullReader reader(GetParam());
  reader.supply(octets.data(), octets.size() - 2, false);
  ASSERT_TRUE(reader.nextElement());
  EXPECT_EQ("SAXException: readText called where another block is needed",
            thrown([&] { reader.readText(); }));
}

TEST_P(PullReaders, ReadDocumentAfterDocumentAndAfterFailures) {
  const std::string octets = encode("<a b='c'>text</a>");
  PullReader reader;
  for (int i = 0; i < 3; ++i) {
    reader.supply(octets.data(), octets.size(), true);
    PullLog log(reader);
    log.pull();
    EXPECT_NE(std::string::npos, log.log.text().find("characters(text)"));
    EXPECT_TRUE(reader.hasEnded());
    EXPECT_FALSE(reader.needsBlock());
    reader.supply(nullptr, 0, true);
    EXPECT_FALSE(reader.next());
    EXPECT_TRUE(reader.hasEnded());

    reader.supply(octets.data(), octets.size() - 1, true);
    EXPECT_FALSE(reader.hasEnded());
    EXPECT_NE("nothing", thrown([&] { log.pull(); }));
    EXPECT_FALSE(reader.next());
    EXPECT_FALSE(reader.hasEnded());
    EXPECT_FALSE(reader.needsBlock());
  }
}

TEST(PullReader, ReadsDocumentsOfFastInfosetThatFollowEachOther) {
  std::ostringstream out;
  for (const char* const name : {"a", "b", "c"}) {
    XMLWriter_X891 writer;
    writer.setOutputStream(&out);
    writer.startDocument();
    writer.startElement("", name, name, AttributesImpl());
    writer.characters(name);
    writer.endElement("", name, name);
    writer.endDocument();
  }
  const std::string octets = out.str();
  PullReader reader;
  std::string told;
  unsigned long left = octets.size();
  for (; left > 0; left = reader.unusedOctets()) {
    reader.supply(octets.data() + (octets.size() - left), left, false);
    ASSERT_TRUE(reader.nextElement());
    told += reader.localName();
    told += reader.readText();
    while (reader.next()) continue;
    ASSERT_TRUE(reader.hasEnded());
  }
  EXPECT_EQ("aabbcc", told);
}

TEST(PullReader, PassesOnWhatTheStreamThrows) {
#ifdef _LIBCPP_VERSION
  GTEST_SKIP() << "libc++ takes a directory for an empty file";
#endif
  std::ifstream directory("/", std::ios::binary);
  EXPECT_THROW(PullReader{directory}, std::ios_base::failure);
}

TEST(PullReader, RecognisesDeclarationsInBlocksOfAnySize) {
  const std::string document = std::string("<?xml version='1.0' encoding='finf'?>") +
                               std::string("\xE0\0\0\1\0\x3C\0a\xFF", 9);
  for (std::size_t size = 1; size <= document.size(); ++size) {
    PullReader reader;
    PullLog log(reader);
    for (std::size_t begin = 0; begin < document.size(); begin += size) {
      const std::string block = document.substr(begin, size);
      reader.supply(block.data(), block.size(), false);
      log.pull();
    }
    EXPECT_TRUE(reader.hasEnded()) << size;
    EXPECT_EQ(
        "startDocument()\nstartElement(, a, a, [])\n"
        "endElement(, a, a)\nendDocument()\n",
        log.log.text());
  }
  PullReader text;
  text.supply("<?xml version='1.0' enc", 23, false);
  EXPECT_FALSE(text.next());
  text.supply("oding='UTF-8'?><a/>", 19, true);
  EXPECT_TRUE(text.nextElement());
  PullReader empty;
  empty.supply(nullptr, 0, true);
  EXPECT_EQ("SAXParseException: no element found (1:1)", thrown([&] {
              while (empty.next()) continue;
            }));
}

TEST_P(PullReaders, TellEachEventWithItsLastOctet) {
  const std::string octets = encode(kMenu);
  OctetByOctet narrow(octets);
  std::istream stream(&narrow);
  PullReader reader(stream);
  std::vector<std::size_t> expected;
  while (reader.next()) expected.push_back(narrow.given());
  std::vector<std::size_t> given;
  PullReader blocks(GetParam());
  for (std::size_t i = 0; i < octets.size(); ++i) {
    const char octet = octets[i];
    blocks.supply(&octet, 1, i + 1 == octets.size());
    while (blocks.next()) given.push_back(i + 1);
  }
  EXPECT_EQ(expected, given);
}

TEST_P(PullReaders, CanBeLeftAnywhere) {
  const std::string octets = encode(kMenu);
  for (int events = 0; events < 20; ++events) {
    MemoryStream stream(octets);
    PullReader reader(stream);
    for (int i = 0; i < events; ++i) ASSERT_TRUE(reader.next());
    PullReader blocks;
    blocks.supply(octets.data(), octets.size() - 3, false);
    for (int i = 0; i < events; ++i) ASSERT_TRUE(blocks.next());
  }
}

TEST_P(PullReaders, HaveNothingForOtherEvents) {
  const std::string octets = encode("<a b='c'><?t d?><!--e-->f</a>");
  MemoryStream stream(octets);
  PullReader reader(stream);
  std::ostringstream told;
  while (reader.next()) {
    told << reader.uri() << '|' << reader.localName() << '|' << reader.qName() << '|'
         << reader.attributes().getLength() << '|' << reader.mappingCount() << '|' << reader.text()
         << '|' << reader.target() << '|' << reader.data() << '|' << reader.octets() << '|'
         << reader.publicId() << reader.systemId() << reader.notationName() << reader.part(4)
         << reader.part(99) << '|' << reader.depth() << '\n';
  }
  const std::string nothing = "|||0|0||||||0\n";
  EXPECT_EQ(nothing +
                "|a|a|1|0||||||1\n|||0|0||t|d|||1\n|||0|0|e|||||1\n|||0|0|f|||||1\n"
                "|a|a|0|0||||||1\n" +
                nothing,
            told.str());
}

}  // namespace
