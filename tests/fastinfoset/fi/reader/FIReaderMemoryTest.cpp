#include <Allocations.h>
#include <gtest/gtest.h>

#include "FIReaderSamples.h"

// Documents that claim much and bring little, and documents that are deep.

namespace reader_test {
namespace {

constexpr std::size_t kMebibyte = 1024 * 1024;

/// How a parse ended, and how much memory it took at most beyond what was in use before.
struct Cost {
  std::string outcome;
  std::size_t octets;
};

Cost costOf(const std::string& document) {
  const CapturedOutput output;
  TypedReader reader;
  reader.reader.setContentHandler(nullptr);
  std::istringstream stream(document);
  const std::size_t before = allocations::inUse();
  allocations::resetPeak();
  std::string outcome = outcomeOf([&] { reader.reader.parse(stream); });
  return {std::move(outcome), allocations::peak() - before};
}

TEST(FIReaderMemory, IsCounted) {
  // The counter sees what the library allocates.
  const std::string text(4 * kMebibyte, 'x');
  const std::string length = bigEndian(text.size() - 259, 4);
  const Cost cost = costOf(document("3C 00 'a' 83") + length + text + octets("FF"));
  EXPECT_EQ("done", cost.outcome);
  EXPECT_GE(cost.octets, 4 * kMebibyte);
  EXPECT_LE(cost.octets, 16 * kMebibyte);
}

struct Claim {
  const char* what;
  std::string octets;
};

void expectCheapEnd(const Claim& claim) {
  SCOPED_TRACE(claim.what);
  const Cost cost = costOf(claim.octets);
  EXPECT_EQ("SAXException: Unexpected end of document", cost.outcome);
  EXPECT_LT(cost.octets, kMebibyte);
}

TEST(FIReaderMemory, IsNotTakenForALengthThatADocumentClaims) {
  const Claim claims[] = {
      {"local name", document("3C 60 FF FF FF FF 'abc'")},
      {"prefix", document("38 CF 60 FF FF FF FF 'abc'")},
      {"namespace name", document("38 CD 60 FF FF FF FF 'abc'")},
      {"attribute name", document("7C 00 'a' 78 60 FF FF FF FF 'abc'")},
      {"attribute value", document("7C 00 'a' 78 00 'b' 0C FF FF FF FF 'abc'")},
      {"attribute value to be added", document("7C 00 'a' 78 00 'b' 4C FF FF FF FF 'abc'")},
      {"chunk", document("3C 00 'a' 83 FF FF FF FF 'abc'")},
      {"chunk to be added", document("3C 00 'a' 93 FF FF FF FF 'abc'")},
      {"comment", document("E2 0C FF FF FF FF 'abc'")},
      {"target", document("E1 60 FF FF FF FF 'abc'")},
      {"instruction", document("E1 00 't' 0C FF FF FF FF 'abc'")},
      {"system identifier", document("C6 60 FF FF FF FF 'abc'")},
      {"entity", document("3C 00 'a' C8 60 FF FF FF FF 'abc'")},
      {"notation", fromComponents("10 C0 60 FF FF FF FF 'abc'")},
      {"unparsed entity", fromComponents("08 D0 60 FF FF FF FF 'abc'")},
      {"scheme", fromComponents("04 60 FF FF FF FF 'abc'")},
      {"version", fromComponents("01 0C FF FF FF FF 'abc'")},
      {"additional data", fromComponents("40 01 00 'i' 60 FF FF FF FF 'abc'")},
      {"external vocabulary", fromComponents("20 10 00 60 FF FF FF FF 'abc'")},
      {"entry of strings", fromComponents("20 00 08 01 0C FF FF FF FF 'abc'")},
      {"entry of identifiers", fromComponents("20 00 10 01 60 FF FF FF FF 'abc'")},
  };
  for (const Claim& claim : claims) expectCheapEnd(claim);
}

TEST(FIReaderMemory, IsNotTakenForACountThatADocumentClaims) {
  const Claim claims[] = {
      {"additional data", fromComponents("40 8F FF FF 00 'i' 00 'd'")},
      {"restricted alphabets", fromComponents("20 08 00 8F FF FF 00 'x'")},
      {"encoding algorithms", fromComponents("20 04 00 8F FF FF 00 'x'")},
      {"prefixes", fromComponents("20 02 00 8F FF FF 00 'x'")},
      {"namespace names", fromComponents("20 01 00 8F FF FF 00 'x'")},
      {"local names", fromComponents("20 00 80 8F FF FF 00 'x'")},
      {"other NCNames", fromComponents("20 00 40 8F FF FF 00 'x'")},
      {"other URIs", fromComponents("20 00 20 8F FF FF 00 'x'")},
      {"attribute values", fromComponents("20 00 10 8F FF FF 00 'x'")},
      {"content character chunks", fromComponents("20 00 08 8F FF FF 00 'x'")},
      {"other strings", fromComponents("20 00 04 8F FF FF 00 'x'")},
      {"element names", fromComponents("20 00 02 8F FF FF 00 00 'x'")},
      {"attribute names", fromComponents("20 00 01 8F FF FF 00 00 'x'")},
  };
  for (const Claim& claim : claims) expectCheapEnd(claim);
}

TEST(FIReaderMemory, IsNotTakenForEncodedDataThatADocumentClaims) {
  // The greatest length that each algorithm takes: 4294967295 octets, or as many as its items
  // allow.
  const struct {
    unsigned field;
    unsigned long length;
  } rows[] = {{0, 4294967295}, {1, 4294967295}, {2, 4294967294}, {3, 4294967292}, {4, 4294967288},
              {5, 4294967295}, {6, 4294967292}, {7, 4294967288}, {9, 4294967295}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.field);
    expectCheapEnd({"content", document("3C 00 'a'") + bigEndian(0x8C03 | row.field << 2, 2) +
                                   bigEndian(row.length - 259, 4) + std::string(8, '\0')});
    expectCheapEnd({"attribute", document("7C 00 'a' 78 00 'b'") +
                                     bigEndian(0x300C | row.field << 4, 2) +
                                     bigEndian(row.length - 265, 4) + std::string(8, '\0')});
  }
  expectCheapEnd({"no algorithm", document("3C 00 'a' 8C 23 FF FF FF FF 'abc'")});
  expectCheapEnd({"no algorithm registered",
                  fromComponents("20 04 00 01 00 'u' 3C 00 'a' 8C 83 FF FF FF FF 'abc'")});
}

TEST(FIReaderMemory, GrowsWithTheOctetsThatArrive) {
  // A quarter of a mebibyte comes of the four gibibytes.
  const std::string text(kMebibyte / 4, 'x');
  for (const char* claim :
       {"3C 60 FF FF FF FF", "E2 0C FF FF FF FF", "3C 00 'a' 83 FF FF FF FF",
        "3C 00 'a' 8C 03 FF FF FE F8", "3C 00 'a' 8C 0B FF FF FE F9", "3C 00 'a' 8C 0F FF FF FE F9",
        "3C 00 'a' 8C 13 FF FF FE F5", "3C 00 'a' 8C 17 FF FF FE FC", "3C 00 'a' 8C 1B FF FF FE F9",
        "3C 00 'a' 8C 1F FF FF FE F5", "3C 00 'a' 8C 23 FF FF FF FF"}) {
    SCOPED_TRACE(claim);
    const Cost cost = costOf(document(claim) + text);
    EXPECT_EQ("SAXException: Unexpected end of document", cost.outcome);
    EXPECT_LT(cost.octets, 2 * kMebibyte);
  }
}

/// Does not say how many octets are to come.
class SecretiveBuffer : public std::streambuf {
 public:
  explicit SecretiveBuffer(std::string octets) : octets_(std::move(octets)) {}

