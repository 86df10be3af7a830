#include <gtest/gtest.h>

#include "X891ReaderSupport.h"

// The document type: identifiers, instructions, notations and unparsed entities (X.891, C.9 to
// C.11), in the order of the events of SAX2.

namespace x891_test {
namespace {

const char* const kNotations = "10 C2 00 'n' 00 's' C1 00 'm' 00 'p' C3 00 'l' 00 't' 00 'q' F0 ";

TEST(X891ReaderDTD, HasEachCombinationOfIdentifiers) {
  const auto dtd = [](const char* told) {
    return whole({told, "endDTD()", "startElement(, a, a, [])", "endElement(, a, a)"});
  };
  EXPECT_EQ(dtd("startDTD(a, , )"), readNew(document("C4 F0 3C 00 'a' FF")));
  EXPECT_EQ(dtd("startDTD(a, , s)"), readNew(document("C6 00 's' F0 3C 00 'a' FF")));
  EXPECT_EQ(dtd("startDTD(a, p, s)"), readNew(document("C7 00 's' 00 'p' F0 3C 00 'a' FF")));
  EXPECT_EQ(dtd("startDTD(a, p, )"), readNew(document("C5 00 'p' F0 3C 00 'a' FF")));
}

TEST(X891ReaderDTD, HasTheQualifiedNameOfTheRoot) {
  EXPECT_EQ(whole({"startDTD(p:a, , )", "endDTD()", "startPrefixMapping(p, u)",
                   "startElement(u, a, p:a, [])", "endElement(u, a, p:a)", "endPrefixMapping(p)"}),
            readNew(document("C4 F0 38 CF 00 'p' 00 'u' F0 3F 81 81 00 'a' FF")));
}

TEST(X891ReaderDTD, HasIdentifiersOfXML) {
  for (const char* identifier : {"<", "&", "\"", "{", "^", "\\", "|", "~"}) {
    expectRefused(document("C7 00 's' 00") + identifier, octets("F0 3C 00 'a' FF"),
                  "\"" + std::string(identifier) + "\" is not a public identifier",
                  {"startDocument()"});
    expectRefused(fromComponents("10 C1 00 'n' 00") + identifier, octets("F0 3C 00 'a' FF"),
                  "\"" + std::string(identifier) + "\" is not a public identifier");
  }
  expectPrologRefused("C6 03 'a' 27 22 'b'", "F0 3C 00 'a' FF",
                      "A system identifier cannot hold both kinds of quotes");
  expectRefused(fromComponents("10 C2 00 'n' 01 22 27"), octets("F0 3C 00 'a' FF"),
                "A system identifier cannot hold both kinds of quotes");
  expectRefused(fromComponents("08 D0 00 'e' 01 22 27 00 'n'"), octets("F0 3C 00 'a' FF"),
                "A system identifier cannot hold both kinds of quotes");
  expectRefused(fromComponents("08 D1 00 'e' 00 's' 00 '<' 00 'n'"), octets("F0 3C 00 'a' FF"),
                "\"<\" is not a public identifier");
  // One kind of quotes is well.
  EXPECT_EQ(whole({"startDTD(a, -//X//Y 'z', a\"b)", "endDTD()", "startElement(, a, a, [])",
                   "endElement(, a, a)"}),
            readNew(document("C7 02 'a' 22 'b' 0A '-//X//Y ' 27 'z' 27 F0 3C 00 'a' FF")));
}

TEST(X891ReaderDTD, HasInstructionsInside) {
  EXPECT_EQ(whole({"startDTD(a, , )", "processingInstruction(p, d)", "processingInstruction(q, )",
                   "endDTD()", "startElement(, a, a, [])", "endElement(, a, a)"}),
            readNew(document("C4 E1 00 'p' 00 'd' E1 00 'q' FF F0 3C 00 'a' FF")));
  for (const char* octet : {"E2", "00", "3C", "80", "C4", "C8", "FE"}) {
    expectPrologRefused("C4 " + std::string(octet), "00 'c' F0 3C 00 'a' FF",
                        "Error while parsing DTD");
  }
}

TEST(X891ReaderDTD, EventsAroundItKeepTheirOrder) {
  EXPECT_EQ(whole({"comment(c)", "processingInstruction(p, )", "startDTD(a, , s)",
                   "processingInstruction(q, )", "endDTD()", "processingInstruction(r, )",
                   "comment(d)", "startElement(, a, a, [])", "endElement(, a, a)", "comment(e)",
                   "processingInstruction(t, )"}),
            readNew(document("E2 00 'c' E1 00 'p' FF C6 00 's' E1 00 'q' FF F0 E1 00 'r' FF "
                             "E2 00 'd' 3C 00 'a' F0 E2 00 'e' E1 00 't' FF F0")));
}

TEST(X891ReaderDTD, DeclarationsStandInsideIt) {
  EXPECT_EQ(
      whole({"comment(c)", "startDTD(a, , s)", "notationDecl(n, , s)", "notationDecl(m, p, )",
             "notationDecl(l, q, t)", "unparsedEntityDecl(e, , f, n)",
             "unparsedEntityDecl(g, i, h, m)", "processingInstruction(q, )", "endDTD()",
             "comment(d)", "startElement(, a, a, [])", "endElement(, a, a)", "comment(e)"}),
      readNew(fromComponents("18 C2 00 'n' 00 's' C1 00 'm' 00 'p' C3 00 'l' 00 't' 00 'q' F0 "
                             "D0 00 'e' 00 'f' 80 D1 00 'g' 00 'h' 00 'i' 81 F0 "
                             "E2 00 'c' C6 80 E1 00 'q' FF F0 E2 00 'd' 3C 00 'a' F0 "
                             "E2 00 'e' F0")));
}

TEST(X891ReaderDTD, DeclarationsWithoutItStandInOneOfTheirOwn) {
  EXPECT_EQ(whole({"startDTD(a, , )", "notationDecl(n, , s)", "notationDecl(m, p, )",
                   "notationDecl(l, q, t)", "endDTD()", "comment(c)", "processingInstruction(q, )",
                   "startElement(, a, a, [])", "endElement(, a, a)", "comment(e)"}),
            readNew(fromComponents(kNotations + std::string("E2 00 'c' E1 00 'q' FF 3C 00 'a' F0 "
                                                            "E2 00 'e' F0"))));
  EXPECT_EQ(whole({"startDTD(a, , )", "unparsedEntityDecl(e, , f, n)", "endDTD()",
                   "startElement(, a, a, [])", "endElement(, a, a)"}),
            readNew(fromComponents("08 D0 00 'e' 00 'f' 00 'n' F0 3C 00 'a' FF")));
}

TEST(X891ReaderDTD, ListsOfDeclarationsMayBeEmpty) {
  EXPECT_EQ(wholeContent({}), readNew(fromComponents("18 F0 F0 3C 00 'a' FF")));
}

// Both identifiers are optional (C.11).
TEST(X891ReaderDTD, NotationMayHaveNoIdentifier) {
  EXPECT_EQ(whole({"startDTD(a, , )", "notationDecl(n, , )", "endDTD()", "startElement(, a, a, [])",
                   "endElement(, a, a)"}),
            readNew(fromComponents("10 C0 00 'n' F0 3C 00 'a' FF")));
}

TEST(X891ReaderDTD, RefusesAnythingElseAmongDeclarations) {
  for (const char* octet : {"00", "C4", "D0", "E1", "E2", "F8"}) {
    expectRefused(fromComponents("10 " + std::string(octet)), octets("00 'n' 00 's' F0"),
                  "Error while parsing notations");
  }
  for (const char* octet : {"00", "C2", "D2", "D7", "E1", "E2", "F8"}) {
    expectRefused(fromComponents("08 " + std::string(octet)), octets("00 'n' 00 's' F0"),
                  "Error while parsing unparsed entities");
  }
}

TEST(X891ReaderDTD, EachHandlerMayBeMissing) {
  const std::string document =
      fromComponents("10 C2 00 'n' 00 's' F0 E2 00 'c' C6 80 E1 00 'q' FF F0 3C 00 'a' FF");
  X891Reader reader;
  reader.reader.setDTDHandler(nullptr);
  EXPECT_EQ(whole({"comment(c)", "startDTD(a, , s)", "processingInstruction(q, )", "endDTD()",
                   "startElement(, a, a, [])", "endElement(, a, a)"}),
            reader.read(document));
  reader.reader.setDTDHandler(&reader.log);
  reader.reader.setProperty(Tavrin::properties::lexicalHandler, nullptr);
  EXPECT_EQ(whole({"notationDecl(n, , s)", "processingInstruction(q, )", "startElement(, a, a, [])",
                   "endElement(, a, a)"}),
            reader.read(document));
  reader.reader.setContentHandler(nullptr);
  EXPECT_EQ("notationDecl(n, , s)\n", reader.read(document));
  reader.reader.setDTDHandler(nullptr);
  EXPECT_EQ("", reader.read(document));
  EXPECT_EQ("", reader.read(fromComponents(std::string(kNotations) + "3C 00 'a' FF")));
}

TEST(X891ReaderDTD, IsForgottenWhereItsDocumentFails) {
  X891Reader reader;
  const std::string cut = document("C6 00 's' E1 00 'q' FF F0 E2 00 'c' E0");
  EXPECT_EQ(failure({"startDocument()"}, "Error while parsing document", cut.size()),
            reader.read(cut));
  EXPECT_EQ(wholeContent({}), reader.read(documentOfContent("")));
}

}  // namespace
}  // namespace x891_test
