#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "PullLog.h"
#include "WhatIsThrown.h"

// XML text that is pulled: the events are those that handlers are told, for all documents, and
// however their octets come.

namespace {

using namespace Tavrin;

constexpr const char* kEverything = R"(<?xml version='1.0' standalone='no'?>
<!-- before -->
<!DOCTYPE r PUBLIC "p" "s" [
<!ELEMENT r (#PCDATA|a)*>
<!ATTLIST r d CDATA "default" k (x|y) #IMPLIED>
<!ENTITY in "<a>inside &#38;amp; </a>">
<!ENTITY out SYSTEM "out">
<!ENTITY not SYSTEM "not">
<!NOTATION n PUBLIC "np" "ns">
<!ENTITY picture SYSTEM "picture" NDATA n>
<?in the subset?>
<!-- in the subset -->
]>
<?pi with data?><?empty?>
<r xmlns="urn:d" xmlns:p="urn:p" k="y" p:q='1&#10;2'>text &lt; <a xmlns=""/><p:b
  xmlns:p="urn:other" xmlns:z="urn:z" z:c=""></p:b>&in;&out;&not;<![CDATA[<c>]]>)"
                                    "\r\n\xD0\xB6]</r><!-- after -->\n<?last?>\n";

// Without a document type, expat has no part in it.
constexpr const char* kScanned = R"(<?xml version='1.0' standalone='yes'?>
<!-- before --><?pi with data?><?empty?>
<r xmlns="urn:d" xmlns:p="urn:p" k="y" p:q='1&#10;2'>text &lt;&#x443;<a xmlns=""/><p:b
  xmlns:p="urn:other" xmlns:z="urn:z" z:c=""></p:b><p:e/><!-- inside --><?pi?>t<![CDATA[<c>]] ]]>)"
                                 "\r\n\xD0\xB6]<f/></r><!-- after -->\n<?last?>\n";

// Expat has the document type alone, and what comes behind a reference that only it knows.
constexpr const char* kPartlyScanned = R"(<?xml version='1.0'?><!-- before -->
<!DOCTYPE r PUBLIC "p" "not" [<!ELEMENT r ANY><!--in it--><?in it?>]><?pi?>
<r xmlns="urn:d" k="y">text &lt;<a xmlns=""/><b>x<c/>&unknown;<d e='f'>y</d></b>z</r><!-- after -->)";

struct Entities : EventLog {
  Entities() { entities = {{"s", "<!ELEMENT a ANY>"}, {"out", "<a k='v'>out</a>tail"}}; }
};

PullOutcome push(const std::string& text) {
  Entities entities;
  EventLog log;
  log.showLocator = false;
  XMLReader_XML10 reader;
  log.attachTo(reader);
  log.attachDeclarationsTo(reader);
  reader.setErrorHandler(nullptr);
  reader.setEntityResolver(&entities);
  std::istringstream stream(text);
  PullOutcome outcome;
  outcome.failure = thrown([&] { reader.parse(stream); });
  outcome.told = log.text();
  return outcome;
}

PullOutcome pullStream(std::streambuf& buffer) {
  Entities entities;
  std::istream stream(&buffer);
  PullReader reader(stream);
  reader.reader().setEntityResolver(&entities);
  PullLog log(reader);
  PullOutcome outcome;
  outcome.failure = thrown([&] { log.pull(); });
  outcome.told = log.log.text();
  EXPECT_FALSE(reader.next());
  EXPECT_EQ(outcome.failure == "nothing", reader.hasEnded());
  return outcome;
}

PullOutcome pullBlocks(const std::string& text, std::size_t size) {
  Entities entities;
  PullReader reader("XML10");
  reader.reader().setEntityResolver(&entities);
  PullLog log(reader);
  PullOutcome outcome;
  outcome.failure = thrown([&] {
    for (std::size_t begin = 0; begin <= text.size(); begin += size) {
      const std::string block = text.substr(begin, size);
      reader.supply(block.data(), block.size(), begin + size > text.size());
      log.pull();
    }
    EXPECT_TRUE(reader.hasEnded());
  });
  outcome.told = log.log.text();
  return outcome;
}

