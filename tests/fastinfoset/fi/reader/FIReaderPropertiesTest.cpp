#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>

#include "FIReaderValues.h"

// The reader as an object: its creation, properties, features and handlers.

namespace reader_test {
namespace {

const char* const kProperties[] = {
    "http://xml.org/sax/properties/lexical-handler",
    "http://xml.org/sax/properties/declaration-handler",
    "http://jvnet.org/fastinfoset/sax/properties/primitive-type-content-handler",
    "http://jvnet.org/fastinfoset/sax/properties/encoding-algorithm-content-handler",
    "http://jvnet.org/fastinfoset/parser/properties/registered-encoding-algorithms",
    "http://jvnet.org/fastinfoset/parser/properties/external-vocabularies"};

TEST(FIReaderObject, IsCreatedByItsName) {
  for (const char* name : {"FI", "fi", "Fi"}) {
    const std::unique_ptr<Tavrin::XMLReader> reader =
        Tavrin::XMLReaderFactory::createXMLReader(name);
    ASSERT_NE(nullptr, reader) << name;
    EXPECT_NE(nullptr, dynamic_cast<Tavrin::XMLReader_FI*>(reader.get())) << name;
  }
}

TEST(FIReaderObject, StartsEmpty) {
  const std::unique_ptr<Tavrin::XMLReader> reader = Tavrin::XMLReader_FI::create();
  EXPECT_EQ(nullptr, reader->getContentHandler());
  EXPECT_EQ(nullptr, reader->getErrorHandler());
  EXPECT_EQ(nullptr, reader->getEntityResolver());
  EXPECT_EQ(nullptr, reader->getDTDHandler());
  for (const char* property : kProperties) {
    EXPECT_EQ(nullptr, reader->getProperty(property)) << property;
  }
}

TEST(FIReaderObject, KeepsEachPropertyForItself) {
  int values[std::size(kProperties)] = {};
  Tavrin::XMLReader_FI reader;
  for (std::size_t i = 0; i < std::size(kProperties); ++i) {
    reader.setProperty(kProperties[i], &values[i]);
  }
  for (std::size_t i = 0; i < std::size(kProperties); ++i) {
    EXPECT_EQ(&values[i], reader.getProperty(kProperties[i])) << kProperties[i];
    reader.setProperty(kProperties[i], nullptr);
    EXPECT_EQ(nullptr, reader.getProperty(kProperties[i])) << kProperties[i];
  }
}

TEST(FIReaderObject, ReturnsPropertiesAsTheyWereSet) {
  EventLog log;
  Tavrin::XMLReader_FI reader;
  log.attachTo(reader);
  log.attachDeclarationsTo(reader);
  log.attachPrimitiveTypesTo(reader);
  log.attachAlgorithmsTo(reader);
  EXPECT_EQ(static_cast<Tavrin::LexicalHandler*>(&log), reader.getProperty(kProperties[0]));
  EXPECT_EQ(static_cast<Tavrin::DeclHandler*>(&log), reader.getProperty(kProperties[1]));
  EXPECT_EQ(static_cast<Tavrin::PrimitiveTypeContentHandler*>(&log),
            reader.getProperty(kProperties[2]));
  EXPECT_EQ(static_cast<Tavrin::EncodingAlgorithmContentHandler*>(&log),
            reader.getProperty(kProperties[3]));
  EXPECT_EQ(static_cast<Tavrin::ContentHandler*>(&log), reader.getContentHandler());
}

TEST(FIReaderObject, KeepsItsPropertiesFromDocumentToDocument) {
  TypedReader reader;
  EXPECT_EQ(whole({"comment(c)"}), reader.read(document("E2 00 'c' F0")));
  EXPECT_EQ("SAXException: Not a Fast Infoset document\n", reader.read(""));
  EXPECT_EQ(whole({"comment(c)"}), reader.read(document("E2 00 'c' F0")));
  EXPECT_EQ(&reader.map, reader.reader.getProperty(kProperties[4]));
}

TEST(FIReaderObject, KnowsNoOtherProperty) {
  std::vector<std::string> names = {"", "x", "lexical-handler", "/sax/properties/lexical-handler",
                                    "http://tavrin/sax/features/auto-indent"};
  for (const char* property : kProperties) {
    const std::string name = property;
    // Letter case counts, and every octet.
    std::string upper = name;
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    names.insert(names.end(), {upper, name + " ", " " + name, name + "/", name.substr(1),
                               name.substr(0, name.size() - 1)});
  }
  LoggedReader reader;
  void* const lexical = reader.reader.getProperty(kProperties[0]);
  int value = 0;
  for (const std::string& name : names) {
    const std::string refused =
        "SAXNotRecognizedException: Property \"" + name + "\" not recognized";
    EXPECT_EQ(refused, outcomeOf([&] { reader.reader.setProperty(name, &value); }));
    EXPECT_EQ(refused, outcomeOf([&] { reader.reader.getProperty(name); }));
  }
  EXPECT_EQ(lexical, reader.reader.getProperty(kProperties[0]));
  EXPECT_EQ(whole({"comment(c)"}), reader.read(document("E2 00 'c' F0")));
}

TEST(FIReaderObject, KnowsNoFeature) {
  Tavrin::XMLReader_FI reader;
  for (const char* name : {"", "http://xml.org/sax/features/namespaces", kProperties[0]}) {
    const std::string refused =
        std::string("SAXNotRecognizedException: Feature \"") + name + "\" not recognized";
    EXPECT_EQ(refused, outcomeOf([&] { reader.getFeature(name); }));
    EXPECT_EQ(refused, outcomeOf([&] { reader.setFeature(name, true); }));
    EXPECT_EQ(refused, outcomeOf([&] { reader.setFeature(name, false); }));
  }
}

TEST(FIReaderObject, ParsesNoBlocks) {
  LoggedReader reader;
  const std::string block = document("E2 00 'c' F0");
  for (const bool isFinal : {false, true}) {
    EXPECT_EQ("SAXNotRecognizedException: parse not implemented",
              outcomeOf([&] { reader.reader.parse(block.data(), block.size(), isFinal); }));
    EXPECT_EQ("SAXNotRecognizedException: parse not implemented",
              outcomeOf([&] { reader.reader.parse(nullptr, 0, isFinal); }));
  }
  EXPECT_EQ("", reader.log.text());
  EXPECT_EQ(whole({"comment(c)"}), reader.read(block));
}

TEST(FIReaderObject, TellsNoLocatorErrorOrEntity) {
  // All handlers are there; the log would show their lines.
  LoggedReader reader;
  EXPECT_EQ(wholeContent({}) +
                "printed(unexpanded entity reference - name = \"e\", systemID = "
                "\"s\", publicID = \"\"\\n)\n",
            reader.read(documentOfContent("CA 00 'e' 00 's'")));
  EXPECT_EQ("SAXException: Not a Fast Infoset document\n", reader.read("<a/>"));
  EXPECT_EQ(failed({}, "Unexpected end of document"), reader.read(document("")));
  EXPECT_EQ(
      "startDocument()\nstartElement(, a, a, [])\n"
      "EncodingAlgorithmException: Invalid length for encoded short data\n",
      reader.read(documentOfContent("8C 08 00")));
}

TEST(FIReaderObject, OwnsNoHandler) {
  EventLog log;
  {
    Tavrin::XMLReader_FI reader;
    log.attachTo(reader);
  }
  log.comment("still there");
  EXPECT_EQ("comment(still there)\n", log.text());
}

}  // namespace
}  // namespace reader_test
