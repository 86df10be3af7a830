#include <Allocations.h>
#include <FlowChecks.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "X891ReaderSamples.h"

// Stopping, pausing and coalescing: at every event of documents that use all that there is.

namespace x891_test {
namespace {

/// Reads a document in one of flow::kWays.
std::function<std::string()> reading(SampleReader& reader, const std::string& octets,
                                     std::size_t way) {
  return [&reader, &octets, way] {
    return outcomeOf([&] { flow::readThrough(reader.reader, octets, way, true); });
  };
}

/// Calls a check with each sample, each way and each choice of handlers.
void forEachReading(
    const std::function<void(SampleReader&, const std::function<std::string()>&)>& check) {
  enum { kAsText, kAsArrays, kAsObjects };
  for (const auto typed : {kAsText, kAsArrays, kAsObjects}) {
    for (const bool isLexical : {true, false}) {
      if (!isLexical && typed != kAsText) continue;
      SampleReader reader;
      if (typed != kAsObjects) reader.reader.setEncodingAlgorithmContentHandler(nullptr);
      if (typed == kAsArrays) reader.log.attachPrimitiveTypesTo(reader.reader);
      if (!isLexical) reader.reader.setLexicalHandler(nullptr);
      for (const std::string& sample : samples()) {
        for (const std::size_t way : flow::kWays) {
          SCOPED_TRACE("blocks of " + std::to_string(way) + ": " + EventLog::showOctets(sample));
          check(reader, reading(reader, sample, way));
          if (testing::Test::HasFatalFailure()) return;
        }
      }
    }
  }
}

TEST(X891ReaderFlow, StopsAtEachEvent) {
  forEachReading([](SampleReader& reader, const auto& read) {
    flow::expectStopsAtEachEvent(reader.reader, reader.log, read);
  });
}

TEST(X891ReaderFlow, PausesAtEachEvent) {
  forEachReading([](SampleReader& reader, const auto& read) {
    flow::expectPausesAtEachEvent(reader.reader, reader.log, read);
  });
}

TEST(X891ReaderFlow, Coalesces) {
  forEachReading([](SampleReader& reader, const auto& read) {
    flow::expectCoalesces(reader.reader, reader.log, read);
  });
}

TEST(X891ReaderFlow, CoalescesWhereItStopsOrPauses) {
  forEachReading([](SampleReader& reader, const auto& read) {
    reader.reader.setFeature(Tavrin::features::coalesceCharacters, true);
    flow::expectStopsAtEachEvent(reader.reader, reader.log, read);
    flow::expectPausesAtEachEvent(reader.reader, reader.log, read);
    reader.reader.setFeature(Tavrin::features::coalesceCharacters, false);
  });
}

TEST(X891ReaderFlow, ReportsTheSameWhereTheDocumentIsCut) {
  SampleReader reader;
  for (const std::string& sample : samples()) {
    if (sample.size() > 300) continue;
    for (std::size_t length = 0; length < sample.size(); ++length) {
      const std::string cut = sample.substr(0, length);
      for (const std::size_t way : {0, 1, 7, 100000}) {
        SCOPED_TRACE("blocks of " + std::to_string(way) + ": " + EventLog::showOctets(cut));
        const auto read = reading(reader, cut, way);
        flow::expectCoalesces(reader.reader, reader.log, read);
        const flow::Outcome whole = flow::outcomeOf(reader.log, read);
        reader.log.beforeEvent = [&](std::size_t) { reader.reader.pause(); };
        ASSERT_EQ(whole, flow::outcomeOf(reader.log, read));
        reader.log.beforeEvent = nullptr;
      }
    }
  }
}

// --- Stopping ---

/// A document of three elements in each other, with text between them.
const std::string kNested = document("3C 00 'a' 80 'x' 3C 00 'b' 80 'y' 3C 00 'c' F0 80 'z' FF F0");

TEST(X891ReaderFlow, TellsWhatAStoppedDocumentHasNotRead) {
  X891Reader reader;
  reader.log.beforeEvent = [&](std::size_t number) {
    if (number == 3) reader.reader.stop();  // The start of "b".
  };
  const std::string octets = kNested + "more";
  reader.reader.parse(octets.data(), octets.size(), false);
  EXPECT_EQ("startDocument()\nstartElement(, a, a, [])\ncharacters(x)\nstartElement(, b, b, [])\n",
            reader.log.text());
  // The text after the start tag and all that follows.
  EXPECT_EQ("80 79 3C 00 63 F0 80 7A FF F0 6D 6F 72 65",
            EventLog::showOctets(octets.substr(octets.size() - reader.reader.unusedOctets())));
  reader.log.beforeEvent = nullptr;
  reader.log.clear();
  reader.reader.parse(kNested.data(), kNested.size(), true);
  EXPECT_EQ(readNew(kNested), reader.log.text());
  EXPECT_EQ(0U, reader.reader.unusedOctets());
}

TEST(X891ReaderFlow, StopsOutsideOfHandlers) {
  X891Reader reader;
  reader.reader.stop();  // No document.
  EXPECT_FALSE(reader.reader.isStopped());
  reader.reader.parse(kNested.data(), 12, false);
  EXPECT_FALSE(reader.reader.isStopped());
  reader.reader.stop();
  EXPECT_TRUE(reader.reader.isStopped());
  EXPECT_EQ(readNew(kNested), reader.read(kNested));
  EXPECT_FALSE(reader.reader.isStopped());
  reader.reader.stop();  // The document has ended.
  EXPECT_FALSE(reader.reader.isStopped());
}

TEST(X891ReaderFlow, GivesUpAPausedDocument) {
  X891Reader reader;
  reader.log.beforeEvent = [&](std::size_t) { reader.reader.pause(); };
  reader.reader.parse(kNested.data(), kNested.size(), false);
  ASSERT_TRUE(reader.reader.isPaused());
  reader.reader.stop();
  EXPECT_TRUE(reader.reader.isStopped());
  EXPECT_FALSE(reader.reader.isPaused());
  EXPECT_EQ("SAXException: resume called while the reader is not paused",
            outcomeOf([&] { reader.reader.resume(); }));
  reader.log.beforeEvent = nullptr;
  EXPECT_EQ(readNew(kNested), reader.read(kNested));
}

TEST(X891ReaderFlow, LetsExceptionsOfHandlersLeave) {
  X891Reader reader;
  for (const bool stops : {true, false}) {
    reader.log.beforeEvent = [&](std::size_t number) {
      if (number < 2) return;
      stops ? reader.reader.stop() : reader.reader.pause();
      throw std::runtime_error("enough");
    };
    for (const bool coalesces : {true, false}) {
      reader.reader.setFeature(Tavrin::features::coalesceCharacters, coalesces);
      EXPECT_EQ("startDocument()\nstartElement(, a, a, [])\nstd::exception: enough\n",
                reader.read(kNested));
      EXPECT_EQ(stops, reader.reader.isStopped());
      EXPECT_FALSE(reader.reader.isPaused());
    }
  }
  reader.log.beforeEvent = nullptr;
  EXPECT_EQ(readNew(kNested), reader.read(kNested));
}

// --- Pausing ---

TEST(X891ReaderFlow, RefusesOtherDocumentsWhileItIsPaused) {
  X891Reader reader;
  reader.log.beforeEvent = [&](std::size_t number) {
    if (number == 2) reader.reader.pause();
    EXPECT_EQ("SAXException: resume called from a handler of the same reader",
              outcomeOf([&] { reader.reader.resume(); }));
  };
  const std::string refusal = "SAXException: parse called while the reader is paused";
  reader.reader.parse(kNested.data(), kNested.size(), true);
  EXPECT_EQ("startDocument()\nstartElement(, a, a, [])\ncharacters(x)\n", reader.log.text());
  EXPECT_EQ(refusal, outcomeOf([&] { reader.reader.parse(kNested.data(), 3, false); }));
  std::istringstream stream(kNested);
  EXPECT_EQ(refusal, outcomeOf([&] { reader.reader.parse(stream); }));
  reader.reader.resume();
  EXPECT_EQ(readNew(kNested), reader.log.text());
  EXPECT_EQ("SAXException: resume called while the reader is not paused",
            outcomeOf([&] { reader.reader.resume(); }));
}

TEST(X891ReaderFlow, PausesNothingOutsideOfHandlers) {
  X891Reader reader;
  reader.reader.pause();
  EXPECT_FALSE(reader.reader.isPaused());
  reader.reader.parse(kNested.data(), 12, false);
  reader.reader.pause();
  EXPECT_FALSE(reader.reader.isPaused());
  reader.reader.parse(kNested.data() + 12, kNested.size() - 12, false);
  EXPECT_EQ(readNew(kNested), reader.log.text());
}

TEST(X891ReaderFlow, TellsWhatFollowsADocumentThatWasPaused) {
  X891Reader reader;
  reader.log.beforeEvent = [&](std::size_t) { reader.reader.pause(); };
  const std::string octets = kNested + "more";
  reader.reader.parse(octets.data(), octets.size(), false);
  EXPECT_EQ(0U, reader.reader.unusedOctets());
  flow::resumeAll(reader.reader);
  EXPECT_EQ(4U, reader.reader.unusedOctets());
  EXPECT_EQ(readNew(kNested), reader.log.text());
}

TEST(X891ReaderFlow, ThrowsAfterResume) {
  X891Reader reader;
  for (std::size_t at = 1; at < 10; ++at) {
    reader.log.clear();
    reader.log.beforeEvent = [&](std::size_t number) {
      reader.reader.pause();
      if (number == at) throw std::runtime_error("enough");
    };
    EXPECT_EQ("std::exception: enough",
              outcomeOf([&] { flow::readThrough(reader.reader, kNested, 100000, true); }));
    EXPECT_EQ(at, reader.log.lines().size());
    EXPECT_FALSE(reader.reader.isPaused());
    reader.log.beforeEvent = nullptr;
    ASSERT_EQ(readNew(kNested), reader.read(kNested));
  }
}

TEST(X891ReaderFlow, ReportsToTheHandlersThatAreSetAtResume) {
  X891Reader reader;
  const std::string empty = document("38 CD 00 'u' F0 3D 81 00 'a' FF");
  reader.log.beforeEvent = [&](std::size_t number) {
    if (number == 1) reader.reader.pause();  // The prefix mapping of the start tag.
  };
  reader.reader.parse(empty.data(), empty.size(), true);
  EXPECT_EQ("startDocument()\nstartPrefixMapping(, u)\n", reader.log.text());
  EventLog other;
  reader.reader.setContentHandler(&other);
  reader.reader.resume();
  EXPECT_EQ("startElement(u, a, a, [])\nendElement(u, a, a)\nendPrefixMapping()\nendDocument()\n",
            other.text());
}

TEST(X891ReaderFlow, CopiesABlockOnce) {
  std::string octets = document("3C 00 'a'");
  for (int i = 0; i < 20000; ++i) octets += "\x80x";
  octets += "\xFF";
  Tavrin::XMLReader_X891 reader;
  struct Pausing : Tavrin::ContentHandler {
    void characters(const std::string&) override { reader->pause(); }
    Tavrin::XMLReader_X891* reader = nullptr;
  } handler;
  handler.reader = &reader;
  reader.setContentHandler(&handler);
  const std::size_t before = allocations::total();
  EXPECT_LT(allocations::peakOf([&] {
              reader.parse(octets.data(), octets.size(), true);
              flow::resumeAll(reader);
            }),
            octets.size() + 10000);
  EXPECT_LT(allocations::total() - before, 200U);
}

// --- Coalescing ---

TEST(X891ReaderFlow, CoalescesAsMuchAsTheLimitAllows) {
  // Three octets from a chunk, and the same from its table, then a typed value as text.
  const std::string octets = document("3C 00 'a' 92 00 'tex' A0 8C 00 '1' FF");
  const std::string start = "startDocument()\nstartElement(, a, a, [])\n";
  for (const std::uint64_t limit : {7U, 8U, 9U}) {
    for (const std::size_t way : flow::kWays) {
      X891Reader reader;
      reader.reader.setFeature(Tavrin::features::coalesceCharacters, true);
      auto limits = reader.reader.getLimits();
      EXPECT_EQ(std::uint64_t{1} << 30, limits.maximumCoalescedOctets);
      limits.maximumCoalescedOctets = limit;
      reader.reader.setLimits(limits);
      const std::string end =
          outcomeOf([&] { flow::readThrough(reader.reader, octets, way, true); });
      if (limit >= 8) {
        EXPECT_EQ("done", end);
        EXPECT_EQ(start + "characters(textex31)\nendElement(, a, a)\nendDocument()\n",
                  reader.log.text());
      } else {
        const std::string failure = "Text longer than 7 octets (property maximum-coalesced-octets)";
        EXPECT_EQ("SAXParseException: " + failure + " (-1:17)", end);
        EXPECT_EQ(start + "characters(textex)\nfatalError(" + failure + ", -1, 17)\n",
                  reader.log.text());
      }
    }
  }
}

TEST(X891ReaderFlow, HasTheLimitAndTheFeatureAsProperties) {
  Tavrin::XMLReader_X891 reader;
  EXPECT_FALSE(reader.getFeature(Tavrin::features::coalesceCharacters));
  reader.setFeature(Tavrin::features::coalesceCharacters, true);
  EXPECT_TRUE(reader.getFeature(Tavrin::features::coalesceCharacters));
  std::uint64_t limit = 5;
  reader.setProperty(Tavrin::properties::maximumCoalescedOctets, &limit);
  EXPECT_EQ(5U, reader.getLimits().maximumCoalescedOctets);
  reader.setProperty(Tavrin::properties::maximumCoalescedOctets, nullptr);
  EXPECT_EQ(std::uint64_t{1} << 30, reader.getLimits().maximumCoalescedOctets);
}

TEST(X891ReaderFlow, FreesLongText) {
  std::string octets = document("3C 00 'a'");
  for (int i = 0; i < 1000; ++i) octets += "\x82\xFC" + std::string(255, 't');
  octets += "\xFF";
  Tavrin::ContentHandler handler;
  const auto heldBy = [&](bool coalesces) {
    const std::size_t before = allocations::inUse();
    Tavrin::XMLReader_X891 reader;
    reader.setContentHandler(&handler);
    reader.setFeature(Tavrin::features::coalesceCharacters, coalesces);
    reader.parse(octets.data(), octets.size(), true);
    return allocations::inUse() - before;
  };
  EXPECT_LT(heldBy(true), heldBy(false) + 70000U);
}

}  // namespace
}  // namespace x891_test
