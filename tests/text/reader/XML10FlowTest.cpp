#include <Allocations.h>
#include <FlowChecks.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "XML10ReaderSupport.h"

// Stopping, pausing and coalescing: at every event of documents that have all kinds of events.

namespace {

using namespace Tavrin;

struct Sample {
  std::string text;
  std::map<std::string, std::string> entities = {};
};

/// The text in UTF-16 without a byte order mark.
std::string wide(const std::string& text) {
  std::string octets;
  for (const char c : text) octets += {'\0', c};
  return octets;
}

const std::vector<Sample>& samples() {
  static const std::vector<Sample> all = {
      {"<a/>"},
      {"<?xml version='1.1'?><!--c--><?t d?><a>x<b/>y&amp;z\nw<![CDATA[1\n2]]></a><?t?><!--e-->"},
      {"<?xml version='1.0'?><!DOCTYPE a SYSTEM 'd' [<!ENTITY e SYSTEM 'e'><!NOTATION n SYSTEM 'n'>"
       "<!ENTITY u SYSTEM 'u' NDATA n><!ENTITY i 'I'>]><p:a xmlns:p='v'>1&e;<![CDATA[2]]>&s;"
       "<!--c--></p:a><?t d?>",
       {{"d", "<!ENTITY % q SYSTEM 'q'>%q;<!ELEMENT b ANY>"},
        {"q", "<!ATTLIST b x ID #IMPLIED><!ENTITY f SYSTEM 'f'>"},
        {"e", "<b>&f;</b>"},
        {"f", "t<c x='1'/>t"}}},
      // Nothing external is read: declarations that are not processed, and losses.
      {"<!DOCTYPE a SYSTEM 'd' [<!ENTITY % p SYSTEM 'p'><!ENTITY % i '<!ELEMENT b (c|d)*><?t?>'>%i;"
       "<!ENTITY x SYSTEM 'x'>%p;<!ENTITY y 'z'><!ATTLIST a b CDATA 'c'>]>"
       "<a b='&x;'>&x;<c xmlns='u' xmlns:p='v' p:d='&y;'/></a>"},
      // Internal entities with markup, defaults.
      {"<!DOCTYPE a [<!ENTITY i 'x<b c=\"&#38;j;\">&#38;j;</b>y'><!ENTITY j 'J'>"
       "<!ATTLIST b d NMTOKEN 'e'>]><a>&i;&j;<b/>&i;</a>"},
      {wide("<a>text <b x='1'/>more<![CDATA[text\ntext]]></a>")},
      {"<a>" + std::string(3000, 't') + "<b/>" + std::string(70000, 'u') + "</a>"},
      // Expat reads up to the root element; an entity that is not declared ends the scanner's part.
      {"<!--c--><!DOCTYPE a SYSTEM 's' [<!ELEMENT a ANY><!--d--><?t d?><!NOTATION n SYSTEM 'n'>"
       "<!ATTLIST a b CDATA #IMPLIED>]>\n<?t?><!--e--><a xmlns='u' b='c'>x<d/>&amp;"
       "<![CDATA[y]]><e>&none;</e>z</a><!--f-->"},
      // Failures: in the document, in an entity, at the end, before the first event.
      {"<a>x<b>y</c></a>"},
      {"<!DOCTYPE a [<!ENTITY e SYSTEM 'e'>]><a>1&e;2</a>", {{"e", "x<b/>y<c></d>"}}},
      {"<!DOCTYPE a SYSTEM 'd'><a/>", {{"d", "<!ELEMENT b ANY><!ELEMENT"}}},
      // An element must end in the internal entity in which it begins.
      {"<!DOCTYPE a [<!ENTITY e '<b>x'>]><a>&e;</b></a>"},
      {"<!DOCTYPE a [<!ENTITY e '<b>x'><!ENTITY f '&e;&e;'>]><a>&f;</b></b></a>"},
      {"<!DOCTYPE a [<!ENTITY e '<b>x</b>y'><!ENTITY f '&e;&e;'>]><a>&f;"},
      {"<a>text<b>"},
      {""},
      {"text"},
  };
  return all;
}

/// A reader with a log that has all of its handlers.
struct LoggedReader {
  LoggedReader() {
    log.mergeCharacters = false;
    log.attachTo(reader);
    log.attachDeclarationsTo(reader);
    // Each event comes with its last octet, so that pauses do not change how text is cut.
    bool defers = false;
    reader.setProperty(properties::reparseDeferral, &defers);
  }

  std::function<std::string()> reading(const Sample& sample, std::size_t way) {
    log.entities = sample.entities;
    return [this, &sample, way] {
      return outcomeOf([&] { flow::readThrough(reader, sample.text, way, false); });
    };
  }

