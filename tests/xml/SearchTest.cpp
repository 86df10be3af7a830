#include <gtest/gtest.h>

#include <random>
#include <string>

#include "xml/Characters.h"
#include "xml/simd/OctetClasses.h"
#include "xml/simd/Search.h"

// Searches against what one writes by hand, octet for octet, for texts of all short lengths.

namespace {

using namespace Tavrin;

/// A text of a few octets, most of which are like each other.
std::string randomText(std::mt19937& numbers, std::size_t size, const std::string& octets) {
  std::string text(size, 'x');
  for (unsigned i = 0; i < numbers() % 4 && size > 0; ++i) {
    text[numbers() % size] = octets[numbers() % octets.size()];
  }
  return text;
}

template <bool passesTabs, char... sought>
void expectFound(const std::string& text) {
  std::size_t first = 0;
  const auto passes = [](char c) {
    const auto octet = static_cast<unsigned char>(c);
    return ((octet >= 0x20 && octet < 0x80) || (passesTabs && c == '\t')) && ((c != sought) && ...);
  };
  while (first < text.size() && passes(text[first])) ++first;
  const char* const end = text.data() + text.size();
  const char* const found = xml::findOctet<passesTabs, sought...>(text.data(), end);
  ASSERT_EQ(first, static_cast<std::size_t>(found - text.data())) << text;
}

TEST(Search, FindsTheFirstOctet) {
  std::mt19937 numbers(1);
  const std::string octets("<&>'\"]-?\t\n\r\x1F \x7F\x80\xBF\xC3\xFF\0", 19);
  for (int round = 0; round < 200; ++round) {
    for (std::size_t size = 0; size < 70; ++size) {
      const std::string text = randomText(numbers, size, octets);
      expectFound<true, '<', '&', '>'>(text);
      expectFound<false, '"', '\'', '<', '&'>(text);
      expectFound<true, ']'>(text);
      if (HasFatalFailure()) return;
    }
  }
}

TEST(Search, Counts) {
  std::mt19937 numbers(2);
  for (std::size_t size = 0; size < 9000; size += size < 100 ? 1 : 997) {
    std::string text(size, '\n');
    for (char& c : text) c = "\n\nx\xC3\xA4"[numbers() % 5];
    std::size_t lines = 0;
    std::size_t characters = 0;
    for (const char c : text) {
      lines += c == '\n' ? 1 : 0;
      characters += (static_cast<unsigned char>(c) & 0xC0) != 0x80 ? 1 : 0;
    }
    const char* const end = text.data() + text.size();
    ASSERT_EQ(lines, xml::countOctet('\n', text.data(), end)) << size;
    ASSERT_EQ(characters, xml::countCharacters(text.data(), end)) << size;
  }
  // More than a counter of eight bits holds.
  const std::string text(100003, '\n');
  EXPECT_EQ(text.size(), xml::countOctet('\n', text.data(), text.data() + text.size()));
}

TEST(FirstCharacter, IsDecodedOrCut) {
  const auto expect = [](const std::string& text, char32_t character, std::size_t octets,
                         bool isCut = false) {
    const xml::FirstCharacter first = xml::firstCharacter(text);
    EXPECT_EQ(character, first.character) << text;
    EXPECT_EQ(octets, first.octets) << text;
    EXPECT_EQ(isCut, first.isCut) << text;
  };
  expect("a", 'a', 1);
  expect("\tx", '\t', 1);
  expect("\x01", 0, 0);
  expect("\x7F", 0x7F, 1);
  expect("\xC3\xA4", 0xE4, 2);
  expect("\xC3", 0, 0, true);
  expect("\xC3x", 0, 0);
  expect("\xE4\xB8\x80z", 0x4E00, 3);
  expect("\xE4\xB8", 0, 0, true);
  expect("\xEF\xBF\xBD", 0xFFFD, 3);
  expect("\xEF\xBF\xBE", 0, 0);
  expect("\xED\xA0\x80", 0, 0);
  expect("\xF0\x9F\x8C\x8A", 0x1F30A, 4);
  expect("\xF0\x9F\x8C", 0, 0, true);
  expect("\xF4\x90\x80\x80", 0, 0);
  expect("\xF5", 0, 0);
  expect("\x80", 0, 0);
}

#ifdef TAVRIN_HAS_AVX2

TEST(FindInCharacters, FindsTheFirstOctetOfWhatIsWrong) {
  if (!xml::hasAVX2()) GTEST_SKIP() << "This processor has no AVX2.";
  xml::OctetClasses classes(xml::OctetClasses::Characters::all);
  classes.addFault('<');
  classes.addFault('\n');
  std::mt19937 numbers(3);
  const std::string characters[] = {
      "x", "\t", "\xC3\xA4", "\xE4\xB8\x80", "\xE0\xA4\x95", "\xF0\x9F\x8C\x8A", "\xEF\xBF\xBD"};
  const std::string faults[] = {"<",        "\n",           "\x01",         "\x80",
                                "\xC0\x80", "\xED\xA0\x80", "\xEF\xBF\xBE", "\xF5\x80\x80\x80",
                                "\xC3",     "\xE4\xB8",     "\xF0\x9F\x8C", "\xF4\x90\x80\x80"};
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    const std::size_t before = numbers() % 60;
    while (text.size() < before) text += characters[numbers() % std::size(characters)];
    const std::size_t fault = text.size();
    if (round % 4 != 0) text += faults[numbers() % std::size(faults)];
    const std::size_t end = text.size();
    for (unsigned i = 0; i < numbers() % 40; ++i) text += characters[numbers() % 2];
    if (text.size() < xml::kLeastTogether) continue;
    const std::size_t expected = end == fault ? text.size() : fault;
    ASSERT_EQ(expected, xml::findInCharacters(classes, text)) << round;
  }
}

#endif

}  // namespace
