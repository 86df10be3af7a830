#include "Registries.h"

#include <Tavrin/XMLReader_Expat.h>
#include <Tavrin/XMLWriter_XML.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "WhatIsThrown.h"

namespace {

using namespace Tavrin;

// How an application keeps its own types: registered before main, removed after it.
const XMLReaderType staticReaderType("Static-Sample", &makeSample<Readers, 1>);
const XMLWriterType staticWriterType("Static-Sample", &makeSample<Writers, 2>);

TEST(StaticRecord, IsRegisteredBeforeMain) {
  EXPECT_EQ(sampleNamed<Readers>("static-sample"), 1);
  EXPECT_EQ(sampleNamed<Writers>("static-sample"), 2);
}

TEST(BuiltInTypes, AreFoundInAnySpelling) {
  for (const char* name : {"Expat", "expat", "EXPAT", "eXpAt"}) {
    const auto reader = XMLReaderFactory::createXMLReader(name);
    EXPECT_NE(dynamic_cast<XMLReader_Expat*>(reader.get()), nullptr) << name;
  }
  for (const char* name : {"XML", "xml", "Xml", "xMl"}) {
    const auto writer = XMLWriterFactory::createXMLWriter(name);
    EXPECT_NE(dynamic_cast<XMLWriter_XML*>(writer.get()), nullptr) << name;
  }
}

TEST(BuiltInTypes, AreTheDefaults) {
  const auto reader = XMLReaderFactory::createXMLReader();
  EXPECT_NE(dynamic_cast<XMLReader_Expat*>(reader.get()), nullptr);
  const auto writer = XMLWriterFactory::createXMLWriter();
  EXPECT_NE(dynamic_cast<XMLWriter_XML*>(writer.get()), nullptr);
}

TEST(BuiltInTypes, AreListedAsTheySpellThemselves) {
  EXPECT_THAT(XMLReaderFactory::getTypeNames(), testing::Contains("Expat").Times(1));
  EXPECT_THAT(XMLWriterFactory::getTypeNames(), testing::Contains("XML").Times(1));
}

TEST(Registries, KnowNothingOfEachOther) {
  EXPECT_EQ(thrown([] { XMLReaderFactory::createXMLReader("XML"); }),
            "SAXException: Unknown XML Reader: \"XML\"");
  EXPECT_EQ(thrown([] { XMLWriterFactory::createXMLWriter("Expat"); }),
            "SAXException: Unknown XML Writer: \"Expat\"");
  const XMLReaderType readerOnly("Sample", &makeSample<Readers, 1>);
  EXPECT_EQ(thrown([] { XMLWriterFactory::createXMLWriter("Sample"); }),
            "SAXException: Unknown XML Writer: \"Sample\"");
}

template <typename Registry>
class BothRegistries : public testing::Test {
 protected:
  using Names = std::vector<std::string>;

  static int sample(const std::string& name) { return sampleNamed<Registry>(name); }
  static std::string refusal(const std::string& name) {
    return thrown([&] { Registry::create(name); });
  }
  /// The names, without those that were registered when the test began.
  Names newNames() const {
    Names names = Registry::Factory::getTypeNames();
    std::erase_if(names, [&](const std::string& name) {
      return std::find(atFirst_.begin(), atFirst_.end(), name) != atFirst_.end();
    });
    return names;
  }
  void TearDown() override { EXPECT_EQ(Registry::Factory::getTypeNames(), atFirst_); }

