#include <gtest/gtest.h>

#include <stdexcept>

#include <locale>

#include "X891ReaderValues.h"

// Typed content and attributes (X.891, clause 10): who is told, and in which form.

namespace x891_test {
namespace {

const EventLog::Lines kStarted = {"startDocument()", "startElement(, a, a, [])"};

std::string content(const TypedValue& value) {
  return withAlgorithmURI("3C 00 'a' " + std::string(value.chunk) + " FF");
}

std::string attribute(const TypedValue& value) {
  return withAlgorithmURI("7C 00 'a' 78 00 'b' " + std::string(value.attributeValue) + " FF F0");
}

TEST(X891ReaderTyped, ContentIsText) {
  for (const TypedValue& value : kTypedValues) {
    TypedReader reader;
    EXPECT_EQ(wholeContent({"characters(" + std::string(value.text) + ")"}),
              reader.read(content(value)))
        << value.name;
  }
}

TEST(X891ReaderTyped, ContentGoesToTheHandlerOfAlgorithms) {
  for (const TypedValue& value : kTypedValues) {
    TypedReader reader;
    reader.log.attachAlgorithmsTo(reader.reader);
    EXPECT_EQ(wholeContent({"object(" + uriOf(value) + ", " + std::to_string(value.field) + ", " +
                            value.shown + ")"}),
              reader.read(content(value)))
        << value.name;
  }
}

TEST(X891ReaderTyped, ContentGoesToTheHandlerOfPrimitiveTypesFirst) {
  for (const TypedValue& value : kTypedValues) {
    TypedReader reader;
    reader.log.attachPrimitiveTypesTo(reader.reader);
    // It takes neither UUIDs nor values of an application.
    const std::string primitive = value.primitive;
    EXPECT_EQ(wholeContent(
                  {primitive.empty() ? "characters(" + std::string(value.text) + ")" : primitive}),
              reader.read(content(value)))
        << value.name;
    reader.log.attachAlgorithmsTo(reader.reader);
    EXPECT_EQ(
        wholeContent({primitive.empty() ? "object(" + uriOf(value) + ", " +
                                              std::to_string(value.field) + ", " + value.shown + ")"
                                        : primitive}),
        reader.read(content(value)))
        << value.name;
  }
}

TEST(X891ReaderTyped, AttributesAreTextAndValue) {
  for (const TypedValue& value : kTypedValues) {
    TypedReader reader;
    EXPECT_EQ(
        whole({"startElement(, a, a, [{, b, b, CDATA, " + std::string(value.text) + ", " +
                   uriOf(value) + ", " + std::to_string(value.field) + ", " + value.shown + "}])",
               "endElement(, a, a)"}),
        reader.read(attribute(value)))
        << value.name;
    reader.log.showAlgorithms = false;
    EXPECT_EQ(whole({"startElement(, a, a, [{, b, b, CDATA, " + std::string(value.text) + "}])",
                     "endElement(, a, a)"}),
              reader.read(attribute(value)))
        << value.name;
  }
}

TEST(X891ReaderTyped, AttributesKeepTheirOwnValues) {
  // Two of each algorithm: the second does not change the first.
  for (const TypedValue& value : kTypedValues) {
    const std::string typed = value.attributeValue;
    TypedReader reader;
    reader.log.showAlgorithms = false;
    const std::string text = value.text;
    EXPECT_EQ(whole({"startElement(, a, a, [{, b, b, CDATA, " + text + "}, {, c, c, CDATA, " +
                         text + "}])",
                     "characters(" + text + ")", "endElement(, a, a)"}),
              reader.read(withAlgorithmURI("7C 00 'a' 78 00 'b' " + typed + " 78 00 'c' " + typed +
                                           " F0 " + value.chunk + " FF")))
        << value.name;
  }
}

TEST(X891ReaderTyped, EnterTheTablesAsText) {
  for (const TypedValue& value : kTypedValues) {
    TypedReader reader;
    reader.log.showAlgorithms = false;
    const std::string text = value.text;
    std::string chunk = octets(value.chunk);
    chunk[0] = static_cast<char>(chunk[0] | 0x10);
    EXPECT_EQ(wholeContent({"characters(" + text + ")", "characters(" + text + ")"}),
              reader.read(withAlgorithmURI("3C 00 'a'") + chunk + octets("A0 FF")))
        << value.name;
    std::string typed = octets(value.attributeValue);
    typed[0] = static_cast<char>(typed[0] | 0x40);
    EXPECT_EQ(
        whole(
            {"startElement(, a, a, [{, b, b, CDATA, " + text + "}, {, c, c, CDATA, " + text + "}])",
             "endElement(, a, a)"}),
        reader.read(withAlgorithmURI("7C 00 'a' 78 00 'b'") + typed + octets("78 00 'c' 80 FF F0")))
        << value.name;
    // Comments and instructions have text alone.
    EXPECT_EQ(
        wholeContent(
            {"processingInstruction(p, " + text + ")", "processingInstruction(q, " + text + ")"}),
        reader.read(withAlgorithmURI("3C 00 'a' E1 00 'p'") + typed + octets("E1 00 'q' 80 FF")))
        << value.name;
    // What is an index is text to all handlers.
    reader.log.attachPrimitiveTypesTo(reader.reader);
    reader.log.attachAlgorithmsTo(reader.reader);
    const std::string primitive = value.primitive;
    EXPECT_EQ(
        wholeContent({primitive.empty() ? "object(" + uriOf(value) + ", " +
                                              std::to_string(value.field) + ", " + value.shown + ")"
                                        : primitive,
                      "characters(" + text + ")"}),
        reader.read(withAlgorithmURI("3C 00 'a'") + chunk + octets("A0 FF")))
        << value.name;
  }
}

TEST(X891ReaderTyped, NeedNoContentHandler) {
  for (const TypedValue& value : kTypedValues) {
    TypedReader reader;
    reader.reader.setContentHandler(nullptr);
    EXPECT_EQ("", reader.read(content(value))) << value.name;
    EXPECT_EQ("", reader.read(attribute(value))) << value.name;
    reader.log.attachAlgorithmsTo(reader.reader);
    EXPECT_EQ(
        "object(" + uriOf(value) + ", " + std::to_string(value.field) + ", " + value.shown + ")\n",
        reader.read(content(value)))
        << value.name;
  }
}

TEST(X891ReaderTyped, LengthsThatAreNone) {
  const struct {
    const char* chunk;
    const char* attribute;
    const char* kind;
  } cases[] = {
      {"8C 08 00", "30 20 00", "short"},
      {"8C 0A 00 00 00 00", "30 22 00 00 00", "short"},
      {"8C 0C 00", "30 30 00", "int"},
      {"8C 0E 00 00 00 00", "30 32 00 00 00", "int"},
      {"8C 0E 02 00 00 00 00 00", "30 34 00 00 00 00 00", "int"},
      {"8C 12 01 00 00 00 00", "30 43 00 00 00 00", "long"},
      {"8C 1A 02 00 00 00 00 00", "30 64 00 00 00 00 00", "float"},
      {"8C 1E 04 00 00 00 00 00 00 00", "30 76 00 00 00 00 00 00 00", "double"},
      {"8C 20 00", "30 80 00", "uuid"},
      {"8C 22 0C 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00",
       "30 88 06 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00", "uuid"},
  };
  for (const auto& each : cases) {
    const std::string message = "Invalid length for encoded " + std::string(each.kind) + " data";
    expectContentRefused(each.chunk, "FF", message);
    expectPrologRefused("7C 00 'a' 78 00 'b' " + std::string(each.attribute), "FF F0", message);
    expectContentRefused("E2 " + std::string(each.attribute), "FF", message);
  }
}

TEST(X891ReaderTyped, DataThatDoesNotCome) {
  expectContentRefused("8C", "", "Unexpected end of document");
  expectContentRefused("8C 0E", "", "Unexpected end of document");
  expectContentRefused("8C 0E 05 00 00 00 01 FF FF FF", "", "Unexpected end of document");
  expectPrologRefused("7C 00 'a' 78 00 'b' 30 37 00 00 00 01", "", "Unexpected end of document");
}

// --- Booleans ---

TEST(X891ReaderTyped, BooleansWithEachNumberOfUnusedBits) {
  const struct {
    const char* chunk;
    const char* text;
  } cases[] = {
      {"8C 14 0A", "true false true false"},
      {"8C 14 1A", "true false true"},
      {"8C 14 28", "true false"},
      {"8C 14 38", "true"},
      {"8C 15 0F F0", "true true true true true true true true false false false false"},
      {"8C 15 40 00", "false false false false false false false false"},
      {"8C 15 50 80", "false false false false true false false"},
      {"8C 15 60 40", "false false false false false true"},
      {"8C 15 7F 80", "true true true true true"},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(wholeContent({"characters(" + std::string(each.text) + ")"}),
              readNew(documentOfContent(each.chunk)))
        << each.chunk;
  }
}

TEST(X891ReaderTyped, BooleansMayBeNone) {
  // All bits are unused: the value is empty, and so is its text.
  EXPECT_EQ(wholeContent({}), readNew(documentOfContent("8C 14 40")));
  X891Reader reader;
  reader.log.attachPrimitiveTypesTo(reader.reader);
  EXPECT_EQ(wholeContent({"booleans()"}), reader.read(documentOfContent("8C 14 40")));
}

TEST(X891ReaderTyped, BooleansWithMoreUnusedBitsThanAnOctetHas) {
  for (const char* chunk : {"8C 14 50", "8C 14 80", "8C 14 F0", "8C 15 D0 00", "8C 15 F0 00"}) {
    expectContentRefused(chunk, "FF", "Invalid length for encoded boolean data");
  }
  for (const char* chunk : {"8C 15 80 00", "8C 15 90 00", "8C 15 C0 00", "8C 16 00 F0 00 00"}) {
    expectContentRefused(chunk, "FF", "Encoded data of another length than its value");
  }
}

TEST(X891ReaderTyped, BooleansThatAreMoreThanAreCounted) {
  // 536870913 octets are stated, and one more than are taken.
  expectContentRefused("8C 17 1F FF FE FE", "0A FF", "Booleans longer than 536870912 octets");
}

// --- Floating-point numbers ---

TEST(X891ReaderTyped, FloatsReadBackAsTheSameNumbers) {
  const struct {
    const char* octets;
    const char* text;
  } cases[] = {
      {"00 00 00 00", "0"},
      {"80 00 00 00", "-0"},
      {"3F 80 00 00", "1"},
      {"3D CC CC CD", "0.1"},
      {"7F 80 00 00", "INF"},
      {"FF 80 00 00", "-INF"},
      {"7F C0 00 00", "NaN"},
      {"FF C0 00 01", "NaN"},
      {"7F 7F FF FF", "3.4028235e+38"},
      {"00 80 00 00", "1.1754944e-38"},
      {"00 00 00 01", "1e-45"},
      {"71 49 F2 CA", "1e+30"},
      {"4B 80 00 00", "16777216"},
      {"BF C0 00 00", "-1.5"},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(wholeContent({"characters(" + std::string(each.text) + ")"}),
              readNew(documentOfContent("8C 1A 01 " + std::string(each.octets))))
        << each.octets;
  }
}

TEST(X891ReaderTyped, DoublesReadBackAsTheSameNumbers) {
  const struct {
    const char* octets;
    const char* text;
  } cases[] = {
      {"00 00 00 00 00 00 00 00", "0"},
      {"80 00 00 00 00 00 00 00", "-0"},
      {"3F B9 99 99 99 99 99 9A", "0.1"},
      {"7F F0 00 00 00 00 00 00", "INF"},
      {"FF F0 00 00 00 00 00 00", "-INF"},
      {"7F F8 00 00 00 00 00 00", "NaN"},
      {"7F EF FF FF FF FF FF FF", "1.7976931348623157e+308"},
      {"00 10 00 00 00 00 00 00", "2.2250738585072014e-308"},
      {"00 00 00 00 00 00 00 01", "5e-324"},
      {"40 09 21 FB 54 44 2D 18", "3.141592653589793"},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(wholeContent({"characters(" + std::string(each.text) + ")"}),
              readNew(documentOfContent("8C 1E 05 " + std::string(each.octets))))
        << each.octets;
  }
}

TEST(X891ReaderTyped, NumbersDoNotDependOnTheLocale) {
  struct Signs : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };
  const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Signs));
  const std::string told =
      readNew(documentOfContent("8C 09 7F FF 8C 0E 01 7F FF FF FF 8C 12 05 00 00 00 02 00 00 00 00 "
                                "8C 1A 01 44 9A 50 00 E2 30 33 7F FF FF FF"));
  std::locale::global(before);
  EXPECT_EQ(wholeContent({"characters(32767)", "characters(2147483647)", "characters(8589934592)",
                          "characters(1234.5)", "comment(2147483647)"}),
            told);
}

