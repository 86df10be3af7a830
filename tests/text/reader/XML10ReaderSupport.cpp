#include "XML10ReaderSupport.h"

#include <gtest/gtest.h>

namespace {

void check(const XML10Document& document,
           const std::function<std::string(Tavrin::XMLReader&, const std::string&)>& parse) {
  SCOPED_TRACE(document.name);
  EventLog log;
  log.entities = document.entities;
  Tavrin::XMLReader_XML10 reader;
  log.attachTo(reader);
  log.attachDeclarationsTo(reader);
  if (!document.resolves) reader.setEntityResolver(nullptr);
  for (const auto& [feature, value] : document.features) reader.setFeature(feature, value);
  std::string base = document.baseURI;
  if (!base.empty()) reader.setProperty(Tavrin::properties::baseURI, &base);

  std::string expected = "setDocumentLocator()\nstartDocument()\n" + join(document.events);
  expected +=
      document.failure.empty() ? "endDocument()\n" : "fatalError(" + document.failure + ")\n";
  // A reader is as good as new after a document, whether that was read or failed.
  for (int round = 0; round < 2; ++round) {
    log.clear();
    EXPECT_EQ(document.failure.empty() ? "done" : "SAXParseException(" + document.failure + ")",
              parse(reader, document.text));
    EXPECT_EQ(expected, log.text());
  }
}

}  // namespace

void checkXML10(const std::vector<XML10Document>& documents) {
  for (const XML10Document& document : documents) {
    {
      SCOPED_TRACE("as a stream");
      check(document, parseText);
    }
    {
      SCOPED_TRACE("as one block");
      check(document, [](Tavrin::XMLReader& reader, const std::string& text) {
        return parseBlocks(reader, {text});
      });
    }
    {
      SCOPED_TRACE("octet by octet");
      check(document, [](Tavrin::XMLReader& reader, const std::string& text) {
        std::vector<std::string> blocks = cutEvenly(text, 1);
        blocks.emplace_back();
        return parseBlocks(reader, blocks);
      });
    }
    for (unsigned seed = 1; seed <= 5; ++seed) {
      SCOPED_TRACE("in random blocks, seed " + std::to_string(seed));
      check(document, [seed](Tavrin::XMLReader& reader, const std::string& text) {
        std::vector<std::string> blocks = cutRandomly(text, seed, 1 + seed);
        blocks.emplace_back();
        return parseBlocks(reader, blocks);
      });
    }
  }
}
