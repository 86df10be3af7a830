#include "ReaderDocuments.h"

namespace {

enum class ByteOrder { little, big };

std::string utf16(const std::u16string& text, ByteOrder order) {
  std::string octets;
  for (const char16_t unit : text) {
    const char low = static_cast<char>(unit & 0xFF);
    const char high = static_cast<char>(unit >> 8);
    octets += order == ByteOrder::little ? low : high;
    octets += order == ByteOrder::little ? high : low;
  }
  return octets;
}

// 😀 is a pair of surrogates.
constexpr char16_t kDocument[] = u"<é ü='€'>ä😀\r\n<!--ö--></é>";
constexpr char16_t kMark[] = u"\uFEFF";

const EventLog::Lines kEvents = {"startElement(, é, é, [{, ü, ü, CDATA, €}])", "characters(ä😀\\n)",
                                 "comment(ö)", "endElement(, é, é)"};

}  // namespace

std::vector<Document> encodingDocuments() {
  const std::u16string document = kDocument;
  const std::u16string declared = u"<?xml version='1.0' encoding='UTF-16'?>" + document;
  return {
      {.name = "UTF-16, little endian, with a byte order mark",
       .text = utf16(kMark + document, ByteOrder::little),
       .events = kEvents},
      {.name = "UTF-16, big endian, with a byte order mark",
       .text = utf16(kMark + document, ByteOrder::big),
       .events = kEvents},
      {.name = "UTF-16, little endian, declared",
       .text = utf16(kMark + declared, ByteOrder::little),
       .events = kEvents},
      {.name = "UTF-16, big endian, declared, without a byte order mark",
       .text = utf16(declared, ByteOrder::big),
       .events = kEvents},
      {.name = "UTF-8 with a byte order mark",
       .text = "\xEF\xBB\xBF<a>ä</a>",
       .events = {"startElement(, a, a, [])", "characters(ä)", "endElement(, a, a)"}},
      {.name = "UTF-8 with a byte order mark and a declaration",
       .text = "\xEF\xBB\xBF<?xml version='1.0' encoding='utf-8'?><a>ä</a>",
       .events = {"startElement(, a, a, [])", "characters(ä)", "endElement(, a, a)"}},
      {.name = "ISO-8859-1",
       .text = "<?xml version='1.0' encoding='ISO-8859-1'?>"
               "<\xE9 \xFC='\xA7'>\xE4\x80<![CDATA[\xFF]]><!--\xF6--><?\xE5 \xDF?></\xE9>",
       .events = {"startElement(, é, é, [{, ü, ü, CDATA, §}])", "characters(ä\xC2\x80)",
                  "startCDATA()", "characters(ÿ)", "endCDATA()", "comment(ö)",
                  "processingInstruction(å, ß)", "endElement(, é, é)"}},
      {.name = "US-ASCII",
       .text = "<?xml version='1.0' encoding='us-ascii'?><a>&#228;</a>",
       .events = {"startElement(, a, a, [])", "characters(ä)", "endElement(, a, a)"}},
      {.name = "US-ASCII with an octet beyond it",
       .text = "<?xml version='1.0' encoding='US-ASCII'?>\n<a>\xE4</a>",
       .events = {"startElement(, a, a, [])"},
       .failure = Failure{XML_ERROR_INVALID_TOKEN, 2, 4}},
      {.name = "unknown encoding",
       .text = "<?xml version='1.0' encoding='x-none'?><a/>",
       .failure = Failure{XML_ERROR_UNKNOWN_ENCODING, 1, 31}},
      {.name = "UTF-8 text that declares UTF-16",
       .text = "<?xml version='1.0' encoding='UTF-16'?><a/>",
       .failure = Failure{XML_ERROR_INCORRECT_ENCODING, 1, 31}},
      {.name = "an octet that UTF-8 does not have",
       .text = "<a>x\n\xFF</a>",
       .events = {"startElement(, a, a, [])", "characters(x\\n)"},
       .failure = Failure{XML_ERROR_INVALID_TOKEN, 2, 1}},
      {.name = "overlong UTF-8",
       .text = "<a>\xC0\x80</a>",
       .events = {"startElement(, a, a, [])"},
       .failure = Failure{XML_ERROR_INVALID_TOKEN, 1, 4}},
      {.name = "surrogate in UTF-8",
       .text = "<a>\xED\xA0\x80</a>",
       .events = {"startElement(, a, a, [])"},
       .failure = Failure{XML_ERROR_INVALID_TOKEN, 1, 4}},
      {.name = "half a character at the end",
       .text = "<a>\xC3",
       .events = {"startElement(, a, a, [])"},
       .failure = Failure{XML_ERROR_PARTIAL_CHAR, 1, 4}},
      // expat counts the byte order mark as a column.
      {.name = "half a unit of UTF-16 at the end",
       .text = utf16(u"\uFEFF<a/>", ByteOrder::little) + "\n",
       .events = {"startElement(, a, a, [])", "endElement(, a, a)"},
       .failure = Failure{XML_ERROR_UNCLOSED_TOKEN, 1, 6}},
      {.name = "columns are counted in characters",
       .text = "<é>😀</ö>",
       .events = {"startElement(, é, é, [])", "characters(😀)"},
       .failure = Failure{XML_ERROR_TAG_MISMATCH, 1, 7}},
  };
}
