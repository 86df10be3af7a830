#include <gtest/gtest.h>

#include <stdexcept>

#include "X891ReaderSupport.h"

// How failures are told, and that a reader reads on behind them.

namespace x891_test {
namespace {

using Tavrin::SAXException;
using Tavrin::SAXParseException;

const EventLog::Lines kStarted = {"startDocument()", "startElement(, a, a, [])"};

/// A document that calls each kind of handler, and the events.
std::string everything() {
  return fromComponents(
      "18 C2 00 'n' 00 's' F0 D0 00 'e' 00 'f' 80 F0 E2 00 'c' "
      "C6 00 's' E1 00 'p' 00 'd' F0 "
      "38 CF 00 'p' 00 'u' F0 3F 81 81 00 'a' 80 'x' 8C 24 'y' C8 00 'e' "
      "8C 09 00 01 8C 22 0D 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F "
      "E2 00 'c' E1 00 'p' 00 'd' FF");
}

const EventLog::Lines kEverything = {
    "startDocument()",
    "comment(c)",
    "startDTD(p:a, , s)",
    "notationDecl(n, , s)",
    "unparsedEntityDecl(e, , f, n)",
    "processingInstruction(p, d)",
    "endDTD()",
    "startPrefixMapping(p, u)",
    "startElement(u, a, p:a, [])",
    "characters(x)",
    "startCDATA()",
    "characters(y)",
    "endCDATA()",
    "skippedEntity(e)",
    "shorts(1)",
    "object(, 8, EncodedData{00010203-0405-0607-0809-0a0b0c0d0e0f})",
    "comment(c)",
    "processingInstruction(p, d)",
    "endElement(u, a, p:a)",
    "endPrefixMapping(p)",
    "endDocument()",
};

/// A reader with all handlers, of which event number `at` throws.
class ThrowingReader : public X891Reader {
 public:
  ThrowingReader() {
    log.attachPrimitiveTypesTo(reader);
    log.attachAlgorithmsTo(reader);
  }

