#include <gtest/gtest.h>

#include "FIReaderSupport.h"

// Character chunks of text, comments, processing instructions and entity references.

namespace reader_test {
namespace {

/// What is told of the element `a` with this content.
std::string readContent(const std::string& written) { return readNew(documentOfContent(written)); }

// --- Character chunks ---

TEST(FIReaderChunks, HaveAtLeastOneOctet) {
  EXPECT_EQ(wholeContent({"characters(x)"}), readContent("80 'x'"));
  EXPECT_EQ(wholeContent({"characters(xy)"}), readContent("81 'xy'"));
  EXPECT_EQ(wholeContent({"characters(xyz)"}), readContent("82 00 'xyz'"));
}

TEST(FIReaderChunks, OfEveryLengthForm) {
  const struct {
    const char* length;
    std::size_t octetCount;
  } rows[] = {{"80", 1},
              {"81", 2},
              {"82 00", 3},
              {"82 FF", 258},
              {"83 00 00 00 00", 259},
              {"83 00 00 00 01", 260},
              {"83 00 00 FE FD", 65536},
              {"83 00 00 FE FE", 65537},
              {"83 00 02 00 00", 131331},
              {"90", 1},
              {"91", 2},
              {"92 00", 3},
              {"93 00 00 00 00", 259}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.length);
    std::string text(row.octetCount, 'x');
    text.back() = 'y';
    EXPECT_EQ(wholeContent({"characters(" + text + ")"}),
              readNew(document("3C 00 'a'") + octets(row.length) + text + octets("FF")));
  }
}

TEST(FIReaderChunks, AreToldOneByOne) {
  EXPECT_EQ(wholeContent({"characters(x)", "characters(y)", "characters(z)"}),
            readContent("80 'x' 80 'y' 90 'z'"));
}

TEST(FIReaderChunks, AreTakenOctetForOctet) {
  EXPECT_EQ(wholeContent({"characters(\\x00\xFF\\r\xC3)"}), readContent("82 01 00 FF 0D C3"));
  // Half a character is one chunk, the other half the next.
  EXPECT_EQ(wholeContent({"characters(\xC3)", "characters(\xA4)"}), readContent("80 C3 80 A4"));
}

TEST(FIReaderChunks, AreAddedWithTheirBitOnly) {
  EXPECT_EQ(wholeContent({"characters(x)", "characters(y)", "characters(y)", "characters(y)"}),
            readContent("80 'x' 90 'y' A0 A0"));
  EXPECT_EQ(failedContent({"characters(x)"}, "Error when decoding character chunk - invalid index"),
            readContent("80 'x' A0"));
}

TEST(FIReaderChunks, MayBeIndicesFromZero) {
  EXPECT_EQ(wholeContent({"characters(x)", "characters(yz)", "characters(yz)", "characters(x)"}),
            readContent("90 'x' 91 'yz' A1 A0"));
  // An index adds nothing.
  EXPECT_EQ(failedContent({"characters(x)", "characters(x)"},
                          "Error when decoding character chunk - invalid index"),
            readContent("90 'x' A0 A1"));
}

TEST(FIReaderChunks, RefuseEveryIndexBeyondTheTable) {
  for (const char* written :
       {"A1", "AF", "B0 00", "B3 FF", "B4 00 00", "B7 FF FF", "B8 00 00 00", "B8 FF FF FF"}) {
    EXPECT_EQ(
        failedContent({"characters(x)"}, "Error when decoding character chunk - invalid index"),
        readContent("90 'x' " + std::string(written)))
        << written;
  }
}

TEST(FIReaderChunks, RefuseOctetsThatAreNoIndex) {
  for (unsigned octet = 0xB9; octet <= 0xC7; ++octet) {
    SCOPED_TRACE(octet);
    EXPECT_EQ(
        failedContent({"characters(x)"}, "Error when decoding character chunk"),
        readNew(document("3C 00 'a' 90 'x'") + static_cast<char>(octet) + octets("00 00 00 FF")));
  }
}

TEST(FIReaderChunks, InUTF16AreEmptyAndTheirOctetsTheNextItem) {
  EXPECT_EQ(wholeContent({"characters()"}), readContent("84"));
  EXPECT_EQ(wholeContent({"characters()"}), readContent("85"));
  EXPECT_EQ(wholeContent({"characters()"}), readContent("86 05"));
  EXPECT_EQ(wholeContent({"characters()"}), readContent("87 00 00 00 05"));
  // The octets of a character 80 79 are taken for a chunk.
  EXPECT_EQ(wholeContent({"characters()", "characters(y)"}), readContent("85 80 'y'"));
  // And those of F0 00 end the element.
  EXPECT_EQ(failed({"startElement(, a, a, [])", "characters()", "endElement(, a, a)"},
                   "Found more than one element on the top level"),
            readContent("85 F0 00"));
}

TEST(FIReaderChunks, InARestrictedAlphabetAreEmptyAndTakeOneMoreOctet) {
  for (const char* written : {"88 00", "89 F0", "8A FF", "8B E2", "88 80"}) {
    EXPECT_EQ(wholeContent({"characters()"}), readContent(written)) << written;
  }
  EXPECT_EQ(wholeContent({"characters()", "characters(y)"}), readContent("8A 3C 80 'y'"));
}

TEST(FIReaderChunks, ThatAreNotReadAreAddedAsEmpty) {
  EXPECT_EQ(wholeContent({"characters()", "characters(x)", "characters()", "characters()",
                          "characters(x)", "characters()"}),
            readContent("94 90 'x' 98 00 A0 A1 A2"));
  EXPECT_EQ(wholeContent({"characters()", "characters(x)", "characters(x)"}),
            readContent("84 90 'x' A0"));
}

TEST(FIReaderChunks, StandInTheirPlaceAmongElements) {
  EXPECT_EQ(wholeContent({"characters(x)", "startElement(, b, b, [])", "characters(y)",
                          "endElement(, b, b)", "characters(z)"}),
            readContent("80 'x' 3C 00 'b' 80 'y' F0 80 'z'"));
}

// --- Comments ---

TEST(FIReaderComments, AreStrings) {
  EXPECT_EQ(wholeContent({"comment(c)", "comment()", "comment(a--b)"}),
            readContent("E2 00 'c' E2 FF E2 03 'a--b'"));
}

TEST(FIReaderComments, AreAddedWithTheirBitOnly) {
  EXPECT_EQ(wholeContent({"comment(x)", "comment(y)", "comment(y)"}),
            readContent("E2 00 'x' E2 40 'y' E2 80"));
  EXPECT_EQ(failedContent({"comment(x)"}, "Error when decoding string - invalid index"),
            readContent("E2 00 'x' E2 80"));
}

TEST(FIReaderComments, ThatAreNotReadAreEmptyAndWhatFollowsTheNextItem) {
  EXPECT_EQ(wholeContent({"comment(x)", "comment()", "characters(y)", "comment()"}),
            readContent("E2 00 'x' E2 10 80 'y' E2 18 05"));
  EXPECT_EQ(wholeContent({"comment(x)", "comment()", "characters(y)"}),
            readContent("E2 00 'x' E2 20 80 'y'"));
  EXPECT_EQ(wholeContent({"comment(x)", "comment()", "characters(y)"}),
            readContent("E2 00 'x' E2 30 80 'y'"));
  EXPECT_EQ(wholeContent({"comment(x)", "comment()", "comment()", "comment(x)", "comment()"}),
            readContent("E2 40 'x' E2 50 E2 70 E2 80 E2 82"));
}

// --- Processing instructions ---

TEST(FIReaderInstructions, HaveATargetAndData) {
  EXPECT_EQ(wholeContent({"processingInstruction(t, d)", "processingInstruction(t, )"}),
            readContent("E1 00 't' 00 'd' E1 80 FF"));
}

TEST(FIReaderInstructions, AddTheirTargetAlwaysAndTheirDataWithItsBit) {
  EXPECT_EQ(wholeContent({"processingInstruction(t, x)", "processingInstruction(u, y)",
                          "processingInstruction(u, y)"}),
            readContent("E1 00 't' 00 'x' E1 00 'u' 40 'y' E1 81 80"));
  EXPECT_EQ(
      failedContent({"processingInstruction(t, x)"}, "Error when decoding string - invalid index"),
      readContent("E1 00 't' 00 'x' E1 81 00 'y'"));
  EXPECT_EQ(
      failedContent({"processingInstruction(t, x)"}, "Error when decoding string - invalid index"),
      readContent("E1 00 't' 00 'x' E1 80 80"));
}

TEST(FIReaderInstructions, ShareTheirDataWithComments) {
  EXPECT_EQ(wholeContent({"comment(x)", "processingInstruction(t, x)"}),
            readContent("E2 40 'x' E1 00 't' 80"));
}

TEST(FIReaderInstructions, WhoseDataAreNotReadHaveNone) {
  EXPECT_EQ(wholeContent({"processingInstruction(t, x)", "processingInstruction(t, )",
                          "characters(y)", "processingInstruction(t, )", "characters(z)"}),
            readContent("E1 00 't' 00 'x' E1 80 10 80 'y' E1 80 20 80 'z'"));
}

// --- Entity references ---

TEST(FIReaderEntityReferences, ArePrintedAndToldToNobody) {
  const struct {
    const char* written;
    const char* systemId;
    const char* publicId;
  } rows[] = {{"C8 00 'e'", "", ""},
              {"C9 00 'e' 02 'pub'", "", "pub"},
              {"CA 00 'e' 02 'sys'", "sys", ""},
              {"CB 00 'e' 02 'sys' 02 'pub'", "sys", "pub"}};
  for (const auto& row : rows) {
    EXPECT_EQ(wholeContent({}) +
                  "printed(unexpanded entity reference - name = \"e\", systemID = \"" +
                  row.systemId + "\", publicID = \"" + row.publicId + "\"\\n)\n",
              readContent(row.written));
  }
}

TEST(FIReaderEntityReferences, ArePrintedALineEach) {
  EXPECT_EQ(
      wholeContent({"characters(x)"}) +
          "printed(unexpanded entity reference - name = \"e\", systemID = \"s\", publicID = \"\"\\n"
          "unexpanded entity reference - name = \"f\", systemID = \"s\", publicID = \"p\"\\n)\n",
      readContent("CA 00 'e' 00 's' 80 'x' CB 00 'f' 80 00 'p'"));
}

TEST(FIReaderEntityReferences, FillTheirTables) {
  EXPECT_EQ(wholeContent({"processingInstruction(e, d)"}) +
                "printed(unexpanded entity reference - name = \"e\", systemID = \"s\", publicID = "
                "\"p\"\\nunexpanded entity reference - name = \"e\", systemID = \"p\", publicID = "
                "\"s\"\\n)\n",
            readContent("CB 00 'e' 00 's' 00 'p' E1 80 00 'd' CB 80 81 80"));
  EXPECT_EQ(failedContent({}, "Error when decoding string - invalid index"), readContent("C8 80"));
}

TEST(FIReaderEntityReferences, StandInElementsOnly) {
  for (const char* octet : {"C8", "C9", "CA", "CB"}) {
    EXPECT_EQ(failed({}, "Error while parsing document"),
              readNew(document(std::string(octet) + " 00 'e' 00 's' 00 'p' F0")));
  }
}

}  // namespace
}  // namespace reader_test