// --- CDATA sections ---

TEST(X891ReaderTyped, CDATASectionsGoToContentAndLexicalHandler) {
  const std::string document = documentOfContent("8C 26 00 'x<y'");
  for (const bool primitive : {false, true}) {
    for (const bool algorithms : {false, true}) {
      X891Reader reader;
      if (primitive) reader.log.attachPrimitiveTypesTo(reader.reader);
      if (algorithms) reader.log.attachAlgorithmsTo(reader.reader);
      EXPECT_EQ(wholeContent({"startCDATA()", "characters(x<y)", "endCDATA()"}),
                reader.read(document));
      reader.reader.setProperty(Tavrin::properties::lexicalHandler, nullptr);
      EXPECT_EQ(wholeContent({"characters(x<y)"}), reader.read(document));
      reader.reader.setContentHandler(nullptr);
      EXPECT_EQ("", reader.read(document));
    }
  }
  X891Reader reader;
  reader.reader.setContentHandler(nullptr);
  EXPECT_EQ("startCDATA()\nendCDATA()\n", reader.read(document));
}

TEST(X891ReaderTyped, CDATASectionsEnterTheTableAsText) {
  EXPECT_EQ(wholeContent({"startCDATA()", "characters(x)", "endCDATA()", "characters(x)"}),
            readNew(documentOfContent("9C 24 'x' A0")));
}

