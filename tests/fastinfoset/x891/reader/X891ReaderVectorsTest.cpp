#include <gtest/gtest.h>

#include "X891ReaderSupport.h"

// Small documents, each with the XML that it stands for.

namespace x891_test {
namespace {

TEST(X891ReaderVectors, EmptyElement) {
  EXPECT_EQ(wholeContent({}), readNew(document("3C 00 'a' FF")));
}

TEST(X891ReaderVectors, Attribute) {
  EXPECT_EQ(whole({"startElement(, a, a, [{, b, b, CDATA, c}])", "endElement(, a, a)"}),
            readNew(document("7C 00 61 78 00 62 40 63 FF F0")));
}

TEST(X891ReaderVectors, Text) {
  EXPECT_EQ(wholeContent({"characters(text)"}), readNew(document("3C 00 61 92 01 'text' FF")));
  EXPECT_EQ(wholeContent({"characters(text)"}), readNew(document("3C 00 61 82 01 'text' FF")));
}

TEST(X891ReaderVectors, EmptyAttribute) {
  EXPECT_EQ(whole({"startElement(, a, a, [{, b, b, CDATA, }])", "endElement(, a, a)"}),
            readNew(document("7C 00 61 78 00 62 FF FF F0")));
}

TEST(X891ReaderVectors, DefaultNamespace) {
  EXPECT_EQ(whole({"startPrefixMapping(, u)", "startElement(u, a, a, [])", "endElement(u, a, a)",
                   "endPrefixMapping()"}),
            readNew(document("38 CD 00 75 F0 3D 81 00 61 FF")));
}

TEST(X891ReaderVectors, Prefix) {
  EXPECT_EQ(whole({"startPrefixMapping(p, u)", "startElement(u, a, p:a, [])",
                   "endElement(u, a, p:a)", "endPrefixMapping(p)"}),
            readNew(document("38 CF 00 70 00 75 F0 3F 81 81 00 61 FF")));
}

TEST(X891ReaderVectors, DefaultNamespaceUndeclaredInside) {
  EXPECT_EQ(whole({"startPrefixMapping(, u)", "startElement(u, a, a, [])", "startPrefixMapping(, )",
                   "startElement(, b, b, [])", "endElement(, b, b)", "endPrefixMapping()",
                   "endElement(u, a, a)", "endPrefixMapping()"}),
            readNew(document("38 CD 00 75 F0 3D 81 00 61 38 CC F0 3C 00 62 FF F0")));
}

TEST(X891ReaderVectors, BuiltInPrefix) {
  EXPECT_EQ(
      whole({"startElement(, a, a, [{http://www.w3.org/XML/1998/namespace, lang, xml:lang, CDATA, "
             "en}])",
             "endElement(, a, a)"}),
      readNew(document("7C 00 61 7B 80 80 03 6C 61 6E 67 41 65 6E FF F0")));
}

TEST(X891ReaderVectors, Instruction) {
  EXPECT_EQ(
      whole({"processingInstruction(p, d)", "startElement(, a, a, [])", "endElement(, a, a)"}),
      readNew(document("E1 00 70 00 64 3C 00 61 FF")));
}

TEST(X891ReaderVectors, Comment) {
  EXPECT_EQ(wholeContent({"comment(c)"}), readNew(document("3C 00 61 E2 00 63 FF")));
}

TEST(X891ReaderVectors, SameNameInside) {
  EXPECT_EQ(wholeContent({"startElement(, a, a, [])", "endElement(, a, a)"}),
            readNew(document("3C 00 61 00 FF F0")));
}

TEST(X891ReaderVectors, NumericAlphabet) {
  EXPECT_EQ(wholeContent({"characters(12.5)"}), readNew(document("3C 00 61 88 01 12 C5 FF")));
}

TEST(X891ReaderVectors, IntAlgorithm) {
  EXPECT_EQ(wholeContent({"characters(1 -2)"}),
            readNew(document("3C 00 61 8C 0E 05 00 00 00 01 FF FF FF FE FF")));
}

TEST(X891ReaderVectors, DocumentType) {
  EXPECT_EQ(
      whole({"startDTD(a, p, s)", "endDTD()", "startElement(, a, a, [])", "endElement(, a, a)"}),
      readNew(document("C7 00 73 00 70 F0 3C 00 61 FF")));
}

TEST(X891ReaderVectors, StandaloneAndVersion) {
  X891Reader reader;
  EXPECT_EQ(wholeContent({}), reader.read(fromComponents("03 01 02 '1.0' 3C 00 61 FF")));
  const auto* standalone =
      static_cast<bool*>(reader.reader.getProperty(Tavrin::properties::standalone));
  ASSERT_NE(nullptr, standalone);
  EXPECT_TRUE(*standalone);
  EXPECT_EQ("1.0", *static_cast<std::string*>(
                       reader.reader.getProperty(Tavrin::properties::documentXMLVersion)));
}

TEST(X891ReaderVectors, NotationAndUnparsedEntity) {
  EXPECT_EQ(whole({"startDTD(a, , )", "notationDecl(n, , s)", "unparsedEntityDecl(e, , f, n)",
                   "endDTD()", "startElement(, a, a, [])", "endElement(, a, a)"}),
            readNew(fromComponents("18 C2 00 6E 00 73 F0 D0 00 65 00 66 80 F0 3C 00 61 FF")));
}

// --- Larger numbers of terminators ---

TEST(X891ReaderVectors, TerminatorsInARow) {
  // Three ends, padded.
  EXPECT_EQ(whole({"startElement(, a, a, [])", "startElement(, b, b, [])", "endElement(, b, b)",
                   "endElement(, a, a)"}),
            readNew(document("3C 00 'a' 3C 00 'b' FF F0")));
  // Four: of the attributes, of two elements and of the document.
  EXPECT_EQ(whole({"startElement(, a, a, [])", "startElement(, b, b, [{, c, c, CDATA, d}])",
                   "endElement(, b, b)", "endElement(, a, a)"}),
            readNew(document("3C 00 'a' 7C 00 'b' 78 00 'c' 00 'd' FF FF")));
  // An element without content between others.
  EXPECT_EQ(wholeContent({"startElement(, b, b, [])", "endElement(, b, b)", "comment(c)"}),
            readNew(document("3C 00 'a' 3C 00 'b' F0 E2 00 'c' FF")));
  // Something behind the root element: the document's end stands alone.
  EXPECT_EQ(whole({"startElement(, a, a, [])", "endElement(, a, a)", "comment(c)"}),
            readNew(document("3C 00 'a' F0 E2 00 'c' F0")));
}

}  // namespace
}  // namespace x891_test
