#include "comparing/ShortNumbers.h"

#include <Tavrin/EncodingAlgorithms.h>
#include <Tavrin/TypedData.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

// What is recognised as the text of a number has to be what the number prints.

namespace {

using tool::ShortNumbers;

template <typename Holder, int number>
struct Exact {
  using Number = typename decltype(Holder::data_)::value_type;

  static std::string print(Number value) {
    const auto data = Tavrin::encodedDataFromText(number, "0");
    static_cast<Holder&>(*data).data_ = {value};
    return data->toString();
  }
  static Number parse(const std::string& text) {
    const auto data = Tavrin::encodedDataFromText(number, text);
    return static_cast<Holder&>(*data).data_.at(0);
  }
};

using Shorts = Exact<Tavrin::ShortData, Tavrin::algorithms::shortInteger>;
using Ints = Exact<Tavrin::IntData, Tavrin::algorithms::integer>;
using Longs = Exact<Tavrin::LongData, Tavrin::algorithms::longInteger>;
using Floats = Exact<Tavrin::FloatData, Tavrin::algorithms::floatNumber>;
using Doubles = Exact<Tavrin::DoubleData, Tavrin::algorithms::doubleNumber>;

/// Octets that may be looked at behind a text.
const std::string kBehind = " 123456789";

template <typename Type>
std::size_t sizeOf(const std::string& text, typename Type::Number number) {
  const std::string octets = text + kBehind;
  return ShortNumbers<typename Type::Number>::sizeAt(octets.data(), octets.data() + octets.size(),
                                                     number);
}

template <typename Type>
void expectRecognised(const std::vector<std::string>& texts) {
  for (const std::string& text : texts) {
    const auto number = Type::parse(text);
    ASSERT_EQ(Type::print(number), text);
    EXPECT_EQ(sizeOf<Type>(text, number), text.size()) << text;
  }
}

/// @param meaning the canonical text of the number
template <typename Type>
void expectUnknown(const std::string& meaning, const std::vector<std::string>& texts) {
  for (const std::string& text : texts) {
    EXPECT_EQ(sizeOf<Type>(text, Type::parse(meaning)), 0U) << text << " for " << meaning;
  }
}

/// Texts as numbers are written, whether they print like that or not, and what is nearly so.
class Texts {
 public:
  std::string next() {
    std::string text;
    if (below(2) == 0) text += '-';
    appendDigits(text, below(7));
    if (below(4) != 0) {
      text += '.';
      appendDigits(text, below(8));
    }
    return text;
  }
  std::string changed(std::string text) {
    constexpr char kCharacters[] = "0123456789.-+/:e ";
    if (text.empty()) return text;
    const char c = kCharacters[below(sizeof kCharacters - 1)];
    const std::size_t at = below(text.size());
    switch (below(3)) {
      case 0:
        return text.insert(at, 1, c);
      case 1:
        return text.erase(at, 1);
      default:
        text[at] = c;
        return text;
    }
  }

 private:
  std::size_t below(std::size_t end) { return random_() % end; }
  void appendDigits(std::string& text, std::size_t count) {
    for (; count > 0; --count) text += static_cast<char>('0' + below(3) * below(4) + below(4));
  }

  std::mt19937 random_{1};
};

/// Whether std::to_chars and everybody else read the text as a number.
bool isNumber(const std::string& text) {
  const std::size_t digits = text.find_first_not_of('-');
  return digits <= 1 && text.find_first_of("0123456789") != std::string::npos &&
         std::count(text.begin(), text.end(), '.') <= 1;
}

template <typename Type>
void expectNothingFalse() {
  Texts texts;
  std::size_t recognised = 0;
  for (int i = 0; i < 200000; ++i) {
    const std::string text = texts.next();
    if (!isNumber(text)) continue;
    const auto number = Type::parse(text);
    const std::string printed = Type::print(number);
    for (const std::string& other : {text, printed, texts.changed(printed)}) {
      const std::string whole = other.substr(0, other.find(' '));
      const std::size_t size = sizeOf<Type>(other, number);
      recognised += size > 0 ? 1 : 0;
      if (size == 0) continue;
      ASSERT_EQ(whole, printed);
      ASSERT_EQ(size, printed.size());
    }
  }
  EXPECT_GT(recognised, 100000U);
}

}  // namespace

TEST(ShortNumbers, RecogniseTheTextThatIsPrinted) {
  const std::vector<std::string> integers = {"0",    "1",     "-1",    "9",     "10",
                                             "-500", "32767", "99999", "-12345"};
  expectRecognised<Floats>(integers);
  expectRecognised<Doubles>(integers);
  expectRecognised<Ints>(integers);
  expectRecognised<Longs>(integers);
  expectRecognised<Ints>({"12345678", "-12345678", "99999999"});
  expectRecognised<Shorts>({"0", "-1", "32767", "-32768"});
  const std::vector<std::string> fractions = {"0.5",   "-0.5",  "658.986", "-477.909", "0.123456",
                                              "-0",    "0.001", "12345.6", "-12345.6", "-0.123456",
                                              "1.001", "100.1", "0.00102"};
  expectRecognised<Floats>(fractions);
  expectRecognised<Doubles>(fractions);
  expectRecognised<Doubles>({"1234.567", "-1234.567", "123456.7", "1.234567"});
}

TEST(ShortNumbers, KnowNoOtherText) {
  expectUnknown<Floats>("0.5", {"-0.5", "+0.5", ".5", "00.5", "0.50", "0.6", "0-5", "0:5", "0..5",
                                "0.5.", "5e-1", "", "-", ".", "0", "x", "0.5\n7"});
  expectUnknown<Floats>("0", {"-0", "00", "0.0", "0.", ".0", "-"});
  expectUnknown<Floats>("-0", {"0", "-00", "-0.0", "--0"});
  expectUnknown<Floats>("1e+05", {"100000", "1e5"});
  expectUnknown<Doubles>("1e+07", {"10000000"});
  expectUnknown<Floats>("1e-04", {"0.0001"});
  expectUnknown<Floats>("NaN", {"0", "1.5", "-0"});
  expectUnknown<Floats>("INF", {"0", "99999999"});
  expectUnknown<Ints>("0", {"-0", "00", "0.0", "0."});
  expectUnknown<Ints>("50", {"5", "500", "050", "+50", "-50", "50.0", "5 0"});
  expectUnknown<Longs>("4294967296", {"0", "4294967296"});
  expectUnknown<Shorts>("-1", {"65535", "1"});
}

// A blank has to be seen, and nothing beyond the end is looked at.
TEST(ShortNumbers, NeedOctetsBehindTheText) {
  const std::string text = "0.5 123456";
  for (std::size_t size = 0; size <= text.size(); ++size) {
    const std::vector<char> octets(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(ShortNumbers<float>::sizeAt(octets.data(), octets.data() + size, 0.5F),
              size < text.size() ? 0U : 3U);
  }
  const std::string other = "0.51234567890";
  EXPECT_EQ(ShortNumbers<float>::sizeAt(other.data(), other.data() + other.size(), 0.5F), 0U);
}

TEST(ShortNumbers, RecogniseNothingFalseInFloats) { expectNothingFalse<Floats>(); }

TEST(ShortNumbers, RecogniseNothingFalseInDoubles) { expectNothingFalse<Doubles>(); }
