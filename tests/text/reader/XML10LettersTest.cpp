#include <gtest/gtest.h>

#include <Tavrin/XMLWriter_X891.h>
#include <Tavrin/XMLWriter_XML10.h>

#include <memory>

#include "XML10ReaderSupport.h"

namespace {

using namespace Tavrin;

std::string utf8(unsigned character) {
  std::string text;
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += static_cast<char>(0xC0 | character >> 6U);
    text += static_cast<char>(0x80 | (character & 0x3FU));
  } else {
    text += static_cast<char>(0xE0 | character >> 12U);
    text += static_cast<char>(0x80 | (character >> 6U & 0x3FU));
    text += static_cast<char>(0x80 | (character & 0x3FU));
  }
  return text;
}

/// A document in big-endian UTF-16, with its mark.
std::string wide(const std::u16string& text) {
  std::string octets = "\xFE\xFF";
  for (const char16_t unit : text) {
    octets += static_cast<char>(unit >> 8U);
    octets += static_cast<char>(unit & 0xFFU);
  }
  return octets;
}

constexpr char kInvalid[] = "SAXParseException(not well-formed (invalid token), ";

TEST(XML10Letters, AreThoseOfTheWriters) {
  XMLReader_XML10 reader;
  const auto reads = [&](const std::string& text) { return parseText(reader, text) == "done"; };
  const auto write = [](XMLWriter& writer, const std::string& name) {
    writer.reset();
    writer.startDocument();
    try {
      writer.startElement("", name, name, AttributesImpl());
    } catch (const SAXException&) {
      return false;
    }
    return true;
  };
  XMLWriter_XML10 text;
  XMLWriter_X891 fastInfoset;
  for (unsigned c = 0x80; c < 0x10000; ++c) {
    if (c >= 0xD800 && c < 0xE000) continue;
    for (const std::u16string& start : {std::u16string(), std::u16string(1, u'a')}) {
      const bool isRead =
          reads(wide(u"<" + start + std::u16string(1, static_cast<char16_t>(c)) + u"/>"));
      const std::string name = (start.empty() ? "" : "a") + utf8(c);
      ASSERT_EQ(isRead, reads("<" + name + "/>")) << std::hex << c;
      if (!isRead) continue;
      ASSERT_TRUE(write(text, name)) << std::hex << c;
      ASSERT_TRUE(write(fastInfoset, name)) << std::hex << c;
    }
  }
}

TEST(XML10Letters, InLatin1AreThoseOfOtherEncodings) {
  XMLReader_XML10 reader;
  for (unsigned c = 0x80; c < 0x100; ++c) {
    const std::string latin(1, static_cast<char>(c));
    for (const std::string& start : {std::string(), std::string("a")}) {
      for (const char* const encoding : {"ISO-8859-1", "iso-8859-1"}) {
        EXPECT_EQ(parseText(reader, "<" + start + utf8(c) + "/>") == "done",
                  parseText(reader, std::string("<?xml version='1.0' encoding='") + encoding +
                                        "'?><" + start + latin + "/>") == "done")
            << std::hex << c;
      }
    }
  }
}

/// Documents in ISO-8859-1, and where each goes wrong.
TEST(XML10Letters, OfEveryNameAreLookedAt) {
  struct Case {
    std::string text;
    std::string position;
  };
  const std::vector<Case> cases = {
      {"<\xAA/>", "2, 1"},
      {"<a\xB5/>", "2, 1"},
      {"<a>\n<a\xBA>", "3, 1"},
      {"<a \xAA='b'/>", "2, 1"},
      {"<p:a xmlns:p='u' p:\xAA='b'/>", "2, 1"},
      {"<a xmlns:\xAA='u'/>", "2, 1"},
      {"<?\xAA?><a/>", "2, 1"},
      {"<!DOCTYPE \xAA><a/>", "2, 12"},
      {"<!DOCTYPE a [<!ENTITY \xAA ''>]><a/>", "2, 25"},
      {"<!DOCTYPE a [<!ENTITY % \xAA ''>]><a/>", "2, 27"},
      {"<!DOCTYPE a [<!ENTITY b SYSTEM '' NDATA \xAA>]><a/>", "2, 41"},
      {"<!DOCTYPE a [<!NOTATION \xAA SYSTEM ''>]><a/>", "2, 34"},
      {"<!DOCTYPE a [<!ELEMENT \xAA ANY>]><a/>", "2, 26"},
      {"<!DOCTYPE a [<!ELEMENT a (b|\xAA)>]><a/>", "2, 30"},
      {"<!DOCTYPE a [<!ATTLIST \xAA b CDATA ''>]><a/>", "2, 34"},
      {"<!DOCTYPE a [<!ATTLIST a b (c|\xAA) 'c'>]><a/>", "2, 34"},
      {"<!DOCTYPE a SYSTEM 'd'><a>&\xAA;</a>", "2, 27"},
      {"<!DOCTYPE a SYSTEM 'd'><a b='&\xAA;'/>", "2, 30"},
      {"<!DOCTYPE a [%q;<!ENTITY \xAA ''>]><a/>", "2, 30"},
  };
  for (const Case& c : cases) {
    XMLReader_XML10 reader;
    EXPECT_EQ(kInvalid + c.position + ")",
              parseText(reader, "<?xml version='1.0' encoding='ISO-8859-1'?>\n" + c.text))
        << c.text;
  }
}

TEST(XML10Letters, MayStandElsewhere) {
  checkXML10({{.name = "text, values, comments and namespaces",
               .text = "<?xml version='1.0' encoding='ISO-8859-1'?><!--\xAA--><?t \xB5?>"
                       "<a xmlns='\xBA' b='\xAA'>\xB5\xE4</a>",
               .events = {"comment(\xC2\xAA)", "processingInstruction(t, \xC2\xB5)",
                          "startPrefixMapping(, \xC2\xBA)",
                          "startElement(\xC2\xBA, a, a, [{, b, b, CDATA, \xC2\xAA}])",
                          "characters(\xC2\xB5\xC3\xA4)", "endElement(\xC2\xBA, a, a)",
                          "endPrefixMapping()"}},
              {.name = "in an external entity alone",
               .text = "<!DOCTYPE a [<!ENTITY e SYSTEM 'e'>]><a>&e;</a>",
               .events = {"startDTD(a, , )", "externalEntityDecl(e, , e)", "endDTD()",
                          "startElement(, a, a, [])", "resolveEntity(, e)", "startEntity(e)"},
               .entities = {{"e", "<?xml encoding='ISO-8859-1'?><\xAA/>"}},
               .failure = "not well-formed (invalid token) (in the entity e, \"e\"), 1, 30"}});
}

}  // namespace
