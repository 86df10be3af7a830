#include <Allocations.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <stdexcept>
#include <utility>
#include <vector>

#include "Mutations.h"
#include "WellFormedDocuments.h"
#include "X891ReaderSamples.h"

// Documents that come in blocks: the events are those of a stream, each as soon as its last octet
// is there, and a failure is that of the stream.

namespace x891_test {
namespace {

/// A stream that gives one octet at a time, and notes how many events were told when it is asked
/// for the next.
class ObservedBuffer : public std::streambuf {
 public:
  ObservedBuffer(const std::string& octets, const EventLog& log) : octets_(octets), log_(log) {}

  std::vector<std::size_t> told;  // With no octet, with one, ...

 protected:
  int_type underflow() override {
    if (told.size() <= next_) told.push_back(log_.text().size());
    if (next_ == octets_.size()) return traits_type::eof();
    octet_ = octets_[next_++];
    setg(&octet_, &octet_, &octet_ + 1);
    return traits_type::to_int_type(octet_);
  }

 private:
  const std::string& octets_;
  const EventLog& log_;
  std::size_t next_ = 0;
  char octet_ = 0;
};

/// How the reading of a document went.
struct Outcome {
  std::string told;     // The events.
  std::string failure;  // "done" where there was none.
  std::size_t unused = 0;

