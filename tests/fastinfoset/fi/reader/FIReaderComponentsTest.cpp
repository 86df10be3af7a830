#include <gtest/gtest.h>

#include "FIReaderSupport.h"

// What may stand between the header and the first child. The initial vocabulary has a file of its
// own.

namespace reader_test {
namespace {

/// What is told of a document of components only, from its octet of optional components on.
std::string readComponents(const std::string& written) { return readNew(fromComponents(written)); }

/// A failure before the document starts.
std::string refused(const EventLog::Lines& lines, const std::string& message) {
  return join(lines) + "SAXException: " + message + "\n";
}

/// A document without events of its own, with these lines before it and behind.
std::string around(const EventLog::Lines& before, const EventLog::Lines& behind) {
  return join(before) + whole({}) + join(behind);
}

// --- What is printed ---

TEST(FIReaderAdditionalData, IsPrintedItemByItem) {
  EXPECT_EQ(around({}, {"printed(decodeAdditionalData\\n)"}), readComponents("40 00 F0"));
  EXPECT_EQ(around({}, {"printed(decodeAdditionalData\\n\"i\" = \"d\"\\n)"}),
            readComponents("40 01 00 'i' 00 'd' F0"));
  EXPECT_EQ(around({}, {"printed(decodeAdditionalData\\n\"urn:x\" = \"ab\"\\n\"y\" = \"c\"\\n)"}),
            readComponents("40 80 00 02 04 'urn:x' 01 'ab' 00 'y' 00 'c' F0"));
}

TEST(FIReaderAdditionalData, IsPrintedOctetForOctet) {
  EXPECT_EQ(around({}, {"printed(decodeAdditionalData\\n\"\\x00\" = \"\\n\"\"\\n)"}),
            readComponents("40 01 00 00 01 0A '\"' F0"));
}

TEST(FIReaderAdditionalData, IsLiteral) {
  EXPECT_EQ(refused({"printed(decodeAdditionalData\\n)"}, "Error when parsing identifier"),
            readComponents("40 01 80"));
  EXPECT_EQ(refused({"printed(decodeAdditionalData\\n\"i\" = \"d\"\\n)"},
                    "Error when parsing identifier"),
            readComponents("40 02 00 'i' 00 'd' 00 'i' 80"));
}

/// Notes what has been printed by each time that it is flushed.
class FlushedOutput : public std::stringbuf {
 public:
  FlushedOutput() : original_(std::cout.rdbuf(this)) {}
  ~FlushedOutput() override { std::cout.rdbuf(original_); }
  FlushedOutput(const FlushedOutput&) = delete;
  FlushedOutput& operator=(const FlushedOutput&) = delete;

  std::vector<std::string> flushed;

 protected:
  int sync() override {
    flushed.push_back(str());
    str("");
    return 0;
  }

