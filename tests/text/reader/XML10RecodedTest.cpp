#include <gtest/gtest.h>

#include <random>

#include "Encoded.h"
#include "XML10ReaderSupport.h"

// Documents in encodings that expat cannot read: they are converted before.

namespace {

using namespace Tavrin;

/// An encoding, and words that it has.
struct Sample {
  std::string encoding;
  std::string name;  ///< Letters: the name of an element and of an attribute.
  std::string text;
};

std::vector<Sample> samples() {
  const std::string japanese = "日本語のテキスト、漢字とかな。";
  const std::string korean = "한국어 문장";
  const std::string simplified = "简体中文";
  const std::string traditional = "繁體中文";
  const std::string all = "añ€日한\xF0\x9F\x98\x80\xF0\xA0\x80\x80Ω";
  return {
      {"Shift_JIS", "文書", "表示ソ能" + japanese + "ｱｲｳ"},
      {"CP932", "文書", "①表" + japanese},
      {"EUC-JP", "文書", japanese + "ｱｲｳ"},
      {"EUC-KR", "문서", korean},
      {"ISO-2022-JP", "文書", japanese},
      {"ISO-2022-KR", "문서", korean},
      {"GB2312", "文件", simplified},
      {"GBK", "文件", simplified + "丂"},
      {"GB18030", "文件", simplified + all},
      {"Big5", "文件", traditional + "功"},
      {"BIG5-HKSCS", "文件", traditional + "Ê"},
      {"UTF-32BE", "文件", all},
      {"UTF-32LE", "文件", all},
      {"IBM037", "a", "àéîõü ½"},
      {"IBM500", "a", "àéîõü ½"},
      {"IBM1047", "a", "àéîõü ½"},
      {"ISO-8859-1", "é", "àéîõü ½"},
      {"ISO-8859-2", "ł", "Łódź"},
      {"ISO-8859-5", "д", "текст"},
      {"ISO-8859-7", "λ", "κείμενο"},
      {"ISO-8859-8", "א", "טקסט"},
      {"ISO-8859-15", "é", "prix: 5 €"},
      {"windows-1250", "ł", "Łódź – €"},
      {"windows-1251", "д", "текст № 1"},
      {"windows-1252", "é", "“prix” 5 €"},
      {"windows-1255", "א", "טקסט"},
      {"windows-1256", "ا", "نص"},
      {"windows-1258", "ê", "Tiêng"},
      {"KOI8-R", "д", "текст ©"},
      {"KOI8-U", "д", "їжак"},
      {"TIS-620", "ก", "ภาษาไทย"},
  };
}

/// A document that has the words everywhere, in every kind of line.
std::string document(const Sample& sample, const std::string& encoding) {
  const std::string& name = sample.name;
  const std::string& text = sample.text;
  return "<?xml version='1.0' encoding='" + encoding + "'?>\n<!DOCTYPE " + name + " [<!ENTITY e '" +
         text + "'>\r\n<!ATTLIST b c CDATA '" + text + "'>]>\n<!--" + text + "--><" + name + " " +
         name + "='" + text + "&e;'>" + text + "&e;\r\n<b/><?p " + text + "?><![CDATA[" + text +
         "]]>\n<c>" + text + "</c></" + name + ">\n";
}

/// Where each event is.
class Places : public DefaultHandler {
 public:
  void setDocumentLocator(const Locator* locator) override { locator_ = locator; }
  void startElement(const std::string&, const std::string&, const std::string& qName,
                    const Attributes&) override {
    note(qName);
  }
  void processingInstruction(const std::string& target, const std::string&) override {
    note(target);
  }
  std::string places;

 private:
  void note(const std::string& name) {
    places += name + ' ' + std::to_string(locator_->getLineNumber()) + ':' +
              std::to_string(locator_->getColumnNumber()) + '\n';
  }
  const Locator* locator_ = nullptr;
};

struct Told {
  std::string outcome;
  std::string events;
  std::string places;

