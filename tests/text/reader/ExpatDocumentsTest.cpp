#include "ReaderDocuments.h"

#include <gtest/gtest.h>

namespace {

/// Checks every document that a way of parsing is given.
/// @param parse takes a reader and the text, tells the outcome
template <typename Parse>
void check(const std::vector<Document>& documents, Parse parse) {
  for (const Document& document : documents) {
    SCOPED_TRACE(document.name);
    EventLog log;
    log.entities = document.entities;
    Tavrin::XMLReader_Expat reader;
    log.attachTo(reader);
    if (document.declarations) log.attachDeclarationsTo(reader);

    std::string expected = "setDocumentLocator()\nstartDocument()\n" + join(document.events);
    expected += document.failure ? document.failure->logged() : "endDocument()";
    expected += "\n";
    // A reader is as good as new after a document, whether that was read or failed.
    for (int round = 0; round < 2; ++round) {
      log.clear();
      EXPECT_EQ(document.failure ? document.failure->thrown() : "done",
                parse(reader, document.text));
      EXPECT_EQ(expected, log.text());
    }
  }
}

std::string parseByOctets(Tavrin::XMLReader& reader, const std::string& text) {
  std::vector<std::string> blocks = cutEvenly(text, 1);
  blocks.emplace_back();
  return parseBlocks(reader, blocks);
}

void checkEveryWay(const std::vector<Document>& documents) {
  {
    SCOPED_TRACE("as a stream");
    check(documents, parseText);
  }
  {
    SCOPED_TRACE("as one block");
    check(documents, [](Tavrin::XMLReader& reader, const std::string& text) {
      return parseBlocks(reader, {text});
    });
  }
  {
    SCOPED_TRACE("octet by octet");
    check(documents, parseByOctets);
  }
  for (unsigned seed = 1; seed <= 10; ++seed) {
    SCOPED_TRACE("in random blocks, seed " + std::to_string(seed));
    check(documents, [seed](Tavrin::XMLReader& reader, const std::string& text) {
      std::vector<std::string> blocks = cutRandomly(text, seed, 1 + seed);
      blocks.emplace_back();
      return parseBlocks(reader, blocks);
    });
  }
}

TEST(ExpatDocuments, ReportNamespaces) { checkEveryWay(namespaceDocuments()); }

TEST(ExpatDocuments, ReportContent) { checkEveryWay(contentDocuments()); }

TEST(ExpatDocuments, AreReadInEveryEncodingOfExpat) { checkEveryWay(encodingDocuments()); }

TEST(ExpatDocuments, ReportDeclarations) { checkEveryWay(declarationDocuments()); }

TEST(ExpatDocuments, ReportEntitiesThroughTheResolver) { checkEveryWay(entityDocuments()); }

TEST(ExpatDocuments, ReportSkippedEntities) { checkEveryWay(skippedEntityDocuments()); }

TEST(ExpatDocuments, ThatAreMalformedFailAtTheirPlace) { checkEveryWay(malformedDocuments()); }

TEST(ExpatDocuments, WithMalformedNamespacesFailAtTheirPlace) {
  checkEveryWay(malformedNamespaceDocuments());
}

TEST(ExpatDocuments, WithMalformedEntitiesFailAtTheirPlace) {
  checkEveryWay(malformedEntityDocuments());
}

}  // namespace
