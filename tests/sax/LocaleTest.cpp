#include <gtest/gtest.h>

#include <Tavrin/Factories.h>

#include <cctype>
#include <clocale>
#include <cstdlib>
#include <filesystem>

namespace {

using namespace std::string_literals;

std::unique_ptr<Tavrin::XMLReader> createNothing() { return nullptr; }

std::string failureToCreate(const std::string& name) {
  try {
    Tavrin::XMLReaderFactory::createXMLReader(name);
  } catch (const Tavrin::SAXException& exception) {
    return exception.getMessage();
  }
  return "none";
}

/// A Turkish locale for the length of a test: there the small letter of I is one without a dot.
class TurkishLocale : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    char pattern[] = "/tmp/tavrin-locale-XXXXXX";
    ASSERT_NE(nullptr, mkdtemp(pattern));
    folder_ = pattern;
    const std::string name = std::string("tr_TR.") + GetParam();
    const std::string command = std::string("localedef -i tr_TR -f ") + GetParam() + " '" +
                                (folder_ / name).string() + "' >/dev/null 2>&1";
    if (std::system(command.c_str()) != 0) GTEST_SKIP() << "localedef knows no Turkish locale";
    setenv("LOCPATH", folder_.c_str(), 1);
    ASSERT_NE(nullptr, std::setlocale(LC_ALL, name.c_str()));
    ASSERT_NE('i', std::tolower('I')) << "the locale is Turkish";
  }
  void TearDown() override {
    std::setlocale(LC_ALL, "C");
    unsetenv("LOCPATH");
    if (!folder_.empty()) std::filesystem::remove_all(folder_);
  }

 private:
  std::filesystem::path folder_;
};

TEST_P(TurkishLocale, ChangesNothingOfHowTypesAreFound) {
  for (const char* name : {"FI", "fi", "Fi", "fI", "EXPAT", "expat", "XML10"}) {
    EXPECT_NE(nullptr, Tavrin::XMLReaderFactory::createXMLReader(name)) << name;
  }
  for (const char* name : {"FI", "fi", "Fi", "fI", "XML", "xml"}) {
    EXPECT_NE(nullptr, Tavrin::XMLWriterFactory::createXMLWriter(name)) << name;
  }

  // A type that is registered in it: I and i with and without dot of Turkish, in its single-octet
  // encoding and in UTF-8.
  const std::string others = "\xDD\xFD-\xC4\xB0\xC4\xB1-\xC3\x84";
  {
    const Tavrin::XMLReaderType type("I" + others, &createNothing);
    EXPECT_EQ("none", failureToCreate("I" + others));
    EXPECT_EQ("none", failureToCreate("i" + others));
    for (const std::string& name :
         {"\xFD" + others, "\xC4\xB1" + others, "i\xFD\xFD-\xC4\xB0\xC4\xB1-\xC3\x84"s,
          "i\xDD\xFD-\xC4\xB1\xC4\xB1-\xC3\x84"s, "i\xDD\xFD-\xC4\xB0\xC4\xB1-\xC3\xA4"s}) {
      EXPECT_EQ("Unknown XML Reader: \"" + name + "\"", failureToCreate(name));
    }
    // Back in the locale of the library's start.
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ("none", failureToCreate("i" + others));
  }
  EXPECT_EQ("Unknown XML Reader: \"I" + others + "\"", failureToCreate("I" + others));
}

INSTANTIATE_TEST_SUITE_P(Registries, TurkishLocale, testing::Values("ISO-8859-9", "UTF-8"),
                         [](const testing::TestParamInfo<const char*>& tested) {
                           return tested.index == 0 ? "ISO88599" : "UTF8";
                         });

}  // namespace
