#include <Allocations.h>
#include <gtest/gtest.h>

#include <random>

#include "Mutations.h"
#include "WellFormedChecker.h"
#include "X891ReaderSamples.h"

// Samples with their octets changed: what is read is well-formed, all else is refused with a
// failure of the reader, at a cost in proportion to the octets.

namespace x891_test {
namespace {

TEST(X891ReaderMutations, AreWellFormedOrRefused) {
  constexpr std::size_t kMemory = std::size_t{4} * 1024 * 1024;
  constexpr std::size_t kBlocksOfAnOctet = 16;
  SampleReader sampleReader;
  Tavrin::XMLReader_X891& reader = sampleReader.reader;
  reader.setErrorHandler(nullptr);
  const std::size_t count = reader_test::mutationCount(20000);
  std::size_t readWhole = 0;
  for (std::size_t seed = 0; seed < count; ++seed) {
    std::mt19937 random(static_cast<std::mt19937::result_type>(seed));
    const std::string document = reader_test::mutate(samples(), random);
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
