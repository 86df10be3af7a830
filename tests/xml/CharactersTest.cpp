#include "xml/Characters.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "xml/simd/OctetClasses.h"

namespace {

using namespace Tavrin::xml;

/// A character in UTF-8 (RFC 3629), written apart from the library's decoder.
std::string utf8(char32_t c) {
  const auto octet = [](char32_t value) { return static_cast<char>(value); };
  if (c < 0x80) return {octet(c)};
  if (c < 0x800) return {octet(0xC0 + c / 0x40), octet(0x80 + c % 0x40)};
  const char last = octet(0x80 + c % 0x40);
  const char third = octet(0x80 + c / 0x40 % 0x40);
  if (c < 0x10000) return {octet(0xE0 + c / 0x1000), third, last};
  return {octet(0xF0 + c / 0x40000), octet(0x80 + c / 0x1000 % 0x40), third, last};
}

// XML 1.0, production 2, over all that UTF-8 can hold and a bit more.
TEST(FindInvalid, KnowsEveryCharacter) {
  std::string all;
  for (char32_t c = 0; c < 0x110000; ++c) {
    const bool isCharacter = c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) ||
                             (c >= 0xE000 && c <= 0xFFFD) || c >= 0x10000;
    const std::string text = utf8(c);
    const std::size_t expected = isCharacter ? kAllValid : 0;
    if (findInvalid(text) != expected) ADD_FAILURE() << std::hex << static_cast<unsigned>(c);
    if (isCharacter) all += text;
  }
  EXPECT_EQ(findInvalid(all), kAllValid);
  EXPECT_EQ(findInvalid(""), kAllValid);
}

TEST(FindInvalid, RefusesWhatIsNotUTF8) {
  const std::string cases[] = {
      "\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xF5\x80\x80\x80", "\xFE", "\xFF",
      // Too long for their character.
      "\xE0\x80\x80", "\xE0\x9F\xBF", "\xF0\x80\x80\x80", "\xF0\x8F\xBF\xBF",
      // Surrogates, and above the last character.
      "\xED\xA0\x80", "\xED\xBF\xBF", "\xF4\x90\x80\x80",
      // Cut off.
      "\xC3", "\xE2", "\xE2\x82", "\xF0", "\xF0\x9F", "\xF0\x9F\x8C", "\xED", "\xED\x9F",
      // Continued by something else.
      "\xC3x", "\xC3\xC3", "\xE2x\xAC", "\xE2\x82x", "\xF0\x9F\x8Cx"};
  for (const std::string& octets : cases) {
    for (const std::string& rest : {std::string(), std::string("a"), std::string(20, 'b')}) {
      for (std::size_t before = 0; before < 20; ++before) {
        const std::string text = std::string(before, 'a') + octets + rest;
        EXPECT_EQ(findInvalid(text), before);
      }
    }
  }
}

// Eight octets are examined at a time: each place among them, at each alignment.
TEST(FindInvalid, FindsOneOctetAnywhere) {
  const std::string buffer(64, 'a');
  for (std::size_t offset = 0; offset < 8; ++offset) {
    for (std::size_t length = 0; length < 40; ++length) {
      EXPECT_EQ(findInvalid(std::string_view(buffer).substr(offset, length)), kAllValid);
      for (std::size_t place = 0; place < length; ++place) {
        for (const char bad : {'\0', '\x01', '\x1F', '\x80', '\xFF'}) {
          std::string text = buffer;
          text[offset + place] = bad;
          EXPECT_EQ(findInvalid(std::string_view(text).substr(offset, length)), place);
        }
        for (const char good : {'\t', '\n', '\r', ' ', '\x7F'}) {
          std::string text = buffer;
          text[offset + place] = good;
          EXPECT_EQ(findInvalid(std::string_view(text).substr(offset, length)), kAllValid);
        }
      }
    }
  }
}

