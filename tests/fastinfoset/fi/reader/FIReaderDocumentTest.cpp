#include <gtest/gtest.h>

#include "FIReaderSupport.h"

// The children of a document: the element, comments, processing instructions and the document type.

namespace reader_test {
namespace {

const EventLog::Lines kElementA = {"startElement(, a, a, [])", "endElement(, a, a)"};

TEST(FIReaderDocument, MayHoldNothing) {
  EXPECT_EQ(whole({}), readNew(document("F0")));
  EXPECT_EQ(whole({}), readNew(document("FF")));
}

TEST(FIReaderDocument, EndsWithEitherTerminatorBehindItsElement) {
  EXPECT_EQ(whole(kElementA), readNew(document("3C 00 'a' F0 F0")));
  EXPECT_EQ(whole(kElementA), readNew(document("3C 00 'a' F0 FF")));
  EXPECT_EQ(whole(kElementA), readNew(document("3C 00 'a' FF")));
}

TEST(FIReaderDocument, EndsWithItsLastOctet) {
  EXPECT_EQ(whole({}) + "1 octets left\n", readNew(document("F0 F0")));
  EXPECT_EQ(whole(kElementA) + "2 octets left\n", readNew(document("3C 00 'a' FF F0 F0")));
}

TEST(FIReaderDocument, HoldsItsChildrenInAnyOrder) {
  EXPECT_EQ(whole({"comment(1)", "processingInstruction(t, 2)", "startDTD(, , )", "endDTD()",
                   "processingInstruction(t, 3)", "comment(4)", "startElement(, a, a, [])",
                   "endElement(, a, a)", "comment(5)", "processingInstruction(u, 6)"}),
            readNew(document("E2 00 '1' E1 00 't' 00 '2' C4 F0 E1 80 00 '3' E2 00 '4' "
                             "3C 00 'a' F0 E2 00 '5' E1 00 'u' 00 '6' F0")));
}

TEST(FIReaderDocument, NeedsNoElement) {
  EXPECT_EQ(whole({"comment(c)"}), readNew(document("E2 00 'c' F0")));
  EXPECT_EQ(whole({"startDTD(, , )", "endDTD()", "comment(c)"}),
            readNew(document("C4 F0 E2 00 'c' FF")));
}

TEST(FIReaderDocument, HasOneElementOnly) {
  const std::string message = "Found more than one element on the top level";
  EXPECT_EQ(failed(kElementA, message), readNew(document("3C 00 'a' F0 3C 00 'b' F0 F0")));
  EXPECT_EQ(failed(kElementA, message), readNew(document("3C 00 'a' F0 00 F0 F0")));
  EventLog::Lines events = kElementA;
  events.push_back("comment(c)");
  // The octets of the second are not looked at.
  EXPECT_EQ(failed(events, message), readNew(document("3C 00 'a' F0 E2 00 'c' 39")));
}

TEST(FIReaderDocument, ElementWhoseAttributesEndTwiceDoesNotEndTheDocument) {
  const EventLog::Lines element = {"startElement(, a, a, [{, b, b, CDATA, c}])",
                                   "endElement(, a, a)"};
  EXPECT_EQ(whole(element), readNew(document("7C 00 'a' 78 00 'b' 00 'c' FF F0")));
  EXPECT_EQ(failed(element, "Unexpected end of document"),
            readNew(document("7C 00 'a' 78 00 'b' 00 'c' FF")));
}

TEST(FIReaderDocument, RefusesEveryOctetThatIsNoChildOfADocument) {
  for (unsigned octet = 0xC8; octet <= 0xFE; ++octet) {
    if (octet == 0xE1 || octet == 0xE2 || octet == 0xF0) continue;
    SCOPED_TRACE(octet);
    EXPECT_EQ(failed({"comment(c)"}, "Error while parsing document"),
              readNew(document("E2 00 'c'") + static_cast<char>(octet) + octets("00 'x' F0 F0")));
    EXPECT_EQ(failed(kElementA, "Error while parsing document"),
              readNew(document("3C 00 'a' F0") + static_cast<char>(octet)));
  }
}

TEST(FIReaderDocument, IsToldWithoutALexicalHandler) {
  LoggedReader reader;
  reader.reader.setProperty(Tavrin::properties::lexicalHandler, nullptr);
  // What is not told still fills the tables.
  EXPECT_EQ(whole({"processingInstruction(t, c)"}),
            reader.read(document("C6 00 's' F0 E2 40 'c' E1 00 't' 80 F0")));
}

TEST(FIReaderDocument, IsReadWithoutAnyHandler) {
  Tavrin::XMLReader_FI reader;
  std::istringstream stream(fromComponents(
      "18 C0 00 'n' F0 D0 00 'e' 00 's' 80 F0 C7 00 's' 00 'p' E1 00 't' FF F0 E2 00 'c' "
      "78 CF 00 'p' 00 'u' F0 3F 81 81 00 'a' 78 00 'b' 30 33 00 00 00 01 F0 "
      "81 'xy' 8C 09 00 01 8C 20 'z' E1 80 00 'd' E2 FF F0 F0"));
  const CapturedOutput output;
  EXPECT_EQ("done", outcomeOf([&] { reader.parse(stream); }));
  EXPECT_EQ("", output.text());
}

// --- The document type ---

TEST(FIReaderDocumentType, HasEitherIdentifierOrBoth) {
  const struct {
    const char* written;
    const char* event;
  } rows[] = {{"C4", "startDTD(, , )"},
              {"C5 02 'pub'", "startDTD(, pub, )"},
              {"C6 02 'sys'", "startDTD(, , sys)"},
              {"C7 02 'sys' 02 'pub'", "startDTD(, pub, sys)"},
              {"C7 02 'sys' 80", "startDTD(, sys, sys)"}};
  for (const auto& row : rows) {
    EXPECT_EQ(whole({row.event, "endDTD()"}),
              readNew(document(std::string(row.written) + " F0 F0")))
        << row.written;
  }
}

TEST(FIReaderDocumentType, IsToldByAnyOctetFrom80ToC7) {
  for (unsigned octet = 0x80; octet <= 0xC7; ++octet) {
    SCOPED_TRACE(octet);
    const bool hasSystemId = octet & 0x02;
    const bool hasPublicId = octet & 0x01;
    EXPECT_EQ(
        whole({std::string("startDTD(, ") + (hasPublicId ? "p" : "") + ", " +
                   (hasSystemId ? "s" : "") + ")",
               "endDTD()"}),
        readNew(document("") + static_cast<char>(octet) + octets(hasSystemId ? "00 's'" : "") +
                octets(hasPublicId ? "00 'p'" : "") + octets("F0 F0")));
  }
}

TEST(FIReaderDocumentType, SharesItsIdentifiersWithOtherItems) {
  EXPECT_EQ(join({"notationDecl(n, p, s)"}) + whole({"startDTD(, s, p)", "endDTD()"}),
            readNew(fromComponents("10 C3 00 'n' 00 's' 00 'p' F0 C7 81 80 F0 F0")));
  EXPECT_EQ(failed({}, "Error when decoding string - invalid index"), readNew(document("C6 80")));
}

TEST(FIReaderDocumentType, HoldsProcessingInstructions) {
  EXPECT_EQ(whole({"startDTD(, , )", "processingInstruction(t, d)", "processingInstruction(t, )",
                   "endDTD()", "processingInstruction(t, d)"}),
            readNew(document("C4 E1 00 't' 40 'd' E1 80 FF F0 E1 80 80 F0")));
}

TEST(FIReaderDocumentType, HoldsNothingElse) {
  for (unsigned octet = 0; octet <= 0xFE; ++octet) {
    if (octet == 0xE1 || octet == 0xF0) continue;
    SCOPED_TRACE(octet);
    EXPECT_EQ(
        failed({"startDTD(, , )", "processingInstruction(t, )"}, "Error while parsing DTD"),
        readNew(document("C4 E1 00 't' FF") + static_cast<char>(octet) + octets("00 'x' F0 F0")));
  }
}

TEST(FIReaderDocumentType, EndsTheDocumentWithADoubleTerminator) {
  EXPECT_EQ(whole({"startDTD(, , )", "endDTD()"}), readNew(document("C4 FF")));
  EXPECT_EQ(whole({"comment(c)", "startDTD(, p, )", "processingInstruction(t, )", "endDTD()"}) +
                "4 octets left\n",
            readNew(document("E2 00 'c' C5 00 'p' E1 00 't' FF FF 3C 00 'a' F0")));
}

TEST(FIReaderDocumentType, ComesBeforeTheElement) {
  const std::string message = "Found DTD behind the top level element";
  EXPECT_EQ(failed(kElementA, message), readNew(document("3C 00 'a' F0 C4 F0 F0")));
  EXPECT_EQ(failed(kElementA, message), readNew(document("3C 00 'a' F0 80")));
  // Also a second one.
  EXPECT_EQ(failed({"startDTD(, , )", "endDTD()", "startElement(, a, a, [])", "endElement(, a, a)"},
                   message),
            readNew(document("C4 F0 3C 00 'a' F0 C4 F0 F0")));
}

TEST(FIReaderDocumentType, ComesOnce) {
  EXPECT_EQ(failed({"startDTD(, , )", "endDTD()", "comment(c)"}, "Found more than one DTD"),
            readNew(document("C4 F0 E2 00 'c' C7 00 's' 00 'p' F0 F0")));
}

TEST(FIReaderDocumentType, PassesItsInstructionsToTheContentHandlerAlone) {
  LoggedReader reader;
  reader.reader.setContentHandler(nullptr);
  EXPECT_EQ(join({"startDTD(, , )", "endDTD()"}), reader.read(document("C4 E1 00 't' 00 'd' FF")));
}

TEST(FIReaderDocumentType, ReachesNoHandlerOfDeclarations) {
  LoggedReader reader;
  reader.reader.setContentHandler(nullptr);
  reader.reader.setProperty(Tavrin::properties::lexicalHandler, nullptr);
  EXPECT_EQ("", reader.read(document("C7 00 's' 00 'p' E1 00 't' 00 'd' FF")));
}

}  // namespace
}  // namespace reader_test
