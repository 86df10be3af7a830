#include <Tavrin/EncodingAlgorithms.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <locale>
#include <string>
#include <vector>

#include "EventLog.h"
#include "WhatIsThrown.h"

// Text that is parsed as typed values (X.891, clause 10).

namespace {

using namespace Tavrin;
using Strings = std::vector<std::string>;

std::string shown(const std::string& type, const std::string& text) {
  std::string value;
  const std::string failure =
      thrown([&] { value = EventLog::showValue(*encodedDataFromText(type, text)); });
  return failure == "nothing" ? value : failure;
}

std::string refusal(const std::string& type, const std::string& what) {
  return "EncodingAlgorithmException: Invalid " + type + " text: " + what;
}

TEST(FromText, IntegersAreDecimals) {
  EXPECT_EQ(std::vector<short>({-32768, -1, 0, 1, 32767}),
            ShortEncodingAlgorithm::fromText("-32768 -1 0 1 32767").data_);
  EXPECT_EQ(std::vector<long>({-2147483648L, 2147483647L}),
            IntEncodingAlgorithm::fromText("-2147483648 2147483647").data_);
  EXPECT_EQ(std::vector<long>({std::numeric_limits<long>::min(), std::numeric_limits<long>::max()}),
            LongEncodingAlgorithm::fromText("-9223372036854775808 9223372036854775807").data_);
}

TEST(FromText, IntegersMayHaveAPlusSignAndLeadingZeros) {
  for (const char* type : {"short", "int", "long"}) {
    const std::string value =
        encodedDataFromText(type, "+1 007 -0 +00 -08 00000000000000000000012")->toString();
    EXPECT_EQ("1 7 0 0 -8 12", value) << type;
  }
}

TEST(FromText, IntegersBeyondTheirRangeAreRefused) {
  const std::pair<const char*, Strings> cases[] = {
      {"short", {"32768", "-32769", "99999999999999999999"}},
      {"int", {"2147483648", "-2147483649", "99999999999999999999"}},
      {"long", {"9223372036854775808", "-9223372036854775809", "99999999999999999999"}}};
  for (const auto& [type, numbers] : cases) {
    for (const std::string& number : numbers) {
      EXPECT_EQ(refusal(type, '"' + number + "\" at offset 2 is out of range"),
                shown(type, "1 " + number));
    }
  }
}

TEST(FromText, WhatIsNoIntegerIsRefused) {
  for (const char* type : {"short", "int", "long"}) {
    for (const std::string item : {"a", "1a", "1.0", "1e3", "0x1", "+", "-", "+-1", "--1", "++1",
                                   "1,2", "\xD9\xA1", "1_0", "1\v2", "1\xC2\xA0"}) {
      EXPECT_EQ(refusal(type, '"' + item + "\" at offset 6 is no integer"),
                shown(type, " 5 42 " + item + " 7"))
          << type;
    }
  }
}

TEST(FromText, FloatingPointNumbersHaveTheFormsOfXMLSchema) {
  const std::string text = "1 -1 +1 01 1.5 1. .5 -.5 1e3 1E3 1e+3 1e-3 -0 0.0 INF -INF NaN";
  const std::string values = "1 -1 1 1 1.5 1 0.5 -0.5 1000 1000 1000 0.001 -0 0 INF -INF NaN";
  EXPECT_EQ(values, encodedDataFromText("float", text)->toString());
  EXPECT_EQ(values, encodedDataFromText("double", text)->toString());
}

TEST(FromText, WhatIsNoFloatingPointNumberIsRefused) {
  for (const char* type : {"float", "double"}) {
    for (const std::string item :
         {"a",    ".",   "-",      "+",     "-.",   "e3",   "1e",       "1e+",      "1.5.5",
          "+-1",  "-+1", "--1",    "inf",   "-inf", "+INF", "infinity", "INFINITY", "nan",
          "-NaN", "NAN", "nan(1)", "0x1p3", "1,5",  "1f",   "1d",       "\xD9\xA1", "--INF"}) {
      EXPECT_EQ(refusal(type, '"' + item + "\" at offset 4 is no number"),
                shown(type, "1.5 " + item))
          << type;
    }
  }
}

TEST(FromText, FloatingPointNumbersAreTheNearest) {
  const std::vector<float> floats =
      FloatEncodingAlgorithm::fromText("0.1 16777217 3.4028235e38 1.17549435e-38 1e-45 1.4e-45")
          .data_;
  using Limits = std::numeric_limits<float>;
  EXPECT_EQ(std::vector<float>({0.1F, 16777216.0F, Limits::max(), Limits::min(),
                                Limits::denorm_min(), Limits::denorm_min()}),
            floats);
  const std::vector<double> doubles =
      DoubleEncodingAlgorithm::fromText("0.1 1.7976931348623157e308 2.2250738585072014e-308 5e-324")
          .data_;
  using DoubleLimits = std::numeric_limits<double>;
  EXPECT_EQ(std::vector<double>(
                {0.1, DoubleLimits::max(), DoubleLimits::min(), DoubleLimits::denorm_min()}),
            doubles);
}

TEST(FromText, FloatingPointNumbersNearInfinityOrZeroAloneAreRefused) {
  for (const std::string item : {"3.5e38", "-3.5e38", "1e-46", "1e99999"}) {
    EXPECT_EQ(refusal("float", '"' + item + "\" at offset 0 is out of range"),
              shown("float", item));
  }
  for (const std::string item : {"1.8e308", "-1.8e308", "1e-330", "1e99999", "1e-99999"}) {
    EXPECT_EQ(refusal("double", '"' + item + "\" at offset 0 is out of range"),
              shown("double", item));
  }
  EXPECT_EQ("0 -0", encodedDataFromText("float", "0e99999 -0.0e-99999")->toString());
}

TEST(FromText, NumbersAreNotThoseOfTheLocale) {
  struct Signs : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
  };
  const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Signs));
  const std::string value = shown("float", "1.5");
  const std::string other = shown("float", "1,5");
  std::locale::global(before);
  EXPECT_EQ("FloatData{1.5}", value);
  EXPECT_EQ(refusal("float", "\"1,5\" at offset 0 is no number"), other);
}

