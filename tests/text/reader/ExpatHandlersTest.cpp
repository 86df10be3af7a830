#include <gtest/gtest.h>

#include "TextReaderSupport.h"

namespace {

constexpr char kLexicalHandler[] = "http://xml.org/sax/properties/lexical-handler";
constexpr char kDeclarationHandler[] = "http://xml.org/sax/properties/declaration-handler";

/// An event for every handler; a failure at the end, for the error handler.
constexpr char kDocument[] =
    "<!DOCTYPE a SYSTEM 'x.dtd' [<!ELEMENT a ANY><!ENTITY i 'I'><!--c--><?t d?>]>"
    "<a>&i;<![CDATA[x]]></a>\n<";
constexpr char kNotations[] = "<!DOCTYPE a [<!NOTATION n SYSTEM 'n'>]><a/>";

const Failure kFailure{XML_ERROR_UNCLOSED_TOKEN, 2, 1};

TEST(ExpatHandlers, HearTheirPartAlone) {
  struct Row {
    const char* name;
    void (*attach)(Tavrin::XMLReader&, EventLog&);
    EventLog::Lines events;
  };
  const Row rows[] = {
      {"none", [](Tavrin::XMLReader&, EventLog&) {}, {}},
      {"content",
       [](Tavrin::XMLReader& reader, EventLog& log) { reader.setContentHandler(&log); },
       {"setDocumentLocator()", "startDocument()", "processingInstruction(t, d)",
        "startElement(, a, a, [])", "characters(Ix)", "endElement(, a, a)"}},
      {"lexical",
       [](Tavrin::XMLReader& reader, EventLog& log) {
         reader.setProperty(kLexicalHandler, static_cast<Tavrin::LexicalHandler*>(&log));
       },
       {"startDTD(a, , x.dtd)", "comment(c)", "endDTD()", "startCDATA()", "endCDATA()"}},
      {"declarations",
       [](Tavrin::XMLReader& reader, EventLog& log) {
         reader.setProperty(kDeclarationHandler, static_cast<Tavrin::DeclHandler*>(&log));
       },
       {"elementDecl(a, ANY)", "internalEntityDecl(i, I)"}},
      {"DTD", [](Tavrin::XMLReader& reader, EventLog& log) { reader.setDTDHandler(&log); }, {}},
      {"errors",
       [](Tavrin::XMLReader& reader, EventLog& log) { reader.setErrorHandler(&log); },
       {kFailure.logged()}},
      {"entities",
       [](Tavrin::XMLReader& reader, EventLog& log) { reader.setEntityResolver(&log); },
       {"resolveEntity(, x.dtd)"}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    EventLog log;
    Tavrin::XMLReader_Expat reader;
    row.attach(reader, log);
    EXPECT_EQ(kFailure.thrown(), parseText(reader, kDocument));
    EXPECT_EQ(join(row.events), log.text());
    log.clear();
    EXPECT_EQ(kFailure.thrown(), parseBlocks(reader, {kDocument}));
    EXPECT_EQ(join(row.events), log.text());
  }
}

TEST(ExpatHandlers, ForTheDTDHearOfNotationsOnlyByTheirFailure) {
  EventLog log;
  Tavrin::XMLReader_Expat reader;
  reader.setDTDHandler(&log);
  const Failure aborted{XML_ERROR_ABORTED, 1, 34};
  EXPECT_EQ(aborted.thrown(), parseText(reader, kNotations));
  EXPECT_EQ("", log.text());
}

TEST(ExpatHandlers, ThatOverrideNothingBearEverything) {
  Tavrin::ContentHandler content;
  Tavrin::LexicalHandler lexical;
  Tavrin::DeclHandler declarations;
  Tavrin::DTDHandler dtd;
  Tavrin::ErrorHandler errors;
  Tavrin::EntityResolver entities;
  Tavrin::XMLReader_Expat reader;
  reader.setContentHandler(&content);
  reader.setProperty(kLexicalHandler, &lexical);
  reader.setProperty(kDeclarationHandler, &declarations);
  reader.setDTDHandler(&dtd);
  reader.setErrorHandler(&errors);
  reader.setEntityResolver(&entities);
  EXPECT_EQ(kFailure.thrown(), parseText(reader, kDocument));
  EXPECT_EQ("done", parseText(reader, "<a>&amp;</a>"));
}

TEST(ExpatHandlers, MayBeSetAndUnsetDuringTheParse) {
  EventLog log;
  EventLog other;
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  log.beforeEvent = [&](std::size_t number) {
    // The start of b, and then the first comment.
    if (number == 3) reader.setContentHandler(nullptr);
    if (number == 4) {
      reader.setContentHandler(&other);
      reader.setProperty(kLexicalHandler, nullptr);
    }
  };
  EXPECT_EQ("done", parseText(reader, "<a><b>1</b><!--c--><d/><!--e--></a>"));
  EXPECT_EQ(join({"setDocumentLocator()", "startDocument()", "startElement(, a, a, [])",
                  "startElement(, b, b, [])", "comment(c)"}),
            log.text());
  EXPECT_EQ(join({"startElement(, d, d, [])", "endElement(, d, d)", "endElement(, a, a)",
                  "endDocument()"}),
            other.text());
}

TEST(ExpatHandlers, NeverHearOfEntityBoundaries) {
  struct Boundaries : EventLog {
    void startEntity(const std::string& name) override { ADD_FAILURE() << name; }
    void endEntity(const std::string& name) override { ADD_FAILURE() << name; }
  };
  Boundaries log;
  log.entities = {{"x", "<!ENTITY % p SYSTEM 'p'>%p;"}, {"p", "<!ENTITY f 'F'>"}, {"e", "E&f;"}};
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  EXPECT_EQ("done", parseText(reader,
                              "<!DOCTYPE a SYSTEM 'x' [<!ENTITY i 'I'><!ENTITY e SYSTEM 'e'>"
                              "<!ENTITY % q '<!--q-->'>%q;]><a x='&i;'>&i;&e;&amp;</a>"));
  EXPECT_EQ(wholeLog({"startDTD(a, , x)", "comment(q)", "resolveEntity(, x)", "resolveEntity(, p)",
                      "endDTD()", "startElement(, a, a, [{, x, x, CDATA, I}])", "characters(I)",
                      "resolveEntity(, e)", "characters(EF&)", "endElement(, a, a)"}),
            log.text());
}

TEST(ExpatHandlers, ForErrorsHearOfFatalOnesOnly) {
  struct Errors : Tavrin::ErrorHandler {
    void warning(const Tavrin::SAXParseException&) override { ++others; }
    void error(const Tavrin::SAXParseException&) override { ++others; }
    void fatalError(const Tavrin::SAXParseException&) override { ++fatal; }
    int others = 0;
    int fatal = 0;
  };
  Errors errors;
  Tavrin::XMLReader_Expat reader;
  reader.setErrorHandler(&errors);
  // Not valid, which nobody checks; declared twice, which a reader may warn of.
  EXPECT_EQ("done", parseText(reader,
                              "<!DOCTYPE a [<!ELEMENT a EMPTY><!ELEMENT a EMPTY><!ENTITY e '1'>"
                              "<!ENTITY e '2'><!ATTLIST a b CDATA #REQUIRED>]><c>&e;</c>"));
  EXPECT_EQ(0, errors.fatal);
  EXPECT_NE("done", parseText(reader, "<a>"));
  EXPECT_EQ(1, errors.fatal);
  EXPECT_EQ(0, errors.others);
}

TEST(ExpatProperties, AreKeptAsGiven) {
  EventLog log;
  Tavrin::XMLReader_Expat reader;
  EXPECT_EQ(nullptr, reader.getProperty(kLexicalHandler));
  EXPECT_EQ(nullptr, reader.getProperty(kDeclarationHandler));

  void* const lexical = static_cast<Tavrin::LexicalHandler*>(&log);
  void* const declarations = static_cast<Tavrin::DeclHandler*>(&log);
  ASSERT_NE(lexical, declarations);
  reader.setProperty(kLexicalHandler, lexical);
  EXPECT_EQ(lexical, reader.getProperty(kLexicalHandler));
  EXPECT_EQ(nullptr, reader.getProperty(kDeclarationHandler));
  reader.setProperty(kDeclarationHandler, declarations);
  EXPECT_EQ(lexical, reader.getProperty(kLexicalHandler));
  EXPECT_EQ(declarations, reader.getProperty(kDeclarationHandler));

  // A parse, failed or not, leaves them.
  EXPECT_EQ("done", parseText(reader, "<a/>"));
  EXPECT_NE("done", parseText(reader, "<a>"));
  EXPECT_EQ(lexical, reader.getProperty(kLexicalHandler));
  EXPECT_EQ(declarations, reader.getProperty(kDeclarationHandler));

  reader.setProperty(kLexicalHandler, nullptr);
  EXPECT_EQ(nullptr, reader.getProperty(kLexicalHandler));
  EXPECT_EQ(declarations, reader.getProperty(kDeclarationHandler));
}

TEST(ExpatProperties, OfOtherNamesAreRefused) {
  Tavrin::XMLReader_Expat reader;
  EventLog log;
  void* const lexical = static_cast<Tavrin::LexicalHandler*>(&log);
  reader.setProperty(kLexicalHandler, lexical);
  for (const std::string name : {
           "http://xml.org/sax/properties/Lexical-Handler",
           "HTTP://xml.org/sax/properties/lexical-handler",
           "http://xml.org/sax/properties/lexical-handler ",
           "http://xml.org/sax/properties/lexical-handle",
           "http://xml.org/sax/properties/DECLARATION-HANDLER",
           "/sax/properties/declaration-handler",
           "http://jvnet.org/fastinfoset/sax/properties/primitive-type-content-handler",
           "a \"quoted\" name",
           "",
       }) {
    const std::string expected =
        "SAXNotRecognizedException(Property \"" + name + "\" not recognized)";
    EXPECT_EQ(expected, outcomeOf([&] { reader.setProperty(name, &log); }));
    EXPECT_EQ(expected, outcomeOf([&] { reader.getProperty(name); }));
  }
  EXPECT_EQ(lexical, reader.getProperty(kLexicalHandler));
  EXPECT_EQ(nullptr, reader.getProperty(kDeclarationHandler));
}

TEST(ExpatFeatures, AreAllRefused) {
  Tavrin::XMLReader_Expat reader;
  for (const std::string name : {
           "http://xml.org/sax/features/namespaces",
           "http://xml.org/sax/features/validation",
           "http://tavrin/sax/features/auto-indent",
           kLexicalHandler,
           "",
       }) {
    const std::string expected =
        "SAXNotRecognizedException(Feature \"" + name + "\" not recognized)";
    EXPECT_EQ(expected, outcomeOf([&] { reader.setFeature(name, true); }));
    EXPECT_EQ(expected, outcomeOf([&] { reader.setFeature(name, false); }));
    EXPECT_EQ(expected, outcomeOf([&] { reader.getFeature(name); }));
  }
}

TEST(ExpatReader, IsTheOneRegisteredAsExpatAndTheDefault) {
  for (const auto& reader :
       {Tavrin::XMLReader_Expat::create(), Tavrin::XMLReaderFactory::createXMLReader(),
        Tavrin::XMLReaderFactory::createXMLReader("Expat"),
        Tavrin::XMLReaderFactory::createXMLReader("eXPAT")}) {
    EXPECT_NE(nullptr, dynamic_cast<Tavrin::XMLReader_Expat*>(reader.get()));
    EXPECT_EQ(nullptr, reader->getContentHandler());
    EXPECT_EQ(nullptr, reader->getErrorHandler());
    EXPECT_EQ(nullptr, reader->getEntityResolver());
    EXPECT_EQ(nullptr, reader->getDTDHandler());
    EXPECT_EQ("done", parseText(*reader, "<a/>"));
  }
}

}  // namespace