// Long texts are looked at many octets at a time, short ones are not.
TEST(FindInvalid, FindsInLongTextsWhatItFindsInShortOnes) {
  // On both sides of each border: of leads, and of second octets that not every lead may have.
  const std::string octets =
      "\x1F\n\r "
      "a\x7F\x80\x8F\x90\x9F\xA0\xBD\xBE\xBF\xC0\xC1\xC2\xDF\xE0\xE1\xEC\xED\xEE\xEF\xF0\xF1"
      "\xF3\xF4\xF5\xFF";
  const std::size_t count = octets.size();
  const std::string plain(80, 'a');
  for (std::size_t i = 0; i < count * count * count * count; ++i) {
    const std::string sequence = {octets[i % count], octets[i / count % count],
                                  octets[i / count / count % count],
                                  octets[i / count / count / count]};
    // A different place in a text of a different length each time.
    const std::string_view front = std::string_view(plain).substr(0, 15 + i % 53);
    for (const std::string_view behind : {"", "aaaa"}) {
      const std::string text = std::string(front).append(sequence).append(behind);
      const std::size_t invalid = findInvalid(sequence + std::string(behind));
      const std::size_t expected = invalid == kAllValid ? kAllValid : front.size() + invalid;
      ASSERT_EQ(findInvalid(text), expected) << testing::PrintToString(text);
#ifdef TAVRIN_HAS_AVX2
      if (hasAVX2()) {
        ASSERT_EQ(areCharacters(text), expected == kAllValid) << testing::PrintToString(text);
      }
#endif
    }
  }
}

TEST(FindInvalid, TellsTheFirstOfSeveral) {
  EXPECT_EQ(findInvalid("\xC3\xA4\x01\x02"), 2U);
  EXPECT_EQ(findInvalid("12345678\x1F\x01"), 8U);
}

TEST(DescribeInvalid, NamesTheCharacterOrTheOctet) {
  EXPECT_EQ(describeInvalid("a\x01", 1), "character U+0001");
  EXPECT_EQ(describeInvalid(std::string(1, '\0'), 0), "character U+0000");
  EXPECT_EQ(describeInvalid("\xEF\xBF\xBE", 0), "character U+FFFE");
  EXPECT_EQ(describeInvalid("\xFF", 0), "UTF-8 octet 0xFF");
  EXPECT_EQ(describeInvalid("\xC3", 0), "UTF-8 octet 0xC3");
  EXPECT_EQ(describeInvalid("\xED\xA0\x80", 0), "UTF-8 octet 0xED");
}

// --- Names ---

// Productions 4 and 4a, as the standard lists them.
bool startsName(char32_t c) {
  return c == ':' || (c >= 'A' && c <= 'Z') || c == '_' || (c >= 'a' && c <= 'z') ||
         (c >= 0xC0 && c <= 0xD6) || (c >= 0xD8 && c <= 0xF6) || (c >= 0xF8 && c <= 0x2FF) ||
         (c >= 0x370 && c <= 0x37D) || (c >= 0x37F && c <= 0x1FFF) || c == 0x200C || c == 0x200D ||
         (c >= 0x2070 && c <= 0x218F) || (c >= 0x2C00 && c <= 0x2FEF) ||
         (c >= 0x3001 && c <= 0xD7FF) || (c >= 0xF900 && c <= 0xFDCF) ||
         (c >= 0xFDF0 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0xEFFFF);
}

bool continuesName(char32_t c) {
  return startsName(c) || c == '-' || c == '.' || (c >= '0' && c <= '9') || c == 0xB7 ||
         (c >= 0x300 && c <= 0x36F) || c == 0x203F || c == 0x2040;
}

/// Whether a character is one of few that stand for their neighbours: away from the borders of
/// ranges, one of a hundred.
bool isWorthTesting(char32_t c) {
  return c < 0x3100 || (c >= 0xD700 && c < 0x10100) || (c >= 0xEFF00 && c < 0xF0100) ||
         c >= 0x10FF00 || c % 97 == 0;
}

