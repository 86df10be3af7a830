#include <gtest/gtest.h>

#include <limits>

#include "XML10ReaderSupport.h"

namespace {

using namespace Tavrin;

TEST(XML10Type, IsRegistered) {
  for (const char* name : {"XML10", "xml10"}) {
    const auto reader = XMLReaderFactory::createXMLReader(name);
    EXPECT_NE(nullptr, dynamic_cast<XMLReader_XML10*>(reader.get()));
  }
  EXPECT_EQ(nullptr,
            dynamic_cast<XMLReader_XML10*>(XMLReaderFactory::createXMLReader("Expat").get()));
}

TEST(XML10Features, HaveTheirDefaultsAndKeepWhatIsSet) {
  XMLReader_XML10 reader;
  const std::map<std::string, bool> defaults = {{features::namespaces, true},
                                                {features::namespacePrefixes, false},
                                                {features::externalGeneralEntities, true},
                                                {features::externalParameterEntities, true},
                                                {features::xmlnsURIs, false}};
  for (const auto& [name, value] : defaults) {
    EXPECT_EQ(value, reader.getFeature(name)) << name;
    reader.setFeature(name, !value);
    for (const auto& [other, otherValue] : defaults) {
      EXPECT_EQ(other == name ? !otherValue : otherValue, reader.getFeature(other)) << other;
    }
    reader.setFeature(name, value);
    EXPECT_EQ(value, reader.getFeature(name)) << name;
  }
}

TEST(XML10Features, ThatItDoesNotHaveAreRefused) {
  XMLReader_XML10 reader;
  for (const std::string name :
       {"", "http://xml.org/sax/features/Namespaces",
        "http://xml.org/sax/features/string-interning", "http://tavrin/sax/features/auto-indent"}) {
    const std::string refusal =
        "SAXNotRecognizedException(Feature \"" + name + "\" not recognized)";
    EXPECT_EQ(refusal, outcomeOf([&] { reader.setFeature(name, false); }));
    EXPECT_EQ(refusal, outcomeOf([&] { reader.getFeature(name); }));
  }
  EXPECT_FALSE(reader.getFeature(features::validation));
  reader.setFeature(features::validation, false);
  EXPECT_EQ("SAXException(Feature \"http://xml.org/sax/features/validation\" not supported)",
            outcomeOf([&] { reader.setFeature(features::validation, true); }));
  EXPECT_FALSE(reader.getFeature(features::validation));
  for (const bool value : {false, true}) {
    EXPECT_EQ(
        "SAXException(Feature \"http://xml.org/sax/features/is-standalone\" can only be asked)",
        outcomeOf([&] { reader.setFeature(features::isStandalone, value); }));
  }
}

TEST(XML10Features, CountFromTheNextDocument) {
  struct Switcher : EventLog {
    void startElement(const std::string& uri, const std::string& localName,
                      const std::string& qName, const Attributes& attributes) override {
      EventLog::startElement(uri, localName, qName, attributes);
      reader->setFeature(features::namespaces, false);
      reader->setFeature(features::namespacePrefixes, true);
      std::string base = "http://h/";
      reader->setProperty(properties::baseURI, &base);
    }
    XMLReader* reader = nullptr;
  };
  Switcher log;
  XMLReader_XML10 reader;
  log.reader = &reader;
  log.attachTo(reader);
  const std::string text = "<!DOCTYPE a [<!ENTITY e SYSTEM 'e'>]><a><b xmlns='u'/>&e;</a>";
  EXPECT_EQ("done", parseText(reader, text));
  EXPECT_EQ(wholeLog({"startDTD(a, , )", "endDTD()", "startElement(, a, a, [])",
                      "startPrefixMapping(, u)", "startElement(u, b, b, [])", "endElement(u, b, b)",
                      "endPrefixMapping()", "resolveEntity(, e)", "skippedEntity(e)",
                      "endElement(, a, a)"}),
            log.text());
  log.clear();
  EXPECT_EQ("done", parseText(reader, text));
  EXPECT_EQ(wholeLog({"startDTD(a, , )", "endDTD()", "startElement(, , a, [])",
                      "startElement(, , b, [{, , xmlns, CDATA, u}])", "endElement(, , b)",
                      "resolveEntity(, http://h/e)", "skippedEntity(e)", "endElement(, , a)"}),
            log.text());
}

TEST(XML10Properties, AreCopiedAndHaveDefaults) {
  XMLReader_XML10 reader;
  const auto factor = [&] {
    return *static_cast<double*>(reader.getProperty(properties::entityAmplificationFactor));
  };
  const auto threshold = [&] {
    return *static_cast<std::uint64_t*>(
        reader.getProperty(properties::entityAmplificationThreshold));
  };
  EXPECT_EQ(nullptr, reader.getProperty(properties::baseURI));
  EXPECT_EQ(nullptr, reader.getProperty(properties::lexicalHandler));
  EXPECT_EQ(nullptr, reader.getProperty(properties::declarationHandler));
  EXPECT_EQ(100, factor());
  EXPECT_EQ(8U * 1024 * 1024, threshold());
  {
    std::string base = "http://h/";
    double newFactor = 1;
    std::uint64_t newThreshold = 0;
    reader.setProperty(properties::baseURI, &base);
    reader.setProperty(properties::entityAmplificationFactor, &newFactor);
    reader.setProperty(properties::entityAmplificationThreshold, &newThreshold);
    base = "gone";
  }
  EXPECT_EQ("http://h/", *static_cast<std::string*>(reader.getProperty(properties::baseURI)));
  EXPECT_EQ(1, factor());
  EXPECT_EQ(0U, threshold());
  EventLog log;
  auto* handler = static_cast<LexicalHandler*>(&log);
  reader.setProperty(properties::lexicalHandler, handler);
  EXPECT_EQ(handler, reader.getProperty(properties::lexicalHandler));
  for (const char* name : {properties::baseURI, properties::entityAmplificationFactor,
                           properties::entityAmplificationThreshold, properties::lexicalHandler}) {
    reader.setProperty(name, nullptr);
  }
  EXPECT_EQ(nullptr, reader.getProperty(properties::baseURI));
  EXPECT_EQ(nullptr, reader.getProperty(properties::lexicalHandler));
  EXPECT_EQ(100, factor());
  EXPECT_EQ(8U * 1024 * 1024, threshold());
}

TEST(XML10Properties, ThatAreWrongAreRefused) {
  XMLReader_XML10 reader;
  const std::string name = properties::entityAmplificationFactor;
  for (double value : {0.0, 0.999, -1.0, std::numeric_limits<double>::quiet_NaN(),
                       -std::numeric_limits<double>::infinity()}) {
    EXPECT_EQ("SAXException(Property \"" + name + "\" must be at least 1)",
              outcomeOf([&] { reader.setProperty(name, &value); }));
    EXPECT_EQ(100, *static_cast<double*>(reader.getProperty(name)));
  }
  for (double value : {1.0, 1e300, std::numeric_limits<double>::infinity()}) {
    reader.setProperty(name, &value);
    EXPECT_EQ("done", parseText(reader, "<a/>"));
  }
  for (const std::string asked : {properties::documentXMLVersion, properties::standalone}) {
    std::string value = "1.0";
    EXPECT_EQ("SAXException(Property \"" + asked + "\" can only be asked)",
              outcomeOf([&] { reader.setProperty(asked, &value); }));
  }
  for (const std::string unknown :
       {"", "http://tavrin/sax/properties/Base-URI", "http://tavrin/sax/properties/indent-width"}) {
    const std::string refusal =
        "SAXNotRecognizedException(Property \"" + unknown + "\" not recognized)";
    EXPECT_EQ(refusal, outcomeOf([&] { reader.setProperty(unknown, nullptr); }));
    EXPECT_EQ(refusal, outcomeOf([&] { reader.getProperty(unknown); }));
  }
}

/// What a document states in its XML declaration, as it is known in startDocument.
class StatedLog : public ContentHandler {
 public:
  explicit StatedLog(XMLReader& reader) : reader_(reader) { reader.setContentHandler(this); }
  void startDocument() override { text = stated(); }
  std::string stated() const {
    const auto* version =
        static_cast<std::string*>(reader_.getProperty(properties::documentXMLVersion));
    const auto* standalone = static_cast<bool*>(reader_.getProperty(properties::standalone));
    return (version ? *version : "none") + (standalone ? *standalone ? " yes" : " no" : " none") +
           (reader_.getFeature(features::isStandalone) ? " standalone" : "");
  }
  std::string text;

