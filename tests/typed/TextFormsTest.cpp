#include <Tavrin/TypedData.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <locale>
#include <string>
#include <vector>

#include "HexOctets.h"

namespace {

using namespace Tavrin;

template <typename Holder>
struct TextCase {
  decltype(Holder::data_) value;
  std::string text;
};

template <typename Holder>
void expectTexts(const std::vector<TextCase<Holder>>& cases) {
  for (const TextCase<Holder>& expected : cases) {
    EXPECT_EQ(Holder(expected.value).toString(), expected.text);
  }
}

constexpr long kLongMin = std::numeric_limits<long>::min();
constexpr long kLongMax = std::numeric_limits<long>::max();

TEST(TextOfShorts, IsSignedDecimalsWithSingleSpaces) {
  expectTexts<ShortData>({{{}, ""},
                          {{0}, "0"},
                          {{-1}, "-1"},
                          {{-1, 0, 32767}, "-1 0 32767"},
                          {{-32768, 32767}, "-32768 32767"},
                          {{10, 100, 1000, 10000}, "10 100 1000 10000"},
                          {{65, 97}, "65 97"}});
}

TEST(TextOfInts, ShowsAllSixtyFourBits) {
  expectTexts<IntData>({{{}, ""},
                        {{0}, "0"},
                        {{1, -2}, "1 -2"},
                        {{2147483647, -2147483648}, "2147483647 -2147483648"},
                        {{2147483648, -2147483649}, "2147483648 -2147483649"},
                        {{4294967296}, "4294967296"},
                        {{4294967301, 5}, "4294967301 5"},
                        {{kLongMin, kLongMax}, "-9223372036854775808 9223372036854775807"}});
}

TEST(TextOfLongs, IsSignedDecimalsWithSingleSpaces) {
  expectTexts<LongData>({{{}, ""},
                         {{0}, "0"},
                         {{-1}, "-1"},
                         {{1234567890123456789}, "1234567890123456789"},
                         {{kLongMin, 0, kLongMax}, "-9223372036854775808 0 9223372036854775807"}});
}

TEST(TextOfBooleans, IsWordsWithSingleSpaces) {
  expectTexts<BooleanData>({{{}, ""},
                            {{true}, "true"},
                            {{false}, "false"},
                            {{true, true}, "true true"},
                            {{true, false}, "true false"},
                            {{false, true}, "false true"},
                            {{false, false}, "false false"},
                            {{true, true, true}, "true true true"},
                            {{true, true, false}, "true true false"},
                            {{true, false, true}, "true false true"},
                            {{true, false, false}, "true false false"},
                            {{false, true, true}, "false true true"},
                            {{false, true, false}, "false true false"},
                            {{false, false, true}, "false false true"},
                            {{false, false, false}, "false false false"}});
}

TEST(TextOfFloats, HasSixSignificantDigits) {
  expectTexts<FloatData>({{{}, ""},
                          {{0.0F}, "0"},
                          {{-0.0F}, "-0"},
                          {{1.0F}, "1"},
                          {{0.1F}, "0.1"},
                          {{1.5F, -2.25F}, "1.5 -2.25"},
                          {{3.14159274F}, "3.14159"},
                          {{100000.0F, 1000000.0F}, "100000 1e+06"},
                          {{1e10F}, "1e+10"},
                          {{-1e10F}, "-1e+10"},
                          {{16777216.0F}, "1.67772e+07"},
                          {{0.0001F, 0.00001F}, "0.0001 1e-05"},
                          {{0.00012345678F}, "0.000123457"}});
}

// A tie goes to the even neighbour: these halves are exact in binary.
TEST(TextOfFloats, RoundsAtTheSixthDigit) {
  expectTexts<FloatData>({{{123456.5F}, "123456"},
                          {{123457.5F}, "123458"},
                          {{1234565.0F, 1234575.0F}, "1.23456e+06 1.23458e+06"},
                          {{999999.0F}, "999999"},
                          {{999999.4375F}, "999999"},
                          {{999999.5F}, "1e+06"},
                          {{99999.953125F}, "100000"},
                          {{0.99999994F}, "1"},
                          {{2.0F / 3.0F}, "0.666667"}});
}

TEST(TextOfFloats, ShowsTheEndsOfTheRange) {
  using Limits = std::numeric_limits<float>;
  expectTexts<FloatData>({{{Limits::max()}, "3.40282e+38"},
                          {{Limits::lowest()}, "-3.40282e+38"},
                          {{Limits::min()}, "1.17549e-38"},
                          {{Limits::denorm_min()}, "1.4013e-45"},
                          {{-Limits::denorm_min()}, "-1.4013e-45"},
                          {{Limits::infinity(), -Limits::infinity()}, "inf -inf"},
                          {{Limits::quiet_NaN()}, "nan"},
                          {{1.0F, Limits::quiet_NaN(), 2.0F}, "1 nan 2"}});
}

TEST(TextOfDoubles, HasTwelveSignificantDigits) {
  expectTexts<DoubleData>({{{}, ""},
                           {{0.0}, "0"},
                           {{-0.0}, "-0"},
                           {{1.0}, "1"},
                           {{0.1}, "0.1"},
                           {{1e-5}, "1e-05"},
                           {{1e-4}, "0.0001"},
                           {{1.0 / 3.0}, "0.333333333333"},
                           {{2.0 / 3.0}, "0.666666666667"},
                           {{3.14159265358979}, "3.14159265359"},
                           {{100000.0, 1000000.0}, "100000 1000000"},
                           {{123456789012.0}, "123456789012"},
                           {{1234567890123.0}, "1.23456789012e+12"},
                           {{123456789012345.0}, "1.23456789012e+14"},
                           {{1e11, 1e12}, "100000000000 1e+12"},
                           {{1e100, 1e-100}, "1e+100 1e-100"}});
}

TEST(TextOfDoubles, RoundsAtTheTwelfthDigit) {
  expectTexts<DoubleData>({{{123456789012.5}, "123456789012"},
                           {{123456789013.5}, "123456789014"},
                           {{999999999998.5}, "999999999998"},
                           {{999999999999.0}, "999999999999"},
                           {{999999999999.5}, "1e+12"},
                           {{99999999999.96875}, "100000000000"},
                           {{0.9999999999999999}, "1"}});
}

TEST(TextOfDoubles, ShowsTheEndsOfTheRange) {
  using Limits = std::numeric_limits<double>;
  expectTexts<DoubleData>({{{Limits::max()}, "1.79769313486e+308"},
                           {{Limits::lowest()}, "-1.79769313486e+308"},
                           {{Limits::min()}, "2.22507385851e-308"},
                           {{Limits::denorm_min()}, "4.94065645841e-324"},
                           {{-Limits::denorm_min()}, "-4.94065645841e-324"},
                           {{Limits::infinity(), -Limits::infinity()}, "inf -inf"},
                           {{Limits::quiet_NaN()}, "nan"},
                           {{1.0, Limits::quiet_NaN(), 2.0}, "1 nan 2"}});
}

// A float shows with fewer digits than the same number as a double.
TEST(TextOfFloats, IsNotThatOfTheSameDouble) {
  EXPECT_EQ(FloatData({1234567.0F}).toString(), "1.23457e+06");
  EXPECT_EQ(DoubleData({1234567.0}).toString(), "1234567");
}

TEST(TextOfHexadecimal, IsTwoUpperCaseDigitsAnOctet) {
  expectTexts<HexadecimalData>({{"", ""},
                                {octets("00"), "00"},
                                {octets("0A FF"), "0AFF"},
                                {octets("00 7F A0"), "007FA0"},
                                {octets("80 'z'"), "807A"}});
}

TEST(TextOfHexadecimal, CoversEveryOctet) {
  const std::string digits = "0123456789ABCDEF";
  std::string all;
  std::string text;
  for (unsigned octet = 0; octet < 256; ++octet) all += static_cast<char>(octet);
  for (const char high : digits) {
    for (const char low : digits) text += {high, low};
  }
  EXPECT_EQ(HexadecimalData(all).toString(), text);
}

TEST(TextOfBase64, FollowsTheStandardsOwnExamples) {
  expectTexts<Base64Data>({{"", ""},
                           {"f", "Zg=="},
                           {"fo", "Zm8="},
                           {"foo", "Zm9v"},
                           {"foob", "Zm9vYg=="},
                           {"fooba", "Zm9vYmE="},
                           {"foobar", "Zm9vYmFy"}});
}

TEST(TextOfBase64, PadsWhatTheLastGroupLacks) {
  expectTexts<Base64Data>({{octets("4D"), "TQ=="},
                           {octets("4D 61"), "TWE="},
                           {octets("4D 61 6E"), "TWFu"},
                           {octets("00"), "AA=="},
                           {octets("00 00"), "AAA="},
                           {octets("00 00 00"), "AAAA"},
                           {octets("00 00 00 00"), "AAAAAA=="},
                           {octets("FF"), "/w=="},
                           {octets("FF FF"), "//8="},
                           {octets("FF FF FF"), "////"},
                           {octets("FF FF FF FF FF"), "//////8="},
                           {octets("FB EF BE"), "++++"}});
}

TEST(TextOfBase64, UsesTheWholeAlphabet) {
  const std::string sixBitsCountingUp = octets(
      "00 10 83 10 51 87 20 92 8B 30 D3 8F 41 14 93 51 55 97 61 96 9B 71 D7 9F "
      "82 18 A3 92 59 A7 A2 9A AB B2 DB AF C3 1C B3 D3 5D B7 E3 9E BB F3 DF BF");
  EXPECT_EQ(Base64Data(sixBitsCountingUp).toString(),
            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");
}

TEST(TextOfBase64, IsOneLineWhateverItsLength) {
  std::string data;
  std::string text;
  for (int i = 0; i < 1000; ++i) {
    data += "Man";
    text += "TWFu";
  }
  EXPECT_EQ(Base64Data(data).toString(), text);
  EXPECT_EQ(Base64Data(data + "M").toString(), text + "TQ==");
  EXPECT_EQ(Base64Data(data + "Ma").toString(), text + "TWE=");
}

TEST(TextOfCDATA, IsTheTextItself) {
  expectTexts<CDATAData>({{"", ""},
                          {" ", " "},
                          {"<a> & ]]>", "<a> & ]]>"},
                          {octets("'caf' C3 A9 0D 0A"), octets("'caf' C3 A9 0D 0A")},
                          {octets("00 FF 00"), octets("00 FF 00")},
                          {std::string(100000, 'x'), std::string(100000, 'x')}});
}

TEST(TextOfNumbers, HasOneSpaceBetweenAnyTwoOfMany) {
  std::string text;
  for (int i = 0; i < 10000; ++i) text += i > 0 ? " 7" : "7";
  EXPECT_EQ(ShortData(std::vector<short>(10000, 7)).toString(), text);
  EXPECT_EQ(IntData(std::vector<long>(10000, 7)).toString(), text);
  EXPECT_EQ(LongData(std::vector<long>(10000, 7)).toString(), text);
  EXPECT_EQ(FloatData(std::vector<float>(10000, 7.0F)).toString(), text);
  EXPECT_EQ(DoubleData(std::vector<double>(10000, 7.0)).toString(), text);
}

/// While it lives, new streams group digits by a dot and have a decimal comma.
class CommaLocale {
 public:
  CommaLocale() : before_(std::locale::global(std::locale(std::locale::classic(), new Comma))) {}
  ~CommaLocale() { std::locale::global(before_); }
  CommaLocale(const CommaLocale&) = delete;
  CommaLocale& operator=(const CommaLocale&) = delete;

 private:
  struct Comma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };

  std::locale before_;
};

TEST(TextOfNumbers, FollowsTheGlobalLocale) {
  {
    const CommaLocale locale;
    EXPECT_EQ(ShortData({12345, -7}).toString(), "12.345 -7");
    EXPECT_EQ(IntData({4294967296}).toString(), "4.294.967.296");
    EXPECT_EQ(LongData({-1000000, 999}).toString(), "-1.000.000 999");
    EXPECT_EQ(FloatData({1.5F}).toString(), "1,5");
    EXPECT_EQ(DoubleData({0.25, 123456}).toString(), "0,25 123.456");
    EXPECT_EQ(HexadecimalData(octets("12 34 56 78")).toString(), "12345678");
    EXPECT_EQ(Base64Data("foobar").toString(), "Zm9vYmFy");
    EXPECT_EQ(CDATAData("12345.5").toString(), "12345.5");
  }
  EXPECT_EQ(DoubleData({0.25, 123456}).toString(), "0.25 123456");
}

}  // namespace
