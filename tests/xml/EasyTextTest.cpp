#include "xml/simd/EasyText.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "EveryPlace.h"
#include "xml/Characters.h"

namespace Tavrin::xml {
namespace {

// A block of 16 octets, three of 32 and a rest, so that every sequence meets every border.
constexpr std::size_t kLongest = 115;

// Texts may be called not easy for no fault of theirs, but never easy with one.
TEST(EasyText, HasNoFault) {
  using namespace std::string_literals;
  for (const auto& wrong : {"\0"s,
                            "\x01"s,
                            "\x08"s,
                            "\x0B"s,
                            "\x0C"s,
                            "\x0E"s,
                            "\x1F"s,  // No characters of XML.
                            "\x80"s,
                            "\xBF"s,
                            "\xC3"s,
                            "\xC3\xA9\xA9"s,
                            "\xC3\xC3\xA9"s,  // Cut, or one too many.
                            "\xC0\x80"s,
                            "\xC0\xAF"s,
                            "\xC1\xBF"s,  // Longer than needed.
                            "\xE2\x82"s,
                            "\xE0\x80\x80"s,
                            "\xED\xA0\x80"s,
                            "\xEF\xBF\xBE"s,  // A surrogate, U+FFFE.
                            "\xF0\x9F\x98"s,
                            "\xF4\x90\x80\x80"s,
                            "\xF5\x80\x80\x80"s,
                            "\xFF"s,
                            "\xFE\xFF"s}) {
    atEveryPlace(wrong, kLongest, [](const std::string& text, std::size_t at) {
      EXPECT_NE(findInvalid(text), kAllValid);
      EXPECT_FALSE(isEasyText(text)) << text.size() << " octets, wrong at " << at;
    });
  }
}

TEST(EasyText, HasASCIIAndLineBreaks) {
  for (const char* right : {"a", "\n", "\t", "\x7F", "\n\t\t ", " ~"}) {
    atEveryPlace(right, kLongest,
                 [](const std::string& text, std::size_t) { EXPECT_TRUE(isEasyText(text)); });
  }
  EXPECT_TRUE(isEasyText(""));
}

// How many octets a text must have for characters of other languages to be easy.
std::size_t leastOfOtherLanguages() {
#ifdef TAVRIN_HAS_AVX2
  if (hasAVX2()) return kLeastTogether;
#endif
  return std::string::npos;
}

TEST(EasyText, MayHaveCharactersOfTwoAndMostOfThreeOctets) {
  for (const char* right : {"\xC2\x80", "\xC3\xA9", "\xDF\xBF", "\xC3\xA9\xD0\xB6\xC3\xA9",
                            "\xE1\x80\x80", "\xE3\x81\x82", "\xEC\xBF\xBF", "\xEE\x80\x80",
                            "\xEE\xBF\xBF", "\xE3\x81\x82\xC3\xA9\xE6\x97\xA5\xE6\x9C\xAC"}) {
    atEveryPlace(right, kLongest, [](const std::string& text, std::size_t at) {
      EXPECT_EQ(findInvalid(text), kAllValid);
      EXPECT_EQ(isEasyText(text), text.size() >= leastOfOtherLanguages())
          << text.size() << " octets, at " << at;
    });
  }
  for (const std::string character : {"\xD0\xB6", "\xE3\x81\x82"}) {
    std::string all;
    for (int i = 0; i < 100; ++i) all += character;
    for (std::size_t begin = 0; begin < character.size(); ++begin) {
      for (std::size_t end = 0; end < character.size(); ++end) {
        const std::string part = all.substr(begin, all.size() - begin - end);
        const bool isWhole = begin + end == 0;
        EXPECT_EQ(isEasyText(part), isWhole && part.size() >= leastOfOtherLanguages())
            << begin << ' ' << end;
      }
    }
  }
}

// A closer look tells whether they are right.
TEST(EasyText, HasNoCharacterOfWhichSomeSecondOctetsAreWrong) {
  for (const char* right : {"\xE0\xA0\x80", "\xED\x9F\xBF", "\xEF\xBC\xA1", "\xEF\xBF\xBD",
                            "\xF0\x9F\x98\x80", "\xF4\x8F\xBF\xBD"}) {
    atEveryPlace(right, kLongest, [](const std::string& text, std::size_t) {
      EXPECT_EQ(findInvalid(text), kAllValid);
      EXPECT_FALSE(isEasyText(text));
    });
  }
}

}  // namespace
}  // namespace Tavrin::xml
