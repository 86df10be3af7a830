#include "typed/ExactNumbers.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <initializer_list>
#include <limits>
#include <locale>
#include <random>
#include <type_traits>
#include <typeinfo>

#include "EventLog.h"

// Numbers whose text reads back as the same numbers (X.891, 10.4 to 10.9).

namespace {

using namespace Tavrin;

template <typename Data, typename Number>
std::string textOf(const std::vector<Number>& numbers) {
  Data data;
  data.data_ = numbers;
  return data.toString();
}

std::string text(std::initializer_list<float> numbers) {
  return textOf<ExactFloatData>(std::vector<float>(numbers));
}
std::string text(std::initializer_list<double> numbers) {
  return textOf<ExactDoubleData>(std::vector<double>(numbers));
}

/// Makes a locale with other signs than the classic one the global one while it lives.
class OddLocale {
 public:
  OddLocale() : before_(std::locale::global(std::locale(std::locale::classic(), new Signs))) {}
  ~OddLocale() { std::locale::global(before_); }
  OddLocale(const OddLocale&) = delete;
  OddLocale& operator=(const OddLocale&) = delete;

 private:
  struct Signs : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };
  std::locale before_;
};

TEST(ExactNumbers, NoneAreNoText) {
  EXPECT_EQ("", text(std::initializer_list<float>{}));
  EXPECT_EQ("", text(std::initializer_list<double>{}));
  EXPECT_EQ("", textOf<ExactShortData>(std::vector<short>{}));
  EXPECT_EQ("", textOf<ExactIntData>(std::vector<long>{}));
  EXPECT_EQ("", textOf<ExactLongData>(std::vector<long>{}));
}

TEST(ExactNumbers, FloatsHaveTheFewestDigitsThatTell) {
  using Limits = std::numeric_limits<float>;
  EXPECT_EQ("0 -0 1 -1.5 0.1 16777216 1e+30 1e-45 1.1754944e-38 3.4028235e+38",
            text({0.0F, -0.0F, 1.0F, -1.5F, 0.1F, 16777216.0F, 1e30F, Limits::denorm_min(),
                  Limits::min(), Limits::max()}));
  EXPECT_EQ("INF -INF NaN NaN", text({Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN(),
                                      -Limits::quiet_NaN()}));
}

TEST(ExactNumbers, DoublesHaveTheFewestDigitsThatTell) {
  using Limits = std::numeric_limits<double>;
  EXPECT_EQ(
      "0 -0 1 -1.5 0.1 0.30000000000000004 1e+30 5e-324 2.2250738585072014e-308 "
      "1.7976931348623157e+308",
      text({0.0, -0.0, 1.0, -1.5, 0.1, 0.1 + 0.2, 1e30, Limits::denorm_min(), Limits::min(),
            Limits::max()}));
  EXPECT_EQ("INF -INF NaN", text({Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN()}));
}

TEST(ExactNumbers, FloatingPointNumbersReadBack) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 20000; ++i) {
    const std::uint64_t bits = random();
    const auto wide = std::bit_cast<double>(bits);
    if (!std::isnan(wide)) {
      EXPECT_EQ(bits, std::bit_cast<std::uint64_t>(std::strtod(text({wide}).c_str(), nullptr)));
    }
    const auto narrow = std::bit_cast<float>(static_cast<std::uint32_t>(bits));
    if (!std::isnan(narrow)) {
      EXPECT_EQ(static_cast<std::uint32_t>(bits),
                std::bit_cast<std::uint32_t>(std::strtof(text({narrow}).c_str(), nullptr)));
    }
  }
}

/// Whether a number prints as the standard library prints it.
template <typename Data, typename Number>
void expectShortest(Number number) {
  std::array<char, 64> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  EXPECT_EQ(std::string(digits.data(), end), textOf<Data>(std::vector<Number>{number}));
}

template <typename Data, typename Number>
void expectShortestAround(Number number) {
  for (const Number sign : {Number{1}, Number{-1}}) {
    expectShortest<Data>(sign * number);
    expectShortest<Data>(sign * std::nextafter(number, Number{0}));
    expectShortest<Data>(sign * std::nextafter(number, std::numeric_limits<Number>::max()));
  }
}

