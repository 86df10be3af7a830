#include <Allocations.h>
#include <gtest/gtest.h>

#include <sstream>

#include "Streams.h"
#include "TextReaderSupport.h"
#include "ThrownKinds.h"

namespace {

/// Expects that whatever a piece of work allocates is freed when it is over. valgrind, with which
/// nothing is counted, tells of leaks itself.
void expectNoLeak(const std::function<void()>& work) {
  work();  // What is allocated once, for good, is now.
  const std::size_t before = allocations::live();
  work();
  EXPECT_EQ(before, allocations::live());
}

TEST(ExpatLifetime, OfAReaderThatDidNothingLeavesNothing) {
  expectNoLeak([] { Tavrin::XMLReader_Expat reader; });
}

TEST(ExpatLifetime, MayEndInTheMiddleOfADocumentOfBlocks) {
  expectNoLeak([] {
    for (const char* block : {"", "<a", "<a><b>", "<!DOCTYPE a [<!ENTITY e 'E'>",
                              "<!DOCTYPE a [<!ELEMENT a (b", "<a>&amp;", "<a xmlns:p='u'><p:b>"}) {
      EventLog log;
      Tavrin::XMLReader_Expat reader;
      log.attachTo(reader);
      reader.parse(block, std::string(block).size(), false);
    }
  });
}

TEST(ExpatLifetime, MayEndAfterAStreamThrewInTheMiddleOfADocument) {
  expectNoLeak([] {
    for (const Thrown& thrown : thrownKinds()) {
      Tavrin::XMLReader_Expat reader;
      NotingBuffer buffer("<a>" + std::string(kBlock - 3, 'x'));
      buffer.beforeRead = [&](std::size_t number) {
        if (number == 1) thrown.raise();
      };
      std::istream stream(&buffer);
      EXPECT_EQ(thrown.leavesAs, outcomeOf([&] { reader.parse(stream); }));
    }
  });
}

TEST(ExpatLifetime, MayEndAfterAHandlerThrewOutsideOfExpat) {
  expectNoLeak([] {
    for (const Thrown& thrown : thrownKinds()) {
      // setDocumentLocator, startDocument and endDocument.
      for (const std::size_t event : {0U, 1U, 4U}) {
        EventLog log;
        Tavrin::XMLReader_Expat reader;
        log.attachTo(reader);
        log.beforeEvent = [&](std::size_t number) {
          if (number == event) thrown.raise();
        };
        EXPECT_EQ(thrown.leavesAs, parseText(reader, "<a/>"));
      }
    }
  });
}

TEST(ExpatLifetime, OfADocumentThatWasLeftOpenEndsWithTheNext) {
  expectNoLeak([] {
    struct Thrower : Tavrin::ContentHandler {
      void startDocument() override { throw 42; }
    };
    Thrower handler;
    Tavrin::XMLReader_Expat reader;
    reader.setContentHandler(&handler);
    // Each stream finds the document of the one before still open.
    for (int i = 0; i < 3; ++i) {
      EXPECT_EQ("int(42)", parseText(reader, "<a/>"));
    }
    reader.setContentHandler(nullptr);
    reader.parse("<a>", 3, false);
    EXPECT_EQ("done", parseText(reader, "<a/>"));
    reader.parse("<a>", 3, false);
    reader.parse(nullptr, 0, true);
  });
}

TEST(ExpatLifetime, OfContentModelsEndsWithTheirDeclaration) {
  struct Models : Tavrin::DeclHandler {
    void elementDecl(const std::string&, const std::string&) override {
      if (throws) throw 42;
    }
    bool throws = false;
  };
  const std::string document =
      "<!DOCTYPE a [<!ELEMENT a (b,(c|d)*)><!ELEMENT b EMPTY><!ELEMENT c ANY>"
      "<!ELEMENT d (#PCDATA|a)*>]><a/>";
  const Failure aborted{XML_ERROR_ABORTED, 1, 35};
  expectNoLeak([&] {
    Tavrin::XMLReader_Expat reader;
    EXPECT_EQ("done", parseText(reader, document));
    Models models;
    reader.setProperty(Tavrin::properties::declarationHandler, &models);
    EXPECT_EQ("done", parseText(reader, document));
    models.throws = true;
    EXPECT_EQ(aborted.thrown(), parseText(reader, document));
  });
}

TEST(ExpatLifetime, OfEntitiesEndsWithTheDocumentHoweverThatEnds) {
  struct Resolver : Tavrin::EntityResolver {
    std::unique_ptr<std::istream> resolveEntity(const std::string&,
                                                const std::string& systemId) override {
      if (systemId == "throw") throw 42;
      if (systemId == "none") return nullptr;
      return std::make_unique<std::istringstream>(systemId);
    }
  };
  const Failure failure{XML_ERROR_EXTERNAL_ENTITY_HANDLING, 2, 4};
  // The entity is its own system identifier.
  const std::map<const char*, std::string> outcomes = {
      {"none", "done"},
      {"text", "done"},
      {"", "done"},
      {"<b/>", "done"},
      {"throw", failure.thrown()},
      {"<b>", failure.thrown()},
      {"&e;", failure.thrown()},
      {"&undefined;", failure.thrown()},
      {"<", failure.thrown()},
  };
  expectNoLeak([&] {
    for (const auto& [entity, outcome] : outcomes) {
      Resolver resolver;
      Tavrin::XMLReader_Expat reader;
      reader.setEntityResolver(&resolver);
      EXPECT_EQ(outcome, parseText(reader, "<!DOCTYPE a [<!ENTITY e SYSTEM \"" +
                                               std::string(entity) + "\">]>\n<a>&e;</a>"));
    }
  });
}

}  // namespace
