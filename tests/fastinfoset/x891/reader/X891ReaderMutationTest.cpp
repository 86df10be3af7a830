#include <Allocations.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "WellFormedChecker.h"
#include "X891ReaderSamples.h"

// Samples with their octets changed: what is read is well-formed, all else is refused with a
// failure of the reader, at a cost in proportion to the octets.

namespace x891_test {
namespace {

/// Changes one to eight places of a sample.
std::string mutate(std::mt19937& random) {
  const auto below = [&random](std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(random);
  };
  // Octets that mean something nearly anywhere.
  static const std::string telling =
      octets("00 01 0C 10 20 30 38 3C 3F 40 60 78 7C 7F 80 83 88 8C 8F A0 B8 C0 CF E1 E2 F0 FF");
  std::string octets = samples()[below(samples().size())];
  for (std::size_t changes = 1 + below(8); changes > 0; --changes) {
    const std::size_t place = octets.empty() ? 0 : below(octets.size());
    // The header is mostly left alone: what differs there is told apart at once.
    if (place < 4 && below(16) != 0) continue;
    const std::string& other = samples()[below(samples().size())];
    switch (below(7)) {
      case 0:
        octets[place] = static_cast<char>(octets[place] ^ (1 << below(8)));
        break;
      case 1:
        octets[place] = static_cast<char>(below(256));
        break;
      case 2:
        octets[place] = telling[below(telling.size())];
        break;
      case 3:
        octets.insert(place, 1, telling[below(telling.size())]);
        break;
      case 4:
        octets.erase(place, 1 + below(4));
        break;
      case 5:
        octets.insert(place, other, below(other.size()), 1 + below(32));
        break;
      default:
        octets.resize(place);
    }
    if (octets.empty()) break;
  }
  return octets;
}

std::size_t mutationCount() {
  const char* given = std::getenv("TAVRIN_MUTATIONS");
  return given ? std::strtoul(given, nullptr, 10) : 20000;
}

TEST(X891ReaderMutations, AreWellFormedOrRefused) {
  constexpr std::size_t kMemory = std::size_t{4} * 1024 * 1024;
  constexpr std::size_t kBlocksOfAnOctet = 16;
  SampleReader sampleReader;
  Tavrin::XMLReader_X891& reader = sampleReader.reader;
  reader.setErrorHandler(nullptr);
  const std::size_t count = mutationCount();
  std::size_t readWhole = 0;
  for (std::size_t seed = 0; seed < count; ++seed) {
    std::mt19937 random(static_cast<std::mt19937::result_type>(seed));
    const std::string document = mutate(random);
    Checker checker;
    reader.setContentHandler(&checker);
    reader.setDTDHandler(&checker);
    reader.setProperty(Tavrin::properties::lexicalHandler,
                       static_cast<Tavrin::LexicalHandler*>(&checker));
    reader.setProperty(Tavrin::properties::encodingAlgorithmContentHandler,
                       static_cast<Tavrin::EncodingAlgorithmContentHandler*>(&checker));
    std::istringstream stream(document);
    const std::size_t blocksBefore = allocations::total();
    std::string outcome;
    const std::size_t memory =
        allocations::peakOf([&] { outcome = outcomeOf([&] { reader.parse(stream); }); });
    const std::size_t blocks = allocations::total() - blocksBefore;

    const bool whole = outcome == "done";
    readWhole += whole;
    const bool isFailure = outcome.rfind("SAXParseException: ", 0) == 0;
    // An octet tells of a start and an end at most, and a declaration of two more.
    if (whole == isFailure || checker.hasEnded() != whole || !checker.mistake.empty() ||
        checker.events > 4 * (document.size() + 1) || memory > kMemory ||
        blocks > kBlocksOfAnOctet * (document.size() + 1)) {
      FAIL() << "seed " << seed << ": " << outcome << ", " << checker.mistake << ", "
             << checker.events << " events, " << memory << " octets of memory in " << blocks
             << " blocks; document " << EventLog::showOctets(document);
    }
  }
  // Both kinds of end occur, and often.
  EXPECT_GT(readWhole, count / 50);
  EXPECT_LT(readWhole, count - count / 50);
}

TEST(X891ReaderMutations, SamplesAreWellFormed) {
  // The checker tells where there is something to tell, too.
  for (const std::string& sample : samples()) {
    SampleReader reader;
    Checker checker;
    reader.reader.setContentHandler(&checker);
    reader.reader.setDTDHandler(&checker);
    reader.reader.setProperty(Tavrin::properties::lexicalHandler,
                              static_cast<Tavrin::LexicalHandler*>(&checker));
    reader.reader.setProperty(Tavrin::properties::encodingAlgorithmContentHandler,
                              static_cast<Tavrin::EncodingAlgorithmContentHandler*>(&checker));
    std::istringstream stream(sample);
    EXPECT_EQ("done", outcomeOf([&] { reader.reader.parse(stream); }));
    EXPECT_EQ("", checker.mistake) << EventLog::showOctets(sample);
    EXPECT_TRUE(checker.hasEnded());
  }
}

TEST(X891ReaderMutations, CheckerFindsMistakes) {
  const auto mistakeOf = [](const auto& events) {
    Checker checker;
    checker.startDocument();
    events(checker);
    checker.endDocument();
    return checker.mistake;
  };
  Tavrin::AttributesImpl none;
  const auto a = [&none](Checker& checker) {
    checker.startElement("", "a", "a", none);
    checker.endElement("", "a", "a");
  };
  EXPECT_EQ("", mistakeOf(a));
  EXPECT_EQ("end in the middle", mistakeOf([](Checker&) {}));
  EXPECT_EQ("second root", mistakeOf([&](Checker& c) { a(c), a(c); }));
  EXPECT_EQ("text in the wrong place", mistakeOf([&](Checker& c) { a(c), c.characters("x"); }));
  EXPECT_EQ("comment with hyphens", mistakeOf([&](Checker& c) { a(c), c.comment("-"); }));
  EXPECT_EQ("character", mistakeOf([&](Checker& c) { a(c), c.comment("\xED\xA0\x80"); }));
  EXPECT_EQ("name", mistakeOf([&](Checker& c) { a(c), c.processingInstruction("1", ""); }));
  EXPECT_EQ("namespace of a prefix", mistakeOf([&](Checker& c) {
              c.startElement("u", "a", "p:a", none);
              c.endElement("u", "a", "p:a");
            }));
  EXPECT_EQ("attribute twice", mistakeOf([](Checker& c) {
              Tavrin::AttributesImpl twice;
              twice.addAttribute("", "b", "b", "CDATA", "");
              twice.addAttribute("", "b", "b", "CDATA", "");
              c.startElement("", "a", "a", twice);
              c.endElement("", "a", "a");
            }));
}

}  // namespace
}  // namespace x891_test
