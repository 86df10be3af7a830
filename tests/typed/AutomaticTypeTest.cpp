#include <Tavrin/Tavrin.h>
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "FilteredText.h"

// The type `auto`: text is typed where nothing but its size changes.

namespace {

using namespace Tavrin;
using filtered::told;
using filtered::written;

/// The type that text gets, as content and as an attribute alike; or "text".
std::string typeOf(const std::string& text) {
  struct Types : DefaultHandler {
    void startElement(const std::string& /*uri*/, const std::string& /*localName*/,
                      const std::string& /*qName*/, const Attributes& attributes) override {
      const auto* list = dynamic_cast<const EncodingAlgorithmAttributes*>(&attributes);
      if (list != nullptr) attribute = EventLog::showValue(*list->getAlgorithmData(0));
    }
    void object(const std::string& /*uri*/, int /*index*/, const EncodedData& data) override {
      content = EventLog::showValue(data);
      value = data.toString();
    }
    std::string attribute = "text";
    std::string content = "text";
    std::string value;
  } types;
  TypingRules rules;
  rules.add("*", "auto");
  rules.add("@*", "auto");
  TypedContentFilter filter(rules);
  filter.setContentHandler(&types);
  filter.setProperty(properties::encodingAlgorithmContentHandler,
                     static_cast<EncodingAlgorithmContentHandler*>(&types));
  AttributesImpl attributes;
  attributes.addAttribute("", "x", "x", "CDATA", text);
  filter.startDocument();
  filter.startElement("", "a", "a", attributes);
  filter.characters(text);
  filter.endElement("", "a", "a");
  EXPECT_EQ(types.attribute, types.content);
  if (types.content != "text") {
    EXPECT_EQ(text, types.value);
  }
  return types.content.substr(0, types.content.find('{'));
}

/// Twenty times the text, with one more in front.
std::string many(const std::string& item, const std::string& first = "") {
  std::string text = first.empty() ? item : first;
  for (int i = 0; i < 20; ++i) text += ' ' + item;
  return text;
}

TEST(AutomaticType, IsTheSmallestThatIsExact) {
  EXPECT_EQ("ShortData", typeOf(many("-123")));
  EXPECT_EQ("ShortData", typeOf(many("32767", "-32768")));
  EXPECT_EQ("IntData", typeOf(many("12345", "32768")));
  EXPECT_EQ("IntData", typeOf(many("2147483647", "-2147483648")));
  EXPECT_EQ("LongData", typeOf(many("1234567890", "2147483648")));
  EXPECT_EQ("LongData", typeOf(many("9223372036854775807")));
  EXPECT_EQ("FloatData", typeOf(many("0.125")));
  EXPECT_EQ("FloatData", typeOf(many("-1.5e-07", "1")));
  EXPECT_EQ("DoubleData", typeOf(many("3.141592653589793")));
  EXPECT_EQ("DoubleData", typeOf(many("12345.678", "0.1234567890123")));
  EXPECT_EQ("FloatData", typeOf(many("-INF 0.125 NaN")));
  EXPECT_EQ("FloatData", typeOf(many("0.125", "NaN")));
  EXPECT_EQ("BooleanData", typeOf(many("true", "false")));
  EXPECT_EQ("EncodedData", typeOf("f81d4fae-7dec-11d0-a765-00a0c91e6bf6"));
  EXPECT_EQ("EncodedData", typeOf(many("12345678-7dec-11d0-a765-00a0c91e6bf6")));
  EXPECT_EQ("HexadecimalData", typeOf(std::string(40, 'A')));
  EXPECT_EQ("HexadecimalData", typeOf(std::string(40, '1')));
  EXPECT_EQ("Base64Data", typeOf(std::string(40, 'a')));
  EXPECT_EQ("Base64Data", typeOf(std::string(37, 'A') + "w=="));
}

/// The number with a point after so many of its digits, or with zeros between, or without a point.
std::string withPoint(std::string digits, std::size_t before, std::size_t zeros) {
  if (before == digits.size()) return digits + std::string(zeros, '0');
  const std::string whole = before > 0 ? digits.substr(0, before) : "0";
  return whole + '.' + std::string(before > 0 ? 0 : zeros, '0') + digits.substr(before);
}

// The text is typed if, and only if, the number prints so.
TEST(AutomaticType, NumbersOfAllLengthsAreExact) {
  std::mt19937_64 random(15);
  const std::string before = many("0.125");
  for (int i = 0; i < 20000; ++i) {
    std::string digits = std::to_string(random());
    digits.resize(1 + random() % std::min<std::size_t>(18, digits.size()));
    const std::string number = (random() % 2 == 0 ? "-" : "") +
                               withPoint(digits, random() % (digits.size() + 1), random() % 8);
    const auto prints = [&](int algorithm) {
      return encodedDataFromText(algorithm, number)->toString() == number;
    };
    const char* const expected = prints(algorithms::floatNumber)    ? "FloatData"
                                 : prints(algorithms::doubleNumber) ? "DoubleData"
                                                                    : "text";
    const std::string text = before + ' ' + number;
    const std::string type = typeOf(text);
    // Doubles may take more octets than the text.
    if (type != "text" || *expected != 'D') {
      EXPECT_EQ(expected, type) << number;
    }
  }
}

TEST(AutomaticType, OtherNotationsStayText) {
  EXPECT_EQ("FloatData", typeOf(many("12.75")));
  for (const std::string item :
       {"1.0", "+1", "01", "1e3", "1.50", ".5", "5.", "1E-07", "100000", "0.10000000000000000001",
        "1e-7", "Inf", "nan", "1,5", "1f", "3.5e400"}) {
    EXPECT_EQ("text", typeOf(many("12.75", item))) << item;
    EXPECT_EQ(item == "100000" ? "IntData" : "text", typeOf(many("12345", item))) << item;
  }
}

TEST(AutomaticType, OtherWhiteSpaceStaysText) {
  const std::string text = many("1234");
  EXPECT_EQ("ShortData", typeOf(text));
  EXPECT_EQ("text", typeOf(' ' + text));
  EXPECT_EQ("text", typeOf(text + ' '));
  EXPECT_EQ("text", typeOf(text + "  1234"));
  EXPECT_EQ("text", typeOf(text + "\t1234"));
  EXPECT_EQ("text", typeOf(text + "\n1234"));
  EXPECT_EQ("text", typeOf(text + '\n'));
}

TEST(AutomaticType, WordsStayText) {
  EXPECT_EQ("text", typeOf(""));
  EXPECT_EQ("text", typeOf("It was a bright cold day in April, and the clocks"));
  EXPECT_EQ("text", typeOf(many("true", "True")));
  EXPECT_EQ("text", typeOf(many("true", "1")));
  EXPECT_EQ("text", typeOf("F81d4fae-7dec-11d0-a765-00a0c91e6bf6"));
  EXPECT_EQ("text", typeOf("f81d4fae-7dec-11d0-a765-00a0c91e6bf6 x"));
  EXPECT_EQ("text", typeOf(std::string(39, 'a')));
  EXPECT_EQ("text", typeOf(std::string(39, 'A') + "\xC3\xA4"));
  EXPECT_EQ("text", typeOf(std::string(37, 'A') + "B=="));
  EXPECT_EQ("text", typeOf("http://www.example.org/a/path/that/is/long/enough"));
}

TEST(AutomaticType, TextThatATableHoldsStaysText) {
  EXPECT_EQ("text", typeOf(std::string(32, 'A')));
  EXPECT_EQ("HexadecimalData", typeOf(std::string(34, 'A')));
  EXPECT_EQ("text", typeOf("1234 1234 1234 1234 1234 1234 12"));
  EXPECT_EQ("ShortData", typeOf("1234 1234 1234 1234 1234 1234 123"));
}

TEST(AutomaticType, WhatSavesNothingStaysText) {
  EXPECT_EQ("text", typeOf(many("1")));
  EXPECT_EQ("ShortData", typeOf(many("1", "1000")));
  EXPECT_EQ("text", typeOf(many("1", "70000")));
  EXPECT_EQ("text", typeOf(many("1", "0.5")));
  EXPECT_EQ("text", typeOf(many("0.5")));
  EXPECT_EQ("FloatData", typeOf(many("0.5", "-0.125")));
}

TEST(AutomaticType, LongTextStaysTextBeyondTheLimit) {
  TypedContentFilter::Options options;
  options.maximumTextOctets = 50;
  const std::string start = "startElement(, a, a, [])\n";
  const std::string end = "endElement(, a, a)\n";
  const std::string text = many("1234");
  EXPECT_EQ(start + "characters(" + text + ")\n" + end,
            told("* auto", "<a>" + text + "</a>", options));
}

TEST(AutomaticType, CDATASectionsStay) {
  const std::string text = many("1234");
  EXPECT_EQ("startElement(, a, a, [])\nstartCDATA()\ncharacters(" + text +
                ")\nendCDATA()\nendElement(, a, a)\n",
            told("* auto", "<a><![CDATA[" + text + "]]></a>"));
}

// --- There and back ---

std::string textOf(const std::string& fastInfoset) {
  XMLReader_X891 reader;
  XMLWriter_XML10 writer;
  std::ostringstream out;
  writer.setOutputStream(&out);
  connect(reader, writer);
  std::istringstream stream(fastInfoset);
  reader.parse(stream);
  return out.str();
}

void expectTheSameText(const std::string& document) {
  const std::string plain = written("", document);
  const std::string typed = written("* auto\n@* auto", document);
  EXPECT_EQ(textOf(plain), textOf(typed));
  EXPECT_LE(typed.size(), plain.size());
}

TEST(AutomaticType, TheTextComesBack) {
  expectTheSameText("<a b='c'>d<e/><!--f--><![CDATA[g]]>h<?i j?></a>");
  expectTheSameText("<a b='" + many("0.125") + "'><c>" + many("1234") + "</c> <d>" + many(" 1234") +
                    "</d><e>" + std::string(40, 'x') + "</e></a>");
}

TEST(AutomaticType, RandomTextComesBack) {
  std::mt19937 random(891);
  const std::vector<std::string> items = {"1",
                                          "-1",
                                          "0",
                                          "-0",
                                          "01",
                                          "+1",
                                          "1.0",
                                          "0.1",
                                          "1e3",
                                          "1e+05",
                                          "12345",
                                          "99999",
                                          "4294967296",
                                          "0.333333333",
                                          "3.1415926535897931",
                                          "NaN",
                                          "INF",
                                          "true",
                                          "false",
                                          "TRUE",
                                          "AB",
                                          "ab",
                                          "TWFu",
                                          "TQ==",
                                          "\xC3\xA4",
                                          "f81d4fae-7dec-11d0-a765-00a0c91e6bf6"};
  const std::vector<std::string> spaces = {" ", " ", " ", " ", " ", " ", " ", "", "  ", "\n"};
  for (int i = 0; i < 2000; ++i) {
    std::string text;
    // Few items and spaces, so that lists of one type are among them.
    const std::size_t kinds = 1 + random() % 3;
    const std::size_t firstItem = random() % items.size();
    const std::size_t spaceKinds = 1 + random() % spaces.size();
    for (auto length = 5 + random() % 30; length > 0; --length) {
      text += items[(firstItem + random() % kinds) % items.size()];
      if (length > 1) text += spaces[random() % spaceKinds];
    }
    expectTheSameText("<a><b>" + text + "</b><c d='" + text + "'/></a>");
  }
}

}  // namespace
