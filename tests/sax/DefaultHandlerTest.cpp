#include <Tavrin/Tavrin.h>

#include <gtest/gtest.h>

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

}  // namespace
