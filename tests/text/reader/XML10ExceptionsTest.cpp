#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <streambuf>

#include "Streams.h"
#include "XML10ReaderSupport.h"

namespace {

using namespace Tavrin;

/// A document in which every handler hears of something, and external entities three deep.
const char kText[] =
    "<?xml version='1.0'?><!DOCTYPE a SYSTEM 'd' [<!ENTITY e SYSTEM 'e'><!NOTATION n SYSTEM 'n'>"
    "<!ENTITY u SYSTEM 'u' NDATA n><!ENTITY i 'I'>]><p:a xmlns:p='v'>1&e;<![CDATA[2]]>&s;"
    "<!--c--></p:a><?t d?>";
const std::map<std::string, std::string> kEntities = {
    {"d", "<!ENTITY % q SYSTEM 'q'>%q;<!ELEMENT b ANY>"},
    {"q", "<!ATTLIST b x ID #IMPLIED><!ENTITY f SYSTEM 'f'>"},
    {"e", "<b>&f;</b>"},
    {"f", "<c x='1'/>"}};
const EventLog::Lines kEvents = {"setDocumentLocator()",
                                 "startDocument()",
                                 "startDTD(a, , d)",
                                 "externalEntityDecl(e, , e)",
                                 "notationDecl(n, , n)",
                                 "unparsedEntityDecl(u, , u, n)",
                                 "internalEntityDecl(i, I)",
                                 "resolveEntity(, d)",
                                 "startEntity([dtd])",
                                 "externalEntityDecl(%q, , q)",
                                 "resolveEntity(, q)",
                                 "startEntity(%q)",
                                 "attributeDecl(b, x, ID, #IMPLIED, )",
                                 "externalEntityDecl(f, , f)",
                                 "endEntity(%q)",
                                 "elementDecl(b, ANY)",
                                 "endEntity([dtd])",
                                 "endDTD()",
                                 "startPrefixMapping(p, v)",
                                 "startElement(v, a, p:a, [])",
                                 "characters(1)",
                                 "resolveEntity(, e)",
                                 "startEntity(e)",
                                 "startElement(, b, b, [])",
                                 "resolveEntity(, f)",
                                 "startEntity(f)",
                                 "startElement(, c, c, [{, x, x, CDATA, 1}])",
                                 "endElement(, c, c)",
                                 "endEntity(f)",
                                 "endElement(, b, b)",
                                 "endEntity(e)",
                                 "startCDATA()",
                                 "characters(2)",
                                 "endCDATA()",
                                 "skippedEntity(s)",
                                 "comment(c)",
                                 "endElement(v, a, p:a)",
                                 "endPrefixMapping(p)",
                                 "processingInstruction(t, d)",
                                 "endDocument()"};

/// What an application may throw, and what outcomeOf tells of it: just that.
struct Kind {
  const char* leavesAs;
  void (*raise)();
};
const Kind kKinds[] = {
    {"SAXException(m)", [] { throw SAXException("m"); }},
    {"SAXNotRecognizedException(m)", [] { throw SAXNotRecognizedException("m"); }},
    {"ApplicationException(m)", [] { throw ApplicationException("m"); }},
    {"SAXParseException(m, 7, 9)", [] { throw SAXParseException("m", 7, 9); }},
    {"ApplicationParseException(m, -1, 0)", [] { throw ApplicationParseException("m", -1, 0); }},
    {"EncodingAlgorithmException(m)", [] { throw EncodingAlgorithmException("m"); }},
    {"std::runtime_error(m)", [] { throw std::runtime_error("m"); }},
    {"int(42)", [] { throw 42; }},
    {"const char*(m)", [] { throw "m"; }},
};

std::string parse(XMLReader& reader, const std::string& text, std::size_t blockSize) {
  if (blockSize == 0) return parseText(reader, text);
  std::vector<std::string> blocks = cutEvenly(text, blockSize);
  blocks.emplace_back();
  return parseBlocks(reader, blocks);
}

// Every event throws in turn, and would throw ever after.
TEST(XML10Exceptions, LeaveParseAsTheyWereThrownAndNothingFollows) {
  EventLog log;
  log.mergeCharacters = false;
  log.entities = kEntities;
  XMLReader_XML10 reader;
  log.attachTo(reader);
  log.attachDeclarationsTo(reader);
  for (const std::size_t blockSize : {0U, 1U, 1000U}) {
    for (const Kind& kind : kKinds) {
      for (std::size_t i = 0; i < kEvents.size(); ++i) {
        SCOPED_TRACE(kEvents[i] + " throws " + kind.leavesAs);
        log.clear();
        std::size_t thrown = 0;
        log.beforeEvent = [&](std::size_t number) {
          if (number < i) return;
          ++thrown;
          kind.raise();
        };
        EXPECT_EQ(kind.leavesAs, parse(reader, kText, blockSize));
        EXPECT_EQ(1U, thrown);
        EXPECT_EQ(join({kEvents.begin(), kEvents.begin() + static_cast<std::ptrdiff_t>(i)}),
                  log.text());
        // The reader is idle: the same reader reads the next document in full.
        log.beforeEvent = nullptr;
        log.clear();
        ASSERT_EQ("done", parse(reader, kText, blockSize));
        ASSERT_EQ(join(kEvents), log.text());
      }
    }
  }
}

TEST(XML10Exceptions, OfTheErrorHandlerReplaceTheFailure) {
  EventLog log;
  log.entities = {{"e", "<"}};
  XMLReader_XML10 reader;
  log.attachTo(reader);
  const std::string inEntity = "<!DOCTYPE a [<!ENTITY e SYSTEM 'e'>]><a>&e;</a>";
  for (const std::string& text : {std::string("<a>"), std::string(), inEntity}) {
    for (const Kind& kind : kKinds) {
      struct Thrower : ErrorHandler {
        void fatalError(const SAXParseException&) override { kind->raise(); }
        const Kind* kind = nullptr;
      };
      Thrower thrower;
      thrower.kind = &kind;
      reader.setErrorHandler(&thrower);
      EXPECT_EQ(kind.leavesAs, parseText(reader, text));
      EXPECT_EQ("done", parseText(reader, "<a/>"));
    }
  }
}

TEST(XML10Exceptions, OfStreamsLeaveAsTheyWereThrown) {
  struct Resolver : EntityResolver {
    std::unique_ptr<std::istream> resolveEntity(const std::string&, const std::string&) override {
      return std::make_unique<std::istream>(buffer);
    }
    std::streambuf* buffer = nullptr;
  };
  for (const Kind& kind : kKinds) {
    NotingBuffer buffer("x");
    buffer.beforeRead = [&](std::size_t) { kind.raise(); };
    EventLog log;
    XMLReader_XML10 reader;
    log.attachTo(reader);
    std::istream stream(&buffer);
    EXPECT_EQ(kind.leavesAs, outcomeOf([&] { reader.parse(stream); }));
    EXPECT_EQ("", log.text());

    Resolver resolver;
    resolver.buffer = &buffer;
    reader.setEntityResolver(&resolver);
    EXPECT_EQ(kind.leavesAs, parseText(reader, "<!DOCTYPE a [<!ENTITY e SYSTEM 'e'>]><a>&e;</a>"));
    EXPECT_EQ(join({"setDocumentLocator()", "startDocument()", "startDTD(a, , )", "endDTD()",
                    "startElement(, a, a, [])", "startEntity(e)"}),
              log.text());
    log.clear();
    EXPECT_EQ("done", parseText(reader, "<a/>"));
    EXPECT_EQ(wholeLog({"startElement(, a, a, [])", "endElement(, a, a)"}), log.text());
  }
}

TEST(XML10Exceptions, ComeBetweenBlocksAtTheBlockThatCausedThem) {
  EventLog log;
  XMLReader_XML10 reader;
  log.attachTo(reader);
  log.beforeEvent = [](std::size_t number) {
    if (number == 3) throw 42;
  };
  EXPECT_NO_THROW(reader.parse("<a>", 3, false));
  EXPECT_EQ("int(42)", outcomeOf([&] { reader.parse("<b>text</b>", 11, false); }));
  // What comes now is another document.
  log.beforeEvent = nullptr;
  log.clear();
  reader.parse("<c/>", 4, true);
  EXPECT_EQ(wholeLog({"startElement(, c, c, [])", "endElement(, c, c)"}), log.text());
}

TEST(XML10Exceptions, ForNestedParsesAreTheSameForEveryHandler) {
  struct Nester : EventLog {
    void startElement(const std::string&, const std::string&, const std::string&,
                      const Attributes&) override {
      outcome = parseText(*reader, "<b/>");
      blockOutcome = parseBlocks(*reader, {"<b/>"});
    }
    XMLReader* reader = nullptr;
    std::string outcome;
    std::string blockOutcome;
  };
  Nester nester;
  XMLReader_XML10 reader;
  nester.reader = &reader;
  nester.attachTo(reader);
  EXPECT_EQ("done", parseText(reader, "<a/>"));
  EXPECT_EQ("SAXException(parse called from a handler of the same reader)", nester.outcome);
  EXPECT_EQ("SAXException(parse called from a handler of the same reader)", nester.blockOutcome);
  EXPECT_EQ(
      join({"setDocumentLocator()", "startDocument()", "endElement(, a, a)", "endDocument()"}),
      nester.text());
}

TEST(XML10Exceptions, AreNotNeededByAHandlerThatTakesItselfOff) {
  struct Leaver : EventLog {
    void startDocument() override {
      EventLog::startDocument();
      reader->setContentHandler(nullptr);
    }
    XMLReader* reader = nullptr;
  };
  for (const char* text : {"<a/>", "<?t?><a/>", "<?xml version='1.0'?><a/>", "<!DOCTYPE a><a/>"}) {
    Leaver leaver;
    XMLReader_XML10 reader;
    leaver.reader = &reader;
    reader.setContentHandler(&leaver);
    EXPECT_EQ("done", parseText(reader, text));
    EXPECT_EQ("setDocumentLocator()\nstartDocument()\n", leaver.text());
  }
}

TEST(XML10Exceptions, TellOfMalformedDocuments) {
  checkXML10({
      {.name = "empty", .text = "", .failure = "no element found, 1, 1"},
      {.name = "white space alone", .text = " \n ", .failure = "no element found, 2, 2"},
      {.name = "no markup", .text = "text", .failure = "syntax error, 1, 1"},
      {.name = "after the XML declaration",
       .text = "<?xml version='1.0'?>\n<a>\n</b>",
       .events = {"startElement(, a, a, [])", "characters(\\n)"},
       .failure = "mismatched tag: expected </a> of line 2, 3, 3"},
      {.name = "a wrong XML declaration",
       .text = "<?xml version='1.0' standalone='maybe'?><a/>",
       .failure = "XML declaration not well-formed, 1, 33"},
      {.name = "cut off",
       .text = "<a>\n<b",
       .events = {"startElement(, a, a, [])", "characters(\\n)"},
       .failure = "unclosed token: <b, 2, 1"},
  });
}

/// Ends a document of blocks with nothing, in each of the ways there are.
template <typename Check>
void endWithNothing(Check check) {
  static const char none = 0;
  using Block = std::pair<const char*, unsigned long>;
  for (const auto& [data, size] : {Block{nullptr, 0}, Block{nullptr, 7}, Block{&none, 0}}) {
    EventLog log;
    XMLReader_XML10 reader;
    log.attachTo(reader);
    for (int round = 0; round < 2; ++round) {
      log.clear();
      check(reader, log, [&, block = data, octets = size] {
        return outcomeOf([&] { reader.parse(block, octets, true); });
      });
    }
    log.clear();
    EXPECT_EQ("done", parseText(reader, "<good/>"));
    EXPECT_EQ(wholeLog({"startElement(, good, good, [])", "endElement(, good, good)"}), log.text());
  }
}

TEST(XML10Exceptions, ComeOfAnIncompleteDocumentThatAnEmptyBlockEnds) {
  endWithNothing([](XMLReader_XML10& reader, EventLog& log, const auto& end) {
    reader.parse("<a>\n", 4, false);
    reader.parse("<b>", 3, false);
    const std::string failure = "(no element found: <b> of line 2 is not closed, 2, 4)";
    EXPECT_EQ("SAXParseException" + failure, end());
    EXPECT_EQ(join({"setDocumentLocator()", "startDocument()", "startElement(, a, a, [])",
                    "characters(\\n)", "startElement(, b, b, [])", "fatalError" + failure}),
              log.text());
  });
  endWithNothing([](XMLReader_XML10&, EventLog& log, const auto& end) {
    const Failure failure{XML_ERROR_NO_ELEMENTS, 1, 1};
    EXPECT_EQ(failure.thrown(), end());
    EXPECT_EQ(join({"setDocumentLocator()", "startDocument()", failure.logged()}), log.text());
  });
  endWithNothing([](XMLReader_XML10& reader, EventLog& log, const auto& end) {
    reader.parse("<a/><!--", 8, false);
    const std::string failure = "(unclosed token: <!--, 1, 5)";
    EXPECT_EQ("SAXParseException" + failure, end());
    EXPECT_EQ(join({"setDocumentLocator()", "startDocument()", "startElement(, a, a, [])",
                    "endElement(, a, a)", "fatalError" + failure}),
              log.text());
  });
}

TEST(XML10Exceptions, DoNotComeOfACompleteDocumentThatAnEmptyBlockEnds) {
  endWithNothing([](XMLReader_XML10& reader, EventLog& log, const auto& end) {
    reader.parse(nullptr, 0, false);
    reader.parse("<a", 2, false);
    reader.parse(nullptr, 7, false);
    reader.parse("/>", 2, false);
    EXPECT_EQ("done", end());
    EXPECT_EQ(wholeLog({"startElement(, a, a, [])", "endElement(, a, a)"}), log.text());
  });
}

}  // namespace
