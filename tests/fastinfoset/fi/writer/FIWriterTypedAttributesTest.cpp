#include <Tavrin/Identifiers.h>

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <typeinfo>

#include "FIWriterProbe.h"
#include "FleetingAttributes.h"
#include "WhatIsThrown.h"

// Attributes whose values are typed.

namespace writer_test {
namespace {

using namespace Tavrin;

using TypedAttributes = EncodingAlgorithmAttributesImpl;

void add(TypedAttributes& list, const std::string& name, int algorithm,
         std::unique_ptr<EncodedData> data, const std::string& algorithmURI = "") {
  list.addAttribute("", name, name, "CDATA", algorithmURI, algorithm, std::move(data));
}

/// What an attribute of a typed value writes behind its name.
template <typename Holder, typename Value>
std::string value(int algorithm, const Value& data) {
  TypedAttributes list;
  add(list, "a", algorithm, std::make_unique<Holder>(data));
  Probe writer;
  writer.encodeAttributes(attributes({{"a", ""}}));
  writer.output.news();
  writer.encodeAttributes(list);
  const std::string written = writer.news();
  EXPECT_EQ(written.substr(0, 3), "00 ");  // The name is known.
  return written.substr(3);
}

TEST(WriterTypedAttribute, IsTheAlgorithmTheLengthAndTheOctets) {
  EXPECT_EQ(value<HexadecimalData>(0, "\x0A\xFF"), hex("30 01 0A FF"));
  EXPECT_EQ(value<Base64Data>(1, "abc"), hex("30 12 'abc'"));
  EXPECT_EQ(value<ShortData>(2, std::vector<short>{1, -2}), hex("30 23 00 01 FF FE"));
  EXPECT_EQ(value<IntData>(3, std::vector<long>{1, -2}), hex("30 37 00 00 00 01 FF FF FF FE"));
  EXPECT_EQ(value<LongData>(4, std::vector<long>{-2}), hex("30 47 FF FF FF FF FF FF FF FE"));
  EXPECT_EQ(value<BooleanData>(5, std::vector<bool>{true, false, true}), hex("30 50 1A"));
  EXPECT_EQ(value<FloatData>(6, std::vector<float>{1.5F}), hex("30 63 3F C0 00 00"));
  EXPECT_EQ(value<DoubleData>(7, std::vector<double>{-2}), hex("30 77 C0 00 00 00 00 00 00 00"));
  EXPECT_EQ(value<CDATAData>(9, "x"), hex("30 90 'x'"));
}

TEST(WriterTypedAttribute, IsTheEmptyStringWhenItIsEmpty) {
  EXPECT_EQ(value<HexadecimalData>(0, ""), "FF");
  EXPECT_EQ(value<Base64Data>(1, ""), "FF");
  EXPECT_EQ(value<ShortData>(2, std::vector<short>()), "FF");
  EXPECT_EQ(value<IntData>(3, std::vector<long>()), "FF");
  EXPECT_EQ(value<LongData>(4, std::vector<long>()), "FF");
  EXPECT_EQ(value<BooleanData>(5, std::vector<bool>()), "FF");
  EXPECT_EQ(value<FloatData>(6, std::vector<float>()), "FF");
  EXPECT_EQ(value<DoubleData>(7, std::vector<double>()), "FF");
  EXPECT_EQ(value<CDATAData>(9, ""), "FF");
}

TEST(WriterTypedAttribute, HasAFormForEveryLength) {
  const auto beginning = [](std::size_t length) {
    const std::string all = value<CDATAData>(9, std::string(length, 'x'));
    return all.substr(0, all.size() - 3 * length);
  };
  EXPECT_EQ(beginning(1), "30 90");
  EXPECT_EQ(beginning(2), "30 91");
  EXPECT_EQ(beginning(8), "30 97");
  EXPECT_EQ(beginning(9), "30 98 00");
  EXPECT_EQ(beginning(264), "30 98 FF");
  EXPECT_EQ(beginning(265), "30 9C 00 00 00 00");
  EXPECT_EQ(beginning(266), "30 9C 00 00 00 01");
  EXPECT_EQ(beginning(265 + 0x10000), "30 9C 00 01 00 00");
}

TEST(WriterTypedAttribute, StandsAmongTextAndEntersNoTable) {
  TypedAttributes list;
  list.addAttribute("", "t", "t", "CDATA", "x");
  add(list, "x", 9, std::make_unique<CDATAData>("x"));
  list.addAttribute("", "u", "u", "CDATA", "x");
  add(list, "y", 2, std::make_unique<ShortData>(std::vector<short>{7}));
  list.addAttribute("", "v", "v", "CDATA", "7");
  list.addAttribute("", "w", "w", "CDATA", "");
  Probe writer;
  writer.startDocument();
  writer.startElement("", "r", "r", list);
  writer.endElement("", "r", "r");
  writer.endDocument();
  EXPECT_EQ(writer.written(),
            document("7C 00 'r' 78 00 't' 40 'x' 78 00 'x' 30 90 'x' 78 00 'u' 80"
                     "78 00 'y' 30 21 00 07 78 00 'v' 40 '7' 78 00 'w' FF FF F0"));
}

TEST(WriterTypedAttribute, StaysTypedHoweverOftenItIsWrittenOrRead) {
  TypedAttributes list;
  add(list, "a", 2, std::make_unique<ShortData>(std::vector<short>{7}));
  Probe writer;
  writer.encodeAttributes(list);
  EXPECT_EQ(list.getValue(0), "7");
  writer.encodeAttributes(list);
  EXPECT_EQ(writer.written(), hex("78 00 'a' 30 21 00 07 00 30 21 00 07"));
}

TEST(WriterTypedAttribute, IsTextInACopyThatIsText) {
  TypedAttributes list;
  add(list, "a", 2, std::make_unique<ShortData>(std::vector<short>{7}));
  AttributesImpl copy;
  copy.setAttributes(list);
  Probe writer;
  writer.encodeAttributes(copy);
  EXPECT_EQ(writer.written(), hex("78 00 'a' 40 '7'"));
}

TEST(WriterTypedAttribute, IsTextWithoutData) {
  // The number of an algorithm alone does not make a value typed.
  TypedAttributes list;
  add(list, "a", 2, nullptr);
  add(list, "b", 300, nullptr, "urn:x");
  Probe writer;
  writer.encodeAttributes(list);
  EXPECT_EQ(writer.written(), hex("78 00 'a' FF 78 00 'b' FF"));
}

/// A list of its own that answers as another one does, but for one value.
class OwnAttributes : public EncodingAlgorithmAttributesImpl {
 public:
  const EncodedData* getAlgorithmData(int) const override { return &data_; }
  int getAlgorithmIndex(int) const override { return 2; }