void expectSame(const std::string& text) {
  const PullOutcome expected = push(text);
  for (const std::size_t size : {1, 2, 3, 7, 64, 100000}) {
    ASSERT_EQ(expected, pullBlocks(text, size)) << "blocks of " << size << ": " << text;
  }
  std::stringbuf whole(text);
  ASSERT_EQ(expected, pullStream(whole)) << text;
  OctetByOctet narrow(text);
  ASSERT_EQ(expected, pullStream(narrow)) << text;
}

TEST(PullText, TellsWhatHandlersAreTold) {
  for (const char* const text : {kEverything, kScanned, kPartlyScanned}) {
    EXPECT_EQ("nothing", push(text).failure);
    expectSame(text);
  }
  expectSame("<a/>");
  expectSame("<a xmlns='u'><b xmlns='v'/><c xmlns='w' xmlns:p='x'/></a>");
  std::string utf16 = std::string("\xFF\xFE<\0a\0>\0t\0<\0/\0a\0>\0", 18);
  expectSame(utf16);
  expectSame("<a>" + std::string(100000, 'x') + "<b>" + std::string(50000, '\n') + "</b></a>");
}

/// Several events are found at a time, where no start tag is among them.
TEST(PullText, MayBringManyEventsWithoutAStartTag) {
  std::string references = "<a>";
  for (int i = 0; i < 100; ++i) references += "&lt;&#xE9;&#x1F600;\n\r\n&amp;t\r";
  expectSame(references + "</a>");
  expectSame(references + "<!--c--><?p d?>&#233;<![CDATA[\n&]]>x</a>");
  expectSame(references + "&no;</a>");
  std::string ends = "<a>";
  for (int i = 0; i < 40; ++i) ends += "<b xmlns:p='u" + std::to_string(i) + "'><p:c>";
  for (int i = 0; i < 40; ++i) ends += "</p:c></b>";
  expectSame(ends + "t</a>");
  expectSame(ends + "</b>");
  std::string nested(40, ' ');
  std::string closed;
  for (int i = 0; i < 40; ++i) {
    nested += "<b>";
    closed += "</b>";
  }
  for (const std::size_t ended : {30, 31, 32, 33, 39}) {
    expectSame("<a>" + nested + closed.substr(0, ended * 4));
    expectSame("<a>" + nested + closed.substr(0, ended * 4) + "</c></a>");
  }
  expectSame("<a>" + nested + closed + "</a>");
}

void expectSameOfEachBeginning(const std::string& text) {
  for (std::size_t end = 0; end < text.size(); ++end) {
    const std::string cut = text.substr(0, end);
    const PullOutcome expected = push(cut);
    ASSERT_EQ(expected, pullBlocks(cut, 100000)) << cut;
    ASSERT_EQ(expected, pullBlocks(cut, 5)) << cut;
    std::stringbuf whole(cut);
    ASSERT_EQ(expected, pullStream(whole)) << cut;
  }
}

TEST(PullText, FailsWhereHandlersDo) {
  expectSameOfEachBeginning(kEverything);
  expectSameOfEachBeginning(kScanned);
  expectSameOfEachBeginning(kPartlyScanned);
  // Where the document is not well-formed, expat takes over.
  const std::string scanned = kScanned;
  for (std::size_t at = 0; at <= scanned.size(); ++at) {
    expectSame(std::string(scanned).insert(at, "&no;<"));
  }
  expectSame("<a>text</b>");
  expectSame("<a>text<b x='1' x='2'/></a>");
  expectSame("");
  expectSame("<a/><b/>");
}

/// Each event is there when its last octet is.
TEST(PullText, TellsEachEventWithItsLastOctet) {
  OctetByOctet octets("<a><b c='d'/>t<!--e--><?f g?><h ></h  ></a>");
  std::istream stream(&octets);
  PullReader reader(stream);
  std::vector<std::size_t> given;
  while (reader.next()) given.push_back(octets.given());
  EXPECT_EQ((std::vector<std::size_t>{3, 3, 13, 13, 14, 22, 29, 33, 39, 43, 43}), given);
}