TEST(Names, KnowTheirCharacters) {
  for (char32_t c = 0; c < 0x110000; ++c) {
    if (!isWorthTesting(c)) continue;
    const std::string text = utf8(c);
    const bool isRight = isName(text) == startsName(c) && isName("a" + text) == continuesName(c) &&
                         isNmtoken(text) == continuesName(c) &&
                         isNCName(text) == (startsName(c) && c != ':');
    if (!isRight) ADD_FAILURE() << std::hex << static_cast<unsigned>(c);
  }
}

TEST(Names, MustBeUTF8AndNotEmpty) {
  for (const char* text : {"", "\xC3", "a\xC3", "\xED\xA0\x80", "a\xFF", "\xC1\x81", "a b", " a"}) {
    EXPECT_FALSE(isName(text)) << text;
    EXPECT_FALSE(isNCName(text)) << text;
    EXPECT_FALSE(isQName(text)) << text;
    EXPECT_FALSE(isNmtoken(text)) << text;
    EXPECT_FALSE(isTarget(text)) << text;
  }
}

TEST(Names, DifferInTheirColons) {
  const struct {
    const char* text;
    bool isName;
    bool isNCName;
    bool isQName;
    bool isNmtoken;
  } cases[] = {
      {"a", true, true, true, true},      {"a:b", true, false, true, true},
      {":", true, false, false, true},    {":a", true, false, false, true},
      {"a:", true, false, false, true},   {"a:b:c", true, false, false, true},
      {"a::b", true, false, false, true}, {"a:1", true, false, false, true},
      {"1:a", false, false, false, true}, {"1", false, false, false, true},
      {"-", false, false, false, true},   {"a-1._", true, true, true, true},
      {"p:a-1", true, false, true, true},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(isName(c.text), c.isName) << c.text;
    EXPECT_EQ(isNCName(c.text), c.isNCName) << c.text;
    EXPECT_EQ(isQName(c.text), c.isQName) << c.text;
    EXPECT_EQ(isNmtoken(c.text), c.isNmtoken) << c.text;
  }
}

TEST(Target, IsAnythingButXml) {
  for (const char* text : {"xml", "XML", "Xml", "xMl", "xmL", "1", "a:b"}) {
    EXPECT_FALSE(isTarget(text)) << text;
  }
  for (const char* text : {"t", "xmlx", "xm", "axml", "xml-stylesheet", "\xC3\xA4"}) {
    EXPECT_TRUE(isTarget(text)) << text;
  }
}

// Production 13.
TEST(PublicId, HasItsOwnCharacters) {
  const std::string allowed =
      " \r\nabcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-'()+,./:=?;!*#@$_%";
  for (int c = 0; c < 256; ++c) {
    const std::string text(1, static_cast<char>(c));
    EXPECT_EQ(isPublicId(text), allowed.find(text) != std::string::npos) << c;
  }
  EXPECT_TRUE(isPublicId(""));
  EXPECT_TRUE(isPublicId(allowed));
  EXPECT_FALSE(isPublicId("a\"b"));
}

TEST(SystemId, HoldsQuotesOfOneKindAtMost) {
  EXPECT_TRUE(isSystemId(""));
  EXPECT_TRUE(isSystemId("http://x/?a=1&b=<>"));
  EXPECT_TRUE(isSystemId("'''"));
  EXPECT_TRUE(isSystemId("\"\""));
  EXPECT_FALSE(isSystemId("'a\""));
  EXPECT_FALSE(isSystemId("a\x01"));
  EXPECT_FALSE(isSystemId("\xFF"));
}

TEST(Version, IsOneAndDigits) {
  for (const char* right : {"1.0", "1.1", "1.10", "1.007"}) EXPECT_TRUE(isVersion(right)) << right;
  for (const char* wrong : {"", "1", "1.", "2.0", "1.0 ", " 1.0", "1.a", "1.-1", "1.0.0", "11"}) {
    EXPECT_FALSE(isVersion(wrong)) << wrong;
  }
}

}  // namespace
