#include <gtest/gtest.h>

#include <string>

#include "XML10Writer.h"

namespace {

using namespace Tavrin;

std::string refusal(const std::string& message) { return "SAXException: " + message; }

// --- The document type declaration ---

std::string documentType(const std::string& name, const std::string& publicId,
                         const std::string& systemId) {
  XML10Writer writer;
  writer.startDocument();
  const std::string thrownByStart = thrown([&] { writer.startDTD(name, publicId, systemId); });
  if (thrownByStart != "nothing") {
    EXPECT_EQ(writer.text(), "");
    return thrownByStart;
  }
  writer.endDTD();
  writer.leaf("r");
  return writer.text();
}

TEST(XML10DocumentType, RefersToItsExternalSubset) {
  EXPECT_EQ(documentType("r", "", ""), "<!DOCTYPE r><r/>");
  EXPECT_EQ(documentType("p:r", "", "s'"), "<!DOCTYPE p:r SYSTEM \"s'\"><r/>");
  EXPECT_EQ(documentType("r", "", "a\"b"), "<!DOCTYPE r SYSTEM 'a\"b'><r/>");
  EXPECT_EQ(documentType("r", "-//X//Y's//EN", "s"),
            "<!DOCTYPE r PUBLIC \"-//X//Y's//EN\" \"s\"><r/>");
  EXPECT_EQ(documentType("r", "p", ""), "<!DOCTYPE r PUBLIC \"p\" \"\"><r/>");
}

TEST(XML10DocumentType, RefusesWhatCannotBeWritten) {
  EXPECT_EQ(documentType("", "", ""), refusal("\"\" is not a name"));
  EXPECT_EQ(documentType("1", "", ""), refusal("\"1\" is not a name"));
  EXPECT_EQ(documentType("a:b:c", "", ""), refusal("\"a:b:c\" is not a qualified name"));
  EXPECT_EQ(documentType("r", "a\"b", ""), refusal("\"a\"b\" is not a public identifier"));
  EXPECT_EQ(documentType("r", "a\tb", ""), refusal("\"a\tb\" is not a public identifier"));
  EXPECT_EQ(documentType("r", "", "'\""),
            refusal("A system identifier cannot hold both kinds of quotes"));
  EXPECT_EQ(documentType("r", "", "\x01"),
            refusal("You cannot put character U+0001 into a system identifier"));
}

// --- Notations and entities ---

TEST(XML10Notation, HasOneIdentifierOrTwo) {
  EXPECT_EQ(inDTD([](XML10Writer& w) {
              w.notationDecl("n", "p", "s");
              w.notationDecl("n", "p", "");
              w.notationDecl("n", "", "s\"");
              w.notationDecl("n", "", "");
            }),
            " [  <!NOTATION n PUBLIC \"p\" \"s\">  <!NOTATION n PUBLIC \"p\">"
            "  <!NOTATION n SYSTEM 's\"'>  <!NOTATION n SYSTEM \"\">]");
  EXPECT_EQ(refusedInDTD([](XML10Writer& w) { w.notationDecl("a:b", "p", ""); }),
            refusal("\"a:b\" is not a name without a colon"));
}

TEST(XML10UnparsedEntity, NamesItsNotation) {
  EXPECT_EQ(inDTD([](XML10Writer& w) {
              w.unparsedEntityDecl("u", "p", "s", "n");
              w.unparsedEntityDecl("u", "p", "", "n");
              w.unparsedEntityDecl("u", "", "s", "n");
              w.unparsedEntityDecl("u", "", "", "n");
            }),
            " [  <!ENTITY u PUBLIC \"p\" \"s\" NDATA n>  <!ENTITY u PUBLIC \"p\" \"\" NDATA n>"
            "  <!ENTITY u SYSTEM \"s\" NDATA n>  <!ENTITY u SYSTEM \"\" NDATA n>]");
  EXPECT_EQ(refusedInDTD([](XML10Writer& w) { w.unparsedEntityDecl("%u", "", "s", "n"); }),
            refusal("\"%u\" is not a name"));
  EXPECT_EQ(refusedInDTD([](XML10Writer& w) { w.unparsedEntityDecl("u", "", "s", ""); }),
            refusal("\"\" is not a name"));
  EXPECT_EQ(refusedInDTD([](XML10Writer& w) { w.unparsedEntityDecl("lt", "", "s", "n"); }),
            refusal("The entity \"lt\" cannot be declared otherwise"));
}

TEST(XML10ExternalEntity, IsGeneralOrAParameterEntity) {
  EXPECT_EQ(inDTD([](XML10Writer& w) {
              w.externalEntityDecl("e", "p", "s");
              w.externalEntityDecl("%e", "", "s");
              w.externalEntityDecl("e", "", "");
              w.externalEntityDecl("%lt", "", "s");
            }),
            " [  <!ENTITY e PUBLIC \"p\" \"s\">  <!ENTITY % e SYSTEM \"s\">"
            "  <!ENTITY e SYSTEM \"\">  <!ENTITY % lt SYSTEM \"s\">]");
  EXPECT_EQ(refusedInDTD([](XML10Writer& w) { w.externalEntityDecl("%", "", "s"); }),
            refusal("\"\" is not a name"));
  EXPECT_EQ(refusedInDTD([](XML10Writer& w) { w.externalEntityDecl("%%e", "", "s"); }),
            refusal("\"%e\" is not a name"));
  EXPECT_EQ(refusedInDTD([](XML10Writer& w) { w.externalEntityDecl("a:b", "", "s"); }),
            refusal("\"a:b\" is not a name without a colon"));
  EXPECT_EQ(refusedInDTD([](XML10Writer& w) { w.externalEntityDecl("amp", "", "s"); }),
            refusal("The entity \"amp\" cannot be declared otherwise"));
}

TEST(XML10InternalEntity, KeepsItsReplacementText) {
  EXPECT_EQ(inDTD([](XML10Writer& w) {
              w.internalEntityDecl("e", "");
              w.internalEntityDecl("e", "a%b;&c;\"'<>\t\n\r&#38;&lt;");
              w.internalEntityDecl("%e", "<!ELEMENT x ANY>");
            }),
            " [  <!ENTITY e \"\">"
            "  <!ENTITY e \"a&#37;b;&#38;c;&#34;'<>\t\n&#13;&#38;#38;&#38;lt;\">"
            "  <!ENTITY % e \"<!ELEMENT x ANY>\">]");
  EXPECT_EQ(refusedInDTD([](XML10Writer& w) { w.internalEntityDecl("", "v"); }),
            refusal("\"\" is not a name"));
  EXPECT_EQ(refusedInDTD([](XML10Writer& w) { w.internalEntityDecl("% e", "v"); }),
            refusal("\" e\" is not a name"));
}

// XML 1.0, section 4.6.
TEST(XML10PredefinedEntity, CanOnlyBeDeclaredAsItsCharacter) {
  EXPECT_EQ(inDTD([](XML10Writer& w) {
              w.internalEntityDecl("lt", "&#60;");
              w.internalEntityDecl("amp", "&#x26;");
              w.internalEntityDecl("gt", ">");
              w.internalEntityDecl("apos", "'");
              w.internalEntityDecl("quot", "\"");
              w.internalEntityDecl("gt", "&#x3E;");
            }),
            " [  <!ENTITY lt \"&#38;#60;\">  <!ENTITY amp \"&#38;#x26;\">  <!ENTITY gt \">\">"
            "  <!ENTITY apos \"'\">  <!ENTITY quot \"&#34;\">  <!ENTITY gt \"&#38;#x3E;\">]");
  for (const auto& [name, value] :
       {std::pair("lt", "<"), {"amp", "&"}, {"lt", "&#62;"}, {"gt", ""}, {"quot", "'"}}) {
    EXPECT_EQ(refusedInDTD([entity = name, text = value](XML10Writer& w) {
                w.internalEntityDecl(entity, text);
              }),
              refusal(std::string("The entity \"") + name + "\" cannot be declared otherwise"));
  }
}

// --- Elements and attributes ---

TEST(XML10ElementDeclaration, HasAContentModel) {
  EXPECT_EQ(inDTD([](XML10Writer& w) {
              w.elementDecl("e", "EMPTY");
              w.elementDecl("p:e", "(a,(b|c)+)*");
              w.elementDecl("e", "(#PCDATA|a)*");
            }),
            " [  <!ELEMENT e EMPTY>  <!ELEMENT p:e (a,(b|c)+)*>  <!ELEMENT e (#PCDATA|a)*>]");
  EXPECT_EQ(refusedInDTD([](XML10Writer& w) { w.elementDecl("e", ""); }),
            refusal("\"\" is not a content model"));
  EXPECT_EQ(refusedInDTD([](XML10Writer& w) { w.elementDecl("e", "ANY><x"); }),
            refusal("\"ANY><x\" is not a content model"));
  EXPECT_EQ(refusedInDTD([](XML10Writer& w) { w.elementDecl("", "ANY"); }),
            refusal("\"\" is not a name"));
}

TEST(XML10AttributeDeclaration, HasADefaultWhereThereIsOne) {
  EXPECT_EQ(inDTD([](XML10Writer& w) {
              w.attributeDecl("e", "a", "CDATA", "#IMPLIED", "");
              w.attributeDecl("e", "a", "ID", "#REQUIRED", "");
              w.attributeDecl("e", "a", "NMTOKENS", "#FIXED", "v");
              w.attributeDecl("e", "a", "(a|b)", "", "a");
              w.attributeDecl("e", "xml:space", "NOTATION (a|b)", "", "");
              w.attributeDecl("e", "a", "NOTATION(n)", "#IMPLIED", "");
              w.attributeDecl("e", "a", "CDATA", "", "<>&'\"%\t\n\r");
            }),
            " [  <!ATTLIST e a CDATA #IMPLIED>  <!ATTLIST e a ID #REQUIRED>"
            "  <!ATTLIST e a NMTOKENS #FIXED 'v'>  <!ATTLIST e a (a|b) 'a'>"
            "  <!ATTLIST e xml:space NOTATION (a|b) ''>"
            "  <!ATTLIST e a NOTATION (n) #IMPLIED>"
            "  <!ATTLIST e a CDATA '&lt;>&amp;&apos;\"%&#x9;&#xA;&#xD;'>]");
}

TEST(XML10AttributeDeclaration, UsesTheQuotesThatAreSet) {
  EXPECT_EQ(inDTD([](XML10Writer& w) {
              w.set(properties::quoteCharacter, '"');
              w.attributeDecl("e", "a", "CDATA", "", "'\"");
              w.set(properties::quoteCharacter, '\'');
            }),
            " [  <!ATTLIST e a CDATA \"'&quot;\">]");
}

TEST(XML10AttributeDeclaration, RefusesWhatIsNone) {
  const auto refused = [](const char* element, const char* attribute, const char* type,
                          const char* mode, const char* value) {
    return refusedInDTD(
        [&](XML10Writer& w) { w.attributeDecl(element, attribute, type, mode, value); });
  };
  EXPECT_EQ(refused("1", "a", "CDATA", "", ""), refusal("\"1\" is not a name"));
  EXPECT_EQ(refused("e", "a:b:c", "CDATA", "", ""), refusal("\"a:b:c\" is not a qualified name"));
  EXPECT_EQ(refused("e", "a", "", "", ""), refusal("\"\" is not the type of an attribute"));
  EXPECT_EQ(refused("e", "a", "cdata", "", ""),
            refusal("\"cdata\" is not the type of an attribute"));
  EXPECT_EQ(refused("e", "a", "CDATA", "#implied", ""),
            refusal("\"#implied\" is not a default of an attribute"));
  EXPECT_EQ(refused("e", "a", "CDATA", "#IMPLIED", "v"),
            refusal("An attribute cannot have a default and be #IMPLIED"));
  EXPECT_EQ(refused("e", "a", "CDATA", "#REQUIRED", "v"),
            refusal("An attribute cannot have a default and be #REQUIRED"));
}

// Of an element that does not come, it may be anything.
TEST(XML10AttributeDecl, MayDeclareWhatNoElementCan) {
  const auto started = [](const char* attribute, const char* value) {
    XML10Writer writer;
    writer.startDocument();
    writer.startDTD("r", "", "");
    writer.attributeDecl("e", attribute, "CDATA", "", value);
    writer.endDTD();
    writer.start("r");
    return thrown([&] { writer.start("e"); });
  };
  EXPECT_EQ(started("xmlns:p", ""), refusal("The prefix \"p\" cannot be undeclared"));
  EXPECT_EQ(started("xmlns:xmlns", "u"), refusal("The prefix \"xmlns\" cannot be declared"));
  EXPECT_EQ(started("xmlns:xml", "u"),
            refusal("The prefix \"xml\" cannot be bound to another namespace"));
  EXPECT_EQ(started("xmlns", ""), "nothing");
}

// --- What the document only refers to ---

TEST(XML10ExternalSubset, IsNotWritten) {
  EXPECT_EQ(inDTD([](XML10Writer& w) {
              w.startEntity("[dtd]");
              w.elementDecl("e", "ANY");
              w.attributeDecl("e", "a", "", "", "");
              w.notationDecl("n", "", "");
              w.unparsedEntityDecl("u", "", "", "");
              w.internalEntityDecl("i", "v");
              w.externalEntityDecl("x", "", "");
              w.comment("c");
              w.processingInstruction("t", "d");
              w.ignorableWhitespace(" ");
              w.startEntity("%p");
              w.elementDecl("f", "ANY");
              w.skippedEntity("%q");
              w.endEntity("%p");
              w.comment("c");
              w.endEntity("[dtd]");
            }),
            "");
  EXPECT_EQ(inDTD([](XML10Writer& w) {
              w.comment("in");
              w.startEntity("[dtd]");
              w.comment("out");
              w.endEntity("[dtd]");
              w.comment("in");
            }),
            " [<!--in--><!--in-->]");
}

TEST(XML10ExternalSubset, IsWrittenWhereTheDocumentRefersToNone) {
  XML10Writer writer;
  writer.startDocument();
  writer.startDTD("r", "", "");
  writer.startEntity("[dtd]");
  writer.elementDecl("e", "ANY");
  writer.endEntity("[dtd]");
  writer.endDTD();
  EXPECT_EQ(writer.text(), "<!DOCTYPE r [  <!ELEMENT e ANY>]>");
}

TEST(XML10ExternalSubset, KeepsTheOrderOfEvents) {
  XML10Writer writer;
  writer.startDocument();
  writer.startDTD("r", "", "s");
  writer.startEntity("[dtd]");
  EXPECT_EQ(thrown([&] { writer.characters("x"); }),
            "SAXException: You cannot write character data at this point");
  writer.endDTD();
  writer.comment("c");
  writer.leaf("r");
  EXPECT_EQ(writer.text(), "<!DOCTYPE r SYSTEM \"s\"><!--c--><r/>");
}

TEST(XML10ParameterEntity, IsReferredToWhereItIsExternal) {
  EXPECT_EQ(inDTD([](XML10Writer& w) {
              w.externalEntityDecl("%p", "", "p.mod");
              w.startEntity("%p");
              w.elementDecl("e", "ANY");
              w.startEntity("%q");
              w.endEntity("%q");
              w.comment("c");
              w.endEntity("%p");
              w.elementDecl("f", "ANY");
              w.skippedEntity("%p");
              w.skippedEntity("%elsewhere");
              w.skippedEntity("[dtd]");
            }),
            " [  <!ENTITY % p SYSTEM \"p.mod\">%p;  <!ELEMENT f ANY>%p;%elsewhere;]");
}

TEST(XML10ParameterEntity, IsWrittenAsItsDeclarationsWhereItIsInternal) {
  EXPECT_EQ(inDTD([](XML10Writer& w) {
              w.internalEntityDecl("%p", "<!ELEMENT e ANY>");
              w.startEntity("%p");
              w.elementDecl("e", "ANY");
              w.endEntity("%p");
            }),
            " [  <!ENTITY % p \"<!ELEMENT e ANY>\">  <!ELEMENT e ANY>]");
  EXPECT_EQ(inDTD([](XML10Writer& w) {
              w.internalEntityDecl("%p", "]");
              EXPECT_EQ(thrown([&] { w.skippedEntity("%p"); }),
                        refusal("You cannot refer to the entity \"%p\", whose text is internal"));
            }),
            " [  <!ENTITY % p \"]\">]");
  EXPECT_EQ(refusedInDTD([](XML10Writer& w) { w.skippedEntity("%1"); }),
            refusal("\"1\" is not a name"));
  EXPECT_EQ(refusedInDTD([](XML10Writer& w) { w.startEntity("%1"); }),
            refusal("\"1\" is not a name"));
  EXPECT_EQ(refusedInDTD([](XML10Writer& w) { w.skippedEntity("e"); }),
            refusal("You cannot refer to an entity at this point"));
}

TEST(XML10ParameterEntity, MakesUndeclaredEntitiesPossible) {
  XML10Writer writer;
  writer.startDocument();
  writer.startDTD("r", "", "");
  writer.skippedEntity("%p");
  writer.endDTD();
  writer.start("r");
  writer.skippedEntity("e");
  writer.end("r");
  EXPECT_EQ(writer.text(), "<!DOCTYPE r [%p;]><r>&e;</r>");
}

TEST(XML10ParameterEntity, ThatIsSkippedMakesDeclarationsBehindItUncertain) {
  const auto write = [](bool isStandalone) {
    XML10Writer writer({.declaration = isStandalone});
    if (isStandalone) writer.set(properties::standalone, true);
    writer.startDocument();
    writer.startDTD("r", "", "");
    writer.externalEntityDecl("%p", "", "p");
    writer.skippedEntity("%p");
    writer.internalEntityDecl("v", "<a>");
    writer.internalEntityDecl("%i", "<!ELEMENT e ANY>");
    EXPECT_EQ(thrown([&] { writer.skippedEntity("%i"); }),
              isStandalone
                  ? refusal("You cannot refer to the entity \"%i\", whose text is internal")
                  : "nothing");
    writer.attributeDecl("r", "xmlns", "CDATA", "", "u");
    writer.endDTD();
    EXPECT_EQ(thrown([&] { writer.start("r"); }),
              isStandalone
                  ? refusal("The element \"r\" has \"xmlns\" by default, but does not declare it")
                  : "nothing");
    if (isStandalone) return std::string();
    writer.skippedEntity("v");
    writer.end("r");
    writer.endDocument();
    return writer.text();
  };
  EXPECT_EQ(write(false),
            "<!DOCTYPE r [  <!ENTITY % p SYSTEM \"p\">%p;  <!ENTITY v \"<a>\">"
            "  <!ENTITY % i \"<!ELEMENT e ANY>\">%i;  <!ATTLIST r xmlns CDATA 'u'>]><r>&v;</r>");
  write(true);
}

TEST(XML10ParameterEntity, MayBeSkippedInOneThatIsRead) {
  XML10Writer writer;
  writer.startDocument();
  writer.startDTD("r", "", "");
  writer.externalEntityDecl("%p", "", "p");
  writer.startEntity("%p");
  writer.internalEntityDecl("w", "<b/>");
  writer.skippedEntity("%q");
  writer.endEntity("%p");
  writer.internalEntityDecl("v", "<a/>");
  writer.endDTD();
  writer.start("r");
  writer.skippedEntity("v");
  writer.end("r");
  writer.endDocument();
  EXPECT_EQ(writer.text(),
            "<!DOCTYPE r [  <!ENTITY % p SYSTEM \"p\">%p;  <!ENTITY v \"<a/>\">]><r>&v;</r>");
}

}  // namespace
