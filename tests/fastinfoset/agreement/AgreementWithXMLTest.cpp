#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "AgreementLog.h"
#include "EventLog.h"
#include "FIWriterProbe.h"
#include "HexOctets.h"
#include "RandomDocuments.h"
#include "WhatIsThrown.h"

// Documents that go from XML text to Fast Infoset and back.

namespace agreement {
namespace {

using namespace Tavrin;

std::string converted(const std::string& document, const char* from, const char* to) {
  const std::unique_ptr<XMLReader> reader = XMLReaderFactory::createXMLReader(from);
  const std::unique_ptr<XMLWriter> writer = XMLWriterFactory::createXMLWriter(to);
  std::istringstream in(document);
  std::ostringstream out;
  writer->setOutputStream(&out);
  connect(*reader, *writer);
  reader->parse(in);
  return out.str();
}

std::string toFI(const std::string& xml) { return converted(xml, "Expat", "FI"); }

std::string toXML(const std::string& octets) { return converted(octets, "FI", "XML"); }

/// The events of a document, without that of the locator.
std::string eventsOf(const std::string& document, const char* from) {
  EventLog log;
  const std::unique_ptr<XMLReader> reader = XMLReaderFactory::createXMLReader(from);
  log.attachTo(*reader);
  log.attachDeclarationsTo(*reader);
  std::istringstream in(document);
  reader->parse(in);
  EventLog::Lines lines = log.lines();
  lines.erase(std::remove(lines.begin(), lines.end(), "setDocumentLocator()"), lines.end());
  return join(lines);
}

std::string repeated(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

/// Documents of which nothing changes.
const std::vector<std::string> kUnchanged = {
    "<r/>",
    "<r></r>",
    "<?xml version='1.0' encoding='UTF-8' standalone='yes'?>\n<r/>\n",
    "<r>text</r>",
    "<r>a<e/>b<e></e>c</r>",
    "<r><a><b><c><d/></c></b></a></r>",
    "<r>" + repeated("<e>", 50) + repeated("</e>", 50) + "</r>",
    "<r>" + repeated("<e a='1'>x</e>\n", 50) + "</r>",
    "<r a='1' b='22' c='' d='1234567' e='12345678'/>",
    "<r a='&lt;&amp;&quot;&apos;&gt;'>&lt;&amp;]]&gt;&#65;&#x20AC;</r>",
    "<r a='&#10;'>\n \n</r>",
    "<r>caf\xC3\xA9 \xE2\x82\xAC \xF0\x9D\x84\x9E</r>",
    "<?xml version='1.0' encoding='ISO-8859-1'?><r a='\xE9'>\xE9</r>",
    "<!--before--><?t d?><r><!--in--><?t d?><?u?></r><!--after--><?t  d ?>",
    "<r><!-- a - b --><!----></r>",
    "<r xmlns='urn:x'/>",
    "<r xmlns='urn:x'><e xmlns='urn:y'/><e/></r>",
    "<p:r xmlns:p='urn:x'><p:e/><e/></p:r>",
    "<r><p:e xmlns:p='urn:x'/><p:e xmlns:p='urn:x'/><p:e xmlns:p='urn:y'/></r>",
    "<r xmlns:p='u' p:name='1'/>",
    "<r xmlns:p='u'><e p:name='1'/><e p:name='1' name='1'/></r>",
    "<r><![CDATA[<&]]></r>",
    "<r><e/><![CDATA[a]]><e/><![CDATA[a]]></r>",
    "<r>" + std::string(6, 'x') + "<e/>" + std::string(7, 'x') + "<e/>" + std::string(258, 'x') +
        "<e/>" + std::string(259, 'x') + "</r>",
    "<r a='" + std::string(264, 'x') + "' b='" + std::string(265, 'x') + "'/>",
    "<" + std::string(321, 'r') + "/>",
    "<r>" + std::string(100000, 'x') + "</r>",
};

TEST(AgreementWithXML, HoldsEventForEvent) {
  for (const std::string& xml : kUnchanged) {
    SCOPED_TRACE(xml.substr(0, 100));
    EXPECT_EQ(eventsOf(toFI(xml), "FI"), eventsOf(xml, "Expat"));
  }
}

TEST(AgreementWithXML, HoldsOctetForOctetThereAndBack) {
  for (const std::string& xml : kUnchanged) {
    SCOPED_TRACE(xml.substr(0, 100));
    const std::string octets = toFI(xml);
    EXPECT_TRUE(toFI(toXML(octets)) == octets);
  }
}

/// A document of which something changes, and what is left.
struct Changed {
  const char* xml;
  EventLog::Lines events;
};

const std::vector<Changed> kChanged = {
    // The document type, and all white space that is known to mean nothing.
    {"<!DOCTYPE r [<!ELEMENT r (e*)><!ATTLIST r a CDATA 'd'>"
     "<!ENTITY i 'v'><!--in the DTD-->]><r><e>&i;</e></r>",
     {"comment(in the DTD)", "startElement(, r, r, [{, a, a, CDATA, d}])",
      "startElement(, e, e, [])", "characters(v)", "endElement(, e, e)", "endElement(, r, r)"}},
    // Text in front of a section, and sections without text.
    {"<r>a<![CDATA[b]]>c</r>",
     {"startElement(, r, r, [])", "startCDATA()", "characters(ab)", "endCDATA()", "characters(c)",
      "endElement(, r, r)"}},
    {"<r><![CDATA[]]><e/><![CDATA[]]></r>",
     {"startElement(, r, r, [])", "startElement(, e, e, [])", "endElement(, e, e)",
      "endElement(, r, r)"}},
    // The order in which several declarations end.
    {"<r xmlns:a='u' xmlns:b='v'/>",
     {"startPrefixMapping(a, u)", "startPrefixMapping(b, v)", "startElement(, r, r, [])",
      "endElement(, r, r)", "endPrefixMapping(a)", "endPrefixMapping(b)"}},
};

TEST(AgreementWithXML, IsAboutWhatIsLeft) {
  for (const Changed& changed : kChanged) {
    SCOPED_TRACE(changed.xml);
    EXPECT_EQ(eventsOf(toFI(changed.xml), "FI"),
              "startDocument()\n" + join(changed.events) + "endDocument()\n");
  }
}

TEST(AgreementWithXML, ChangesNothingMoreOnTheSecondPass) {
  for (const Changed& changed : kChanged) {
    SCOPED_TRACE(changed.xml);
    const std::string first = toFI(changed.xml);
    const std::string second = toFI(toXML(first));
    EXPECT_EQ(eventsOf(second, "FI"), eventsOf(first, "FI"));
    EXPECT_EQ(EventLog::showOctets(toFI(toXML(second))), EventLog::showOctets(second));
  }
}

TEST(AgreementWithXML, KeepsOfAnEmptySectionAFilledUpTerminatorUntilTheSecondPass) {
  const std::string first = toFI("<r><e/><![CDATA[]]></r>");
  EXPECT_EQ(EventLog::showOctets(first), writer_test::document("3C 00 'r' 3C 00 'e' F0 FF"));
  EXPECT_EQ(EventLog::showOctets(toFI(toXML(first))),
            writer_test::document("3C 00 'r' 3C 00 'e' FF F0"));
}

TEST(AgreementWithXML, LosesWhatTheTextWriterDoesNotEscapeOnceOnly) {
  // Text has no way to keep a carriage return, attributes none to keep a tab.
  const std::string first = toFI("<r a='x&#9;y&#13;z'>a&#13;b</r>");
  const std::string second = toFI(toXML(first));
  EXPECT_EQ(
      EventLog::showOctets(first),
      writer_test::document("7C 00 'r' 78 00 'a' 44 'x' 09 'y' 0D 'z' F0 92 00 'a' 0D 'b' FF"));
  EXPECT_EQ(EventLog::showOctets(second),
            writer_test::document("7C 00 'r' 78 00 'a' 44 'x y z' F0 92 00 'a' 0A 'b' FF"));
  EXPECT_EQ(EventLog::showOctets(toFI(toXML(second))), EventLog::showOctets(second));
}

TEST(AgreementWithXML, MakesTypedContentText) {
  writer_test::Probe writer;
  writer.startDocument();
  EncodingAlgorithmAttributesImpl list;
  list.addAttribute("", "a", "a", "CDATA", "", 2,
                    std::make_unique<ShortData>(std::vector<short>{1, -2}));
  writer.startElement("", "r", "r", list);
  writer.bytes("Man");
  writer.comment("");
  writer.doubles({1.5, 1e-5});
  writer.endElement("", "r", "r");
  writer.endDocument();
  const std::string xml = toXML(writer.output.text());
  EXPECT_EQ(xml, "<?xml version=\"1.0\" encoding=\"UTF-8\"?><r a='1 -2'>TWFu<!---->1.5 1e-05</r>");
  const std::string octets = toFI(xml);
  EXPECT_EQ(EventLog::showOctets(octets),
            writer_test::document("7C 00 'r' 78 00 'a' 43 '1 -2' F0 92 01 'TWFu' E2 FF"
                                  "82 06 '1.5 1e-05' FF"));
  EXPECT_EQ(EventLog::showOctets(toFI(toXML(octets))), EventLog::showOctets(octets));
}

TEST(AgreementWithXML, IsLostForTheSeventeenthShortTextThatIsRepeated) {
  std::string xml = "<r>";
  for (char c = 'a'; c <= 'q'; ++c) xml += std::string("<e>") + c + "</e>";
  const std::string sixteen = xml + "<e>p</e></r>";
  const std::string seventeen = xml + "<e>q</e></r>";
  EXPECT_EQ(eventsOf(toFI(sixteen), "FI"), eventsOf(sixteen, "Expat"));
  EXPECT_EQ(thrown([&] { eventsOf(toFI(seventeen), "FI"); }),
            "SAXException: Unexpected end of document");
}

TEST(AgreementWithXML, KeepsTheNamesThatTheTextReaderDoesNotSplit) {
  // An attribute whose local name is shorter than its namespace name comes in one piece, as one
  // local name.
  EXPECT_EQ(EventLog::showOctets(toFI("<r xmlns:p='urn:x' p:a='1'/>")),
            writer_test::document("78 CF 00 'p' 04 'urn:x' F0 3C 00 'r'"
                                  "79 81 02 'a' 0A 'p' 40 '1' FF F0"));
  EXPECT_EQ(EventLog::showOctets(toFI("<r xml:lang='en'/>")),
            writer_test::document("7C 00 'r' 79 80 07 'lang' 0A 'xml' 41 'en' FF F0"));
}

/// A document read and written again with its types.
std::string copied(const std::string& octets) {
  std::istringstream in(octets);
  std::ostringstream out;
  XMLReader_FI reader;
  XMLWriter_FI writer;
  writer.setOutputStream(&out);
  connect(reader, writer);
  reader.parse(in);
  return out.str();
}

TEST(AgreementOfACopy, IsOctetForOctet) {
  for (std::uint64_t seed = 1; seed <= 1000; ++seed) {
    std::ostringstream stream;
    XMLWriter_FI writer;
    writer.setOutputStream(&stream);
    sendRandomDocument(seed, receiverOf(writer), true);
    const std::string octets = stream.str();
    ASSERT_TRUE(copied(octets) == octets) << "seed " << seed;
  }
}

}  // namespace
}  // namespace agreement
