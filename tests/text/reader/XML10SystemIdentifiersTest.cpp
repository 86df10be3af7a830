#include <gtest/gtest.h>

#include <utility>

#include "XML10ReaderSupport.h"

namespace {

using namespace Tavrin;

/// A system identifier as a notation's declaration reports it.
std::string resolved(const std::string& reference, std::string base) {
  struct Notations : DTDHandler {
    void notationDecl(const std::string&, const std::string&, const std::string& id) override {
      systemId = id;
    }
    std::string systemId = "not reported";
  };
  Notations notations;
  XMLReader_XML10 reader;
  reader.setDTDHandler(&notations);
  reader.setProperty(properties::baseURI, &base);
  EXPECT_EQ("done",
            parseText(reader, "<!DOCTYPE a [<!NOTATION n SYSTEM \"" + reference + "\">]><a/>"));
  return notations.systemId;
}

using Pairs = std::vector<std::pair<const char*, const char*>>;

void check(const char* base, const Pairs& references) {
  for (const auto& [reference, target] : references) {
    EXPECT_EQ(target, resolved(reference, base)) << base << " and " << reference;
  }
}

// RFC 3986, section 5.4.1.
TEST(XML10SystemIdentifiers, AreResolvedAsInTheNormalExamples) {
  check("http://a/b/c/d;p?q", {{"g:h", "g:h"},
                               {"g", "http://a/b/c/g"},
                               {"./g", "http://a/b/c/g"},
                               {"g/", "http://a/b/c/g/"},
                               {"/g", "http://a/g"},
                               {"//g", "http://g"},
                               {"?y", "http://a/b/c/d;p?y"},
                               {"g?y", "http://a/b/c/g?y"},
                               {"#s", "http://a/b/c/d;p?q#s"},
                               {"g#s", "http://a/b/c/g#s"},
                               {"g?y#s", "http://a/b/c/g?y#s"},
                               {";x", "http://a/b/c/;x"},
                               {"g;x", "http://a/b/c/g;x"},
                               {"g;x?y#s", "http://a/b/c/g;x?y#s"},
                               {"", "http://a/b/c/d;p?q"},
                               {".", "http://a/b/c/"},
                               {"./", "http://a/b/c/"},
                               {"..", "http://a/b/"},
                               {"../", "http://a/b/"},
                               {"../g", "http://a/b/g"},
                               {"../..", "http://a/"},
                               {"../../", "http://a/"},
                               {"../../g", "http://a/g"}});
}

// RFC 3986, section 5.4.2.
TEST(XML10SystemIdentifiers, AreResolvedAsInTheAbnormalExamples) {
  check("http://a/b/c/d;p?q", {{"../../../g", "http://a/g"},
                               {"../../../../g", "http://a/g"},
                               {"/./g", "http://a/g"},
                               {"/../g", "http://a/g"},
                               {"g.", "http://a/b/c/g."},
                               {".g", "http://a/b/c/.g"},
                               {"g..", "http://a/b/c/g.."},
                               {"..g", "http://a/b/c/..g"},
                               {"./../g", "http://a/b/g"},
                               {"./g/.", "http://a/b/c/g/"},
                               {"g/./h", "http://a/b/c/g/h"},
                               {"g/../h", "http://a/b/c/h"},
                               {"g;x=1/./y", "http://a/b/c/g;x=1/y"},
                               {"g;x=1/../y", "http://a/b/c/y"},
                               {"g?y/./x", "http://a/b/c/g?y/./x"},
                               {"g?y/../x", "http://a/b/c/g?y/../x"},
                               {"g#s/./x", "http://a/b/c/g#s/./x"},
                               {"g#s/../x", "http://a/b/c/g#s/../x"},
                               {"http:g", "http:g"}});
}

TEST(XML10SystemIdentifiers, AreResolvedAgainstOtherBases) {
  check("http://a", {{"g", "http://a/g"}, {"?q", "http://a?q"}, {"../g", "http://a/g"}});
  check("file:///d/e.xml", {{"f.dtd", "file:///d/f.dtd"},
                            {"../f.dtd", "file:///f.dtd"},
                            {"//h/f", "file://h/f"},
                            {"urn:x:y", "urn:x:y"},
                            {"a:/x/../y", "a:/y"},
                            {"x//../y", "file:///d/x/y"}});
  check("/d/e.xml", {{"f", "/d/f"}, {"../../f", "/f"}, {"/f", "/f"}, {"", "/d/e.xml"}});
  // Relative to a place that is not known.
  check("d/e.xml", {{"f", "d/f"},
                    {"../f", "f"},
                    {"../../f", "../f"},
                    {"../../../f/./g/..", "../../f/"},
                    {"..", "./"},
                    {"/f", "/f"},
                    {"http://h/f", "http://h/f"}});
  check("e.xml", {{"f", "f"}, {"./f", "f"}, {"../f", "../f"}, {"1:2", "1:2"}});
  check("../e.xml", {{"f", "../f"}, {"../f", "../../f"}});
}

TEST(XML10SystemIdentifiers, StayAsWrittenWithoutABase) {
  for (const char* reference : {"", "a/../b", "./c", "http://h/a/../b", "?"}) {
    EXPECT_EQ(reference, resolved(reference, ""));
  }
}

TEST(XML10SystemIdentifiers, OfAnEntityAreRelativeToTheEntityThatDeclaresIt) {
  checkXML10({
      {.name = "with a base",
       .text = "<!DOCTYPE a PUBLIC 'p' 'dtd/a.dtd' [<!ENTITY e SYSTEM 'e.ent'>"
               "<!NOTATION m SYSTEM ''>]><a>&e;&f;</a>",
       .events = {"startDTD(a, p, dtd/a.dtd)",
                  "externalEntityDecl(e, , http://h/x/e.ent)",
                  "notationDecl(m, , http://h/x/doc.xml)",
                  "resolveEntity(p, http://h/x/dtd/a.dtd)",
                  "startEntity([dtd])",
                  "externalEntityDecl(%q, , http://h/x/mod/q.mod)",
                  "resolveEntity(, http://h/x/mod/q.mod)",
                  "startEntity(%q)",
                  "externalEntityDecl(f, , http://h/x/mod/f.ent)",
                  "unparsedEntityDecl(u, , http://h/x/mod/u.gif, n)",
                  "endEntity(%q)",
                  "notationDecl(n, , http://h/x/dtd/n.exe)",
                  "notationDecl(o, P, )",
                  "endEntity([dtd])",
                  "endDTD()",
                  "startElement(, a, a, [])",
                  "resolveEntity(, http://h/x/e.ent)",
                  "startEntity(e)",
                  "characters(E)",
                  "endEntity(e)",
                  "resolveEntity(, http://h/x/mod/f.ent)",
                  "startEntity(f)",
                  "characters(F)",
                  "endEntity(f)",
                  "endElement(, a, a)"},
       .entities = {{"http://h/x/dtd/a.dtd",
                     "<!ENTITY % q SYSTEM '../mod/q.mod'>%q;<!NOTATION n SYSTEM 'n.exe'>"
                     "<!NOTATION o PUBLIC 'P'>"},
                    {"http://h/x/mod/q.mod",
                     "<!ENTITY f SYSTEM 'f.ent'><!ENTITY u SYSTEM 'u.gif' NDATA n>"},
                    {"http://h/x/e.ent", "E"},
                    {"http://h/x/mod/f.ent", "F"}},
       .baseURI = "http://h/x/doc.xml"},
      {.name = "without a base",
       .text = "<!DOCTYPE a SYSTEM 'dtd/a.dtd' [<!ENTITY e SYSTEM '../e'>]><a/>",
       .events = {"startDTD(a, , dtd/a.dtd)", "externalEntityDecl(e, , ../e)",
                  "resolveEntity(, dtd/a.dtd)", "startEntity([dtd])", "notationDecl(m, , dtd/m)",
                  "notationDecl(n, , ../n)", "endEntity([dtd])", "endDTD()",
                  "startElement(, a, a, [])", "endElement(, a, a)"},
       .entities = {{"dtd/a.dtd", "<!NOTATION m SYSTEM 'm'><!NOTATION n SYSTEM '../../n'>"}}},
      {.name = "a declaration in an internal entity belongs to the entity that refers to it",
       .text = "<!DOCTYPE a SYSTEM 'd/a.dtd' [<!ENTITY % i '<!NOTATION n SYSTEM \"n\">'>]><a/>",
       .events = {"startDTD(a, , d/a.dtd)", "internalEntityDecl(%i, <!NOTATION n SYSTEM \"n\">)",
                  "resolveEntity(, http://h/d/a.dtd)", "startEntity([dtd])",
                  "notationDecl(n, , http://h/d/n)", "endEntity([dtd])", "endDTD()",
                  "startElement(, a, a, [])", "endElement(, a, a)"},
       .entities = {{"http://h/d/a.dtd", "%i;"}},
       .baseURI = "http://h/doc"},
  });
}

}  // namespace
