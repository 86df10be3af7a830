#include <gtest/gtest.h>

#include "X891ReaderSupport.h"

// The locator: where the octets of the current event end.

namespace x891_test {
namespace {

/// Notes the position at each event.
class Positions : public EventLog {
 public:
  std::vector<std::uint64_t> offsets;

  void setDocumentLocator(const Tavrin::Locator* locator) override {
    locator_ = dynamic_cast<const Tavrin::OctetLocator*>(locator);
    note();
  }
  void startDocument() override { note(); }
  void endDocument() override { note(); }
  void startElement(const std::string&, const std::string&, const std::string&,
                    const Tavrin::Attributes&) override {
    note();
  }
  void endElement(const std::string&, const std::string&, const std::string&) override { note(); }
  void characters(const std::string&) override { note(); }
  void processingInstruction(const std::string&, const std::string&) override { note(); }

 private:
  void note() {
    ASSERT_NE(nullptr, locator_);
    offsets.push_back(locator_->getOctetOffset());
    EXPECT_EQ(-1, locator_->getLineNumber());
    EXPECT_EQ(static_cast<std::int64_t>(locator_->getOctetOffset()), locator_->getColumnNumber());
    EXPECT_EQ("", locator_->getPublicId());
    EXPECT_EQ("", locator_->getSystemId());
  }

  const Tavrin::OctetLocator* locator_ = nullptr;
};

// Header and components 5, element to 8, attributes to 14; text 6; instruction; two ends at once.
const char* const kDocument =
    "7C 00 'a' 78 00 'b' 40 'v' F0 82 01 'text' E1 00 'p' 01 'qq' 3C 00 'c' FF F0";

TEST(X891ReaderLocator, CountsTheOctetsOfTheEventsSoFar) {
  const std::string octets = document(kDocument);
  const std::vector<std::uint64_t> expected = {5, 5, 14, 20, 26, 29, 30, 30, 31};
  Positions positions;
  Tavrin::XMLReader_X891 reader;
  reader.setContentHandler(&positions);
  std::istringstream stream(octets);
  reader.parse(stream);
  EXPECT_EQ(expected, positions.offsets);
  EXPECT_EQ(octets.size(), positions.offsets.back());
  for (const std::size_t size : {1, 2, 3, 10, 100}) {
    positions.offsets.clear();
    for (std::size_t begin = 0; begin < octets.size(); begin += size) {
      reader.parse(octets.data() + begin, std::min(size, octets.size() - begin), false);
    }
    EXPECT_EQ(expected, positions.offsets) << "blocks of " << size;
  }
}

TEST(X891ReaderLocator, BeginsAnewWithEachDocument) {
  const std::string octets = document(kDocument);
  std::istringstream stream(octets + octets);
  Positions positions;
  Tavrin::XMLReader_X891 reader;
  reader.setContentHandler(&positions);
  reader.parse(stream);
  const std::vector<std::uint64_t> first = positions.offsets;
  positions.offsets.clear();
  reader.parse(stream);
  EXPECT_EQ(first, positions.offsets);
}

TEST(X891ReaderLocator, IsGivenBeforeTheDocumentStarts) {
  EventLog log;
  Tavrin::XMLReader_X891 reader;
  reader.setContentHandler(&log);
  std::istringstream stream(document("3C 00 'a' FF"));
  reader.parse(stream);
  EXPECT_EQ(
      "setDocumentLocator()\nstartDocument()\nstartElement(, a, a, [])\nendElement(, a, a)\n"
      "endDocument()\n",
      log.text());
}

}  // namespace
}  // namespace x891_test
