#include <gtest/gtest.h>

#include "X891ReaderSupport.h"

// What comes before the document: the XML declaration, identification and version number (X.891,
// clause 12).

namespace x891_test {
namespace {

const char* const kNotFastInfoset = "Not a Fast Infoset document";
const char* const kEnd = "Unexpected end of document";

const std::string& body() {
  static const std::string octets = document("3C 00 'a' FF");
  return octets;
}

/// The declarations of 12.3, and what the properties say of a document with one.
struct Declaration {
  const char* text;
  const char* version;
  const char* standalone;
};

const Declaration kDeclarations[] = {
    {"<?xml encoding='finf'?>", "1.0", "none"},
    {"<?xml encoding='finf' standalone='yes'?>", "1.0", "yes"},
    {"<?xml encoding='finf' standalone='no'?>", "1.0", "no"},
    {"<?xml version='1.0' encoding='finf'?>", "1.0", "none"},
    {"<?xml version='1.0' encoding='finf' standalone='yes'?>", "1.0", "yes"},
    {"<?xml version='1.0' encoding='finf' standalone='no'?>", "1.0", "no"},
    {"<?xml version='1.1' encoding='finf'?>", "1.1", "none"},
    {"<?xml version='1.1' encoding='finf' standalone='yes'?>", "1.1", "yes"},
    {"<?xml version='1.1' encoding='finf' standalone='no'?>", "1.1", "no"},
};

std::string versionOf(X891Reader& reader) {
  return *static_cast<std::string*>(
      reader.reader.getProperty(Tavrin::properties::documentXMLVersion));
}

std::string standaloneOf(X891Reader& reader) {
  const auto* value = static_cast<bool*>(reader.reader.getProperty(Tavrin::properties::standalone));
  EXPECT_EQ(value && *value, reader.reader.getFeature(Tavrin::features::isStandalone));
  if (!value) return "none";
  return *value ? "yes" : "no";
}

/// A warning comes behind the octet of components.
std::string toldOf(const Declaration& declaration) {
  return warned(declaration.version, std::string(declaration.text).size() + 5, wholeContent({}));
}

TEST(X891ReaderEnvelope, TakesEachXMLDeclaration) {
  X891Reader reader;
  for (const Declaration& declaration : kDeclarations) {
    EXPECT_EQ(toldOf(declaration), reader.read(declaration.text + body())) << declaration.text;
    EXPECT_EQ(declaration.version, versionOf(reader)) << declaration.text;
    EXPECT_EQ(declaration.standalone, standaloneOf(reader)) << declaration.text;
  }
  EXPECT_EQ(wholeContent({}), reader.read(body()));
  EXPECT_EQ("1.0", versionOf(reader));
  EXPECT_EQ("none", standaloneOf(reader));
}

TEST(X891ReaderEnvelope, TellsPropertiesInStartDocument) {
  for (const Declaration& declaration : kDeclarations) {
    X891Reader reader;
    std::string seen;
    reader.log.beforeEvent = [&](std::size_t events) {
      if (events == 0) seen = versionOf(reader) + " " + standaloneOf(reader);
    };
    EXPECT_EQ(toldOf(declaration), reader.read(declaration.text + body()));
    EXPECT_EQ(std::string(declaration.version) + " " + declaration.standalone, seen);
  }
}

TEST(X891ReaderEnvelope, RefusesAnXMLDeclarationThatIsCut) {
  for (const Declaration& declaration : kDeclarations) {
    const std::string text = declaration.text;
    for (std::size_t length = 1; length < text.size(); ++length) {
      expectRefused(text.substr(0, length), "", kEnd);
    }
    expectRefused(text, "", kNotFastInfoset);
  }
}

TEST(X891ReaderEnvelope, RefusesAnXMLDeclarationAtTheFirstOctetThatIsInNone) {
  const struct {
    const char* read;
    const char* rest;
  } cases[] = {
      {"<a", "/>"},
      {"<?xml ", " encoding='finf'?>"},
      {"<?xml encoding=\"", "finf\"?>"},
      {"<?xml encoding='finF", "'?>"},
      {"<?xml encoding='finf' ?", ">"},
      {"<?xml encoding='finf'  ", "standalone='yes'?>"},
      {"<?xml encoding='finf' standalone='m", "aybe'?>"},
      {"<?xml encoding='finf' v", "ersion='1.0'?>"},
      {"<?xml version='1.2", "' encoding='finf'?>"},
      {"<?xml version='1.0'?", ">"},
      {"<?xml version='1.0' encoding='U", "TF-8'?>"},
      {"<?xml\t", "encoding='finf'?>"},
  };
  for (const auto& each : cases) {
    const std::string read = each.read;
    // A second blank is one octet further.
    const std::string extra = read == "<?xml " ? " " : "";
    const std::string rest = std::string(each.rest).substr(extra.size());
    expectRefused(read + extra, rest + body(), kNotFastInfoset);
  }
}

TEST(X891ReaderEnvelope, HasNothingBetweenDeclarationAndIdentification) {
  for (const char* between : {" ", "\n", "\xEF", "<", "a"}) {
    expectRefused(std::string(kDeclarations[0].text) + between, body(), kNotFastInfoset);
  }
  // The second of two declarations is none.
  expectRefused(std::string(kDeclarations[0].text) + "<",
                std::string(kDeclarations[0].text).substr(1) + body(), kNotFastInfoset);
}

TEST(X891ReaderEnvelope, HasNoByteOrderMark) {
  expectRefused("\xEF", "\xBB\xBF" + body(), kNotFastInfoset);
  expectRefused("\xEF", std::string("\xBB\xBF") + kDeclarations[0].text + body(), kNotFastInfoset);
}

TEST(X891ReaderEnvelope, IsIdentifiedByFourOctets) {
  const std::string header = octets("E0 00 00 01");
  for (std::size_t place = 0; place < header.size(); ++place) {
    for (int octet = 0; octet < 256; ++octet) {
      if (octet == static_cast<unsigned char>(header[place])) continue;
      if (place == 0 && octet == '<') continue;
      expectRefused(header.substr(0, place) + static_cast<char>(octet), header + "x",
                    kNotFastInfoset);
    }
    expectRefused(header.substr(0, place), "", kNotFastInfoset);
  }
  expectRefused(header, "", kEnd);
}

TEST(X891ReaderEnvelope, ComponentsHaveTheLastWord) {
  X891Reader reader;
  const std::string declared = "<?xml version='1.1' encoding='finf' standalone='no'?>";
  EXPECT_EQ(wholeContent({}),
            reader.read(declared + fromComponents("03 01 02 '1.0' 3C 00 'a' FF")));
  EXPECT_EQ("1.0", versionOf(reader));
  EXPECT_EQ("yes", standaloneOf(reader));
  EXPECT_EQ(wholeContent({}), reader.read(declared + fromComponents("01 02 '1.0' 3C 00 'a' FF")));
  EXPECT_EQ("1.0", versionOf(reader));
  EXPECT_EQ("no", standaloneOf(reader));
  EXPECT_EQ(warned("1.1", declared.size() + 6, wholeContent({})),
            reader.read(declared + fromComponents("02 01 3C 00 'a' FF")));
  EXPECT_EQ("1.1", versionOf(reader));
  EXPECT_EQ("yes", standaloneOf(reader));
}

TEST(X891ReaderEnvelope, CountsTheDeclarationAmongTheOctetsRead) {
  const std::string declaration = kDeclarations[3].text;
  expectRefused(declaration + document("3C 00 'a' E3"), "", "Error when decoding element children",
                {"startDocument()", "startElement(, a, a, [])"});
}

}  // namespace
}  // namespace x891_test