TEST(FromText, BooleansAreWordsOrDigits) {
  EXPECT_EQ(std::vector<bool>({true, false, true, false}),
            BooleanEncodingAlgorithm::fromText("true false 1 0").data_);
  for (const std::string item : {"True", "TRUE", "2", "00", "tru", "truefalse", "yes", "-1"}) {
    EXPECT_EQ(refusal("boolean", '"' + item + "\" at offset 5 is no boolean"),
              shown("boolean", "true " + item));
  }
}

TEST(FromText, UUIDsHaveDigitsInEitherCase) {
  const UUID uuid{0xF8, 0x1D, 0x4F, 0xAE, 0x7D, 0xEC, 0x11, 0xD0,
                  0xA7, 0x65, 0x00, 0xA0, 0xC9, 0x1E, 0x6B, 0xF6};
  EXPECT_EQ(std::vector<UUID>({uuid, uuid}),
            UUIDEncodingAlgorithm::fromText("f81d4fae-7dec-11d0-a765-00a0c91e6bf6 "
                                            "F81D4FAE-7DEC-11D0-A765-00A0C91E6BF6")
                .data_);
  for (const std::string item :
       {"f81d4fae-7dec-11d0-a765-00a0c91e6bf", "f81d4fae-7dec-11d0-a765-00a0c91e6bf60",
        "f81d4fae7dec11d0a76500a0c91e6bf6", "g81d4fae-7dec-11d0-a765-00a0c91e6bf6",
        "f81d4fae7-dec-11d0-a765-00a0c91e6bf6", "{f81d4fae-7dec-11d0-a765-00a0c91e6b}"}) {
    EXPECT_EQ(refusal("uuid", '"' + item + "\" at offset 0 is no UUID"), shown("uuid", item));
  }
}

TEST(FromText, HexadecimalIsPairsOfDigitsInEitherCase) {
  EXPECT_EQ(std::string("\x00\x7F\xA0\xFF\xAB", 5),
            HexadecimalEncodingAlgorithm::fromText("007FA0ffaB").data_);
  EXPECT_EQ(std::string("\x00\x7F\xA0", 3),
            HexadecimalEncodingAlgorithm::fromText("\n 00 7F\tA0\r\n").data_);
  EXPECT_EQ(refusal("hexadecimal", "\"G\" at offset 2 is no hexadecimal digit"),
            shown("hexadecimal", "00G0"));
  EXPECT_EQ(refusal("hexadecimal", "\"\xC3\xA4\" at offset 3 is no hexadecimal digit"),
            shown("hexadecimal", "000\xC3\xA4"));
  EXPECT_EQ(refusal("hexadecimal", "\"7\" at offset 2 is half an octet"),
            shown("hexadecimal", "007"));
  EXPECT_EQ(refusal("hexadecimal", "\"0\" at offset 0 is half an octet"),
            shown("hexadecimal", "0 07"));
}

TEST(FromText, Base64IsGroupsOfFourWithPadding) {
  EXPECT_EQ("", Base64EncodingAlgorithm::fromText("").data_);
  EXPECT_EQ("M", Base64EncodingAlgorithm::fromText("TQ==").data_);
  EXPECT_EQ("Ma", Base64EncodingAlgorithm::fromText("TWE=").data_);
  EXPECT_EQ("Man", Base64EncodingAlgorithm::fromText("TWFu").data_);
  EXPECT_EQ("ManMan", Base64EncodingAlgorithm::fromText(" TW\r\nFuT\tWFu\n").data_);
  EXPECT_EQ("Ma", Base64EncodingAlgorithm::fromText("T W E =").data_);
  EXPECT_EQ(std::string("\xFB\xEF\xBE\xFF\xFF\xFF", 6),
            Base64EncodingAlgorithm::fromText("++++////").data_);
}

