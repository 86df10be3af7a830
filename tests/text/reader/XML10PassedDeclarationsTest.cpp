#include <gtest/gtest.h>

#include "XML10ReaderSupport.h"

namespace {

using namespace Tavrin;

const EventLog::Lines kSkipped = {"startDTD(a, , )", "externalEntityDecl(%q, , q)",
                                  "skippedEntity(%q)"};

/// A document whose declarations stand behind a parameter entity that is not read.
XML10Document behind(const char* name, const std::string& declarations,
                     const EventLog::Lines& events, const std::string& root = "<a/>",
                     const EventLog::Lines& content = {"startElement(, a, a, [])",
                                                       "endElement(, a, a)"}) {
  XML10Document document{.name = name, .text = {}};
  document.text = "<!DOCTYPE a [<!ENTITY % q SYSTEM 'q'>%q;" + declarations + "]>" + root;
  document.events = kSkipped;
  document.events.insert(document.events.end(), events.begin(), events.end());
  document.events.emplace_back("endDTD()");
  document.events.insert(document.events.end(), content.begin(), content.end());
  document.resolves = false;
  return document;
}

XML10Document failing(const char* name, const std::string& declarations, const std::string& failure,
                      const EventLog::Lines& events = {}) {
  XML10Document document = behind(name, declarations, events, "", {});
  document.events.pop_back();
  document.failure = failure;
  return document;
}

TEST(XML10PassedDeclarations, OfEntitiesAreReportedAndDoNotCount) {
  checkXML10({
      behind("internal", "<!ENTITY v \"1.0\">", {"internalEntityDecl(v, 1.0)"}, "<a>&v;</a>",
             {"startElement(, a, a, [])", "skippedEntity(v)", "endElement(, a, a)"}),
      behind("all kinds, and what stands between",
             "\n<!ENTITY\t% p '<!--&#37;q;-->' ><!ENTITY e SYSTEM\n\"e'\"><!--c-->"
             "<!ENTITY % f PUBLIC ' p  q\n' 'f'>"
             "<!NOTATION n SYSTEM 'n'><!ENTITY u PUBLIC 'p' 'u' NDATA n><?t d?><!ELEMENT a ANY>"
             "<!ENTITY empty ''>",
             {"internalEntityDecl(%p, <!--%q;-->)", "externalEntityDecl(e, , e')", "comment(c)",
              "externalEntityDecl(%f, p q, f)", "notationDecl(n, , n)",
              "unparsedEntityDecl(u, p, u, n)", "processingInstruction(t, d)",
              "elementDecl(a, ANY)", "internalEntityDecl(empty, )"}),
      behind(
          "texts", "<!ENTITY v '&#38;#60;&lt;&w;&#xE4;&#x20AC;&#128512;\r\n\r\t\">'>",
          {"internalEntityDecl(v, &#60;&lt;&w;\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\\n\\n\\t\">)"}),
      behind("the first counts, and the five that everyone knows are known",
             "<!ENTITY v '1'><!ENTITY v '2'><!ENTITY % v '3'><!ENTITY q '4'><!ENTITY % q '5'>"
             "<!ENTITY lt '&#38;#60;'>",
             {"internalEntityDecl(v, 1)", "internalEntityDecl(%v, 3)", "internalEntityDecl(q, 4)"}),
      behind("a second one that is not read, and one that is not known",
             "<!ENTITY v '1'>%q;<!ENTITY v '2'><!ENTITY % r 'r'>%r;<!ENTITY w '3'>",
             {"internalEntityDecl(v, 1)", "skippedEntity(%q)", "internalEntityDecl(%r, r)",
              "skippedEntity(%r)", "internalEntityDecl(w, 3)"}),
  });
}

TEST(XML10PassedDeclarations, OfAttributesAreReportedAndDoNotCount) {
  checkXML10({
      behind(
          "all kinds",
          "<!ATTLIST a b CDATA 'v' c (d | e\n|f) \"d\" g NOTATION (n | m) #IMPLIED\n"
          " h ID #REQUIRED i NMTOKENS #FIXED ' j  &#32;k '><!ATTLIST a><!ATTLIST a b ID #IMPLIED>",
          {"attributeDecl(a, b, CDATA, , v)", "attributeDecl(a, c, (d|e|f), , d)",
           "attributeDecl(a, g, NOTATION (n|m), #IMPLIED, )",
           "attributeDecl(a, h, ID, #REQUIRED, )", "attributeDecl(a, i, NMTOKENS, #FIXED, j k)"},
          "<a h='i'/>", {"startElement(, a, a, [{, h, h, CDATA, i}])", "endElement(, a, a)"}),
      behind("defaults", "<!ATTLIST a b CDATA '\t&lt;&amp;&#10;\r\n&#38;x; '>",
             {"attributeDecl(a, b, CDATA, ,  <&\\n &x; )"}),
      behind("a default that refers to what is not known", "\n<!ATTLIST a b CDATA '1&v;2'>",
             {"warning(The entity \"v\" was not read: a reference to it in the default of an "
              "attribute is lost, 2, 1)",
              "attributeDecl(a, b, CDATA, , 12)"}),
      {.name = "what was declared before counts",
       .text = "<!DOCTYPE a [<!ATTLIST a b NMTOKEN 'v'><!ENTITY v '1'><!ENTITY % q SYSTEM 'q'>%q;"
               "<!ATTLIST a b CDATA 'w' c CDATA 'x'><!ENTITY v '2'>]><a>&v;</a>",
       .events = {"startDTD(a, , )", "attributeDecl(a, b, NMTOKEN, , v)",
                  "internalEntityDecl(v, 1)", "externalEntityDecl(%q, , q)", "skippedEntity(%q)",
                  "attributeDecl(a, c, CDATA, , x)", "endDTD()",
                  "startElement(, a, a, [{, b, b, NMTOKEN, v}])", "characters(1)",
                  "endElement(, a, a)"},
       .resolves = false},
  });
}

TEST(XML10PassedDeclarations, AreThoseOfTheInternalSubset) {
  checkXML10({
      behind("in an internal entity", "%q;", {"skippedEntity(%q)"}),
      {.name = "in an internal entity",
       .text = "<!DOCTYPE a [<!ENTITY % i '<!ENTITY v \"1\">'><!ENTITY % q SYSTEM 'q'>%q;%i;]><a/>",
       .events = {"startDTD(a, , )", "internalEntityDecl(%i, <!ENTITY v \"1\">)",
                  "externalEntityDecl(%q, , q)", "skippedEntity(%q)", "internalEntityDecl(v, 1)",
                  "endDTD()", "startElement(, a, a, [])", "endElement(, a, a)"},
       .resolves = false},
      {.name = "not in external entities",
       .text = "<!DOCTYPE a SYSTEM 'd' [<!ENTITY % q SYSTEM 'q'><!ENTITY % r SYSTEM 'r'>%r;%q;%r;"
               "<!ENTITY w 'W'>]><a/>",
       .events = {"startDTD(a, , d)",
                  "externalEntityDecl(%q, , q)",
                  "externalEntityDecl(%r, , r)",
                  "resolveEntity(, r)",
                  "startEntity(%r)",
                  "internalEntityDecl(v, V)",
                  "endEntity(%r)",
                  "resolveEntity(, q)",
                  "skippedEntity(%q)",
                  "resolveEntity(, r)",
                  "startEntity(%r)",
                  "endEntity(%r)",
                  "internalEntityDecl(w, W)",
                  "resolveEntity(, d)",
                  "startEntity([dtd])",
                  "elementDecl(a, ANY)",
                  "endEntity([dtd])",
                  "endDTD()",
                  "startElement(, a, a, [])",
                  "endElement(, a, a)"},
       .entities = {{"r", "<!ENTITY v 'V'>"}, {"d", "<!ENTITY x 'X'><!ELEMENT a ANY>"}}},
      {.name = "the skipped one is in another",
       .text = "<!DOCTYPE a [<!ENTITY % r SYSTEM 'r'>%r;<!ENTITY w 'W'>]><a/>",
       .events = {"startDTD(a, , )", "externalEntityDecl(%r, , r)", "resolveEntity(, r)",
                  "startEntity(%r)", "skippedEntity(%x)", "endEntity(%r)",
                  "internalEntityDecl(w, W)", "endDTD()", "startElement(, a, a, [])",
                  "endElement(, a, a)"},
       .entities = {{"r", "%x;<!ENTITY v 'V'>"}}},
      {.name = "in an internal entity, with a reference that only the text of an entity may have",
       .text = "<!DOCTYPE a [<!ENTITY % i '<!ENTITY v \"&#37;q;\">'><!ENTITY % q SYSTEM 'q'>%q;\n"
               "%i;]><a/>",
       .events = {"startDTD(a, , )", "internalEntityDecl(%i, <!ENTITY v \"%q;\">)",
                  "externalEntityDecl(%q, , q)", "skippedEntity(%q)",
                  "warning(The declaration of the entity \"v\" refers to a parameter entity: it is "
                  "lost, 2, 1)",
                  "endDTD()", "startElement(, a, a, [])", "endElement(, a, a)"},
       .resolves = false},
  });
}

TEST(XML10PassedDeclarations, MustBeWellFormed) {
  const std::string token = "not well-formed (invalid token), 2, 1";
  checkXML10({
      failing("an ampersand in a text", "\n<!ENTITY v '& w'>", token),
      failing("a reference without an end", "\n<!ENTITY v '&w'>", token),
      failing("a name that is none", "\n<!ENTITY v '&1;'>", token),
      failing("a percent sign", "\n<!ENTITY v '100% '>", token),
      failing("a parameter entity", "\n<!ENTITY v '%q;'>",
              "illegal parameter entity reference, 2, 1"),
      failing("no character", "\n<!ENTITY v '&#0;'>",
              "reference to invalid character number, 2, 1"),
      failing("no hexadecimal number", "\n<!ENTITY v '&#xG;'>",
              "reference to invalid character number, 2, 1"),
      failing("too large a number", "\n<!ENTITY v '&#x110000;'>",
              "reference to invalid character number, 2, 1"),
      failing("a less-than sign in a default", "\n<!ATTLIST a b CDATA '<'>", token),
      failing("an ampersand in a default", "\n<!ATTLIST a b CDATA '&'>", token),
      failing("syntax", "\n<!ENTITY v >", "syntax error, 2, 12"),
      failing("a local name that is none", "\n<!ATTLIST a:1 d CDATA #IMPLIED>",
              "\"a:1\" is not a qualified name, 2, 31"),
      failing("a parameter entity in a declaration", "\n<!ATTLIST a %q;>",
              "illegal parameter entity reference: \"%q\", 2, 13"),
  });
}

TEST(XML10PassedDeclarations, CanBeInEveryEncoding) {
  const std::string latin =
      "<?xml version='1.0' encoding='ISO-8859-1'?><!DOCTYPE a [%q;<!ENTITY v '\xE4" +
      std::string(3000, '>') + "'>]><a/>";
  checkXML10({{.name = "Latin-1, and long",
               .text = latin,
               .events = {"startDTD(a, , )", "skippedEntity(%q)",
                          "internalEntityDecl(v, \xC3\xA4" + std::string(3000, '>') + ")",
                          "endDTD()", "startElement(, a, a, [])", "endElement(, a, a)"}}});
}

}  // namespace
