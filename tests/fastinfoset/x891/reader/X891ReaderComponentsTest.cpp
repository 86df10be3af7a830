#include <gtest/gtest.h>

#include "X891ReaderSupport.h"

// The optional components in front of a document's children (X.891, C.2.4 to C.2.10).

namespace x891_test {
namespace {

const char* const kPadding = "Padding bits that are not zero";

/// What the properties say of the last document.
std::string statedBy(X891Reader& reader) {
  const auto* standalone =
      static_cast<bool*>(reader.reader.getProperty(Tavrin::properties::standalone));
  const auto* version =
      static_cast<std::string*>(reader.reader.getProperty(Tavrin::properties::documentXMLVersion));
  return *version + (standalone ? *standalone ? " yes" : " no" : " -");
}

TEST(X891ReaderComponents, MayBeAbsent) {
  X891Reader reader;
  EXPECT_EQ("1.0 -", statedBy(reader));
  EXPECT_EQ(wholeContent({}), reader.read(fromComponents("00 3C 00 'a' FF")));
  EXPECT_EQ("1.0 -", statedBy(reader));
}

TEST(X891ReaderComponents, SkipAdditionalData) {
  // One item, and two of which the data of the last are 65 octets, not all of them UTF-8.
  EXPECT_EQ(wholeContent({}), readNew(fromComponents("40 00 04 'urn:x' 02 FF 00 3C 3C 00 'a' FF")));
  EXPECT_EQ(wholeContent({}), readNew(fromComponents("40 01 00 'i' 00 'd' 00 'j' 40 00") +
                                      std::string(65, '\xFF') + octets("3C 00 'a' FF")));
}

TEST(X891ReaderComponents, SkipAdditionalDataOfManyItems) {
  std::string many;
  for (int i = 0; i < 129; ++i) many += octets("00 'i' 00 'd'");
  EXPECT_EQ(wholeContent({}),
            readNew(fromComponents("40 7F") + many.substr(0, std::size_t{128} * 4) +
                    octets("3C 00 'a' FF")));
  EXPECT_EQ(wholeContent({}),
            readNew(fromComponents("40 80 00 00") + many + octets("3C 00 'a' FF")));
}

TEST(X891ReaderComponents, RefuseIndexesInAdditionalData) {
  expectRefused(fromComponents("40 00 80"), "x", "Error when parsing identifier");
  expectRefused(fromComponents("40 00 00 'i' 81"), "x", "Error when parsing identifier");
}

TEST(X891ReaderComponents, SkipTheCharacterEncodingScheme) {
  X891Reader reader;
  EXPECT_EQ(wholeContent({}), reader.read(fromComponents("04 04 'UTF-8' 3C 00 'a' FF")));
  EXPECT_EQ("1.0 -", statedBy(reader));
  expectRefused(fromComponents("04 80"), "x", "Error when parsing identifier");
}

TEST(X891ReaderComponents, TellStandalone) {
  X891Reader reader;
  EXPECT_EQ(wholeContent({}), reader.read(fromComponents("02 01 3C 00 'a' FF")));
  EXPECT_EQ("1.0 yes", statedBy(reader));
  EXPECT_TRUE(reader.reader.getFeature(Tavrin::features::isStandalone));
  EXPECT_EQ(wholeContent({}), reader.read(fromComponents("02 00 3C 00 'a' FF")));
  EXPECT_EQ("1.0 no", statedBy(reader));
  EXPECT_FALSE(reader.reader.getFeature(Tavrin::features::isStandalone));
  // The next states nothing.
  EXPECT_EQ(wholeContent({}), reader.read(document("3C 00 'a' FF")));
  EXPECT_EQ("1.0 -", statedBy(reader));
  EXPECT_FALSE(reader.reader.getFeature(Tavrin::features::isStandalone));
}

TEST(X891ReaderComponents, RefuseAnyOtherStandalone) {
  for (int octet = 2; octet < 256; ++octet) {
    expectRefused(fromComponents("02") + static_cast<char>(octet), octets("3C 00 'a' FF"),
                  "Error when decoding standalone");
  }
}

TEST(X891ReaderComponents, TellTheVersion) {
  X891Reader reader;
  const char* const versions[] = {"01 02 '1.0'", "01 02 '1.1'", "01 03 '1.17'",
                                  "01 15 00 '1' 00 '.' 00 '0'"};
  const char* const told[] = {"1.0 -", "1.1 -", "1.17 -", "1.0 -"};
  for (int i = 0; i < 4; ++i) {
    const std::string head = fromComponents(versions[i]);
    const std::string version(told[i], std::string(told[i]).size() - 2);
    EXPECT_EQ(warned(version, head.size(), wholeContent({})),
              reader.read(head + octets("3C 00 'a' FF")));
    EXPECT_EQ(told[i], statedBy(reader));
  }
  // In the built-in alphabet of numbers.
  EXPECT_EQ(warned("1.1", 9, wholeContent({})),
            reader.read(fromComponents("01 20 01 1C 1F 3C 00 'a' FF")));
  EXPECT_EQ("1.1 -", statedBy(reader));
}

TEST(X891ReaderComponents, TakeTheVersionForAnOtherString) {
  X891Reader reader;
  EXPECT_EQ(wholeContent({"comment(1.0)"}),
            reader.read(fromComponents("01 42 '1.0' 3C 00 'a' E2 80 FF")));
  // It may be an entry of the initial vocabulary.
  EXPECT_EQ(warned("1.1", 13, wholeContent({})),
            reader.read(fromComponents("21 00 04 00 02 '1.1' 80 3C 00 'a' FF")));
  EXPECT_EQ("1.1 -", statedBy(reader));
}

TEST(X891ReaderComponents, RefuseWhatIsNoVersion) {
  const struct {
    const char* octets;
    const char* shown;
  } cases[] = {{"FF", ""},           {"00 '1'", "1"},       {"01 '1.'", "1."},
               {"02 '2.0'", "2.0"},  {"03 '1.0 '", "1.0 "}, {"02 '1,0'", "1,0"},
               {"03 '1.0a'", "1.0a"}};
  for (const auto& each : cases) {
    expectRefused(fromComponents("01 " + std::string(each.octets)), "\x3C",
                  "\"" + std::string(each.shown) + "\" is not a version of XML");
  }
}

TEST(X891ReaderComponents, MayAllBeThere) {
  X891Reader reader;
  EXPECT_EQ(
      warned("1.1", 39,
             whole({"startDTD(a, , )", "notationDecl(n, , s)", "unparsedEntityDecl(e, , f, n)",
                    "endDTD()", "startElement(, a, a, [])", "comment(x)", "endElement(, a, a)"})),
      reader.read(fromComponents("7F 00 00 'i' 00 'd' 00 04 00 00 'x' C2 00 'n' 00 's' F0 "
                                 "D0 00 'e' 00 'f' 80 F0 04 'UTF-8' 01 02 '1.1' "
                                 "3C 00 'a' E2 80 FF")));
  EXPECT_EQ("1.1 yes", statedBy(reader));
}

TEST(X891ReaderComponents, PrintNothing) {
  // readNew tells what is printed.
  EXPECT_EQ(wholeContent({"skippedEntity(n)"}),
            readNew(fromComponents("45 00 00 'i' 00 'd' 04 'UTF-8' 02 '1.0' 3C 00 'a' "
                                   "C8 00 'n' FF")));
}

TEST(X891ReaderComponents, CannotBeSet) {
  using namespace Tavrin::properties;
  X891Reader reader;
  bool standaloneValue = true;
  std::string version = "1.1";
  EXPECT_EQ("SAXException: Property \"http://tavrin/sax/properties/standalone\" can only be asked",
            outcomeOf([&] { reader.reader.setProperty(standalone, &standaloneValue); }));
  EXPECT_EQ(
      "SAXException: Property \"http://xml.org/sax/properties/document-xml-version\" can only be "
      "asked",
      outcomeOf([&] { reader.reader.setProperty(documentXMLVersion, &version); }));
  EXPECT_EQ("SAXException: Feature \"http://xml.org/sax/features/is-standalone\" can only be asked",
            outcomeOf([&] { reader.reader.setFeature(Tavrin::features::isStandalone, true); }));
  EXPECT_EQ("1.0 -", statedBy(reader));
}

// --- Padding ---

TEST(X891ReaderComponents, RefusePaddingOfTheFirstOctet) {
  expectRefused(fromComponents("80"), octets("3C 00 'a' FF"), kPadding);
  expectRefused(fromComponents("FF"), "", kPadding);
}

TEST(X891ReaderComponents, RefusePaddingOfLongNumbers) {
  for (const char* octet : {"90", "A0", "C0", "F0", "FF"}) {
    expectRefused(fromComponents("40 " + std::string(octet)), octets("00 00 00 'i' 00 'd'"),
                  kPadding);
  }
}

TEST(X891ReaderComponents, RefusePaddingOfANameBehindDeclarations) {
  for (const char* name : {"7C", "BC", "FC"}) {
    expectPrologRefused("38 CD 00 'u' F0 " + std::string(name), "00 'a' FF", kPadding);
  }
}

TEST(X891ReaderComponents, RefusePaddingOfTerminators) {
  for (const char* octet : {"F1", "F2", "F4", "F8", "FE"}) {
    expectPrologRefused(octet, "", "Error while parsing document");
    expectContentRefused(octet, "", "Error when decoding element children");
    expectPrologRefused("7C 00 'a' 78 00 'b' 00 'c' " + std::string(octet), "",
                        "Error when decoding attribute name");
    expectPrologRefused("38 CD 00 'u' " + std::string(octet), "", "Error while parsing namespaces");
    expectPrologRefused("C4 " + std::string(octet), "", "Error while parsing DTD");
    expectRefused(fromComponents("10 C2 00 'n' 00 's' " + std::string(octet)), "",
                  "Error while parsing notations");
    expectRefused(fromComponents("08 " + std::string(octet)), "",
                  "Error while parsing unparsed entities");
  }
  // Two terminators where only one can be.
  expectPrologRefused("38 CD 00 'u' FF", "", "Error while parsing namespaces");
  expectRefused(fromComponents("10 FF"), "", "Error while parsing notations");
  expectRefused(fromComponents("08 FF"), "", "Error while parsing unparsed entities");
}

}  // namespace
}  // namespace x891_test
