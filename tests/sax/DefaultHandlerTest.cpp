#include <Tavrin/Tavrin.h>

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "EventLog.h"
#include "HexOctets.h"
#include "WhatIsThrown.h"

namespace {

using namespace Tavrin;

template <typename... Interfaces>
constexpr bool hasAll = (std::is_base_of_v<Interfaces, DefaultHandler> && ...);

static_assert(hasAll<ContentHandler, DTDHandler, DeclHandler, LexicalHandler, ErrorHandler,
                     EntityResolver, PrimitiveTypeContentHandler, EncodingAlgorithmContentHandler>);
static_assert(std::has_virtual_destructor_v<DefaultHandler>);

TEST(DefaultHandler, DoesNothing) {
  DefaultHandler handler;
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  handler.setDocumentLocator(nullptr);
  handler.startDocument();
  handler.startDTD("a", "p", "s");
  handler.notationDecl("n", "p", "s");
  handler.unparsedEntityDecl("u", "p", "s", "n");
  handler.elementDecl("a", "ANY");
  handler.attributeDecl("a", "b", "CDATA", "", "c");
  handler.internalEntityDecl("e", "v");
  handler.externalEntityDecl("e", "p", "s");
  handler.endDTD();
  handler.startPrefixMapping("p", "u");
  handler.startElement("u", "a", "p:a", AttributesImpl());
  handler.startEntity("e");
  handler.characters("text");
  handler.endEntity("e");
  handler.ignorableWhitespace(" ");
  handler.startCDATA();
  handler.endCDATA();
  handler.comment("c");
  handler.processingInstruction("t", "d");
  handler.skippedEntity("e");
  handler.bytes("b");
  handler.shorts({1});
  handler.ints({1});
  handler.longs({1});
  handler.booleans({true});
  handler.floats({1});
  handler.doubles({1});
  handler.octets("u", 32, "o");
  handler.object("u", 32, IntData({1}));
  handler.warning({"w", 1, 2});
  handler.error({"e", 1, 2});
  handler.endElement("u", "a", "p:a");
  handler.endPrefixMapping("p");
  handler.endDocument();
  EXPECT_EQ("", testing::internal::GetCapturedStdout());
  EXPECT_EQ("", testing::internal::GetCapturedStderr());
}

TEST(DefaultHandler, SkipsExternalEntities) {
  DefaultHandler handler;
  EXPECT_EQ(nullptr, handler.resolveEntity("p", "s"));
}

TEST(DefaultHandler, ThrowsAFatalError) {
  DefaultHandler handler;
  EXPECT_EQ("SAXParseException: broken (-1:7)", thrown([&] {
              handler.fatalError({"broken", -1, 7});
            }));
}

/// A reader that leaves it to the error handler to end a document.
struct ReportingReader : XMLReader {
  using XMLReader::parse;
  void parse(std::istream&) override {
    contentHandler_->startDocument();
    errorHandler_->fatalError({"broken", 1, 2});
    contentHandler_->endDocument();
  }
};

TEST(DefaultHandler, EndsTheDocumentOfAReaderThatOnlyReports) {
  EventLog log;
  DefaultHandler handler;
  ReportingReader reader;
  reader.setContentHandler(&log);
  reader.setErrorHandler(&handler);
  std::istringstream stream;
  EXPECT_EQ("SAXParseException: broken (1:2)", thrown([&] { reader.parse(stream); }));
  EXPECT_EQ("startDocument()\n", log.text());
}

struct Documents {
  const char* type;
  std::string malformed;
  std::string wellFormed;
};

const std::vector<Documents> kDocuments = {
    {"Expat", "<a><b></a>", "<a/>"},
    {"XML10", "<a><b></a>", "<a/>"},
    {"FI", octets("E0 00 00 01 00 7C"), octets("E0 00 00 01 00 3C 00 'a' FF")},
    {"X891", octets("E0 00 00 01 00 7C"), octets("E0 00 00 01 00 3C 00 'a' FF")},
};

TEST(DefaultHandler, ChangesNoFailureOfTheLibrarysReaders) {
  for (const auto& [type, malformed, wellFormed] : kDocuments) {
    const auto outcomeOf = [&](XMLReader& reader, const std::string& document) {
      std::istringstream stream(document);
      return thrown([&] { reader.parse(stream); });
    };
    const auto plain = XMLReaderFactory::createXMLReader(type);
    const auto handled = XMLReaderFactory::createXMLReader(type);
    DefaultHandler handler;
    handled->setErrorHandler(&handler);
    const std::string failure = outcomeOf(*plain, malformed);
    EXPECT_NE("nothing", failure) << type;
    EXPECT_EQ(failure, outcomeOf(*handled, malformed)) << type;
    EventLog log;
    handled->setContentHandler(&log);
    EXPECT_EQ("nothing", outcomeOf(*handled, wellFormed)) << type;
    log.clear();
    EXPECT_EQ(failure, outcomeOf(*handled, malformed)) << type;
  }
}

// --- Typed content ---

/// Overrides characters alone; shows each call in brackets.
struct Text : DefaultHandler {
  void characters(const std::string& text) override { shown += '[' + text + ']'; }
  std::string shown;
};

/// The same, but no handler of typed content.
struct PlainText : ContentHandler {
  void characters(const std::string& text) override { shown += '[' + text + ']'; }
  std::string shown;
};

constexpr char kURI[] = "urn:x";

/// A document with every kind of content that the writer has.
template <typename Writer>
std::string documentOfAllKinds() {
  std::ostringstream stream;
  Writer writer;
  writer.setOutputStream(&stream);
  writer.startDocument();
  writer.startElement("", "a", "a", AttributesImpl());
  writer.object("", algorithms::hexadecimal, HexadecimalData(std::string("\0\x7F\xA0", 3)));
  writer.object("", algorithms::base64, Base64Data("Man"));
  writer.object("", algorithms::shortInteger, ShortData({-1, 0, 32767}));
  writer.object("", algorithms::integer, IntData({-2147483648, 5}));
  writer.object("", algorithms::longInteger, LongData({5'000'000'000}));
  writer.object("", algorithms::boolean, BooleanData({true, false}));
  writer.object("", algorithms::floatNumber, FloatData({0.1F, 16777216}));
  writer.object("", algorithms::doubleNumber, DoubleData({0.1, 123456789.125}));
  writer.object("", algorithms::cdata, CDATAData("<cdata>"));
  writer.characters("text");
  if constexpr (std::is_same_v<Writer, XMLWriter_X891>) {
    writer.object("", algorithms::uuid, UUIDData({UUID{0x10, 0x32}}));
  }
  writer.endElement("", "a", "a");
  writer.endDocument();
  return stream.str();
}

/// What the handler of characters gets.
template <typename Handler>
std::string textOf(XMLReader& reader, const std::string& document) {
  Handler handler;
  connect(reader, handler);
  std::istringstream stream(document);
  reader.parse(stream);
  return handler.shown;
}

TEST(DefaultHandler, GetsTypedContentAsTheTextThatTheReaderGivesOthers) {
  const std::string document = documentOfAllKinds<XMLWriter_X891>();
  const std::string expected =
      "[007FA0][TWFu][-1 0 32767][-2147483648 5][5000000000][true false][0.1 16777216]"
      "[0.1 123456789.125][<cdata>][text][10320000-0000-0000-0000-000000000000]";
  XMLReader_X891 reader;
  EXPECT_EQ(expected, textOf<PlainText>(reader, document));
  EXPECT_EQ(expected, textOf<Text>(reader, document));
  EXPECT_EQ(expected, textOf<Text>(reader, document));
}

TEST(DefaultHandler, GetsTheTextOfTheReaderFI) {
  const std::string document = documentOfAllKinds<XMLWriter_FI>();
  const std::string expected =
      "[007FA0][TWFu][-1 0 32767][-2147483648 5][5000000000][true false][0.1 1.67772e+07]"
      "[0.1 123456789.125][<cdata>][text]";
  XMLReader_FI reader;
  EXPECT_EQ(expected, textOf<PlainText>(reader, document));
  EXPECT_EQ(expected, textOf<Text>(reader, document));
}

/// Content of an algorithm of an application: four octets.
std::string documentOfAnApplication() {
  std::ostringstream stream;
  XMLWriter_X891 writer;
  writer.setOutputStream(&stream);
  std::vector<std::string> named = {kURI};
  writer.setProperty(properties::encodingAlgorithmURIs, &named);
  writer.startDocument();
  writer.startElement("", "a", "a", AttributesImpl());
  writer.octets(kURI, 31, std::string("\0\0\0\5", 4));
  writer.endElement("", "a", "a");
  writer.endDocument();
  return stream.str();
}

TEST(DefaultHandler, GetsTheTextOfAnApplicationsAlgorithm) {
  // Its values would call ints, but only those of built-in algorithms are told as such.
  IntEncodingAlgorithm algorithm;
  EncodingAlgorithmMap registered = {{kURI, &algorithm}};
  XMLReader_X891 reader;
  reader.setProperty(properties::registeredEncodingAlgorithms, &registered);
  EXPECT_EQ("[5]", textOf<PlainText>(reader, documentOfAnApplication()));
  EXPECT_EQ("[5]", textOf<Text>(reader, documentOfAnApplication()));
}

TEST(DefaultHandler, GetsOctetsOfUnknownAlgorithmsAsBase64) {
  XMLReader_X891 reader;
  EXPECT_EQ("[AAAABQ==]", textOf<Text>(reader, documentOfAnApplication()));
  reader.setRawOctets(true);
  EXPECT_EQ("[AAAABQ==]", textOf<Text>(reader, documentOfAnApplication()));
  XMLReader_X891 other;
  other.setRawOctets(true);
  EXPECT_EQ("[AAAABQ==]", textOf<PlainText>(other, documentOfAnApplication()));
}

TEST(DefaultHandler, GivesTypedContentToTheOperationsThatAreOverridden) {
  struct Handler : Text {
    void bytes(const std::string& data) override { shown += "bytes:" + data; }
    void ints(const std::vector<long>& data) override {
      shown += "ints:" + std::to_string(data[1]);
    }
    void doubles(const std::vector<double>& data) override { Text::doubles({data[0] + 1}); }
  };
  XMLReader_X891 reader;
  const std::string octets("bytes:\0\x7F\xA0", 9);
  EXPECT_EQ(octets +
                "bytes:Man[-1 0 32767]ints:5[5000000000][true false][0.1 16777216][1.1]"
                "[<cdata>][text][10320000-0000-0000-0000-000000000000]",
            textOf<Handler>(reader, documentOfAllKinds<XMLWriter_X891>()));
}

TEST(DefaultHandler, MakesTextOfListsThatComeAlone) {
  Text handler;
  handler.bytes("Man");
  handler.shorts({1, -2});
  handler.ints({3});
  handler.longs({4, 5});
  handler.booleans({false});
  handler.floats({0.1F});
  handler.doubles({0.1, 2});
  EXPECT_EQ("[TWFu][1 -2][3][4 5][false][0.1][0.1 2]", handler.shown);
}

TEST(DefaultHandler, MakesNoTextOfEmptyValues) {
  Text handler;
  handler.bytes("");
  handler.ints({});
  handler.booleans({});
  handler.octets(kURI, 31, "");
  handler.object("", algorithms::base64, Base64Data(""));
  handler.object("", algorithms::uuid, UUIDData());
  handler.object(kURI, 31, IntData());
  EXPECT_EQ("", handler.shown);
}

TEST(DefaultHandler, ForgetsAValueWhoseTextWasRefused) {
  struct Handler : Text {
    void characters(const std::string& text) override {
      if (refuses) throw SAXException("refused " + text);
      Text::characters(text);
    }
    bool refuses = true;
  } handler;
  {
    const auto data = std::make_unique<HexadecimalData>("Man");
    EXPECT_EQ("SAXException: refused 4D616E",
              thrown([&] { handler.object("", algorithms::hexadecimal, *data); }));
  }
  handler.refuses = false;
  handler.bytes("Man");
  EXPECT_EQ("[TWFu]", handler.shown);
}

TEST(DefaultHandler, GetsTypedContentThroughAFilter) {
  XMLReader_X891 reader;
  XMLReader_X891 parent;
  XMLFilter filter(&parent);
  const std::string document = documentOfAllKinds<XMLWriter_X891>();
  EXPECT_EQ(textOf<PlainText>(reader, document), textOf<Text>(filter, document));
}

}  // namespace
