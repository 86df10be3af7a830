#include <Allocations.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "FIReaderSamples.h"
#include "Mutations.h"

// Samples with their octets changed: whatever comes of it is an event or one of the reader's own
// failures, at a cost in proportion to the octets.

namespace reader_test {
namespace {

/// Follows the events without keeping them, and sees whether they make a document.
class ShapeHandler : public Tavrin::ContentHandler,
                     public Tavrin::LexicalHandler,
                     public Tavrin::DTDHandler,
                     public Tavrin::PrimitiveTypeContentHandler,
                     public Tavrin::EncodingAlgorithmContentHandler {
 public:
  std::size_t checks = 0;  ///< Each event has one or two.
  std::string mistake;     ///< The first that was made.

  void startDocument() override { expect(place_ == kBefore, "second start"), place_ = kInside; }
  void endDocument() override {
    expect(place_ == kInside && depth_ == 0 && mappings_ == 0, "end in the middle");
    place_ = kBehind;
  }
  void startPrefixMapping(const std::string& prefix, const std::string& uri) override {
    inside(), take(prefix), take(uri), ++mappings_;
  }
  void endPrefixMapping(const std::string& prefix) override {
    inside(), take(prefix), expect(mappings_-- > 0, "end of no mapping");
  }
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Tavrin::Attributes& attributes) override {
    inside(), ++depth_, take(uri), take(localName), take(qName);
    for (int i = 0; i < attributes.getLength(); ++i) take(attributes.getValue(i));
  }
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override {
    expect(depth_-- > 0, "end of no element"), take(uri), take(localName), take(qName);
  }
  void characters(const std::string& text) override {
    expect(depth_ > 0, "text outside"), take(text);
  }
  void processingInstruction(const std::string& target, const std::string& data) override {
    inside(), take(target), take(data);
  }
  void startDTD(const std::string& name, const std::string& publicId,
                const std::string& systemId) override {
    expect(depth_ == 0, "document type inside"), take(name), take(publicId), take(systemId);
  }
  void endDTD() override { expect(depth_ == 0, "document type inside"); }
  void startCDATA() override { expect(!section_ && depth_ > 0, "section"), section_ = true; }
  void endCDATA() override { expect(section_, "end of no section"), section_ = false; }
  void comment(const std::string& text) override { inside(), take(text); }
  void notationDecl(const std::string& name, const std::string& publicId,
                    const std::string& systemId) override {
    expect(place_ == kBefore, "late notation"), take(name), take(publicId), take(systemId);
  }
  void unparsedEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId, const std::string& notation) override {
    expect(place_ == kBefore, "late entity"), take(name), take(publicId + systemId + notation);
  }
  void bytes(const std::string& data) override { typed(), take(data); }
  void shorts(const std::vector<short>&) override { typed(); }
  void ints(const std::vector<long>&) override { typed(); }
  void longs(const std::vector<long>&) override { typed(); }
  void booleans(const std::vector<bool>&) override { typed(); }
  void floats(const std::vector<float>&) override { typed(); }
  void doubles(const std::vector<double>&) override { typed(); }
  void octets(const std::string& uri, int index, const std::string& data) override {
    typed(), take(uri), take(data), expect(index == 8 || index > 9, "index of a built-in");
  }
  void object(const std::string& uri, int index, const Tavrin::EncodedData& data) override {
    typed(), take(uri), take(data.toString()), expect(index >= 32, "index of a built-in");
  }

  bool ended() const { return place_ == kBehind; }

 private:
  enum Place { kBefore, kInside, kBehind };

  void expect(bool holds, const char* otherwise) {
    ++checks;
    if (!holds && mistake.empty()) mistake = otherwise;
  }
  void inside() { expect(place_ == kInside, "outside the document"); }
  void typed() { expect(depth_ > 0, "value outside"); }
  /// Touches every octet.
  void take(const std::string& text) {
    for (const char c : text) sum_ += static_cast<unsigned char>(c);
  }

  Place place_ = kBefore;
  int depth_ = 0;
  int mappings_ = 0;
  bool section_ = false;
  unsigned long sum_ = 0;
};

