#include <gtest/gtest.h>

#include "TextReaderSupport.h"

namespace {

/// A reader that is fed blocks, and its log.
class ExpatBlocks : public testing::Test {
 protected:
  ExpatBlocks() { log_.attachTo(reader_); }

  std::string feed(const std::string& block, bool isFinal) {
    return outcomeOf([&] { reader_.parse(block.data(), block.size(), isFinal); });
  }
  std::string feedNull(unsigned long size, bool isFinal) {
    return outcomeOf([&] { reader_.parse(nullptr, size, isFinal); });
  }
  /// The events since the last call.
  std::string news() {
    const std::string text = log_.text();
    log_.clear();
    return text;
  }
  /// Reads a document in full: the reader was idle, and is idle again.
  void expectGoodDocument() {
    EXPECT_EQ("done", feed("<good/>", true));
    EXPECT_EQ(wholeLog({"startElement(, good, good, [])", "endElement(, good, good)"}), news());
  }

  EventLog log_;
  Tavrin::XMLReader_Expat reader_;
};

// No block cuts a tag: expat may put a tag that was cut off until much more has come.
TEST_F(ExpatBlocks, ReportTheEventsThatTheyComplete) {
  EXPECT_EQ("done", feed("<a x='1'>", false));
  EXPECT_EQ(join({"setDocumentLocator()", "startDocument()",
                  "startElement(, a, a, [{, x, x, CDATA, 1}])"}),
            news());
  EXPECT_EQ("done", feed("<b/>", false));
  EXPECT_EQ(join({"startElement(, b, b, [])", "endElement(, b, b)"}), news());
  EXPECT_EQ("done", feed("</a>", false));
  EXPECT_EQ(join({"endElement(, a, a)"}), news());
  EXPECT_EQ("done", feed("\n", false));
  EXPECT_EQ("", news());
  EXPECT_EQ("done", feed("<!--c-->", true));
  EXPECT_EQ(join({"comment(c)", "endDocument()"}), news());
}

TEST_F(ExpatBlocks, MayEndWithAnEmptyOne) {
  EXPECT_EQ("done", feed("<a/>", false));
  EXPECT_EQ("done", feed("", false));
  EXPECT_EQ("done", feed("", true));
  EXPECT_EQ(wholeLog({"startElement(, a, a, [])", "endElement(, a, a)"}), news());
  expectGoodDocument();
}

TEST_F(ExpatBlocks, MayBeginWithAnEmptyOne) {
  EXPECT_EQ("done", feed("", false));
  EXPECT_EQ(join({"setDocumentLocator()", "startDocument()"}), news());
  EXPECT_EQ("done", feed("", false));
  EXPECT_EQ("", news());
  EXPECT_EQ("done", feed("<a/>", true));
  EXPECT_EQ(join({"startElement(, a, a, [])", "endElement(, a, a)", "endDocument()"}), news());
}

TEST_F(ExpatBlocks, EmptyAndFinalFromTheStartIsNoDocument) {
  const Failure failure{XML_ERROR_NO_ELEMENTS, 1, 1};
  EXPECT_EQ(failure.thrown(), feed("", true));
  EXPECT_EQ(join({"setDocumentLocator()", "startDocument()", failure.logged()}), news());
  expectGoodDocument();
}

TEST_F(ExpatBlocks, NullStartsADocumentAndDoesNothingMore) {
  EXPECT_EQ("done", feedNull(0, false));
  EXPECT_EQ(join({"setDocumentLocator()", "startDocument()"}), news());
  EXPECT_EQ("done", feedNull(5, false));
  EXPECT_EQ("", news());
  EXPECT_EQ("done", feed("<a>", false));
  EXPECT_EQ("done", feedNull(0, false));
  EXPECT_EQ("done", feed("</a>", true));
  EXPECT_EQ(join({"startElement(, a, a, [])", "endElement(, a, a)", "endDocument()"}), news());
}

TEST_F(ExpatBlocks, NullAndFinalEndsWithoutEndDocument) {
  EXPECT_EQ("done", feed("<a/>", false));
  EXPECT_EQ("done", feedNull(0, true));
  EXPECT_EQ(join({"setDocumentLocator()", "startDocument()", "startElement(, a, a, [])",
                  "endElement(, a, a)"}),
            news());
  expectGoodDocument();
}

TEST_F(ExpatBlocks, NullAndFinalGivesUpADocumentThatIsNotComplete) {
  EXPECT_EQ("done", feed("<a><b", false));
  EXPECT_EQ("done", feedNull(7, true));
  EXPECT_EQ(join({"setDocumentLocator()", "startDocument()", "startElement(, a, a, [])"}), news());
  expectGoodDocument();
}

TEST_F(ExpatBlocks, NullAndFinalFromTheStartIsADocumentWithoutAnything) {
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ("done", feedNull(0, true));
    EXPECT_EQ(join({"setDocumentLocator()", "startDocument()"}), news());
  }
  expectGoodDocument();
}