  bool operator==(const Told&) const = default;
  friend void PrintTo(const Told& told, std::ostream* stream) {
    *stream << told.outcome << '\n' << told.events << told.places;
  }
};

/// All that the reader tells of a document, in blocks of a size; 0 stands for a stream.
Told tell(const std::string& text, std::size_t size) {
  Told told;
  XMLReader_XML10 reader;
  EventLog log;
  log.attachTo(reader);
  log.attachDeclarationsTo(reader);
  told.outcome = size == 0 ? parseText(reader, text) : parseBlocks(reader, cutEvenly(text, size));
  told.events = log.text();
  Places places;
  reader.setContentHandler(&places);
  reader.setLexicalHandler(nullptr);
  if (size == 0) {
    parseText(reader, text);
  } else {
    parseBlocks(reader, cutEvenly(text, size));
  }
  told.places = places.places;
  return told;
}

}  // namespace

TEST(XML10Recoded, DocumentsAreThoseOfUTF8) {
  for (const Sample& sample : samples()) {
    SCOPED_TRACE(sample.encoding);
    const Told expected = tell(document(sample, "UTF-8"), 0);
    EXPECT_EQ(expected.outcome, "done");
    const std::string text = encoded(document(sample, sample.encoding), sample.encoding);
    EXPECT_EQ(tell(text, 0), expected);
    for (std::size_t size = 1; size <= 64; ++size) {
      EXPECT_EQ(tell(text, size), expected) << "in blocks of " << size;
    }
  }
}

TEST(XML10Recoded, DocumentsOfFourOctetsNeedNoName) {
  const std::string content = "<a>€\xF0\x9F\x98\x80</a>";
  const EventLog::Lines events = {"startElement(, a, a, [])", "characters(€\xF0\x9F\x98\x80)",
                                  "endElement(, a, a)"};
  const std::string mark = "\xEF\xBB\xBF";
  std::vector<XML10Document> documents;
  for (const std::string encoding : {"UTF-32BE", "UTF-32LE"}) {
    documents.push_back({.name = "bare", .text = encoded(content, encoding), .events = events});
    documents.push_back(
        {.name = "with a mark", .text = encoded(mark + content, encoding), .events = events});
    for (const std::string name : {"UTF-32", "utf-32", "ISO-10646-UCS-4", "UCS-4", "UTF32"}) {
      documents.push_back(
          {.name = "declared",
           .text = encoded("<?xml version='1.0' encoding='" + name + "'?>" + content, encoding),
           .events = events});
    }
    documents.push_back(
        {.name = "declared as something else",
         .text = encoded("<?xml version='1.0' encoding='UTF-8'?>" + content, encoding),
         .failure = "encoding specified in XML declaration is incorrect, 1, 1"});
  }
  checkXML10(documents);
}