 private:
  ShortData data_{std::vector<short>{7}};
};

TEST(WriterTypedAttribute, IsTakenFromAnyListThatHasTypedValues) {
  OwnAttributes list;
  list.addAttribute("", "a", "a", "CDATA", "text");
  const Attributes& plain = list;
  Probe writer;
  writer.startDocument();
  writer.startElement("", "r", "r", plain);
  writer.endElement("", "r", "r");
  writer.endDocument();
  EXPECT_EQ(writer.written(), document("7C 00 'r' 78 00 'a' 30 21 00 07 FF F0"));
}

TEST(WriterTypedAttribute, MayComeFromAListWhoseAnswersDoNotLast) {
  FleetingAttributes list;
  list.addAttribute("urn:x", "a", "p:a", "CDATA", "text");
  add(list, "b", 2, std::make_unique<ShortData>(std::vector<short>{7}));
  list.addAttribute("urn:x", "c", "p:c", "CDATA", std::string(20, 'v'));
  Probe writer;
  writer.startDocument();
  writer.startPrefixMapping("p", "urn:x");
  writer.startElement("", "r", "r", list);
  writer.startElement("", "r", "r", list);
  writer.endElement("", "r", "r");
  writer.endElement("", "r", "r");
  writer.endDocument();
  EXPECT_EQ(writer.written(),
            document("78 CF 00 'p' 04 'urn:x' F0 3C 00 'r' 7B 81 81 00 'a' 43 'text' "
                     "78 00 'b' 30 21 00 07 7B 81 81 00 'c' 08 0B 'vvvvvvvvvvvvvvvvvvvv' F0 "
                     "40 00 80 01 30 21 00 07 02 08 0B 'vvvvvvvvvvvvvvvvvvvv' FF FF"));
}

TEST(WriterTypedAttribute, OfANamespaceDeclarationIsLeftOutUnseen) {
  TypedAttributes list;
  list.addAttribute(namespaces::xmlns, "p", "xmlns:p", "CDATA", "urn:x", 300,
                    std::make_unique<CDATAData>("x"));
  Probe writer;
  writer.startDocument();
  writer.startElement("", "r", "r", list);
  writer.endElement("", "r", "r");
  writer.endDocument();
  EXPECT_EQ(writer.written(), document("3C 00 'r' FF"));
}

/// How a start tag is refused whose last attribute has this algorithm, in a document in which a
/// terminator, text and a declaration are owed. Nothing may have been written, and nothing lost.
std::string refusal(const std::string& uri, int index) {
  TypedAttributes list;
  list.addAttribute("", "a", "a", "CDATA", "1");
  add(list, "b", 9, std::make_unique<CDATAData>("x"));
  add(list, "c", index, std::make_unique<CDATAData>("x"), uri);
  Probe writer;
  writer.startDocument();
  writer.start("r");
  writer.leaf("e");
  writer.characters("hi");
  writer.startPrefixMapping("p", "u");
  writer.output.news();
  const std::string outcome = thrown([&] { writer.startElement("", "f", "f", list); });
  if (!writer.output.news().empty()) return "something was written";
  writer.startElement("u", "f", "p:f", attributes({{"c", "1"}}));
  EXPECT_EQ(writer.news(),
            hex("F0 91 'hi' 78 CF 00 'p' 00 'u' F0 3F 81 81 00 'f' 78 00 'c' 40 '1'"));
  return outcome;
}

TEST(WriterTypedAttribute, IsRefusedForAnAlgorithmThatTheWriterDoesNotHold) {
  for (const int index : {-1, 8, 10, 31, 32, 64, 255, 256, std::numeric_limits<int>::min(),
                          std::numeric_limits<int>::max()}) {
    EXPECT_EQ(refusal("", index), "EncodingAlgorithmException: Unknown encoding algorithm - ")
        << index;
  }
  for (const int index : {-1, 0, 9, 32}) {
    EXPECT_EQ(refusal("urn:x", index),
              "EncodingAlgorithmException: Unknown encoding algorithm - urn:x")
        << index;
  }
}

TEST(WriterTypedAttribute, IsRefusedByItsAlgorithmWhenItIsOfAnotherType) {
  TypedAttributes list;
  add(list, "a", 2, std::make_unique<IntData>(std::vector<long>{1}));
  Probe writer;
  writer.startDocument();
  EXPECT_THROW(writer.startElement("", "r", "r", list), std::bad_cast);
}

}  // namespace
}  // namespace writer_test