TEST(ExactNumbers, NumbersOfFewDigitsHaveTheFewest) {
  std::mt19937_64 random(1);
  for (int digits = 1; digits <= 17; ++digits) {
    const auto bound = static_cast<std::uint64_t>(std::pow(10.0, digits));
    for (int decimals = 0; decimals <= 20; ++decimals) {
      const double power = std::pow(10.0, decimals);
      expectShortestAround<ExactDoubleData>(1 / power);
      expectShortestAround<ExactFloatData>(static_cast<float>(1 / power));
      expectShortestAround<ExactDoubleData>(static_cast<double>(bound) / power);
      expectShortestAround<ExactFloatData>(static_cast<float>(static_cast<double>(bound) / power));
      for (int i = 0; i < 20; ++i) {
        const double number = static_cast<double>(random() % bound) / power;
        expectShortestAround<ExactDoubleData>(number);
        expectShortestAround<ExactFloatData>(static_cast<float>(number));
      }
    }
  }
}

TEST(ExactNumbers, OfAnyNumberAreOneText) {
  std::string expected;
  std::vector<double> numbers;
  for (int i = 0; i < 1000; ++i) {
    if (i > 0) expected += ' ';
    expected += "2.2250738585072014e-308";
    numbers.push_back(std::numeric_limits<double>::min());
    ASSERT_EQ(expected, textOf<ExactDoubleData>(numbers));
  }
}

TEST(ExactNumbers, IntegersAreCanonicalDecimals) {
  EXPECT_EQ("-32768 -1 0 7 32767",
            textOf<ExactShortData>(std::vector<short>{-32768, -1, 0, 7, 32767}));
  EXPECT_EQ("-2147483648 0 2147483647",
            textOf<ExactIntData>(std::vector<long>{-2147483648L, 0, 2147483647L}));
  EXPECT_EQ("-9223372036854775808 0 9223372036854775807",
            textOf<ExactLongData>(std::vector<long>{std::numeric_limits<long>::min(), 0,
                                                    std::numeric_limits<long>::max()}));
}

TEST(ExactNumbers, DoNotDependOnTheLocale) {
  const OddLocale odd;
  // The other holders do.
  EXPECT_EQ("1.234.567", IntData(std::vector<long>{1234567}).toString());
  EXPECT_EQ("12345", textOf<ExactShortData>(std::vector<short>{12345}));
  EXPECT_EQ("-1234567", textOf<ExactIntData>(std::vector<long>{-1234567}));
  EXPECT_EQ("1234567", textOf<ExactLongData>(std::vector<long>{1234567}));
  EXPECT_EQ("1234.5", text({1234.5F}));
  EXPECT_EQ("1234567.5", text({1234567.5}));
}

TEST(ExactNumbers, ClonesAreExact) {
  const auto check = [](auto data, auto value, const std::string& expected) {
    data.data_ = value;
    const std::unique_ptr<EncodedData> clone = data.clone();
    const EncodedData& cloned = *clone;
    EXPECT_EQ(typeid(data), typeid(cloned));
    EXPECT_EQ(expected, clone->toString());
    EXPECT_TRUE(data.data_.empty());
  };
  check(ExactShortData(), std::vector<short>{1, -2}, "1 -2");
  check(ExactIntData(), std::vector<long>{1, -2}, "1 -2");
  check(ExactLongData(), std::vector<long>{1, -2}, "1 -2");
  check(ExactFloatData(), std::vector<float>{0.1F}, "0.1");
  check(ExactDoubleData(), std::vector<double>{0.1}, "0.1");
}

TEST(ExactNumbers, AreThoseOfTheOtherHolders) {
  EXPECT_TRUE((std::is_base_of_v<ShortData, ExactShortData>));
  EXPECT_TRUE((std::is_base_of_v<IntData, ExactIntData>));
  EXPECT_TRUE((std::is_base_of_v<LongData, ExactLongData>));
  EXPECT_TRUE((std::is_base_of_v<FloatData, ExactFloatData>));
  EXPECT_TRUE((std::is_base_of_v<DoubleData, ExactDoubleData>));
  EventLog log;
  ExactFloatData data;
  data.data_ = {1.5F, -2};
  data.callContentHandler(log);
  EXPECT_EQ("floats(1.5 -2)\n", log.text());
}

}  // namespace
