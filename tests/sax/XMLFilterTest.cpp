#include <Tavrin/Tavrin.h>
#include <Tavrin/XMLFilter.h>

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "CopiedDocuments.h"
#include "EventLog.h"
#include "WhatIsThrown.h"

namespace {

using namespace Tavrin;

/// What a reader tells of a document, with the exception that ended it.
std::string told(XMLReader& reader, EventLog& log, const std::string& document) {
  log.clear();
  std::istringstream stream(document);
  const std::string outcome = thrown([&] { reader.parse(stream); });
  return log.text() + outcome;
}

std::string told(XMLReader& reader, const std::string& document) {
  EventLog log;
  log.showAlgorithms = true;
  log.entities = {{"x", "<b/>entity"}};
  connect(reader, log);
  return told(reader, log, document);
}

constexpr char kText[] = "<!DOCTYPE a [<!ENTITY x SYSTEM 'x'>]><a b='c'><!--d--><e/>&x;</a>";

TEST(XMLFilter, PassesOnAllEventsOfAllReaders) {
  for (const std::string& type : copies::kReaders) {
    std::vector<std::string> documents = copies::documentsFor(type);
    documents.push_back(documents.front().substr(0, documents.front().size() - 1));
    documents.push_back("<a>");
    documents.push_back("");
    for (const std::string& document : documents) {
      const auto direct = XMLReaderFactory::createXMLReader(type);
      const auto parent = XMLReaderFactory::createXMLReader(type);
      XMLFilter filter;
      filter.setParent(parent.get());
      EXPECT_EQ(told(*direct, document), told(filter, document)) << type;
    }
  }
}

TEST(XMLFilter, LetsADocumentBeCopiedAsItIs) {
  copies::expectCopies([](XMLReader& reader, XMLWriter& writer, std::istream& stream) {
    XMLFilter filter;
    filter.setParent(&reader);
    connect(filter, writer);
    filter.parse(stream);
  });
}

TEST(XMLFilter, IsMadeWithItsParent) {
  struct Shouting : XMLFilter {
    using XMLFilter::XMLFilter;
    void characters(const std::string& text) override { XMLFilter::characters(text + '!'); }
  };
  XMLReader_XML10 reader;
  Shouting inner(&reader);
  Shouting filter(&inner);
  EXPECT_EQ(&inner, filter.getParent());
  EXPECT_EQ(static_cast<ContentHandler*>(&inner), reader.getContentHandler());
  EXPECT_EQ(
      "setDocumentLocator()\nstartDocument()\nstartElement(, a, a, [])\ncharacters(b!!)\n"
      "endElement(, a, a)\nendDocument()\nnothing",
      told(filter, "<a>b</a>"));
  XMLFilter without(nullptr);
  EXPECT_EQ(nullptr, without.getParent());
}

TEST(XMLFilter, MayBeTheParentOfAnother) {
  copies::expectCopies([](XMLReader& reader, XMLWriter& writer, std::istream& stream) {
    XMLFilter inner;
    XMLFilter outer;
    outer.setParent(&inner);
    inner.setParent(&reader);
    connect(outer, writer);
    outer.parse(stream);
  });
}

TEST(XMLFilter, PassesOnBlocks) {
  XMLReader_XML10 parent;
  XMLFilter filter;
  filter.setParent(&parent);
  EventLog log;
  connect(filter, log);
  const std::string document = "<a>text<b/></a>";
  for (std::size_t i = 0; i < document.size(); ++i) {
    filter.parse(&document[i], 1, i + 1 == document.size());
  }
  EXPECT_EQ(
      "setDocumentLocator()\nstartDocument()\nstartElement(, a, a, [])\ncharacters(text)\n"
      "startElement(, b, b, [])\nendElement(, b, b)\nendElement(, a, a)\nendDocument()\n",
      log.text());
}

TEST(XMLFilter, RefusesBlocksWhereTheParentDoes) {
  XMLReader_FI parent;
  XMLFilter filter;
  filter.setParent(&parent);
  EXPECT_EQ("SAXNotRecognizedException: parse not implemented",
            thrown([&] { filter.parse("", 0, true); }));
}

TEST(XMLFilter, NeedsAParentToParse) {
  XMLFilter filter;
  std::istringstream stream("<a/>");
  EXPECT_EQ("SAXException: The filter has no parent", thrown([&] { filter.parse(stream); }));
  EXPECT_EQ("SAXException: The filter has no parent", thrown([&] { filter.parse("", 0, true); }));
  XMLReader_XML10 parent;
  filter.setParent(&parent);
  EXPECT_EQ(&parent, filter.getParent());
  filter.setParent(nullptr);
  EXPECT_EQ(nullptr, filter.getParent());
  EXPECT_EQ("SAXException: The filter has no parent", thrown([&] { filter.parse(stream); }));
}

TEST(XMLFilter, WithoutHandlersDropsEvents) {
  for (const std::string& type : copies::kReaders) {
    const auto parent = XMLReaderFactory::createXMLReader(type);
    XMLFilter filter;
    filter.setParent(parent.get());
    std::istringstream stream(copies::documentsFor(type).front());
    EXPECT_EQ("nothing", thrown([&] { filter.parse(stream); })) << type;
  }
}

TEST(XMLFilter, SkipsEntitiesWithoutAResolver) {
  XMLReader_XML10 parent;
  XMLFilter filter;
  filter.setParent(&parent);
  EventLog log;
  filter.setContentHandler(&log);
  EXPECT_EQ(
      "setDocumentLocator()\nstartDocument()\nstartElement(, a, a, [{, b, b, CDATA, c}])\n"
      "startElement(, e, e, [])\nendElement(, e, e)\nskippedEntity(x)\nendElement(, a, a)\n"
      "endDocument()\nnothing",
      told(filter, log, kText));
}

/// Takes an element with all of its content out, and counts what there was.
class WithoutElement : public XMLFilter {
 public:
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Attributes& attributes) override {
    if (qName != "e") XMLFilter::startElement(uri, localName, qName, attributes);
  }
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override {
    if (qName != "e") XMLFilter::endElement(uri, localName, qName);
  }
  void comment(const std::string& text) override { comments += text; }

