#include "Catalog.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>

namespace {

class CatalogHandler : public Tavrin::ContentHandler {
 public:
  CatalogHandler(std::string folder, std::vector<SuiteDocument>& documents)
      : folder_(std::move(folder)), documents_(documents) {}

  void startElement(const std::string&, const std::string&, const std::string& qName,
                    const Tavrin::Attributes& attributes) override {
    if (qName != "TEST") return;
    const auto value = [&](const char* name) {
      return attributes.getIndex(name) < 0 ? std::string() : attributes.getValue(name);
    };
    const std::string output = value("OUTPUT");
    documents_.push_back({folder_.substr(folder_.rfind('/') + 1) + "/" + value("ID"), value("TYPE"),
                          folder_ + "/" + value("URI"),
                          output.empty() ? output : folder_ + "/" + output,
                          value("NAMESPACE") != "no"});
  }

 private:
  std::string folder_;
  std::vector<SuiteDocument>& documents_;
};

}  // namespace

std::vector<SuiteDocument> readCatalogs(const std::string& folder) {
  std::vector<SuiteDocument> documents;
  for (const char* path : {"xmltest/xmltest.xml", "sun/sun-valid.xml", "sun/sun-invalid.xml",
                           "sun/sun-not-wf.xml", "sun/sun-error.xml"}) {
    const std::string file = folder + "/" + path;
    // Most catalogs are external entities, without a root element.
    std::istringstream document("<!DOCTYPE catalog [<!ENTITY file SYSTEM '" + file +
                                "'>]><catalog>&file;</catalog>");
    FileResolver resolver;
    CatalogHandler handler(file.substr(0, file.rfind('/')), documents);
    const auto reader = Tavrin::XMLReaderFactory::createXMLReader("XML10");
    reader->setContentHandler(&handler);
    reader->setEntityResolver(&resolver);
    reader->parse(document);
  }
  return documents;
}

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

std::unique_ptr<std::istream> FileResolver::resolveEntity(const std::string&,
                                                          const std::string& systemId) {
  auto file = std::make_unique<std::ifstream>(systemId, std::ios::binary);
  EXPECT_TRUE(*file) << systemId;
  return file;
}
