#include <gtest/gtest.h>

#include <sstream>

#include "XML10ReaderSupport.h"

namespace {

using namespace Tavrin;

TEST(XML10Entities, HaveTheirBordersReported) {
  checkXML10({
      {.name = "general entity",
       .text = "<!DOCTYPE a [<!ENTITY e PUBLIC 'p' 'e.ent'>]><a>1&e;2</a>",
       .events = {"startDTD(a, , )", "externalEntityDecl(e, p, e.ent)", "endDTD()",
                  "startElement(, a, a, [])", "characters(1)", "resolveEntity(p, e.ent)",
                  "startEntity(e)", "characters(x)", "startElement(, b, b, [])",
                  "endElement(, b, b)", "endEntity(e)", "characters(2)", "endElement(, a, a)"},
       .entities = {{"e.ent", "x<b/>"}}},
      {.name = "general entities in one another, in an internal one, and twice; one is empty",
       .text = "<!DOCTYPE a [<!ENTITY e SYSTEM 'e'><!ENTITY f SYSTEM 'f'><!ENTITY g SYSTEM 'g'>"
               "<!ENTITY i '&f;'>]><a>&e;&g;&i;</a>",
       .events = {"startDTD(a, , )",
                  "externalEntityDecl(e, , e)",
                  "externalEntityDecl(f, , f)",
                  "externalEntityDecl(g, , g)",
                  "internalEntityDecl(i, &f;)",
                  "endDTD()",
                  "startElement(, a, a, [])",
                  "resolveEntity(, e)",
                  "startEntity(e)",
                  "characters(1)",
                  "resolveEntity(, f)",
                  "startEntity(f)",
                  "characters(2)",
                  "resolveEntity(, g)",
                  "startEntity(g)",
                  "endEntity(g)",
                  "endEntity(f)",
                  "characters(3)",
                  "endEntity(e)",
                  "resolveEntity(, g)",
                  "startEntity(g)",
                  "endEntity(g)",
                  "resolveEntity(, f)",
                  "startEntity(f)",
                  "characters(2)",
                  "resolveEntity(, g)",
                  "startEntity(g)",
                  "endEntity(g)",
                  "endEntity(f)",
                  "endElement(, a, a)"},
       .entities = {{"e", "1&f;3"}, {"f", "2&g;"}, {"g", ""}}},
      {.name = "two entities of one identifier keep their names",
       .text = "<!DOCTYPE a [<!ENTITY e SYSTEM 's'><!ENTITY f SYSTEM 's'>"
               "<!ENTITY % g SYSTEM 't'><!ENTITY % h SYSTEM 't'>%h;%g;]><a>&f;&e;</a>",
       .events = {"startDTD(a, , )",
                  "externalEntityDecl(e, , s)",
                  "externalEntityDecl(f, , s)",
                  "externalEntityDecl(%g, , t)",
                  "externalEntityDecl(%h, , t)",
                  "resolveEntity(, t)",
                  "startEntity(%h)",
                  "comment(c)",
                  "endEntity(%h)",
                  "resolveEntity(, t)",
                  "startEntity(%g)",
                  "comment(c)",
                  "endEntity(%g)",
                  "endDTD()",
                  "startElement(, a, a, [])",
                  "resolveEntity(, s)",
                  "startEntity(f)",
                  "characters(x)",
                  "endEntity(f)",
                  "resolveEntity(, s)",
                  "startEntity(e)",
                  "characters(x)",
                  "endEntity(e)",
                  "endElement(, a, a)"},
       .entities = {{"s", "x"}, {"t", "<!--c-->"}}},
      {.name = "the external subset comes last, with all that it declares",
       .text = "<!DOCTYPE a PUBLIC 'p' 'a.dtd' [<!ENTITY i '1'>]><a>&i;&j;&e;</a>",
       .events = {"startDTD(a, p, a.dtd)",
                  "internalEntityDecl(i, 1)",
                  "resolveEntity(p, a.dtd)",
                  "startEntity([dtd])",
                  "elementDecl(a, ANY)",
                  "internalEntityDecl(j, 3)",
                  "externalEntityDecl(%q, , q.mod)",
                  "resolveEntity(, q.mod)",
                  "startEntity(%q)",
                  "externalEntityDecl(e, , e.ent)",
                  "attributeDecl(a, x, ID, #IMPLIED, )",
                  "endEntity(%q)",
                  "externalEntityDecl(f, , f.ent)",
                  "endEntity([dtd])",
                  "endDTD()",
                  "startElement(, a, a, [])",
                  "characters(13)",
                  "resolveEntity(, e.ent)",
                  "startEntity(e)",
                  "characters(4)",
                  "resolveEntity(, f.ent)",
                  "startEntity(f)",
                  "characters(5)",
                  "endEntity(f)",
                  "endEntity(e)",
                  "endElement(, a, a)"},
       .entities = {{"a.dtd",
                     "<?xml version='1.0' encoding='UTF-8'?><!ELEMENT a ANY><!ENTITY i '2'>"
                     "<!ENTITY j '3'><!ENTITY % q SYSTEM 'q.mod'>%q;<!ENTITY f SYSTEM 'f.ent'>"},
                    {"q.mod", "<!ENTITY e SYSTEM 'e.ent'><!ATTLIST a x ID #IMPLIED>"},
                    {"e.ent", "<?xml encoding='UTF-8'?>4&f;"},
                    {"f.ent", "5"}}},
      {.name = "a parameter entity in the value of another, and internal ones",
       .text = "<!DOCTYPE a SYSTEM 'd'><a>&g;</a>",
       .events = {"startDTD(a, , d)", "resolveEntity(, d)", "startEntity([dtd])",
                  "externalEntityDecl(%e, , e)", "internalEntityDecl(%i, <!--c-->)", "comment(c)",
                  "resolveEntity(, e)", "startEntity(%e)", "endEntity(%e)",
                  "internalEntityDecl(g, [v])", "externalEntityDecl(h, , h)", "endEntity([dtd])",
                  "endDTD()", "startElement(, a, a, [])", "characters([v])", "endElement(, a, a)"},
       .entities = {{"d",
                     "<!ENTITY % e SYSTEM 'e'><!ENTITY % i '<!--c-->'>%i;<!ENTITY g '[%e;]'>"
                     "<!ENTITY h SYSTEM 'h'>"},
                    {"e", "v"}}},
      {.name = "names and namespaces that are in scope are no entities",
       .text = "<!DOCTYPE p:a [<!ENTITY e SYSTEM 'e'><!ENTITY f SYSTEM 'f'>]>"
               "<p:a xmlns:p='u' xmlns='v'>&e;</p:a>",
       .events = {"startDTD(p:a, , )",
                  "externalEntityDecl(e, , e)",
                  "externalEntityDecl(f, , f)",
                  "endDTD()",
                  "startPrefixMapping(p, u)",
                  "startPrefixMapping(, v)",
                  "startElement(u, a, p:a, [])",
                  "resolveEntity(, e)",
                  "startEntity(e)",
                  "startElement(u, b, p:b, [])",
                  "resolveEntity(, f)",
                  "startEntity(f)",
                  "startElement(v, c, c, [])",
                  "endElement(v, c, c)",
                  "endEntity(f)",
                  "endElement(u, b, p:b)",
                  "endEntity(e)",
                  "endElement(u, a, p:a)",
                  "endPrefixMapping()",
                  "endPrefixMapping(p)"},
       .entities = {{"e", "<p:b>&f;</p:b>"}, {"f", "<c/>"}}},
  });
}

TEST(XML10Entities, ThatAreNotReadAreSkipped) {
  const std::string text =
      "<!DOCTYPE a SYSTEM 'd' [<!ENTITY e SYSTEM 'e'><!ENTITY % q SYSTEM 'q'>%q;<!ENTITY i 'I'>]>"
      "<a>&e;&u;</a>";
  // What follows a parameter entity that was not read is not processed (XML 1.0, section 5.1), and
  // yet reported.
  const EventLog::Lines withoutResolver = {
      "startDTD(a, , d)",  "externalEntityDecl(e, , e)", "externalEntityDecl(%q, , q)",
      "skippedEntity(%q)", "internalEntityDecl(i, I)",   "skippedEntity([dtd])",
      "endDTD()",          "startElement(, a, a, [])",   "skippedEntity(e)",
      "skippedEntity(u)",  "endElement(, a, a)"};
  checkXML10({
      {.name = "no resolver", .text = text, .events = withoutResolver, .resolves = false},
      {.name = "no stream",
       .text = text,
       .events = {"startDTD(a, , d)", "externalEntityDecl(e, , e)", "externalEntityDecl(%q, , q)",
                  "resolveEntity(, q)", "skippedEntity(%q)", "internalEntityDecl(i, I)",
                  "resolveEntity(, d)", "skippedEntity([dtd])", "endDTD()",
                  "startElement(, a, a, [])", "resolveEntity(, e)", "skippedEntity(e)",
                  "skippedEntity(u)", "endElement(, a, a)"}},
      {.name = "both features off, with a resolver",
       .text = text,
       .events = withoutResolver,
       .entities = {{"d", "<!ENTITY u 'U'>"}, {"e", "E"}, {"q", ""}},
       .features = {{features::externalGeneralEntities, false},
                    {features::externalParameterEntities, false}}},
      {.name = "general entities off",
       .text = text,
       .events = {"startDTD(a, , d)", "externalEntityDecl(e, , e)", "externalEntityDecl(%q, , q)",
                  "resolveEntity(, q)", "startEntity(%q)", "endEntity(%q)",
                  "internalEntityDecl(i, I)", "resolveEntity(, d)", "startEntity([dtd])",
                  "internalEntityDecl(u, U)", "endEntity([dtd])", "endDTD()",
                  "startElement(, a, a, [])", "skippedEntity(e)", "characters(U)",
                  "endElement(, a, a)"},
       .entities = {{"d", "<!ENTITY u 'U'>"}, {"e", "E"}, {"q", ""}},
       .features = {{features::externalGeneralEntities, false}}},
      {.name = "parameter entities off",
       .text = text,
       .events = {"startDTD(a, , d)", "externalEntityDecl(e, , e)", "externalEntityDecl(%q, , q)",
                  "skippedEntity(%q)", "internalEntityDecl(i, I)", "skippedEntity([dtd])",
                  "endDTD()", "startElement(, a, a, [])", "resolveEntity(, e)", "startEntity(e)",
                  "characters(E)", "endEntity(e)", "skippedEntity(u)", "endElement(, a, a)"},
       .entities = {{"d", "<!ENTITY u 'U'>"}, {"e", "E"}, {"q", ""}},
       .features = {{features::externalParameterEntities, false}}},
      {.name = "a parameter entity that nothing declares",
       .text = "<!DOCTYPE a SYSTEM 'd'><a/>",
       .events = {"startDTD(a, , d)", "resolveEntity(, d)", "startEntity([dtd])",
                  "skippedEntity(%u)", "endEntity([dtd])", "endDTD()", "startElement(, a, a, [])",
                  "endElement(, a, a)"},
       .entities = {{"d", "%u;"}}},
      {.name = "standalone: what is not declared is no reference to what was not read",
       .text = "<?xml version='1.0' standalone='yes'?><!DOCTYPE a SYSTEM 'd'><a>&u;</a>",
       .events = {"startDTD(a, , d)", "skippedEntity([dtd])", "endDTD()",
                  "startElement(, a, a, [])"},
       .resolves = false,
       .failure = "undefined entity: \"u\", 1, 65"},
      {.name = "standalone: declarations behind what was not read count",
       .text = "<?xml version='1.0' standalone='yes'?><!DOCTYPE a [<!ENTITY % q SYSTEM 'q'>%q;"
               "<!ENTITY i 'I'><!ATTLIST a x NMTOKEN 'v'>]><a>&i;</a>",
       .events = {"startDTD(a, , )", "externalEntityDecl(%q, , q)", "skippedEntity(%q)",
                  "internalEntityDecl(i, I)", "attributeDecl(a, x, NMTOKEN, , v)", "endDTD()",
                  "startElement(, a, a, [{, x, x, NMTOKEN, v}])", "characters(I)",
                  "endElement(, a, a)"},
       .resolves = false},
  });
}

TEST(XML10Entities, ThatAreMalformedFailWhereTheyAre) {
  const std::string declared = "<!DOCTYPE a [<!ENTITY e SYSTEM 'e'><!ENTITY f SYSTEM 'f'>]>\n";
  const EventLog::Lines start = {"startDTD(a, , )", "externalEntityDecl(e, , e)",
                                 "externalEntityDecl(f, , f)", "endDTD()",
                                 "startElement(, a, a, [])"};
  const auto after = [&](EventLog::Lines events) {
    events.insert(events.begin(), start.begin(), start.end());
    return events;
  };
  checkXML10({
      {.name = "in the entity",
       .text = declared + "<a>&e;</a>",
       .events = after({"resolveEntity(, e)", "startEntity(e)", "characters(1\\n)",
                        "startElement(, b, b, [])"}),
       .entities = {{"e", "1\n<b></c>"}},
       .failure = "mismatched tag: expected </b> of line 2 (in the entity e, \"e\"), 2, 6"},
      {.name = "in an entity within it",
       .text = declared + "<a>&e;</a>",
       .events = after({"resolveEntity(, e)", "startEntity(e)", "resolveEntity(, f)",
                        "startEntity(f)", "characters(\\n)"}),
       .entities = {{"e", "&f;"}, {"f", "\n<"}},
       .failure = "unclosed token: < (in the entity f, \"f\"), 2, 1"},
      {.name = "an element that begins in the document and ends in the entity",
       .text = declared + "<a>&e;</a>",
       .events = after({"resolveEntity(, e)", "startEntity(e)"}),
       .entities = {{"e", "</a>"}},
       .failure = "asynchronous entity: </a> (in the entity e, \"e\"), 1, 1"},
      {.name = "entities that hold each other",
       .text = declared + "<a>&e;</a>",
       .events =
           after({"resolveEntity(, e)", "startEntity(e)", "resolveEntity(, f)", "startEntity(f)"}),
       .entities = {{"e", "&f;"}, {"f", "&e;"}},
       .failure = "recursive entity reference: \"e\" (in the entity f, \"f\"), 1, 1"},
      {.name = "in the document, behind an entity",
       .text = declared + "<a>&e;</b>",
       .events = after({"resolveEntity(, e)", "startEntity(e)", "endEntity(e)"}),
       .entities = {{"e", ""}},
       .failure = "mismatched tag: expected </a> of line 2, 2, 9"},
      {.name = "in the external subset",
       .text = "<!DOCTYPE a SYSTEM 'd'><a/>",
       .events = {"startDTD(a, , d)", "resolveEntity(, d)", "startEntity([dtd])"},
       .entities = {{"d", "\n\n <!WRONG x>"}},
       .failure = "syntax error (in the entity [dtd], \"d\"), 3, 2"},
  });
}

/// Each entity refers to the next.
class Chain : public EntityResolver {
 public:
  explicit Chain(int length) : length_(length) {}
  std::unique_ptr<std::istream> resolveEntity(const std::string&,
                                              const std::string& systemId) override {
    const int number = std::stoi(systemId) + 1;
    return std::make_unique<std::istringstream>(
        number < length_ ? "&e" + std::to_string(number) + ";" : "end");
  }
  std::string document() const {
    std::string text = "<!DOCTYPE a [";
    for (int i = 0; i < length_; ++i) {
      const std::string number = std::to_string(i);
      text += "<!ENTITY e" + number + " SYSTEM '" + number + "'>";
    }
    return text + "]><a>&e0;</a>";
  }

