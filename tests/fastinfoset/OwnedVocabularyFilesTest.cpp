#include <Tavrin/Tavrin.h>

#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "EventLog.h"
#include "HexOctets.h"
#include "Mutations.h"
#include "VocabularySupport.h"
#include "WhatIsThrown.h"

// Vocabularies as documents. The octets are written from X.891, C.2.5.

namespace vocabulary_test {
namespace {

using namespace Tavrin;

std::string shown(const std::string& octets) { return EventLog::showOctets(octets); }
std::string hex(const std::string& notation) { return shown(octets(notation)); }

/// What is thrown for a document.
std::string refusal(const std::string& document) {
  return thrown([&] { readFrom(document); });
}

TEST(OwnedVocabularyFile, HoldsEveryTable) {
  EXPECT_EQ(hex(kFileOfOneOfEach), shown(fileOf(oneOfEach())));
}

TEST(OwnedVocabularyFile, ReadsAsItWasWritten) {
  const std::string file = fileOf(oneOfEach());
  OwnedVocabulary vocabulary = readFrom(file);
  EXPECT_EQ(shown(file), shown(fileOf(vocabulary)));
  EXPECT_EQ(2U, vocabulary.addPrefix("p"));
  EXPECT_EQ(3U, vocabulary.addPrefix("q"));
  EXPECT_EQ(1U, vocabulary.addElementName("u", "l", "p:l"));
}

TEST(OwnedVocabularyFile, HasTheFirstElementName) {
  OwnedVocabulary unprefixed;
  unprefixed.addElementName("u", "l");
  unprefixed.addElementName("", "m");
  EXPECT_EQ(hex("E0 00 00 01 20 01 82 00 00 'u' 01 00 'l' 00 'm' 01 01 01 00 00 01"
                "38 CD 81 F0 00 FF"),
            shown(fileOf(unprefixed)));
  OwnedVocabulary ofXML;
  ofXML.addElementName(namespaces::xml, "l", "xml:l");
  EXPECT_EQ(hex("E0 00 00 01 20 00 82 00 00 'l' 00 03 00 00 00 00 FF"), shown(fileOf(ofXML)));
  OwnedVocabulary plain;
  plain.addElementName("", "l");
  EXPECT_EQ(hex("E0 00 00 01 20 00 82 00 00 'l' 00 00 00 00 FF"), shown(fileOf(plain)));
  for (const OwnedVocabulary& vocabulary : {unprefixed, ofXML, plain}) {
    EXPECT_EQ(shown(fileOf(vocabulary)), shown(fileOf(readFrom(fileOf(vocabulary)))));
  }
}

TEST(OwnedVocabularyFile, HasANameOfItsOwnWithoutElementNames) {
  OwnedVocabulary vocabulary;
  EXPECT_EQ(hex("E0 00 00 01 00 3C 09 'vocabulary' FF"), shown(fileOf(vocabulary)));
  EXPECT_TRUE(readFrom(fileOf(vocabulary)).isEmpty());
  vocabulary.addAttributeValue("v");
  EXPECT_EQ(hex("E0 00 00 01 20 00 10 00 00 'v' 3C 09 'vocabulary' FF"), shown(fileOf(vocabulary)));
  EXPECT_EQ(shown(fileOf(vocabulary)), shown(fileOf(readFrom(fileOf(vocabulary)))));
}

TEST(OwnedVocabularyFile, IsADocumentThatAReaderReads) {
  EventLog log;
  log.showLocator = false;
  XMLReader_X891 reader;
  log.attachTo(reader);
  std::istringstream stream(fileOf(oneOfEach()));
  reader.parse(stream);
  EXPECT_EQ(join({"startDocument()", "startPrefixMapping(p, u)", "startElement(u, l, p:l, [])",
                  "endElement(u, l, p:l)", "endPrefixMapping(p)", "endDocument()"}),
            log.text());
}

// C.21 and C.22: counts and lengths where their forms change.
TEST(OwnedVocabularyFile, KeepsEveryNumberOfEntries) {
  for (const int count : {1, 2, 127, 128, 129, 320, 8193, 65665}) {
    OwnedVocabulary vocabulary;
    for (int i = 0; i < count; ++i) {
      const std::string name = "n" + std::to_string(i);
      vocabulary.addElementName("", name);
      vocabulary.addCharacters(name);
    }
    const std::string file = fileOf(vocabulary);
    const OwnedVocabulary read = readFrom(file);
    EXPECT_EQ(count, static_cast<int>(read.tables()->elementNameSurrogates.definedCount));
    EXPECT_EQ(file, fileOf(read)) << count;
  }
}

TEST(OwnedVocabularyFile, KeepsEntriesOfEveryLength) {
  OwnedVocabulary vocabulary;
  for (const std::size_t length : {1, 8, 9, 64, 65, 264, 265, 320, 321, 70000}) {
    vocabulary.addAttributeValue(std::string(length, 'v'));
    vocabulary.addOtherURI(std::string(length, 'u'));
  }
  const std::string file = fileOf(vocabulary);
  EXPECT_EQ(file, fileOf(readFrom(file)));
}

// --- Documents of others ---

TEST(OwnedVocabularyFile, IsReadUpToTheEndOfTheVocabulary) {
  std::istringstream stream(octets("E0 00 00 01 20 00 80 00 00 'l'") + "what comes next");
  EXPECT_EQ(1U, OwnedVocabulary::read(stream).addLocalName("l"));
  EXPECT_EQ("what comes next", std::string(std::istreambuf_iterator<char>(stream), {}));
}

TEST(OwnedVocabularyFile, IsReadFromAnyDocument) {
  // An XML declaration, additional data, a version, content of an algorithm that nobody knows.
  const OwnedVocabulary vocabulary =
      readFrom(octets("'<?xml version='") + "'1.0' encoding='finf'?>" +
               octets("E0 00 00 01 61 00 00 'i' 00 'd' 04 10 00 02 'u:a' 00 00 'v' 02 '1.0'"
                      "3C 00 'a' 8C 7C 'd' FF"));
  EXPECT_EQ(hex("E0 00 00 01 20 04 10 00 02 'u:a' 00 00 'v' 3C 09 'vocabulary' FF"),
            shown(fileOf(vocabulary)));
}

// Positions count, so an entry that is there twice stays so; the first one is found.
TEST(OwnedVocabularyFile, KeepsRepeatedEntries) {
  const std::string file = octets(
      "E0 00 00 01 20 02 82 01 02 'xml' 00 'p' 02 00 'a' 00 'a' 00 'b' 01 00 00 00 00 00 FF");
  OwnedVocabulary vocabulary = readFrom(file);
  EXPECT_EQ(shown(file), shown(fileOf(vocabulary)));
  EXPECT_EQ(1U, vocabulary.addPrefix("xml"));
  EXPECT_EQ(3U, vocabulary.addPrefix("p"));
  EXPECT_EQ(1U, vocabulary.addLocalName("a"));
  EXPECT_EQ(3U, vocabulary.addLocalName("b"));
  EXPECT_EQ(4U, vocabulary.addLocalName("c"));
  EXPECT_EQ(3U, vocabulary.addElementName("", "b"));
}

// UTF-16, a restricted alphabet and an algorithm: the text counts.
TEST(OwnedVocabularyFile, TakesStringsInOtherEncodings) {
  const OwnedVocabulary vocabulary =
      readFrom(octets("E0 00 00 01 20 00 10 02 11 00 'v' 20 00 12 30 00 'X' 00 FF"));
  EXPECT_EQ(hex("E0 00 00 01 20 00 10 02 00 'v' 01 '12' 01 '58' 3C 09 'vocabulary' FF"),
            shown(fileOf(vocabulary)));
}

TEST(OwnedVocabularyFile, IsRefusedWhereItIsNoFastInfoset) {
  const std::string notFastInfoset = "SAXParseException: Not a Fast Infoset document (-1:";
  EXPECT_EQ(notFastInfoset + "1)", refusal("plain text"));
  EXPECT_EQ(notFastInfoset + "2)", refusal("<menu><dish/></menu>"));
  EXPECT_EQ(notFastInfoset + "20)", refusal("<?xml version='1.0'?><menu/>"));
  EXPECT_EQ(notFastInfoset + "0)", refusal(""));
}

TEST(OwnedVocabularyFile, IsRefusedWhereItRefersToAnother) {
  EXPECT_EQ(
      "SAXParseException: The vocabulary is not complete: it refers to the external "
      "vocabulary u (-1:9)",
      refusal(octets("E0 00 00 01 20 10 00 00 'u' 00 FF")));
}

TEST(OwnedVocabularyFile, IsRefusedWhereAnEntryIsNotPossible) {
  EXPECT_EQ("SAXException: A restricted alphabet of the vocabulary has fewer than two characters",
            refusal(octets("E0 00 00 01 20 08 00 00 00 'a' 00 FF")));
  // An attribute in a namespace, but without a prefix.
  EXPECT_NE("nothing",
            refusal(octets("E0 00 00 01 20 01 81 00 00 'u' 00 00 'l' 00 01 01 00 00 FF")));
  std::string alphabets = octets("E0 00 00 01 20 08 00 80 00 71");  // 242.
  for (int i = 0; i < 242; ++i) alphabets += octets("01 'ab'");
  EXPECT_EQ("SAXException: More than 241 restricted alphabets", refusal(alphabets));
}

TEST(OwnedVocabularyFile, IsRefusedWhereItEnds) {
  const std::string file = fileOf(oneOfEach());
  const std::size_t end = file.size() - octets("38 CF 81 81 F0 00 FF").size();
  for (std::size_t size = 0; size < end; ++size) {
    const std::string reason = refusal(file.substr(0, size));
    EXPECT_EQ(0U, reason.find(size < 4 ? "SAXParseException: Not a Fast Infoset document"
                                       : "SAXParseException: Unexpected end of document"))
        << reason << size;
  }
  EXPECT_EQ("nothing", refusal(file.substr(0, end)));
}

// A few octets for each name, all of one long part: the limit on tables holds.
TEST(OwnedVocabularyFile, IsBoundByTheLimitsOfReaders) {
  std::string document =
      octets("E0 00 00 01 20 00 82 00 60 00 0F FE BF") + std::string(1 << 20, 'l');
  document += octets("8F FF 7F");  // 2^20 names.
  for (int i = 0; i < 1 << 20; ++i) document += std::string(2, '\0');
  const std::string reason = refusal(document);
  EXPECT_EQ(0U, reason.find("SAXParseException: Tables larger than 536870912 octets")) << reason;
}

// What is read of anything can be written, and is the same when it is read again.
TEST(OwnedVocabularyFile, IsReadOrRefusedHoweverItIsChanged) {
  OwnedVocabulary names;
  for (int i = 0; i < 20; ++i) {
    names.addElementName("urn:u", "n" + std::to_string(i), "p:n" + std::to_string(i));
    names.addAttributeName("", "a" + std::to_string(i));
  }
  const std::vector<std::string> samples = {fileOf(oneOfEach()), fileOf(names), fileOf({})};
  std::mt19937 random(15);
  std::size_t read = 0;
  const std::size_t count = reader_test::mutationCount(20000);
  for (std::size_t i = 0; i < count; ++i) {
    const std::string document = reader_test::mutate(samples, random);
    try {
      const std::string file = fileOf(readFrom(document));
      ++read;
      ASSERT_EQ(shown(file), shown(fileOf(readFrom(file)))) << shown(document);
    } catch (const SAXException& refused) {
      ASSERT_NE("", refused.getMessage());
    }
  }
  EXPECT_GT(read, count / 20);
}

}  // namespace
}  // namespace vocabulary_test
