#include <gtest/gtest.h>

#include "FIReaderSamples.h"

// Documents that are cut off, anywhere.

namespace reader_test {
namespace {

TEST(FIReaderSamples, AreReadToTheirEnd) {
  for (const Sample& sample : samples()) {
    SCOPED_TRACE(sample.name);
    SampleReader reader;
    const std::string told = reader.read(sample.octets);
    EXPECT_EQ("done", reader.outcome) << told;
    EXPECT_EQ("endDocument()", reader.log.lines().back());
    EXPECT_EQ(std::string::npos, told.find(" octets left"));
  }
}

TEST(FIReaderTruncation, AnywhereIsTheUnexpectedEndOfTheDocument) {
  for (const Sample& sample : samples()) {
    SampleReader reader;
    const std::string whole = reader.read(sample.octets);
    const EventLog::Lines wholeLog = reader.log.lines();
    const std::string wholePrint = reader.printed;
    for (std::size_t length = 0; length < sample.octets.size(); ++length) {
      SCOPED_TRACE(std::string(sample.name) + ", " + std::to_string(length));
      reader.read(sample.octets.substr(0, length));
      EXPECT_EQ(length < 4 ? "SAXException: Not a Fast Infoset document"
                           : "SAXException: Unexpected end of document",
                reader.outcome);
      // What was told before is what the whole document tells.
      const EventLog::Lines& log = reader.log.lines();
      ASSERT_LT(log.size(), wholeLog.size());
      EXPECT_EQ(join(EventLog::Lines(wholeLog.begin(),
                                     wholeLog.begin() + static_cast<std::ptrdiff_t>(log.size()))),
                join(log));
      EXPECT_EQ(wholePrint.substr(0, reader.printed.size()), reader.printed);
    }
    EXPECT_EQ(whole, reader.read(sample.octets));
  }
}

TEST(FIReaderTruncation, TellsEverythingThatWasWhole) {
  // With its last octet missing, a document lacks nothing but its end.
  SampleReader reader;
  EXPECT_EQ(failedContent({"characters(x)", "comment(c)"}, "Unexpected end of document"),
            reader.read(document("3C 00 'a' 80 'x' E2 00 'c'")));
  EXPECT_EQ(failedContent({"characters(x)"}, "Unexpected end of document"),
            reader.read(document("3C 00 'a' 80 'x' E2 00")));
  EXPECT_EQ(
      failed({"startElement(, a, a, [])", "endElement(, a, a)"}, "Unexpected end of document"),
      reader.read(document("3C 00 'a' F0")));
}

}  // namespace
}  // namespace reader_test