 private:
  int length_;
};

TEST(XML10Entities, MayBeNested256Deep) {
  for (const int length : {1, 255, 256}) {
    Chain chain(length);
    XMLReader_XML10 reader;
    reader.setEntityResolver(&chain);
    EXPECT_EQ("done", parseText(reader, chain.document())) << length;
  }
  Chain chain(257);
  XMLReader_XML10 reader;
  reader.setEntityResolver(&chain);
  EXPECT_EQ(
      "SAXParseException(external entities are nested too deeply (in the entity e255, \"255\"), 1, "
      "1)",
      parseText(reader, chain.document()));
}

TEST(XML10Entities, CannotGrowWithoutLimit) {
  std::string text = "<!DOCTYPE a [<!ENTITY e0 '0123456789'>";
  for (int i = 1; i < 10; ++i) {
    text += "<!ENTITY e" + std::to_string(i) + " '";
    for (int j = 0; j < 10; ++j) text += "&e" + std::to_string(i - 1) + ";";
    text += "'>";
  }
  text += "]><a>&e9;</a>";
  XMLReader_XML10 reader;
  EXPECT_EQ(0U, parseText(reader, text)
                    .find("SAXParseException(limit on input amplification factor (from DTD and "
                          "entities) breached (property entity-amplification-factor), "));
}

TEST(XML10Entities, GrowAsFarAsTheApplicationAllows) {
  // 10 octets become 10,000: less than the default limits forbid.
  const std::string text =
      "<!DOCTYPE a [<!ENTITY x '0123456789'><!ENTITY y '&x;&x;&x;&x;&x;&x;&x;&x;&x;&x;'>"
      "<!ENTITY z '&y;&y;&y;&y;&y;&y;&y;&y;&y;&y;'><!ENTITY w '&z;&z;&z;&z;&z;&z;&z;&z;&z;&z;'>]>"
      "<a>&w;</a>";
  const std::string refusal =
      "SAXParseException(limit on input amplification factor (from DTD and "
      "entities) breached (property entity-amplification-factor), ";
  XMLReader_XML10 reader;
  EXPECT_EQ("done", parseText(reader, text));
  std::uint64_t threshold = 1000;
  double factor = 2;
  reader.setProperty(properties::entityAmplificationThreshold, &threshold);
  EXPECT_EQ("done", parseText(reader, text));
  reader.setProperty(properties::entityAmplificationFactor, &factor);
  EXPECT_EQ(0U, parseText(reader, text).find(refusal));
  reader.setProperty(properties::entityAmplificationFactor, nullptr);
  EXPECT_EQ("done", parseText(reader, text));
  reader.setProperty(properties::entityAmplificationFactor, &factor);
  reader.setProperty(properties::entityAmplificationThreshold, nullptr);
  EXPECT_EQ("done", parseText(reader, text));
}

}  // namespace
