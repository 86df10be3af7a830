#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "PullLog.h"
#include "WhatIsThrown.h"
#include "X891ReaderSamples.h"

// Fast Infoset that is pulled: the events are those that handlers are told, for all documents, and
// however their octets come.

namespace x891_test {
namespace {

using Tavrin::PullEvent;
using Tavrin::PullReader;

/// Lets a pull reader know what the reader of the samples knows.
void configure(PullReader& pull, SampleReader& sample) {
  for (const char* const property : {Tavrin::properties::registeredEncodingAlgorithms,
                                     Tavrin::properties::externalVocabularies}) {
    pull.reader().setProperty(property, sample.reader.getProperty(property));
  }
}

/// What handlers are told of a stream.
PullOutcome push(SampleReader& sample, const std::string& octets) {
  EventLog& log = sample.log;
  log.clear();
  log.showLocator = false;
  log.mergeCharacters = true;
  log.showAlgorithms = true;
  log.attachTo(sample.reader);
  log.attachDeclarationsTo(sample.reader);
  sample.reader.setErrorHandler(nullptr);
  std::istringstream stream(octets);
  PullOutcome outcome;
  outcome.failure = outcomeOf([&] { sample.reader.parse(stream); });
  outcome.told = log.text();
  if (outcome.failure == "done") {
    outcome.unused = octets.size() - static_cast<std::size_t>(stream.tellg());
  }
  return outcome;
}

/// What is pulled from a stream.
PullOutcome pullStream(SampleReader& sample, std::streambuf& buffer) {
  std::istream stream(&buffer);
  PullOutcome outcome;
  try {
    PullReader reader(stream);
    configure(reader, sample);
    PullLog log(reader);
    outcome.failure = outcomeOf([&] { log.pull(); });
    EXPECT_FALSE(reader.next());
    EXPECT_EQ(PullEvent::none, reader.event());
    EXPECT_EQ(outcome.failure == "done", reader.hasEnded());
    EXPECT_FALSE(reader.needsBlock());
    outcome.told = log.log.text();
  } catch (const Tavrin::SAXNotRecognizedException&) {
    outcome.failure = "not recognised";  // The reader of XML text has no such properties.
  }
  return outcome;
}

/// What is pulled from blocks that are gone when the reader needs another one.
PullOutcome pullBlocks(SampleReader& sample, const std::string& octets, std::size_t size) {
  PullReader reader("X891");
  configure(reader, sample);
  PullLog log(reader);
  PullOutcome outcome;
  outcome.failure = outcomeOf([&] {
    for (std::size_t begin = 0; !reader.hasEnded() && begin <= octets.size(); begin += size) {
      const std::string block = octets.substr(begin, size);
      reader.supply(block.data(), block.size(), begin + size > octets.size());
      log.pull();
      EXPECT_NE(reader.needsBlock(), reader.hasEnded());
      outcome.unused =
          reader.unusedOctets() + octets.size() - std::min(octets.size(), begin + size);
    }
  });
  if (outcome.failure != "done") outcome.unused = 0;
  outcome.told = log.log.text();
  return outcome;
}

TEST(PullBinary, TellsWhatHandlersAreTold) {
  SampleReader sample;
  for (const std::string& octets : samples()) {
    PullOutcome expected = push(sample, octets + "behind");
    ASSERT_EQ("done", expected.failure) << EventLog::showOctets(octets);
    for (const std::size_t size : {1, 2, 3, 5, 7, 16, 31, 64, 100000}) {
      ASSERT_EQ(expected, pullBlocks(sample, octets + "behind", size))
          << "blocks of " << size << ": " << EventLog::showOctets(octets);
    }
    std::stringbuf whole(octets + "behind");
    expected.unused = 0;
    // Recognised by its first octets, which a declaration of XML need not have.
    const PullOutcome pulled = pullStream(sample, whole);
    ASSERT_EQ(expected, pulled) << EventLog::showOctets(octets);
    if (octets[0] == '<') continue;
    OctetByOctet narrow(octets + "behind");
    ASSERT_EQ(expected, pullStream(sample, narrow)) << EventLog::showOctets(octets);
    EXPECT_EQ(octets.size(), narrow.given());
  }
}

TEST(PullBinary, FailsWhereHandlersDo) {
  SampleReader sample;
  for (const std::string& octets : samples()) {
    for (std::size_t end = 1; end < octets.size(); ++end) {
      const std::string cut = octets.substr(0, end);
      const PullOutcome expected = push(sample, cut);
      for (const std::size_t size : {1, 7, 100000}) {
        ASSERT_EQ(expected, pullBlocks(sample, cut, size)) << EventLog::showOctets(cut);
      }
      if (octets[0] == '<') continue;
      std::stringbuf whole(cut);
      ASSERT_EQ(expected, pullStream(sample, whole)) << EventLog::showOctets(cut);
    }
  }
}

TEST(PullBinary, FailsWhereAnOctetIsWrong) {
  SampleReader sample;
  for (const std::string& octets : samples()) {
    for (std::size_t i = 4; i < octets.size(); ++i) {
      std::string wrong = octets;
      wrong[i] = static_cast<char>(wrong[i] ^ 0x5A);
      PullOutcome expected = push(sample, wrong);
      const PullOutcome pulled = pullBlocks(sample, wrong, 13);
      if (expected.failure != "done") expected.unused = 0;
      ASSERT_EQ(expected, pulled) << EventLog::showOctets(wrong);
    }
  }
}

}  // namespace
}  // namespace x891_test