  std::string comments;
};

TEST(XMLFilter, LetsADerivedOneChangeTheDocument) {
  XMLReader_XML10 parent;
  WithoutElement filter;
  filter.setParent(&parent);
  EventLog log;
  connect(filter, log);
  EXPECT_EQ(
      "setDocumentLocator()\nstartDocument()\nstartDTD(a, , )\nexternalEntityDecl(x, , x)\n"
      "endDTD()\nstartElement(, a, a, [{, b, b, CDATA, c}])\nresolveEntity(, x)\n"
      "skippedEntity(x)\nendElement(, a, a)\nendDocument()\nnothing",
      told(filter, log, kText));
  EXPECT_EQ("d", filter.comments);
}

TEST(XMLFilter, LetsADerivedOneReceiveEventsThatNobodyElseDoes) {
  XMLReader_XML10 parent;
  WithoutElement filter;
  filter.setParent(&parent);
  std::istringstream stream(kText);
  filter.parse(stream);
  EXPECT_EQ("d", filter.comments);
}

TEST(XMLFilter, PassesOnTheLocatorOfTheParent) {
  struct Handler : ContentHandler {
    void setDocumentLocator(const Locator* locator) override { received = locator; }
    const Locator* received = nullptr;
  } filtered;
  struct Spy : XMLReader {
    using XMLReader::parse;
    void parse(std::istream&) override { contentHandler_->setDocumentLocator(locator); }
    const Locator* locator = reinterpret_cast<const Locator*>(this);
  } parent;
  XMLFilter filter;
  filter.setParent(&parent);
  filter.setContentHandler(&filtered);
  std::istringstream stream;
  filter.parse(stream);
  EXPECT_EQ(parent.locator, filtered.received);
}

// --- Properties ---

const std::vector<std::string> kHandlerProperties = {
    properties::lexicalHandler, properties::declarationHandler,
    properties::primitiveTypeContentHandler, properties::encodingAlgorithmContentHandler};

TEST(XMLFilter, KeepsHandlersThatAreProperties) {
  for (const bool hasParent : {false, true}) {
    XMLReader_XML10 parent;
    XMLFilter filter;
    if (hasParent) filter.setParent(&parent);
    for (const std::string& property : kHandlerProperties) {
      EXPECT_EQ(nullptr, filter.getProperty(property));
      int handler = 0;
      filter.setProperty(property, &handler);
      EXPECT_EQ(&handler, filter.getProperty(property));
      filter.setProperty(property, nullptr);
      EXPECT_EQ(nullptr, filter.getProperty(property));
    }
    void* const lexical = parent.getProperty(properties::lexicalHandler);
    EXPECT_EQ(hasParent ? static_cast<LexicalHandler*>(&filter) : nullptr, lexical);
  }
}