  template <typename Exception>
  void throwAt(std::size_t at, Exception exception) {
    log.beforeEvent = [at, exception](std::size_t events) {
      if (events == at) throw exception;
    };
  }
};

EventLog::Lines firstEvents(std::size_t count) {
  return {kEverything.begin(), kEverything.begin() + static_cast<std::ptrdiff_t>(count)};
}

TEST(X891ReaderFailures, AreToldToTheErrorHandlerAndThrown) {
  // failure() tells of both.
  EXPECT_EQ(
      "startDocument()\nfatalError(Document without an element, -1, 6)\n"
      "SAXParseException: Document without an element (-1:6)\n",
      readNew(document("F0")));
  X891Reader reader;
  reader.reader.setErrorHandler(nullptr);
  EXPECT_EQ("startDocument()\nSAXParseException: Document without an element (-1:6)\n",
            reader.read(document("F0")));
  reader.reader.setContentHandler(nullptr);
  EXPECT_EQ("SAXParseException: Document without an element (-1:6)\n", reader.read(document("F0")));
}

TEST(X891ReaderFailures, AreCaughtAsSAXExceptions) {
  Tavrin::XMLReader_X891 reader;
  std::istringstream stream(document("F0"));
  EXPECT_THROW(reader.parse(stream), SAXException);
}

TEST(X891ReaderFailures, OfTheErrorHandlerPass) {
  X891Reader reader;
  reader.log.beforeEvent = [](std::size_t events) {
    if (events == 1) throw std::runtime_error("mine");
  };
  EXPECT_EQ("startDocument()\nstd::exception: mine\n", reader.read(document("F0")));
  reader.log.beforeEvent = [](std::size_t events) {
    if (events == 1) throw 7;
  };
  EXPECT_THROW(reader.read(document("F0")), int);
  reader.log.beforeEvent = nullptr;
  EXPECT_EQ(wholeContent({}), reader.read(documentOfContent("")));
}

TEST(X891ReaderFailures, EverythingIsTold) {
  ThrowingReader reader;
  EXPECT_EQ(join(kEverything), reader.read(everything()));
}

TEST(X891ReaderFailures, OfHandlersPassAsTheyWereThrown) {
  for (std::size_t at = 0; at < kEverything.size(); ++at) {
    ThrowingReader reader;
    const std::string before = join(firstEvents(at));
    reader.throwAt(at, SAXException("mine"));
    EXPECT_EQ(before + "SAXException: mine\n", reader.read(everything()));
    reader.throwAt(at, SAXParseException("mine", 3, 4));
    EXPECT_EQ(before + "SAXParseException: mine (3:4)\n", reader.read(everything()));
    reader.throwAt(at, Tavrin::EncodingAlgorithmException("mine"));
    EXPECT_EQ(before + "EncodingAlgorithmException: mine\n", reader.read(everything()));
    reader.throwAt(at, std::runtime_error("mine"));
    EXPECT_EQ(before + "std::exception: mine\n", reader.read(everything()));
    reader.throwAt(at, 7);
    EXPECT_THROW(reader.read(everything()), int);
    EXPECT_EQ(before, reader.log.text());
    reader.log.beforeEvent = nullptr;
    EXPECT_EQ(join(kEverything), reader.read(everything()));
  }
}

TEST(X891ReaderFailures, OfNestedParsesLeaveTheDocumentAlone) {
  for (std::size_t at = 0; at < kEverything.size(); ++at) {
    ThrowingReader reader;
    std::string nested;
    reader.log.beforeEvent = [&](std::size_t events) {
      if (events != at) return;
      std::istringstream stream(documentOfContent(""));
      nested = outcomeOf([&] { reader.reader.parse(stream); });
      EXPECT_EQ(0, stream.tellg());
    };
    EXPECT_EQ(join(kEverything), reader.read(everything()));
    EXPECT_EQ("SAXException: parse called from a handler of the same reader", nested);
  }
}

TEST(X891ReaderFailures, HandlersMayTakeThemselvesOff) {
  for (std::size_t at = 0; at < kEverything.size(); ++at) {
    ThrowingReader reader;
    reader.alsoInBlocks = false;  // Its handlers are gone after one document.
    reader.log.beforeEvent = [&](std::size_t events) {
      if (events != at) return;
      reader.reader.setContentHandler(nullptr);
      reader.reader.setDTDHandler(nullptr);
      for (const char* property :
           {Tavrin::properties::lexicalHandler, Tavrin::properties::primitiveTypeContentHandler,
            Tavrin::properties::encodingAlgorithmContentHandler}) {
        reader.reader.setProperty(property, nullptr);
      }
    };
    EXPECT_EQ(join(firstEvents(at + 1)), reader.read(everything()));
  }
}

TEST(X891ReaderFailures, LeaveTheReaderUsable) {
  X891Reader reader;
  for (const char* failing : {"F0", "3C 00 'a' E3", "38 CD 00 'u' F0 3C 00 'a'", "3C 00", "C4 FF",
                              "7C 00 'a' 78 00 'b' 00 'x' 00", "3C 00 'a' 8C 08 00"}) {
    EXPECT_NE(std::string::npos, reader.read(document(failing)).find("SAXParseException: "));
    // Nothing of it is left: tables, bindings, open elements.
    EXPECT_EQ(whole({"startElement(, b, b, [{, c, c, CDATA, d}])", "endElement(, b, b)"}),
              reader.read(document("7C 00 'b' 78 00 'c' 00 'd' FF F0")));
    EXPECT_EQ(failure({"startDocument()"}, "Error when decoding element name - invalid index", 6),
              reader.read(document("00 FF")));
  }
}

TEST(X891ReaderFailures, OctetsReadAreThoseOfTheDocument) {
  // Not those of the documents before it, nor those in front of it on the stream.
  std::istringstream stream("before" + documentOfContent("") + document("3C 00 'a' E3"));
  stream.seekg(6);
  X891Reader reader;
  reader.reader.parse(stream);
  reader.log.clear();
  EXPECT_EQ("SAXParseException: Error when decoding element children (-1:9)",
            outcomeOf([&] { reader.reader.parse(stream); }));
}

TEST(X891ReaderFailures, KnowTheirProperties) {
  using namespace Tavrin::properties;
  X891Reader reader;
  int value = 0;
  EXPECT_EQ("SAXNotRecognizedException: ",
            outcomeOf([&] { reader.reader.setProperty("x", &value); }).substr(0, 27));
  EXPECT_EQ("SAXNotRecognizedException: ",
            outcomeOf([&] { reader.reader.getProperty("x"); }).substr(0, 27));
  EXPECT_EQ("SAXNotRecognizedException: ",
            outcomeOf([&] { reader.reader.setFeature("x", true); }).substr(0, 27));
  EXPECT_EQ("SAXNotRecognizedException: ",
            outcomeOf([&] { reader.reader.getFeature("x"); }).substr(0, 27));
  EXPECT_EQ(static_cast<Tavrin::LexicalHandler*>(&reader.log),
            reader.reader.getProperty(lexicalHandler));
  EXPECT_EQ(static_cast<Tavrin::DeclHandler*>(&reader.log),
            reader.reader.getProperty(declarationHandler));
  EXPECT_EQ(nullptr, reader.reader.getProperty(externalVocabularies));
}

}  // namespace
}  // namespace x891_test
