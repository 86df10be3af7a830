#include <gtest/gtest.h>

#include <sstream>

#include "TextReaderSupport.h"

// A parse within a parse of the same reader would free the parser beneath its own callback.

namespace {

const std::string kRefused = "SAXException(parse called from a handler of the same reader)";

constexpr char kDocument[] = "<!DOCTYPE a SYSTEM 'x'><a>t</a>";

const EventLog::Lines kLines = {
    "setDocumentLocator()", "startDocument()",    "startDTD(a, , x)",
    "resolveEntity(, x)",   "endDTD()",           "startElement(, a, a, [])",
    "characters(t)",        "endElement(, a, a)", "endDocument()"};

using Nested = void (*)(Tavrin::XMLReader&);

const Nested kNested[] = {
    [](Tavrin::XMLReader& reader) {
      std::istringstream stream("<b/>");
      reader.parse(stream);
    },
    [](Tavrin::XMLReader& reader) { reader.parse("<b/>", 4, true); },
    [](Tavrin::XMLReader& reader) { reader.parse("<b/>", 4, false); },
    [](Tavrin::XMLReader& reader) { reader.parse(nullptr, 0, true); },
    [](Tavrin::XMLReader& reader) { reader.parse(nullptr, 0, false); },
};

using Parse = std::string (*)(Tavrin::XMLReader&, const std::string&);

std::string parseOctets(Tavrin::XMLReader& reader, const std::string& text) {
  return parseBlocks(reader, cutEvenly(text, 1));
}

TEST(ExpatNestedParse, IsRefusedAtEveryEventAndTheOuterParseGoesOn) {
  for (const Parse parse : {Parse{parseText}, Parse{parseOctets}}) {
    for (const Nested nested : kNested) {
      EventLog log;
      Tavrin::XMLReader_Expat reader;
      log.attachTo(reader);
      std::size_t refused = 0;
      log.beforeEvent = [&](std::size_t) {
        EXPECT_EQ(kRefused, outcomeOf([&] { nested(reader); }));
        ++refused;
      };
      EXPECT_EQ("done", parse(reader, kDocument));
      EXPECT_EQ(join(kLines), log.text());
      EXPECT_EQ(kLines.size(), refused);
    }
  }
}

TEST(ExpatNestedParse, LeavesTheOuterParseAsItsHandlersExceptionWould) {
  for (const Nested nested : kNested) {
    for (std::size_t event = 0; event < kLines.size(); ++event) {
      SCOPED_TRACE(kLines[event]);
      EventLog log;
      EventLog failures;
      Tavrin::XMLReader_Expat reader;
      log.attachTo(reader);
      reader.setErrorHandler(&failures);
      log.beforeEvent = [&](std::size_t number) {
        if (number >= event) nested(reader);
      };
      const bool isOuter = event < 2 || event + 1 == kLines.size();
      const std::string outcome = parseText(reader, kDocument);
      EXPECT_EQ(join({kLines.begin(), kLines.begin() + static_cast<std::ptrdiff_t>(event)}),
                log.text());
      if (isOuter) {
        EXPECT_EQ(kRefused, outcome);
        EXPECT_EQ("", failures.text());
      } else {
        EXPECT_EQ(join({"fatalError" + outcome.substr(17)}), failures.text());
      }
      log.beforeEvent = nullptr;
      log.clear();
      EXPECT_EQ("done", parseText(reader, kDocument));
      EXPECT_EQ(join(kLines), log.text());
    }
  }
}

TEST(ExpatNestedParse, FromFatalErrorIsRefusedToo) {
  for (const Nested nested : kNested) {
    EventLog log;
    Tavrin::XMLReader_Expat reader;
    log.attachTo(reader);
    log.beforeEvent = [&](std::size_t number) {
      if (number == 3) nested(reader);
    };
    // What fatalError throws takes the place of the reader's own.
    EXPECT_EQ(kRefused, parseText(reader, "<a>"));
    log.beforeEvent = nullptr;
    log.clear();
    EXPECT_EQ("done", parseBlocks(reader, {kDocument}));
    EXPECT_EQ(join(kLines), log.text());
  }
}

TEST(ExpatNestedParse, FromAStreamIsRefusedToo) {
  struct Buffer : std::streambuf {
    explicit Buffer(Tavrin::XMLReader& reader) : reader_(reader) {}
    std::streamsize xsgetn(char*, std::streamsize) override {
      reader_.parse("<b/>", 4, true);
      return 0;
    }
    Tavrin::XMLReader& reader_;
  };
  EventLog log;
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  Buffer buffer(reader);
  std::istream stream(&buffer);
  EXPECT_EQ(kRefused, outcomeOf([&] { reader.parse(stream); }));
  EXPECT_EQ(join({"setDocumentLocator()", "startDocument()"}), log.text());
  log.clear();
  EXPECT_EQ("done", parseBlocks(reader, {kDocument}));
  EXPECT_EQ(join(kLines), log.text());
}

TEST(ExpatNestedParse, WithAnotherReaderIsFine) {
  EventLog log;
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  std::string inner;
  log.beforeEvent = [&](std::size_t) {
    EventLog innerLog;
    Tavrin::XMLReader_Expat innerReader;
    innerLog.attachTo(innerReader);
    EXPECT_EQ("done", parseText(innerReader, kDocument));
    EXPECT_EQ(join(kLines), innerLog.text());
    inner += innerLog.lines().back();
  };
  EXPECT_EQ("done", parseText(reader, kDocument));
  EXPECT_EQ(join(kLines), log.text());
  std::string expected;
  for (std::size_t i = 0; i < kLines.size(); ++i) expected += "endDocument()";
  EXPECT_EQ(expected, inner);
}

}  // namespace
