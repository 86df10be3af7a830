#include "xml/simd/OctetClasses.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace Tavrin::xml {
namespace {

const std::string kFaults = "<&'\t\r";

OctetClasses classesWithFaults() {
  OctetClasses classes;
  for (const char fault : kFaults) classes.addFault(fault);
  return classes;
}

bool isContinuation(unsigned octet) { return octet >= 0x80 && octet < 0xC0; }

/// Whether an octet is a fault wherever it stands.
bool isAlwaysFault(unsigned octet, const std::string& faults) {
  if (faults.find(static_cast<char>(octet)) != std::string::npos) return true;
  if (octet < 0x20) return octet != '\t' && octet != '\n';
  if (octet < 0xC0) return false;
  return octet < 0xC2 || octet == 0xE0 || octet == 0xED || octet >= 0xEF;
}

TEST(OctetClasses, AreThoseOfEveryOctet) {
  const OctetClasses withFaults = classesWithFaults();
  for (unsigned octet = 0; octet < 0x100; ++octet) {
    for (const bool hasFaults : {false, true}) {
      const unsigned found = (hasFaults ? withFaults : OctetClasses()).find(octet);
      const bool isFault = isAlwaysFault(octet, hasFaults ? kFaults : "");
      EXPECT_EQ(found == OctetClasses::kContinuation, isContinuation(octet)) << octet;
      EXPECT_EQ(found != 0, isFault || isContinuation(octet)) << octet;
    }
  }
}

TEST(OctetClasses, TakeAnyControlAndSignForAFault) {
  for (unsigned fault = 0; fault < 0x40; ++fault) {
    OctetClasses classes;
    classes.addFault(static_cast<char>(fault));
    for (unsigned octet = 0; octet < 0x100; ++octet) {
      const bool isFault = isAlwaysFault(octet, std::string(1, static_cast<char>(fault)));
      EXPECT_EQ(classes.find(octet) != 0, isFault || isContinuation(octet))
          << octet << " with " << fault;
    }
  }
}

TEST(OctetClasses, TakeNoOctetForAFaultThatSomeCharacterHas) {
  const OctetClasses classes(OctetClasses::Characters::all);
  for (unsigned octet = 0; octet < 0x100; ++octet) {
    const bool isControl = octet < 0x20 && octet != '\t' && octet != '\n' && octet != '\r';
    const bool isNever = octet == 0xC0 || octet == 0xC1 || octet >= 0xF5;
    EXPECT_EQ(classes.find(octet) != 0, isControl || isNever || isContinuation(octet)) << octet;
  }
}

#ifdef TAVRIN_HAS_AVX2

/// Where the first fault stands when each octet is looked at by itself.
std::size_t findOneByOne(std::string_view text, std::size_t begin, const std::string& faults) {
  const auto octetAt = [text](std::size_t i) {
    return unsigned(static_cast<unsigned char>(text[i]));
  };
  for (std::size_t i = begin; i < text.size(); ++i) {
    const bool isWanted =
        (i > begin && octetAt(i - 1) >= 0xC0) || (i > begin + 1 && octetAt(i - 2) >= 0xE0);
    if (isWanted != isContinuation(octetAt(i)) || isAlwaysFault(octetAt(i), faults)) return i;
  }
  return text.size();
}

bool isCut(std::string_view text) {
  const auto octetFromEnd = [text](std::size_t i) {
    return unsigned(static_cast<unsigned char>(text[text.size() - i]));
  };
  return octetFromEnd(1) >= 0xC0 || octetFromEnd(2) >= 0xE0;
}

/// Compares with looking at each octet, in memory that ends where the text does.
void compare(const OctetClasses& classes, const std::string& text, std::size_t begin) {
  const std::vector<char> octets(text.begin(), text.end());
  const std::string_view exact(octets.data(), octets.size());
  ASSERT_EQ(findFault(classes, exact, begin), findOneByOne(exact, begin, kFaults))
      << testing::PrintToString(text) << " from " << begin;
  if (begin != 0) return;
  ASSERT_EQ(areFaultless(classes, exact),
            findOneByOne(exact, 0, kFaults) == exact.size() && !isCut(exact))
      << testing::PrintToString(text);
}

TEST(OctetClasses, FindTheFirstFaultAtEveryPlaceFromEveryBegin) {
  if (!hasAVX2()) GTEST_SKIP() << "This processor does not have AVX2.";
  const OctetClasses classes = classesWithFaults();
  for (std::size_t length = kLeastTogether; length < 120; ++length) {
    for (std::size_t at = 0; at < length; ++at) {
      std::string text(length, 'a');
      text[at] = '<';
      compare(classes, text, 0);
      compare(classes, text, at);
      if (at + 1 < length) compare(classes, text, at + 1);
      text[at] = '\xC3';
      if (at + 1 < length) text[at + 1] = '\xA9';
      compare(classes, text, 0);
      text[at] = 'a';
      compare(classes, text, 0);  // A continuation that none wants.
    }
  }
}

TEST(OctetClasses, FindTheFirstFaultInAnyText) {
  if (!hasAVX2()) GTEST_SKIP() << "This processor does not have AVX2.";
  const OctetClasses classes = classesWithFaults();
  const std::vector<std::string> easy = {
      "a",        "bcdefghi",     "\n",           " ", "\xC3\xA9",
      "\xDF\xBF", "\xE3\x81\x82", "\xEE\x80\x80", "]", "\xD0\xB6\xD0\xB8"};
  const std::vector<std::string> hard = {"<",    "&",    "'",        "\t",       "\r",
                                         "\x1F", "\xFF", "\xA9",     "\xC3",     "\xE3\x81",
                                         "\xC1", "\xED", "\xF0\x9F", "\xEF\xBF", "\xE0\xA0"};
  std::mt19937 random(21);
  const auto below = [&random](std::size_t limit) { return random() % limit; };
  unsigned faultless = 0;
  for (int i = 0; i < 100000; ++i) {
    std::string text;
    const std::size_t pieces = 1 + below(60);
    while (text.size() < kLeastTogether || below(pieces) != 0) text += easy[below(easy.size())];
    const std::size_t begin = text.size();
    if (below(3) != 0) text += hard[below(hard.size())];
    while (below(pieces) != 0) text += easy[below(easy.size())];
    compare(classes, text, 0);
    compare(classes, text, begin);
    if (areFaultless(classes, text)) ++faultless;
  }
  EXPECT_GT(faultless, 20000U);
  EXPECT_LT(faultless, 80000U);
}

#endif

}  // namespace
}  // namespace Tavrin::xml