TEST(FromText, WhatIsNoBase64IsRefused) {
  const auto expect = [](const std::string& what, const std::string& text) {
    EXPECT_EQ(refusal("base64", what), shown("base64", text)) << text;
  };
  expect("\"-\" at offset 2 is no base64 digit", "TW-_");
  expect("\"\xE2\x82\xAC\" at offset 1 is no base64 digit", "T\xE2\x82\xAC");
  expect("\"=\" at offset 0 is no base64 digit", "=");
  expect("\"=\" at offset 1 is no base64 digit", "T===");
  expect("\"T\" at offset 0 is not four digits or their padding", "T");
  expect("\"TW\" at offset 4 is not four digits or their padding", "TWFuTW");
  expect("\"TWF\" at offset 0 is not four digits or their padding", "TWF");
  expect("\"TQ=\" at offset 0 is not four digits or their padding", "TQ=");
  expect("\"a\" at offset 3 follows the padding", "TQ=a");
  expect("\"T\" at offset 4 follows the padding", "TQ==TWFu");
  expect("\"=\" at offset 4 follows the padding", "TQ===");
  expect("\"TR==\" at offset 0 has bits that belong to no octet", "TR==");
  expect("\"TWF=\" at offset 0 has bits that belong to no octet", "TWF=");
}

TEST(FromText, CDATAIsAnyText) {
  EXPECT_EQ(" a]]>\n", CDATAEncodingAlgorithm::fromText(" a]]>\n").data_);
  EXPECT_EQ("", CDATAEncodingAlgorithm::fromText("").data_);
}

TEST(FromText, WhiteSpaceMayStandBetweenItemsAndAroundThem) {
  for (const char* type : {"short", "int", "long", "float", "double", "boolean"}) {
    const std::string canonical = shown(type, "1 0 1");
    EXPECT_EQ(canonical, shown(type, "\r\n 1\t\t0  \n 1 ")) << type;
    EXPECT_EQ(canonical, shown(type, "1\n0\r1")) << type;
  }
}

TEST(FromText, TextWithoutItemsIsAnEmptyValue) {
  for (const char* type :
       {"short", "int", "long", "float", "double", "boolean", "uuid", "base64", "hexadecimal"}) {
    for (const char* text : {"", " ", " \t\r\n "}) {
      EXPECT_EQ("", encodedDataFromText(type, text)->toString()) << type;
    }
  }
}

TEST(FromText, ALongItemIsCut) {
  const std::string forty(40, 'x');
  EXPECT_EQ(refusal("int", '"' + forty + "\" at offset 0 is no integer"), shown("int", forty));
  EXPECT_EQ(refusal("int", '"' + forty + "...\" at offset 0 is no integer"),
            shown("int", forty + std::string(1000000, 'x')));
  // Not within a character.
  EXPECT_EQ(refusal("int", '"' + forty.substr(1) + "...\" at offset 0 is no integer"),
            shown("int", forty.substr(1) + "\xE2\x82\xAC"));
}

TEST(FromText, AlgorithmsHaveNumbersAndNames) {
  const Strings names = {"hexadecimal", "base64", "short",  "int",  "long",
                         "boolean",     "float",  "double", "uuid", "cdata"};
  for (std::size_t i = 0; i < names.size(); ++i) {
    EXPECT_EQ(EventLog::showValue(*encodedDataFromText(names[i], "")),
              EventLog::showValue(*encodedDataFromText(static_cast<int>(i), "")));
  }
  EXPECT_EQ(
      "EncodingAlgorithmException: Unknown encoding algorithm \"flot\"; known are hexadecimal, "
      "base64, short, int, long, boolean, float, double, uuid, cdata",
      shown("flot", "1"));
  for (const int number : {-1, 10, 31}) {
    EXPECT_EQ("EncodingAlgorithmException: No built-in encoding algorithm has the number " +
                  std::to_string(number),
              thrown([number] { encodedDataFromText(number, "1"); }));
  }
}

TEST(FromText, ManyItemsTakeNoLongerEach) {
  std::string text;
  for (int i = 0; i < 1000000; ++i) text += "1\n";
  EXPECT_EQ(1000000U, IntEncodingAlgorithm::fromText(text).data_.size());
  EXPECT_EQ(1000000U, DoubleEncodingAlgorithm::fromText(text).data_.size());
  EXPECT_EQ(1000000U, BooleanEncodingAlgorithm::fromText(text).data_.size());
}

}  // namespace
