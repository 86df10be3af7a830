#include <gtest/gtest.h>

#include "XML10ReaderSupport.h"

namespace {

using namespace Tavrin;

std::string declared(const std::string& encoding) {
  return "<?xml version='1.0' encoding='" + encoding + "'?>";
}

TEST(XML10Encodings, OfOneOctetACharacterAreRead) {
  checkXML10({
      {.name = "ISO-8859-2, also in names and attributes",
       .text = declared("ISO-8859-2") + "<\xB1 \xEA='\xBF'>\xA3\xF3\x64\xBC</\xB1>",
       .events = {"startElement(, ą, ą, [{, ę, ę, CDATA, ż}])", "characters(Łódź)",
                  "endElement(, ą, ą)"}},
      {.name = "windows-1252",
       .text = declared("windows-1252") + "<a>\x80\x93\xE9\x94</a>",
       .events = {"startElement(, a, a, [])", "characters(€“é”)", "endElement(, a, a)"}},
      {.name = "KOI8-R, in lower case",
       .text = declared("koi8-r") + "<a>\xED\xC9\xD2</a>",
       .events = {"startElement(, a, a, [])", "characters(Мир)", "endElement(, a, a)"}},
      {.name = "ISO-8859-15",
       .text = declared("ISO-8859-15") + "<a>\xA4</a>",
       .events = {"startElement(, a, a, [])", "characters(€)", "endElement(, a, a)"}},
      {.name = "an octet that has no character in windows-1253",
       .text = declared("windows-1253") + "<a>\xE1\xFF</a>",
       .events = {"startElement(, a, a, [])", "characters(α)"},
       .failure = "not well-formed (invalid token), 1, 50"},
      {.name = "an external entity in its own encoding",
       .text = "<!DOCTYPE a [<!ENTITY e SYSTEM 'e'>]><a>ä&e;ä</a>",
       .events = {"startDTD(a, , )", "externalEntityDecl(e, , e)", "endDTD()",
                  "startElement(, a, a, [])", "characters(ä)", "resolveEntity(, e)",
                  "startEntity(e)", "characters(ш)", "endEntity(e)", "characters(ä)",
                  "endElement(, a, a)"},
       .entities = {{"e", "<?xml encoding='KOI8-R'?>\xDB"}}},
  });
}

TEST(XML10Encodings, OfExpatAreRead) {
  checkXML10({
      {.name = "UTF-8 with a byte order mark",
       .text = "\xEF\xBB\xBF" + declared("UTF-8") + "<a>ä</a>",
       .events = {"startElement(, a, a, [])", "characters(ä)", "endElement(, a, a)"}},
      {.name = "ISO-8859-1",
       .text = declared("ISO-8859-1") + "<a>\xE4</a>",
       .events = {"startElement(, a, a, [])", "characters(ä)", "endElement(, a, a)"}},
      {.name = "US-ASCII",
       .text = declared("US-ASCII") + "<a>x</a>",
       .events = {"startElement(, a, a, [])", "characters(x)", "endElement(, a, a)"}},
      {.name = "UTF-16, little-endian",
       .text = std::string("\xFF\xFE<\0a\0>\0\xE4\0<\0/\0a\0>\0", 18),
       .events = {"startElement(, a, a, [])", "characters(ä)", "endElement(, a, a)"}},
      {.name = "UTF-16, big-endian",
       .text = std::string("\xFE\xFF\0<\0a\0>\x20\xAC\0<\0/\0a\0>", 18),
       .events = {"startElement(, a, a, [])", "characters(€)", "endElement(, a, a)"}},
  });
}

// Whatever it is called, with characters of one to four octets.
TEST(XML10Encodings, OfUTF8HaveManyNames) {
  const std::string content = "<ä>€\xF0\x9F\x98\x80\xF4\x8F\xBF\xBD</ä>";
  const EventLog::Lines events = {"startElement(, ä, ä, [])",
                                  "characters(€\xF0\x9F\x98\x80\xF4\x8F\xBF\xBD)",
                                  "endElement(, ä, ä)"};
  const std::string names[] = {"utf8", "UTF8", "Utf8", "ISO-IR-193", "utf-8", "UTF-8"};
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    checkXML10({
        {.name = "declared", .text = declared(name) + content, .events = events},
        {.name = "with a byte order mark",
         .text = "\xEF\xBB\xBF" + declared(name) + content,
         .events = events},
        {.name = "with blanks and all",
         .text = "<?xml\tversion = \"1.0\"\n encoding\r=\n\"" + name + "\" standalone='yes' ?>" +
                 content,
         .events = events},
    });
  }
  checkXML10({
      {.name = "in an external entity",
       .text = "<!DOCTYPE a [<!ENTITY e SYSTEM 'e'>]><a>&e;</a>",
       .events = {"startDTD(a, , )", "externalEntityDecl(e, , e)", "endDTD()",
                  "startElement(, a, a, [])", "resolveEntity(, e)", "startEntity(e)",
                  "characters(\xF0\x9F\x98\x80)", "endEntity(e)", "endElement(, a, a)"},
       .entities = {{"e", "<?xml encoding='utf8'?>\xF0\x9F\x98\x80"}}},
      {.name = "which says nothing of what is not UTF-8",
       .text = declared("utf8") + "<a>\xC3</a>",
       .events = {"startElement(, a, a, [])"},
       .failure = "not well-formed (invalid token), 1, 41"},
      {.name = "what only looks like a declaration",
       .text = "<?xmlx encoding='utf8'?><a/>",
       .events = {"processingInstruction(xmlx, encoding='utf8')", "startElement(, a, a, [])",
                  "endElement(, a, a)"}},
  });
}

