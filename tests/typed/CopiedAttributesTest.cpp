#include <Tavrin/EncodingAlgorithmAttributes.h>

#include <gtest/gtest.h>

#include <csignal>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "CountedData.h"
#include "FleetingAttributes.h"
#include "Thrown.h"

namespace {

using namespace Tavrin;

/// The fields of every attribute as they lie in the list, one line each.
std::vector<std::string> shown(const EncodingAlgorithmAttributesImpl& list) {
  std::vector<std::string> lines;
  for (int i = 0; i < list.getLength(); ++i) {
    lines.push_back(list.getURI(i) + "|" + list.getLocalName(i) + "|" + list.getQName(i) + "|" +
                    list.getType(i) + "|" + list.getValue(i) + "|" + list.getAlgorithmURI(i) + "|" +
                    std::to_string(list.getAlgorithmIndex(i)) + "|" +
                    (list.getAlgorithmData(i) ? "typed" : "text"));
  }
  return lines;
}

using Lines = std::vector<std::string>;

/// A list with a typed value, so that a copy has something to replace.
class CopiedAttributes : public ::testing::Test {
 protected:
  CopiedAttributes() {
    list.addAttribute("urn:old", "o", "old:o", "T", "urn:algorithm", 40,
                      std::make_unique<CountedData>("old"));
    list.addAttribute("", "p", "p", "T", "also old");
  }

  EncodingAlgorithmAttributesImpl list;
};

TEST_F(CopiedAttributes, ReplaceTheListByText) {
  AttributesImpl source;
  source.addAttribute("urn:a", "x", "a:x", "CDATA", "one");
  source.addAttribute("", "y", "y", "ID", "");
  source.addAttribute("urn:a", "x", "a:x", "NMTOKEN", "three");
  list.setAttributes(source);
  EXPECT_EQ(shown(list), (Lines{"urn:a|x|a:x|CDATA|one||-1|text", "|y|y|ID|||-1|text",
                                "urn:a|x|a:x|NMTOKEN|three||-1|text"}));
  EXPECT_EQ(CountedData::alive, 0);
  EXPECT_EQ(list.getIndex("old:o"), -1);
}

TEST_F(CopiedAttributes, AreIndependentOfTheirSource) {
  auto source = std::make_unique<AttributesImpl>();
  source->addAttribute("urn:a", "x", "a:x", "CDATA", std::string(1000, 'v'));
  list.setAttributes(*source);
  source.reset();
  EXPECT_EQ(shown(list), (Lines{"urn:a|x|a:x|CDATA|" + std::string(1000, 'v') + "||-1|text"}));
}

TEST_F(CopiedAttributes, ReplaceTheListTwiceInARow) {
  AttributesImpl source;
  source.addAttribute("urn:a", "x", "a:x", "CDATA", "one");
  list.setAttributes(source);
  list.setAttributes(source);
  EXPECT_EQ(shown(list), (Lines{"urn:a|x|a:x|CDATA|one||-1|text"}));
}

// The source is asked for one field behind the other, and each answer is copied at once.
TEST_F(CopiedAttributes, AreCopiedFieldByField) {
  FleetingAttributes source;
  source.addAttribute("urn:a", "x", "a:x", "CDATA", "one");
  source.addAttribute("urn:b", "y", "b:y", "ID", std::string(100, 'v'));
  list.setAttributes(static_cast<const Attributes&>(source));
  EXPECT_EQ(shown(list), (Lines{"urn:a|x|a:x|CDATA|one||-1|text",
                                "urn:b|y|b:y|ID|" + std::string(100, 'v') + "||-1|text"}));
  EXPECT_EQ(source.asked, "uri localName qName type value uri localName qName type value");

  AttributesImpl plain;
  source.asked.clear();
  plain.setAttributes(source);
  list.setAttributes(plain);
  EXPECT_EQ(shown(list), (Lines{"urn:a|x|a:x|CDATA|one||-1|text",
                                "urn:b|y|b:y|ID|" + std::string(100, 'v') + "||-1|text"}));
  EXPECT_EQ(source.asked, "uri localName qName type value uri localName qName type value");
}

TEST_F(CopiedAttributes, AreCopiedFieldByFieldWithTheirTypes) {
  FleetingAttributes source;
  source.addAttribute("urn:a", "x", "a:x", "CDATA", "one");
  source.addAttribute("urn:b", "y", "b:y", "T", "urn:algorithm", 40,
                      std::make_unique<CDATAData>("two"));
  list.copyAttributes(source);
  EXPECT_EQ(shown(list),
            (Lines{"urn:a|x|a:x|CDATA|one||-1|text", "urn:b|y|b:y|T|two|urn:algorithm|40|typed"}));
}

TEST_F(CopiedAttributes, OfAnEmptyListAreNone) {
  EXPECT_EQ(CountedData::alive, 1);
  list.setAttributes(AttributesImpl());
  EXPECT_EQ(list.getLength(), 0);
  EXPECT_EQ(CountedData::alive, 0);
  EXPECT_EQ(thrown<std::out_of_range>([&] { list.getURI(0); }), "vector::_M_range_check");
}

TEST_F(CopiedAttributes, MayBeAddedTo) {
  AttributesImpl source;
  source.addAttribute("", "x", "x", "CDATA", "one");
  list.setAttributes(source);
  list.addAttribute("", "y", "y", "T", "two");
  list.addAttribute("", "z", "z", "T", "", 9, std::make_unique<CDATAData>("three"));
  EXPECT_EQ(shown(list),
            (Lines{"|x|x|CDATA|one||-1|text", "|y|y|T|two||-1|text", "|z|z|T|three||9|typed"}));
}

// Taken as a plain list, a typed one gives its text and nothing else.
TEST_F(CopiedAttributes, OfTypedValuesAreTheirText) {
  EncodingAlgorithmAttributesImpl source;
  source.addAttribute("urn:a", "n", "a:n", "T", "", 3,
                      std::make_unique<IntData>(std::vector<long>{1, -2}));
  source.addAttribute("", "m", "m", "T", "urn:algorithm", 33, std::make_unique<CountedData>("own"));
  source.addAttribute("", "t", "t", "T", "text");
  list.setAttributes(static_cast<const Attributes&>(source));
  EXPECT_EQ(shown(list),
            (Lines{"urn:a|n|a:n|T|1 -2||-1|text", "|m|m|T|own||-1|text", "|t|t|T|text||-1|text"}));
  EXPECT_EQ(shown(source), (Lines{"urn:a|n|a:n|T|1 -2||3|typed",
                                  "|m|m|T|own|urn:algorithm|33|typed", "|t|t|T|text||-1|text"}));
}

// The old records go first, so nothing is left to copy.
TEST_F(CopiedAttributes, OfTheListItselfAreNone) {
  list.setAttributes(static_cast<const Attributes&>(list));
  EXPECT_EQ(list.getLength(), 0);
  EXPECT_EQ(CountedData::alive, 0);
}

/// A list of a claimed length whose attributes are all alike.
class ClaimedAttributes : public Attributes {
 public:
  explicit ClaimedAttributes(int length) : length_(length) {}

