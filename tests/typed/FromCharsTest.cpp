#include "typed/FromChars.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <vector>

// Where the standard library parses floating point numbers itself, both ways have to agree.

namespace {

using namespace Tavrin;

#if !defined(_LIBCPP_VERSION) || _LIBCPP_VERSION >= 200000

struct Parsed {
  std::ptrdiff_t length;
  std::errc failure;
  std::string octets;  // Of the number: -0 is another than 0.

  bool operator==(const Parsed&) const = default;
};

template <typename Number, typename Parse>
Parsed parsed(const std::string& text, Parse parse) {
  Number number = 42;
  const std::from_chars_result result = parse(text.data(), text.data() + text.size(), number);
  return {result.ptr - text.data(), result.ec,
          std::string(reinterpret_cast<const char*>(&number), sizeof number)};
}

template <typename Number>
void expectAgreement(const std::string& text) {
  const auto standard = [](const char* first, const char* last, Number& number) {
    return std::from_chars(first, last, number);
  };
  EXPECT_EQ(parsed<Number>(text, standard), parsed<Number>(text, fromCharsByC<Number>)) << text;
  EXPECT_EQ(parsed<Number>(text, standard), parsed<Number>(text, fromChars<Number>)) << text;
}

TEST(FromChars, AgreesOnWhatIsANumber) {
  for (const char* text : {"",
                           "-",
                           "+1",
                           "1",
                           "-0",
                           "0",
                           "00012",
                           ".",
                           ".5",
                           "5.",
                           "-.5",
                           "-.",
                           "1e",
                           "1e+",
                           "1e5",
                           "1E-5",
                           "1e+05",
                           "1e5e5",
                           "1.2.3",
                           "0x10",
                           " 1",
                           "1 ",
                           "1,5",
                           "--1",
                           "e5",
                           ".e5",
                           "1e400",
                           "-1e400",
                           "1e-400",
                           "4.9e-324",
                           "2.2250738585072011e-308",
                           "3.4028236e38",
                           "1e-46",
                           "1e-45",
                           "17976931348623157e292",
                           "99999999999999999999999999999999999999999999",
                           "0.000000000000000000000000000000000000000000000000000000000000001"}) {
    expectAgreement<double>(text);
    expectAgreement<float>(text);
  }
}

TEST(FromChars, AgreesOnRandomTexts) {
  std::mt19937 random(1);
  constexpr char kCharacters[] = "0123456789019.-+eE";
  for (int i = 0; i < 20000; ++i) {
    std::string text(random() % 20, '\0');
    for (char& c : text) c = kCharacters[random() % (sizeof kCharacters - 1)];
    expectAgreement<double>(text);
    expectAgreement<float>(text);
  }
}

#endif

TEST(FromChars, KeepsErrno) {
  errno = EPERM;
  double number = 0;
  const std::string text = "1e999";
  fromCharsByC(text.data(), text.data() + text.size(), number);
  EXPECT_EQ(EPERM, errno);
  EXPECT_EQ(0, number);
}

}  // namespace
