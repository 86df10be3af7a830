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
  const auto reader = Tavrin::XMLReaderFactory::createXMLReader();
  reader->setContentHandler(writer.get());
  std::istringstream document("<a b='1'>text</a>");
  reader->parse(document);
  EXPECT_EQ("<?xml version=\"1.0\" encoding=\"UTF-8\"?><a b='1'>text</a>", octets.str());
}

}  // namespace