TEST(XMLFilter, HasTheOtherPropertiesAndTheFeaturesOfTheParent) {
  XMLReader_XML10 parent;
  XMLFilter filter;
  filter.setParent(&parent);
  std::uint64_t depth = 7;
  filter.setProperty(properties::maximumDepth, &depth);
  EXPECT_EQ(7U, *static_cast<std::uint64_t*>(parent.getProperty(properties::maximumDepth)));
  EXPECT_EQ(parent.getProperty(properties::maximumDepth),
            filter.getProperty(properties::maximumDepth));
  filter.setFeature(features::namespaces, false);
  EXPECT_FALSE(parent.getFeature(features::namespaces));
  EXPECT_FALSE(filter.getFeature(features::namespaces));
}

TEST(XMLFilter, RefusesWhatTheParentDoesNotKnow) {
  XMLReader_XML10 parent;
  XMLFilter filter;
  for (const bool hasParent : {false, true}) {
    filter.setParent(hasParent ? &parent : nullptr);
    EXPECT_EQ("SAXNotRecognizedException: Property \"p\" not recognized",
              thrown([&] { filter.setProperty("p", nullptr); }));
    EXPECT_EQ("SAXNotRecognizedException: Property \"p\" not recognized",
              thrown([&] { filter.getProperty("p"); }));
    EXPECT_EQ("SAXNotRecognizedException: Feature \"f\" not recognized",
              thrown([&] { filter.setFeature("f", true); }));
    EXPECT_EQ("SAXNotRecognizedException: Feature \"f\" not recognized",
              thrown([&] { filter.getFeature("f"); }));
  }
}

// --- Typed content ---

/// An element with the short 5, twice.
const std::string kShorts("\xE0\0\0\1\0\x3C\0\x61\x8C\x09\0\5\x8C\x09\0\5\xFF", 17);

TEST(XMLFilter, LeavesTypedContentTextWhereNobodyReceivesIt) {
  XMLReader_X891 parent;
  XMLFilter filter;
  filter.setParent(&parent);
  EventLog log;
  filter.setContentHandler(&log);
  EXPECT_EQ(
      "setDocumentLocator()\nstartDocument()\nstartElement(, a, a, "
      "[])\ncharacters(55)\nendElement(, a, a)\n"
      "endDocument()\nnothing",
      told(filter, log, kShorts));
}

TEST(XMLFilter, LetsHandlersOfTypedContentChangeInADocument) {
  struct Switcher : EventLog {
    void shorts(const std::vector<short>& data) override {
      EventLog::shorts(data);
      filter.setProperty(properties::primitiveTypeContentHandler, nullptr);
    }
    XMLFilter filter;
  } log;
  XMLReader_X891 parent;
  log.filter.setParent(&parent);
  log.filter.setContentHandler(&log);
  log.attachPrimitiveTypesTo(log.filter);
  EXPECT_EQ(
      "setDocumentLocator()\nstartDocument()\nstartElement(, a, a, "
      "[])\nshorts(5)\ncharacters(5)\nendElement(, a, a)\n"
      "endDocument()\nnothing",
      told(log.filter, log, kShorts));
}

TEST(XMLFilter, ReceivesTypedContentOfAParentThatIsSetLater) {
  XMLReader_X891 parent;
  XMLFilter filter;
  EventLog log;
  filter.setContentHandler(&log);
  log.attachAlgorithmsTo(filter);
  filter.setParent(&parent);
  EXPECT_EQ(
      "setDocumentLocator()\nstartDocument()\nstartElement(, a, a, [])\nobject(, 2, ShortData{5})\n"
      "object(, 2, ShortData{5})\nendElement(, a, a)\nendDocument()\nnothing",
      told(filter, log, kShorts));
}

// --- The parent's handlers ---

TEST(XMLFilter, TakesTheParentBackFromOtherHandlers) {
  XMLReader_XML10 parent;
  XMLFilter filter;
  filter.setParent(&parent);
  EventLog other;
  connect(parent, other);
  EventLog log;
  filter.setContentHandler(&log);
  EXPECT_EQ(
      "setDocumentLocator()\nstartDocument()\nstartElement(, a, a, [])\nendElement(, a, a)\n"
      "endDocument()\nnothing",
      told(filter, log, "<a><!--c--></a>"));
  EXPECT_EQ("", other.text());
}

TEST(XMLFilter, LeavesAParentThatOthersUse) {
  XMLReader_X891 parent;
  XMLFilter filter;
  filter.setParent(&parent);
  EventLog other;
  connect(parent, other);
  filter.setProperty(properties::primitiveTypeContentHandler, nullptr);
  EXPECT_EQ(&other, parent.getPrimitiveTypeContentHandler());
}

}  // namespace
