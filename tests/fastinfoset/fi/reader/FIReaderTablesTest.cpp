#include <gtest/gtest.h>

#include "FIReaderPrimitives.h"

// The tables of an initial vocabulary, through the operations that decode one.

namespace reader_test {
namespace {

using Strings = Primitives::Strings;
using Names = std::vector<Primitives::QualifiedName>;

std::string show(const Strings& table) {
  std::string shown;
  for (const std::string& entry : table) shown += "[" + entry + "]";
  return shown;
}

std::string show(const Names& table) {
  std::string shown;
  for (const auto& name : table) {
    shown += "[" + name.prefix + "|" + name.namespaceName + "|" + name.localName + "]";
  }
  return shown;
}

/// Decodes over a table and shows what it holds then.
std::string decodeStrings(const std::string& octets, Strings table = {}) {
  Primitives reader;
  const std::string outcome = reader.run(octets, [&] { reader.decodeStringTable(table); });
  return outcome == "done" ? show(table) : outcome;
}

std::string decodeIdentifiers(const std::string& octets, Strings table = {}) {
  Primitives reader;
  const std::string outcome = reader.run(octets, [&] { reader.decodeIdentifierTable(table); });
  return outcome == "done" ? show(table) : outcome;
}

TEST(FIReaderStringTables, HoldTheCountedStrings) {
  EXPECT_EQ("", decodeStrings(octets("00")));
  EXPECT_EQ("", decodeStrings(octets("80 00 00")));
  EXPECT_EQ("[x]", decodeStrings(octets("01 00 'x'")));
  EXPECT_EQ("[x]", decodeStrings(octets("80 00 01 00 'x'")));
  EXPECT_EQ("[x][][yz][x]", decodeStrings(octets("04 00 'x' FF 01 'yz' 00 'x'")));
}

TEST(FIReaderStringTables, IgnoreTheBitThatAdds) {
  EXPECT_EQ("[x][y]", decodeStrings(octets("02 40 'x' 40 'y'")));
}

TEST(FIReaderStringTables, RefuseIndices) {
  for (const char* written : {"01 80", "02 00 'x' 80", "01 C0 00", "01 E0 00 00"}) {
    EXPECT_EQ("SAXException: Error when decoding string", decodeStrings(octets(written)));
  }
  EXPECT_EQ("SAXException: Error when decoding index", decodeStrings(octets("01 F0")));
}

TEST(FIReaderStringTables, HoldNothingWhereTheEncodingIsNotRead) {
  EXPECT_EQ("[][x]", decodeStrings(octets("02 10 00 'x'")));
  EXPECT_EQ("[][x]", decodeStrings(octets("02 20 00 'x'")));
  EXPECT_EQ("[][x]", decodeStrings(octets("02 70 00 'x'")));
}

TEST(FIReaderStringTables, ReplaceWhatTheTableHeld) {
  const Strings before = {"a", "b", "c"};
  EXPECT_EQ("", decodeStrings(octets("00"), before));
  EXPECT_EQ("[x]", decodeStrings(octets("01 00 'x'"), before));
  EXPECT_EQ("[x][y][z]", decodeStrings(octets("03 00 'x' 00 'y' 00 'z'"), before));
  EXPECT_EQ("[x][y][z][w]", decodeStrings(octets("04 00 'x' 00 'y' 00 'z' 00 'w'"), before));
  // A string that is not read leaves the entry in whose place it stands.
  EXPECT_EQ("[x][b]", decodeStrings(octets("02 00 'x' 10"), before));
}

TEST(FIReaderIdentifierTables, HoldTheCountedStrings) {
  EXPECT_EQ("", decodeIdentifiers(octets("00")));
  EXPECT_EQ("[x]", decodeIdentifiers(octets("01 00 'x'")));
  EXPECT_EQ("[x][yz][x]", decodeIdentifiers(octets("80 00 03 00 'x' 01 'yz' 00 'x'")));
}

TEST(FIReaderIdentifierTables, RefuseIndices) {
  for (const char* written : {"01 80", "02 00 'x' 80", "01 F0", "01 FF"}) {
    EXPECT_EQ("SAXException: Error when parsing identifier", decodeIdentifiers(octets(written)));
  }
}

TEST(FIReaderIdentifierTables, ReplaceWhatTheTableHeld) {
  const Strings before = {"a", "b", "c"};
  EXPECT_EQ("", decodeIdentifiers(octets("00"), before));
  EXPECT_EQ("[x][y]", decodeIdentifiers(octets("02 00 'x' 00 'y'"), before));
  EXPECT_EQ("[w][x][y][z]", decodeIdentifiers(octets("04 00 'w' 00 'x' 00 'y' 00 'z'"), before));
}

TEST(FIReaderTables, AreCutOffByTheEndOfTheDocument) {
  const std::string end = "SAXException: Unexpected end of document";
  for (const char* written :
       {"", "01", "02 00 'x'", "02 00 'x' 01 'y'", "80", "80 00", "8F FF FF", "8F FF FF 00 'x'"}) {
    SCOPED_TRACE(written);
    Primitives reader;
    Strings table;
    EXPECT_EQ(end, reader.runCutOff(octets(written), [&] { reader.decodeStringTable(table); }));
    EXPECT_EQ(end, reader.runCutOff(octets(written), [&] { reader.decodeIdentifierTable(table); }));
  }
  for (const char* written : {"", "01", "01 00", "01 00 00", "02 00 00 'x'", "01 01", "8F FF FF"}) {
    SCOPED_TRACE(written);
    Primitives reader;
    Names table;
    EXPECT_EQ(end,
              reader.runCutOff(octets(written), [&] { reader.decodeQualifiedNameTable(table); }));
  }
}

// --- Names ---

/// A vocabulary of two prefixes, p0 and p1, two namespace names, u0 and u1, and one local name, l0.
const char* const kVocabulary = "20 03 80 02 01 'p0' 01 'p1' 02 01 'u0' 01 'u1' 01 01 'l0'";

std::string decodeNames(const std::string& octets, Names table = {}) {
  Primitives reader;
  const std::string outcome = reader.run(
      octets, [&] { reader.decodeQualifiedNameTable(table); }, ::octets(kVocabulary));
  return outcome == "done" ? show(table) : outcome;
}

TEST(FIReaderNameTables, HoldTheCountedNames) {
  EXPECT_EQ("", decodeNames(octets("00")));
  EXPECT_EQ("[||x]", decodeNames(octets("01 00 00 'x'")));
  EXPECT_EQ("[||l0][|u0|x][p1|u1|x]", decodeNames(octets("03 00 80 01 01 00 'x' 03 02 02 81")));
  EXPECT_EQ("[||x]", decodeNames(octets("80 00 01 00 00 'x'")));
}

TEST(FIReaderNameTables, CountPrefixesAndNamespaceNamesFromOne) {
  EXPECT_EQ("[xml|http://www.w3.org/XML/1998/namespace|l0]", decodeNames(octets("01 03 00 00 80")));
  EXPECT_EQ("[p0|u1|l0]", decodeNames(octets("01 03 01 02 80")));
  EXPECT_EQ("[|http://www.w3.org/XML/1998/namespace|l0]", decodeNames(octets("01 01 00 80")));
  // Where an index begins, the bit before it is not looked at.
  EXPECT_EQ("[p0|u1|l0]", decodeNames(octets("01 03 81 82 80")));
  EXPECT_EQ("SAXException: Error when parsing prefix", decodeNames(octets("01 03 03 00 80")));
  EXPECT_EQ("SAXException: Error when parsing namespace", decodeNames(octets("01 01 03 80")));
  EXPECT_EQ("SAXException: Error when decoding string - invalid index",
            decodeNames(octets("01 00 81")));
}

TEST(FIReaderNameTables, LookAtTwoBitsOfANamesOctet) {
  EXPECT_EQ("[||l0][||l0]", decodeNames(octets("02 FC 80 78 80")));
  EXPECT_EQ("[p0|u0|l0]", decodeNames(octets("01 3F 01 01 80")));
}

TEST(FIReaderNameTables, RefuseAPrefixWithoutANamespaceName) {
  EXPECT_EQ("SAXException: Qualified name with a prefix, but without a namespace",
            decodeNames(octets("01 02 01 80")));
  EXPECT_EQ("SAXException: Qualified name with a prefix, but without a namespace",
            decodeNames(octets("02 00 80 02 01 80")));
}

// --- One name ---

TEST(FIReaderNames, LiteralOnesAreAddedAndReturned) {
  Primitives reader;
  Names table = {{"p", "u", "l"}};
  std::string returned;
  const auto decode = [&](int octet) {
    const Primitives::QualifiedName& name = reader.decodeQualifiedName(octet, table);
    EXPECT_EQ(&table.back(), &name);
    returned += show({name});
  };
  EXPECT_EQ("done", reader.run(
                        octets("01 02 01 'xy'  01 80  81"),
                        [&] {
                          decode(0x3F);
                          decode(0x79);
                          decode(0x3C);
                        },
                        octets(kVocabulary)));
  EXPECT_EQ("[p0|u1|xy][|u0|l0][||xy]", returned);
  EXPECT_EQ("[p|u|l][p0|u1|xy][|u0|l0][||xy]", show(table));
}

TEST(FIReaderNames, OfEmptyTablesAreNone) {
  Primitives reader;
  EXPECT_EQ("SAXException: Error when decoding element name - invalid index",
            outcomeOf([&] { reader.getElementName(0); }));
  EXPECT_EQ("SAXException: Error when decoding attribute name - invalid index",
            outcomeOf([&] { reader.getAttributeName(0); }));
}

TEST(FIReaderNames, AreFoundByTheirIndexFromZero) {
  Primitives reader;
  std::string found;
  EXPECT_EQ("done", reader.run(
                        "",
                        [&] {
                          found += show({reader.getElementName(0), reader.getElementName(1)});
                          found += show({reader.getAttributeName(0)});
                          found += outcomeOf([&] { reader.getElementName(2); });
                          found += outcomeOf([&] { reader.getAttributeName(1); });
                        },
                        octets("20 00 03  02 00 00 'e' 00 00 'f'  01 00 00 'g'")));
  EXPECT_EQ(
      "[||e][||f][||g]SAXException: Error when decoding element name - invalid index"
      "SAXException: Error when decoding attribute name - invalid index",
      found);
}

}  // namespace
}  // namespace reader_test
