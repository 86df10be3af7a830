#include <gtest/gtest.h>

#include <numeric>

#include "ReaderDocuments.h"
#include "ThrownKinds.h"

namespace {

/// A document with every event that its handlers can get, in pieces none of which cuts a text.
struct RichDocument {
  std::vector<std::string> pieces;
  EventLog::Lines events;
  std::map<std::string, std::string> entities;
  bool declarations;

  std::string text() const { return std::accumulate(pieces.begin(), pieces.end(), std::string()); }
};

const RichDocument kRichDocuments[] = {
    // With external entities, which the declaration handler does not bear.
    {{"<?xml version='1.0'?><!DOCTYPE p:a SYSTEM 'x.dtd' [", "<!ENTITY i '<b/>'>",
      "<!ENTITY e SYSTEM 'e.ent'>", "<!--c--><?t d?>", "]>", "<p:a xmlns:p='u' xmlns:q='v'>",
      "text<![CDATA[data]]>", "&i;", "&e;", "&s;", "</p:a>", "<?z?>", "<!--end-->"},
     {"setDocumentLocator()",
      "startDocument()",
      "startDTD(p:a, , x.dtd)",
      "comment(c)",
      "processingInstruction(t, d)",
      "resolveEntity(, x.dtd)",
      "comment(s)",
      "endDTD()",
      "startPrefixMapping(p, u)",
      "startPrefixMapping(q, v)",
      "startElement(u, a, p:a, [])",
      "characters(text)",
      "startCDATA()",
      "characters(data)",
      "endCDATA()",
      "startElement(, b, b, [])",
      "endElement(, b, b)",
      "resolveEntity(, e.ent)",
      "startElement(, k, k, [{, d, d, CDATA, v}])",
      "characters(in)",
      "endElement(, k, k)",
      "skippedEntity(s)",
      "endElement(u, a, p:a)",
      "endPrefixMapping(q)",
      "endPrefixMapping(p)",
      "processingInstruction(z, )",
      "comment(end)",
      "endDocument()"},
     {{"x.dtd", "<!--s--><!ATTLIST k d CDATA 'v'>"}, {"e.ent", "<k>in</k>"}},
     false},
    // With declarations.
    {{"<!DOCTYPE a PUBLIC 'p' 'x.dtd' [", "<!ELEMENT a (b|c)*>", "<!ENTITY i 'I'><!ENTITY % j 'J'>",
      "]>", "<a>", "&i;", "</a>"},
     {"setDocumentLocator()", "startDocument()", "startDTD(a, p, x.dtd)", "elementDecl(a, (b|c)*)",
      "internalEntityDecl(i, I)", "internalEntityDecl(%j, J)", "resolveEntity(p, x.dtd)",
      "attributeDecl(a, d, (x|y), , x)", "elementDecl(b, EMPTY)", "skippedEntity(k)", "endDTD()",
      "startElement(, a, a, [{, d, d, CDATA, x}])", "characters(I)", "endElement(, a, a)",
      "endDocument()"},
     {{"x.dtd", "<!ATTLIST a d (x|y) 'x'><!ELEMENT b EMPTY>%k;"}},
     true},
};

struct Failures : Tavrin::ErrorHandler {
  void warning(const Tavrin::SAXParseException&) override { ADD_FAILURE() << "warning"; }
  void error(const Tavrin::SAXParseException&) override { ADD_FAILURE() << "error"; }
  void fatalError(const Tavrin::SAXParseException& exception) override {
    fatal.push_back(Failure{codeOf(exception.getMessage()), exception.getLineNumber(),
                            exception.getColumnNumber()});
  }
  static XML_Error codeOf(const std::string& message) {
    for (const XML_Error code : {XML_ERROR_ABORTED, XML_ERROR_EXTERNAL_ENTITY_HANDLING}) {
      if (message == messageOf(code)) return code;
    }
    return XML_ERROR_NONE;
  }
  std::vector<Failure> fatal;
};

enum class Way { stream, blocks };

std::string parse(Tavrin::XMLReader& reader, const RichDocument& document, Way way) {
  return way == Way::stream ? parseText(reader, document.text())
                            : parseBlocks(reader, document.pieces);
}

bool startsWith(const std::string& line, const char* operation) {
  return line.rfind(operation, 0) == 0;
}

/// Lets every event of a document throw, and all that follow it.
void checkEveryEvent(const RichDocument& document, Way way, const Thrown& thrown) {
  EventLog log;
  log.mergeCharacters = false;  // One line an event.
  log.entities = document.entities;
  Failures failures;
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  if (document.declarations) log.attachDeclarationsTo(reader);
  reader.setErrorHandler(&failures);

  for (std::size_t i = 0; i < document.events.size(); ++i) {
    const std::string& event = document.events[i];
    SCOPED_TRACE(event);
    log.clear();
    failures.fatal.clear();
    log.beforeEvent = [&](std::size_t number) {
      if (number >= i) thrown.raise();
    };
    const std::string outcome = parse(reader, document, way);

    EXPECT_EQ(
        join({document.events.begin(), document.events.begin() + static_cast<std::ptrdiff_t>(i)}),
        log.text());
    if (startsWith(event, "setDocumentLocator") || startsWith(event, "startDocument") ||
        startsWith(event, "endDocument")) {
      EXPECT_EQ(thrown.leavesAs, outcome);
      EXPECT_TRUE(failures.fatal.empty());
    } else {
      ASSERT_EQ(1U, failures.fatal.size());
      EXPECT_EQ(failures.fatal[0].thrown(), outcome);
      EXPECT_EQ(startsWith(event, "resolveEntity") ? XML_ERROR_EXTERNAL_ENTITY_HANDLING
                                                   : XML_ERROR_ABORTED,
                failures.fatal[0].code);
    }

    // The same reader reads the next document in full. A document that was left open is given up
    // where blocks follow.
    log.beforeEvent = nullptr;
    if (way == Way::blocks && outcome == thrown.leavesAs && !thrown.isSAX) {
      reader.parse(nullptr, 0, true);
    }
    log.clear();
    failures.fatal.clear();
    ASSERT_EQ("done", parse(reader, document, way));
    ASSERT_EQ(join(document.events), log.text());
    ASSERT_TRUE(failures.fatal.empty());
  }
}

void checkEveryWay(const RichDocument& document) {
  for (const Way way : {Way::stream, Way::blocks}) {
    for (const Thrown& thrown : thrownKinds()) {
      SCOPED_TRACE(thrown.name);
      SCOPED_TRACE(way == Way::stream ? "as a stream" : "in blocks");
      checkEveryEvent(document, way, thrown);
    }
  }
}

TEST(ExpatThrowAnywhere, EndsADocumentWithEntitiesAndLeavesTheReaderAsNew) {
  checkEveryWay(kRichDocuments[0]);
}

TEST(ExpatThrowAnywhere, EndsADocumentWithDeclarationsAndLeavesTheReaderAsNew) {
  checkEveryWay(kRichDocuments[1]);
}

}  // namespace
