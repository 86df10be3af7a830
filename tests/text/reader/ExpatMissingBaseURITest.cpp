#include <gtest/gtest.h>

#include <optional>

#include "TextReaderSupport.h"

// Declarations are reported with a base URI before their system identifier, and the reader has
// none: what would need it ends the parse.

namespace {

struct Row {
  const char* name;
  std::string declarations;
  bool dtdHandler;
  bool declHandler;
  std::optional<int> abortedAt;   ///< The column.
  EventLog::Lines reported = {};  ///< Between startDTD and endDTD, or the failure.
};

const Row kRows[] = {
    {"notation, DTD handler", "<!NOTATION n SYSTEM 'n'>", true, false, 34},
    {"notation, both handlers", "<!NOTATION n PUBLIC 'p' 'n'>", true, true, 38},
    {"public notation, DTD handler", "<!NOTATION n PUBLIC 'p'>", true, false, 37},
    {"notation, declaration handler", "<!NOTATION n SYSTEM 'n'>", false, true, {}},
    {"notation, neither", "<!NOTATION n SYSTEM 'n'>", false, false, {}},

    {"external entity, declaration handler", "<!ENTITY e SYSTEM 'e'>", false, true, 35},
    {"external entity, both handlers", "<!ENTITY e PUBLIC 'p' 'e'>", true, true, 39},
    {"external entity, DTD handler", "<!ENTITY e SYSTEM 'e'>", true, false, {}},
    {"external entity, neither", "<!ENTITY e SYSTEM 'e'>", false, false, {}},

    {"external parameter entity, declaration handler", "<!ENTITY % e SYSTEM 'e'>", false, true, 37},
    {"external parameter entity, both handlers", "<!ENTITY % e SYSTEM ''>", true, true, 36},
    {"external parameter entity, DTD handler", "<!ENTITY % e SYSTEM 'e'>", true, false, {}},

    {"unparsed entity, both handlers", "<!ENTITY u SYSTEM 'u' NDATA n>", true, true, 42},
    // Nobody would be called, but the identifier is built before that is asked.
    {"unparsed entity, declaration handler", "<!ENTITY u SYSTEM 'u' NDATA n>", false, true, 42},
    {"public unparsed entity, declaration handler",
     "<!ENTITY i 'I'><!ENTITY u PUBLIC 'p' 'u' NDATA n><!ENTITY j 'J'>",
     false,
     true,
     61,
     {"internalEntityDecl(i, I)"}},
    // The DTD handler alone would hear of it, but the way is closed.
    {"unparsed entity, DTD handler, not reported",
     "<!ENTITY u SYSTEM 'u' NDATA n>",
     true,
     false,
     {}},
    {"unparsed entity, neither", "<!ENTITY u SYSTEM 'u' NDATA n>", false, false, {}},

    {"what came before is reported, what comes after is not",
     "<!ENTITY i 'I'><!ENTITY e SYSTEM 'e'><!--c--><!ENTITY j 'J'>",
     true,
     true,
     50,
     {"internalEntityDecl(i, I)"}},
    {"internal entities, elements and attributes need no base URI",
     "<!ENTITY i 'I'><!ENTITY % j 'J'><!ELEMENT a ANY><!ATTLIST a b CDATA #IMPLIED>",
     true,
     true,
     {},
     {"internalEntityDecl(i, I)", "internalEntityDecl(%j, J)", "elementDecl(a, ANY)",
      "attributeDecl(a, b, CDATA, #IMPLIED, )"}},
    // Nothing is declared here: an entity keeps its first declaration.
    {"external entity that redeclares one",
     "<!ENTITY e 'E'><!ENTITY e SYSTEM 'e'>",
     true,
     true,
     {},
     {"internalEntityDecl(e, E)"}},
};

TEST(ExpatMissingBaseURI, AbortsWhereADeclarationNeedsIt) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    EventLog log;
    Tavrin::XMLReader_Expat reader;
    log.attachTo(reader);
    if (row.dtdHandler) reader.setDTDHandler(&log);
    if (row.declHandler) {
      reader.setProperty(Tavrin::properties::declarationHandler,
                         static_cast<Tavrin::DeclHandler*>(&log));
    }
    const Failure aborted{XML_ERROR_ABORTED, 1, row.abortedAt.value_or(0)};
    std::string expected =
        "setDocumentLocator()\nstartDocument()\nstartDTD(a, , )\n" + join(row.reported);
    expected += row.abortedAt
                    ? aborted.logged() + "\n"
                    : "endDTD()\nstartElement(, a, a, [])\nendElement(, a, a)\nendDocument()\n";
    EXPECT_EQ(row.abortedAt ? aborted.thrown() : "done",
              parseText(reader, "<!DOCTYPE a [" + row.declarations + "]><a/>"));
    EXPECT_EQ(expected, log.text());
  }
}

TEST(ExpatMissingBaseURI, AbortsAfterTheExternalSubsetThatNeedsItWasRead) {
  EventLog log;
  log.entities["x.dtd"] = "<!--1--><!NOTATION n SYSTEM 'n'><!--2--><!ENTITY e 'E'>";
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  log.attachDeclarationsTo(reader);
  const Failure aborted{XML_ERROR_ABORTED, 1, 27};
  EXPECT_EQ(aborted.thrown(), parseText(reader, "<!DOCTYPE a SYSTEM 'x.dtd'><a/>"));
  // Stopping reaches the document's own parser, so the subset is read to its end.
  EXPECT_EQ(join({"setDocumentLocator()", "startDocument()", "startDTD(a, , x.dtd)",
                  "resolveEntity(, x.dtd)", "comment(1)", "comment(2)", "internalEntityDecl(e, E)",
                  "endDTD()", aborted.logged()}),
            log.text());

  // The identifiers of the document type itself need no base URI.
  log.clear();
  log.entities.clear();
  EXPECT_EQ("done", parseText(reader, "<!DOCTYPE a SYSTEM 'x.dtd'><a/>"));
  EXPECT_EQ(wholeLog({"startDTD(a, , x.dtd)", "resolveEntity(, x.dtd)", "endDTD()",
                      "startElement(, a, a, [])", "endElement(, a, a)"}),
            log.text());
}

TEST(ExpatDefaultNamespace, UndeclaredAbortsTheParse) {
  EventLog log;
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  // A tag that the stop comes from is still reported.
  const Failure inner{XML_ERROR_ABORTED, 1, 27};
  EXPECT_EQ(inner.thrown(), parseText(reader, "<a xmlns='u'><b xmlns=''/><c/></a>"));
  EXPECT_EQ(join({"setDocumentLocator()", "startDocument()", "startPrefixMapping(, u)",
                  "startElement(u, a, a, [])", "startElement(, b, b, [])", "endElement(, b, b)",
                  "endPrefixMapping()", inner.logged()}),
            log.text());

  // Also where there was nothing to undeclare.
  log.clear();
  const Failure outer{XML_ERROR_ABORTED, 1, 13};
  EXPECT_EQ(outer.thrown(), parseText(reader, "<a xmlns=\"\"><b/></a>"));
  EXPECT_EQ(
      join({"setDocumentLocator()", "startDocument()", "startElement(, a, a, [])", outer.logged()}),
      log.text());
}

TEST(ExpatDefaultNamespace, UndeclaredIsFineWithoutAContentHandler) {
  EventLog log;
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  reader.setContentHandler(nullptr);
  EXPECT_EQ("done", parseText(reader, "<a xmlns='u'><b xmlns=''><!--c--></b></a>"));
  EXPECT_EQ(join({"comment(c)"}), log.text());
}

}  // namespace
