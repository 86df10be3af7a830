#include <gtest/gtest.h>

#include <sstream>

#include "TextReaderSupport.h"

namespace {

TEST(ExpatHostileInput, MayBe100000ElementsDeep) {
  struct Tags : Tavrin::ContentHandler {
    void startElement(const std::string&, const std::string&, const std::string& qName,
                      const Tavrin::Attributes&) override {
      text += "<" + qName + ">";
    }
    void endElement(const std::string&, const std::string&, const std::string& qName) override {
      text += "</" + qName + ">";
    }
    void endDocument() override { text += "."; }
    std::string text;
  };
  constexpr int kDepth = 100000;
  std::string text;
  for (int i = 0; i < kDepth; ++i) text += "<a>";
  for (int i = 0; i < kDepth; ++i) text += "</a>";
  Tags tags;
  Tavrin::XMLReader_Expat reader;
  reader.setContentHandler(&tags);
  EXPECT_EQ("done", parseText(reader, text));
  EXPECT_TRUE(text + "." == tags.text);
}

TEST(ExpatHostileInput, MayEndWith100000ElementsOpen) {
  std::string text;
  for (int i = 0; i < 100000; ++i) text += "<a>";
  Tavrin::XMLReader_Expat reader;
  const Failure failure{XML_ERROR_NO_ELEMENTS, 1, 300001};
  EXPECT_EQ(failure.thrown(), parseText(reader, text));
  EXPECT_EQ("done", parseText(reader, "<a/>"));
}

TEST(ExpatHostileInput, MayHave100000AttributesOnAnElement) {
  // Half of them have a prefix.
  struct Expected : Tavrin::ContentHandler {
    void startElement(const std::string&, const std::string&, const std::string&,
                      const Tavrin::Attributes& attributes) override {
      length = attributes.getLength();
      for (int i = 0; i < length; ++i) {
        const std::string name = "x" + std::to_string(i / 2);
        const bool isPrefixed = i % 2 == 1;
        if (attributes.getURI(i) == (isPrefixed ? "u" : "") && attributes.getLocalName(i) == name &&
            attributes.getQName(i) == (isPrefixed ? "p:" + name : name) &&
            attributes.getType(i) == "CDATA" && attributes.getValue(i) == std::to_string(i)) {
          ++right;
        }
      }
    }
    int length = 0;
    int right = 0;
  };
  std::string text = "<a xmlns:p='u'";
  for (int i = 0; i < 100000; ++i) {
    text += (i % 2 == 1 ? " p:x" : " x") + std::to_string(i / 2) + "='" + std::to_string(i) + "'";
  }
  Expected expected;
  Tavrin::XMLReader_Expat reader;
  reader.setContentHandler(&expected);
  EXPECT_EQ("done", parseText(reader, text + "/>"));
  EXPECT_EQ(100000, expected.length);
  EXPECT_EQ(100000, expected.right);
}

TEST(ExpatHostileInput, MayHave20000NamespacesOnAnElement) {
  std::string text = "<a";
  EventLog::Lines starts;
  EventLog::Lines ends;
  for (int i = 0; i < 20000; ++i) {
    const std::string n = std::to_string(i);
    text += " xmlns:p" + n + "='u" + n + "'";
    starts.push_back("startPrefixMapping(p" + n + ", u" + n + ")");
    ends.push_back("endPrefixMapping(p" + n + ")");
  }
  EventLog::Lines events = std::move(starts);
  events.emplace_back("startElement(, a, a, [])");
  events.emplace_back("endElement(, a, a)");
  events.insert(events.end(), ends.rbegin(), ends.rend());
  EventLog log;
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  EXPECT_EQ("done", parseText(reader, text + "/>"));
  EXPECT_TRUE(wholeLog(events) == log.text());
}

/// Counts what entities grow to.
struct Counter : Tavrin::ContentHandler, Tavrin::ErrorHandler {
  void characters(const std::string& text) override { octets += text.size(); }
  void endDocument() override { ended = true; }
  void fatalError(const Tavrin::SAXParseException& exception) override {
    failure = exception.getMessage();
  }
  std::size_t octets = 0;
  bool ended = false;
  std::string failure;
};

/// A chain of entities, each of which refers ten times to the one before: 10^levels copies.
std::string laughs(int levels, char kind) {
  const std::string declare = kind == '%' ? "<!ENTITY % e" : "<!ENTITY e";
  std::string text = declare + "0 '" + std::string(64, 'x') + "'>";
  for (int i = 1; i <= levels; ++i) {
    text += declare + std::to_string(i) + " '";
    for (int j = 0; j < 10; ++j) text += kind + ("e" + std::to_string(i - 1)) + ";";
    text += "'>";
  }
  return text;
}

// expat lets entities grow to a hundredfold of the input, above 8 MiB.
constexpr std::size_t kAllowance = 8 * 1024 * 1024;

TEST(ExpatHostileInput, IsRefusedWhenEntitiesGrowWithoutBounds) {
  Counter counter;
  Tavrin::XMLReader_Expat reader;
  reader.setContentHandler(&counter);
  reader.setErrorHandler(&counter);
  EXPECT_EQ("SAXParseException(" + messageOf(XML_ERROR_AMPLIFICATION_LIMIT_BREACH) + ", 2, 4)",
            parseText(reader, "<!DOCTYPE a [" + laughs(10, '&') + "]>\n<a>&e10;</a>"));
  EXPECT_EQ(messageOf(XML_ERROR_AMPLIFICATION_LIMIT_BREACH), counter.failure);
  EXPECT_FALSE(counter.ended);
  EXPECT_LT(counter.octets, kAllowance + 65536);
  EXPECT_EQ("done", parseText(reader, "<a/>"));
}

TEST(ExpatHostileInput, IsRefusedWhenAnAttributeGrowsWithoutBounds) {
  Counter counter;
  Tavrin::XMLReader_Expat reader;
  reader.setContentHandler(&counter);
  reader.setErrorHandler(&counter);
  EXPECT_NE("done", parseText(reader, "<!DOCTYPE a [" + laughs(10, '&') + "]>\n<a x='&e10;'/>"));
  EXPECT_EQ(messageOf(XML_ERROR_AMPLIFICATION_LIMIT_BREACH), counter.failure);
}

TEST(ExpatHostileInput, IsRefusedWhenOneLongEntityIsUsedTooOften) {
  std::string references;
  for (int i = 0; i < 1000; ++i) references += "&e;";
  Counter counter;
  Tavrin::XMLReader_Expat reader;
  reader.setContentHandler(&counter);
  reader.setErrorHandler(&counter);
  EXPECT_NE("done", parseText(reader, "<!DOCTYPE a [<!ENTITY e '" + std::string(100000, 'x') +
                                          "'>]><a>" + references + "</a>"));
  EXPECT_EQ(messageOf(XML_ERROR_AMPLIFICATION_LIMIT_BREACH), counter.failure);
  EXPECT_FALSE(counter.ended);
  // Input and entities together are what may grow a hundredfold.
  EXPECT_LT(counter.octets, 100U * 103100U);
}

TEST(ExpatHostileInput, IsRefusedWhenParameterEntitiesGrowWithoutBounds) {
  EventLog log;
  log.entities["x"] = laughs(10, '%') + "<!ENTITY all '%e10;'>";
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  const Failure failure{XML_ERROR_EXTERNAL_ENTITY_HANDLING, 1, 23};
  EXPECT_EQ(failure.thrown(), parseText(reader, "<!DOCTYPE a SYSTEM 'x'><a>&all;</a>"));
  EXPECT_EQ(join({"setDocumentLocator()", "startDocument()", "startDTD(a, , x)",
                  "resolveEntity(, x)", failure.logged()}),
            log.text());
}

TEST(ExpatHostileInput, IsRefusedWhenExternalEntitiesGrowWithoutBounds) {
  struct Resolver : Tavrin::EntityResolver {
    std::unique_ptr<std::istream> resolveEntity(const std::string&,
                                                const std::string& systemId) override {
      ++calls;
      const int level = std::stoi(systemId);
      if (level == 0) return std::make_unique<std::istringstream>(std::string(10000, 'x'));
      std::string text;
      for (int i = 0; i < 10; ++i) text += "&e" + std::to_string(level - 1) + ";";
      return std::make_unique<std::istringstream>(text);
    }
    int calls = 0;
  };
  std::string declarations;
  for (int i = 0; i <= 10; ++i) {
    const std::string n = std::to_string(i);
    declarations += "<!ENTITY e" + n + " SYSTEM '" + n + "'>";
  }
  Resolver resolver;
  Counter counter;
  Tavrin::XMLReader_Expat reader;
  reader.setContentHandler(&counter);
  reader.setErrorHandler(&counter);
  reader.setEntityResolver(&resolver);
  EXPECT_NE("done", parseText(reader, "<!DOCTYPE a [" + declarations + "]><a>&e10;</a>"));
  EXPECT_EQ(messageOf(XML_ERROR_EXTERNAL_ENTITY_HANDLING), counter.failure);
  EXPECT_FALSE(counter.ended);
  EXPECT_LT(counter.octets, kAllowance + 65536);
}

TEST(ExpatHostileInput, OfEverySingleOctetFailsOrEndsAndLeavesTheReaderAsNew) {
  for (int octet = 0; octet < 256; ++octet) {
    SCOPED_TRACE(octet);
    const std::string one(1, static_cast<char>(octet));
    for (const std::string& text :
         {one, "<a>" + one + "</a>", "<" + one, "<a " + one + ">", "<!" + one, "&" + one}) {
      EventLog log;
      Tavrin::XMLReader_Expat reader;
      log.attachTo(reader);
      const std::string whole = parseText(reader, text);
      const std::string wholeEvents = log.text();
      ASSERT_FALSE(log.lines().empty());
      EXPECT_EQ(whole == "done" ? "endDocument()" : "fatalError" + whole.substr(17),
                log.lines().back());
      log.clear();
      EXPECT_EQ("done", parseText(reader, "<b/>"));
      EXPECT_EQ(wholeLog({"startElement(, b, b, [])", "endElement(, b, b)"}), log.text());
    }
  }
}

}  // namespace
