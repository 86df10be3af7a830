#include <gtest/gtest.h>

#include <functional>

#include "FIWriterProbe.h"
#include "WhatIsThrown.h"

// The stream: when octets come out, and what happens without one.

namespace writer_test {
namespace {

using namespace Tavrin;

/// A document with every kind of item, an event a step.
const std::vector<std::function<void(Probe&)>> kSteps = {
    [](Probe& writer) { writer.startDocument(); },
    [](Probe& writer) { writer.comment("c"); },
    [](Probe& writer) { writer.startPrefixMapping("p", "u"); },
    [](Probe& writer) {
      writer.startElement("u", "r", "p:r", attributes({{"a", "1"}}));
    },
    [](Probe& writer) { writer.characters("h"); },
    [](Probe& writer) { writer.characters("i"); },
    [](Probe& writer) { writer.start("e"); },
    [](Probe& writer) { writer.end("e"); },
    [](Probe& writer) { writer.processingInstruction("t", "d"); },
    [](Probe& writer) {
      writer.start("e", {{"a", "1"}});
    },
    [](Probe& writer) { writer.end("e"); },
    [](Probe& writer) { writer.startCDATA(); },
    [](Probe& writer) { writer.characters("x"); },
    [](Probe& writer) { writer.endCDATA(); },
    [](Probe& writer) { writer.characters("y"); },
    [](Probe& writer) { writer.shorts({1}); },
    [](Probe& writer) { writer.octets("", 32, "z"); },
    [](Probe& writer) { writer.object("", 9, CDATAData("w")); },
    [](Probe& writer) { writer.endElement("u", "r", "p:r"); },
    [](Probe& writer) { writer.endPrefixMapping("p"); },
    [](Probe& writer) { writer.endDocument(); },
};

TEST(WriterStream, HasTheOctetsOfAnEventWhenTheEventReturns) {
  const char* const news[] = {
      "E0 00 00 01 00",
      "E2 40 'c'",
      "",
      "78 CF 00 'p' 00 'u' F0 3F 81 81 00 'r' 78 00 'a' 40 '1'",
      "",
      "",
      "F0 91 'hi' 3C 00 'e'",
      "",
      "F0 E1 00 't' 40 'd'",
      "41 00 80",
      "FF",
      "",
      "",
      "8C 24 'x'",
      "",
      "90 'y' 8C 09 00 01",
      "8C 80 'z'",
      "8C 24 'w'",
      "",
      "",
      "FF",
  };
  Probe writer;
  ASSERT_EQ(std::size(news), kSteps.size());
  for (std::size_t i = 0; i < kSteps.size(); ++i) {
    kSteps[i](writer);
    EXPECT_EQ(writer.news(), hex(news[i])) << "step " << i;
  }
}

TEST(WriterStream, IsNeverFlushed) {
  Probe writer;
  for (const auto& step : kSteps) {
    step(writer);
    writer.flush();
  }
  writer.reset();
  EXPECT_EQ(writer.output.flushes(), 0);
}

TEST(WriterStream, GetsNothingFromFlush) {
  Probe writer;
  Probe undisturbed;
  for (const auto& step : kSteps) {
    step(writer);
    step(undisturbed);
    const std::string before = writer.written();
    writer.flush();
    EXPECT_EQ(writer.written(), before);
  }
  EXPECT_EQ(writer.written(), undisturbed.written());
}

TEST(WriterStream, IsTheOneThatWasSetLast) {
  Probe writer;
  EXPECT_EQ(writer.getOutputStream(), &writer.output);
  Output second;
  for (std::size_t i = 0; i < kSteps.size(); ++i) {
    if (i == 6) writer.setOutputStream(&second);
    kSteps[i](writer);
  }
  EXPECT_EQ(writer.getOutputStream(), &second);
  // What is owed goes to the stream that is there when it is due.
  EXPECT_EQ(writer.written(), document("E2 40 'c' 78 CF 00 'p' 00 'u' F0 3F 81 81 00 'r' 78 00 'a'"
                                       "40 '1'"));
  EXPECT_EQ(EventLog::showOctets(second.text()),
            hex("F0 91 'hi' 3C 00 'e' F0 E1 00 't' 40 'd' 41 00 80 FF 8C 24 'x' 90 'y' 8C 09 00 01"
                "8C 80 'z' 8C 24 'w' FF"));
}

TEST(WriterStream, ThatTakesNoOctetStopsNothing) {
  Probe writer;
  writer.output.fill();
  for (const auto& step : kSteps) step(writer);
  EXPECT_EQ(writer.written(), "");
  EXPECT_TRUE(writer.output.bad());
}

TEST(WriterStream, MayThrow) {
  Probe writer;
  writer.output.fill();
  writer.output.exceptions(std::ios::badbit);
  EXPECT_THROW(writer.startDocument(), std::ios_base::failure);
}

TEST(WriterStream, ThatThrewGetsNothingOfThatEventLater) {
  Probe writer;
  writer.startDocument();
  writer.start("a");
  EXPECT_EQ(writer.news(), document("3C 00 'a'"));
  writer.output.fill();
  writer.output.exceptions(std::ios::badbit);
  EXPECT_THROW(writer.comment("lost"), std::ios_base::failure);
  writer.output.exceptions(std::ios::goodbit);
  writer.output.empty();
  writer.comment("c");
  EXPECT_EQ(writer.news(), hex("E2 40 'c'"));
}

TEST(WriterWithoutAStream, TakesWholeDocuments) {
  Probe writer;
  writer.setOutputStream(nullptr);
  for (int i = 0; i < 2; ++i) {
    for (const auto& step : kSteps) step(writer);
    writer.reset();
  }
  EXPECT_EQ(writer.written(), "");
}

TEST(WriterWithoutAStream, LeavesTheVocabularyAlone) {
  Probe writer;
  writer.setOutputStream(nullptr);
  const auto items = [&writer] {
    writer.startPrefixMapping("p", "u");
    writer.startElement("u", "e", "p:e", attributes({{"a", "1"}}));
    writer.characters("hi");
    writer.comment("c");
    writer.processingInstruction("t", "d");
  };
  writer.startDocument();
  items();
  writer.setOutputStream(&writer.output);
  items();  // All of it is new to the tables.
  EXPECT_EQ(writer.news(), hex("78 CF 00 'p' 00 'u' F0 3F 81 81 00 'e' 78 00 'a' 40 '1' F0"
                               "91 'hi' E2 40 'c' E1 00 't' 40 'd'"));
}

TEST(WriterWithoutAStream, ForgetsTheDeclarationsOfItsElements) {
  Probe writer;
  writer.setOutputStream(nullptr);
  writer.startDocument();
  writer.startPrefixMapping("p", "u");
  writer.start("r");
  writer.startPrefixMapping("q", "v");
  writer.setOutputStream(&writer.output);
  writer.start("e");
  EXPECT_EQ(writer.news(), hex("38 CF 00 'q' 00 'v' F0 3C 00 'e'"));
}

TEST(WriterWithoutAStream, KeepsWhatIsOwed) {
  Probe writer;
  writer.setOutputStream(nullptr);
  writer.startDocument();
  writer.start("r");
  writer.leaf("e");
  writer.characters("hi");
  writer.setOutputStream(&writer.output);
  writer.comment("");
  EXPECT_EQ(writer.news(), hex("F0 91 'hi' E2 FF"));

  writer.setOutputStream(nullptr);
  writer.start("e", {{"a", "1"}});
  writer.setOutputStream(&writer.output);
  writer.end("e");
  EXPECT_EQ(writer.news(), "FF");
  writer.end("r");
  writer.endDocument();
  EXPECT_EQ(writer.news(), "FF");
}

TEST(WriterWithoutAStream, RefusesWhatNoStreamCouldTake) {
  Probe writer;
  writer.setOutputStream(nullptr);
  writer.startDocument();
  EXPECT_EQ(thrown([&] { writer.processingInstruction("", "d"); }), "SAXException: Empty name");
  EXPECT_EQ(thrown([&] { writer.start(""); }), "SAXException: Empty name");
  EXPECT_EQ(thrown([&] { writer.octets("urn:x", 256, "x"); }),
            "EncodingAlgorithmException: Unknown encoding algorithm - urn:x");
  EXPECT_EQ(thrown([&] { writer.object("", 8, CDATAData("x")); }),
            "EncodingAlgorithmException: Unknown encoding algorithm - ");
}

}  // namespace
}  // namespace writer_test