  EventLog log;
  XMLReader_XML10 reader;
};

/// Calls a check with each sample, each way and each choice of handlers.
void forEachReading(
    const std::function<void(LoggedReader&, const std::function<std::string()>&)>& check) {
  for (const bool isLexical : {true, false}) {
    for (const bool hasErrors : {true, false}) {
      LoggedReader reader;
      if (!isLexical) reader.reader.setLexicalHandler(nullptr);
      if (!hasErrors) reader.reader.setErrorHandler(nullptr);
      for (const Sample& sample : samples()) {
        for (const std::size_t way : flow::kWays) {
          if (sample.text.size() > 10000 && way > 0 && way < 100000) continue;
          SCOPED_TRACE("blocks of " + std::to_string(way) + ": " + sample.text.substr(0, 1000));
          check(reader, reader.reading(sample, way));
          if (testing::Test::HasFatalFailure()) return;
        }
      }
    }
  }
}

TEST(XML10Flow, StopsAtEachEvent) {
  forEachReading([](LoggedReader& reader, const auto& read) {
    flow::expectStopsAtEachEvent(reader.reader, reader.log, read);
  });
}

TEST(XML10Flow, PausesAtEachEvent) {
  forEachReading([](LoggedReader& reader, const auto& read) {
    flow::expectPausesAtEachEvent(reader.reader, reader.log, read);
  });
}

TEST(XML10Flow, Coalesces) {
  forEachReading([](LoggedReader& reader, const auto& read) {
    flow::expectCoalesces(reader.reader, reader.log, read);
  });
}

TEST(XML10Flow, CoalescesWhereItStopsOrPauses) {
  forEachReading([](LoggedReader& reader, const auto& read) {
    reader.reader.setFeature(features::coalesceCharacters, true);
    flow::expectStopsAtEachEvent(reader.reader, reader.log, read);
    flow::expectPausesAtEachEvent(reader.reader, reader.log, read);
    reader.reader.setFeature(features::coalesceCharacters, false);
  });
}

TEST(XML10Flow, CoalescesTextAroundWhatNobodyReceives) {
  LoggedReader reader;
  reader.reader.setLexicalHandler(nullptr);
  reader.reader.setFeature(features::coalesceCharacters, true);
  const Sample sample = {
      "<!DOCTYPE a [<!ENTITY e SYSTEM 'e'><!ENTITY i 'I'>]><a>1&i;<!--c-->2<![CDATA[3]]>\n&#52;&e;"
      "6</a>",
      {{"e", "5"}}};
  const auto expected = [](const std::string& content) {
    return "setDocumentLocator()\nstartDocument()\nexternalEntityDecl(e, , e)\n"
           "internalEntityDecl(i, I)\nstartElement(, a, a, [])\n" +
           content + "endElement(, a, a)\nendDocument()\n";
  };
  for (const std::size_t way : flow::kWays) {
    const auto outcome = flow::outcomeOf(reader.log, reader.reading(sample, way));
    EXPECT_EQ(expected("characters(1I23\\n456)\n"), join(flow::withoutResolver(outcome.events)));
  }
  reader.log.attachTo(reader.reader);
  for (const std::size_t way : flow::kWays) {
    const auto outcome = flow::outcomeOf(reader.log, reader.reading(sample, way));
    EXPECT_EQ(
        "setDocumentLocator()\nstartDocument()\nstartDTD(a, , )\nexternalEntityDecl(e, , e)\n"
        "internalEntityDecl(i, I)\nendDTD()\nstartElement(, a, a, [])\n"
        "characters(1I)\ncomment(c)\ncharacters(2)\nstartCDATA()\ncharacters(3)\nendCDATA()\n"
        "characters(\\n4)\nstartEntity(e)\ncharacters(5)\nendEntity(e)\ncharacters(6)\n"
        "endElement(, a, a)\nendDocument()\n",
        join(flow::withoutResolver(outcome.events)));
  }
}

TEST(XML10Flow, CoalescesAsMuchAsTheLimitAllows) {
  const Sample sample = {"<a>1234&amp;6\n8</a>"};
  const std::string start = "setDocumentLocator()\nstartDocument()\nstartElement(, a, a, [])\n";
  for (const std::uint64_t limit : {7U, 8U, 9U}) {
    for (const std::size_t way : flow::kWays) {
      LoggedReader reader;
      reader.reader.setFeature(features::coalesceCharacters, true);
      std::uint64_t value = limit;
      reader.reader.setProperty(properties::maximumCoalescedOctets, &value);
      EXPECT_EQ(limit, reader.reader.getLimits().maximumCoalescedOctets);
      const auto outcome = flow::outcomeOf(reader.log, reader.reading(sample, way));
      if (limit >= 8) {
        EXPECT_EQ("done", outcome.end);
        EXPECT_EQ(start + "characters(1234&6\\n8)\nendElement(, a, a)\nendDocument()\n",
                  join(outcome.events));
      } else {
        const std::string failure =
            "(Text longer than 7 octets (property maximum-coalesced-octets), 2, 1)";
        EXPECT_EQ("SAXParseException" + failure, outcome.end);
        EXPECT_EQ(start + "characters(1234&6\\n)\nfatalError" + failure + "\n",
                  join(outcome.events));
      }
    }
  }
}

TEST(XML10Flow, FreesLongText) {
  const std::string text = "<a>" + std::string(300000, 't') + "</a>";
  ContentHandler handler;
  const auto heldBy = [&](bool coalesces) {
    const std::size_t before = allocations::inUse();
    XMLReader_XML10 reader;
    reader.setContentHandler(&handler);
    reader.setFeature(features::coalesceCharacters, coalesces);
    for (std::size_t i = 0; i < text.size(); ++i) reader.parse(&text[i], 1, i + 1 == text.size());
    return allocations::inUse() - before;
  };
  EXPECT_LT(heldBy(true), heldBy(false) + 1000U);
}

// --- Stopping ---

TEST(XML10Flow, StopsOutsideOfHandlers) {
  LoggedReader reader;
  reader.reader.stop();  // No document.
  EXPECT_FALSE(reader.reader.isStopped());
  reader.reader.parse("<a><b>", 6, false);
  reader.reader.stop();
  EXPECT_TRUE(reader.reader.isStopped());
  reader.log.clear();
  reader.reader.parse("<a/>", 4, true);
  EXPECT_FALSE(reader.reader.isStopped());
  EXPECT_EQ(
      "setDocumentLocator()\nstartDocument()\nstartElement(, a, a, [])\nendElement(, a, a)\n"
      "endDocument()\n",
      reader.log.text());
  reader.reader.stop();  // The document has ended.
  EXPECT_FALSE(reader.reader.isStopped());
}

TEST(XML10Flow, GivesUpAPausedDocument) {
  LoggedReader reader;
  reader.log.beforeEvent = [&](std::size_t) { reader.reader.pause(); };
  reader.reader.parse("<a/>", 4, true);
  ASSERT_TRUE(reader.reader.isPaused());
  reader.reader.stop();
  EXPECT_TRUE(reader.reader.isStopped());
  EXPECT_FALSE(reader.reader.isPaused());
  EXPECT_EQ("SAXException(resume called while the reader is not paused)",
            outcomeOf([&] { reader.reader.resume(); }));
  reader.log.beforeEvent = nullptr;
  EXPECT_EQ("done", parseText(reader.reader, "<a/>"));
}

/// A document with an empty element whose start tag has several events.
const Sample kTag = {"<p:a xmlns:p='v'><b x='1'/>text</p:a>"};

TEST(XML10Flow, LetsExceptionsOfHandlersLeave) {
  LoggedReader reader;
  for (const bool stops : {true, false}) {
    for (const std::size_t way : flow::kWays) {
      for (std::size_t at = 0; at < 9; ++at) {
        reader.log.beforeEvent = [&](std::size_t number) {
          if (number < at) return;
          stops ? reader.reader.stop() : reader.reader.pause();
          throw std::runtime_error("enough");
        };
        const auto outcome = flow::outcomeOf(reader.log, reader.reading(kTag, way));
        EXPECT_EQ("std::runtime_error(enough)", outcome.end);
        EXPECT_EQ(at, outcome.events.size());
        EXPECT_EQ(stops, reader.reader.isStopped());
        EXPECT_FALSE(reader.reader.isPaused());
      }
    }
  }
  reader.log.beforeEvent = nullptr;
  EXPECT_EQ("done", parseText(reader.reader, kTag.text));
}

// --- Pausing ---

TEST(XML10Flow, RefusesOtherDocumentsWhileItIsPaused) {
  LoggedReader reader;
  reader.log.beforeEvent = [&](std::size_t number) {
    if (number == 2) reader.reader.pause();
    EXPECT_EQ("SAXException(resume called from a handler of the same reader)",
              outcomeOf([&] { reader.reader.resume(); }));
  };
  const std::string refusal = "SAXException(parse called while the reader is paused)";
  reader.reader.parse(kTag.text.data(), kTag.text.size(), true);
  const std::string begin = "setDocumentLocator()\nstartDocument()\nstartPrefixMapping(p, v)\n";
  EXPECT_EQ(begin, reader.log.text());
  EXPECT_EQ(refusal, outcomeOf([&] { reader.reader.parse("<a/>", 4, true); }));
  EXPECT_EQ(refusal, parseText(reader.reader, "<a/>"));
  reader.reader.resume();
  EXPECT_EQ(begin +
                "startElement(v, a, p:a, [])\nstartElement(, b, b, [{, x, x, CDATA, 1}])\n"
                "endElement(, b, b)\ncharacters(text)\nendElement(v, a, p:a)\n"
                "endPrefixMapping(p)\nendDocument()\n",
            reader.log.text());
  EXPECT_EQ("SAXException(resume called while the reader is not paused)",
            outcomeOf([&] { reader.reader.resume(); }));
}

TEST(XML10Flow, PausesNothingOutsideOfHandlers) {
  LoggedReader reader;
  reader.reader.pause();
  EXPECT_FALSE(reader.reader.isPaused());
  reader.reader.parse("<a", 2, false);
  reader.reader.pause();
  EXPECT_FALSE(reader.reader.isPaused());
  reader.reader.parse("/>", 2, true);
  EXPECT_EQ("endDocument()", reader.log.lines().back());
}

TEST(XML10Flow, ThrowsAfterResume) {
  LoggedReader reader;
  for (const std::size_t way : flow::kWays) {
    for (std::size_t at = 1; at < 10; ++at) {
      reader.log.beforeEvent = [&](std::size_t number) {
        reader.reader.pause();
        if (number == at) throw std::runtime_error("enough");
      };
      const auto outcome = flow::outcomeOf(reader.log, reader.reading(kTag, way));
      EXPECT_EQ("std::runtime_error(enough)", outcome.end);
      EXPECT_EQ(at, outcome.events.size());
      EXPECT_FALSE(reader.reader.isPaused());
      reader.log.beforeEvent = nullptr;
      ASSERT_EQ("done", parseText(reader.reader, kTag.text));
    }
  }
}

TEST(XML10Flow, ReportsToTheHandlersThatAreSetAtResume) {
  LoggedReader reader;
  reader.log.beforeEvent = [&](std::size_t number) {
    if (number == 2) reader.reader.pause();
  };
  reader.reader.parse(kTag.text.data(), kTag.text.size(), true);
  EventLog other;
  reader.reader.setContentHandler(&other);
  reader.reader.resume();
  EXPECT_EQ(
      "startElement(v, a, p:a, [])\nstartElement(, b, b, [{, x, x, CDATA, 1}])\n"
      "endElement(, b, b)\ncharacters(text)\nendElement(v, a, p:a)\nendPrefixMapping(p)\n"
      "endDocument()\n",
      other.text());
}

/// What a resolver or a stream throws while the document is paused comes at its place.
TEST(XML10Flow, ThrowsWhatAnEntityThrewAfterThePause) {
  LoggedReader reader;
  struct Resolver : EntityResolver {
    std::unique_ptr<std::istream> resolveEntity(const std::string&,
                                                const std::string& systemId) override {
      if (systemId == "f") throw std::runtime_error("no f");
      return std::make_unique<std::istringstream>("<b/>&f;");
    }
  } resolver;
  reader.reader.setEntityResolver(&resolver);
  reader.log.beforeEvent = [&](std::size_t) { reader.reader.pause(); };
  const Sample sample = {"<!DOCTYPE a [<!ENTITY e SYSTEM 'e'><!ENTITY f SYSTEM 'f'>]><a>1&e;2</a>"};
  for (const std::size_t way : flow::kWays) {
    const auto outcome = flow::outcomeOf(reader.log, reader.reading(sample, way));
    EXPECT_EQ("std::runtime_error(no f)", outcome.end);
    EXPECT_EQ(
        "setDocumentLocator()\nstartDocument()\nstartDTD(a, , )\nexternalEntityDecl(e, , e)\n"
        "externalEntityDecl(f, , f)\nendDTD()\nstartElement(, a, a, [])\ncharacters(1)\n"
        "startEntity(e)\nstartElement(, b, b, [])\nendElement(, b, b)\n",
        join(outcome.events));
    EXPECT_FALSE(reader.reader.isPaused());
  }
}

TEST(XML10Flow, MayBeDestroyedWhileItIsPaused) {
  for (const std::size_t size : {4U, 100U}) {
    LoggedReader reader;
    reader.log.beforeEvent = [&](std::size_t) { reader.reader.pause(); };
    reader.reader.parse(kTag.text.data(), std::min<std::size_t>(size, kTag.text.size()), false);
  }
}

}  // namespace