TEST(X891ReaderTyped, CDATASectionsAreNoAttributeValues) {
  for (const char* value : {"30 90 'x'", "70 90 'x'"}) {
    expectPrologRefused("7C 00 'a' 78 00 'b' " + std::string(value), "FF F0",
                        "CDATA section in an attribute value");
  }
}

TEST(X891ReaderTyped, CDATASectionsHaveCharactersOfXML) {
  for (const char* head : {"8C", "9C"}) {
    const std::string first = head;
    expectContentRefused(first + " 24 FF", "FF", "Invalid UTF-8 octet 0xFF");
    expectContentRefused(first + " 25 'x' 00", "FF", "Invalid character U+0000");
    expectContentRefused(first + " 24 C3", "80 A9 FF", "Invalid UTF-8 octet 0xC3");
  }
}

// --- The list of attributes ---

/// Asks for attributes in an order.
struct Asking : Tavrin::ContentHandler {
  void startElement(const std::string&, const std::string&, const std::string&,
                    const Tavrin::Attributes& attributes) override {
    ++elements;
    EXPECT_EQ("1 -2", byLocalName ? attributes.getValue("", "b") : attributes.getValue("b"));
    EXPECT_EQ("1 -2", attributes.getValue(0));
    EXPECT_EQ("1 -2", attributes.getValue("b"));
    EXPECT_EQ(&attributes.getValue(0), &attributes.getValue("", "b"));
    EXPECT_EQ("CDATA", attributes.getType("b"));
    EXPECT_THROW(attributes.getValue("c"), std::out_of_range);
    EXPECT_THROW(attributes.getType(1), std::out_of_range);
    EXPECT_THROW(attributes.getType(-1), std::out_of_range);
    const auto& typed = dynamic_cast<const Tavrin::EncodingAlgorithmAttributes&>(attributes);
    EXPECT_EQ(3, typed.getAlgorithmIndex("", "b"));
    EXPECT_EQ("", typed.getAlgorithmURI("b"));
    EXPECT_EQ(typed.getAlgorithmData(0), typed.getAlgorithmData("b"));
  }