TEST(XML10Recoded, EntitiesHaveTheirOwnEncodings) {
  const auto entity = [](const std::string& encoding, const std::string& text) {
    return encoded("<?xml encoding='" + encoding + "'?>" + text, encoding);
  };
  checkXML10({
      {.name = "of all kinds",
       .text = entity("EUC-JP",
                      "<!DOCTYPE a [<!ENTITY % p SYSTEM 'p'>%p;<!ENTITY s SYSTEM 's'>"
                      "<!ENTITY g SYSTEM 'g'>]><a>日&s;本&e;</a>")
                   .insert(5, " version='1.0'"),
       .events = {"startDTD(a, , )",
                  "externalEntityDecl(%p, , p)",
                  "resolveEntity(, p)",
                  "startEntity(%p)",
                  "internalEntityDecl(e, 繁)",
                  "endEntity(%p)",
                  "externalEntityDecl(s, , s)",
                  "externalEntityDecl(g, , g)",
                  "endDTD()",
                  "startElement(, a, a, [])",
                  "characters(日)",
                  "resolveEntity(, s)",
                  "startEntity(s)",
                  "characters(表)",
                  "resolveEntity(, g)",
                  "startEntity(g)",
                  "characters(\xF0\x9F\x98\x80)",
                  "endEntity(g)",
                  "characters(示)",
                  "endEntity(s)",
                  "characters(本繁)",
                  "endElement(, a, a)"},
       .entities = {{"p", entity("Big5", "<!ENTITY e '繁'>")},
                    {"s", entity("Shift_JIS", "表&g;示")},
                    {"g", entity("UTF-32LE", "\xF0\x9F\x98\x80")}}},
      {.name = "which fail at their own places",
       .text = "<!DOCTYPE a [<!ENTITY s SYSTEM 's'>]><a>&s;</a>",
       .events = {"startDTD(a, , )", "externalEntityDecl(s, , s)", "endDTD()",
                  "startElement(, a, a, [])", "resolveEntity(, s)", "startEntity(s)",
                  "characters(表)"},
       .entities = {{"s", entity("Shift_JIS", "表") + "\xFF"}},
       .failure =
           "not well-formed (invalid token): octet FF is not part of a character of \"Shift_JIS\" "
           "(in the entity s, \"s\"), 1, 30"},
  });
}

// What is wrong is told at the character, and what stands in front of it before that.
TEST(XML10Recoded, OctetsThatAreNoCharactersAreFailures) {
  const std::string begin = "<?xml version='1.0' encoding='EUC-JP'?>\n<a>";
  const EventLog::Lines events = {"startElement(, a, a, [])", "characters(日)"};
  const std::string kanji = "\xC6\xFC";
  const auto failure = [](const std::string& what, const std::string& place) {
    return "not well-formed (invalid token): " + what + ", " + place;
  };
  checkXML10({
      {.name = "in text",
       .text = begin + kanji + "\xFFxy</a>",
       .events = events,
       .failure = failure("octet FF is not part of a character of \"EUC-JP\"", "2, 5")},
      {.name = "a second octet that is none",
       .text = begin + kanji + "\xC6\x20yz</a>",
       .events = events,
       .failure = failure("octet C6 is not part of a character of \"EUC-JP\"", "2, 5")},
      {.name = "cut off at the end",
       .text = begin + kanji + "\xC6",
       .events = events,
       .failure = failure("the character of \"EUC-JP\" is cut off after C6", "2, 5")},
      {.name = "in a name",
       .text = begin + "<b" + kanji + "\xFF />xx</a>",
       .events = {"startElement(, a, a, [])"},
       .failure = failure("octet FF is not part of a character of \"EUC-JP\"", "2, 7")},
      {.name = "in an attribute value",
       .text = begin + "<b c='\xFF'>xx</b></a>",
       .events = {"startElement(, a, a, [])"},
       .failure = failure("octet FF is not part of a character of \"EUC-JP\"", "2, 10")},
      {.name = "behind another failure",
       .text = begin + "</b>\xFF",
       .events = {"startElement(, a, a, [])"},
       .failure = "mismatched tag: expected </a> of line 2, 2, 6"},
      {.name = "behind the document",
       .text = "<?xml version='1.0' encoding='EUC-JP'?><a/>\xFFxyz",
       .events = {"startElement(, a, a, [])", "endElement(, a, a)"},
       .failure = failure("octet FF is not part of a character of \"EUC-JP\"", "1, 44")},
      {.name = "above all characters",
       .text = std::string("\0\0\0<\0\0\0a\0\0\0>\0\x11\0\0", 16),
       .events = {"startElement(, a, a, [])"},
       .failure = failure("octet 00 is not part of a character of \"UTF-32BE\"", "1, 4")},
  });
}

TEST(XML10Recoded, FailuresNameWhatTheDocumentNames) {
  const std::string text = "<?xml version='1.0' encoding='Shift_JIS'?>\n<表 ソ='能'>\n<能></表>";
  checkXML10({{.name = "an element",
               .text = encoded(text, "Shift_JIS"),
               .events = {"startElement(, 表, 表, [{, ソ, ソ, CDATA, 能}])", "characters(\\n)",
                          "startElement(, 能, 能, [])"},
               .failure = "mismatched tag: expected </能> of line 3, 3, 6"}});
}

