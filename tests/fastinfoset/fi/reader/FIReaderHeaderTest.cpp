#include <gtest/gtest.h>

#include "FIReaderSupport.h"

// The four octets with which a document begins, and the octet behind them.

namespace reader_test {
namespace {

const std::string kHeader = octets("E0 00 00 01");
const char* const kNotADocument = "SAXException: Not a Fast Infoset document\n";

TEST(FIReaderHeader, OfAnEmptyDocument) {
  EXPECT_EQ(whole({}), readNew(kHeader + octets("00 F0")));
  EXPECT_EQ(whole({}), readNew(kHeader + octets("00 FF")));
}

TEST(FIReaderHeader, WithAnyWrongOctetIsRefusedAndNothingBehindItRead) {
  for (std::size_t place = 0; place < kHeader.size(); ++place) {
    for (int octet = 0; octet <= 0xFF; ++octet) {
      std::string document = kHeader + octets("00 F0");
      if (document[place] == static_cast<char>(octet)) continue;
      document[place] = static_cast<char>(octet);
      SCOPED_TRACE(std::to_string(place) + ": " + std::to_string(octet));
      EXPECT_EQ(kNotADocument, readNew(document));

      std::istringstream stream(document);
      Tavrin::XMLReader_FI reader;
      EXPECT_EQ("SAXException: Not a Fast Infoset document",
                outcomeOf([&] { reader.parse(stream); }));
      EXPECT_EQ(static_cast<std::streamoff>(place + 1), stream.tellg());
    }
  }
}

TEST(FIReaderHeader, CutOffIsNoDocument) {
  for (std::size_t length = 0; length < kHeader.size(); ++length) {
    EXPECT_EQ(kNotADocument, readNew(kHeader.substr(0, length))) << length;
  }
}

TEST(FIReaderHeader, AloneIsADocumentWithoutItsEnd) {
  EXPECT_EQ("SAXException: Unexpected end of document\n", readNew(kHeader));
  EXPECT_EQ(failed({}, "Unexpected end of document"), readNew(kHeader + octets("00")));
}

TEST(FIReaderHeader, HasNoTextBeforeIt) {
  for (const char* text :
       {"<?xml encoding='finf'?>", "<?xml version='1.0' encoding='finf'?>",
        "<?xml version='1.1' encoding='finf' standalone='yes'?>", "\xEF\xBB\xBF", " ", "\n"}) {
    EXPECT_EQ(kNotADocument, readNew(text + kHeader + octets("00 F0"))) << text;
  }
}

TEST(FIReaderHeader, OfADocumentOfTextIsNone) {
  EXPECT_EQ(kNotADocument, readNew("<a/>"));
  EXPECT_EQ(kNotADocument, readNew("<?xml version=\"1.0\"?><a/>"));
}

TEST(FIReaderHeader, MayBeFollowedByAPaddingBitThatIsSet) {
  EXPECT_EQ(whole({}), readNew(kHeader + octets("80 F0")));
  // The other bits still count.
  EXPECT_EQ("printed(decodeVersion - \"1\"\\n)\n",
            readNew(kHeader + octets("81 00 '1' F0")).substr(whole({}).size()));
}

TEST(FIReaderHeader, IsCheckedBeforeAnyHandlerIsCalled) {
  LoggedReader reader;
  reader.log.beforeEvent = [](std::size_t) { FAIL(); };
  EXPECT_EQ(kNotADocument, reader.read(octets("E0 00 00 02 00 3C 00 'a' FF")));
}

}  // namespace
}  // namespace reader_test
