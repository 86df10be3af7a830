#include <gtest/gtest.h>

#include "FIWriterProbe.h"

// Indices, strings and character chunks, octet for octet, on both sides of every change of form.

namespace writer_test {
namespace {

/// What an index makes of an octet whose other bits are given.
std::string index(int bits, unsigned value) {
  Probe writer;
  writer.encodeIndex(bits, value);
  return writer.written();
}

TEST(WriterIndex, HasAFormForEveryRange) {
  EXPECT_EQ(index(0x80, 0), "80");
  EXPECT_EQ(index(0x80, 1), "81");
  EXPECT_EQ(index(0x80, 62), "BE");
  EXPECT_EQ(index(0x80, 63), "BF");
  EXPECT_EQ(index(0x80, 64), "C0 00");
  EXPECT_EQ(index(0x80, 65), "C0 01");
  EXPECT_EQ(index(0x80, 64 + 0xFF), "C0 FF");
  EXPECT_EQ(index(0x80, 64 + 0x100), "C1 00");
  EXPECT_EQ(index(0x80, 8254), "DF FE");
  EXPECT_EQ(index(0x80, 8255), "DF FF");
  EXPECT_EQ(index(0x80, 8256), "E0 00 00");
  EXPECT_EQ(index(0x80, 8257), "E0 00 01");
  EXPECT_EQ(index(0x80, 8256 + 0xFF), "E0 00 FF");
  EXPECT_EQ(index(0x80, 8256 + 0x100), "E0 01 00");
  EXPECT_EQ(index(0x80, 8256 + 0xFFFF), "E0 FF FF");
  EXPECT_EQ(index(0x80, 8256 + 0x10000), "E1 00 00");
  EXPECT_EQ(index(0x80, 0xFFFFF), "EF DF BF");
  EXPECT_EQ(index(0x80, 8256 + 0xFFFFF), "EF FF FF");
}

TEST(WriterIndex, LeavesTheFirstBitAlone) {
  EXPECT_EQ(index(0, 0), "00");
  EXPECT_EQ(index(0, 63), "3F");
  EXPECT_EQ(index(0, 64), "40 00");
  EXPECT_EQ(index(0, 8255), "5F FF");
  EXPECT_EQ(index(0, 8256), "60 00 00");
  EXPECT_EQ(index(0, 8256 + 0xFFFFF), "6F FF FF");
}

/// What a literal of a given length begins with. What follows must be the text itself.
template <typename Encode>
std::string beginning(std::size_t length, Encode encode) {
  Probe writer;
  const std::string text = textOf(length);
  encode(writer, text);
  const std::string& all = writer.output.text();
  if (all.size() < length || all.substr(all.size() - length) != text) return "another text";
  return EventLog::showOctets(all.substr(0, all.size() - length));
}

TEST(WriterString, HasAFormForEveryLength) {
  const auto literal = [](std::size_t length) {
    return beginning(length, [](Probe& writer, const std::string& text) {
      writer.encodeString(nullptr, false, text);
    });
  };
  EXPECT_EQ(literal(1), "00");
  EXPECT_EQ(literal(2), "01");
  EXPECT_EQ(literal(6), "05");
  EXPECT_EQ(literal(7), "06");
  EXPECT_EQ(literal(8), "07");
  EXPECT_EQ(literal(9), "08 00");
  EXPECT_EQ(literal(10), "08 01");
  EXPECT_EQ(literal(263), "08 FE");
  EXPECT_EQ(literal(264), "08 FF");
  EXPECT_EQ(literal(265), "0C 00 00 00 00");
  EXPECT_EQ(literal(266), "0C 00 00 00 01");
  EXPECT_EQ(literal(265 + 0xFF), "0C 00 00 00 FF");
  EXPECT_EQ(literal(265 + 0x100), "0C 00 00 01 00");
  EXPECT_EQ(literal(265 + 0x10000), "0C 00 01 00 00");
  EXPECT_EQ(literal(265 + 0x1000000), "0C 01 00 00 00");
}

TEST(WriterString, OfATableHasTheBitForIt) {
  const auto literal = [](std::size_t length) {
    return beginning(length, [](Probe& writer, const std::string& text) {
      Probe::StringMap table;
      writer.encodeString(&table, true, text);
    });
  };
  EXPECT_EQ(literal(1), "40");
  EXPECT_EQ(literal(8), "47");
  EXPECT_EQ(literal(9), "48 00");
  EXPECT_EQ(literal(264), "48 FF");
  EXPECT_EQ(literal(265), "4C 00 00 00 00");
  EXPECT_EQ(literal(266), "4C 00 00 00 01");
}

TEST(WriterString, IsAnIndexFromTheSecondTimeOn) {
  Probe writer;
  Probe::StringMap table;
  for (const char* text : {"ab", "ab", "c", "ab", "c"}) writer.encodeString(&table, true, text);
  EXPECT_EQ(writer.written(), hex("41 'ab' 80 40 'c' 80 81"));
  EXPECT_EQ(table, (Probe::StringMap{{"ab", 0}, {"c", 1}}));
}

TEST(WriterString, IsLookedUpAlsoWhenItWouldNotBeAdded) {
  Probe writer;
  Probe::StringMap table;
  writer.encodeString(&table, false, "ab");
  writer.encodeString(&table, false, "ab");
  writer.encodeString(&table, true, "ab");
  writer.encodeString(&table, false, "ab");
  EXPECT_EQ(writer.written(), hex("01 'ab' 01 'ab' 41 'ab' 80"));
  EXPECT_EQ(table, (Probe::StringMap{{"ab", 0}}));
}

TEST(WriterString, IsNeverAnIndexWithoutATable) {
  Probe writer;
  writer.encodeString(nullptr, true, "ab");
  writer.encodeString(nullptr, true, "ab");
  EXPECT_EQ(writer.written(), hex("01 'ab' 01 'ab'"));
}

TEST(WriterString, IsOneOctetWhenEmptyAndEntersNoTable) {
  Probe writer;
  Probe::StringMap table;
  writer.encodeString(nullptr, false, "");
  writer.encodeString(&table, true, "");
  writer.encodeString(&table, true, "");
  EXPECT_EQ(writer.written(), hex("FF FF FF"));
  EXPECT_EQ(table, Probe::StringMap());
}

TEST(WriterString, ComparesByOctets) {
  Probe writer;
  Probe::StringMap table;
  const std::string withNull("a\0b", 3);
  for (const std::string& text : {std::string("a"), withNull, std::string("A"), withNull}) {
    writer.encodeString(&table, true, text);
  }
  EXPECT_EQ(writer.written(), hex("40 'a' 42 'a' 00 'b' 40 'A' 81"));
}

TEST(WriterString, TakesItsIndexFromTheTable) {
  Probe writer;
  Probe::StringMap table = {{"a", 63}, {"b", 64}, {"c", 8255}, {"d", 8256}};
  for (const char* text : {"a", "b", "c", "d"}) writer.encodeString(&table, true, text);
  EXPECT_EQ(writer.written(), hex("BF C0 00 DF FF E0 00 00"));
  writer.encodeString(&table, true, "e");
  EXPECT_EQ(table.at("e"), 4U);
}

TEST(WriterIdentifier, HasAFormForEveryLength) {
  const auto literal = [](std::size_t length) {
    return beginning(length, [](Probe& writer, const std::string& text) {
      Probe::StringMap table;
      writer.encodeIdentifier(&table, text);
    });
  };
  EXPECT_EQ(literal(1), "00");
  EXPECT_EQ(literal(2), "01");
  EXPECT_EQ(literal(63), "3E");
  EXPECT_EQ(literal(64), "3F");
  EXPECT_EQ(literal(65), "40 00");
  EXPECT_EQ(literal(66), "40 01");
  EXPECT_EQ(literal(319), "40 FE");
  EXPECT_EQ(literal(320), "40 FF");
  EXPECT_EQ(literal(321), "60 00 00 00 00");
  EXPECT_EQ(literal(322), "60 00 00 00 01");
  EXPECT_EQ(literal(321 + 0x100), "60 00 00 01 00");
  EXPECT_EQ(literal(321 + 0x10000), "60 00 01 00 00");
  EXPECT_EQ(literal(321 + 0x1000000), "60 01 00 00 00");
}

TEST(WriterIdentifier, IsAnIndexFromTheSecondTimeOnWhateverItsLength) {
  Probe writer;
  Probe::StringMap table;
  const std::string longName = textOf(321);
  writer.encodeIdentifier(&table, longName);
  writer.output.news();
  for (const std::string& name : {longName, std::string("a"), std::string("a"), longName}) {
    writer.encodeIdentifier(&table, name);
  }
  EXPECT_EQ(writer.news(), hex("80 00 'a' 81 80"));
  EXPECT_EQ(table, (Probe::StringMap{{longName, 0}, {"a", 1}}));
}

TEST(WriterIdentifier, TakesItsIndexFromTheTable) {
  Probe writer;
  Probe::StringMap table = {{"a", 63}, {"b", 64}, {"c", 8255}, {"d", 8256}};
  for (const char* text : {"a", "b", "c", "d"}) writer.encodeIdentifier(&table, text);
  EXPECT_EQ(writer.written(), hex("BF C0 00 DF FF E0 00 00"));
}

TEST(WriterChunk, HasAFormForEveryLengthAndIsAddedBelowSevenOctets) {
  const auto literal = [](std::size_t length) {
    return beginning(length,
                     [](Probe& writer, const std::string& text) { writer.encodeCharacters(text); });
  };
  EXPECT_EQ(literal(1), "90");
  EXPECT_EQ(literal(2), "91");
  EXPECT_EQ(literal(3), "92 00");
  EXPECT_EQ(literal(4), "92 01");
  EXPECT_EQ(literal(6), "92 03");
  EXPECT_EQ(literal(7), "82 04");
  EXPECT_EQ(literal(8), "82 05");
  EXPECT_EQ(literal(257), "82 FE");
  EXPECT_EQ(literal(258), "82 FF");
  EXPECT_EQ(literal(259), "83 00 00 00 00");
  EXPECT_EQ(literal(260), "83 00 00 00 01");
  EXPECT_EQ(literal(259 + 0x100), "83 00 00 01 00");
  EXPECT_EQ(literal(259 + 0x10000), "83 00 01 00 00");
  EXPECT_EQ(literal(259 + 0x1000000), "83 01 00 00 00");
}

TEST(WriterChunk, IsAnIndexFromTheSecondTimeOnBelowSevenOctets) {
  Probe writer;
  for (const char* text : {"a", "abcdef", "abcdefg", "abcdefg", "a", "abcdef", "b", "b"}) {
    writer.encodeCharacters(text);
  }
  EXPECT_EQ(writer.written(), hex("90 'a' 92 03 'abcdef' 82 04 'abcdefg' 82 04 'abcdefg' A0 A1"
                                  "90 'b' A2"));
}

TEST(WriterChunk, IsNothingWhenEmpty) {
  Probe writer;
  writer.encodeCharacters("");
  EXPECT_EQ(writer.written(), "");
  writer.encodeCharacters("a");
  writer.encodeCharacters("");
  writer.encodeCharacters("a");
  EXPECT_EQ(writer.written(), hex("90 'a' A0"));
}

TEST(WriterTerminator, IsWrittenOnceWhenOwedAndDoubledAtTheEnd) {
  Probe writer;
  writer.flushTerminator(false);
  EXPECT_EQ(writer.written(), "");
  writer.flushTerminator(true);
  EXPECT_EQ(writer.news(), "F0");

  const auto owe = [&writer] { writer.encodeAttributes(Tavrin::AttributesImpl()); };
  owe();
  EXPECT_EQ(writer.news(), "");
  writer.flushTerminator(false);
  EXPECT_EQ(writer.news(), "F0");
  writer.flushTerminator(false);
  EXPECT_EQ(writer.news(), "");
  owe();
  owe();
  writer.flushTerminator(true);
  EXPECT_EQ(writer.news(), "FF");
  writer.flushTerminator(false);
  EXPECT_EQ(writer.news(), "");
}

TEST(WriterTerminator, IsForgottenWithoutAStream) {
  Probe writer;
  writer.encodeAttributes(Tavrin::AttributesImpl());
  writer.setOutputStream(nullptr);
  writer.flushTerminator(false);
  writer.setOutputStream(&writer.output);
  writer.flushTerminator(false);
  EXPECT_EQ(writer.written(), "");

  writer.encodeAttributes(Tavrin::AttributesImpl());
  writer.setOutputStream(nullptr);
  writer.flushTerminator(true);
  writer.flushTerminator(true);
  writer.setOutputStream(&writer.output);
  writer.flushTerminator(false);
  EXPECT_EQ(writer.written(), "");
}

TEST(WriterText, IsFlushedBehindTheOwedTerminator) {
  Probe writer;
  writer.startDocument();
  writer.start("r");
  writer.leaf("e");
  writer.output.news();
  writer.flushCharacters();  // Nothing has gathered: the terminator stays owed.
  EXPECT_EQ(writer.news(), "");
  writer.characters("hi");
  EXPECT_EQ(writer.news(), "");
  writer.flushCharacters();
  EXPECT_EQ(writer.news(), hex("F0 91 'hi'"));
  writer.flushCharacters();
  EXPECT_EQ(writer.news(), "");
}

TEST(WriterText, IsForgottenWhenFlushedWithoutAStream) {
  Probe writer;
  writer.startDocument();
  writer.start("r");
  writer.leaf("e");
  writer.characters("hi");
  writer.output.news();
  writer.setOutputStream(nullptr);
  writer.flushCharacters();
  writer.setOutputStream(&writer.output);
  writer.flushCharacters();
  writer.flushTerminator(false);
  EXPECT_EQ(writer.news(), "");
  writer.characters("hi");
  writer.flushCharacters();
  EXPECT_EQ(writer.news(), hex("91 'hi'"));  // Not an index: it entered no table before.
}

}  // namespace
}  // namespace writer_test