TEST_F(ExpatBlocks, FollowOneDocumentWithTheNext) {
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ("done", feed("<a>", false));
    EXPECT_EQ("done", feed("</a>", true));
    EXPECT_EQ(wholeLog({"startElement(, a, a, [])", "endElement(, a, a)"}), news());
  }
}

TEST_F(ExpatBlocks, AfterAFailureBelongToANewDocument) {
  const Failure failure{XML_ERROR_TAG_MISMATCH, 2, 3};
  EXPECT_EQ("done", feed("<a>\n", false));
  EXPECT_EQ(failure.thrown(), feed("</b>", false));
  EXPECT_EQ(join({"setDocumentLocator()", "startDocument()", "startElement(, a, a, [])",
                  "characters(\\n)", failure.logged()}),
            news());
  // What was meant as the rest of the failed document is not well-formed as a new one.
  const Failure rest{XML_ERROR_INVALID_TOKEN, 1, 2};
  EXPECT_EQ(rest.thrown(), feed("</a>", true));
  EXPECT_EQ(join({"setDocumentLocator()", "startDocument()", rest.logged()}), news());
  expectGoodDocument();
}

TEST_F(ExpatBlocks, FinalInTheMiddleOfADocumentFail) {
  const Failure failure{XML_ERROR_NO_ELEMENTS, 1, 4};
  EXPECT_EQ(failure.thrown(), feed("<a>", true));
  EXPECT_EQ(join({"setDocumentLocator()", "startDocument()", "startElement(, a, a, [])",
                  failure.logged()}),
            news());
  expectGoodDocument();
}

TEST_F(ExpatBlocks, OfADocumentGiveWayToAStream) {
  EXPECT_EQ("done", feed("<a><b>", false));
  news();
  EXPECT_EQ("done", parseText(reader_, "<c/>"));
  EXPECT_EQ(wholeLog({"startElement(, c, c, [])", "endElement(, c, c)"}), news());
  expectGoodDocument();
}

// The size becomes a signed 32-bit count.
TEST_F(ExpatBlocks, OfTwoGigabytesAndMoreAreCountedIn32Bits) {
  const std::string text = "<a/><!-- not part of any block that is read -->";
  for (const unsigned long size : {0x80000000UL, 0xFFFFFFFFUL, 0x1FFFFFFFFUL}) {
    SCOPED_TRACE(size);
    const Failure failure{XML_ERROR_INVALID_ARGUMENT, 1, 1};
    EXPECT_EQ(failure.thrown(), outcomeOf([&] { reader_.parse(text.data(), size, true); }));
    EXPECT_EQ(join({"setDocumentLocator()", "startDocument()", failure.logged()}), news());
    expectGoodDocument();
  }

  EXPECT_EQ("done", outcomeOf([&] { reader_.parse(text.data(), 0x100000004UL, true); }));
  EXPECT_EQ(wholeLog({"startElement(, a, a, [])", "endElement(, a, a)"}), news());

  // 0 octets.
  const Failure nothing{XML_ERROR_NO_ELEMENTS, 1, 1};
  EXPECT_EQ(nothing.thrown(), outcomeOf([&] { reader_.parse(text.data(), 0x100000000UL, true); }));
  EXPECT_EQ(join({"setDocumentLocator()", "startDocument()", nothing.logged()}), news());
}

TEST_F(ExpatBlocks, OfANegativeCountEndADocumentThatWasGoingWell) {
  EXPECT_EQ("done", feed("<a>\n", false));
  news();
  const Failure failure{XML_ERROR_INVALID_ARGUMENT, 2, 1};
  EXPECT_EQ(failure.thrown(), outcomeOf([&] { reader_.parse("</a>", 0xFFFFFFFFUL, false); }));
  EXPECT_EQ(join({failure.logged()}), news());
  expectGoodDocument();
}

TEST_F(ExpatBlocks, OfEverySizeGiveTheTextOfALargeDocument) {
  // Characters of two octets and line ends of two, so that blocks end within both.
  std::string line;
  for (int i = 0; i < 500; ++i) line += "é";
  std::string text;
  std::string shown;
  for (int i = 0; i < 1500; ++i) {
    text += line + "\r\n";
    shown += line + "\\n";
  }
  const std::string expected =
      wholeLog({"startElement(, a, a, [])", "characters(" + shown + ")", "endElement(, a, a)"});
  for (const std::size_t size : {4095U, 65537U, 1048575U, 1048576U, 1048577U}) {
    SCOPED_TRACE(size);
    EXPECT_EQ("done", parseBlocks(reader_, cutEvenly("<a>" + text + "</a>", size)));
    EXPECT_EQ(expected, news());
  }
}

TEST_F(ExpatBlocks, NeedNoContentHandler) {
  reader_.setContentHandler(nullptr);
  EXPECT_EQ("done", feed("<a><!--c-->", false));
  EXPECT_EQ("done", feed("</a>", true));
  EXPECT_EQ(join({"comment(c)"}), news());
}

}  // namespace
