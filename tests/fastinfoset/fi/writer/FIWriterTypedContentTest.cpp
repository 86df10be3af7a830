#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <functional>
#include <limits>
#include <typeinfo>

#include "FIWriterProbe.h"
#include "WhatIsThrown.h"

// Typed content: what each operation writes, and where.

namespace writer_test {
namespace {

using namespace Tavrin;

using Operation = std::function<void(Probe&)>;

/// What an operation writes into an element that has nothing yet.
std::string content(const Operation& operation) {
  Probe writer;
  writer.startDocument();
  writer.start("r");
  writer.output.news();
  operation(writer);
  return writer.news();
}

template <typename Holder, typename Value>
Operation object(int index, const Value& value) {
  return [index, value](Probe& writer) { writer.object("", index, Holder(value)); };
}

const std::vector<long> kEdges = {1, -2, std::numeric_limits<std::int32_t>::max(),
                                  std::numeric_limits<std::int32_t>::min()};

TEST(WriterTypedContent, IsTheAlgorithmTheLengthAndTheOctets) {
  EXPECT_EQ(content([](Probe& writer) { writer.bytes("abc"); }), hex("8C 06 00 'abc'"));
  EXPECT_EQ(content([](Probe& writer) {
              writer.shorts({1, -2, 32767, -32768});
            }),
            hex("8C 0A 05 00 01 FF FE 7F FF 80 00"));
  EXPECT_EQ(content([](Probe& writer) { writer.ints(kEdges); }),
            hex("8C 0E 0D 00 00 00 01 FF FF FF FE 7F FF FF FF 80 00 00 00"));
  EXPECT_EQ(content([](Probe& writer) {
              writer.longs({1, std::numeric_limits<long>::min()});
            }),
            hex("8C 12 0D 00 00 00 00 00 00 00 01 80 00 00 00 00 00 00 00"));
  EXPECT_EQ(content([](Probe& writer) { writer.booleans({true, false, true}); }), hex("8C 14 1A"));
  EXPECT_EQ(content([](Probe& writer) {
              writer.floats({1.5F, -0.0F});
            }),
            hex("8C 1A 05 3F C0 00 00 80 00 00 00"));
  EXPECT_EQ(content([](Probe& writer) { writer.doubles({-2.0}); }),
            hex("8C 1E 05 C0 00 00 00 00 00 00 00"));
}

TEST(WriterTypedContent, IsTheSameFromAnObject) {
  EXPECT_EQ(content(object<HexadecimalData>(0, "\x0A\xFF")), hex("8C 01 0A FF"));
  EXPECT_EQ(content(object<Base64Data>(1, "abc")), hex("8C 06 00 'abc'"));
  EXPECT_EQ(content(object<ShortData>(2, std::vector<short>{1})), hex("8C 09 00 01"));
  EXPECT_EQ(content(object<IntData>(3, std::vector<long>{-2})), hex("8C 0E 01 FF FF FF FE"));
  EXPECT_EQ(content(object<LongData>(4, std::vector<long>{-2})),
            hex("8C 12 05 FF FF FF FF FF FF FF FE"));
  EXPECT_EQ(content(object<BooleanData>(5, std::vector<bool>{true})), hex("8C 14 38"));
  EXPECT_EQ(content(object<FloatData>(6, std::vector<float>{1.5F})), hex("8C 1A 01 3F C0 00 00"));
  EXPECT_EQ(content(object<DoubleData>(7, std::vector<double>{-2.0})),
            hex("8C 1E 05 C0 00 00 00 00 00 00 00"));
  EXPECT_EQ(content(object<CDATAData>(9, "x")), hex("8C 24 'x'"));
}

TEST(WriterTypedContent, CarriesTheBitsOfEveryFloatingPointNumber) {
  EXPECT_EQ(content([](Probe& writer) {
              writer.floats({std::bit_cast<float>(0x7FC12345U), std::bit_cast<float>(0x00000001U),
                             std::numeric_limits<float>::infinity()});
            }),
            hex("8C 1A 09 7F C1 23 45 00 00 00 01 7F 80 00 00"));
  EXPECT_EQ(content([](Probe& writer) {
              writer.doubles({std::bit_cast<double>(0xFFF8000000000123UL),
                              -std::numeric_limits<double>::infinity()});
            }),
            hex("8C 1E 0D FF F8 00 00 00 00 01 23 FF F0 00 00 00 00 00 00"));
}

TEST(WriterTypedContent, CutsIntegersToTheirLow32Bits) {
  EXPECT_EQ(content([](Probe& writer) {
              writer.ints({4294967296, 4294967301, -4294967297});
            }),
            hex("8C 0E 09 00 00 00 00 00 00 00 05 FF FF FF FF"));
}

TEST(WriterTypedContent, HasAFormForEveryLength) {
  const auto beginning = [](std::size_t length) {
    const std::string all = content([&](Probe& writer) { writer.bytes(std::string(length, 'x')); });
    return all.substr(0, all.size() - 3 * length);
  };
  EXPECT_EQ(beginning(1), "8C 04");
  EXPECT_EQ(beginning(2), "8C 05");
  EXPECT_EQ(beginning(3), "8C 06 00");
  EXPECT_EQ(beginning(258), "8C 06 FF");
  EXPECT_EQ(beginning(259), "8C 07 00 00 00 00");
  EXPECT_EQ(beginning(260), "8C 07 00 00 00 01");
  EXPECT_EQ(beginning(259 + 0x10000), "8C 07 00 01 00 00");
}

TEST(WriterTypedContent, OfBooleansFillsItsLastOctet) {
  const auto trues = [](std::size_t count) {
    return content([count](Probe& writer) { writer.booleans(std::vector<bool>(count, true)); });
  };
  EXPECT_EQ(trues(1), hex("8C 14 38"));
  EXPECT_EQ(trues(4), hex("8C 14 0F"));
  EXPECT_EQ(trues(5), hex("8C 15 7F 80"));
  EXPECT_EQ(trues(12), hex("8C 15 0F FF"));
  EXPECT_EQ(trues(13), hex("8C 16 00 7F FF 80"));
}

TEST(WriterTypedContent, OfNothingIsNothingButBringsOutWhatIsOwed) {
  const Operation empties[] = {
      [](Probe& writer) { writer.bytes(""); },
      [](Probe& writer) { writer.shorts({}); },
      [](Probe& writer) { writer.ints({}); },
      [](Probe& writer) { writer.longs({}); },
      [](Probe& writer) { writer.booleans({}); },
      [](Probe& writer) { writer.floats({}); },
      [](Probe& writer) { writer.doubles({}); },
      [](Probe& writer) { writer.octets("", 1, ""); },
      [](Probe& writer) { writer.octets("urn:x", 255, ""); },
      [](Probe& writer) { writer.object("", 9, CDATAData()); },
  };
  for (const Operation& empty : empties) {
    EXPECT_EQ(content(empty), "");
    EXPECT_EQ(content([&](Probe& writer) {
                writer.leaf("e");
                writer.characters("hi");
                writer.output.news();
                empty(writer);
              }),
              hex("F0 91 'hi'"));
  }
}

TEST(WriterTypedContent, StandsBehindWhatIsOwed) {
  EXPECT_EQ(content([](Probe& writer) {
              writer.leaf("e");
              writer.shorts({1});
              writer.leaf("e", {{"a", ""}});  // Owes nothing: its end is in one octet with it.
              writer.shorts({1});
              writer.start("e", {{"a", ""}});
              writer.shorts({1});
              writer.characters("hi");
              writer.shorts({1});
            }),
            hex("3C 00 'e' F0 8C 09 00 01 41 78 00 'a' FF FF 8C 09 00 01"
                "41 00 FF F0 8C 09 00 01 91 'hi' 8C 09 00 01"));
}

TEST(WriterTypedContent, EntersNoTable) {
  EXPECT_EQ(content([](Probe& writer) {
              writer.bytes("a");
              writer.bytes("a");
              writer.characters("a");
              writer.bytes("a");
              writer.characters("a");
              writer.comment("a");
            }),
            hex("8C 04 'a' 8C 04 'a' 90 'a' 8C 04 'a' A0 E2 40 'a'"));
}

/// Sends a value by every operation, through the interface that declares it.
void sendEveryKind(PrimitiveTypeContentHandler& primitives,
                   EncodingAlgorithmContentHandler& algorithms) {
  primitives.bytes("a");
  primitives.shorts({1});
  primitives.ints({1});
  primitives.longs({1});
  primitives.booleans({true});
  primitives.floats({0});
  primitives.doubles({0});
  algorithms.octets("", 8, "a");
  algorithms.object("", 9, CDATAData("a"));
}

const std::string kEveryKind =
    hex("8C 04 'a' 8C 09 00 01 8C 0E 01 00 00 00 01 8C 12 05 00 00 00 00 00 00 00 01"
        "8C 14 38 8C 1A 01 00 00 00 00 8C 1E 05 00 00 00 00 00 00 00 00"
        "8C 20 'a' 8C 24 'a'");

TEST(WriterTypedContent, IsWrittenWhereverTheDocumentHasCome) {
  Probe writer;
  const auto everyKind = [&writer] {
    writer.output.news();
    sendEveryKind(writer, writer);
    return writer.news();
  };
  EXPECT_EQ(everyKind(), kEveryKind);  // In front of any document.
  writer.startDocument();
  EXPECT_EQ(everyKind(), kEveryKind);
  writer.startDTD("r", "", "");
  EXPECT_EQ(everyKind(), kEveryKind);
  writer.endDTD();
  EXPECT_EQ(everyKind(), kEveryKind);
  writer.start("r");
  EXPECT_EQ(everyKind(), kEveryKind);
  writer.start("r");
  EXPECT_EQ(everyKind(), kEveryKind);
  writer.startCDATA();
  EXPECT_EQ(everyKind(), kEveryKind);
  writer.endCDATA();
  writer.end("r");
  EXPECT_EQ(everyKind(), "F0 " + kEveryKind);  // An end was owed.
  writer.end("r");
  EXPECT_EQ(everyKind(), "F0 " + kEveryKind);
  writer.endDocument();
  EXPECT_EQ(writer.news(), "F0");
  EXPECT_EQ(everyKind(), kEveryKind);
  writer.reset();
  EXPECT_EQ(everyKind(), kEveryKind);
}

/// What `octets` writes of one octet with an algorithm's field.
std::string octetsOf(int index) {
  return content([index](Probe& writer) { writer.octets("", index, "x"); });
}

TEST(WriterOctets, SplitTheFieldOverTwoOctets) {
  const char* const first[] = {"8C 00 78", "8C 04 78", "8C 08 78", "8C 0C 78",
                               "8C 10 78", "8C 14 78", "8C 18 78", "8C 1C 78",
                               "8C 20 78", "8C 24 78", "8C 28 78"};
  for (int i = 0; i <= 10; ++i) EXPECT_EQ(octetsOf(i), first[i]) << i;
  EXPECT_EQ(octetsOf(31), "8C 7C 78");
  EXPECT_EQ(octetsOf(32), "8C 80 78");
  EXPECT_EQ(octetsOf(63), "8C FC 78");
  EXPECT_EQ(octetsOf(64), "8D 00 78");
  EXPECT_EQ(octetsOf(127), "8D FC 78");
  EXPECT_EQ(octetsOf(128), "8E 00 78");
  EXPECT_EQ(octetsOf(191), "8E FC 78");
  EXPECT_EQ(octetsOf(192), "8F 00 78");
  EXPECT_EQ(octetsOf(255), "8F FC 78");
}

TEST(WriterOctets, HaveAFormForEveryLength) {
  const auto beginning = [](std::size_t length) {
    const std::string all =
        content([&](Probe& writer) { writer.octets("", 255, std::string(length, 'x')); });
    return all.substr(0, all.size() - 3 * length);
  };
  EXPECT_EQ(beginning(1), "8F FC");
  EXPECT_EQ(beginning(2), "8F FD");
  EXPECT_EQ(beginning(3), "8F FE 00");
  EXPECT_EQ(beginning(258), "8F FE FF");
  EXPECT_EQ(beginning(259), "8F FF 00 00 00 00");
  EXPECT_EQ(beginning(260), "8F FF 00 00 00 01");
  EXPECT_EQ(beginning(259 + 0x10000), "8F FF 00 01 00 00");
}

TEST(WriterOctets, DoNotCarryTheURI) {
  EXPECT_EQ(content([](Probe& writer) {
              writer.octets("urn:x", 32, "x");
              writer.octets("urn:y", 0, "x");
            }),
            hex("8C 80 'x' 8C 00 'x'"));
}

/// How an operation is refused in a document in which a terminator and text are owed. Nothing may
/// have been written, and nothing lost.
std::string refusal(const Operation& operation) {
  Probe writer;
  writer.startDocument();
  writer.start("r");
  writer.leaf("e");
  writer.characters("hi");
  writer.output.news();
  const std::string outcome = thrown([&] { operation(writer); });
  if (!writer.output.news().empty()) return "something was written";
  writer.end("r");
  writer.endDocument();
  EXPECT_EQ(writer.written(), document("3C 00 'r' 3C 00 'e' F0 91 'hi' FF"));
  return outcome;
}

TEST(WriterOctets, AreRefusedForAFieldThatTheStreamCannotHold) {
  for (const int index :
       {-1, 256, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    for (const char* data : {"x", ""}) {
      EXPECT_EQ(refusal([&](Probe& writer) { writer.octets("", index, data); }),
                "EncodingAlgorithmException: Unknown encoding algorithm - ");
      EXPECT_EQ(refusal([&](Probe& writer) { writer.octets("urn:x", index, data); }),
                "EncodingAlgorithmException: Unknown encoding algorithm - urn:x");
    }
  }
}

TEST(WriterObject, IsRefusedForAnAlgorithmThatTheWriterDoesNotHold) {
  for (const int index : {-1, 8, 10, 31, 32, 63, 64, 191, 255, 256, -2147483647 - 1, 2147483647}) {
    EXPECT_EQ(refusal([&](Probe& writer) { writer.object("", index, CDATAData("x")); }),
              "EncodingAlgorithmException: Unknown encoding algorithm - ")
        << index;
  }
  for (const int index : {-1, 0, 9, 32}) {
    EXPECT_EQ(refusal([&](Probe& writer) { writer.object("urn:x", index, CDATAData("x")); }),
              "EncodingAlgorithmException: Unknown encoding algorithm - urn:x")
        << index;
  }
}

TEST(WriterObject, IsRefusedByItsAlgorithmWhenItIsOfAnotherType) {
  Probe writer;
  writer.startDocument();
  writer.start("r");
  writer.output.news();
  EXPECT_THROW(writer.object("", 2, IntData({1})), std::bad_cast);
  EXPECT_THROW(writer.object("", 0, Base64Data("x")), std::bad_cast);
  EXPECT_EQ(writer.news(), "");
}

TEST(WriterAlgorithms, AreFoundByNumberAndOnlyWithoutAURI) {
  Probe writer;
  EXPECT_NE(dynamic_cast<HexadecimalEncodingAlgorithm*>(writer.getEncodingAlgorithm("", 0)),
            nullptr);
  EXPECT_NE(dynamic_cast<Base64EncodingAlgorithm*>(writer.getEncodingAlgorithm("", 1)), nullptr);
  EXPECT_NE(dynamic_cast<ShortEncodingAlgorithm*>(writer.getEncodingAlgorithm("", 2)), nullptr);
  EXPECT_NE(dynamic_cast<IntEncodingAlgorithm*>(writer.getEncodingAlgorithm("", 3)), nullptr);
  EXPECT_NE(dynamic_cast<LongEncodingAlgorithm*>(writer.getEncodingAlgorithm("", 4)), nullptr);
  EXPECT_NE(dynamic_cast<BooleanEncodingAlgorithm*>(writer.getEncodingAlgorithm("", 5)), nullptr);
  EXPECT_NE(dynamic_cast<FloatEncodingAlgorithm*>(writer.getEncodingAlgorithm("", 6)), nullptr);
  EXPECT_NE(dynamic_cast<DoubleEncodingAlgorithm*>(writer.getEncodingAlgorithm("", 7)), nullptr);
  EXPECT_EQ(writer.getEncodingAlgorithm("", 8), nullptr);
  EXPECT_NE(dynamic_cast<CDATAEncodingAlgorithm*>(writer.getEncodingAlgorithm("", 9)), nullptr);
  for (int index = 10; index <= 300; ++index) {
    EXPECT_EQ(writer.getEncodingAlgorithm("", index), nullptr) << index;
  }
  for (const int index :
       {-1, -9, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    EXPECT_EQ(writer.getEncodingAlgorithm("", index), nullptr) << index;
  }
  for (int index = -1; index <= 10; ++index) {
    EXPECT_EQ(writer.getEncodingAlgorithm("urn:x", index), nullptr) << index;
    EXPECT_EQ(writer.getEncodingAlgorithm(" ", index), nullptr) << index;
  }
  EXPECT_EQ(writer.getEncodingAlgorithm("", 0), writer.getEncodingAlgorithm("", 0));
}

}  // namespace
}  // namespace writer_test
