#include <Tavrin/Factories.h>
#include <Tavrin/Handlers.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLReader.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <istream>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "VirtualSlot.h"
#include "WhatIsThrown.h"

namespace {

using namespace Tavrin;

static_assert(std::is_abstract_v<XMLReader>);
static_assert(std::has_virtual_destructor_v<XMLReader>);
static_assert(!std::is_copy_constructible_v<XMLReader>);

/// The least a reader must have: everything else is the base's.
class MinimalReader : public XMLReader {
 public:
  using XMLReader::parse;
  void parse(std::istream& stream) override { stream >> word; }

  // Read straight from the base: the pointers that derived readers use.
  std::vector<const void*> heldPointers() const {
    return {contentHandler_, errorHandler_, entityResolver_, dtdHandler_};
  }

  std::string word;
};

/// The pointers that the getters give, in the order in which the reader holds them.
std::vector<const void*> gotPointers(const XMLReader& reader) {
  return {reader.getContentHandler(), reader.getErrorHandler(), reader.getEntityResolver(),
          reader.getDTDHandler()};
}

const std::string kIdentifiers[] = {
    "",
    "x",
    "\"",
    "a \"quoted\" name\"",
    "Feature \"x\" not recognized",
    std::string("nul\0inside", 10),
    "two\nlines",
    properties::lexicalHandler,
    properties::declarationHandler,
    features::autoIndent,
    features::emptyTags,
    features::xmlDeclaration,
    "http://xml.org/sax/features/namespaces",
    std::string(100'000, 'i'),
};

TEST(XMLReader, HasNoHandlersAtFirst) {
  const MinimalReader reader;
  const std::vector<const void*> none{nullptr, nullptr, nullptr, nullptr};
  EXPECT_EQ(gotPointers(reader), none);
  EXPECT_EQ(reader.heldPointers(), none);
}

TEST(XMLReader, KeepsEachHandlerInItsOwnPlace) {
  MinimalReader reader;
  ContentHandler content;
  ErrorHandler errors;
  EntityResolver resolver;
  DTDHandler dtd;

  reader.setContentHandler(&content);
  EXPECT_EQ(gotPointers(reader), (std::vector<const void*>{&content, nullptr, nullptr, nullptr}));
  reader.setErrorHandler(&errors);
  EXPECT_EQ(gotPointers(reader), (std::vector<const void*>{&content, &errors, nullptr, nullptr}));
  reader.setEntityResolver(&resolver);
  EXPECT_EQ(gotPointers(reader), (std::vector<const void*>{&content, &errors, &resolver, nullptr}));
  reader.setDTDHandler(&dtd);
  EXPECT_EQ(gotPointers(reader), (std::vector<const void*>{&content, &errors, &resolver, &dtd}));
  EXPECT_EQ(reader.heldPointers(), gotPointers(reader));
}

TEST(XMLReader, ReplacesAHandlerByTheLastOneSet) {
  MinimalReader reader;
  ContentHandler contents[2];
  ErrorHandler errors[2];
  EntityResolver resolvers[2];
  DTDHandler dtds[2];
  for (const std::size_t i : {0U, 1U, 1U, 0U}) {
    reader.setContentHandler(&contents[i]);
    reader.setErrorHandler(&errors[i]);
    reader.setEntityResolver(&resolvers[i]);
    reader.setDTDHandler(&dtds[i]);
    EXPECT_EQ(gotPointers(reader),
              (std::vector<const void*>{&contents[i], &errors[i], &resolvers[i], &dtds[i]}));
  }
}

TEST(XMLReader, TakesANullHandlerForNone) {
  MinimalReader reader;
  ContentHandler content;
  ErrorHandler errors;
  EntityResolver resolver;
  DTDHandler dtd;
  reader.setContentHandler(&content);
  reader.setErrorHandler(&errors);
  reader.setEntityResolver(&resolver);
  reader.setDTDHandler(&dtd);

  reader.setErrorHandler(nullptr);
  EXPECT_EQ(gotPointers(reader), (std::vector<const void*>{&content, nullptr, &resolver, &dtd}));
  reader.setDTDHandler(nullptr);
  EXPECT_EQ(gotPointers(reader), (std::vector<const void*>{&content, nullptr, &resolver, nullptr}));
  reader.setContentHandler(nullptr);
  EXPECT_EQ(gotPointers(reader), (std::vector<const void*>{nullptr, nullptr, &resolver, nullptr}));
  reader.setEntityResolver(nullptr);
  reader.setEntityResolver(nullptr);
  EXPECT_EQ(gotPointers(reader), (std::vector<const void*>{nullptr, nullptr, nullptr, nullptr}));
}

TEST(XMLReader, LeavesItsHandlersAlive) {
  class Counted : public ContentHandler,
                  public ErrorHandler,
                  public EntityResolver,
                  public DTDHandler {
   public:
    explicit Counted(int* destroyed) : destroyed_(destroyed) {}
    ~Counted() override { ++*destroyed_; }

   private:
    int* destroyed_;
  };
  int destroyed = 0;
  {
    Counted handler(&destroyed);
    {
      MinimalReader reader;
      reader.setContentHandler(&handler);
      reader.setErrorHandler(&handler);
      reader.setEntityResolver(&handler);
      reader.setDTDHandler(&handler);
    }
    EXPECT_EQ(destroyed, 0);
  }
  EXPECT_EQ(destroyed, 1);
}

TEST(XMLReader, RefusesEveryFeature) {
  MinimalReader reader;
  for (const std::string& name : kIdentifiers) {
    const std::string refusal =
        "SAXNotRecognizedException: Feature \"" + name + "\" not recognized";
    EXPECT_EQ(thrown([&] { reader.setFeature(name, true); }), refusal);
    EXPECT_EQ(thrown([&] { reader.setFeature(name, false); }), refusal);
    EXPECT_EQ(thrown([&] { reader.getFeature(name); }), refusal);
  }
}

TEST(XMLReader, RefusesEveryProperty) {
  MinimalReader reader;
  int value = 0;
  for (const std::string& name : kIdentifiers) {
    const std::string refusal =
        "SAXNotRecognizedException: Property \"" + name + "\" not recognized";
    EXPECT_EQ(thrown([&] { reader.setProperty(name, &value); }), refusal);
    EXPECT_EQ(thrown([&] { reader.setProperty(name, nullptr); }), refusal);
    EXPECT_EQ(thrown([&] { reader.getProperty(name); }), refusal);
  }
}

TEST(XMLReader, SpellsTheRefusalsInFull) {
  MinimalReader reader;
  EXPECT_EQ(thrown([&] { reader.getFeature(""); }),
            "SAXNotRecognizedException: Feature \"\" not recognized");
  EXPECT_EQ(thrown([&] { reader.setFeature("a\"b", true); }),
            "SAXNotRecognizedException: Feature \"a\"b\" not recognized");
  EXPECT_EQ(thrown([&] { reader.getProperty("URN:MixedCase"); }),
            "SAXNotRecognizedException: Property \"URN:MixedCase\" not recognized");
  EXPECT_EQ(
      thrown([&] { reader.setProperty("http://xml.org/sax/properties/lexical-handler", nullptr); }),
      "SAXNotRecognizedException: Property \"http://xml.org/sax/properties/lexical-handler\" not "
      "recognized");
}

TEST(XMLReader, RefusesToParseBlocks) {
  MinimalReader reader;
  const std::string document = "<r/>";
  const std::string refusal = "SAXNotRecognizedException: parse not implemented";
  for (const bool isFinal : {false, true}) {
    EXPECT_EQ(thrown([&] { reader.parse(document.data(), document.size(), isFinal); }), refusal);
    EXPECT_EQ(thrown([&] { reader.parse(document.data(), 0, isFinal); }), refusal);
    EXPECT_EQ(thrown([&] { reader.parse(nullptr, 0, isFinal); }), refusal);
    EXPECT_EQ(
        thrown([&] { reader.parse(nullptr, std::numeric_limits<unsigned long>::max(), isFinal); }),
        refusal);
  }
}

TEST(XMLReader, IsAsBeforeAfterARefusal) {
  MinimalReader reader;
  ContentHandler content;
  DTDHandler dtd;
  reader.setContentHandler(&content);
  reader.setDTDHandler(&dtd);
  EXPECT_NE(thrown([&] { reader.setFeature("f", true); }), "nothing");
  EXPECT_NE(thrown([&] { reader.setProperty("p", &dtd); }), "nothing");
  EXPECT_NE(thrown([&] { reader.parse("<r/>", 4, true); }), "nothing");
  EXPECT_EQ(gotPointers(reader), (std::vector<const void*>{&content, nullptr, nullptr, &dtd}));

  std::istringstream stream("word");
  XMLReader& base = reader;
  base.parse(stream);
  EXPECT_EQ(reader.word, "word");
}

TEST(XMLReader, KeepsTheOrderOfItsVirtualTable) {
  using ParseStream = void (XMLReader::*)(std::istream&);
  using ParseBlock = void (XMLReader::*)(const void*, unsigned long, bool);
  EXPECT_EQ(
      (std::vector<std::ptrdiff_t>{slotOf(&XMLReader::setFeature), slotOf(&XMLReader::getFeature),
                                   slotOf(&XMLReader::setProperty), slotOf(&XMLReader::getProperty),
                                   slotOf(static_cast<ParseStream>(&XMLReader::parse)),
                                   slotOf(static_cast<ParseBlock>(&XMLReader::parse))}),
      (std::vector<std::ptrdiff_t>{2, 3, 4, 5, 6, 7}));
}

class RegisteredReader : public testing::TestWithParam<std::string> {};

TEST_P(RegisteredReader, RecognisesNoFeature) {
  const auto reader = XMLReaderFactory::createXMLReader(GetParam());
  for (const std::string& name : kIdentifiers) {
    const std::string refusal =
        "SAXNotRecognizedException: Feature \"" + name + "\" not recognized";
    EXPECT_EQ(thrown([&] { reader->setFeature(name, true); }), refusal);
    EXPECT_EQ(thrown([&] { reader->setFeature(name, false); }), refusal);
    EXPECT_EQ(thrown([&] { reader->getFeature(name); }), refusal);
  }
}

TEST_P(RegisteredReader, ComparesPropertyIdentifiersOctetForOctet) {
  const auto reader = XMLReaderFactory::createXMLReader(GetParam());
  LexicalHandler lexical;
  LexicalHandler* const value = &lexical;
  reader->setProperty("http://xml.org/sax/properties/lexical-handler", value);
  const std::string others[] = {
      "http://xml.org/sax/properties/Lexical-Handler",
      "HTTP://XML.ORG/SAX/PROPERTIES/LEXICAL-HANDLER",
      "http://xml.org/sax/properties/lexical-handler ",
      " http://xml.org/sax/properties/lexical-handler",
      "http://xml.org/sax/properties/lexical-handle",
      "http://xml.org/sax/properties/lexical-handler/",
      "/sax/properties/lexical-handler",
      std::string("http://xml.org/sax/properties/lexical-handler\0", 46),
  };
  for (const std::string& name : others) {
    const std::string refusal =
        "SAXNotRecognizedException: Property \"" + name + "\" not recognized";
    EXPECT_EQ(thrown([&] { reader->setProperty(name, nullptr); }), refusal);
    EXPECT_EQ(thrown([&] { reader->getProperty(name); }), refusal);
  }
  EXPECT_EQ(reader->getProperty("http://xml.org/sax/properties/lexical-handler"), value);
}

INSTANTIATE_TEST_SUITE_P(Types, RegisteredReader, testing::Values("Expat"),
                         [](const auto& tested) { return tested.param; });

}  // namespace
