#include <gtest/gtest.h>

#include "FIReaderValues.h"

// To whom typed content goes: every kind of value, with every choice of handlers.

namespace reader_test {
namespace {

/// How a value is told.
enum Way { kNot, kPrimitive, kObject, kText, kSection };

/// Which handlers there are: C content, L lexical, P primitive types, A encoding algorithms.
struct Row {
  const char* handlers;
  Way cdata;
  Way builtIn;
  Way application;
};

const Row kRows[] = {
    {"", kNot, kNot, kNot},
    {"L", kNot, kNot, kNot},
    {"P", kPrimitive, kPrimitive, kNot},
    {"A", kObject, kObject, kObject},
    {"C", kText, kText, kText},
    {"LP", kPrimitive, kPrimitive, kNot},
    {"LA", kObject, kObject, kObject},
    {"LC", kSection, kText, kText},
    {"PA", kPrimitive, kPrimitive, kObject},
    {"PC", kText, kPrimitive, kText},
    {"AC", kText, kObject, kObject},
    {"LPA", kPrimitive, kPrimitive, kObject},
    {"LPC", kSection, kPrimitive, kText},
    {"LAC", kSection, kObject, kObject},
    {"PAC", kText, kPrimitive, kObject},
    {"LPAC", kSection, kPrimitive, kObject},
};

EventLog::Lines linesOf(const TypedValue& value, Way way) {
  const std::string text = std::string("characters(") + value.text + ")";
  switch (way) {
    case kNot:
      return {};
    case kPrimitive:
      return {value.primitive};
    case kObject:
      return {std::string("object(") + (value.field == 32 ? "urn:reversed" : "") + ", " +
              std::to_string(value.field) + ", " + value.shown + ")"};
    case kText:
      return {text};
    default:
      return {"startCDATA()", text, "endCDATA()"};
  }
}

TEST(FIReaderDelivery, GoesToTheFirstHandlerThatTakesTheValue) {
  for (const Row& row : kRows) {
    for (const TypedValue& value : typedValues()) {
      const std::string handlers = row.handlers;
      SCOPED_TRACE(handlers + ": " + value.name);
      const auto has = [&](char handler) { return handlers.find(handler) != std::string::npos; };
      TypedReader reader;
      if (!has('C')) reader.reader.setContentHandler(nullptr);
      if (!has('L')) reader.reader.setProperty(Tavrin::properties::lexicalHandler, nullptr);
      if (has('P')) reader.log.attachPrimitiveTypesTo(reader.reader);
      if (has('A')) reader.log.attachAlgorithmsTo(reader.reader);

      const EventLog::Lines lines = linesOf(value, value.field == 9    ? row.cdata
                                                   : value.field == 32 ? row.application
                                                                       : row.builtIn);
      EXPECT_EQ(has('C') ? wholeContent(lines) : join(lines),
                reader.read(withAlgorithmURI("3C 00 'a' " + std::string(value.chunk) + " FF")));
    }
  }
}

TEST(FIReaderDelivery, OfAnUnknownAlgorithmIsOctetsOrNothing) {
  for (const Row& row : kRows) {
    const std::string handlers = row.handlers;
    SCOPED_TRACE(handlers);
    const auto has = [&](char handler) { return handlers.find(handler) != std::string::npos; };
    LoggedReader reader;
    if (!has('C')) reader.reader.setContentHandler(nullptr);
    if (!has('L')) reader.reader.setProperty(Tavrin::properties::lexicalHandler, nullptr);
    if (has('P')) reader.log.attachPrimitiveTypesTo(reader.reader);
    if (has('A')) reader.log.attachAlgorithmsTo(reader.reader);
    EventLog::Lines lines;
    if (has('A')) lines = {"octets(urn:reversed, 32, 61 62 63)", "octets(, 8, 00 FF)"};
    EXPECT_EQ(has('C') ? wholeContent(lines) : join(lines),
              reader.read(withAlgorithmURI("3C 00 'a' 8C 82 00 'abc' 8C 21 00 FF FF")));
  }
}

TEST(FIReaderDelivery, LeavesTheTextAroundAlone) {
  TypedReader reader;
  reader.log.attachPrimitiveTypesTo(reader.reader);
  EXPECT_EQ(wholeContent({"characters(x)", "ints(1)", "ints(2)", "characters(y)", "startCDATA()",
                          "characters(z)", "endCDATA()", "characters(x)"}),
            reader.read(documentOfContent("90 'x' 8C 0E 01 00 00 00 01 8C 0E 01 00 00 00 02 "
                                          "80 'y' 8C 24 'z' A0")));
}

TEST(FIReaderDelivery, AddsNoValueToTheChunks) {
  for (const TypedValue& value : typedValues()) {
    SCOPED_TRACE(value.name);
    TypedReader reader;
    // With the bit that adds, which says nothing here.
    std::string chunk = value.chunk;
    chunk.replace(0, 2, "9C");
    const EventLog::Lines lines = linesOf(value, value.field == 9 ? kSection : kText);
    EventLog::Lines events = {"startElement(, a, a, [])"};
    events.insert(events.end(), lines.begin(), lines.end());
    EXPECT_EQ(failed(events, "Error when decoding character chunk - invalid index"),
              reader.read(withAlgorithmURI("3C 00 'a' " + chunk + " A0 FF")));
  }
}

TEST(FIReaderDelivery, OfEmptyTextIsACallWithEmptyText) {
  // No boolean at all: four unused bits in four.
  EXPECT_EQ(wholeContent({"characters()"}), readNew(documentOfContent("8C 14 40")));
  TypedReader reader;
  reader.log.attachPrimitiveTypesTo(reader.reader);
  EXPECT_EQ(wholeContent({"booleans()"}), reader.read(documentOfContent("8C 14 40")));
}

TEST(FIReaderDelivery, PassesTheAlgorithmsOwnHolder) {
  // Valid during the call only: the next value takes its place.
  struct Keeper : Tavrin::EncodingAlgorithmContentHandler {
    std::vector<const Tavrin::EncodedData*> values;
    std::string texts;
    void object(const std::string&, int, const Tavrin::EncodedData& data) override {
      values.push_back(&data);
      texts += data.toString() + ";";
    }
  } keeper;
  TypedReader reader;
  reader.reader.setProperty(Tavrin::properties::encodingAlgorithmContentHandler,
                            static_cast<Tavrin::EncodingAlgorithmContentHandler*>(&keeper));
  EXPECT_EQ(wholeContent({}),
            reader.read(documentOfContent("8C 0E 01 00 00 00 01 8C 0E 01 00 00 00 02 "
                                          "8C 09 00 03")));
  EXPECT_EQ("1;2;3;", keeper.texts);
  ASSERT_EQ(3U, keeper.values.size());
  EXPECT_EQ(keeper.values[0], keeper.values[1]);
  EXPECT_NE(keeper.values[0], keeper.values[2]);
}

TEST(FIReaderDelivery, OfAttributesIsInTheirListAlone) {
  TypedReader reader;
  reader.log.attachPrimitiveTypesTo(reader.reader);
  reader.log.attachAlgorithmsTo(reader.reader);
  for (const TypedValue& value : typedValues()) {
    EXPECT_EQ(whole({"startElement(, a, a, [{, b, b, CDATA, " + std::string(value.text) + ", " +
                         (value.field == 32 ? "urn:reversed" : "") + ", " +
                         std::to_string(value.field) + ", " + value.shown + "}])",
                     "endElement(, a, a)"}),
              reader.read(withAlgorithmURI("7C 00 'a' 78 00 'b' " +
                                           std::string(value.attributeValue) + " FF F0")))
        << value.name;
  }
}

}  // namespace
}  // namespace reader_test
