#include <gtest/gtest.h>

#include <sstream>

#include "TextReaderSupport.h"
#include "ThrownKinds.h"

namespace {

using Parse = std::string (*)(Tavrin::XMLReader&, const std::string&);

std::string parseBlock(Tavrin::XMLReader& reader, const std::string& text) {
  return parseBlocks(reader, {text});
}

/// The events that handlers get outside of expat, by their number in the document.
struct OuterEvent {
  const char* name;
  std::size_t number;
  const char* document;
  EventLog::Lines before;
};

const OuterEvent kOuterEvents[] = {
    {"setDocumentLocator", 0, "<a/>", {}},
    {"startDocument", 1, "<a/>", {"setDocumentLocator()"}},
    {"endDocument",
     4,
     "<a/>",
     {"setDocumentLocator()", "startDocument()", "startElement(, a, a, [])", "endElement(, a, a)"}},
    {"fatalError",
     3,
     "<a>",
     {"setDocumentLocator()", "startDocument()", "startElement(, a, a, [])"}},
};

// SAX exceptions leave as one of the two types that callers of parse know; the derived part is
// lost. All others pass as they are. What fatalError throws takes the place of the reader's own.
TEST(ExpatExceptions, OfEventsOutsideOfExpatLeaveByTheirKind) {
  for (const Parse parse : {Parse{parseText}, Parse{parseBlock}}) {
    for (const OuterEvent& event : kOuterEvents) {
      for (const Thrown& thrown : thrownKinds()) {
        SCOPED_TRACE(std::string(thrown.name) + " from " + event.name);
        EventLog log;
        Tavrin::XMLReader_Expat reader;
        log.attachTo(reader);
        log.beforeEvent = [&](std::size_t number) {
          if (number == event.number) thrown.raise();
        };
        EXPECT_EQ(thrown.leavesAs, parse(reader, event.document));
        EXPECT_EQ(join(event.before), log.text());

        // The reader reads the next document in full.
        log.beforeEvent = nullptr;
        log.clear();
        EXPECT_EQ("done", parseText(reader, "<b/>"));
        EXPECT_EQ(wholeLog({"startElement(, b, b, [])", "endElement(, b, b)"}), log.text());
      }
    }
  }
}

TEST(ExpatExceptions, OfSAXKindsLeaveTheReaderIdle) {
  for (const OuterEvent& event : kOuterEvents) {
    for (const Thrown& thrown : thrownKinds()) {
      if (!thrown.isSAX) continue;
      SCOPED_TRACE(std::string(thrown.name) + " from " + event.name);
      EventLog log;
      Tavrin::XMLReader_Expat reader;
      log.attachTo(reader);
      log.beforeEvent = [&](std::size_t number) {
        if (number == event.number) thrown.raise();
      };
      EXPECT_EQ(thrown.leavesAs, parseText(reader, event.document));
      log.beforeEvent = nullptr;
      log.clear();
      // A block starts a document here. With a document open it would go on with that.
      EXPECT_EQ("done", parseBlock(reader, "<b/>"));
      EXPECT_EQ(wholeLog({"startElement(, b, b, [])", "endElement(, b, b)"}), log.text());
    }
  }
}

TEST(ExpatExceptions, OfOtherKindsLeaveTheDocumentOpen) {
  EventLog log;
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  std::size_t thrower = 0;
  log.beforeEvent = [&](std::size_t number) {
    if (number == thrower) throw 42;
  };
  const auto failAt = [&](std::size_t number, const char* document) {
    log.clear();
    thrower = number;
    EXPECT_EQ("int(42)", parseText(reader, document));
    thrower = 1000;
    log.clear();
  };

  // No event of the parse was lost: the document can still be fed.
  failAt(1, "<ignored/>");
  EXPECT_EQ("done", parseBlock(reader, "<a/>"));
  EXPECT_EQ(join({"startElement(, a, a, [])", "endElement(, a, a)", "endDocument()"}), log.text());

  // The document is over, and a block comes after its end.
  failAt(4, "<a/>");
  const Failure finished{XML_ERROR_FINISHED, 1, 5};
  EXPECT_EQ(finished.thrown(), parseBlock(reader, "<b/>"));
  EXPECT_EQ(join({finished.logged()}), log.text());

  // The document failed, and fails again, at a place that expat does not promise.
  failAt(3, "<a>");
  const std::string outcome = parseBlock(reader, "</a>");
  const std::string type = "SAXParseException";
  const std::string failure = type + "(" + messageOf(XML_ERROR_NO_ELEMENTS) + ", 1, ";
  EXPECT_EQ(failure, outcome.substr(0, failure.size()));
  EXPECT_EQ(join({"fatalError" + outcome.substr(type.size())}), log.text());

  // It can be given up.
  failAt(1, "<a/>");
  EXPECT_EQ("done", outcomeOf([&] { reader.parse(nullptr, 0, true); }));
  EXPECT_EQ("", log.text());
  EXPECT_EQ("done", parseBlock(reader, "<b/>"));
  EXPECT_EQ(wholeLog({"startElement(, b, b, [])", "endElement(, b, b)"}), log.text());

  // A stream is always a new document.
  failAt(1, "<a/>");
  EXPECT_EQ("done", parseText(reader, "<b/>"));
  EXPECT_EQ(wholeLog({"startElement(, b, b, [])", "endElement(, b, b)"}), log.text());
}

/// An event in expat's callbacks from which an exception comes, once.
struct InnerEvent {
  std::size_t number;
  int line;
  int column;
  /// What expat still reports of the construct that the event belongs to.
  EventLog::Lines after;
};

/// Every inner event of a document is expected to end it, whatever it throws.
void checkAborts(const std::string& document, const std::map<std::string, std::string>& entities,
                 const EventLog::Lines& events, const std::vector<InnerEvent>& aborts) {
  for (const InnerEvent& event : aborts) {
    for (const Thrown& thrown : thrownKinds()) {
      SCOPED_TRACE(std::string(thrown.name) + " from " + events[event.number]);
      EventLog log;
      log.entities = entities;
      Tavrin::XMLReader_Expat reader;
      log.attachTo(reader);
      bool done = false;
      log.beforeEvent = [&](std::size_t number) {
        // The first two events are setDocumentLocator and startDocument.
        if (number != event.number + 2 || done) return;
        done = true;
        thrown.raise();
      };
      const Failure aborted{XML_ERROR_ABORTED, event.line, event.column};
      EXPECT_EQ(aborted.thrown(), parseText(reader, document));
      EventLog::Lines expected = {"setDocumentLocator()", "startDocument()"};
      expected.insert(expected.end(), events.begin(),
                      events.begin() + static_cast<std::ptrdiff_t>(event.number));
      expected.insert(expected.end(), event.after.begin(), event.after.end());
      expected.push_back(aborted.logged());
      EXPECT_EQ(join(expected), log.text());
    }
  }
}

TEST(ExpatExceptions, OfEventsWithinExpatBecomeTheAbortedParse) {
  checkAborts("<!DOCTYPE a [<!--c-->]>\n<a>\n<b/>text<?t?><![CDATA[x]]></a><!--d-->", {},
              {"startDTD(a, , )", "comment(c)", "endDTD()", "startElement(, a, a, [])",
               "characters(\\n)", "startElement(, b, b, [])", "endElement(, b, b)",
               "characters(text)", "processingInstruction(t, )", "startCDATA()", "characters(x)",
               "endCDATA()", "endElement(, a, a)", "comment(d)"},
              {// In the DTD, and at the end of a CDATA section, expat stands at the construct's
               // start; elsewhere behind the construct.
               {0, 1, 13, {}},
               {1, 1, 14, {}},
               {2, 1, 23, {}},
               {3, 2, 4, {}},
               {4, 3, 1, {}},
               {5, 3, 5, {"endElement(, b, b)"}},
               {6, 3, 5, {}},
               {7, 3, 9, {}},
               {8, 3, 14, {}},
               {9, 3, 24, {"characters(x)"}},
               {10, 3, 24, {}},
               {11, 3, 24, {}},
               {12, 3, 31, {}},
               {13, 3, 39, {}}});
}

TEST(ExpatExceptions, OfNamespaceEventsLetTheirTagPass) {
  checkAborts("<p:a xmlns:p='u' xmlns='v'><b/></p:a>", {},
              {"startPrefixMapping(p, u)", "startPrefixMapping(, v)", "startElement(u, a, p:a, [])",
               "startElement(v, b, b, [])", "endElement(v, b, b)", "endElement(u, a, p:a)",
               "endPrefixMapping()", "endPrefixMapping(p)"},
              {{0, 1, 28, {"startPrefixMapping(, v)", "startElement(u, a, p:a, [])"}},
               {1, 1, 28, {"startElement(u, a, p:a, [])"}},
               {2, 1, 28, {}},
               {3, 1, 32, {"endElement(v, b, b)"}},
               {5, 1, 38, {"endPrefixMapping()", "endPrefixMapping(p)"}},
               {6, 1, 38, {"endPrefixMapping(p)"}},
               {7, 1, 38, {}}});
}

// Only the document's own parser can be stopped, so an entity is read to its end.
TEST(ExpatExceptions, WithinAnExternalEntityLetTheEntityPass) {
  checkAborts("<!DOCTYPE a SYSTEM 'x' [<!ENTITY e SYSTEM 'e'>]>\n<a>&e;<b/></a>",
              {{"x", "<!--1--><!--2-->"}, {"e", "<c/>text<?t?>"}},
              {"startDTD(a, , x)", "resolveEntity(, x)", "comment(1)", "comment(2)", "endDTD()",
               "startElement(, a, a, [])", "resolveEntity(, e)", "startElement(, c, c, [])",
               "endElement(, c, c)", "characters(text)", "processingInstruction(t, )",
               "startElement(, b, b, [])", "endElement(, b, b)", "endElement(, a, a)"},
              {{2, 1, 48, {"comment(2)", "endDTD()"}},
               {3, 1, 48, {"endDTD()"}},
               {7, 2, 7, {"endElement(, c, c)", "characters(text)", "processingInstruction(t, )"}},
               {8, 2, 7, {"characters(text)", "processingInstruction(t, )"}},
               {9, 2, 7, {"processingInstruction(t, )"}},
               {10, 2, 7, {}},
               {11, 2, 11, {"endElement(, b, b)"}}});
}

TEST(ExpatExceptions, AreThrownAsFatalErrorGotThem) {
  struct Keeper : Tavrin::ErrorHandler {
    void fatalError(const Tavrin::SAXParseException& exception) override {
      seen.push_back(&exception);
      copies.push_back(exception);
    }
    std::vector<const Tavrin::SAXParseException*> seen;
    std::vector<Tavrin::SAXParseException> copies;
  };
  Keeper keeper;
  Tavrin::XMLReader_Expat reader;
  reader.setErrorHandler(&keeper);
  std::istringstream stream("<a>\n</b>");
  try {
    reader.parse(stream);
    FAIL() << "parsed";
  } catch (const Tavrin::SAXParseException& exception) {
    ASSERT_EQ(1U, keeper.copies.size());
    EXPECT_EQ(messageOf(XML_ERROR_TAG_MISMATCH), exception.getMessage());
    EXPECT_EQ(2, exception.getLineNumber());
    EXPECT_EQ(3, exception.getColumnNumber());
    EXPECT_EQ(exception.getMessage(), keeper.copies[0].getMessage());
    EXPECT_EQ(exception.getLineNumber(), keeper.copies[0].getLineNumber());
    EXPECT_EQ(exception.getColumnNumber(), keeper.copies[0].getColumnNumber());
    // By value: this is a copy, not the object that the handler was shown.
    EXPECT_NE(keeper.seen[0], &exception);
  }
}

TEST(ExpatExceptions, NeedNoErrorHandler) {
  Tavrin::XMLReader_Expat reader;
  const Failure failure{XML_ERROR_TAG_MISMATCH, 1, 6};
  EXPECT_EQ(failure.thrown(), parseText(reader, "<a></b>"));
  EXPECT_EQ("done", parseText(reader, "<a></a>"));
}

}  // namespace
