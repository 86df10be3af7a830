#include "xml/PlainOctets.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "xml/Characters.h"

namespace Tavrin::xml {
namespace {

// Three blocks of 16 octets and a rest, so that every sequence meets every border.
constexpr std::size_t kLongest = 51;

/// Asks about texts of every length that have the sequence at every place.
template <typename Check>
void atEveryPlace(const std::string& sequence, Check check) {
  for (std::size_t length = sequence.size(); length <= kLongest; ++length) {
    for (std::size_t at = 0; at + sequence.size() <= length; ++at) {
      std::string text(length, 'a');
      text.replace(at, sequence.size(), sequence);
      check(text, at);
    }
  }
}

TEST(PlainOctets, EndAtTheFirstOtherOctet) {
  for (const char* other : {"\x1F", "\t", "\n", "\x80", "\xFF", "\x01\x80"}) {
    atEveryPlace(other, [](const std::string& text, std::size_t at) {
      EXPECT_EQ(plainOctets(text), at) << text.size();
    });
  }
  using namespace std::string_literals;
  atEveryPlace("\0"s, [](const std::string& text, std::size_t at) {
    EXPECT_EQ(plainOctets(text), at) << text.size();
  });
}

TEST(PlainOctets, GoFromSpaceToDelete) {
  for (const char* plain : {" ", "~", "\x7F", "]]>"}) {
    atEveryPlace(plain, [](const std::string& text, std::size_t) {
      EXPECT_EQ(plainOctets(text), text.size());
    });
  }
  EXPECT_EQ(plainOctets(""), 0U);
}

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
    atEveryPlace(wrong, [](const std::string& text, std::size_t at) {
      EXPECT_NE(findInvalid(text), kAllValid);
      EXPECT_FALSE(isEasyText(text)) << text.size() << " octets, wrong at " << at;
    });
  }
}

TEST(EasyText, HasASCIIAndLineBreaks) {
  for (const char* right : {"a", "\n", "\t", "\x7F", "\n\t\t ", " ~"}) {
    atEveryPlace(right,
                 [](const std::string& text, std::size_t) { EXPECT_TRUE(isEasyText(text)); });
  }
  EXPECT_TRUE(isEasyText(""));
}

#ifdef __SSE2__
TEST(EasyText, HasCharactersOfTwoAndMostOfThreeOctetsFromSixteenOctetsOn) {
  for (const char* right : {"\xC2\x80", "\xC3\xA9", "\xDF\xBF", "\xC3\xA9\xD0\xB6\xC3\xA9",
                            "\xE1\x80\x80", "\xE3\x81\x82", "\xEC\xBF\xBF", "\xEE\x80\x80",
                            "\xEE\xBF\xBF", "\xE3\x81\x82\xC3\xA9\xE6\x97\xA5\xE6\x9C\xAC"}) {
    atEveryPlace(right, [](const std::string& text, std::size_t at) {
      EXPECT_EQ(findInvalid(text), kAllValid);
      EXPECT_EQ(isEasyText(text), text.size() >= 16) << text.size() << " octets, at " << at;
    });
  }
  for (const std::string character : {"\xD0\xB6", "\xE3\x81\x82"}) {
    std::string all;
    for (int i = 0; i < 100; ++i) all += character;
    for (std::size_t begin = 0; begin < character.size(); ++begin) {
      for (std::size_t end = 0; end < character.size(); ++end) {
        const std::string part = all.substr(begin, all.size() - begin - end);
        EXPECT_EQ(isEasyText(part), begin + end == 0) << begin << ' ' << end;
      }
    }
  }
}

// A closer look tells whether they are right.
TEST(EasyText, HasNoCharacterOfWhichSomeSecondOctetsAreWrong) {
  for (const char* right : {"\xE0\xA0\x80", "\xED\x9F\xBF", "\xEF\xBC\xA1", "\xEF\xBF\xBD",
                            "\xF0\x9F\x98\x80", "\xF4\x8F\xBF\xBD"}) {
    atEveryPlace(right, [](const std::string& text, std::size_t) {
      EXPECT_EQ(findInvalid(text), kAllValid);
      EXPECT_FALSE(isEasyText(text));
    });
  }
}
#endif

}  // namespace
}  // namespace Tavrin::xml
