#include <gtest/gtest.h>

#include <typeinfo>

#include "HexOctets.h"
#include "X891WriterSupport.h"

// Typed content, typed attributes, and algorithms of applications.

namespace x891_test {
namespace {

using namespace Tavrin;

const UUID kUUID = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};

std::string typed(const std::function<void(Writer&)>& events) {
  const std::string whole = content(events);
  const std::string begin = document("3C 00 'a'");
  EXPECT_EQ(whole.substr(0, begin.size()), begin);
  EXPECT_EQ(whole.substr(whole.size() - 3), " FF");
  return whole.size() == begin.size() + 3
             ? ""
             : whole.substr(begin.size() + 1, whole.size() - begin.size() - 4);
}

TEST(X891WriterTyped, HasEveryBuiltInAlgorithm) {
  EXPECT_EQ(typed([](Writer& w) { w.object("", 0, HexadecimalData("\x7F")); }), hex("8C 00 7F"));
  EXPECT_EQ(typed([](Writer& w) { w.bytes("ab"); }), hex("8C 05 'ab'"));
  EXPECT_EQ(typed([](Writer& w) { w.shorts({-1}); }), hex("8C 09 FF FF"));
  EXPECT_EQ(typed([](Writer& w) {
              w.ints({-2147483648, 2147483647});
            }),
            hex("8C 0E 05 80 00 00 00 7F FF FF FF"));
  EXPECT_EQ(typed([](Writer& w) { w.longs({1}); }), hex("8C 12 05 00 00 00 00 00 00 00 01"));
  EXPECT_EQ(typed([](Writer& w) { w.booleans({true, false}); }), hex("8C 14 28"));
  EXPECT_EQ(typed([](Writer& w) { w.floats({1}); }), hex("8C 1A 01 3F 80 00 00"));
  EXPECT_EQ(typed([](Writer& w) { w.doubles({1}); }), hex("8C 1E 05 3F F0 00 00 00 00 00 00"));
  EXPECT_EQ(typed([](Writer& w) { w.object("", 8, UUIDData({kUUID})); }),
            hex("8C 22 0D 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F"));
  EXPECT_EQ(typed([](Writer& w) { w.object("", 9, CDATAData("<")); }), hex("8C 24 '<'"));
}

TEST(X891WriterTyped, StandsBetweenText) {
  EXPECT_EQ(typed([](Writer& w) {
              w.characters("x");
              w.bytes("a");
              w.characters("y");
              w.object("", 9, CDATAData("b"));
              w.octets("", 0, "c");
            }),
            hex("90 'x' 8C 04 'a' 90 'y' 8C 24 'b' 8C 00 'c'"));
}

TEST(X891WriterTyped, LeavesNoTraceWhereItIsEmpty) {
  EXPECT_EQ(typed([](Writer& w) {
              w.characters("x");
              w.bytes("");
              w.shorts({});
              w.ints({});
              w.longs({});
              w.booleans({});
              w.floats({});
              w.doubles({});
              w.octets("", 0, "");
              w.object("", 8, UUIDData());
              w.characters("y");
            }),
            hex("91 'xy'"));
}

TEST(X891WriterTyped, BelongsIntoElementsAlone) {
  Writer writer;
  const std::string refused = "SAXException: You cannot write character data at this point";
  const auto expectRefusals = [&] {
    EXPECT_EQ(thrown([&] { writer.bytes("x"); }), refused);
    EXPECT_EQ(thrown([&] { writer.shorts({1}); }), refused);
    EXPECT_EQ(thrown([&] { writer.ints({}); }), refused);
    EXPECT_EQ(thrown([&] { writer.longs({1}); }), refused);
    EXPECT_EQ(thrown([&] { writer.booleans({true}); }), refused);
    EXPECT_EQ(thrown([&] { writer.floats({1}); }), refused);
    EXPECT_EQ(thrown([&] { writer.doubles({1}); }), refused);
    EXPECT_EQ(thrown([&] { writer.octets("", 0, "x"); }), refused);
    EXPECT_EQ(thrown([&] { writer.object("", 1, Base64Data("x")); }), refused);
  };
  expectRefusals();
  writer.startDocument();
  expectRefusals();
  writer.start("a");
  writer.startCDATA();
  expectRefusals();
  writer.endCDATA();
  writer.end("a");
  expectRefusals();
  writer.endDocument();
  EXPECT_EQ(writer.written(), document("3C 00 'a' FF"));
}

// The first four bits tell how many of the last octet's are unused.
TEST(X891WriterTyped, HasBooleansThatFillTheirOctets) {
  EXPECT_EQ(typed([](Writer& w) { w.octets("", 5, "\x40"); }), hex("8C 14 40"));
  EXPECT_EQ(typed([](Writer& w) { w.octets("", 5, "\x08"); }), hex("8C 14 08"));
  EXPECT_EQ(typed([](Writer& w) { w.octets("", 5, "\x7F\x80"); }), hex("8C 15 7F 80"));
  for (const char* wrong : {"\x8F\xFF", "\x90\xFF\xFF", "\xC0\xFF", "\xF0\xFF\xFF"}) {
    EXPECT_EQ(refusal([&](Writer& w) { w.octets("", 5, wrong); }),
              "EncodingAlgorithmException: Encoded data of another length than its value");
  }
}

TEST(X891WriterTyped, IsRefusedWhereItCannotBeEncoded) {
  EXPECT_EQ(refusal([](Writer& w) {
              w.ints({1, 2147483648});
            }),
            "SAXException: 2147483648 is not a 32-bit integer");
  EXPECT_EQ(refusal([](Writer& w) { w.object("", 3, IntData({-2147483649})); }),
            "SAXException: -2147483649 is not a 32-bit integer");
  EXPECT_EQ(refusal([](Writer& w) { w.octets("", 9, "\xFF"); }),
            "SAXException: You cannot put UTF-8 octet 0xFF into character data");
  EXPECT_EQ(refusal([](Writer& w) { w.octets("", 3, "abc"); }),
            "EncodingAlgorithmException: Invalid length for encoded int data");
  EXPECT_EQ(refusal([](Writer& w) { w.octets("", 8, "abc"); }),
            "EncodingAlgorithmException: Invalid length for encoded uuid data");
  EXPECT_EQ(refusal([](Writer& w) { w.octets("", 5, "\xF0"); }),
            "EncodingAlgorithmException: Invalid length for encoded boolean data");
  for (const int index : {-1, 10, 31, 32, 255, 256, 100000}) {
    const std::string unknown =
        unknownAlgorithm("number " + std::to_string(index) + ", which the document does not name");
    EXPECT_EQ(refusal([&](Writer& w) { w.octets("", index, "x"); }), unknown);
    EXPECT_EQ(refusal([&](Writer& w) { w.object("", index, Base64Data("x")); }), unknown);
  }
  EXPECT_EQ(refusal([](Writer& w) { w.octets("u", 1, "x"); }), unknownAlgorithm("u"));
  EXPECT_EQ(refusal([](Writer& w) { w.object("u", 1, Base64Data("x")); }), unknownAlgorithm("u"));
  EXPECT_EQ(
      refusal([](Writer& w) { EXPECT_THROW(w.object("", 1, ShortData({1})), std::bad_cast); }),
      "nothing");
}

// --- Attributes ---

/// A list of one attribute `c`.
struct TypedAttribute : EncodingAlgorithmAttributesImpl {
  TypedAttribute(const std::string& uri, int index, std::unique_ptr<EncodedData> data) {
    addAttribute("", "c", "c", "CDATA", uri, index, std::move(data));
  }
};

template <typename Data, typename Value>
std::string attribute(int index, Value value) {
  const std::string whole = content([&](Writer& writer) {
    writer.startElement("", "b", "b", TypedAttribute("", index, std::make_unique<Data>(value)));
    writer.end("b");
  });
  const std::string begin = document("3C 00 'a' 7C 00 'b' 78 00 'c'");
  return whole.substr(begin.size() + 1, whole.size() - begin.size() - 1 - 6);
}

TEST(X891WriterTypedAttributes, HaveEveryBuiltInAlgorithm) {
  EXPECT_EQ(attribute<HexadecimalData>(0, "\x7F"), hex("30 00 7F"));
  EXPECT_EQ(attribute<Base64Data>(1, "ab"), hex("30 11 'ab'"));
  EXPECT_EQ(attribute<ShortData>(2, std::vector<short>{-1}), hex("30 21 FF FF"));
  EXPECT_EQ(attribute<IntData>(3, std::vector<long>{-1}), hex("30 33 FF FF FF FF"));
  EXPECT_EQ(attribute<LongData>(4, std::vector<long>{-1}), hex("30 47 FF FF FF FF FF FF FF FF"));
  EXPECT_EQ(attribute<BooleanData>(5, std::vector<bool>{true}), hex("30 50 38"));
  EXPECT_EQ(attribute<FloatData>(6, std::vector<float>{1}), hex("30 63 3F 80 00 00"));
  EXPECT_EQ(attribute<DoubleData>(7, std::vector<double>{1}), hex("30 77 3F F0 00 00 00 00 00 00"));
  EXPECT_EQ(attribute<UUIDData>(8, std::vector<UUID>{kUUID}),
            hex("30 88 07 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F"));
}

// Readers count booleans in 32 bits.
TEST(X891WriterTyped, BooleansAreNoMoreThanAreCounted) {
  EXPECT_EQ(refusal([](Writer& w) { w.booleans(std::vector<bool>(std::size_t{1} << 32)); }),
            "SAXException: Booleans longer than 536870912 octets");
}

TEST(X891WriterTypedAttributes, AreTheEmptyStringWhereTheyAreEmpty) {
  EXPECT_EQ(attribute<Base64Data>(1, ""), hex("FF"));
  EXPECT_EQ(attribute<IntData>(3, std::vector<long>{}), hex("FF"));
  EXPECT_EQ(attribute<BooleanData>(5, std::vector<bool>{}), hex("FF"));
  EXPECT_EQ(attribute<UUIDData>(8, std::vector<UUID>{}), hex("FF"));
}

TEST(X891WriterTypedAttributes, AreRefusedWhereTheyCannotBeEncoded) {
  const auto refused = [](const std::string& uri, int index, std::unique_ptr<EncodedData> data) {
    const TypedAttribute list(uri, index, std::move(data));
    return refusal([&](Writer& w) { w.startElement("", "b", "b", list); });
  };
  EXPECT_EQ(refused("", 9, std::make_unique<CDATAData>("x")),
            "SAXException: The cdata algorithm cannot encode an attribute value");
  EXPECT_EQ(refused("", 3, std::make_unique<IntData>(std::vector<long>{1L << 40})),
            "SAXException: 1099511627776 is not a 32-bit integer");
  EXPECT_EQ(refused("", 10, std::make_unique<Base64Data>("x")),
            unknownAlgorithm("number 10, which the document does not name"));
  EXPECT_EQ(refused("u", 1, std::make_unique<Base64Data>("x")), unknownAlgorithm("u"));
}

// --- Algorithms of applications ---

/// Writes text as it is, under a number that it makes up.
class Application : public EncodingAlgorithm {
 public:
  explicit Application(int number) : number_(number) {}