/// Everything that a document can fail with, but for the URIs that some messages end with.
bool isFailure(const std::string& outcome) {
  static const std::set<std::string> failures = {
      "SAXException: Not a Fast Infoset document",
      "SAXException: Unexpected end of document",
      "SAXException: Error when decoding index",
      "SAXException: Error when decoding element name",
      "SAXException: Error when decoding character chunk",
      "SAXException: Error when parsing identifier",
      "SAXException: Error when decoding string length",
      "SAXException: Error when decoding string - invalid index",
      "SAXException: Error when decoding string",
      "SAXException: Found more than one element on the top level",
      "SAXException: Error while parsing document",
      "SAXException: Found DTD behind the top level element",
      "SAXException: Found more than one DTD",
      "SAXException: Error while parsing namespaces",
      "SAXException: Error while parsing DTD",
      "SAXException: Error when decoding element children",
      "SAXException: Qualified name with a prefix, but without a namespace",
      "SAXException: Error when parsing prefix",
      "SAXException: Error when parsing namespace",
      "SAXException: Error when decoding element name - invalid index",
      "SAXException: Error when decoding attribute name - invalid index",
      "SAXException: Error when decoding attribute name",
      "SAXException: Error when decoding character chunk - invalid index",
      "EncodingAlgorithmException: Invalid length for encoded short data",
      "EncodingAlgorithmException: Invalid length for encoded int data",
      "EncodingAlgorithmException: Invalid length for encoded long data",
      "EncodingAlgorithmException: Invalid length for encoded boolean data",
      "EncodingAlgorithmException: Invalid length for encoded float data",
      "EncodingAlgorithmException: Invalid length for encoded double data",
  };
  return failures.count(outcome) != 0 ||
         outcome.rfind("SAXException: Unknown encoding algorithm - ", 0) == 0 ||
         outcome.rfind("SAXException: Unknown external vocabulary - ", 0) == 0;
}

TEST(FIReaderMutations, EndWellOrInOneOfTheReadersFailures) {
  constexpr std::size_t kMemory = 4 * 1024 * 1024;
  constexpr std::size_t kBlocksOfAnOctet = 16;
  SampleReader sampleReader;
  Tavrin::XMLReader_FI& reader = sampleReader.reader;
  std::vector<std::string> documents;
  for (const Sample& sample : samples()) documents.push_back(sample.octets);
  const std::size_t count = mutationCount(200000);
  std::size_t readWhole = 0;
  for (std::size_t seed = 0; seed < count; ++seed) {
    std::mt19937 random(static_cast<std::mt19937::result_type>(seed));
    const std::string document = mutate(documents, random);
    ShapeHandler handler;
    reader.setContentHandler(&handler);
    reader.setDTDHandler(&handler);
    reader.setProperty(Tavrin::properties::lexicalHandler,
                       static_cast<Tavrin::LexicalHandler*>(&handler));
    reader.setProperty(Tavrin::properties::primitiveTypeContentHandler,
                       static_cast<Tavrin::PrimitiveTypeContentHandler*>(&handler));
    reader.setProperty(Tavrin::properties::encodingAlgorithmContentHandler,
                       static_cast<Tavrin::EncodingAlgorithmContentHandler*>(&handler));
    std::istringstream stream(document);
    const CapturedOutput output;
    const std::size_t blocksBefore = allocations::total();
    std::string outcome;
    const std::size_t memory =
        allocations::peakOf([&] { outcome = outcomeOf([&] { reader.parse(stream); }); });
    const std::size_t blocks = allocations::total() - blocksBefore;

    const bool whole = outcome == "done";
    readWhole += whole;
    // An octet tells at most of a start and an end, and an event has at most two checks.
    if ((!whole && !isFailure(outcome)) || handler.ended() != whole || !handler.mistake.empty() ||
        handler.checks > 4 * (document.size() + 1) || memory > kMemory ||
        blocks > kBlocksOfAnOctet * (document.size() + 1)) {
      FAIL() << "seed " << seed << ": " << outcome << ", " << handler.mistake << ", "
             << handler.checks << " checks, " << memory << " octets of memory in " << blocks
             << " blocks; document " << EventLog::showOctets(document);
    }
  }
  // Both kinds of end occur, and often.
  EXPECT_GT(readWhole, count / 50);
  EXPECT_LT(readWhole, count - count / 50);
}

}  // namespace
}  // namespace reader_test
