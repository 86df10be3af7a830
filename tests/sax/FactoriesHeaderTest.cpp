// This header alone is to be enough, so it comes first, and nothing of the library beside it.
#include <Tavrin/Factories.h>
//
#include <gtest/gtest.h>

#include <sstream>

namespace {

TEST(FactoriesHeader, IsEnoughToMakeAndUseReadersAndWriters) {
  std::ostringstream octets;
  const auto writer = Tavrin::XMLWriterFactory::createXMLWriter();
  writer->setOutputStream(&octets);
  writer->setFeature(Tavrin::features::xmlDeclaration, false);
  const auto reader = Tavrin::XMLReaderFactory::createXMLReader();
  reader->setContentHandler(writer.get());
  reader->setProperty(Tavrin::properties::lexicalHandler,
                      static_cast<Tavrin::LexicalHandler*>(writer.get()));
  std::istringstream document("<a b='1'>text<!--comment--></a>");
  reader->parse(document);
  EXPECT_EQ("<a b='1'>text<!--comment--></a>", octets.str());
}

}  // namespace