 private:
  std::streambuf* original_;
};

TEST(FIReaderPrinting, IsFlushedWithEachLine) {
  FlushedOutput output;
  Tavrin::XMLReader_FI reader;
  std::istringstream stream(
      fromComponents("45 01 00 'i' 00 'd' 00 's' 00 'v' 3C 00 'a' C8 00 'e' FF"));
  reader.parse(stream);
  EXPECT_EQ((std::vector<std::string>{
                "decodeAdditionalData\n", "\"i\" = \"d\"\n",
                "decodeCharacterEncodingScheme - \"s\"\n", "decodeVersion - \"v\"\n",
                "unexpanded entity reference - name = \"e\", systemID = \"\", publicID = \"\"\n"}),
            output.flushed);
}

TEST(FIReaderEncodingScheme, IsPrinted) {
  EXPECT_EQ(around({}, {"printed(decodeCharacterEncodingScheme - \"UTF-8\"\\n)"}),
            readComponents("04 04 'UTF-8' F0"));
}

TEST(FIReaderEncodingScheme, ChangesNothing) {
  EXPECT_EQ(whole({"startElement(, \xC3\xA4, \xC3\xA4, [])", "endElement(, \xC3\xA4, \xC3\xA4)"}) +
                "printed(decodeCharacterEncodingScheme - \"UTF-16\"\\n)\n",
            readComponents("04 05 'UTF-16' 3C 01 C3 A4 FF"));
}

TEST(FIReaderEncodingScheme, IsLiteral) {
  EXPECT_EQ(refused({}, "Error when parsing identifier"), readComponents("04 80"));
}

TEST(FIReaderStandalone, IsAnyOctet) {
  for (const char* octet : {"00", "01", "02", "80", "F0", "FF"}) {
    EXPECT_EQ(whole({}), readComponents(std::string("02 ") + octet + " F0")) << octet;
  }
}

TEST(FIReaderVersion, IsPrinted) {
  EXPECT_EQ(around({}, {"printed(decodeVersion - \"1.0\"\\n)"}), readComponents("01 02 '1.0' F0"));
  EXPECT_EQ(around({}, {"printed(decodeVersion - \"\"\\n)"}), readComponents("01 FF F0"));
}

TEST(FIReaderVersion, IsAddedToTheOtherStringsWithItsBit) {
  EXPECT_EQ(whole({"comment(1.0)"}) + "printed(decodeVersion - \"1.0\"\\n)\n",
            readComponents("01 42 '1.0' E2 80 F0"));
  EXPECT_EQ(refused({"startDocument()", "printed(decodeVersion - \"1.0\"\\n)"},
                    "Error when decoding string - invalid index"),
            readComponents("01 02 '1.0' E2 80 F0"));
}

TEST(FIReaderVersion, MayBeAnIndexIntoTheOtherStrings) {
  EXPECT_EQ(around({}, {"printed(decodeVersion - \"1.1\"\\n)"}),
            readComponents("21 00 04 02 02 '1.0' 02 '1.1' 81 F0"));
  EXPECT_EQ(refused({}, "Error when decoding string - invalid index"), readComponents("01 80"));
}

TEST(FIReaderVersion, InAnEncodingThatIsNotReadIsEmpty) {
  EXPECT_EQ(around({}, {"printed(decodeVersion - \"\"\\n)"}), readComponents("01 11 F0"));
  EXPECT_EQ(around({}, {"printed(decodeVersion - \"\"\\n)"}), readComponents("01 20 F0"));
  EXPECT_EQ(around({}, {"printed(decodeVersion - \"\"\\n)"}), readComponents("01 30 F0"));
  // With the bit, the table holds the empty string.
  EXPECT_EQ(whole({"comment()"}) + "printed(decodeVersion - \"\"\\n)\n",
            readComponents("01 51 E2 80 F0"));
}

// --- Notations and unparsed entities ---

TEST(FIReaderNotations, AreToldBeforeTheDocumentStarts) {
  EXPECT_EQ(around({"notationDecl(n, , )", "notationDecl(m, p, )", "notationDecl(o, , s)",
                    "notationDecl(q, pub, sys)"},
                   {}),
            readComponents("10 C0 00 'n' C1 00 'm' 00 'p' C2 00 'o' 00 's' "
                           "C3 00 'q' 02 'sys' 02 'pub' F0 F0"));
}

TEST(FIReaderNotations, MayBeNone) { EXPECT_EQ(whole({}), readComponents("10 F0 F0")); }

TEST(FIReaderNotations, FillTheirTables) {
  EXPECT_EQ(around({"notationDecl(n, p, s)", "notationDecl(n, s, p)", "notationDecl(m, s, )"}, {}),
            readComponents("10 C3 00 'n' 00 's' 00 'p' C3 80 81 80 C1 00 'm' 80 F0 F0"));
  EXPECT_EQ(refused({"notationDecl(n, , )"}, "Error when decoding string - invalid index"),
            readComponents("10 C0 00 'n' C0 81"));
}

TEST(FIReaderNotations, EndWithOneTerminatorOnly) {
  for (unsigned octet = 0; octet <= 0xFF; ++octet) {
    if ((octet >= 0xC0 && octet <= 0xC3) || octet == 0xF0) continue;
    SCOPED_TRACE(octet);
    const std::string document =
        fromComponents("10 C0 00 'n'") + static_cast<char>(octet) + octets("00 'x' 00 'x' F0 F0");
    EXPECT_EQ(refused({"notationDecl(n, , )"}, "Error while parsing namespaces"),
              readNew(document));
  }
}

TEST(FIReaderUnparsedEntities, AreToldBeforeTheDocumentStarts) {
  EXPECT_EQ(around({"unparsedEntityDecl(e, , s, n)", "unparsedEntityDecl(f, pub, sys, m)"}, {}),
            readComponents("08 D0 00 'e' 00 's' 00 'n' "
                           "D1 00 'f' 02 'sys' 02 'pub' 00 'm' F0 F0"));
}

TEST(FIReaderUnparsedEntities, MayBeNone) { EXPECT_EQ(whole({}), readComponents("08 F0 F0")); }

TEST(FIReaderUnparsedEntities, FillTheirTables) {
  // Names and notation names share a table, and so do both kinds of identifier.
  EXPECT_EQ(around({"unparsedEntityDecl(e, p, s, n)", "unparsedEntityDecl(n, s, p, e)"}, {}),
            readComponents("08 D1 00 'e' 00 's' 00 'p' 00 'n' D1 81 81 80 80 F0 F0"));
}

TEST(FIReaderUnparsedEntities, EndWithOneTerminatorOnly) {
  for (unsigned octet = 0; octet <= 0xFF; ++octet) {
    if (octet == 0xD0 || octet == 0xD1 || octet == 0xF0) continue;
    SCOPED_TRACE(octet);
    const std::string document = fromComponents("08 D0 00 'e' 00 's' 00 'n'") +
                                 static_cast<char>(octet) +
                                 octets("00 'x' 00 'x' 00 'x' 00 'x' F0 F0");
    EXPECT_EQ(refused({"unparsedEntityDecl(e, , s, n)"}, "Error while parsing namespaces"),
              readNew(document));
  }
}

TEST(FIReaderUnparsedEntities, MayNameNotationsByIndex) {
  EXPECT_EQ(around({"notationDecl(n, , s)", "unparsedEntityDecl(e, , s, n)"}, {}),
            readComponents("18 C2 00 'n' 00 's' F0 D0 00 'e' 80 80 F0 F0"));
}

TEST(FIReaderComponents, AreDecodedAlsoWhereNobodyIsTold) {
  LoggedReader reader;
  reader.reader.setDTDHandler(nullptr);
  EXPECT_EQ(whole({"processingInstruction(m, d)"}),
            reader.read(fromComponents("18 C3 00 'n' 00 's' 00 'p' F0 "
                                       "D1 00 'e' 80 81 00 'm' F0 E1 82 00 'd' F0")));
}

TEST(FIReaderComponents, ReachTheDTDHandlerWithoutAContentHandler) {
  LoggedReader reader;
  reader.reader.setContentHandler(nullptr);
  EXPECT_EQ(join({"notationDecl(n, , )"}), reader.read(fromComponents("10 C0 00 'n' F0 F0")));
}

// --- Together ---

TEST(FIReaderComponents, ComeInTheOrderOfTheirBits) {
  EXPECT_EQ(join({"notationDecl(name, , uri)", "unparsedEntityDecl(e, , uri, name)",
                  "startDocument()", "comment(string)", "endDocument()",
                  "printed(decodeAdditionalData\\n\"i\" = \"d\"\\ndecodeCharacterEncodingScheme - "
                  "\"UTF-8\"\\ndecodeVersion - \"string\"\\n)"}),
            readComponents("7F "
                           "01 00 'i' 00 'd' "
                           "00 64 01 03 'name' 01 02 'uri' 01 05 'string' "
                           "C2 80 80 F0 "
                           "D0 00 'e' 80 80 F0 "
                           "04 'UTF-8' "
                           "01 "
                           "80 "
                           "E2 80 F0"));
}

TEST(FIReaderComponents, AreCutOffByTheEndOfTheDocument) {
  for (const char* written : {"20", "20 00", "10", "10 C0", "10 C1 00 'n'", "08",
                              "08 D0 00 'e' 00 's'", "04", "04 01 'U'", "02", "01", "01 02 '1.'"}) {
    EXPECT_EQ(refused({}, "Unexpected end of document"), readComponents(written)) << written;
  }
  for (const char* written : {"40", "40 01", "40 01 00", "40 01 00 'i'", "40 01 00 'i' 01 'd'"}) {
    EXPECT_EQ(refused({"printed(decodeAdditionalData\\n)"}, "Unexpected end of document"),
              readComponents(written))
        << written;
  }
}

}  // namespace
}  // namespace reader_test