  int failing = -1;  ///< The position whose value throws.

  int getLength() const override { return length_; }
  const std::string& getURI(int) const override { return text_; }
  const std::string& getLocalName(int) const override { return text_; }
  const std::string& getQName(int) const override { return text_; }
  const std::string& getType(int) const override { return text_; }
  const std::string& getValue(int index) const override {
    if (index == failing) throw std::runtime_error("no value");
    return text_;
  }
  int getIndex(const std::string&, const std::string&) const override { return -1; }
  int getIndex(const std::string&) const override { return -1; }
  const std::string& getType(const std::string&, const std::string&) const override {
    return text_;
  }
  const std::string& getType(const std::string&) const override { return text_; }
  const std::string& getValue(const std::string&, const std::string&) const override {
    return text_;
  }
  const std::string& getValue(const std::string&) const override { return text_; }

 private:
  int length_;
  std::string text_ = "s";
};

TEST_F(CopiedAttributes, OfANegativeLengthAreRefusedAndTheListIsEmpty) {
  // Standard libraries differ in what they say.
  const std::string message = thrown<std::length_error>([] {
    std::vector<int> items;
    items.reserve(items.max_size() + 1);
  });
  for (const int length : {-1, -1000, std::numeric_limits<int>::min()}) {
    EncodingAlgorithmAttributesImpl target;
    target.addAttribute("", "o", "o", "T", "", 40, std::make_unique<CountedData>("old"));
    EXPECT_EQ(thrown<std::length_error>([&] { target.setAttributes(ClaimedAttributes(length)); }),
              message);
    EXPECT_EQ(target.getLength(), 0);
    EXPECT_EQ(CountedData::alive, 1);  // The fixture's.
  }
}

TEST_F(CopiedAttributes, AreAsManyAsTheSourceSays) {
  list.setAttributes(ClaimedAttributes(1000));
  EXPECT_EQ(shown(list), Lines(1000, "s|s|s|s|s||-1|text"));
}

TEST_F(CopiedAttributes, EndWhereTheSourceFails) {
  ClaimedAttributes source(5);
  source.failing = 2;
  EXPECT_EQ(thrown<std::runtime_error>([&] { list.setAttributes(source); }), "no value");
  EXPECT_EQ(shown(list), Lines(2, "s|s|s|s|s||-1|text"));
  EXPECT_EQ(CountedData::alive, 0);
}

using CopiedAttributesDeathTest = CopiedAttributes;

TEST_F(CopiedAttributesDeathTest, OfATypedListEndTheProcess) {
  const EncodingAlgorithmAttributesImpl empty;
  EXPECT_EXIT(list.setAttributes(empty), ::testing::KilledBySignal(SIGABRT), "");
  EncodingAlgorithmAttributesImpl source;
  source.addAttribute("", "x", "x", "T", "text");
  const EncodingAlgorithmAttributes& typed = source;
  EXPECT_EXIT(list.setAttributes(typed), ::testing::KilledBySignal(SIGABRT), "");
}

}  // namespace