 protected:
  int_type underflow() override {
    if (next_ >= octets_.size()) return traits_type::eof();
    const std::size_t count = std::min<std::size_t>(octets_.size() - next_, 1000);
    setg(&octets_[next_], &octets_[next_], &octets_[next_] + count);
    next_ += count;
    return traits_type::to_int_type(*gptr());
  }

 private:
  std::string octets_;
  std::size_t next_ = 0;
};

TEST(FIReaderMemory, OfAnyBufferIsTakenForWhatArrives) {
  // Booleans whose count of unused bits is wrong leave their last octet to the next item.
  const std::string item(200000, '\x01');
  for (const unsigned field : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U, 9U}) {
    for (const int first : {0x00, 0x70, 0x80, 0xF0}) {
      SCOPED_TRACE(std::to_string(field) + ", " + std::to_string(first));
      std::string data = item;
      data.front() = static_cast<char>(first);
      data.back() = '\xF0';
      const std::string all = document("3C 00 'a'") + bigEndian(0x8C03 | field << 2, 2) +
                              bigEndian(data.size() - 259, 4) + data + octets("F0 F0");
      const auto read = [](std::istream& stream) {
        LoggedReader reader;
        reader.log.attachPrimitiveTypesTo(reader.reader);
        const std::string outcome = outcomeOf([&] { reader.reader.parse(stream); });
        return reader.log.text() + outcome;
      };
      std::istringstream whole(all);
      SecretiveBuffer buffer(all);
      std::istream stream(&buffer);
      EXPECT_TRUE(read(whole) == read(stream));
      // Cut off, with a claim of nearly four gibibytes.
      SecretiveBuffer cut(document("3C 00 'a'") + bigEndian(0x8C03 | field << 2, 2) +
                          bigEndian(4294967288U - 259, 4) + data);
      std::istream cutStream(&cut);
      Tavrin::XMLReader_FI reader;
      const std::size_t before = allocations::inUse();
      allocations::resetPeak();
      EXPECT_EQ("SAXException: Unexpected end of document",
                outcomeOf([&] { reader.parse(cutStream); }));
      EXPECT_LT(allocations::peak() - before, kMebibyte);
    }
  }
}

