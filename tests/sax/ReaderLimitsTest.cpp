#include <Tavrin/Tavrin.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>

#include "HexOctets.h"
#include "WhatIsThrown.h"

namespace {

using namespace Tavrin;

constexpr std::uint64_t kAny = UINT64_MAX;
constexpr std::uint64_t kMiB = 1024 * 1024;

template <typename Value>
Value property(XMLReader& reader, const char* name) {
  return *static_cast<Value*>(reader.getProperty(name));
}

struct X891Case {
  using Reader = XMLReader_X891;
  static constexpr const char* kFactor = properties::amplificationFactor;
  static double& factor(Reader::Limits& limits) { return limits.amplificationFactor; }
  static Reader::Limits sample() { return {2, 3, 4, 5, 6}; }
  static void expectProperties(Reader& reader, const Reader::Limits& limits) {
    EXPECT_EQ(limits.amplificationFactor, property<double>(reader, kFactor));
    EXPECT_EQ(limits.amplificationThreshold,
              property<std::uint64_t>(reader, properties::amplificationThreshold));
    EXPECT_EQ(limits.maximumTableOctets,
              property<std::uint64_t>(reader, properties::maximumTableOctets));
    EXPECT_EQ(limits.maximumLiteralOctets,
              property<std::uint64_t>(reader, properties::maximumLiteralOctets));
    EXPECT_EQ(limits.maximumDepth, property<std::uint64_t>(reader, properties::maximumDepth));
  }
  static std::string twoDeep() { return octets("E0 00 00 01 00 3C 00 'a' 3C 00 'b' FF"); }
  static constexpr const char* kRefused =
      "SAXParseException: Elements nested deeper than 1 (property maximum-depth) (-1:9)";
};

struct XML10Case {
  using Reader = XMLReader_XML10;
  static constexpr const char* kFactor = properties::entityAmplificationFactor;
  static double& factor(Reader::Limits& limits) { return limits.entityAmplificationFactor; }
  static Reader::Limits sample() { return {2, 3, 4}; }
  static void expectProperties(Reader& reader, const Reader::Limits& limits) {
    EXPECT_EQ(limits.entityAmplificationFactor, property<double>(reader, kFactor));
    EXPECT_EQ(limits.entityAmplificationThreshold,
              property<std::uint64_t>(reader, properties::entityAmplificationThreshold));
    EXPECT_EQ(limits.maximumDepth, property<std::uint64_t>(reader, properties::maximumDepth));
  }
  static std::string twoDeep() { return "<a><b/></a>"; }
  static constexpr const char* kRefused =
      "SAXParseException: Elements nested deeper than 1 (property maximum-depth) (1:4)";
};

TEST(DefaultLimits, OfReadersAreThoseOfTheDocumentation) {
  const XMLReader_X891::Limits binary;
  EXPECT_EQ(1000, binary.amplificationFactor);
  EXPECT_EQ(8 * kMiB, binary.amplificationThreshold);
  EXPECT_EQ(512 * kMiB, binary.maximumTableOctets);
  EXPECT_EQ(1024 * kMiB, binary.maximumLiteralOctets);
  EXPECT_EQ(kAny, binary.maximumDepth);
  const XMLReader_XML10::Limits text;
  EXPECT_EQ(100, text.entityAmplificationFactor);
  EXPECT_EQ(8 * kMiB, text.entityAmplificationThreshold);
  EXPECT_EQ(kAny, text.maximumDepth);
}

template <typename Case>
class ReaderLimits : public testing::Test {
 protected:
  void expect(const typename Case::Reader::Limits& limits) {
    Case::expectProperties(reader, limits);
    typename Case::Reader other;
    other.setLimits(reader.getLimits());
    Case::expectProperties(other, limits);
  }

  typename Case::Reader reader;
};

using Cases = testing::Types<X891Case, XML10Case>;
TYPED_TEST_SUITE(ReaderLimits, Cases);

TYPED_TEST(ReaderLimits, OfANewReaderAreTheDefaults) { this->expect({}); }

TYPED_TEST(ReaderLimits, AreThoseOfTheProperties) {
  const auto sample = TypeParam::sample();
  this->reader.setLimits(sample);
  this->expect(sample);
  std::uint64_t depth = 7;
  this->reader.setProperty(properties::maximumDepth, &depth);
  auto changed = sample;
  changed.maximumDepth = 7;
  this->expect(changed);
  this->reader.setProperty(properties::maximumDepth, nullptr);
  changed.maximumDepth = kAny;
  this->expect(changed);
  this->reader.setLimits({});
  this->expect({});
}

TYPED_TEST(ReaderLimits, AreLeftAsTheyAreByAFactorBelowOne) {
  const auto sample = TypeParam::sample();
  this->reader.setLimits(sample);
  for (const double factor : {0.0, 0.99, -1.0, std::nan("")}) {
    typename TypeParam::Reader::Limits limits;
    TypeParam::factor(limits) = factor;
    EXPECT_EQ(
        "SAXException: Property \"" + std::string(TypeParam::kFactor) + "\" must be at least 1",
        thrown([&] { this->reader.setLimits(limits); }));
    this->expect(sample);
  }
}

TYPED_TEST(ReaderLimits, StopADocument) {
  typename TypeParam::Reader::Limits limits;
  limits.maximumDepth = 1;
  this->reader.setLimits(limits);
  const std::string document = TypeParam::twoDeep();
  MemoryStream stream(document);
  EXPECT_EQ(TypeParam::kRefused, thrown([&] { this->reader.parse(stream); }));
}

}  // namespace