  EncodedData& decodeFromInputStream(std::uint32_t, std::istream&) override { return holder_; }
  void encodeToOutputStream(bool chunk, const EncodedData& data, std::ostream& stream) override {
    const std::string& text = dynamic_cast<const Base64Data&>(data).data_;
    writeSize(number_, chunk, static_cast<std::uint32_t>(text.size() + tooMuch), stream);
    stream << text;
  }

  std::uint32_t tooMuch = 0;

 private:
  int number_;
  Base64Data holder_;
};

class X891WriterApplications : public testing::Test {
 protected:
  X891WriterApplications() { writer.setProperty(properties::registeredEncodingAlgorithms, &map); }

  void start() {
    writer.startDocument();
    writer.start("a");
  }

  Application first{7};
  Application second{255};
  EncodingAlgorithmMap map = {{"v", &second}, {"u", &first}};
  Writer writer;
};

TEST_F(X891WriterApplications, HaveTheirURIInTheDocumentAndTheirFieldFromIt) {
  start();
  EXPECT_EQ(writer.news(), hex("E0 00 00 01 20 04 00 01 00 'u' 00 'v' 3C 00 'a'"));
  writer.object("u", 0, Base64Data("x"));
  EXPECT_EQ(writer.news(), hex("8C 7C 'x'"));
  writer.object("v", 32, Base64Data("xyz"));
  EXPECT_EQ(writer.news(), hex("8C 82 00 'xyz'"));
  writer.object("", 32, Base64Data(std::string(259, 'x')));
  EXPECT_EQ(writer.news(), hex("8C 83 00 00 00 00 '" + std::string(259, 'x') + "'"));
  writer.octets("v", 1, "x");
  EXPECT_EQ(writer.news(), hex("8C 80 'x'"));
  writer.octets("", 31, "x");
  EXPECT_EQ(writer.news(), hex("8C 7C 'x'"));
  writer.object("u", 0, Base64Data());
  EXPECT_EQ(writer.news(), "");
  EXPECT_EQ(thrown([&] { writer.octets("", 33, "x"); }),
            unknownAlgorithm("number 33, which the document does not name"));
  EXPECT_EQ(thrown([&] { writer.object("w", 32, Base64Data("x")); }), unknownAlgorithm("w"));
  EXPECT_EQ(writer.getEncodingAlgorithm("u", 0), &first);
  EXPECT_EQ(writer.getEncodingAlgorithm("", 32), &second);
  EXPECT_EQ(writer.getEncodingAlgorithm("", 33), nullptr);
  EXPECT_NE(writer.getEncodingAlgorithm("", 8), nullptr);
  writer.end("a");
  writer.endDocument();
  EXPECT_EQ(writer.news(), hex("FF"));
}

TEST_F(X891WriterApplications, EncodeAttributesOfTheRootToo) {
  EncodingAlgorithmAttributesImpl list;
  const auto add = [&](const std::string& name, const std::string& uri, int index,
                       const std::string& value) {
    list.addAttribute("", name, name, "CDATA", uri, index, std::make_unique<Base64Data>(value));
  };
  add("b", "v", 0, "x");
  add("c", "u", 0, "");
  add("d", "", 31, "123456789");
  writer.startDocument();
  writer.startElement("", "a", "a", list);
  writer.end("a");
  writer.endDocument();
  EXPECT_EQ(writer.news(), hex("E0 00 00 01 20 04 00 01 00 'u' 00 'v' 7C 00 'a' 78 00 'b' 32 00 'x'"
                               "78 00 'c' FF 78 00 'd' 31 F8 00 '123456789' FF F0"));
}

TEST_F(X891WriterApplications, AreRefusedWhereAnAttributeWouldHaveNoText) {
  struct Unfit : Base64Data {
    using Base64Data::Base64Data;
    std::string toString() const override { return "x\x01"; }
  };
  start();
  writer.news();
  EXPECT_EQ(thrown([&] {
              writer.startElement("", "b", "b",
                                  TypedAttribute("u", 0, std::make_unique<Unfit>("y")));
            }),
            "SAXException: You cannot put character U+0001 into an attribute value");
  EXPECT_EQ(writer.news(), "");
  // Content is read by those who know the algorithm.
  writer.object("u", 0, Unfit("y"));
  EXPECT_EQ(writer.news(), hex("8C 7C 'y'"));
}

TEST_F(X891WriterApplications, AreRefusedWhereTheyAnnounceOtherOctets) {
  start();
  writer.news();
  first.tooMuch = 1;
  const std::string refused =
      "EncodingAlgorithmException: The algorithm \"u\" announced other octets than it wrote";
  EXPECT_EQ(thrown([&] { writer.object("u", 0, Base64Data("x")); }), refused);
  EXPECT_EQ(thrown([&] { writer.object("u", 0, Base64Data("")); }), refused);
  EXPECT_EQ(thrown([&] {
              writer.startElement("", "b", "b",
                                  TypedAttribute("u", 0, std::make_unique<Base64Data>("x")));
            }),
            refused);
  EXPECT_EQ(writer.news(), "");
}

TEST_F(X891WriterApplications, FitIntoTheirFieldsOrAreRefused) {
  EncodingAlgorithmMap many;
  for (int i = 1000; i < 1225; ++i) many["u" + std::to_string(i)] = &first;
  writer.setProperty(properties::registeredEncodingAlgorithms, &many);
  start();
  writer.news();
  writer.octets("u1224", 0, "x");
  EXPECT_EQ(writer.news(), hex("8F FC 'x'"));
  writer.reset();
  many["w"] = &first;
  writer.startDocument();
  EXPECT_EQ(thrown([&] { writer.start("a"); }), "SAXException: More than 225 encoding algorithms");
  many = {{"", &first}};
  EXPECT_EQ(thrown([&] { writer.start("a"); }),
            "SAXException: An encoding algorithm is registered without a URI");
  many.clear();
  writer.start("a");
  EXPECT_EQ(writer.news(), document("3C 00 'a'"));
}

}  // namespace
}  // namespace x891_test
