#include <dlfcn.h>
#include <gtest/gtest.h>

#include <Tavrin/Factories.h>

#include <sstream>
#include <vector>

namespace {

struct Comments : Tavrin::LexicalHandler {
  void comment(const std::string& text) override { texts.push_back(text); }
  std::vector<std::string> texts;
};

bool isLoaded() {
  void* plugin = dlopen(TAVRIN_PLUGIN, RTLD_LAZY | RTLD_NOLOAD);
  if (plugin != nullptr) dlclose(plugin);
  return plugin != nullptr;
}

std::string failureToCreate() {
  try {
    Tavrin::XMLReaderFactory::createXMLReader("Plugin");
  } catch (const Tavrin::SAXException& exception) {
    return exception.getMessage();
  }
  return "none";
}

TEST(Plugin, IsGoneWithItsTypeWhenItIsUnloaded) {
  const std::vector<std::string> builtIn = Tavrin::XMLReaderFactory::getTypeNames();
  for (int round = 0; round < 2; ++round) {
    EXPECT_FALSE(isLoaded());
    EXPECT_EQ("Unknown XML Reader: \"Plugin\"", failureToCreate());

    void* plugin = dlopen(TAVRIN_PLUGIN, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(nullptr, plugin) << dlerror();
    EXPECT_TRUE(isLoaded());
    {
      Comments comments;
      const auto reader = Tavrin::XMLReaderFactory::createXMLReader("pLUGIN");
      reader->setProperty("http://xml.org/sax/properties/lexical-handler",
                          static_cast<Tavrin::LexicalHandler*>(&comments));
      std::istringstream nothing;
      reader->parse(nothing);
      EXPECT_EQ((std::vector<std::string>{"http://xml.org/sax/properties/lexical-handler",
                                          "http://xml.org/sax/properties/declaration-handler",
                                          "http://tavrin/sax/features/auto-indent",
                                          "http://www.w3.org/XML/1998/namespace",
                                          "http://www.w3.org/2000/xmlns/"}),
                comments.texts);
    }
    EXPECT_EQ(0, dlclose(plugin));
    EXPECT_FALSE(isLoaded());
    EXPECT_EQ("Unknown XML Reader: \"Plugin\"", failureToCreate());
    EXPECT_EQ(builtIn, Tavrin::XMLReaderFactory::getTypeNames());
  }
}

}  // namespace