TEST(PullText, KnowsPositionsWhereItIsToldTo) {
  struct Positions : ContentHandler {
    void setDocumentLocator(const Locator* l) override {
      locator = dynamic_cast<const OctetLocator*>(l);
    }
    void startElement(const std::string&, const std::string&, const std::string&,
                      const Attributes&) override {
      note();
    }
    void endElement(const std::string&, const std::string&, const std::string&) override { note(); }
    void characters(const std::string&) override { note(); }
    void processingInstruction(const std::string&, const std::string&) override { note(); }
    void note() {
      all << locator->getLineNumber() << ':' << locator->getColumnNumber() << '@'
          << locator->getOctetOffset() << ' ';
    }
    const OctetLocator* locator = nullptr;
    std::ostringstream all;
  };
  const std::string content = "<a xmlns='u'>\n <b>x&lt;</b>\n<?p?><c\n/><d xmlns='v'/></a>";
  for (const std::string& text : {content, "<!DOCTYPE a>" + content}) {
    Positions expected;
    XMLReader_XML10 pushing;
    pushing.setContentHandler(&expected);
    pushing.parse(text.data(), text.size(), true);
    for (const bool tracks : {false, true}) {
      MemoryStream stream(text);
      PullReader reader(stream);
      EXPECT_EQ(-1, reader.line());
      if (tracks) reader.trackPositions();
      std::ostringstream all;
      while (reader.next()) {
        const PullEvent event = reader.event();
        if (!tracks) {
          ASSERT_EQ(-1, reader.line());
          continue;
        }
        if (event == PullEvent::startDocument || event == PullEvent::endDocument) continue;
        if (event == PullEvent::startDTD || event == PullEvent::endDTD) continue;
        all << reader.line() << ':' << reader.column() << '@' << reader.octetOffset() << ' ';
      }
      EXPECT_EQ(tracks ? expected.all.str() : "", all.str());
    }
  }
}

/// What an event refers to stays until the next one, and no longer.
TEST(PullText, StaysUntilTheNextEvent) {
  const std::string text = "<p:a xmlns:p='a rather long namespace name' b='c'>x&#65;<p:d/></p:a>";
  for (const std::size_t size : {1, 3, 100}) {
    PullReader reader("XML10");
    std::string seen;
    for (std::size_t begin = 0; begin < text.size(); begin += size) {
      const std::string block = text.substr(begin, size);
      reader.supply(block.data(), block.size(), begin + size >= text.size());
      while (reader.next()) {
        if (reader.event() == PullEvent::characters) seen += reader.text();
        if (reader.event() == PullEvent::startElement) {
          seen.append("<").append(reader.localName());
          for (int i = 0; i < reader.attributes().getLength(); ++i) {
            seen += ' ' + reader.attributes().getQName(i) + '=' + reader.attributes().getValue(i);
          }
          seen += '>';
        }
        if (reader.event() == PullEvent::endElement) seen.append("</").append(reader.uri()) += '>';
      }
    }
    EXPECT_EQ("<a b=c>xA<d></a rather long namespace name></a rather long namespace name>", seen);
  }
}

TEST(PullText, IsRefusedAtItsLimits) {
  const std::string text = "<a><b><c/></b></a>";
  MemoryStream stream(text);
  PullReader reader(stream);
  XMLReader_XML10::Limits limits;
  limits.maximumDepth = 2;
  dynamic_cast<XMLReader_XML10&>(reader.reader()).setLimits(limits);
  PullLog log(reader);
  EXPECT_EQ("SAXParseException: Elements nested deeper than 2 (property maximum-depth) (1:7)",
            thrown([&] { log.pull(); }));
  EXPECT_EQ("startDocument()\nstartElement(, a, a, [])\nstartElement(, b, b, [])\n",
            log.log.text());
}

}  // namespace
