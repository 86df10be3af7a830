#include <gtest/gtest.h>

#include "XML10ReaderSupport.h"

namespace {

using namespace Tavrin;

/// What a warning says of a reference.
std::string lost(const std::string& entity, const std::string& position,
                 const std::string& place = "an attribute value", const std::string& inside = "") {
  return "warning(The entity \"" + entity + "\" was not read: a reference to it in " + place +
         " is lost" + inside + ", " + position + ")";
}

TEST(XML10Losses, OfReferencesInAttributeValuesAreWarnedOf) {
  checkXML10({
      {.name = "the external subset is not read",
       .text = "<!DOCTYPE a SYSTEM 'd'>\n<a\n b='1&x;2' c='&lt;&#38;&y;'><b d='&amp;'/></a>",
       .events = {"startDTD(a, , d)", "skippedEntity([dtd])", "endDTD()",
                  "startElement(, a, a, [{, b, b, CDATA, 12}, {, c, c, CDATA, <&}])",
                  lost("x", "3, 6"), lost("y", "3, 24"),
                  "startElement(, b, b, [{, d, d, CDATA, &}])", "endElement(, b, b)",
                  "endElement(, a, a)"},
       .resolves = false},
      {.name = "an external parameter entity is not read, and names are not ASCII",
       .text = "<!DOCTYPE a [<!ENTITY % q SYSTEM 'q'>%q;]><a b='\xC3\xA4&\xC3\xA4;&\xC3\xA4;'/>",
       .events = {"startDTD(a, , )", "externalEntityDecl(%q, , q)", "skippedEntity(%q)", "endDTD()",
                  "startElement(, a, a, [{, b, b, CDATA, \xC3\xA4}])", lost("\xC3\xA4", "1, 50"),
                  lost("\xC3\xA4", "1, 53"), "endElement(, a, a)"},
       .resolves = false},
      {.name = "all is read, and the entity is in none of it",
       .text = "<!DOCTYPE a SYSTEM 'd'><a b='&x;&y;'/>",
       .events = {"startDTD(a, , d)", "resolveEntity(, d)", "startEntity([dtd])",
                  "internalEntityDecl(x, X)", "endEntity([dtd])", "endDTD()",
                  "startElement(, a, a, [{, b, b, CDATA, X}])", lost("y", "1, 33"),
                  "endElement(, a, a)"},
       .entities = {{"d", "<!ENTITY x 'X'>"}}},
      {.name = "an internal parameter entity, which may be followed by what is not read",
       .text = "<!DOCTYPE a [<!ENTITY % i ''>%i;]><a b='&x;'/>",
       .events = {"startDTD(a, , )", "internalEntityDecl(%i, )", "endDTD()",
                  "startElement(, a, a, [{, b, b, CDATA, }])", lost("x", "1, 41"),
                  "endElement(, a, a)"}},
      {.name = "a parameter entity that nothing declares",
       .text = "<!DOCTYPE a [%i;]><a b='&x;'/>",
       .events = {"startDTD(a, , )", "skippedEntity(%i)", "endDTD()",
                  "startElement(, a, a, [{, b, b, CDATA, }])", lost("x", "1, 25"),
                  "endElement(, a, a)"}},
      {.name = "in the text of entities that are declared",
       .text = "<!DOCTYPE a SYSTEM 'd' [<!ENTITY v '1&w;2'><!ENTITY w '&u;&lt;&x;'>"
               "<!ENTITY u ''>]><a b='&v;' c='&u;&w;'/>",
       .events = {"startDTD(a, , d)", "internalEntityDecl(v, 1&w;2)",
                  "internalEntityDecl(w, &u;&lt;&x;)", "internalEntityDecl(u, )",
                  "skippedEntity([dtd])", "endDTD()",
                  "startElement(, a, a, [{, b, b, CDATA, 1<2}, {, c, c, CDATA, <}])",
                  lost("x", "1, 90"), lost("x", "1, 101"), "endElement(, a, a)"},
       .resolves = false},
      {.name = "in a tag inside of an internal entity: the place is that of the reference",
       .text = "<!DOCTYPE a SYSTEM 'd' [<!ENTITY v '<b c=\"&#38;amp;&x;\"/>'>]>\n<a>&v;</a>",
       .events = {"startDTD(a, , d)", "internalEntityDecl(v, <b c=\"&amp;&x;\"/>)",
                  "skippedEntity([dtd])", "endDTD()", "startElement(, a, a, [])",
                  "startElement(, b, b, [{, c, c, CDATA, &}])", lost("x", "2, 4"),
                  "endElement(, b, b)", "endElement(, a, a)"},
       .resolves = false},
      {.name = "in an external entity",
       .text = "<!DOCTYPE a SYSTEM 'd' [<!ENTITY e SYSTEM 'e'>]>\n<a>&e;</a>",
       .events = {"startDTD(a, , d)", "externalEntityDecl(e, , e)", "resolveEntity(, d)",
                  "skippedEntity([dtd])", "endDTD()", "startElement(, a, a, [])",
                  "resolveEntity(, e)", "startEntity(e)", "characters(\\n)",
                  "startElement(, b, b, [{, c, c, CDATA, 1}])",
                  lost("x", "2, 8", "an attribute value", " (in the entity e, \"e\")"),
                  "endElement(, b, b)", "endEntity(e)", "endElement(, a, a)"},
       .entities = {{"e", "\n<b c='1&x;'/>"}}},
      {.name = "in a namespace declaration",
       .text = "<!DOCTYPE a SYSTEM 'd'><a xmlns='u&x;'/>",
       .events = {"startDTD(a, , d)", "skippedEntity([dtd])", "endDTD()", "startPrefixMapping(, u)",
                  "startElement(u, a, a, [])", lost("x", "1, 35"), "endElement(u, a, a)",
                  "endPrefixMapping()"},
       .resolves = false},
      {.name = "line ends of every kind",
       .text = "<!DOCTYPE a SYSTEM 'd'><a\r\nb='\r&x;\n\n &x;'/>",
       .events = {"startDTD(a, , d)", "skippedEntity([dtd])", "endDTD()",
                  "startElement(, a, a, [{, b, b, CDATA,     }])", lost("x", "3, 1"),
                  lost("x", "5, 2"), "endElement(, a, a)"},
       .resolves = false},
  });
}

TEST(XML10Losses, AreFoundInEveryEncoding) {
  const auto events = [](const std::string& position) {
    return EventLog::Lines{"startDTD(a, , d)",
                           "skippedEntity([dtd])",
                           "endDTD()",
                           "startElement(, a, a, [{, b, b, CDATA, \xC3\xA4}])",
                           lost("\xC3\xB6", position),
                           "endElement(, a, a)"};
  };
  const auto text = [](const std::string& encoding) {
    const std::string document = "<?xml version='1.0' encoding='" + encoding + "'?>";
    return document + std::string(49 - document.size(), ' ') +
           "<!DOCTYPE a SYSTEM 'd'><a b='\xE4&\xF6;'/>";
  };
  const auto wide = [&](bool isLittleEndian) {
    std::string octets;
    for (const char c : (isLittleEndian ? "\xFF" : "\xFE") +
                            ((isLittleEndian ? "\xFE" : "\xFF") + text("UTF-16"))) {
      const bool isMark = octets.size() < 2;
      if (!isMark && !isLittleEndian) octets += '\0';
      octets += c;
      if (!isMark && isLittleEndian) octets += '\0';
    }
    return octets;
  };
  checkXML10({
      // expat counts the mark in front of UTF-16 as a column.
      {.name = "Latin-1", .text = text("ISO-8859-1"), .events = events("1, 80"), .resolves = false},
      {.name = "through a table",
       .text = text("ISO-8859-15"),
       .events = events("1, 80"),
       .resolves = false},
      {.name = "UTF-16, big-endian",
       .text = wide(false),
       .events = events("1, 81"),
       .resolves = false},
      {.name = "UTF-16, little-endian",
       .text = wide(true),
       .events = events("1, 81"),
       .resolves = false},
  });
}

TEST(XML10Losses, InDefaultsOfAttributesAreWarnedOf) {
  const std::string place = "the default of an attribute";
  checkXML10({
      {.name = "in the internal subset",
       .text =
           "<!DOCTYPE a SYSTEM 'd' [<!ATTLIST a b CDATA\n 'x&u;y'><!ATTLIST a b CDATA '&v;'>]><a/>",
       .events = {"startDTD(a, , d)", lost("u", "2, 4", place), "attributeDecl(a, b, CDATA, , xy)",
                  "skippedEntity([dtd])", "endDTD()", "startElement(, a, a, [{, b, b, CDATA, xy}])",
                  "endElement(, a, a)"},
       .resolves = false},
      {.name = "in the external subset",
       .text = "<!DOCTYPE a SYSTEM 'd'><a/>",
       .events = {"startDTD(a, , d)", "resolveEntity(, d)", "startEntity([dtd])",
                  lost("\xC3\xB6", "2, 30", place, " (in the entity [dtd], \"d\")"),
                  "attributeDecl(a, b, CDATA, #FIXED, xy)", "endEntity([dtd])", "endDTD()",
                  "startElement(, a, a, [{, b, b, CDATA, xy}])", "endElement(, a, a)"},
       .entities = {{"d",
                     "<?xml encoding='ISO-8859-1'?>\n<!ATTLIST a b CDATA #FIXED \"x&\xF6;y\">"}}},
      {.name = "in an internal parameter entity: the place is that of the reference",
       .text = "<!DOCTYPE a [<!ENTITY % i \"<!ATTLIST a b CDATA 'x&u;y'><!ATTLIST a c CDATA "
               "''>\">\n%i;]><a/>",
       .events = {"startDTD(a, , )",
                  "internalEntityDecl(%i, <!ATTLIST a b CDATA 'x&u;y'><!ATTLIST a c CDATA ''>)",
                  lost("u", "2, 1", place), "attributeDecl(a, b, CDATA, , xy)",
                  "attributeDecl(a, c, CDATA, , )", "endDTD()",
                  "startElement(, a, a, [{, b, b, CDATA, xy}, {, c, c, CDATA, }])",
                  "endElement(, a, a)"}},
  });
}

TEST(XML10Losses, AreNoneWhereAllMustBeDeclared) {
  const std::string tag = "<a b='&x;'/>";
  checkXML10({
      {.name = "no document type", .text = tag, .failure = "undefined entity: \"x\", 1, 1"},
      {.name = "no parameter entities",
       .text = "<!DOCTYPE a [<!ENTITY y ''>]>" + tag,
       .events = {"startDTD(a, , )", "internalEntityDecl(y, )", "endDTD()"},
       .failure = "undefined entity: \"x\", 1, 30"},
      {.name = "standalone",
       .text = "<?xml version='1.0' standalone='yes'?><!DOCTYPE a SYSTEM 'd'>" + tag,
       .events = {"startDTD(a, , d)", "skippedEntity([dtd])", "endDTD()"},
       .resolves = false,
       .failure = "undefined entity: \"x\", 1, 62"},
  });
}

/// Asks the reader at each warning how many there were.
class LossCounter : public ErrorHandler {
 public:
  explicit LossCounter(XMLReader& reader) : reader_(reader) {}
  void warning(const SAXParseException&) override { counts.push_back(count()); }
  std::uint64_t count() {
    return *static_cast<std::uint64_t*>(reader_.getProperty(properties::lossCount));
  }
  std::vector<std::uint64_t> counts;

