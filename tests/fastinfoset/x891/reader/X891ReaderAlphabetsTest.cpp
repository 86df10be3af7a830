#include <gtest/gtest.h>

#include "X891ReaderSupport.h"

// Strings in restricted alphabets (X.891, 7.17.6 and clause 9).

namespace x891_test {
namespace {

const EventLog::Lines kStarted = {"startDocument()", "startElement(, a, a, [])"};
const char* const kWrongCode = "Error when decoding restricted alphabet";

/// A document with one alphabet of its own, which has the field 15, up to the content of `a`.
std::string withAlphabet(const std::string& characters) {
  std::string all = fromComponents("20 08 00 00");
  if (characters.size() <= 64) {
    all += static_cast<char>(characters.size() - 1);
  } else if (characters.size() <= 320) {
    all += octets("40") + static_cast<char>(characters.size() - 65);
  } else {
    all += octets("60") + bigEndian(characters.size() - 321, 4);
  }
  return all + octets("3C 00 'a'");
}

/// A chunk of one to 258 octets in that alphabet.
std::string chunk(const std::string& data) {
  std::string all = octets("88");
  if (data.size() <= 2) return all + static_cast<char>(0x3C | (data.size() - 1)) + data;
  return all + octets("3E") + static_cast<char>(data.size() - 3) + data;
}

/// withAlphabet, with the characters behind their length.
std::string documentIn(const std::string& characters, const std::string& chunks) {
  std::string all = withAlphabet(characters);
  all.insert(all.size() - 3, characters);
  return all + chunks + octets("FF");
}

TEST(X891ReaderAlphabets, Numeric) {
  // 0123456789-+.E and a space, four bits each; 15 fills the last octet. Chunk: 88, the field 0 and
  // a length of 8, which is 10 and the octet 05.
  EXPECT_EQ(wholeContent({"characters(0123456789-+.E )"}),
            readNew(documentOfContent("88 02 05 01 23 45 67 89 AB CD EF")));
  EXPECT_EQ(wholeContent({"characters(12.5)", "characters(123)", "characters(7)"}),
            readNew(documentOfContent("88 01 12 C5 88 01 12 3F 88 00 7F")));
}

TEST(X891ReaderAlphabets, DateAndTime) {
  // 0123456789-:TZ and a space.
  EXPECT_EQ(wholeContent({"characters(0123456789-:TZ )"}),
            readNew(documentOfContent("88 06 05 01 23 45 67 89 AB CD EF")));
  EXPECT_EQ(wholeContent({"characters(2003-02-03)"}),
            readNew(documentOfContent("88 06 02 20 03 A0 2A 03")));
}

TEST(X891ReaderAlphabets, StandInAllStrings) {
  EXPECT_EQ(wholeContent({"comment(12.5)", "processingInstruction(p, 2003-02-03)"}),
            readNew(documentOfContent("E2 20 01 12 C5 E1 00 'p' 20 14 20 03 A0 2A 03")));
  EXPECT_EQ(whole({"startElement(, a, a, [{, b, b, CDATA, 12.5}])", "endElement(, a, a)"}),
            readNew(document("7C 00 'a' 78 00 'b' 20 01 12 C5 FF F0")));
}

TEST(X891ReaderAlphabets, StopAtTheCodeOfAllOnes) {
  EXPECT_EQ(wholeContent({"characters(1)"}), readNew(documentOfContent("88 01 1F 23")));
  EXPECT_EQ(wholeContent({"characters(12)"}), readNew(documentOfContent("88 01 12 FF")));
}

TEST(X891ReaderAlphabets, MayGiveNoText) {
  // No event tells of empty text in content.
  EXPECT_EQ(wholeContent({}), readNew(documentOfContent("88 00 FF")));
  EXPECT_EQ(wholeContent({"comment()"}), readNew(documentOfContent("E2 20 00 FF")));
  EXPECT_EQ(whole({"startElement(, a, a, [{, b, b, CDATA, }])", "endElement(, a, a)"}),
            readNew(document("7C 00 'a' 78 00 'b' 20 00 FF FF F0")));
  // It is an entry like any other.
  EXPECT_EQ(wholeContent({"characters(x)", "characters(x)"}),
            readNew(documentOfContent("98 00 FF 90 'x' A0 A1")));
}

TEST(X891ReaderAlphabets, ReservedAreRefused) {
  // The fields 2 to 14; a chunk's is 00 and six bits.
  for (unsigned field = 2; field <= 14; ++field) {
    const std::string message = "Reserved restricted alphabet " + std::to_string(field + 1);
    expectRefused(document("3C 00 'a' 88") + static_cast<char>(field << 2), octets("12 FF"),
                  message, kStarted);
    expectRefused(document("3C 00 'a' E2 20") + static_cast<char>(field << 4), octets("12 FF"),
                  message, kStarted);
  }
}

TEST(X891ReaderAlphabets, UnknownAreRefused) {
  const char* const message = "Error when decoding string - invalid index";
  expectContentRefused("88 3C", "1F FF", message);      // 15
  expectContentRefused("8B FC", "1F FF", message);      // 255
  expectContentRefused("E2 20 F0", "1F FF", message);   // 15
  expectContentRefused("E2 2F F0", "1F FF", message);   // 255
  std::string one = documentIn("ab", octets("88 40"));  // 16, where only 15 is there
  one.pop_back();
  expectRefused(one, octets("1F FF"), message, kStarted);
}

TEST(X891ReaderAlphabets, HaveTheNumberOfBitsThatLeavesAllOnesFree) {
  const auto first = [](std::size_t count) {
    // Characters from U+0100 on.
    std::string characters;
    for (std::size_t i = 0; i < count; ++i) {
      characters += static_cast<char>(0xC4 + i / 64);
      characters += static_cast<char>(0x80 + i % 64);
    }
    return characters;
  };
  const auto text = [](std::initializer_list<int> codes) {
    std::string characters;
    for (const int code : codes) {
      characters += static_cast<char>(0xC4 + code / 64);
      characters += static_cast<char>(0x80 + code % 64);
    }
    return wholeContent({"characters(" + characters + ")"});
  };
  // 2 and 3 characters: two bits. 00 01 01 00; 10 01 00 11.
  EXPECT_EQ(text({0, 1, 1, 0}), readNew(documentIn(first(2), chunk(octets("14")))));
  EXPECT_EQ(text({2, 1, 0}), readNew(documentIn(first(3), chunk(octets("93")))));
  // 4 and 7: three bits. 011 000 11; 110 000 1 1|1.
  EXPECT_EQ(text({3, 0}), readNew(documentIn(first(4), chunk(octets("63")))));
  EXPECT_EQ(text({6, 0}), readNew(documentIn(first(7), chunk(octets("C3")))));
  // 15: four bits.
  EXPECT_EQ(text({14, 0}), readNew(documentIn(first(15), chunk(octets("E0")))));
  // 16: five bits. 01111 000|00 111111.
  EXPECT_EQ(text({15, 0}), readNew(documentIn(first(16), chunk(octets("78 3F")))));
  // 255: eight bits.
  EXPECT_EQ(text({254, 0, 1}), readNew(documentIn(first(255), chunk(octets("FE 00 01")))));
  EXPECT_EQ(text({7}), readNew(documentIn(first(255), chunk(octets("07 FF")))));
  // 256: nine bits. 011111111 0000000|00 111111.
  EXPECT_EQ(text({255, 0}), readNew(documentIn(first(256), chunk(octets("7F 80 3F")))));
  EXPECT_EQ(text({255}), readNew(documentIn(first(256), chunk(octets("7F FF")))));
}

TEST(X891ReaderAlphabets, HaveCharactersOfAllLengths) {
  // Of one to four octets: three bits each. 000 001 01|0 011 1111.
  EXPECT_EQ(wholeContent({"characters(a\xC3\xA9\xE2\x82\xAC\xF0\x9D\x84\x9E)"}),
            readNew(documentIn("a\xC3\xA9\xE2\x82\xAC\xF0\x9D\x84\x9E", chunk(octets("05 3F")))));
}

TEST(X891ReaderAlphabets, RefuseCodesWithoutACharacter) {
  // 10 of two characters; 100 of four; 11110 of 16.
  const struct {
    const char* characters;
    const char* data;
  } cases[] = {{"ab", "80"},
               {"ab", "08"},
               {"ab", "00 02"},
               {"abcd", "80"},
               {"abcd", "0A 00 00"},
               {"0123456789abcdef", "F0 00"},
               {"0123456789abcdef", "80"}};
  for (const auto& each : cases) {
    std::string read = documentIn(each.characters, chunk(octets(each.data)));
    read.pop_back();
    expectRefused(read, octets("FF"), kWrongCode, kStarted);
  }
}

TEST(X891ReaderAlphabets, RefuseAlphabetsThatAreNone) {
  // Too few characters, one that is there twice: when they are used.
  for (const char* characters : {"a", "aa", "aba", "abcdefgha", "\xC3\xA9\xC3\xA9"}) {
    const std::string read = documentIn(characters, octets("88 3C"));
    expectRefused(read.substr(0, read.size() - 1), octets("1F FF"), "Invalid restricted alphabet",
                  kStarted);
    EXPECT_EQ(wholeContent({}), readNew(documentIn(characters, "")));
  }
}

TEST(X891ReaderAlphabets, MayBeAsLargeAsALiteral) {
  // 65536 characters from U+10000 on: 17 bits each. Codes 65535 and 0: 01111111 11111111 1 0000000
  // 00000000 00 111111.
  std::string characters;
  for (unsigned i = 0; i < 65536; ++i) {
    characters += '\xF0';
    characters += static_cast<char>(0x90 + (i >> 12));
    characters += static_cast<char>(0x80 + (i >> 6 & 0x3F));
    characters += static_cast<char>(0x80 + (i & 0x3F));
  }
  EXPECT_EQ(wholeContent({"characters(\xF0\x9F\xBF\xBF\xF0\x90\x80\x80)"}),
            readNew(documentIn(characters, chunk(octets("7F FF 80 00 3F")))));
}

TEST(X891ReaderAlphabets, AreThoseOfTheirDocument) {
  X891Reader reader;
  EXPECT_EQ(wholeContent({"characters(ab)"}), reader.read(documentIn("ab", chunk(octets("1F")))));
  EXPECT_EQ(wholeContent({"characters(xy)"}), reader.read(documentIn("xyz", chunk(octets("1F")))));
}

}  // namespace
}  // namespace x891_test
