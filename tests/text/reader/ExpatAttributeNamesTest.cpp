#include <gtest/gtest.h>

#include "TextReaderSupport.h"

namespace {

/// The names of an attribute with prefix p.
struct Row {
  const char* uri;
  const char* localName;
  const char* reported;  ///< localName, qName
};

const Row kRows[] = {
    // As long as the namespace name.
    {"u", "a", "a, p:a"},
    {"uv", "ab", "ab, p:ab"},
    {"urn:example", "abcdefghijk", "abcdefghijk, p:abcdefghijk"},
    // Longer.
    {"u", "ab", "ab, p:ab"},
    {"u", "longname", "longname, p:longname"},
    {"urn:example", "abcdefghijkl", "abcdefghijkl, p:abcdefghijkl"},
    // Shorter.
    {"uv", "a", "a\\np, a\\np"},
    {"uvw", "ab", "ab\\np, ab\\np"},
    {"urn:example", "abcdefghij", "abcdefghij\\np, abcdefghij\\np"},
    {"urn:example", "a", "a\\np, a\\np"},
    // It is octets that count: ö has two.
    {"ö", "a", "a\\np, a\\np"},
    {"ö", "ab", "ab, p:ab"},
    {"ö", "ä", "ä, p:ä"},
    {"ab", "ä", "ä, p:ä"},
    {"a", "ä", "ä, p:ä"},
    {"abc", "ä", "ä\\np, ä\\np"},
};

TEST(ExpatAttributeNames, AreSplitOnlyFromTheLengthOfTheNamespaceNameOn) {
  for (const Row& row : kRows) {
    const std::string uri = row.uri;
    const std::string localName = row.localName;
    SCOPED_TRACE(uri + " " + localName);
    EventLog log;
    Tavrin::XMLReader_Expat reader;
    log.attachTo(reader);
    // The element has the same name, and is always split.
    EXPECT_EQ("done", parseText(reader, "<p:" + localName + " xmlns:p='" + uri +
                                            "' p:" + localName + "='1' " + localName + "='2'/>"));
    const std::string elementNames = uri + ", " + localName + ", p:" + localName;
    EXPECT_EQ(wholeLog({"startPrefixMapping(p, " + uri + ")",
                        "startElement(" + elementNames + ", [{" + uri + ", " + row.reported +
                            ", CDATA, 1}, {, " + localName + ", " + localName + ", CDATA, 2}])",
                        "endElement(" + elementNames + ")", "endPrefixMapping(p)"}),
              log.text());
  }
}

TEST(ExpatAttributeNames, OfDefaultAttributesAreSplitLikeWrittenOnes) {
  EventLog log;
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  EXPECT_EQ("done", parseText(reader,
                              "<!DOCTYPE a [<!ATTLIST a xmlns:p CDATA 'uv' p:x CDATA '1' "
                              "p:xy CDATA '2'>]><a/>"));
  EXPECT_EQ(wholeLog({"startDTD(a, , )", "endDTD()", "startPrefixMapping(p, uv)",
                      "startElement(, a, a, [{uv, x\\np, x\\np, CDATA, 1}, "
                      "{uv, xy, p:xy, CDATA, 2}])",
                      "endElement(, a, a)", "endPrefixMapping(p)"}),
            log.text());
}

TEST(ExpatAttributeNames, OfOneElementAreSplitEachForItself) {
  EventLog log;
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  EXPECT_EQ("done", parseText(reader,
                              "<a xmlns:p='u' xmlns:long='uvw' p:x='1' long:x='2' long:xyz='3' "
                              "xml:space='preserve'/>"));
  EXPECT_EQ(wholeLog({"startPrefixMapping(p, u)", "startPrefixMapping(long, uvw)",
                      "startElement(, a, a, [{u, x, p:x, CDATA, 1}, "
                      "{uvw, x\\nlong, x\\nlong, CDATA, 2}, {uvw, xyz, long:xyz, CDATA, 3}, "
                      "{http://www.w3.org/XML/1998/namespace, space\\nxml, space\\nxml, CDATA, "
                      "preserve}])",
                      "endElement(, a, a)", "endPrefixMapping(long)", "endPrefixMapping(p)"}),
            log.text());
}

TEST(ExpatAttributeNames, AreFoundAsTheyAreReported) {
  struct Lookup : Tavrin::ContentHandler {
    void startElement(const std::string&, const std::string&, const std::string&,
                      const Tavrin::Attributes& attributes) override {
      indexes = {attributes.getIndex("p:x"),      attributes.getIndex("x\np"),
                 attributes.getIndex("uv", "x"),  attributes.getIndex("uv", "x\np"),
                 attributes.getIndex("uv", "xy"), attributes.getIndex("p:xy")};
      type = attributes.getType("x\np");
      value = attributes.getValue("uv", "xy");
    }
    std::vector<int> indexes;
    std::string type;
    std::string value;
  };
  Lookup lookup;
  Tavrin::XMLReader_Expat reader;
  reader.setContentHandler(&lookup);
  EXPECT_EQ("done", parseText(reader, "<a xmlns:p='uv' p:x='1' p:xy='2'/>"));
  EXPECT_EQ((std::vector<int>{-1, 0, -1, 0, 1, 1}), lookup.indexes);
  EXPECT_EQ("CDATA", lookup.type);
  EXPECT_EQ("2", lookup.value);
}

}  // namespace