 private:
  const Names atFirst_ = Registry::Factory::getTypeNames();
};

using RegistryTypes = testing::Types<Readers, Writers>;
TYPED_TEST_SUITE(BothRegistries, RegistryTypes);

TYPED_TEST(BothRegistries, KnowATypeForAsLongAsItsRecordLives) {
  EXPECT_EQ(this->refusal("Sample"), TypeParam::unknown("Sample"));
  {
    const typename TypeParam::Type type("Sample", &makeSample<TypeParam, 1>);
    EXPECT_EQ(this->sample("Sample"), 1);
  }
  EXPECT_EQ(this->refusal("Sample"), TypeParam::unknown("Sample"));
}

TYPED_TEST(BothRegistries, MakeANewObjectEveryTime) {
  const typename TypeParam::Type type("Sample", &makeSample<TypeParam, 1>);
  const auto first = TypeParam::create("Sample");
  const auto second = TypeParam::create("Sample");
  EXPECT_NE(first, nullptr);
  EXPECT_NE(second, nullptr);
  EXPECT_NE(first, second);
}

TYPED_TEST(BothRegistries, MatchNamesWithoutRegardToCase) {
  const typename TypeParam::Type type("My-Sample_1", &makeSample<TypeParam, 1>);
  for (const char* name : {"My-Sample_1", "my-sample_1", "MY-SAMPLE_1", "mY-sAMPLE_1"}) {
    EXPECT_EQ(this->sample(name), 1) << name;
  }
  for (const char* name : {"My-Sample_", "My-Sample_12", " My-Sample_1", "My-Sample_1 ",
                           "My_Sample_1", "My-Sample-1", "M"}) {
    EXPECT_EQ(this->refusal(name), TypeParam::unknown(name));
  }
}

TYPED_TEST(BothRegistries, TellAnUnknownNameInTheCallersSpelling) {
  const std::string names[] = {"FOO",
                               "Foo",
                               "foo",
                               "a\"b",
                               "two\nlines",
                               "Expa",
                               "ExpatX",
                               " ",
                               "\xC3\x89",
                               std::string("Expat\0", 6),
                               std::string("\0XML", 4),
                               std::string(100'000, 'N')};
  for (const std::string& name : names) EXPECT_EQ(this->refusal(name), TypeParam::unknown(name));
}

TEST(Registries, SpellTheirRefusalsInFull) {
  EXPECT_EQ(thrown([] { XMLReaderFactory::createXMLReader("NoSuch"); }),
            "SAXException: Unknown XML Reader: \"NoSuch\"");
  EXPECT_EQ(thrown([] { XMLReaderFactory::createXMLReader(""); }),
            "SAXException: Unknown XML Reader: \"\"");
  EXPECT_EQ(thrown([] { XMLWriterFactory::createXMLWriter("NoSuch"); }),
            "SAXException: Unknown XML Writer: \"NoSuch\"");
  EXPECT_EQ(thrown([] { XMLWriterFactory::createXMLWriter(""); }),
            "SAXException: Unknown XML Writer: \"\"");
}

TYPED_TEST(BothRegistries, TakeAnEmptyNameLikeAnyOther) {
  EXPECT_EQ(this->refusal(""), TypeParam::unknown(""));
  const typename TypeParam::Type type("", &makeSample<TypeParam, 1>);
  EXPECT_EQ(type.getName(), "");
  EXPECT_EQ(this->sample(""), 1);
  EXPECT_EQ(this->newNames(), std::vector<std::string>{""});
}

TYPED_TEST(BothRegistries, TakeANulInANameLikeAnyOtherOctet) {
  const std::string name("Sam\0ple", 7);
  const typename TypeParam::Type type(name, &makeSample<TypeParam, 1>);
  EXPECT_EQ(this->sample(std::string("sAM\0PLE", 7)), 1);
  EXPECT_EQ(this->refusal("Sam"), TypeParam::unknown("Sam"));
  EXPECT_EQ(this->newNames(), std::vector<std::string>{name});
}

// Case is folded octet by octet; in the locale of this program only ASCII letters have a case.
TYPED_TEST(BothRegistries, FoldNoMultibyteLetters) {
  const typename TypeParam::Type type("\xC3\x89T\xC3\x89", &makeSample<TypeParam, 1>);
  EXPECT_EQ(this->sample("\xC3\x89t\xC3\x89"), 1);
  EXPECT_EQ(this->refusal("\xC3\xA9t\xC3\xA9"), TypeParam::unknown("\xC3\xA9t\xC3\xA9"));
}

TYPED_TEST(BothRegistries, KeepANameAsItsRecordSpellsIt) {
  const std::string longName(10'000, 'L');
  for (const std::string& name : {std::string("SaMpLe"), std::string(), longName}) {
    const typename TypeParam::Type type(name, &makeSample<TypeParam, 1>);
    EXPECT_EQ(type.getName(), name);
    EXPECT_EQ(this->newNames(), std::vector<std::string>{name});
  }
}

// An underscore stands between the capital and the small letters, so the folded order shows.
TYPED_TEST(BothRegistries, ListNamesInTheOrderOfTheirFoldedForm) {
  using Type = typename TypeParam::Type;
  const Type zulu("Zulu", &makeSample<TypeParam, 1>);
  const Type accented("\xC3\x89", &makeSample<TypeParam, 1>);
  const Type alphaB("alphaB", &makeSample<TypeParam, 1>);
  const Type alpha("ALPHA", &makeSample<TypeParam, 1>);
  const Type score("_Score", &makeSample<TypeParam, 1>);
  const Type digit("9", &makeSample<TypeParam, 1>);
  EXPECT_EQ(this->newNames(),
            (std::vector<std::string>{"9", "_Score", "ALPHA", "alphaB", "Zulu", "\xC3\x89"}));
}

TYPED_TEST(BothRegistries, LetTheLastRegistrationWin) {
  using Type = typename TypeParam::Type;
  const Type first("Sample", &makeSample<TypeParam, 1>);
  EXPECT_EQ(this->sample("sample"), 1);
  const Type second("SAMPLE", &makeSample<TypeParam, 2>);
  EXPECT_EQ(this->sample("sample"), 2);
  EXPECT_EQ(this->newNames(), std::vector<std::string>{"SAMPLE"});
  const Type third("SAMPLE", &makeSample<TypeParam, 3>);
  EXPECT_EQ(this->sample("Sample"), 3);
  EXPECT_EQ(first.getName(), "Sample");
}

TYPED_TEST(BothRegistries, RemoveANameWhoeverRegisteredItLast) {
  using Type = typename TypeParam::Type;
  const Type other("Other", &makeSample<TypeParam, 3>);
  auto older = std::make_unique<Type>("Sample", &makeSample<TypeParam, 1>);
  auto newer = std::make_unique<Type>("sample", &makeSample<TypeParam, 2>);

  older.reset();  // The name stood for the newer record.
  EXPECT_EQ(this->refusal("Sample"), TypeParam::unknown("Sample"));
  EXPECT_EQ(newer->getName(), "sample");
  newer.reset();  // Its name has left already.
  EXPECT_EQ(this->refusal("Sample"), TypeParam::unknown("Sample"));
  EXPECT_EQ(this->newNames(), std::vector<std::string>{"Other"});
  EXPECT_EQ(this->sample("Other"), 3);
}

TYPED_TEST(BothRegistries, DoNotComeBackToAReplacedRecord) {
  using Type = typename TypeParam::Type;
  const Type older("Sample", &makeSample<TypeParam, 1>);
  { const Type newer("Sample", &makeSample<TypeParam, 2>); }
  EXPECT_EQ(this->refusal("Sample"), TypeParam::unknown("Sample"));
  const Type again("Sample", &makeSample<TypeParam, 3>);
  EXPECT_EQ(this->sample("Sample"), 3);
}

TYPED_TEST(BothRegistries, AddAndRemoveARecordOnRequest) {
  const typename TypeParam::Type type("Sample", &makeSample<TypeParam, 1>);
  TypeParam::Factory::addType(&type);
  EXPECT_EQ(this->newNames(), std::vector<std::string>{"Sample"});
  TypeParam::Factory::removeType(&type);
  EXPECT_EQ(this->refusal("Sample"), TypeParam::unknown("Sample"));
  TypeParam::Factory::removeType(&type);
  EXPECT_EQ(this->refusal("Sample"), TypeParam::unknown("Sample"));
  TypeParam::Factory::addType(&type);
  EXPECT_EQ(this->sample("Sample"), 1);
}

template <typename Registry>
std::unique_ptr<typename Registry::Base> makeNothing() {
  return nullptr;
}

TYPED_TEST(BothRegistries, PassOnWhatTheCreateFunctionGivesEvenNothing) {
  const typename TypeParam::Type type("Sample", &makeNothing<TypeParam>);
  EXPECT_EQ(TypeParam::create("Sample"), nullptr);
}

template <typename Registry, typename Exception>
std::unique_ptr<typename Registry::Base> fail() {
  if constexpr (std::is_same_v<Exception, int>) {
    throw 42;
  } else if constexpr (std::is_same_v<Exception, SAXParseException>) {
    throw SAXParseException("no such luck", 3, 4);
  } else {
    throw Exception("no such luck");
  }
}

TYPED_TEST(BothRegistries, LetExceptionsOfTheCreateFunctionPass) {
  using Type = typename TypeParam::Type;
  const Type sax("Sax", &fail<TypeParam, SAXException>);
  const Type parse("Parse", &fail<TypeParam, SAXParseException>);
  const Type notRecognized("NotRecognized", &fail<TypeParam, SAXNotRecognizedException>);
  const Type algorithm("Algorithm", &fail<TypeParam, EncodingAlgorithmException>);
  const Type standard("Standard", &fail<TypeParam, std::out_of_range>);
  const Type number("Number", &fail<TypeParam, int>);
  EXPECT_EQ(this->refusal("Sax"), "SAXException: no such luck");
  EXPECT_EQ(this->refusal("Parse"), "SAXParseException: no such luck (3:4)");
  EXPECT_EQ(this->refusal("NotRecognized"), "SAXNotRecognizedException: no such luck");
  EXPECT_EQ(this->refusal("Algorithm"), "EncodingAlgorithmException: no such luck");
  EXPECT_EQ(this->refusal("Standard"), "std::out_of_range: no such luck");
  int caught = 0;
  try {
    TypeParam::create("Number");
  } catch (int value) {
    caught = value;
  }
  EXPECT_EQ(caught, 42);
  EXPECT_EQ(this->newNames(), (std::vector<std::string>{"Algorithm", "NotRecognized", "Number",
                                                        "Parse", "Sax", "Standard"}));
}

TYPED_TEST(BothRegistries, TakeManyTypes) {
  using Type = typename TypeParam::Type;
  constexpr int kCount = 1'000;
  std::vector<std::unique_ptr<Type>> types;
  for (int i = 0; i < kCount; ++i) {
    types.push_back(
        std::make_unique<Type>("Sample" + std::to_string(i), &makeSample<TypeParam, 1>));
  }
  for (int i = 0; i < kCount; ++i) ASSERT_EQ(this->sample("SAMPLE" + std::to_string(i)), 1);
  EXPECT_EQ(this->newNames().size(), static_cast<std::size_t>(kCount));
}

}  // namespace