TEST(XML10Encodings, AreDeclaredInOneKilobyte) {
  for (const std::size_t blanks : {0U, 900U, 1100U, 2000U}) {
    SCOPED_TRACE(blanks);
    const std::string start = "<?xml version='1.0'" + std::string(blanks, ' ');
    checkXML10({{.name = "expat's own",
                 .text = start + " encoding='UTF-8'?><ä/>",
                 .events = {"startElement(, ä, ä, [])", "endElement(, ä, ä)"}}});
  }
  checkXML10({{.name = "cut off",
               .text = "<?xml version='1.0' encoding='utf8'",
               .failure = "unclosed token: <?xml, 1, 1"},
              {.name = "cut off early", .text = "<?x", .failure = "unclosed token: <?x, 1, 1"},
              {.name = "a byte order mark alone",
               .text = "\xEF\xBB\xBF",
               .failure = "no element found, 1, 2"}});
}

TEST(XML10Encodings, AreRefusedWhereTheyAreUnknownOrOthers) {
  const std::string other = "\": the declaration is in another one, 1, 31";
  const auto refused = [](const char* name, const std::string& encoding,
                          const std::string& problem) {
    return XML10Document{.name = name,
                         .text = declared(encoding) + "<a/>",
                         .failure = "unknown encoding \"" + encoding + problem};
  };
  checkXML10({
      refused("a name that nobody knows", "no-such-encoding", "\", 1, 31"),
      // Who has read these declarations knows that they are wrong.
      refused("four octets a character", "UTF-32", other),
      refused("other octets for ASCII", "IBM037", other),
  });
}

TEST(XML10Encodings, AreNamedWhereAnEntityHasThem) {
  checkXML10({
      {.name = "in an external entity",
       .text = "<!DOCTYPE a [<!ENTITY e SYSTEM 's'>]><a>&e;</a>",
       .events = {"startDTD(a, , )", "externalEntityDecl(e, , s)", "endDTD()",
                  "startElement(, a, a, [])", "resolveEntity(, s)", "startEntity(e)"},
       .entities = {{"s", "<?xml encoding='EUC-XX'?>x"}},
       .failure = "unknown encoding \"EUC-XX\" (in the entity e, \"s\"), 1, 17"},
  });
}

}  // namespace
