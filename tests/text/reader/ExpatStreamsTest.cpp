#include "Streams.h"

#include <gtest/gtest.h>

#include <sstream>

#include "TextReaderSupport.h"
#include "ThrownKinds.h"

namespace {

/// A reader of streams, and its log.
class ExpatStreams : public testing::Test {
 protected:
  ExpatStreams() { log_.attachTo(reader_); }

  std::string parse(std::istream& stream) {
    return outcomeOf([&] { reader_.parse(stream); });
  }
  std::string parse(std::streambuf& buffer) {
    std::istream stream(&buffer);
    return parse(stream);
  }
  /// The events since the last call.
  std::string news() {
    const std::string text = log_.text();
    log_.clear();
    return text;
  }
  void expectGoodDocument() {
    EXPECT_EQ("done", parseText(reader_, "<good/>"));
    EXPECT_EQ(wholeLog({"startElement(, good, good, [])", "endElement(, good, good)"}), news());
  }

  EventLog log_;
  Tavrin::XMLReader_Expat reader_;
};

struct SizeRow {
  std::streamsize size;
  std::vector<Read> reads;
};

// A block that is not full is the last one, so an input of whole blocks ends with an empty read.
TEST_F(ExpatStreams, AreReadInBlocksOf1048576Octets) {
  const SizeRow rows[] = {
      {kBlock - 1, {{kBlock, kBlock - 1}}},
      {kBlock, {{kBlock, kBlock}, {kBlock, 0}}},
      {kBlock + 1, {{kBlock, kBlock}, {kBlock, 1}}},
      {kBlock + 3, {{kBlock, kBlock}, {kBlock, 3}}},
      {2 * kBlock - 1, {{kBlock, kBlock}, {kBlock, kBlock - 1}}},
      {2 * kBlock, {{kBlock, kBlock}, {kBlock, kBlock}, {kBlock, 0}}},
      {2 * kBlock + 1, {{kBlock, kBlock}, {kBlock, kBlock}, {kBlock, 1}}},
      {8, {{kBlock, 8}}},
  };
  for (const SizeRow& row : rows) {
    SCOPED_TRACE(row.size);
    const std::string text(static_cast<std::size_t>(row.size) - 7, 'x');
    NotingBuffer buffer("<a>" + text + "</a>");
    EXPECT_EQ("done", parse(buffer));
    EXPECT_EQ(row.reads, buffer.reads());
    EXPECT_EQ(
        wholeLog({"startElement(, a, a, [])", "characters(" + text + ")", "endElement(, a, a)"}),
        news());
  }
}

TEST_F(ExpatStreams, MayHaveABlockEndWithinAnything) {
  // The construct begins `before` octets ahead of the block's end.
  struct Row {
    const char* construct;
    std::size_t before;
    EventLog::Lines events;
  };
  const Row rows[] = {
      {"\xF0\x9F\x98\x80", 2, {"characters(😀)"}},
      {"\r\n", 1, {"characters(\\n)"}},
      {"&amp;", 2, {"characters(&)"}},
      {"<b/>", 1, {"startElement(, b, b, [])", "endElement(, b, b)"}},
      {"<b x='12'/>", 7, {"startElement(, b, b, [{, x, x, CDATA, 12}])", "endElement(, b, b)"}},
      {"<![CDATA[12]]>", 13, {"startCDATA()", "characters(12)", "endCDATA()"}},
      {"<![CDATA[12]]>", 10, {"startCDATA()", "characters(12)", "endCDATA()"}},
      {"<!--12-->", 5, {"comment(12)"}},
      {"<?t 12?>", 5, {"processingInstruction(t, 12)"}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.construct);
    const std::string open = "<a><b>";
    const std::string text(static_cast<std::size_t>(kBlock) - open.size() - 4 - row.before, 'x');
    EXPECT_EQ("done", parseText(reader_, open + text + "</b>" + row.construct + "</a>"));
    EventLog::Lines events = {"startElement(, a, a, [])", "startElement(, b, b, [])",
                              "characters(" + text + ")", "endElement(, b, b)"};
    events.insert(events.end(), row.events.begin(), row.events.end());
    events.push_back("endElement(, a, a)");
    EXPECT_EQ(wholeLog(events), news());
  }
}

TEST_F(ExpatStreams, MayHoldOneTokenOfManyBlocks) {
  const std::string text(2 * static_cast<std::size_t>(kBlock), 'x');
  EXPECT_EQ("done",
            parseText(reader_, "<a x='" + text + "'><!--" + text + "--><?t " + text + "?></a>"));
  EXPECT_EQ(
      wholeLog({"startElement(, a, a, [{, x, x, CDATA, " + text + "}])", "comment(" + text + ")",
                "processingInstruction(t, " + text + ")", "endElement(, a, a)"}),
      news());
}

TEST_F(ExpatStreams, MayHoldAnInternalEntityOfManyBlocks) {
  const std::string text(2 * static_cast<std::size_t>(kBlock), 'x');
  log_.attachDeclarationsTo(reader_);
  EXPECT_EQ("done", parseText(reader_, "<!DOCTYPE a [<!ENTITY e '" + text + "'>]><a>&e;&e;</a>"));
  EXPECT_EQ(wholeLog({"startDTD(a, , )", "internalEntityDecl(e, " + text + ")", "endDTD()",
                      "startElement(, a, a, [])", "characters(" + text + text + ")",
                      "endElement(, a, a)"}),
            news());
}

TEST_F(ExpatStreams, ThatAreEmptyFail) {
  const Failure failure{XML_ERROR_NO_ELEMENTS, 1, 1};
  NotingBuffer buffer("");
  EXPECT_EQ(failure.thrown(), parse(buffer));
  EXPECT_EQ((std::vector<Read>{{kBlock, 0}}), buffer.reads());
  EXPECT_EQ(join({"setDocumentLocator()", "startDocument()", failure.logged()}), news());
  expectGoodDocument();
}

TEST_F(ExpatStreams, WithoutABufferAreEmpty) {
  const Failure failure{XML_ERROR_NO_ELEMENTS, 1, 1};
  std::istream stream(nullptr);
  EXPECT_EQ(failure.thrown(), parse(stream));
  EXPECT_EQ(join({"setDocumentLocator()", "startDocument()", failure.logged()}), news());
  expectGoodDocument();
}

TEST_F(ExpatStreams, EndWithTheFirstReadThatIsNotFull) {
  NotingBuffer buffer("<a/><b/>");
  buffer.limit = 4;
  EXPECT_EQ("done", parse(buffer));
  EXPECT_EQ((std::vector<Read>{{kBlock, 4}}), buffer.reads());
  EXPECT_EQ(wholeLog({"startElement(, a, a, [])", "endElement(, a, a)"}), news());
}

TEST_F(ExpatStreams, AreReadFromWhereTheyStand) {
  std::istringstream stream("not XML <a/>");
  stream.seekg(8);
  EXPECT_EQ("done", parse(stream));
  EXPECT_EQ(wholeLog({"startElement(, a, a, [])", "endElement(, a, a)"}), news());
  EXPECT_EQ(12, stream.tellg());
}

TEST_F(ExpatStreams, KeepTheirStateFlagsWhichNobodyConsults) {
  for (const std::ios::iostate state :
       {std::ios::goodbit, std::ios::failbit, std::ios::eofbit, std::ios::badbit,
        std::ios::failbit | std::ios::eofbit | std::ios::badbit}) {
    SCOPED_TRACE(state);
    std::istringstream stream("<a/>");
    stream.setstate(state);
    EXPECT_EQ("done", parse(stream));
    EXPECT_EQ(wholeLog({"startElement(, a, a, [])", "endElement(, a, a)"}), news());
    EXPECT_EQ(state, stream.rdstate());
  }
}

TEST_F(ExpatStreams, ThatThrowAtTheirEndDoNotDoSoHere) {
  std::istringstream stream("<a/>");
  stream.exceptions(std::ios::failbit | std::ios::eofbit | std::ios::badbit);
  EXPECT_EQ("done", parse(stream));
  EXPECT_EQ(wholeLog({"startElement(, a, a, [])", "endElement(, a, a)"}), news());
}

TEST_F(ExpatStreams, WhoseBufferThrowsDoSoThroughTheReader) {
  for (const Thrown& thrown : thrownKinds()) {
    SCOPED_TRACE(thrown.name);
    NotingBuffer buffer("<a/>");
    buffer.beforeRead = [&](std::size_t) { thrown.raise(); };
    EXPECT_EQ(thrown.leavesAs, parse(buffer));
    // No fatalError: the document did not fail.
    EXPECT_EQ(join({"setDocumentLocator()", "startDocument()"}), news());
    expectGoodDocument();
  }
}

TEST_F(ExpatStreams, WhoseBufferThrowsLaterHaveReportedWhatCameBefore) {
  for (const Thrown& thrown : thrownKinds()) {
    SCOPED_TRACE(thrown.name);
    const std::string text(static_cast<std::size_t>(kBlock) - 3, 'x');
    NotingBuffer buffer("<a>" + text + "</a>");
    buffer.beforeRead = [&](std::size_t number) {
      if (number == 1) thrown.raise();
    };
    EXPECT_EQ(thrown.leavesAs, parse(buffer));
    EXPECT_EQ(join({"setDocumentLocator()", "startDocument()", "startElement(, a, a, [])",
                    "characters(" + text + ")"}),
              news());
    if (thrown.isSAX) {
      // The reader is idle.
      EXPECT_EQ("done", parseBlocks(reader_, {"<b/>"}));
      EXPECT_EQ(wholeLog({"startElement(, b, b, [])", "endElement(, b, b)"}), news());
    } else {
      // The document is still open, and blocks go on with it.
      EXPECT_EQ("done", parseBlocks(reader_, {"</a>"}));
      EXPECT_EQ(join({"endElement(, a, a)", "endDocument()"}), news());
    }
    expectGoodDocument();
  }
}

TEST_F(ExpatStreams, GoOneAfterTheOther) {
  for (int round = 0; round < 3; ++round) expectGoodDocument();
}

}  // namespace
