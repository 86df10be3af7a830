// What inspect shows of very many documents, whole ones and broken ones: it can be made octets
// again, and it is broken where the reader finds it so.
#include <Tavrin/Tavrin.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "HexOctets.h"
#include "OctetsSupport.h"

namespace {

/// Documents that between them have everything.
std::vector<std::string> samples() {
  std::vector<std::string> result;
  const auto add = [&](const std::string& written) { result.push_back(octets(written)); };
  const std::string kHeader = "E0 00 00 01 ";
  add(kHeader + "00 3C 00 'a' FF");
  result.push_back("<?xml version='1.0' encoding='finf' standalone='yes'?>" +
                   octets(kHeader + "02 01 3C 00 'a' FF"));
  // Additional data; scheme; standalone; version; two documents.
  add(kHeader + "47 00 01 'id' 03 00010203 04 'UTF-8' 01 02 '1.0' 3C 00 'a' F0 FF" + kHeader +
      "00 3C 00 'a' FF");
  // Notations, unparsed entities, a document type with an instruction, an entity reference.
  add(kHeader +
      "18 C2 00 'n' 00 's' C1 00 'm' 80 F0 D1 00 'e' 80 80 80 F0 C7 80 80 E1 00 'p' 40 "
      "'d' F0 3C 00 'a' CB 00 'x' 80 80 C8 84 E2 FF E1 83 80 FF");
  // Namespaces of all forms, names of all forms, attributes by index.
  add(kHeader +
      "01 02 '1.1' 78 CF 00 'p' 00 'u' CD 00 'v' F0 3F 81 81 00 'a' 7B 81 81 00 'b' 40 "
      "'1' 7B 80 80 03 'lang' 80 F0 78 CC CE 81 F0 3C 00 'c' 01 FF F0 38 F0 01 FF FF");
  // Text in all formats.
  add(kHeader +
      "00 7C 00 'a' 78 00 'b' 53 00310032 78 00 'c' 60 01 123F 78 00 'd' 70 33 00000007 "
      "F0 95 0041 88 01 12C5 A0 98 06 02 2003A02A03 8C 0A 01 0001FFFE 8C 0E 05 "
      "00000001FFFFFFFF 8C 12 05 FFFFFFFFFFFFFFFF 8C 14 1A 8C 1A 0D 3DCCCCCD7FC00000 "
      "7F800000FF800000 8C 1E 0D 3FB999999999999AC000000000000000 8C 02 00 010203 8C 06 "
      "00 FF00FE 8C 22 0D F81D4FAE7DEC11D0A76500A0C91E6BF6 9C 24 '<' FF");
  // All tables of an initial vocabulary.
  add(kHeader +
      "20 0F FF 00 02 'abc' 00 04 'urn:u' 00 00 'p' 00 00 'u' 01 00 'a' 00 'b' 00 00 'n' "
      "00 00 's' 01 00 'v' 30 33 00000007 01 11 0041 20 01 123F 00 00 'o' 01 03 01 01 00 "
      "00 01 00 00 01 78 CF 81 81 F0 00 00 81 F0 A0 A1 88 3C 1B 8C 7D ABCD E2 80 FF");
  return result;
}

std::vector<std::string> corpus() {
  std::vector<std::string> result;
  for (const char* folder : {"x891", "fi_reader", "tool", "xml10", "expat_reader"}) {
    for (const auto& file :
         std::filesystem::directory_iterator(std::string(TAVRIN_FUZZ_CORPUS "/") + folder)) {
      std::ifstream stream(file.path(), std::ios::binary);
      result.emplace_back(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
    }
  }
  return result;
}

/// The library's reader, one document after the other, and what it refuses.
std::optional<tool::octets::Finding> refusalOf(std::string_view octets) {
  std::uint64_t start = 0;
  do {
    Tavrin::XMLReader_X891 reader;
    Tavrin::EncodingAlgorithmContentHandler anyAlgorithm;
    reader.setProperty(Tavrin::properties::encodingAlgorithmContentHandler, &anyAlgorithm);
    try {
      const std::string_view rest = octets.substr(start);
      reader.parse(rest.data(), rest.size(), true);
      start += rest.size() - reader.unusedOctets();
      if (rest.empty()) return tool::octets::Finding{0, "nothing"};
    } catch (const Tavrin::SAXParseException& exception) {
      return tool::octets::Finding{start + static_cast<std::uint64_t>(exception.getColumnNumber()),
                                   exception.getMessage()};
    }
  } while (start < octets.size());
  return std::nullopt;
}

/// What the reader says of the octets themselves, not of what they say.
bool isStructural(const std::string& message) {
  constexpr const char* kBeginnings[] = {
      "Not a Fast Infoset document",
      "Unexpected end of document",
      "Error ",
      "Padding bits",
      "Qualified name with a prefix",
      "Initial vocabulary with",
      "Found ",
      "Document without an element",
      "Reserved ",
      "No URI for the encoding algorithm",
      "Invalid length for encoded short",
      "Invalid length for encoded int",
      "Invalid length for encoded long",
      "Invalid length for encoded float",
      "Invalid length for encoded double",
      "Invalid length for encoded uuid",
      "nothing",
  };
  if (message == "Error when decoding restricted alphabet") return false;
  return std::ranges::any_of(kBeginnings,
                             [&](const char* each) { return message.starts_with(each); });
}

void expectAgreement(const std::string& octets) {
  const Inspected shown = inspected(octets);
  ASSERT_TRUE(assembled(shown.text) == octets) << shown.text;
  const auto refusal = refusalOf(octets);
  ASSERT_EQ(shown.finding.has_value(), refusal.has_value())
      << (refusal ? refusal->message : shown.finding->message) << "\n"
      << shown.text;
  const auto broken = breakOf(octets);
  if (!refusal) {
    ASSERT_FALSE(broken) << broken->message << "\n" << shown.text;
  } else if (isStructural(refusal->message)) {
    ASSERT_TRUE(broken) << refusal->octet << ": " << refusal->message << "\n" << shown.text;
    // The reader counts what it has read, and the scanner from where it found nothing.
    EXPECT_LE(broken->begin, refusal->octet) << refusal->message << "\n" << shown.text;
    EXPECT_LE(broken->octet, refusal->octet + 1) << refusal->message << "\n" << shown.text;
    EXPECT_EQ(shown.finding->message, broken->message);
  } else if (broken && !refusal->message.starts_with("Literal longer")) {
    // The reader compares lengths with limits before it looks at anything else.
    EXPECT_GE(broken->octet, refusal->octet) << refusal->message << "\n" << shown.text;
  }
}

/// Changes a few octets.
std::string mutated(std::string octets, std::mt19937& random) {
  const auto number = [&](std::size_t below) { return random() % below; };
  constexpr unsigned char kTelling[] = {0x00, 0x01, 0x38, 0x3C, 0x3F, 0x78, 0x7F, 0x80,
                                        0x8C, 0x90, 0xA0, 0xB0, 0xB8, 0xC0, 0xC4, 0xC8,
                                        0xCC, 0xCF, 0xD0, 0xE0, 0xE1, 0xE2, 0xF0, 0xFF};
  for (std::size_t i = 1 + number(3); i > 0 && !octets.empty(); --i) {
    const std::size_t place = number(octets.size());
    const char octet =
        static_cast<char>(number(2) == 0 ? number(256) : kTelling[number(std::size(kTelling))]);
    switch (number(4)) {
      case 0:
        octets.erase(place, 1 + number(3));
        break;
      case 1:
        octets.insert(place, 1, octet);
        break;
      default:
        octets[place] = octet;
    }
  }
  return octets;
}

}  // namespace

TEST(OctetsAgreement, SamplesAreWhole) {
  for (const std::string& sample : samples()) {
    EXPECT_FALSE(breakOf(sample)) << inspected(sample).text;
    EXPECT_FALSE(refusalOf(sample)) << refusalOf(sample)->message << inspected(sample).text;
  }
}

TEST(OctetsAgreement, HoldsForTheCorpora) {
  for (const std::string& document : corpus()) expectAgreement(document);
}

TEST(OctetsAgreement, HoldsForDocumentsThatAreCutOff) {
  for (const std::string& sample : samples()) {
    for (std::size_t size = 0; size <= sample.size(); ++size) {
      SCOPED_TRACE(size);
      expectAgreement(sample.substr(0, size));
    }
  }
}

TEST(OctetsAgreement, HoldsForDocumentsInWhichOneOctetIsAnother) {
  for (const std::string& sample : samples()) {
    for (std::size_t i = 0; i < sample.size(); ++i) {
      for (unsigned octet = i % 8; octet < 256; octet += 8) {
        std::string document = sample;
        document[i] = static_cast<char>(octet);
        expectAgreement(document);
        if (HasFatalFailure()) return;
      }
    }
  }
}

TEST(OctetsAgreement, HoldsForChangedDocuments) {
  std::mt19937 random(1);
  std::vector<std::string> documents = corpus();
  for (const std::string& sample : samples()) documents.push_back(sample);
  for (const std::string& document : documents) {
    for (int i = 0; i < 5; ++i) expectAgreement(mutated(document, random));
    if (HasFatalFailure()) return;
  }
}

TEST(OctetsAgreement, DoesNotDependOnBlocks) {
  for (const std::string& sample : samples()) {
    const std::string whole = inspected(sample).text;
    for (const std::size_t block : {1, 2, 3, 7}) {
      EXPECT_EQ(inspected(sample, {}, block).text, whole);
      EXPECT_EQ(assembled(whole, block), sample);
    }
  }
}
