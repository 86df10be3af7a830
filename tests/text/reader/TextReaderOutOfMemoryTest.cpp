#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

#include "TextReaderSupport.h"

// Stand in front of expat's own functions, so that a test can have them fail as they do when there
// is no memory left.

namespace {

/// Lets one call of a function fail.
class Trap {
 public:
  /// @param number of the call that fails, counted from 0
  void set(int number) {
    calls_ = 0;
    failing_ = number;
  }
  void reset() { failing_ = -1; }
  bool springs() { return calls_++ == failing_; }

 private:
  int calls_ = 0;
  int failing_ = -1;
};

/// expat's memory, in which one allocation fails.
Trap memoryTrap;
void* allocate(std::size_t size) { return memoryTrap.springs() ? nullptr : std::malloc(size); }
void* reallocate(void* block, std::size_t size) {
  return memoryTrap.springs() ? nullptr : std::realloc(block, size);
}
constexpr XML_Memory_Handling_Suite kMemory = {allocate, reallocate, std::free};

Trap createTrap;
Trap childTrap;
Trap bufferTrap;

template <typename Function>
Function* original(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

__attribute__((visibility("default"))) XML_Parser XML_ParserCreateNS(const XML_Char* encoding,
                                                                     XML_Char separator) {
  if (createTrap.springs()) return nullptr;
  const XML_Char separators[] = {separator, '\0'};
  return XML_ParserCreate_MM(encoding, &kMemory, separators);
}

__attribute__((visibility("default"))) XML_Parser XML_ExternalEntityParserCreate(
    XML_Parser parser, const XML_Char* context, const XML_Char* encoding) {
  if (childTrap.springs()) return nullptr;
  static const auto create =
      original<decltype(XML_ExternalEntityParserCreate)>("XML_ExternalEntityParserCreate");
  return create(parser, context, encoding);
}

__attribute__((visibility("default"))) void* XML_GetBuffer(XML_Parser parser, int size) {
  static const auto get = original<decltype(XML_GetBuffer)>("XML_GetBuffer");
  // A negative size is refused as one that is not to be had.
  return get(parser, bufferTrap.springs() ? -1 : size);
}

}  // extern "C"

namespace {

/// A reader, its log, and the traps, none of which is left behind.
class ExpatOutOfMemory : public testing::Test {
 protected:
  ExpatOutOfMemory() { log_.attachTo(reader_); }
  ~ExpatOutOfMemory() override {
    memoryTrap.reset();
    createTrap.reset();
    childTrap.reset();
    bufferTrap.reset();
  }

  void expectGoodDocument() { expectGoodDocumentFrom(reader_); }
  template <typename Reader>
  void expectGoodDocumentFrom(Reader& reader) {
    log_.clear();
    EXPECT_EQ("done", parseText(reader, "<good/>"));
    EXPECT_EQ(wholeLog({"startElement(, good, good, [])", "endElement(, good, good)"}),
              log_.text());
  }

  EventLog log_;
  Tavrin::XMLReader_Expat reader_;
};

/// The reader of the standards tells it from a fault of the document.
class XML10OutOfMemory : public ExpatOutOfMemory {
 protected:
  XML10OutOfMemory() { log_.attachTo(reader10_); }

  void expectGoodDocument() { expectGoodDocumentFrom(reader10_); }