 private:
  XMLReader& reader_;
};

TEST(XML10Losses, AreCounted) {
  XMLReader_XML10 reader;
  LossCounter counter(reader);
  EXPECT_EQ(0U, counter.count());
  reader.setErrorHandler(&counter);
  EXPECT_EQ("done",
            parseText(reader, "<?xml version='1.1'?><!DOCTYPE a SYSTEM 'd'><a b='&x;&y;'/>"));
  EXPECT_EQ((std::vector<std::uint64_t>{0, 1, 2}), counter.counts);
  EXPECT_EQ(2U, counter.count());
  reader.setErrorHandler(nullptr);
  EXPECT_EQ("done", parseText(reader, "<!DOCTYPE a SYSTEM 'd'><a b='&x;'/>"));
  EXPECT_EQ(1U, counter.count());
  EXPECT_EQ("done", parseText(reader, "<a/>"));
  EXPECT_EQ(0U, counter.count());
  std::uint64_t value = 0;
  EXPECT_THROW(reader.setProperty(properties::lossCount, &value), SAXException);
}

TEST(XML10Losses, MayBeBehindAChainOfEntitiesOfAnyLength) {
  std::string text = "<!DOCTYPE a SYSTEM 'd' [";
  constexpr int kLength = 2000;
  for (int i = 0; i < kLength; ++i) {
    const std::string number = std::to_string(i);
    text += "<!ENTITY e" + number + " '&e" + std::to_string(i + 1) + ";'>";
  }
  XMLReader_XML10 reader;
  LossCounter counter(reader);
  reader.setErrorHandler(&counter);
  EXPECT_EQ("done", parseText(reader, text + "]><a b='&e0;'/>"));
  EXPECT_EQ((std::vector<std::uint64_t>{1}), counter.counts);
}

}  // namespace
