#include <gtest/gtest.h>

#include "X891ReaderSupport.h"

// The children of a document and of elements: what may stand where, and in which words.

namespace x891_test {
namespace {

// --- Document ---

TEST(X891ReaderDocument, HasOneElement) {
  expectPrologRefused("F0", "", "Document without an element");
  expectPrologRefused("FF", "", "Document without an element");
  expectPrologRefused("E2 00 'c' F0", "", "Document without an element", {"comment(c)"});
  expectPrologRefused("C4 FF", "", "Document without an element");
  expectPrologRefused("C4 F0 F0", "", "Document without an element");
  expectPrologRefused("3C 00 'a' F0 00", "FF", "Found more than one element on the top level",
                      {"startElement(, a, a, [])", "endElement(, a, a)"});
  expectPrologRefused("3C 00 'a' F0 3C", "00 'b' FF",
                      "Found more than one element on the top level",
                      {"startElement(, a, a, [])", "endElement(, a, a)"});
}

TEST(X891ReaderDocument, HasOneDocumentTypeInFront) {
  expectPrologRefused("C4 F0 C4", "F0 3C 00 'a' FF", "Found more than one DTD");
  expectPrologRefused("3C 00 'a' F0 C4", "FF", "Found DTD behind the top level element",
                      {"startElement(, a, a, [])", "endElement(, a, a)"});
  expectPrologRefused(
      "C4 F0 3C 00 'a' F0 C6", "00 's' FF", "Found DTD behind the top level element",
      {"startDTD(a, , )", "endDTD()", "startElement(, a, a, [])", "endElement(, a, a)"});
}

TEST(X891ReaderDocument, HasNoTextAndNoEntities) {
  for (int octet = 0x80; octet < 0x100; ++octet) {
    const bool isChild = (octet >= 0xC4 && octet <= 0xC7) || octet == 0xE1 || octet == 0xE2 ||
                         octet == 0xF0 || octet == 0xFF;
    if (isChild) continue;
    expectRefused(document("") + static_cast<char>(octet), octets("00 'x' 3C 00 'a' FF"),
                  "Error while parsing document", {"startDocument()"});
    expectRefused(document("3C 00 'a' F0") + static_cast<char>(octet), octets("00 'x' F0"),
                  "Error while parsing document",
                  {"startDocument()", "startElement(, a, a, [])", "endElement(, a, a)"});
  }
}

TEST(X891ReaderDocument, HasCommentsAndInstructionsAround) {
  EXPECT_EQ(whole({"comment(c)", "processingInstruction(p, d)", "startElement(, a, a, [])",
                   "endElement(, a, a)", "processingInstruction(p, d)", "comment(c)"}),
            readNew(document("E2 40 'c' E1 00 'p' 40 'd' 3C 00 'a' F0 E1 80 81 E2 80 F0")));
}

TEST(X891ReaderElement, HasTheseChildrenAlone) {
  for (int octet = 0xC8; octet < 0x100; ++octet) {
    const bool isChild =
        octet <= 0xCB || octet == 0xE1 || octet == 0xE2 || octet == 0xF0 || octet == 0xFF;
    if (isChild) continue;
    expectRefused(document("3C 00 'a'") + static_cast<char>(octet), octets("00 'x' FF"),
                  "Error when decoding element children",
                  {"startDocument()", "startElement(, a, a, [])"});
  }
}

// --- Comments and instructions ---

TEST(X891ReaderContent, CommentHasNoDoubleHyphen) {
  const char* const message = "You cannot put \"--\" into a comment";
  const char* const atEnd = "You cannot end a comment with \"-\"";
  const struct {
    std::string comment;
    const char* message;
  } cases[] = {{"01 '--'", message},
               {"03 'a--b'", message},
               {"02 '---'", message},
               {"00 '-'", atEnd},
               {"01 'a-'", atEnd}};
  for (const auto& each : cases) {
    expectContentRefused("E2 " + each.comment, "FF", each.message);
    expectPrologRefused("E2 " + each.comment, "3C 00 'a' FF", each.message);
    expectPrologRefused("C4 F0 E2 " + each.comment, "3C 00 'a' FF", each.message);
  }
  EXPECT_EQ(wholeContent({"comment(-a- b)", "comment()"}),
            readNew(documentOfContent("E2 04 '-a- b' E2 FF")));
  // By index too: in content, two hyphens are text.
  expectRefused(fromComponents("20 00 04 00 01 '--' 3C 00 'a' E2 80"), octets("FF"), message,
                {"startDocument()", "startElement(, a, a, [])"});
}

TEST(X891ReaderContent, InstructionHasATarget) {
  for (const char* target : {"xml", "XML", "xMl"}) {
    expectContentRefused("E1 02 '" + std::string(target) + "' FF", "FF",
                         '"' + std::string(target) +
                             "\" is reserved and cannot be the target of a processing instruction");
  }
  EXPECT_EQ(wholeContent({"processingInstruction(xmlx, )", "processingInstruction(xm, )"}),
            readNew(documentOfContent("E1 03 'xmlx' FF E1 01 'xm' FF")));
}

TEST(X891ReaderContent, InstructionDoesNotEndInside) {
  const char* const message = "You cannot put \"?>\" into a processing instruction";
  expectContentRefused("E1 00 'p' 01 '?>'", "FF", message);
  expectContentRefused("E1 00 'p' 03 'a?>b'", "FF", message);
  EXPECT_EQ(wholeContent({"processingInstruction(p, ? >?)"}),
            readNew(documentOfContent("E1 00 'p' 03 '? >?'")));
}

TEST(X891ReaderContent, InstructionDoesNotBeginWithWhiteSpace) {
  for (const char* data : {"00 20", "01 20 'a'", "01 09 'a'", "01 0A 'a'", "01 0D 'a'"}) {
    expectContentRefused("E1 00 'p' " + std::string(data), "FF",
                         "Processing instruction that begins with white space");
  }
  EXPECT_EQ(wholeContent({"processingInstruction(p, a )"}),
            readNew(documentOfContent("E1 00 'p' 01 'a '")));
}

TEST(X891ReaderContent, TextMayHoldMarkup) {
  EXPECT_EQ(wholeContent({"characters(<&]]>)"}), readNew(documentOfContent("82 02 '<&]]>'")));
}

// --- Entity references ---

TEST(X891ReaderContent, EntityReferencesAreSkippedEntities) {
  EXPECT_EQ(wholeContent({"skippedEntity(e)", "externalEntityDecl(e, p, )", "skippedEntity(e)",
                          "externalEntityDecl(f, , s)", "skippedEntity(f)",
                          "externalEntityDecl(g, p, s)", "skippedEntity(g)", "skippedEntity(g)"}),
            readNew(documentOfContent("C8 00 'e' C9 80 00 'p' CA 00 'f' 00 's' "
                                      "CB 00 'g' 81 80 C8 82")));
}

TEST(X891ReaderContent, EntityReferencesTellTheirIdentifiersOnce) {
  EXPECT_EQ(
      wholeContent({"externalEntityDecl(e, p, s)", "skippedEntity(e)", "skippedEntity(e)",
                    "skippedEntity(e)", "externalEntityDecl(f, p, s)", "skippedEntity(f)"}),
      readNew(documentOfContent("CB 00 'e' 00 's' 00 'p' CB 80 80 81 C8 80 CB 00 'f' 80 81")));
  // Each document has its own.
  X891Reader reader;
  for (const char* systemId : {"s", "t"}) {
    const std::string id = systemId;
    EXPECT_EQ(wholeContent({"externalEntityDecl(e, , " + id + ")", "skippedEntity(e)"}),
              reader.read(documentOfContent("CA 00 'e' 00 '" + id + "'")));
  }
  // Nobody may be there to be told.
  reader.reader.setProperty(Tavrin::properties::declarationHandler, nullptr);
  EXPECT_EQ(wholeContent({"skippedEntity(e)"}), reader.read(documentOfContent("CA 00 'e' 00 's'")));
}

TEST(X891ReaderContent, EntityReferencesOfANameAgreeOnIdentifiers) {
  // In XML, a name has one declaration.
  const EventLog::Lines events = {"startDocument()", "startElement(, a, a, [])",
                                  "externalEntityDecl(e, , s)", "skippedEntity(e)"};
  const char* const message = "References to the entity \"e\" with different identifiers";
  for (const char* other : {"CA 80 00 't'", "CB 80 80 00 'p'", "C9 80 80"}) {
    expectRefused(document("3C 00 'a' CA 00 'e' 00 's' " + std::string(other)), octets("FF"),
                  message, events);
  }
}

TEST(X891ReaderContent, EntityReferencesHaveIdentifiersOfXML) {
  expectContentRefused("C9 00 'e' 00 '<'", "FF", "\"<\" is not a public identifier");
  expectContentRefused("CA 00 'e' 01 27 22", "FF",
                       "A system identifier cannot hold both kinds of quotes");
  expectContentRefused("C8 80", "FF", "Error when decoding string - invalid index");
}

TEST(X891ReaderContent, EntityReferencesNeedNoHandler) {
  X891Reader reader;
  reader.reader.setContentHandler(nullptr);
  EXPECT_EQ("", reader.read(documentOfContent("C8 00 'e'")));
}

}  // namespace
}  // namespace x891_test
