#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>

#include "FIReaderSamples.h"

// Handlers that interfere: they throw, parse, or change the reader's handlers, in every event of
// every sample.

namespace reader_test {
namespace {

/// Calls the action for each event of each sample. `before` is what the log holds before it.
void atEveryEvent(const std::function<void(const Sample&, std::size_t event,
                                           const EventLog::Lines& before)>& action) {
  for (const Sample& sample : samples()) {
    SampleReader reader;
    reader.read(sample.octets);
    const EventLog::Lines whole = reader.log.lines();
    for (std::size_t event = 0; event < whole.size(); ++event) {
      SCOPED_TRACE(std::string(sample.name) + ", " + std::to_string(event));
      action(sample, event,
             EventLog::Lines(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(event)));
    }
  }
}

/// Parses a sample while one of its events does something; tells how that ended.
std::string readWith(SampleReader& reader, const Sample& sample, std::size_t event,
                     const std::function<void()>& doing) {
  reader.log.beforeEvent = [&](std::size_t now) {
    if (now == event) doing();
  };
  reader.read(sample.octets);
  reader.log.beforeEvent = nullptr;
  return reader.outcome;
}

/// An exception that is no std::exception, and cannot be mistaken for another.
struct Failure {
  const void* thrower;
};

TEST(FIReaderHandlers, ThatThrowEndTheParseWithWhatTheyThrow) {
  atEveryEvent([](const Sample& sample, std::size_t event, const EventLog::Lines& before) {
    SampleReader reader;
    EXPECT_EQ("SAXException: stop",
              readWith(reader, sample, event, [] { throw Tavrin::SAXException("stop"); }));
    EXPECT_EQ(join(before), reader.log.text());
    EXPECT_EQ("SAXParseException: stop (3:7)", readWith(reader, sample, event, [] {
                throw Tavrin::SAXParseException("stop", 3, 7);
              }));
    EXPECT_EQ(join(before), reader.log.text());
    EXPECT_EQ("EncodingAlgorithmException: stop", readWith(reader, sample, event, [] {
                throw Tavrin::EncodingAlgorithmException("stop");
              }));
    EXPECT_EQ(join(before), reader.log.text());
    EXPECT_EQ("std::exception: stop",
              readWith(reader, sample, event, [] { throw std::runtime_error("stop"); }));
    EXPECT_EQ(join(before), reader.log.text());

    std::optional<Failure> caught;
    try {
      readWith(reader, sample, event, [&] { throw Failure{&reader}; });
    } catch (const Failure& failure) {
      caught = failure;
    }
    ASSERT_TRUE(caught);
    EXPECT_EQ(&reader, caught->thrower);
  });
}

TEST(FIReaderHandlers, ThatThrowLeaveAReaderThatReadsOn) {
  atEveryEvent([](const Sample& sample, std::size_t event, const EventLog::Lines&) {
    SampleReader reader;
    readWith(reader, sample, event, [] { throw Tavrin::SAXException("stop"); });
    const std::string again = reader.read(sample.octets);
    EXPECT_EQ(SampleReader().read(sample.octets), again);
  });
}

TEST(FIReaderHandlers, MayNotParseWithTheSameReader) {
  atEveryEvent([](const Sample& sample, std::size_t event, const EventLog::Lines& before) {
    const std::string refused = "SAXException: parse called from a handler of the same reader";
    std::istringstream other(document("3C 00 'x' FF"));
    SampleReader reader;
    const auto parseOther = [&] { reader.reader.parse(other); };
    EXPECT_EQ(refused, readWith(reader, sample, event, parseOther));
    EXPECT_EQ(join(before), reader.log.text());
    EXPECT_EQ(0, other.tellg());

    // The refusal leaves the document alone.
    std::string inner;
    EXPECT_EQ("done", readWith(reader, sample, event, [&] { inner = outcomeOf(parseOther); }));
    EXPECT_EQ(refused, inner);
    SampleReader plain;
    plain.read(sample.octets);
    EXPECT_EQ(plain.log.text(), reader.log.text());
    EXPECT_EQ("done", outcomeOf([&] { reader.reader.parse(other); }));
  });
}

TEST(FIReaderHandlers, MayParseWithAnotherReader) {
  atEveryEvent([](const Sample& sample, std::size_t event, const EventLog::Lines&) {
    SampleReader reader;
    std::string inner;
    EXPECT_EQ("done", readWith(reader, sample, event,
                               [&] { inner = readNew(documentOfContent("90 'x' A0")); }));
    EXPECT_EQ(wholeContent({"characters(x)", "characters(x)"}), inner);
    SampleReader plain;
    plain.read(sample.octets);
    EXPECT_EQ(plain.log.text(), reader.log.text());
  });
}

TEST(FIReaderHandlers, MaySwitchTheEventsOff) {
  atEveryEvent([](const Sample& sample, std::size_t event, const EventLog::Lines& before) {
    SampleReader reader;
    EXPECT_EQ("done", readWith(reader, sample, event, [&] {
                reader.reader.setContentHandler(nullptr);
                reader.reader.setDTDHandler(nullptr);
                for (const char* property : {Tavrin::properties::lexicalHandler,
                                             Tavrin::properties::primitiveTypeContentHandler,
                                             Tavrin::properties::encodingAlgorithmContentHandler}) {
                  reader.reader.setProperty(property, nullptr);
                }
              }));
    // The event in which it happens is the last.
    EventLog::Lines lines = reader.log.lines();
    ASSERT_EQ(event + 1, lines.size());
    lines.pop_back();
    EXPECT_EQ(join(before), join(lines));
  });
}

TEST(FIReaderHandlers, MayGiveWayToOthers) {
  atEveryEvent([](const Sample& sample, std::size_t event, const EventLog::Lines&) {
    SampleReader plain;
    plain.read(sample.octets);
    SampleReader reader;
    EventLog next;
    next.mergeCharacters = false;
    next.showAlgorithms = true;
    EXPECT_EQ("done", readWith(reader, sample, event, [&] {
                next.attachTo(reader.reader);
                next.attachDeclarationsTo(reader.reader);
                next.attachPrimitiveTypesTo(reader.reader);
                next.attachAlgorithmsTo(reader.reader);
              }));
    EXPECT_EQ(event + 1, reader.log.lines().size());
    EXPECT_EQ(plain.log.text(), reader.log.text() + next.text());
  });
}

}  // namespace
}  // namespace reader_test