// --- Depth ---

/// Counts elements and their depth.
struct DepthHandler : Tavrin::ContentHandler {
  void startElement(const std::string&, const std::string&, const std::string&,
                    const Tavrin::Attributes&) override {
    ++elements;
    deepest = std::max(deepest, ++depth);
  }
  void endElement(const std::string&, const std::string&, const std::string&) override { --depth; }
  void endDocument() override { ended = true; }

  std::size_t elements = 0;
  std::size_t depth = 0;
  std::size_t deepest = 0;
  bool ended = false;
};

TEST(FIReaderDepth, IsBoundedByMemoryOnly) {
  constexpr std::size_t kDeep = 1000000;
  constexpr std::size_t kLessDeep = 100000;
  const struct {
    std::size_t depth;
    std::string ends;
    bool whole;
  } rows[] = {{kDeep, std::string(kDeep / 2, '\xFF') + '\xF0', true},
              {kLessDeep, std::string(kLessDeep + 1, '\xF0'), true},
              {kLessDeep, "", false}};
  Tavrin::XMLReader_FI reader;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.ends.size());
    DepthHandler handler;
    reader.setContentHandler(&handler);
    // Each inner element is one octet.
    std::istringstream stream(document("3C 00 'a'") + std::string(row.depth - 1, '\0') + row.ends);
    EXPECT_EQ(row.whole ? "done" : "SAXException: Unexpected end of document",
              outcomeOf([&] { reader.parse(stream); }));
    EXPECT_EQ(row.depth, handler.elements);
    EXPECT_EQ(row.depth, handler.deepest);
    EXPECT_EQ(row.whole ? 0 : row.depth, handler.depth);
    EXPECT_EQ(row.whole, handler.ended);
  }
}

TEST(FIReaderDepth, OfDocumentsThatFailDoesNotAddUp) {
  const std::string deep = document("3C 00 'a'") + std::string(20000, '\0');
  Tavrin::XMLReader_FI reader;
  const auto parse = [&] {
    std::istringstream stream(deep);
    EXPECT_EQ("SAXException: Unexpected end of document", outcomeOf([&] { reader.parse(stream); }));
  };
  parse();
  const std::size_t before = allocations::inUse();
  for (int i = 0; i < 10; ++i) parse();
  EXPECT_LE(allocations::inUse(), before + kMebibyte);
}

TEST(FIReaderDepth, OfElementsThatDeclareNamespacesIsBoundedByMemoryOnly) {
  constexpr std::size_t kDeclaringDepth = 50000;
  struct MappingHandler : DepthHandler {
    void startPrefixMapping(const std::string&, const std::string&) override { ++mappings; }
    void endPrefixMapping(const std::string&) override { --mappings; }
    std::size_t mappings = 0;
  } handler;
  std::string document = fromComponents("00 38 CF 00 'p' 00 'u' F0 3F 01 01 00 'a'");
  for (std::size_t i = 1; i < kDeclaringDepth; ++i) document += octets("38 CF 80 80 F0 00");
  document += std::string(kDeclaringDepth, '\xF0') + '\xF0';
  Tavrin::XMLReader_FI reader;
  reader.setContentHandler(&handler);
  std::istringstream stream(document);
  EXPECT_EQ("done", outcomeOf([&] { reader.parse(stream); }));
  EXPECT_EQ(kDeclaringDepth, handler.deepest);
  EXPECT_EQ(0U, handler.depth);
  EXPECT_EQ(0U, handler.mappings);
}

}  // namespace
}  // namespace reader_test