 private:
  XMLReader& reader_;
};

TEST(XML10Properties, OfTheXMLDeclarationAreKnownInStartDocument) {
  const std::pair<const char*, const char*> cases[] = {
      {"<?xml version='1.0'?><a/>", "1.0 none"},
      {"<?xml version='1.0' encoding='UTF-8' standalone='yes'?><a/>", "1.0 yes standalone"},
      {"<?xml version='1.0' standalone='no'?><a/>", "1.0 no"},
      {"<?xml version='1.1' standalone='yes'?><a/>", "1.1 yes standalone"},
      {"<a/>", "1.0 none"},
      {"<!DOCTYPE a><a/>", "1.0 none"},
      {"<!--c--><?t?><a/>", "1.0 none"},
  };
  XMLReader_XML10 reader;
  StatedLog log(reader);
  EXPECT_EQ("none none", log.stated());
  for (const auto& [text, stated] : cases) {
    for (const std::size_t size : {1000U, 1U}) {
      log.text = "not called";
      std::vector<std::string> blocks = cutEvenly(text, size);
      blocks.emplace_back();
      EXPECT_EQ("done", parseBlocks(reader, blocks));
      EXPECT_EQ(stated, log.text) << text;
      EXPECT_EQ(stated, log.stated()) << text;
    }
  }
}

TEST(XML10Properties, OfTheXMLDeclarationAreNotThoseOfAnEntity) {
  EventLog entities;
  entities.entities = {{"d", "<?xml version='1.1' encoding='UTF-8'?>"},
                       {"e", "<?xml version='1.1' encoding='UTF-8'?>x"}};
  XMLReader_XML10 reader;
  StatedLog log(reader);
  reader.setEntityResolver(&entities);
  EXPECT_EQ("done",
            parseText(reader, "<!DOCTYPE a SYSTEM 'd' [<!ENTITY e SYSTEM 'e'>]><a>&e;</a>"));
  EXPECT_EQ("1.0 none", log.stated());
}

}  // namespace
