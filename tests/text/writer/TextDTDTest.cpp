#include <gtest/gtest.h>

#include <string>

#include "TextWriter.h"

namespace {

using namespace Tavrin;

/// What is written for one declaration at the beginning of an internal subset, without the bracket.
template <typename Declare>
std::string declared(Declare declare) {
  TextWriter writer;
  bringTo(Place::InDTD, writer);
  writer.flush();
  writer.output.news();
  declare(writer);
  return writer.output.news();
}

const struct {
  const char* publicId;
  const char* systemId;
  const char* plain;      // As an external identifier is written.
  const char* repeating;  // As the declaration of `n` that repeats its name writes it.
} kExternalIdentifiers[] = {
    {"p", "s", " PUBLIC \"p\" \"s\"", " PUBLIC \"p\" \"s\"n"},
    {"p", "", " PUBLIC \"p\" \"\"", " PUBLIC \"p\" \"\"n"},
    {"", "s", " SYSTEM \"s\"", " SYSTEM \"s\""},
    {"", "", "", ""},
    {"-//X//Y", "http://x/y.dtd", " PUBLIC \"-//X//Y\" \"http://x/y.dtd\"",
     " PUBLIC \"-//X//Y\" \"http://x/y.dtd\"n"},
    {" ", " ", " PUBLIC \" \" \" \"", " PUBLIC \" \" \" \"n"},
    {"a\"b", "c\"d", " PUBLIC \"a\"b\" \"c\"d\"", " PUBLIC \"a\"b\" \"c\"d\"n"},
};

TEST(ExternalIdentifier, OfTheDocumentType) {
  for (const auto& c : kExternalIdentifiers) {
    TextWriter writer;
    writer.startDocument();
    writer.startDTD("n", c.publicId, c.systemId);
    EXPECT_EQ(writer.text(), "<!DOCTYPE n" + std::string(c.plain));
    writer.endDTD();
    EXPECT_EQ(writer.text(), "<!DOCTYPE n" + std::string(c.plain) + ">");
  }
}

TEST(ExternalIdentifier, OfAnExternalEntity) {
  for (const auto& c : kExternalIdentifiers) {
    EXPECT_EQ(declared([&](auto& w) { w.externalEntityDecl("n", c.publicId, c.systemId); }),
              "  <!ENTITY n" + std::string(c.plain) + ">");
  }
}

TEST(ExternalIdentifier, OfANotationRepeatsTheNameBehindThePublicForm) {
  for (const auto& c : kExternalIdentifiers) {
    EXPECT_EQ(declared([&](auto& w) { w.notationDecl("n", c.publicId, c.systemId); }),
              "  <!NOTATION n" + std::string(c.repeating) + ">");
  }
}

TEST(ExternalIdentifier, OfAnUnparsedEntityRepeatsTheNameBehindThePublicForm) {
  for (const auto& c : kExternalIdentifiers) {
    EXPECT_EQ(declared([&](auto& w) { w.unparsedEntityDecl("n", c.publicId, c.systemId, "gif"); }),
              "  <!ENTITY n" + std::string(c.repeating) + " NDATA gif>");
  }
}

TEST(Declarations, WriteInternalEntities) {
  EXPECT_EQ(declared([](auto& w) { w.internalEntityDecl("i", "value"); }),
            "  <!ENTITY i \"value\">");
  EXPECT_EQ(declared([](auto& w) { w.internalEntityDecl("i", ""); }), "  <!ENTITY i \"\">");
  EXPECT_EQ(declared([](auto& w) { w.internalEntityDecl("%p", "<a b='c'>&x;"); }),
            "  <!ENTITY %p \"<a b='c'>&x;\">");
}

TEST(Declarations, WriteElements) {
  EXPECT_EQ(declared([](auto& w) { w.elementDecl("e", "(a,(b|c)+,d?)*"); }),
            "  <!ELEMENT e (a,(b|c)+,d?)*>");
  EXPECT_EQ(declared([](auto& w) { w.elementDecl("e", ""); }), "  <!ELEMENT e >");
}

TEST(Declarations, WriteAllFivePiecesOfAnAttribute) {
  const struct {
    const char* type;
    const char* mode;
    const char* value;
    const char* expected;
  } cases[] = {
      {"CDATA", "#FIXED", "v", "  <!ATTLIST e a CDATA #FIXED \"v\">"},
      {"CDATA", "#IMPLIED", "", "  <!ATTLIST e a CDATA #IMPLIED \"\">"},
      {"CDATA", "#REQUIRED", "", "  <!ATTLIST e a CDATA #REQUIRED \"\">"},
      {"(yes|no)", "", "yes", "  <!ATTLIST e a (yes|no)  \"yes\">"},
      {"CDATA", "", "", "  <!ATTLIST e a CDATA  \"\">"},
      {"", "", "", "  <!ATTLIST e a   \"\">"},
      {"CDATA", "", "<&'>\"", "  <!ATTLIST e a CDATA  \"<&'>\"\">"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(declared([&](auto& w) { w.attributeDecl("e", "a", c.type, c.mode, c.value); }),
              c.expected);
  }
}

TEST(InternalSubset, IsLeftOutWithoutDeclarations) {
  TextWriter writer;
  writer.startDocument();
  writer.startDTD("d", "", "s.dtd");
  writer.endDTD();
  EXPECT_EQ(writer.text(), "<!DOCTYPE d SYSTEM \"s.dtd\">");
}

TEST(InternalSubset, StandsInOnePairOfBrackets) {
  TextWriter writer;
  writer.startDocument();
  writer.startDTD("d", "", "s.dtd");
  writer.elementDecl("e", "ANY");
  writer.endDTD();
  EXPECT_EQ(writer.text(), "<!DOCTYPE d SYSTEM \"s.dtd\" [  <!ELEMENT e ANY>]>");
}

void writeFullSubset(TextWriter& writer) {
  writer.startDocument();
  writer.startDTD("d", "", "");
  writer.elementDecl("e", "ANY");
  writer.comment("c");
  writer.attributeDecl("e", "a", "CDATA", "", "v");
  writer.processingInstruction("t", "");
  writer.notationDecl("n", "", "s");
  writer.ignorableWhitespace("\r\n\t");
  writer.unparsedEntityDecl("u", "", "s", "n");
  writer.internalEntityDecl("i", "v");
  writer.externalEntityDecl("x", "", "s");
  writer.endDTD();
  writer.leaf("d");
}

TEST(InternalSubset, HoldsDeclarationsCommentsInstructionsAndSpace) {
  TextWriter writer;
  writeFullSubset(writer);
  EXPECT_EQ(writer.text(),
            "<!DOCTYPE d [  <!ELEMENT e ANY><!--c-->  <!ATTLIST e a CDATA  \"v\"><?t ?>"
            "  <!NOTATION n SYSTEM \"s\">\r\n\t  <!ENTITY u SYSTEM \"s\" NDATA n>"
            "  <!ENTITY i \"v\">  <!ENTITY x SYSTEM \"s\">]><d/>");
}

TEST(InternalSubset, IsIndentedTwiceForDeclarationsAndOnceForTheRest) {
  TextWriter writer({.indent = true, .declaration = true});
  writeFullSubset(writer);
  EXPECT_EQ(writer.text(), kDeclaration +
                               "\n<!DOCTYPE d ["
                               "\n    <!ELEMENT e ANY>"
                               "\n  <!--c-->"
                               "\n    <!ATTLIST e a CDATA  \"v\">"
                               "\n  <?t ?>"
                               "\n    <!NOTATION n SYSTEM \"s\">\r\n\t"
                               "\n    <!ENTITY u SYSTEM \"s\" NDATA n>"
                               "\n    <!ENTITY i \"v\">"
                               "\n    <!ENTITY x SYSTEM \"s\">"
                               "\n]>"
                               "\n<d/>");
}

TEST(InternalSubset, OpensForWhitespaceAlone) {
  for (const char* space : {"", " ", "\n\n"}) {
    TextWriter writer;
    bringTo(Place::InDTD, writer);
    writer.ignorableWhitespace(space);
    writer.endDTD();
    EXPECT_EQ(writer.text(), "<!DOCTYPE d SYSTEM \"d.dtd\" [" + std::string(space) + "]>");
  }
}

TEST(InternalSubset, OpensOnFlush) {
  TextWriter writer;
  bringTo(Place::InDTD, writer);
  writer.flush();
  EXPECT_EQ(writer.text(), "<!DOCTYPE d SYSTEM \"d.dtd\" [");
  writer.flush();
  writer.endDTD();
  EXPECT_EQ(writer.text(), "<!DOCTYPE d SYSTEM \"d.dtd\" []>");
}

TEST(InternalSubset, OpenedOnFlushEndsOnItsOwnLineWhenIndented) {
  TextWriter writer({.indent = true});
  bringTo(Place::InDTD, writer);
  writer.flush();
  writer.endDTD();
  EXPECT_EQ(writer.text(), "<!DOCTYPE d SYSTEM \"d.dtd\" [\n]>");
}

TEST(InternalSubset, IsNotOpenedByContentOfTheProlog) {
  TextWriter writer;
  writer.startDocument();
  writer.comment("c");
  writer.startDTD("d", "", "");
  writer.endDTD();
  EXPECT_EQ(writer.text(), "<!--c--><!DOCTYPE d>");
}

TEST(Entities, LeaveNoTraceWhenTheyBeginOrEnd) {
  TextWriter writer;
  writer.startDocument();
  writer.startDTD("d", "", "");
  writer.startEntity("[dtd]");
  writer.endEntity("[dtd]");
  writer.endDTD();
  writer.start("d");
  writer.startEntity("e");
  writer.skippedEntity("f");
  writer.endEntity("e");
  writer.end("d");
  EXPECT_EQ(writer.text(), "<!DOCTYPE d><d/>");
}

}  // namespace
