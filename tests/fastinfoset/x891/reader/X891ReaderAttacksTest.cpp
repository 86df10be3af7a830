#include <Allocations.h>
#include <gtest/gtest.h>

#include "X891ReaderSupport.h"

// Documents whose one start tag refers to a long string again and again: they must be stopped
// before all of the tag is in memory.

namespace x891_test {
namespace {

const char* const kAmplified =
    "More octets delivered for each octet read than the limit allows (property "
    "amplification-factor)";
constexpr std::size_t kMebi = std::size_t{1} << 20;
constexpr int kRepeated = 2000;

/// Reads a document that may deliver 1 MiB, and expects that it is stopped with little memory.
void expectStopped(const std::string& document) {
  Tavrin::XMLReader_X891 reader;
  double factor = 2;
  std::uint64_t threshold = kMebi;
  reader.setProperty(Tavrin::properties::amplificationFactor, &factor);
  reader.setProperty(Tavrin::properties::amplificationThreshold, &threshold);
  std::istringstream stream(document);
  const std::size_t before = allocations::inUse();
  allocations::resetPeak();
  const std::string outcome = outcomeOf([&] { reader.parse(stream); });
  EXPECT_EQ("SAXParseException: " + std::string(kAmplified),
            outcome.substr(0, 19 + std::string(kAmplified).size()))
      << outcome;
  EXPECT_LT(allocations::peak() - before, 4 * kMebi);
}

std::string name(int i) { return "n" + std::to_string(10000 + i); }

TEST(X891ReaderAttacks, ManyAttributesWithOneLongValue) {
  std::string document = x891_test::document("7C 00 'a' 78 00 'b' 4C") + bigEndian(10000 - 265, 4) +
                         std::string(10000, 'x');
  for (int i = 0; i < kRepeated; ++i) document += octets("78 05") + name(i) + octets("80");
  expectStopped(document + octets("FF F0"));
}

TEST(X891ReaderAttacks, ManyAttributesInOneLongNamespace) {
  std::string document = x891_test::document("78 CF 00 'p' 60") + bigEndian(10000 - 321, 4) +
                         std::string(10000, 'u') + octets("F0 3C 00 'a'");
  for (int i = 0; i < kRepeated; ++i) document += octets("7B 81 81 05") + name(i) + octets("FF");
  expectStopped(document + octets("FF F0"));
}

TEST(X891ReaderAttacks, ManyDeclarationsOfOneLongNamespace) {
  std::string document =
      x891_test::document("38 CF 00 'p' 60") + bigEndian(10000 - 321, 4) + std::string(10000, 'u');
  for (int i = 0; i < kRepeated; ++i) document += octets("CF 05") + name(i) + octets("81");
  expectStopped(document + octets("F0 3C 00 'a' FF"));
}

TEST(X891ReaderAttacks, OneLongPrefixDeclaredAgainAndAgain) {
  std::string document = x891_test::document("38 CF 60") + bigEndian(10000 - 321, 4) +
                         std::string(10000, 'p') + octets("00 'u'");
  document += octets("F0 3C 00 'a'");
  // In elements inside each other; an element declares it once.
  for (int i = 0; i < kRepeated; ++i) document += octets("38 CF 81 81 F0 00");
  expectStopped(document);
}

}  // namespace
}  // namespace x891_test