  bool operator==(const Outcome& other) const = default;
};

void PrintTo(const Outcome& outcome, std::ostream* stream) {
  *stream << outcome.told << outcome.failure << ", " << outcome.unused << " octets unused";
}

Outcome readStream(SampleReader& reader, const std::string& octets) {
  reader.log.clear();
  std::istringstream stream(octets);
  Outcome outcome;
  outcome.failure = outcomeOf([&] { reader.reader.parse(stream); });
  outcome.told = reader.log.text();
  if (outcome.failure != "done") return outcome;
  outcome.unused = octets.size() - static_cast<std::size_t>(stream.tellg());
  return outcome;
}

/// @param nextSize called for the size of each block
template <typename NextSize>
Outcome readBlocks(SampleReader& reader, const std::string& octets, NextSize nextSize) {
  reader.log.clear();
  Outcome outcome;
  outcome.failure = outcomeOf([&] {
    for (std::size_t begin = 0;;) {
      const std::size_t size = std::min<std::size_t>(nextSize(), octets.size() - begin);
      // In memory of its own, which is gone after the call.
      const std::vector<char> block(octets.begin() + static_cast<std::ptrdiff_t>(begin),
                                    octets.begin() + static_cast<std::ptrdiff_t>(begin + size));
      begin += size;
      const bool isFinal = begin == octets.size();
      reader.reader.parse(block.data(), block.size(), isFinal);
      const std::string told = reader.log.text();
      const std::string end = "endDocument()\n";
      const bool hasEnded =
          told.size() >= end.size() && told.compare(told.size() - end.size(), end.size(), end) == 0;
      if (hasEnded) {
        outcome.unused = reader.reader.unusedOctets() + octets.size() - begin;
        return;
      }
      EXPECT_EQ(0u, reader.reader.unusedOctets());
      if (isFinal) return;  // Another handler has the events.
    }
  });
  outcome.told = reader.log.text();
  return outcome;
}

/// Expects that a document reads the same however it is cut.
void expectSameInBlocks(SampleReader& reader, const std::string& octets) {
  const Outcome expected = readStream(reader, octets);
  for (std::size_t size = 1; size <= 64 && size <= octets.size() + 1; ++size) {
    ASSERT_EQ(expected, readBlocks(reader, octets, [size] { return size; }))
        << "blocks of " << size << ": " << EventLog::showOctets(octets);
  }
  for (unsigned seed = 0; seed < 4; ++seed) {
    std::mt19937 random(seed);
    std::uniform_int_distribution<std::size_t> sizes(0, octets.size() + 1);
    ASSERT_EQ(expected, readBlocks(reader, octets, [&] { return sizes(random); }))
        << "seed " << seed << ": " << EventLog::showOctets(octets);
  }
}

TEST(X891ReaderBlocks, OfAnySizeTellWhatAStreamTells) {
  SampleReader reader;
  for (const std::string& sample : samples()) {
    expectSameInBlocks(reader, sample);
    expectSameInBlocks(reader, sample + "behind");
  }
}

TEST(X891ReaderBlocks, TellEachEventWithItsLastOctet) {
  for (const std::string& sample : samples()) {
    SampleReader reader;
    ObservedBuffer buffer(sample, reader.log);
    std::istream stream(&buffer);
    reader.reader.parse(stream);
    buffer.told.push_back(reader.log.text().size());
    ASSERT_EQ(sample.size() + 1, buffer.told.size());

    reader.log.clear();
    std::vector<std::size_t> told = {0};
    for (const char octet : sample) {
      reader.reader.parse(&octet, 1, false);
      told.push_back(reader.log.text().size());
    }
    EXPECT_EQ(buffer.told, told) << EventLog::showOctets(sample);
  }
}

TEST(X891ReaderBlocks, AreRefusedLikeAStreamWhereTheDocumentIsCut) {
  SampleReader reader;
  for (const std::string& sample : samples()) {
    for (std::size_t length = 0; length < sample.size(); ++length) {
      const std::string octets = sample.substr(0, length);
      const Outcome expected = readStream(reader, octets);
      for (const std::size_t size : {1, 2, 7, 64, 100000}) {
        ASSERT_EQ(expected, readBlocks(reader, octets, [size] { return size; }))
            << EventLog::showOctets(octets);
      }
    }
  }
}

TEST(X891ReaderBlocks, AreRefusedLikeAStreamWhereOctetsAreWrong) {
  SampleReader reader;
  const std::size_t count = reader_test::mutationCount(3000);
  for (std::size_t seed = 0; seed < count; ++seed) {
    std::mt19937 random(static_cast<std::mt19937::result_type>(seed));
    const std::string octets = reader_test::mutate(samples(), random);
    const Outcome expected = readStream(reader, octets);
    const std::size_t size = 1 + random() % 64;
    ASSERT_EQ(expected, readBlocks(reader, octets, [size] { return size; }))
        << "seed " << seed << ", blocks of " << size << ": " << EventLog::showOctets(octets);
  }
}

TEST(X891ReaderBlocks, OfRandomDocumentsTellWhatAStreamTells) {
  for (std::uint64_t seed = agreement::firstSeed(); seed < agreement::firstSeed() + 60; ++seed) {
    std::ostringstream octets;
    Tavrin::XMLWriter_X891 writer;
    writer.setOutputStream(&octets);
    x891::Mended mended(agreement::receiverOf(writer));
    agreement::sendRandomDocument(seed, agreement::receiverOf(mended));
    SampleReader reader;
    const Outcome expected = readStream(reader, octets.str());
    ASSERT_EQ("done", expected.failure);
    for (const std::size_t size : {1, 3, 64, 255, 256, 257, 1500}) {
      ASSERT_EQ(expected, readBlocks(reader, octets.str(), [size] { return size; }))
          << "seed " << seed << ", blocks of " << size;
    }
  }
}

TEST(X891ReaderBlocks, MayHoldTheEndOfADocumentAndTheNextOne) {
  std::string all;
  for (const std::string& sample : samples()) all += sample;
  SampleReader reader;
  for (const std::size_t size : {std::size_t{1}, std::size_t{5}, std::size_t{1000}, all.size()}) {
    std::vector<std::string> told;
    reader.log.clear();
    std::string rest;
    for (std::size_t begin = 0; begin < all.size() || !rest.empty();) {
      const std::string block = rest + all.substr(begin, size);
      begin = std::min(all.size(), begin + size);
      const std::size_t toldBefore = told.size();
      reader.reader.parse(block.data(), block.size(), false);
      const std::string text = reader.log.text();
      if (text.size() >= 14 && text.compare(text.size() - 14, 14, "endDocument()\n") == 0) {
        told.push_back(text);
        reader.log.clear();
        rest = block.substr(block.size() - reader.reader.unusedOctets());
      } else {
        EXPECT_EQ(0u, reader.reader.unusedOctets());
        EXPECT_EQ(toldBefore, told.size());
        rest.clear();
      }
    }
    ASSERT_EQ(samples().size(), told.size());
    for (std::size_t i = 0; i < told.size(); ++i) {
      EXPECT_EQ(SampleReader().read(samples()[i]), told[i]);
    }
  }
}

TEST(X891ReaderBlocks, EmptyOnesChangeNothing) {
  SampleReader reader;
  const std::string sample = samples()[1];
  reader.reader.parse(nullptr, 0, false);
  reader.reader.parse("", 0, false);
  for (const char octet : sample) {
    reader.reader.parse(&octet, 1, false);
    reader.reader.parse(nullptr, 0, false);
  }
  EXPECT_EQ(SampleReader().read(sample), reader.log.text());
}

TEST(X891ReaderBlocks, AnEmptyFinalOneMayFollowTheDocument) {
  SampleReader reader;
  const std::string sample = samples()[0];
  for (int round = 0; round < 2; ++round) {
    reader.log.clear();
    reader.reader.parse(sample.data(), sample.size(), false);
    reader.reader.parse(nullptr, 0, true);
    EXPECT_EQ(SampleReader().read(sample), reader.log.text());
  }
  // Once: then a document without octets is meant.
  EXPECT_EQ("SAXParseException: Not a Fast Infoset document (-1:0)",
            outcomeOf([&] { reader.reader.parse(nullptr, 0, true); }));
  EXPECT_EQ("SAXParseException: Not a Fast Infoset document (-1:0)",
            outcomeOf([&] { SampleReader().reader.parse("", 0, true); }));
}

TEST(X891ReaderBlocks, MayEndWithoutAFinalOne) {
  SampleReader reader;
  const std::string begun = document("3C 00 'a' 82 01 'te'");
  const std::string whole = samples()[0];
  reader.reader.parse(begun.data(), begun.size(), false);
  // A stream is another document; the one that was begun is forgotten.
  EXPECT_EQ(SampleReader().read(whole), reader.read(whole));
  reader.log.clear();
  reader.reader.parse(whole.data(), whole.size(), false);
  EXPECT_EQ(SampleReader().read(whole), reader.log.text());
}

TEST(X891ReaderBlocks, AfterAFailureBeginAnotherDocument) {
  SampleReader reader;
  const std::string wrong = document("3C 00 'a' F3");
  const std::string whole = samples()[0];
  for (const std::size_t size : {1, 3, 100}) {
    const Outcome expected = readStream(reader, wrong);
    EXPECT_EQ("SAXParseException: Error when decoding element children (-1:9)", expected.failure);
    EXPECT_EQ(expected, readBlocks(reader, wrong, [size] { return size; }));
    EXPECT_EQ(0u, reader.reader.unusedOctets());
    EXPECT_EQ(readStream(reader, whole), readBlocks(reader, whole, [size] { return size; }));
  }
}

TEST(X891ReaderBlocks, AfterAnExceptionAtAnyEventBeginAnotherDocument) {
  SampleReader reader;
  for (const std::string& sample : samples()) {
    const Outcome expected = readStream(reader, sample);
    const std::size_t events = reader.log.eventCount();
    const EventLog::Lines lines = reader.log.lines();
    for (std::size_t at = 0; at < events; ++at) {
      reader.log.beforeEvent = [at](std::size_t count) {
        if (count == at) throw std::runtime_error("enough");
      };
      const auto cut = static_cast<EventLog::Lines::difference_type>(at);
      const Outcome cutShort = {join({lines.begin(), lines.begin() + cut}),
                                "std::exception: enough"};
      for (const std::size_t size : {std::size_t{1}, at % 64 + 1, sample.size()}) {
        ASSERT_EQ(cutShort, readBlocks(reader, sample, [size] { return size; }))
            << "at event " << at << ", blocks of " << size;
      }
      reader.log.beforeEvent = nullptr;
      ASSERT_EQ(expected, readBlocks(reader, sample, [] { return 3; }));
    }
  }
}

TEST(X891ReaderBlocks, AreRefusedFromAHandlerOfTheSameReader) {
  SampleReader reader;
  struct Nested : EventLog {
    explicit Nested(Tavrin::XMLReader& outer) : outer_(outer) {}
    void startDocument() override { outer_.parse("", 0, false); }
    Tavrin::XMLReader& outer_;
  } nested(reader.reader);
  reader.reader.setContentHandler(&nested);
  const std::string sample = samples()[0];
  EXPECT_EQ("SAXException: parse called from a handler of the same reader",
            outcomeOf([&] { reader.reader.parse(sample.data(), sample.size(), true); }));
}

// --- Cost ---

/// A document of one chunk of floats.
std::string longTypedDocument(std::size_t octetsOfData) {
  return document("3C 00 'a' 8C 1F") + reader_test::bigEndian(octetsOfData - 259, 4) +
         std::string(octetsOfData, '\0') + octets("FF");
}

TEST(X891ReaderBlocks, KeepTheItemThatIsNotComplete) {
  constexpr std::size_t kData = std::size_t{1} << 20;
  const std::string head = document("3C 00 'a' 8C 1F") + reader_test::bigEndian(kData - 259, 4);
  Tavrin::XMLReader_X891 reader;
  reader.parse(head.data(), head.size(), false);
  const std::string some(1000, '\0');
  // What is claimed takes no memory, what has arrived does.
  EXPECT_LT(allocations::peakOf([&] { reader.parse(some.data(), some.size(), false); }), 8000u);
  const std::string more(kData / 2, '\0');
  EXPECT_LT(allocations::peakOf([&] { reader.parse(more.data(), more.size(), false); }), 2 * kData);
}

TEST(X891ReaderBlocks, KeepNothingOfItemsThatAreComplete) {
  const std::string head = document("3C 00 'a'");
  std::string chunks;
  for (int i = 0; i < 1000; ++i) chunks += octets("82 00 'tex'");
  Tavrin::XMLReader_X891 reader;
  reader.parse(head.data(), head.size(), false);
  reader.parse(chunks.data(), chunks.size(), false);
  EXPECT_LT(allocations::peakOf([&] {
              for (int i = 0; i < 100; ++i) reader.parse(chunks.data(), chunks.size(), false);
            }),
            1000u);
}

TEST(X891ReaderBlocks, AreReadInTimeThatIsLinear) {
  // Every octet of an item that is long is seen a few times only, however small the blocks are: the
  // allocations tell, which come with every attempt.
  const std::string octets = longTypedDocument(std::size_t{1} << 18);
  Tavrin::XMLReader_X891 reader;
  const std::size_t before = allocations::total();
  for (const char octet : octets) reader.parse(&octet, 1, false);
  EXPECT_LT(allocations::total() - before, 200u);
}

}  // namespace
}  // namespace x891_test
