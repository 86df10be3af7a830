#include "xml/Escapes.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "xml/Characters.h"

namespace {

using namespace Tavrin::xml;

std::string escaped(const Escapes& escapes, const std::string& text) {
  std::string out = "before ";
  EXPECT_EQ(escapes.append(out, text), kAllValid);
  EXPECT_EQ(out.substr(0, 7), "before ");
  return out.substr(7);
}

TEST(Escapes, AreThoseOfTheirPlace) {
  const std::string text = "<>&'\"%\t\n\r\xC3\xA4";
  EXPECT_EQ(escaped(kTextEscapes, text), "&lt;&gt;&amp;'\"%\t\n&#xD;\xC3\xA4");
  EXPECT_EQ(escaped(kApostropheEscapes, text), "&lt;>&amp;&apos;\"%&#x9;&#xA;&#xD;\xC3\xA4");
  EXPECT_EQ(escaped(kQuotationMarkEscapes, text), "&lt;>&amp;'&quot;%&#x9;&#xA;&#xD;\xC3\xA4");
  EXPECT_EQ(escaped(kEntityValueEscapes, text), "<>&#38;'&#34;&#37;\t\n&#13;\xC3\xA4");
  EXPECT_EQ(&attributeEscapes('"'), &kQuotationMarkEscapes);
  EXPECT_EQ(&attributeEscapes('\''), &kApostropheEscapes);
}

TEST(Escapes, AreFoundAnywhere) {
  for (std::size_t length = 0; length < 90; ++length) {
    const std::string plain(length, 'a');
    EXPECT_EQ(escaped(kTextEscapes, plain), plain);
    for (std::size_t place = 0; place < length; ++place) {
      const std::string begin(place, 'a');
      const std::string end(length - place - 1, 'a');
      EXPECT_EQ(escaped(kTextEscapes, begin + '<' + end), begin + "&lt;" + end);
      EXPECT_EQ(escaped(kTextEscapes, begin + "\xC3\xA4<" + end), begin + "\xC3\xA4&lt;" + end);
      EXPECT_EQ(escaped(kTextEscapes, begin + "&\xC3\xA4" + end), begin + "&amp;\xC3\xA4" + end);
      std::string out;
      EXPECT_EQ(kTextEscapes.append(out, begin + '\x01' + end), place);
      out.clear();
      EXPECT_EQ(kTextEscapes.append(out, "<\xC3\xA4" + begin + "\xFF" + end), place + 3);
    }
  }
}

TEST(Escapes, LeaveATextVerbatimThatNeedsNone) {
  for (std::size_t length = 0; length < 115; ++length) {
    const std::string plain(length, 'a');
    EXPECT_TRUE(kTextEscapes.isVerbatim(plain)) << length;
    EXPECT_TRUE(kTextEscapes.isVerbatim(plain + "\n\t'\"%")) << length;
    EXPECT_TRUE(kQuotationMarkEscapes.isVerbatim(plain + "'>%")) << length;
    for (std::size_t place = 0; place < length; ++place) {
      std::string text = plain;
      for (const char c : {'<', '>', '&', '\r', '\x01', '\xFF', '\xA4'}) {
        text[place] = c;
        EXPECT_FALSE(kTextEscapes.isVerbatim(text)) << length << ' ' << place;
      }
      for (const char c : {'<', '&', '"', '\t', '\n', '\r'}) {
        text[place] = c;
        EXPECT_FALSE(kQuotationMarkEscapes.isVerbatim(text)) << length << ' ' << place;
      }
#ifdef TAVRIN_HAS_AVX2
      const std::string foreign = plain.substr(place) + "\xC3\xA4\xE3\x81\x82" + plain;
      EXPECT_EQ(kTextEscapes.isVerbatim(foreign), foreign.size() >= kLeastTogether && hasAVX2());
#endif
    }
  }
}

// --- Copies ---

/// What is copied into a room of so many octets, which nothing may exceed; or nothing.
std::optional<std::string> copied(const Escapes& escapes, const std::string& text,
                                  std::size_t room) {
  const auto octets = std::make_unique<char[]>(room);
  char* const end = escapes.copy(text, octets.get(), octets.get() + room);
  if (end == nullptr) return std::nullopt;
  return std::string(octets.get(), end);
}

TEST(Escapes, AreWrittenIntoACopyWhereverTheyStand) {
  for (std::size_t length = 1; length < 110; ++length) {
    const std::string plain(length, 'a');
    EXPECT_EQ(copied(kTextEscapes, plain, length), plain);
    EXPECT_EQ(copied(kTextEscapes, plain, length - 1), std::nullopt);
    EXPECT_EQ(copied(kTextEscapes, "\xC3\xA4\n" + plain, 9 * length + 24), "\xC3\xA4\n" + plain);
    const std::size_t room = 8 * length + 40;
    for (std::size_t place = 0; place < length; ++place) {
      const std::string begin(place, 'a');
      const std::string end(length - place - 1, 'b');
      EXPECT_EQ(copied(kTextEscapes, begin + '<' + end, room), begin + "&lt;" + end);
      EXPECT_EQ(copied(kTextEscapes, begin + "<\r>" + end, room), begin + "&lt;&#xD;&gt;" + end);
      EXPECT_EQ(copied(kApostropheEscapes, begin + "'\t" + end, room), begin + "&apos;&#x9;" + end);
      EXPECT_EQ(copied(kTextEscapes, begin + "\xED\x95\x9C&" + end, room),
                begin + "\xED\x95\x9C&amp;" + end);
      for (const char* const invalid : {"\x01", "\xFF", "\xC3", "\xE2\x82", "\xED\xA0\x80", "\xC3<",
                                        "\xE2\x82&", "\xF0\x9F\x98<"}) {
        EXPECT_EQ(copied(kTextEscapes, begin + invalid + end, room), std::nullopt);
      }
    }
  }
  EXPECT_EQ(copied(kTextEscapes, "", 0), "");
}

/// What a text becomes when each octet is looked at by itself.
std::string escapedOneByOne(const Escapes& escapes, const std::string& text) {
  std::string out;
  for (const char c : text) {
    const std::string_view reference = escapes.reference(c);
    out += reference.empty() ? std::string_view(&c, 1) : reference;
  }
  return out;
}

TEST(Escapes, AreRightInAnyText) {
  // Pieces that are valid by themselves, in the middle or at the end, and few that never are.
  const std::vector<std::string> pieces = {"a",
                                           "b c d e f",
                                           "\n",
                                           "\t",
                                           "\r",
                                           "<",
                                           ">",
                                           "&",
                                           "'",
                                           "\xC3\xA4",
                                           "\xE2\x82\xAC",
                                           "\xF0\x9F\x98\x80",
                                           "\xED\x95\x9C",
                                           "\xEF\xBF\xBD",
                                           "0123456789abcdef",
                                           "\xC3",
                                           "\xE2\x82",
                                           "\xA4",
                                           "\x01"};
  std::mt19937 random(20);
  const auto below = [&random](std::size_t limit) { return random() % limit; };
  unsigned invalid = 0;
  for (int i = 0; i < 200000; ++i) {
    // A few kinds of pieces at a time, so that there are runs of each.
    const std::size_t first = below(pieces.size());
    const std::size_t kinds = 1 + below(4);
    std::string text;
    for (std::size_t count = below(40); count > 0; --count) {
      text += pieces[(first + 7 * below(kinds)) % pieces.size()];
    }
    for (const Escapes& escapes : {kTextEscapes, kApostropheEscapes}) {
      std::string out;
      ASSERT_EQ(escapes.append(out, text), findInvalid(text)) << testing::PrintToString(text);
      if (findInvalid(text) != kAllValid) {
        ++invalid;
        ASSERT_FALSE(escapes.isVerbatim(text)) << testing::PrintToString(text);
        ASSERT_EQ(copied(escapes, text, 8 * text.size()), std::nullopt);
        continue;
      }
      ASSERT_EQ(out, escapedOneByOne(escapes, text));
      ASSERT_EQ(copied(escapes, text, 8 * text.size()), out);
      ASSERT_EQ(copied(escapes, text, below(out.size() + 20)).value_or(out), out);
      if (escapes.isVerbatim(text)) {
        ASSERT_EQ(out, text);
      }
    }
  }
  EXPECT_GT(invalid, 50000U);
  EXPECT_LT(invalid, 350000U);
}

}  // namespace