TEST(XML10Recoded, DocumentsMaySwitch) {
  const EventLog::Lines events = {"startElement(, a, a, [])", "characters(日本)",
                                  "endElement(, a, a)"};
  checkXML10({
      {.name = "to Base64",
       .text = "<?xml version='1.0' encoding='UTF-7'?><a>+ZeVnLA-</a>",
       .events = events},
      {.name = "to two octets and back",
       .text = "<?xml version='1.0' encoding='ISO-2022-JP'?><a>\x1B$BF|K\\\x1B(B</a>",
       .events = events},
      {.name = "to two octets, of which some look like markup",
       .text = "<?xml version='1.0' encoding='ISO-2022-JP'?><a>\x1B$B<<\x1B(B</a>",
       .events = {"startElement(, a, a, [])", "characters(室)", "endElement(, a, a)"}},
  });
}

// More than what is converted at a time, in one block and as a stream, with pauses.
TEST(XML10Recoded, DocumentsMayBeLarge) {
  std::string text = "<?xml version='1.0' encoding='Shift_JIS'?>\n<a>";
  for (int i = 0; i < 20000; ++i) text += "<b>表示" + std::to_string(i) + "能力</b>\n";
  text += "</a>";
  const std::string octets = encoded(text, "Shift_JIS");
  const std::string expected =
      tell(std::string(text).replace(text.find("Shift_JIS"), 9, "UTF-8"), 0).events;
  EXPECT_EQ(tell(octets, 0).events, expected);
  for (const std::size_t size : {65535U, 65536U, 65537U, 1'000'000U}) {
    EXPECT_EQ(tell(octets, size).events, expected);
  }
  for (const std::size_t every : {1000U, 4999U}) {
    XMLReader_XML10 reader;
    EventLog log;
    log.attachTo(reader);
    log.attachDeclarationsTo(reader);
    log.beforeEvent = [&](std::size_t count) {
      if (count % every == 0) reader.pause();
    };
    reader.parse(octets.data(), octets.size(), true);
    while (reader.isPaused()) reader.resume();
    EXPECT_TRUE(log.text() == expected);
  }
}

/// Without the text right in front of a failure: of text that has "]]>" expat reports as much as
/// came in other blocks, in every encoding.
Told withoutLastText(Told told) {
  const std::size_t failure = told.events.find("fatalError(");
  const std::size_t text = told.events.rfind("\ncharacters(", failure);
  const std::size_t end = text == std::string::npos ? text : told.events.find('\n', text + 1) + 1;
  if (failure != std::string::npos && end == failure) {
    told.events.erase(text + 1, failure - text - 1);
  }
  return told;
}

// Whatever the octets are, the reader fails or not, the same way in blocks of every size.
TEST(XML10Recoded, DamagedDocumentsAreReadTheSameWayInEveryCut) {
  std::minstd_rand random(5);
  for (const Sample& sample : samples()) {
    SCOPED_TRACE(sample.encoding);
    const std::string text = encoded(document(sample, sample.encoding), sample.encoding);
    for (int i = 0; i < 60; ++i) {
      std::string damaged = text;
      for (unsigned j = 0; j < 1 + random() % 3; ++j) {
        damaged[random() % damaged.size()] = static_cast<char>(random() >> 3);
      }
      if (random() % 4 == 0) damaged.resize(1 + random() % damaged.size());
      const Told expected = withoutLastText(tell(damaged, 0));
      EXPECT_EQ(withoutLastText(tell(damaged, 1)), expected) << EventLog::showOctets(damaged);
      EXPECT_EQ(withoutLastText(tell(damaged, 1 + random() % 100)), expected)
          << EventLog::showOctets(damaged);
    }
  }
}
