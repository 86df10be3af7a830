#include <gtest/gtest.h>

#include "XML10ReaderSupport.h"

namespace {

using namespace Tavrin;

TEST(XML10Declarations, GoToTheirHandlers) {
  checkXML10({
      {.name = "every declaration",
       .text = "<!DOCTYPE a [<!ELEMENT a (b|c)*><!ATTLIST a x CDATA #REQUIRED y CDATA 'v'>"
               "<!NOTATION n SYSTEM 'n.exe'><!NOTATION o PUBLIC 'p  q'><!NOTATION q PUBLIC 'r' 's'>"
               "<!ENTITY i 'I'><!ENTITY % j 'J'><!ENTITY e SYSTEM 'e.ent'>"
               "<!ENTITY f PUBLIC 'pub' 'f.ent'><!ENTITY % g SYSTEM 'g.ent'>"
               "<!ENTITY u SYSTEM 'u.gif' NDATA n><!ENTITY v PUBLIC 'pv' 'v.gif' NDATA o>"
               "<!--c--><?t d?>]><a x='1'/>",
       .events = {"startDTD(a, , )", "elementDecl(a, (b|c)*)",
                  "attributeDecl(a, x, CDATA, #REQUIRED, )", "attributeDecl(a, y, CDATA, , v)",
                  "notationDecl(n, , n.exe)", "notationDecl(o, p q, )", "notationDecl(q, r, s)",
                  "internalEntityDecl(i, I)", "internalEntityDecl(%j, J)",
                  "externalEntityDecl(e, , e.ent)", "externalEntityDecl(f, pub, f.ent)",
                  "externalEntityDecl(%g, , g.ent)", "unparsedEntityDecl(u, , u.gif, n)",
                  "unparsedEntityDecl(v, pv, v.gif, o)", "comment(c)",
                  "processingInstruction(t, d)", "endDTD()",
                  "startElement(, a, a, [{, x, x, CDATA, 1}, {, y, y, CDATA, v}])",
                  "endElement(, a, a)"}},
      {.name = "only the first declaration of an entity or an attribute counts",
       .text = "<!DOCTYPE a [<!ENTITY e '1'><!ENTITY e SYSTEM '2'><!ENTITY f SYSTEM '3'>"
               "<!ENTITY f '4'><!ENTITY f SYSTEM '5'><!ENTITY % e '6'><!ENTITY % e '7'>"
               "<!ATTLIST a x CDATA 'v' x NMTOKEN 'w'><!ATTLIST a x ID #IMPLIED y ID #IMPLIED>"
               "<!ATTLIST b x ID #IMPLIED>]><a y='i'>&e;<b x='j'/></a>",
       .events = {"startDTD(a, , )", "internalEntityDecl(e, 1)", "externalEntityDecl(f, , 3)",
                  "internalEntityDecl(%e, 6)", "attributeDecl(a, x, CDATA, , v)",
                  "attributeDecl(a, y, ID, #IMPLIED, )", "attributeDecl(b, x, ID, #IMPLIED, )",
                  "endDTD()", "startElement(, a, a, [{, y, y, ID, i}, {, x, x, CDATA, v}])",
                  "characters(1)", "startElement(, b, b, [{, x, x, ID, j}])", "endElement(, b, b)",
                  "endElement(, a, a)"}},
      {.name = "no internal subset",
       .text = "<!DOCTYPE a><a/>",
       .events = {"startDTD(a, , )", "endDTD()", "startElement(, a, a, [])", "endElement(, a, a)"}},
  });
}

TEST(XML10Declarations, GiveAttributesTheirTypes) {
  checkXML10({
      {.name = "every type",
       .text =
           "<!DOCTYPE a [<!NOTATION m SYSTEM 'm'><!NOTATION n SYSTEM 'n'><!ATTLIST a "
           "c CDATA #IMPLIED i ID #IMPLIED r IDREF #IMPLIED s IDREFS #IMPLIED e ENTITY #IMPLIED "
           "f ENTITIES #IMPLIED t NMTOKEN #IMPLIED u NMTOKENS #IMPLIED o ( x | y ) 'x' "
           "n NOTATION ( m | n ) #FIXED 'n'>]>"
           "<a c='1' i='2' r='3' s=' 4  5 ' e='6' f='7' t=' 8 ' u='9' v=' 0 '/>",
       .events = {"startDTD(a, , )", "notationDecl(m, , m)", "notationDecl(n, , n)",
                  "attributeDecl(a, c, CDATA, #IMPLIED, )", "attributeDecl(a, i, ID, #IMPLIED, )",
                  "attributeDecl(a, r, IDREF, #IMPLIED, )",
                  "attributeDecl(a, s, IDREFS, #IMPLIED, )",
                  "attributeDecl(a, e, ENTITY, #IMPLIED, )",
                  "attributeDecl(a, f, ENTITIES, #IMPLIED, )",
                  "attributeDecl(a, t, NMTOKEN, #IMPLIED, )",
                  "attributeDecl(a, u, NMTOKENS, #IMPLIED, )", "attributeDecl(a, o, (x|y), , x)",
                  "attributeDecl(a, n, NOTATION (m|n), #FIXED, n)", "endDTD()",
                  "startElement(, a, a, [{, c, c, CDATA, 1}, {, i, i, ID, 2}, {, r, r, IDREF, 3}, "
                  "{, s, s, IDREFS, 4 5}, {, e, e, ENTITY, 6}, {, f, f, ENTITIES, 7}, {, t, t, "
                  "NMTOKEN, 8}, {, u, u, NMTOKENS, 9}, {, v, v, CDATA,  0 }, {, o, o, NMTOKEN, x}, "
                  "{, n, n, NOTATION, n}])",
                  "endElement(, a, a)"}},
      {.name = "by the qualified names of element and attribute",
       .text = "<!DOCTYPE p:a [<!ATTLIST p:a q:x ID #IMPLIED xmlns:p NMTOKEN #FIXED 'u'>]>"
               "<p:a xmlns:q='v' q:x='1'><a xmlns:p='u' q:x='2' x='3'/></p:a>",
       .events = {"startDTD(p:a, , )", "attributeDecl(p:a, q:x, ID, #IMPLIED, )",
                  "attributeDecl(p:a, xmlns:p, NMTOKEN, #FIXED, u)", "endDTD()",
                  "startPrefixMapping(q, v)", "startPrefixMapping(p, u)",
                  "startElement(u, a, p:a, [{, , xmlns:q, CDATA, v}, {, , xmlns:p, NMTOKEN, u}, "
                  "{v, x, q:x, ID, 1}])",
                  "startPrefixMapping(p, u)",
                  "startElement(, a, a, [{, , xmlns:p, CDATA, u}, {v, x, q:x, CDATA, 2}, {, x, x, "
                  "CDATA, 3}])",
                  "endElement(, a, a)", "endPrefixMapping(p)", "endElement(u, a, p:a)",
                  "endPrefixMapping(p)", "endPrefixMapping(q)"},
       .features = {{features::namespacePrefixes, true}}},
      {.name = "the same position has another type in another element",
       .text = "<!DOCTYPE a [<!ATTLIST a x ID #IMPLIED>]><a x='1'><b x='2'><a x='3'/></b></a>",
       .events = {"startDTD(a, , )", "attributeDecl(a, x, ID, #IMPLIED, )", "endDTD()",
                  "startElement(, a, a, [{, x, x, ID, 1}])",
                  "startElement(, b, b, [{, x, x, CDATA, 2}])",
                  "startElement(, a, a, [{, x, x, ID, 3}])", "endElement(, a, a)",
                  "endElement(, b, b)", "endElement(, a, a)"}},
  });
}

TEST(XML10Declarations, AreForgottenWithTheirDocument) {
  EventLog log;
  XMLReader_XML10 reader;
  log.attachTo(reader);
  EXPECT_EQ("done", parseText(reader, "<!DOCTYPE a [<!ATTLIST a x ID #IMPLIED>]><a x='1'/>"));
  log.clear();
  EXPECT_EQ("done", parseText(reader, "<a x='1'/>"));
  EXPECT_EQ(wholeLog({"startElement(, a, a, [{, x, x, CDATA, 1}])", "endElement(, a, a)"}),
            log.text());
}

/// Which handlers hear of notations and entities.
TEST(XML10Declarations, NeedOnlyTheHandlerThatHearsOfThem) {
  const std::string text =
      "<!DOCTYPE a [<!NOTATION n SYSTEM 's'><!ENTITY u SYSTEM 'u' NDATA n>"
      "<!ENTITY e SYSTEM 'e'><!ENTITY i 'I'>]><a/>";
  EventLog log;
  XMLReader_XML10 reader;
  reader.setDTDHandler(&log);
  EXPECT_EQ("done", parseText(reader, text));
  EXPECT_EQ("notationDecl(n, , s)\nunparsedEntityDecl(u, , u, n)\n", log.text());
  log.clear();
  reader.setDTDHandler(nullptr);
  reader.setProperty(properties::declarationHandler, static_cast<DeclHandler*>(&log));
  EXPECT_EQ("done", parseText(reader, text));
  EXPECT_EQ("externalEntityDecl(e, , e)\ninternalEntityDecl(i, I)\n", log.text());
  log.clear();
  reader.setProperty(properties::declarationHandler, nullptr);
  EXPECT_EQ("done", parseText(reader, text));
  EXPECT_EQ("", log.text());
}

TEST(XML10Declarations, MayBeMany) {
  static constexpr int kCount = 20000;
  std::string text = "<!DOCTYPE a [";
  for (int i = 0; i < kCount; ++i) {
    const std::string number = std::to_string(i);
    text += "<!ATTLIST a x" + number + " NMTOKEN #IMPLIED><!ENTITY e" + number + " SYSTEM 's'>";
  }
  text += "]><a";
  for (int i = 0; i < kCount; ++i) text += " x" + std::to_string(i) + "='v'";
  struct Counter : ContentHandler {
    void startElement(const std::string&, const std::string&, const std::string&,
                      const Attributes& list) override {
      ASSERT_EQ(kCount, list.getLength());
      for (int i = 0; i < kCount; ++i) ASSERT_EQ("NMTOKEN", list.getType(i));
      ++elements;
    }
    int elements = 0;
  };
  Counter counter;
  XMLReader_XML10 reader;
  reader.setContentHandler(&counter);
  EXPECT_EQ("done", parseText(reader, text + "/>"));
  EXPECT_EQ(1, counter.elements);
}

/// Newer versions of expat refuse such a version themselves.
std::string refusalOf(const std::string& version) {
  const std::string document = "<?xml version='" + version + "'?><a/>";
  const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> expat(
      XML_ParserCreate(nullptr), XML_ParserFree);
  const auto size = static_cast<int>(document.size());
  if (XML_Parse(expat.get(), document.data(), size, XML_TRUE) == XML_STATUS_OK) {
    return "\"" + version + "\" is not a version of XML, 1, 1";
  }
  return XML_ErrorString(XML_GetErrorCode(expat.get())) + std::string(", ") +
         std::to_string(XML_GetErrorLineNumber(expat.get())) + ", " +
         std::to_string(XML_GetErrorColumnNumber(expat.get()) + 1);
}

TEST(XML10Declarations, OfOtherVersionsAreReadByTheRulesOfTheFirst) {
  const auto warned = [](const std::string& version) {
    return "warning(XML " + version + " is read by the rules of XML 1.0, 1, 1)";
  };
  checkXML10({
      {.name = "1.0",
       .text = "<?xml version='1.0'?><a/>",
       .events = {"startElement(, a, a, [])", "endElement(, a, a)"}},
      {.name = "1.1: NEL is no line end, and not escaped",
       .text = "<?xml version='1.1'?><a>\xC2\x85</a>",
       .events = {warned("1.1"), "startElement(, a, a, [])", "characters(\xC2\x85)",
                  "endElement(, a, a)"}},
      {.name = "1.1: a control character may not even be referred to",
       .text = "<?xml version=\"1.1\"?>\n<a>&#1;</a>",
       .events = {warned("1.1"), "startElement(, a, a, [])"},
       .failure = "reference to invalid character number: &#1;, 2, 4"},
      {.name = "1.1: no prefix is undeclared",
       .text = "<?xml version='1.1'?><a xmlns:p='u'><b xmlns:p=''/></a>",
       .events = {warned("1.1"), "startPrefixMapping(p, u)", "startElement(, a, a, [])"},
       .failure = "must not undeclare prefix: \"p\", 1, 37"},
      {.name = "1.7",
       .text = "<?xml version='1.7' standalone='yes'?><a/>",
       .events = {warned("1.7"), "startElement(, a, a, [])", "endElement(, a, a)"}},
      {.name = "of an external entity",
       .text = "<!DOCTYPE a [<!ENTITY e SYSTEM 'e'>]><a>&e;</a>",
       .events = {"startDTD(a, , )", "externalEntityDecl(e, , e)", "endDTD()",
                  "startElement(, a, a, [])", "resolveEntity(, e)", "startEntity(e)",
                  "characters(x)", "endEntity(e)", "endElement(, a, a)"},
       .entities = {{"e", "<?xml version='1.1' encoding='UTF-8'?>x"}}},
      {.name = "2.0", .text = "<?xml version='2.0'?><a/>", .failure = refusalOf("2.0")},
      {.name = "no digits", .text = "<?xml version='1.'?><a/>", .failure = refusalOf("1.")},
      {.name = "more than digits",
       .text = "<?xml version='1.0a'?><a/>",
       .failure = refusalOf("1.0a")},
  });
}

TEST(XML10Declarations, OfOtherVersionsNeedNoErrorHandler) {
  XMLReader_XML10 reader;
  EXPECT_EQ("done", parseText(reader, "<?xml version='1.1'?><a/>"));
  // What the handler of the warning throws ends the document.
  EventLog log;
  log.attachTo(reader);
  log.beforeEvent = [](std::size_t number) {
    if (number == 2) throw 42;
  };
  EXPECT_EQ("int(42)", parseText(reader, "<?xml version='1.1'?><a/>"));
}

}  // namespace