  bool byLocalName = false;
  int elements = 0;
};

TEST(X891ReaderTyped, AttributesHaveTheirTextByNameAsByPosition) {
  for (const bool byLocalName : {false, true}) {
    Asking handler;
    handler.byLocalName = byLocalName;
    Tavrin::XMLReader_X891 reader;
    reader.setContentHandler(&handler);
    std::istringstream stream(document("7C 00 'a' 78 00 'b' 30 37 00 00 00 01 FF FF FF FE FF F0"));
    reader.parse(stream);
    EXPECT_EQ(1, handler.elements);
  }
}

// --- Reserved algorithms ---

TEST(X891ReaderTyped, ReservedAlgorithmsAreRefused) {
  // The fields 10 to 30: a chunk's has six bits in the second octet, a value's four in each.
  for (unsigned field = 10; field <= 30; ++field) {
    const std::string message = "Reserved encoding algorithm " + std::to_string(field + 1);
    expectRefused(document("3C 00 'a' 8C") + static_cast<char>(field << 2), octets("00 FF"),
                  message, kStarted);
    const std::string value = {static_cast<char>(0x30 | field >> 4), static_cast<char>(field << 4)};
    expectRefused(document("7C 00 'a' 78 00 'b'") + value, octets("00 FF F0"), message,
                  {"startDocument()"});
    expectRefused(document("3C 00 'a' E2") + value, octets("00 FF"), message, kStarted);
  }
}

}  // namespace
}  // namespace x891_test
