#include <gtest/gtest.h>

#include "X891NaiveDecoder.h"
#include "X891WriterSupport.h"

// What enters the tables, how much, and the forms of lengths and indexes.

namespace x891_test {
namespace {

using namespace Tavrin;

/// The octets of an attribute `c` with a value, behind its name.
std::string value(Writer& writer, const std::string& text) {
  writer.start("b", {{"c", text}});
  writer.news();
  writer.leaf("b", {{"c", text}});
  const std::string octets = writer.news();
  writer.end("b");
  // An owed terminator, the element and its attribute.
  const std::string begin = hex("F0 41 00");
  EXPECT_EQ(octets.substr(0, begin.size()), begin);
  return octets.substr(begin.size() + 1, octets.size() - begin.size() - 4);
}

TEST(X891WriterTables, HoldValuesUpToALength) {
  Writer writer;
  writer.startDocument();
  writer.start("a");
  EXPECT_EQ(value(writer, textOf(32)), hex("80"));
  EXPECT_EQ(value(writer, textOf(33)), hex("08 18 '" + textOf(33) + "'"));
  writer.set(properties::indexedAttributeValueLength, std::uint64_t{33});
  EXPECT_EQ(value(writer, textOf(33)), hex("81"));
  writer.set(properties::indexedAttributeValueLength, std::uint64_t{0});
  EXPECT_EQ(value(writer, textOf(33)), hex("81"));  // What is there is used.
  EXPECT_EQ(value(writer, "x"), hex("00 'x'"));
}

TEST(X891WriterTables, GrowUpToANumberOfOctets) {
  Writer writer;
  // The two elements and the attribute with their local names; then two values.
  writer.set(properties::maximumTableOctets, std::uint64_t{3 * (323 + 129) + 130 + 129});
  writer.startDocument();
  writer.start("a");
  EXPECT_EQ(value(writer, "xy"), hex("80"));
  EXPECT_EQ(value(writer, "xyz"), hex("02 'xyz'"));
  EXPECT_EQ(value(writer, "z"), hex("81"));
  EXPECT_EQ(value(writer, "y"), hex("00 'y'"));
  writer.characters("y");
  writer.comment("y");
  EXPECT_EQ(writer.news(), hex("F0 80 'y' E2 00 'y'"));
  // Names enter a reader's tables in any case.
  writer.leaf("d");
  writer.leaf("d");
  EXPECT_EQ(writer.news(), hex("3C 00 'd' F0 02"));
}

TEST(X891WriterTables, HoldIdentifiersUpToWhatReadersTake) {
  // Two identifiers count, the absent one too, with 128 octets each.
  const std::string systemId((std::size_t{1} << 29) - 255, 's');
  Writer writer;
  writer.startDocument();
  EXPECT_EQ(thrown([&] { writer.startDTD("a", "", systemId); }),
            "SAXException: The vocabulary takes more than 536870912 octets (property "
            "maximum-table-octets)");
  writer.set(properties::maximumTableOctets, (std::uint64_t{1} << 29) + 1);
  EXPECT_EQ(thrown([&] { writer.startDTD("a", "", systemId); }), "nothing");
}

// C.25 and C.27, and a table that is full.
TEST(X891WriterTables, HaveIndexesOfEveryForm) {
  Writer writer;
  writer.startDocument();
  writer.start("r");
  std::size_t sent = 0;
  const auto nameOf = [](std::size_t number) { return "n" + shortText(number); };
  const auto send = [&](std::size_t count) {
    for (; sent < count; ++sent) writer.leaf(nameOf(sent), {{"x" + nameOf(sent), shortText(sent)}});
    writer.comment("");
    writer.news();
  };
  // The root has index 0 of the elements, so that this has one more than its attribute.
  const auto indexes = [&](std::size_t number) {
    send(number + 1);
    writer.start(nameOf(number), {{"x" + nameOf(number), shortText(number)}});
    writer.comment("");
    writer.end(nameOf(number));
    return writer.news();
  };
  EXPECT_EQ(indexes(0), hex("41 00 80 F0 E2 FF"));
  EXPECT_EQ(indexes(30), hex("5F 1E 9E F0 E2 FF"));
  EXPECT_EQ(indexes(31), hex("60 00 1F 9F F0 E2 FF"));
  EXPECT_EQ(indexes(63), hex("60 20 3F BF F0 E2 FF"));
  EXPECT_EQ(indexes(64), hex("60 21 40 00 C0 00 F0 E2 FF"));
  EXPECT_EQ(indexes(2078), hex("67 FF 47 DE C7 DE F0 E2 FF"));
  EXPECT_EQ(indexes(2079), hex("68 00 00 47 DF C7 DF F0 E2 FF"));
  EXPECT_EQ(indexes(8255), hex("68 18 20 5F FF DF FF F0 E2 FF"));
  EXPECT_EQ(indexes(8256), hex("68 18 21 60 00 00 E0 00 00 F0 E2 FF"));
}

// Tables that begin nearly full: the last indexes, and then literals.
TEST(X891WriterTables, TakeNoMoreWhereTheyAreFull) {
  constexpr std::uint32_t kMeg = 1 << 20;
  static const char* const nothing[] = {"unused"};
  static const char* const noName[][3] = {{"", "", "unused"}};
  ExternalVocabulary vocabulary;
  const StringTable oneLeft = {nothing, 1, kMeg - 1};
  const StringTable oneLeftBesideTheBuiltIn = {nothing, 1, kMeg - 2};
  vocabulary.prefixes = vocabulary.namespaceNames = oneLeftBesideTheBuiltIn;
  vocabulary.localNames = vocabulary.otherNCNames = oneLeft;
  vocabulary.attributeValues = vocabulary.contentCharacterChunks = vocabulary.otherStrings =
      oneLeft;
  vocabulary.elementNameSurrogates = vocabulary.attributeNameSurrogates = {noName, 1, kMeg - 1};
  ExternalVocabularyMap known = {{"u", &vocabulary}};
  Writer writer;
  writer.setProperty(properties::externalVocabularies, &known);
  writer.set(properties::externalVocabulary, std::string("u"));
  writer.startDocument();
  writer.startPrefixMapping("p", "v");
  writer.startPrefixMapping("q", "w");
  writer.startElement("v", "a", "p:a", namedAttributes({{"w", "a", "q:a", "x"}}));
  // The last index, 2^20 - 1 from 0, is 8256 and FDFBF more.
  EXPECT_EQ(writer.news(), hex("E0 00 00 01 20 10 00 00 'u' 78 CF 00 'p' 00 'v' CF 00 'q' 00 'w' F0"
                               "3F EF DF BF EF DF BF 00 'a' 7B 00 'q' 00 'w' EF DF BF 40 'x'"));
  writer.startElement("v", "a", "p:a", namedAttributes({{"w", "a", "q:a", "x"}}));
  // Of elements 526368 and 7F7DF more.
  EXPECT_EQ(writer.news(), hex("F0 70 07 F7 DF 6F DF BF EF DF BF"));
  writer.startElement("w", "b", "q:b", namedAttributes({{"v", "b", "p:b", "y"}}));
  EXPECT_EQ(writer.news(), hex("F0 7F 00 'q' 00 'w' 00 'b' 7B EF DF BF EF DF BF 00 'b' 00 'y'"));
  writer.endElement("w", "b", "q:b");
  writer.characters("x");
  writer.comment("x");
  writer.characters("x");
  writer.comment("y");
  writer.characters("y");
  writer.processingInstruction("t", "x");
  writer.processingInstruction("s", "y");
  writer.processingInstruction("t", "y");
  // Of chunks 263184 and BFBEF more.
  EXPECT_EQ(writer.news(), hex("FF 90 'x' E2 40 'x' B8 0B FB EF E2 00 'y' 80 'y' E1 00 't' EF DF BF"
                               "E1 00 's' 00 'y' E1 EF DF BF 00 'y'"));
}

TEST(X891WriterTables, HaveLengthsOfEveryForm) {
  const auto name = [](std::size_t length) {
    const std::string text(length, 'x');
    const std::string whole = content([&](Writer& writer) { writer.leaf(text); });
    return whole.substr(0, whole.find(" 78 78"));
  };
  EXPECT_EQ(name(64), document("3C 00 'a' 3C 3F"));
  EXPECT_EQ(name(65), document("3C 00 'a' 3C 40 00"));
  EXPECT_EQ(name(320), document("3C 00 'a' 3C 40 FF"));
  EXPECT_EQ(name(321), document("3C 00 'a' 3C 60 00 00 00 00"));
  const auto comment = [](std::size_t length) {
    const std::string text(length, 'x');
    const std::string whole = content([&](Writer& writer) { writer.comment(text); });
    return whole.substr(0, whole.find(" 78 78"));
  };
  EXPECT_EQ(comment(8), document("3C 00 'a' E2 47"));
  EXPECT_EQ(comment(9), document("3C 00 'a' E2 48 00"));
  EXPECT_EQ(comment(264), document("3C 00 'a' E2 08 FF"));
  EXPECT_EQ(comment(265), document("3C 00 'a' E2 0C 00 00 00 00"));
}

TEST(X891WriterTables, BeginEmptyWithEachDocumentOnAStream) {
  Writer writer;
  for (int i = 0; i < 2; ++i) {
    writer.startDocument();
    writer.start("a", {{"b", "v"}});
    writer.characters("t");
    writer.end("a");
    writer.comment("c");
    writer.endDocument();
    writer.reset();
  }
  const std::string one = "E0 00 00 01 00 7C 00 'a' 78 00 'b' 40 'v' F0 90 't' F0 E2 40 'c' F0";
  EXPECT_EQ(writer.written(), hex(one + one));
}

}  // namespace
}  // namespace x891_test