  Tavrin::XMLReader_XML10 reader10_;
};

const std::string kNoMemory = "std::exception(std::bad_alloc)";

const std::string kNoParser = "SAXException(Cannot create expat xml parser)";

TEST_F(ExpatOutOfMemory, ForTheParserFailsBeforeAnyEvent) {
  createTrap.set(0);
  EXPECT_EQ(kNoParser, parseText(reader_, "<a/>"));
  EXPECT_EQ("", log_.text());
  expectGoodDocument();

  createTrap.set(0);
  log_.clear();
  EXPECT_EQ(kNoParser, parseBlocks(reader_, {"<a/>"}));
  EXPECT_EQ("", log_.text());
  expectGoodDocument();
}

TEST_F(ExpatOutOfMemory, ForTheParserEndsTheDocumentThatWasOpen) {
  reader_.parse("<a>", 3, false);
  log_.clear();
  createTrap.set(0);
  EXPECT_EQ(kNoParser, parseText(reader_, "<b/>"));
  EXPECT_EQ("", log_.text());
  // Nothing is left of a: this starts a document.
  EXPECT_EQ("done", parseBlocks(reader_, {"<c/>"}));
  EXPECT_EQ(wholeLog({"startElement(, c, c, [])", "endElement(, c, c)"}), log_.text());
}

TEST_F(ExpatOutOfMemory, AnywhereInExpatLeavesTheReaderIdle) {
  const std::string document = "<!DOCTYPE a [<!ENTITY e 'E'>]><a xmlns='u' b='&e;'>&e;</a>";
  bool blocks = false;
  do {
    int parsersRefused = 0;
    int number = 0;
    for (std::string outcome; outcome != "done"; ++number) {
      SCOPED_TRACE(number);
      ASSERT_GT(200, number);
      memoryTrap.set(number);
      outcome =
          blocks ? parseBlocks(reader_, cutEvenly(document, 30)) : parseText(reader_, document);
      memoryTrap.reset();
      if (outcome == kNoParser) {
        ++parsersRefused;
        EXPECT_EQ("", log_.text());
      } else if (outcome != "done") {
        EXPECT_EQ(0U, outcome.find("SAXParseException(" + messageOf(XML_ERROR_NO_MEMORY)))
            << outcome;
      }
      expectGoodDocument();
      log_.clear();
    }
    EXPECT_LT(1, parsersRefused);
    EXPECT_LT(parsersRefused + 5, number);
    blocks = !blocks;
  } while (blocks);
}

TEST_F(ExpatOutOfMemory, ForTheFirstBlockIsAFailureOfTheDocument) {
  const Failure failure{XML_ERROR_NO_MEMORY, 1, 1};
  bufferTrap.set(0);
  EXPECT_EQ(failure.thrown(), parseText(reader_, "<a/>"));
  EXPECT_EQ(join({"setDocumentLocator()", "startDocument()", failure.logged()}), log_.text());
  expectGoodDocument();
}

TEST_F(ExpatOutOfMemory, ForALaterBlockIsAFailureAtItsPlace) {
  const std::string text(1048576 - 4, 'x');
  const Failure failure{XML_ERROR_NO_MEMORY, 2, 1048573};
  bufferTrap.set(1);
  EXPECT_EQ(failure.thrown(), parseText(reader_, "<a>\n" + text + "</a>"));
  EXPECT_EQ(join({"setDocumentLocator()", "startDocument()", "startElement(, a, a, [])",
                  "characters(\\n" + text + ")", failure.logged()}),
            log_.text());
  expectGoodDocument();
}

TEST_F(ExpatOutOfMemory, ForAnExternalEntityFailsTheDocument) {
  const Failure failure{XML_ERROR_EXTERNAL_ENTITY_HANDLING, 2, 4};
  const std::string document = "<!DOCTYPE a [<!ENTITY e SYSTEM 'e'>]>\n<a>&e;</a>";
  const std::string expected =
      join({"setDocumentLocator()", "startDocument()", "startDTD(a, , )", "endDTD()",
            "startElement(, a, a, [])", "resolveEntity(, e)", failure.logged()});
  log_.entities["e"] = "text";

  childTrap.set(0);
  EXPECT_EQ(failure.thrown(), parseText(reader_, document));
  EXPECT_EQ(expected, log_.text());
  expectGoodDocument();

  // The document's own block is the first.
  bufferTrap.set(1);
  log_.clear();
  EXPECT_EQ(failure.thrown(), parseText(reader_, document));
  EXPECT_EQ(expected, log_.text());
  expectGoodDocument();
}

TEST_F(XML10OutOfMemory, AnywhereInExpatIsNoFaultOfTheDocument) {
  const std::string document =
      "<!DOCTYPE a [<!ENTITY e 'E'><!ENTITY x SYSTEM 'x'>]><a xmlns='u' b='&e;'>&e;&x;</a>";
  log_.entities["x"] = "text";
  for (const bool blocks : {false, true}) {
    int number = 0;
    for (std::string outcome; outcome != "done"; ++number) {
      SCOPED_TRACE(number);
      ASSERT_GT(400, number);
      log_.clear();
      memoryTrap.set(number);
      outcome =
          blocks ? parseBlocks(reader10_, cutEvenly(document, 30)) : parseText(reader10_, document);
      memoryTrap.reset();
      if (outcome != "done") {
        EXPECT_EQ(kNoMemory, outcome);
        EXPECT_EQ(std::string::npos, log_.text().find("rror(")) << log_.text();
      }
      expectGoodDocument();
    }
    EXPECT_LT(20, number);
  }
}

TEST_F(XML10OutOfMemory, ForAParserABlockOrAnEntityIsNoFaultOfTheDocument) {
  log_.entities["e"] = "text";
  for (Trap* trap : {&createTrap, &childTrap, &bufferTrap}) {
    trap->set(0);
    EXPECT_EQ(kNoMemory, parseText(reader10_, "<!DOCTYPE a [<!ENTITY e SYSTEM 'e'>]>\n<a>&e;</a>"));
    expectGoodDocument();
  }
}

}  // namespace
