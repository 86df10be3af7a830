#include <gtest/gtest.h>

#include "XML10ReaderSupport.h"

namespace {

using namespace Tavrin;

// Namespaces in XML, sections 4 and 7.
TEST(XML10Names, AreQualifiedNamesInDeclarations) {
  const std::string wrong = "\"x:2\" is not a qualified name";
  const auto refused = [&](const std::string& declaration) {
    XMLReader_XML10 reader;
    const std::string text = "<!DOCTYPE a [" + declaration + "]><a/>";
    try {
      reader.parse(text.data(), text.size(), true);
    } catch (const SAXParseException& exception) {
      return exception.getMessage();
    }
    return std::string();
  };
  EXPECT_EQ(refused("<!ELEMENT x:2 ANY>"), wrong);
  EXPECT_EQ(refused("<!ELEMENT x (a|(b,x:2))>"), wrong);
  EXPECT_EQ(refused("<!ELEMENT x (#PCDATA|x:2)*>"), wrong);
  EXPECT_EQ(refused("<!ATTLIST x:2 a CDATA #IMPLIED>"), wrong);
  EXPECT_EQ(refused("<!ATTLIST a x:2 CDATA #IMPLIED>"), wrong);
  EXPECT_EQ(refused("<!ATTLIST a b (x:2) #IMPLIED><!ELEMENT x:y (x:a|x:b)>"), "");
  XMLReader_XML10 reader;
  const std::string text = "<!DOCTYPE x:2 [<!ELEMENT x:2 (x:3)>]><x:2/>";
  reader.setFeature(features::namespaces, false);
  EXPECT_NO_THROW(reader.parse(text.data(), text.size(), true));
  reader.setFeature(features::namespaces, true);
  EXPECT_THROW(reader.parse(text.data(), text.size(), true), SAXParseException);
}

TEST(XML10Names, AreSplitByTheirNamespaces) {
  checkXML10({
      {.name = "no namespace, no attributes",
       .text = "<a/>",
       .events = {"startElement(, a, a, [])", "endElement(, a, a)"}},
      {.name = "local names shorter than, as long as, and longer than the namespace name",
       .text = "<p:a xmlns:p='urn' p:b='1' p:bcd='2' p:bcde='3' f='4'/>",
       .events =
           {"startPrefixMapping(p, urn)",
            "startElement(urn, a, p:a, [{urn, b, p:b, CDATA, 1}, {urn, bcd, p:bcd, CDATA, 2}, "
            "{urn, bcde, p:bcde, CDATA, 3}, {, f, f, CDATA, 4}])",
            "endElement(urn, a, p:a)", "endPrefixMapping(p)"}},
      {.name = "the prefix xml",
       .text = "<a xml:lang='en' xml:space='preserve'/>",
       .events = {"startElement(, a, a, [{http://www.w3.org/XML/1998/namespace, lang, xml:lang, "
                  "CDATA, en}, {http://www.w3.org/XML/1998/namespace, space, xml:space, CDATA, "
                  "preserve}])",
                  "endElement(, a, a)"}},
      {.name = "a default namespace is not that of attributes",
       .text = "<a xmlns='urn:d' b='1'><c/></a>",
       .events = {"startPrefixMapping(, urn:d)", "startElement(urn:d, a, a, [{, b, b, CDATA, 1}])",
                  "startElement(urn:d, c, c, [])", "endElement(urn:d, c, c)",
                  "endElement(urn:d, a, a)", "endPrefixMapping()"}},
      {.name = "two prefixes of one namespace",
       .text = "<p:a xmlns:p='u' xmlns:q='u' q:x='1'><q:a p:x='2'/></p:a>",
       .events = {"startPrefixMapping(p, u)", "startPrefixMapping(q, u)",
                  "startElement(u, a, p:a, [{u, x, q:x, CDATA, 1}])",
                  "startElement(u, a, q:a, [{u, x, p:x, CDATA, 2}])", "endElement(u, a, q:a)",
                  "endElement(u, a, p:a)", "endPrefixMapping(q)", "endPrefixMapping(p)"}},
      {.name = "the same name bound to one namespace and then another",
       .text = "<r><p:a xmlns:p='u' p:x='1'/><p:a xmlns:p='v' p:x='2'/></r>",
       .events = {"startElement(, r, r, [])", "startPrefixMapping(p, u)",
                  "startElement(u, a, p:a, [{u, x, p:x, CDATA, 1}])", "endElement(u, a, p:a)",
                  "endPrefixMapping(p)", "startPrefixMapping(p, v)",
                  "startElement(v, a, p:a, [{v, x, p:x, CDATA, 2}])", "endElement(v, a, p:a)",
                  "endPrefixMapping(p)", "endElement(, r, r)"}},
      {.name = "start tags with more, fewer and other attributes than the one before",
       .text = "<r x='1' y='2'><s/><s y='3'/><s y='4' x='5' z='6'/></r>",
       .events = {"startElement(, r, r, [{, x, x, CDATA, 1}, {, y, y, CDATA, 2}])",
                  "startElement(, s, s, [])", "endElement(, s, s)",
                  "startElement(, s, s, [{, y, y, CDATA, 3}])", "endElement(, s, s)",
                  "startElement(, s, s, [{, y, y, CDATA, 4}, {, x, x, CDATA, 5}, {, z, z, CDATA, "
                  "6}])",
                  "endElement(, s, s)", "endElement(, r, r)"}},
      {.name = "duplicate by namespace",
       .text = "<a xmlns:p='u' xmlns:q='u' p:x='1' q:x='2'></a>",
       .events = {"startPrefixMapping(p, u)", "startPrefixMapping(q, u)"},
       .failure = "duplicate attribute: \"p:x\" and \"q:x\", 1, 1"},
      {.name = "unbound prefix", .text = "<p:a/>", .failure = "unbound prefix: \"p\", 1, 1"},
  });
}

TEST(XML10Names, AreTakenOutOfTheDefaultNamespace) {
  checkXML10({
      {.name = "undeclared and declared again",
       .text = "<a xmlns='u'><b xmlns=''><c xmlns='v'/></b><d/></a>",
       .events = {"startPrefixMapping(, u)", "startElement(u, a, a, [])", "startPrefixMapping(, )",
                  "startElement(, b, b, [])", "startPrefixMapping(, v)",
                  "startElement(v, c, c, [])", "endElement(v, c, c)", "endPrefixMapping()",
                  "endElement(, b, b)", "endPrefixMapping()", "startElement(u, d, d, [])",
                  "endElement(u, d, d)", "endElement(u, a, a)", "endPrefixMapping()"}},
      {.name = "undeclared where there was none",
       .text = "<a xmlns=''/>",
       .events = {"startPrefixMapping(, )", "startElement(, a, a, [])", "endElement(, a, a)",
                  "endPrefixMapping()"}},
      {.name = "a prefix cannot be undeclared (Namespaces in XML 1.0)",
       .text = "<a xmlns:p=''/>",
       .failure = "must not undeclare prefix: \"p\", 1, 1"},
  });
}

TEST(XML10Names, StayAsWrittenWithoutNamespaces) {
  checkXML10({
      {.name = "all is qualified names",
       .text = "<p:a xmlns:p='u' xmlns='v' p:x='1' y='2'><b/></p:a>",
       .events =
           {"startElement(, , p:a, [{, , xmlns:p, CDATA, u}, {, , xmlns, CDATA, v}, {, , p:x, "
            "CDATA, 1}, {, , y, CDATA, 2}])",
            "startElement(, , b, [])", "endElement(, , b)", "endElement(, , p:a)"},
       .features = {{features::namespaces, false}}},
      {.name = "names that Namespaces in XML forbids",
       .text = "<:a b:c:d='1' q:='2'/>",
       .events = {"startElement(, , :a, [{, , b:c:d, CDATA, 1}, {, , q:, CDATA, 2}])",
                  "endElement(, , :a)"},
       .features = {{features::namespaces, false}, {features::namespacePrefixes, true}}},
      {.name = "types",
       .text = "<!DOCTYPE a [<!ATTLIST a p:x ID #IMPLIED>]><a p:x='i'/>",
       .events = {"startDTD(a, , )", "attributeDecl(a, p:x, ID, #IMPLIED, )", "endDTD()",
                  "startElement(, , a, [{, , p:x, ID, i}])", "endElement(, , a)"},
       .features = {{features::namespaces, false}}},
  });
}

TEST(XML10Names, OfDeclarationsAreAttributesOnDemand) {
  const std::string text =
      "<a x='1' xmlns:p='u' xmlns='v' p:y='2'><b/><c xmlns='' xmlns:q='w'/></a>";
  checkXML10({
      {.name = "without a namespace",
       .text = text,
       .events = {"startPrefixMapping(p, u)", "startPrefixMapping(, v)",
                  "startElement(v, a, a, [{, , xmlns:p, CDATA, u}, {, , xmlns, CDATA, v}, {, x, x, "
                  "CDATA, 1}, {u, y, p:y, CDATA, 2}])",
                  "startElement(v, b, b, [])", "endElement(v, b, b)", "startPrefixMapping(, )",
                  "startPrefixMapping(q, w)",
                  "startElement(, c, c, [{, , xmlns, CDATA, }, {, , xmlns:q, CDATA, w}])",
                  "endElement(, c, c)", "endPrefixMapping(q)", "endPrefixMapping()",
                  "endElement(v, a, a)", "endPrefixMapping()", "endPrefixMapping(p)"},
       .features = {{features::namespacePrefixes, true}}},
      {.name = "in the namespace of xmlns",
       .text = "<a xmlns:p='u' xmlns='v'><b c='1'/></a>",
       .events = {"startPrefixMapping(p, u)", "startPrefixMapping(, v)",
                  "startElement(v, a, a, [{http://www.w3.org/2000/xmlns/, p, xmlns:p, CDATA, u}, "
                  "{http://www.w3.org/2000/xmlns/, xmlns, xmlns, CDATA, v}])",
                  "startElement(v, b, b, [{, c, c, CDATA, 1}])", "endElement(v, b, b)",
                  "endElement(v, a, a)", "endPrefixMapping()", "endPrefixMapping(p)"},
       .features = {{features::namespacePrefixes, true}, {features::xmlnsURIs, true}}},
      {.name = "xmlns-uris alone adds nothing",
       .text = "<a xmlns='v'/>",
       .events = {"startPrefixMapping(, v)", "startElement(v, a, a, [])", "endElement(v, a, a)",
                  "endPrefixMapping()"},
       .features = {{features::xmlnsURIs, true}}},
  });
}

TEST(XML10Names, MayHaveALineFeedInTheNamespaceName) {
  checkXML10({
      {.name = "at the end, at the front, alone, and several",
       .text = "<a xmlns='w&#10;' xmlns:p='&#xA;v' p:x='1'><p:b xmlns:q='&#10;' q:y='2'/>"
               "<r:c xmlns:r='a&#10;b&#10;c' r:z='3'/></a>",
       .events = {"startPrefixMapping(, w\\n)", "startPrefixMapping(p, \\nv)",
                  "startElement(w\\n, a, a, [{\\nv, x, p:x, CDATA, 1}])",
                  "startPrefixMapping(q, \\n)",
                  "startElement(\\nv, b, p:b, [{\\n, y, q:y, CDATA, 2}])",
                  "endElement(\\nv, b, p:b)", "endPrefixMapping(q)",
                  "startPrefixMapping(r, a\\nb\\nc)",
                  "startElement(a\\nb\\nc, c, r:c, [{a\\nb\\nc, z, r:z, CDATA, 3}])",
                  "endElement(a\\nb\\nc, c, r:c)", "endPrefixMapping(r)", "endElement(w\\n, a, a)",
                  "endPrefixMapping(p)", "endPrefixMapping()"}},
      {.name = "a written one is a blank",
       .text = "<a xmlns='w\n'/>",
       .events = {"startPrefixMapping(, w )", "startElement(w , a, a, [])", "endElement(w , a, a)",
                  "endPrefixMapping()"}},
      {.name = "in an external entity",
       .text = "<!DOCTYPE a [<!ENTITY e SYSTEM 'e'>]><a xmlns='w&#10;'>&e;</a>",
       .events = {"startDTD(a, , )", "externalEntityDecl(e, , e)", "endDTD()",
                  "startPrefixMapping(, w\\n)", "startElement(w\\n, a, a, [])",
                  "resolveEntity(, e)", "startEntity(e)", "startElement(w\\n, b, b, [])",
                  "endElement(w\\n, b, b)", "endEntity(e)", "endElement(w\\n, a, a)",
                  "endPrefixMapping()"},
       .entities = {{"e", "<b/>"}}},
      {.name = "what is largest in UTF-8",
       .text = "<a xmlns='\xF4\x8F\xBF\xBD'/>",
       .events = {"startPrefixMapping(, \xF4\x8F\xBF\xBD)",
                  "startElement(\xF4\x8F\xBF\xBD, a, a, [])", "endElement(\xF4\x8F\xBF\xBD, a, a)",
                  "endPrefixMapping()"}},
  });
}

TEST(XML10Names, OfThePrefixXmlNeedNoMapping) {
  const std::string xml = "http://www.w3.org/XML/1998/namespace";
  checkXML10({
      {.name = "not declared",
       .text = "<xml:a xml:lang='en'/>",
       .events = {"startElement(" + xml + ", a, xml:a, [{" + xml + ", lang, xml:lang, CDATA, en}])",
                  "endElement(" + xml + ", a, xml:a)"}},
      {.name = "declared, among others",
       .text = "<a xmlns:p='u' xmlns:xml='" + xml + "' xmlns:xmlx='v' xml:lang='en'/>",
       .events = {"startPrefixMapping(p, u)", "startPrefixMapping(xmlx, v)",
                  "startElement(, a, a, [{" + xml + ", lang, xml:lang, CDATA, en}])",
                  "endElement(, a, a)", "endPrefixMapping(xmlx)", "endPrefixMapping(p)"}},
      {.name = "declared, and an attribute on demand",
       .text = "<a xmlns:xml='" + xml + "'/>",
       .events = {"startElement(, a, a, [{, , xmlns:xml, CDATA, " + xml + "}])",
                  "endElement(, a, a)"},
       .features = {{features::namespacePrefixes, true}}},
  });
}

TEST(XML10Names, OfAttributesAreFoundInTheList) {
  struct Finder : ContentHandler {
    void startElement(const std::string&, const std::string&, const std::string&,
                      const Attributes& list) override {
      EXPECT_EQ(2, list.getLength());
      EXPECT_EQ(1, list.getIndex("u", "x"));
      EXPECT_EQ(0, list.getIndex("", "x"));
      EXPECT_EQ(-1, list.getIndex("v", "x"));
      EXPECT_EQ(1, list.getIndex("p:x"));
      EXPECT_EQ(-1, list.getIndex("q:x"));
      EXPECT_EQ("2", list.getValue("u", "x"));
      EXPECT_EQ("1", list.getValue("x"));
      EXPECT_EQ("CDATA", list.getType("u", "x"));
      EXPECT_EQ("CDATA", list.getType("x"));
      for (const int index : {-1, 2}) EXPECT_THROW(list.getURI(index), std::out_of_range);
      EXPECT_THROW(list.getValue("y"), std::out_of_range);
      EXPECT_THROW(list.getValue("v", "x"), std::out_of_range);
      EXPECT_THROW(list.getType("y"), std::out_of_range);
      EXPECT_THROW(list.getType("v", "x"), std::out_of_range);
      ++elements;
    }
    int elements = 0;
  };
  Finder finder;
  XMLReader_XML10 reader;
  reader.setContentHandler(&finder);
  EXPECT_EQ("done", parseText(reader, "<a xmlns:p='u' x='1' p:x='2'><b x='1' p:x='2'/></a>"));
  EXPECT_EQ(2, finder.elements);
}

// A start tag with many declarations, attributes and names costs no more than its size.
TEST(XML10Names, MayBeMany) {
  std::string text = "<a";
  static constexpr int kCount = 20000;
  for (int i = 0; i < kCount; ++i) {
    const std::string number = std::to_string(i);
    text += " xmlns:p" + number + "='u" + number + "' p" + number + ":x='" + number + "'";
  }
  struct Counter : ContentHandler {
    void startElement(const std::string&, const std::string&, const std::string&,
                      const Attributes& list) override {
      ASSERT_EQ(2 * kCount, list.getLength());
      EXPECT_EQ("xmlns:p19999", list.getQName(kCount - 1));
      EXPECT_EQ("u19999", list.getURI(2 * kCount - 1));
      EXPECT_EQ("p19999:x", list.getQName(2 * kCount - 1));
      ++elements;
    }
    int elements = 0;
  };
  Counter counter;
  XMLReader_XML10 reader;
  reader.setFeature(features::namespacePrefixes, true);
  reader.setContentHandler(&counter);
  EXPECT_EQ("done", parseText(reader, text + "/>"));
  EXPECT_EQ(1, counter.elements);
}

}  // namespace
