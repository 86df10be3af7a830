#include <gtest/gtest.h>

#include "X891WriterSupport.h"

// What stands in front of the root, and behind it.

namespace x891_test {
namespace {

using namespace Tavrin;

/// A document whose root `a` comes behind some events.
std::string behind(const std::function<void(Writer&)>& prolog) {
  return written([&](Writer& writer) {
    writer.startDocument();
    prolog(writer);
    writer.leaf("a");
    writer.endDocument();
  });
}

TEST(X891WriterProlog, IsHeldBackUntilTheRootBegins) {
  Writer writer;
  writer.startDocument();
  writer.comment("c");
  writer.startDTD("a", "", "s");
  writer.processingInstruction("t", "");
  writer.endDTD();
  writer.processingInstruction("t", "d");
  EXPECT_EQ(writer.news(), "");
  writer.start("a");
  EXPECT_EQ(writer.news(), document("E2 40 'c' C6 00 's' E1 00 't' FF F0 E1 80 40 'd' 3C 00 'a'"));
  writer.comment("c");
  EXPECT_EQ(writer.news(), hex("E2 80"));
  writer.end("a");
  writer.comment("e");
  EXPECT_EQ(writer.news(), hex("F0 E2 40 'e'"));
  writer.endDocument();
  EXPECT_EQ(writer.news(), hex("F0"));
}

TEST(X891WriterProlog, HasADocumentTypeOfEveryForm) {
  const auto type = [](const std::string& publicId, const std::string& systemId) {
    return behind([&](Writer& writer) {
      writer.startDTD("a", publicId, systemId);
      writer.endDTD();
    });
  };
  EXPECT_EQ(type("", ""), document("C4 F0 3C 00 'a' FF"));
  EXPECT_EQ(type("p", ""), document("C5 00 'p' F0 3C 00 'a' FF"));
  EXPECT_EQ(type("", "s"), document("C6 00 's' F0 3C 00 'a' FF"));
  EXPECT_EQ(type("s", "s"), document("C7 00 's' 80 F0 3C 00 'a' FF"));
}

TEST(X891WriterProlog, KeepsOfADocumentTypeWhatTheFormatHolds) {
  EXPECT_EQ(behind([](Writer& writer) {
              writer.startDTD("a", "", "s");
              writer.comment("c");
              writer.elementDecl("a", "ANY");
              writer.attributeDecl("a", "b", "CDATA", "#IMPLIED", "");
              writer.internalEntityDecl("e", "v");
              writer.externalEntityDecl("f", "p", "s");
              writer.startEntity("[dtd]");
              writer.notationDecl("n", "p", "");
              writer.processingInstruction("t", "d");
              writer.endEntity("[dtd]");
              writer.skippedEntity("%x");
              writer.ignorableWhitespace("\n");
              writer.endDTD();
            }),
            hex("E0 00 00 01 10 C1 00 'n' 00 'p' F0"
                "C6 00 's' E1 00 't' 40 'd' F0 3C 00 'a' FF"));
}

// The items in front come first in the tables, too, whatever came first in the document.
TEST(X891WriterProlog, CountsInTheOrderOfTheOctets) {
  EXPECT_EQ(behind([](Writer& writer) {
              writer.processingInstruction("n", "");
              writer.processingInstruction("t", "");
              writer.startDTD("a", "p", "f");
              writer.unparsedEntityDecl("e", "q", "f", "n");
              writer.notationDecl("n", "p", "s");
              writer.notationDecl("m", "p", "");
              writer.endDTD();
            }),
            hex("E0 00 00 01 18"
                "C3 00 'n' 00 's' 00 'p' C1 00 'm' 81 F0"
                "D1 00 'e' 00 'f' 00 'q' 80 F0"
                "E1 80 FF E1 00 't' FF C7 82 81 F0 3C 00 'a' FF"));
}

TEST(X891WriterProlog, IsImpliedByWhatBelongsToTheDocumentOnlyIfItIsEmpty) {
  EXPECT_EQ(behind([](Writer& writer) {
              writer.startDTD("a", "", "");
              writer.processingInstruction("t", "");
              writer.notationDecl("n", "", "s");
              writer.endDTD();
            }),
            hex("E0 00 00 01 10 C2 00 'n' 00 's' F0 C4 E1 00 't' FF F0 3C 00 'a' FF"));
}

TEST(X891WriterProlog, TakesPropertiesUntilItIsWritten) {
  Writer writer;
  writer.startDocument();
  writer.comment("");
  writer.set(properties::documentXMLVersion, std::string("1.7"));
  writer.set(properties::documentXMLVersion, std::string("1.1"));
  writer.start("a");
  writer.set(properties::standalone, true);
  writer.end("a");
  writer.endDocument();
  EXPECT_EQ(writer.news(), hex("E0 00 00 01 01 02 '1.1' E2 FF 3C 00 'a' FF"));
  writer.reset();
  writer.setProperty(properties::documentXMLVersion, nullptr);
  writer.startDocument();
  writer.leaf("a");
  writer.endDocument();
  EXPECT_EQ(writer.news(), hex("E0 00 00 01 02 01 3C 00 'a' FF"));
}

// XML 1.0 (fifth edition), production 26.
TEST(X891WriterProlog, StatesAnyVersionThatIsReadAsXML10) {
  for (const std::string version : {"1.0", "1.1", "1.7", "1.10", "1.007"}) {
    Writer writer;
    writer.set(properties::documentXMLVersion, version);
    writer.startDocument();
    writer.leaf("a");
    writer.endDocument();
    const std::string length = "0" + std::to_string(version.size() - 1);
    EXPECT_EQ(writer.written(),
              hex("E0 00 00 01 01 " + length + " '" + version + "' 3C 00 'a' FF"));
  }
}

TEST(X891WriterProlog, LeavesOutIdentifiersThatAreEmpty) {
  EXPECT_EQ(behind([](Writer& writer) {
              writer.startDTD("a", "p", "");
              writer.notationDecl("n", "", "");
              writer.notationDecl("m", "", "n");
              writer.endDTD();
            }),
            hex("E0 00 00 01 10 C0 00 'n' C2 00 'm' 00 'n' F0 C5 00 'p' F0 3C 00 'a' FF"));
}

TEST(X891WriterProlog, HasPropertiesThatCanBeAsked) {
  Writer writer;
  EXPECT_EQ(writer.getProperty(properties::documentXMLVersion), nullptr);
  EXPECT_EQ(writer.getProperty(properties::standalone), nullptr);
  EXPECT_EQ(writer.getProperty(properties::externalVocabulary), nullptr);
  EXPECT_EQ(writer.getProperty(properties::initialVocabulary), nullptr);
  EXPECT_EQ(writer.getProperty(properties::externalVocabularies), nullptr);
  EXPECT_EQ(writer.getProperty(properties::registeredEncodingAlgorithms), nullptr);
  const auto number = [&](const char* name) {
    return *static_cast<std::uint64_t*>(writer.getProperty(name));
  };
  EXPECT_EQ(number(properties::indexedAttributeValueLength), 32U);
  EXPECT_EQ(number(properties::indexedChunkLength), 32U);
  EXPECT_EQ(number(properties::maximumTableOctets), 64U << 20);
  for (const char* name : {properties::indexedAttributeValueLength, properties::indexedChunkLength,
                           properties::maximumTableOctets}) {
    const std::uint64_t before = number(name);
    writer.set(name, std::uint64_t{7});
    EXPECT_EQ(number(name), 7U);
    writer.setProperty(name, nullptr);
    EXPECT_EQ(number(name), before);
  }
  writer.set(properties::standalone, false);
  EXPECT_FALSE(*static_cast<bool*>(writer.getProperty(properties::standalone)));
  writer.set(properties::documentXMLVersion, std::string("1.1"));
  for (const std::string no :
       {"", "1", "1.", "2.0", "1.1a", "1.1 ", "11", "1.-1", " 1.0", "1.0.1"}) {
    EXPECT_EQ(thrown([&] { writer.set(properties::documentXMLVersion, no); }),
              "SAXException: \"" + no + "\" is not a version of XML");
  }
  EXPECT_EQ(*static_cast<std::string*>(writer.getProperty(properties::documentXMLVersion)), "1.1");
  EXPECT_EQ(thrown([&] { writer.setProperty(properties::indentWidth, nullptr); }),
            "SAXNotRecognizedException: Property \"http://tavrin/sax/properties/indent-width\" not "
            "recognized");
  EXPECT_EQ(thrown([&] { writer.getProperty("x"); }),
            "SAXNotRecognizedException: Property \"x\" not recognized");
}

/// What refuses an event within the document type. The document must go on without it.
std::string refusalInType(const std::function<void(Writer&)>& event) {
  Writer writer;
  writer.startDocument();
  writer.startDTD("a", "", "");
  const std::string outcome = thrown([&] { event(writer); });
  writer.endDTD();
  writer.leaf("a");
  writer.endDocument();
  if (writer.written() != document("C4 F0 3C 00 'a' FF")) return "something stayed";
  return outcome;
}

TEST(X891WriterProlog, RefusesWhatIsNoDeclaration) {
  const auto notation = [](const std::string& name, const std::string& publicId,
                           const std::string& systemId) {
    return refusalInType([&](Writer& w) { w.notationDecl(name, publicId, systemId); });
  };
  EXPECT_EQ(notation("", "", "s"), "SAXException: \"\" is not a name");
  EXPECT_EQ(notation("a:b", "", "s"), "SAXException: \"a:b\" is not a name without a colon");
  EXPECT_EQ(notation("n", "{", "s"), "SAXException: \"{\" is not a public identifier");
  EXPECT_EQ(notation("n", "", "'\""),
            "SAXException: A system identifier cannot hold both kinds of quotes");
  EXPECT_EQ(notation("n", "", "\x01"),
            "SAXException: You cannot put character U+0001 into a system identifier");
  const auto entity = [](const std::string& name, const std::string& publicId,
                         const std::string& systemId, const std::string& notationName) {
    return refusalInType(
        [&](Writer& w) { w.unparsedEntityDecl(name, publicId, systemId, notationName); });
  };
  EXPECT_EQ(entity("e", "p", "", "n"),
            "SAXException: The unparsed entity \"e\" has no system identifier");
  EXPECT_EQ(entity("1", "", "s", "n"), "SAXException: \"1\" is not a name");
  EXPECT_EQ(entity("e", "", "s", ""), "SAXException: \"\" is not a name");
  EXPECT_EQ(entity("e", "\xFF", "s", "n"),
            "SAXException: You cannot put UTF-8 octet 0xFF into a public identifier");
  EXPECT_EQ(refusalInType([](Writer& w) { w.externalEntityDecl("e", "", "\xFF"); }),
            "SAXException: You cannot put UTF-8 octet 0xFF into a system identifier");
  EXPECT_EQ(refusalInType([](Writer& w) { w.comment("--"); }),
            "SAXException: You cannot put \"--\" into a comment");
  EXPECT_EQ(refusalInType([](Writer& w) { w.start("a"); }),
            "SAXException: You cannot start an element at this point");
  EXPECT_EQ(refusalInType([](Writer& w) { w.startPrefixMapping("p", "u"); }),
            "SAXException: You cannot declare a namespace at this point");
}

TEST(X891WriterProlog, RefusesWhatIsNoDocument) {
  Writer writer;
  EXPECT_EQ(thrown([&] { writer.notationDecl("n", "", "s"); }),
            "SAXException: You cannot write a notation at this point");
  writer.startDocument();
  EXPECT_EQ(thrown([&] { writer.startDTD("a", "", "'\""); }),
            "SAXException: A system identifier cannot hold both kinds of quotes");
  EXPECT_EQ(thrown([&] { writer.endDocument(); }),
            "SAXException: You cannot end a document without an element");
  EXPECT_EQ(thrown([&] { writer.startDocument(); }),
            "SAXException: You cannot start a document at this point");
  writer.startDTD("a", "", "");
  writer.endDTD();
  EXPECT_EQ(thrown([&] { writer.endDocument(); }),
            "SAXException: You cannot end a document without an element");
  writer.leaf("a");
  EXPECT_EQ(thrown([&] { writer.leaf("a"); }),
            "SAXException: You cannot start an element at this point");
  writer.endDocument();
  EXPECT_EQ(thrown([&] { writer.endDocument(); }),
            "SAXException: You cannot end the document at this point");
  EXPECT_EQ(writer.written(), document("C4 F0 3C 00 'a' FF"));
}

TEST(X891WriterProlog, BeginsAnewBehindAReset) {
  Writer writer;
  writer.startDocument();
  writer.comment("lost");
  writer.startDTD("a", "", "lost");
  writer.notationDecl("lost", "", "lost");
  writer.reset();
  writer.startDocument();
  writer.startPrefixMapping("p", "u");
  writer.startElement("u", "a", "p:a", attributes({{"b", "c"}}));
  writer.characters("text");
  writer.startPrefixMapping("lost", "lost");
  writer.news();
  writer.reset();
  for (int i = 0; i < 2; ++i) {
    writer.startDocument();
    writer.leaf("a", {{"b", "c"}});
    writer.endDocument();
    EXPECT_EQ(writer.news(), document("7C 00 'a' 78 00 'b' 40 'c' FF F0"));
    writer.reset();
  }
  writer.startDocument();
  EXPECT_EQ(thrown([&] { writer.startElement("u", "a", "p:a", AttributesImpl()); }),
            "SAXException: The prefix \"p\" is not declared");
}

TEST(X891WriterProlog, IsCheckedWithoutAStream) {
  Writer writer;
  writer.setOutputStream(nullptr);
  writer.startDocument();
  writer.startDTD("a", "p", "s");
  writer.notationDecl("n", "p", "s");
  writer.endDTD();
  writer.startPrefixMapping("p", "u");
  writer.startElement("u", "a", "p:a", attributes({{"b", "c"}}));
  EXPECT_EQ(thrown([&] { writer.characters("\x01"); }),
            "SAXException: You cannot put character U+0001 into character data");
  writer.characters("x");
  writer.startCDATA();
  writer.characters("x");
  writer.endCDATA();
  writer.skippedEntity("e");
  writer.shorts({1});
  writer.octets("", 0, "x");
  writer.endElement("u", "a", "p:a");
  writer.endDocument();
  EXPECT_EQ(writer.written(), "");
}

}  // namespace
}  // namespace x891_test
