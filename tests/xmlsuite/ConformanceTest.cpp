#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <optional>
#include <sstream>

#include "CanonicalForm.h"
#include "Catalog.h"

namespace {

/// What a document is known to be treated otherwise than the suite expects, and why. The reasons
/// lie in expat, or in the document. A document here that is treated as expected fails the test,
/// too.
const std::map<std::string, std::string> kKnownDifferences = {};

const char* suiteFolder() { return std::getenv("TAVRIN_XML_SUITE"); }

/// The message of the failure, or nothing where the document was read.
/// @param blockSize of blocks in which the document is given; 0 for a stream
std::optional<std::string> failureOf(const SuiteDocument& document, CanonicalForm& form,
                                     std::size_t blockSize) {
  FileResolver resolver;
  const auto reader = Tavrin::XMLReaderFactory::createXMLReader("XML10");
  reader->setContentHandler(&form);
  reader->setDTDHandler(&form);
  reader->setEntityResolver(&resolver);
  reader->setProperty(Tavrin::properties::lexicalHandler,
                      static_cast<Tavrin::LexicalHandler*>(&form));
  std::string base = document.path;
  reader->setProperty(Tavrin::properties::baseURI, &base);
  // Prefixes and declarations as they are written.
  reader->setFeature(Tavrin::features::namespaces, document.namespaces);
  reader->setFeature(Tavrin::features::namespacePrefixes, true);
  const std::string text = contentOf(document.path);
  try {
    if (blockSize > 0) {
      for (std::size_t begin = 0; begin < text.size(); begin += blockSize) {
        const std::string block = text.substr(begin, blockSize);
        reader->parse(block.data(), block.size(), false);
      }
      reader->parse("", 0, true);
    } else {
      std::istringstream stream(text);
      reader->parse(stream);
    }
  } catch (const Tavrin::SAXParseException& exception) {
    return exception.getMessage();
  }
  return std::nullopt;
}

/// What is wrong with how a document is read, or nothing.
std::string differenceOf(const SuiteDocument& document, std::size_t blockSize) {
  CanonicalForm form;
  const std::optional<std::string> failure = failureOf(document, form, blockSize);
  if (document.type == "not-wf") return failure ? "" : "was accepted";
  if (failure) return "was refused: " + *failure;
  if (document.output.empty()) return "";
  const std::string expected = contentOf(document.output);
  return form.text() == expected
             ? ""
             : "has the canonical form\n" + form.text() + "\ninstead of\n" + expected;
}

class XMLSuite : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    if (!suiteFolder()) GTEST_SKIP() << "TAVRIN_XML_SUITE does not name the folder of the suite.";
  }

  /// Of a stream, or of blocks of all small sizes.
  static std::string differenceInMode(const SuiteDocument& document) {
    if (!GetParam()) return differenceOf(document, 0);
    for (std::size_t size = 1; size <= 64; ++size) {
      const std::string difference = differenceOf(document, size);
      if (!difference.empty()) return "in blocks of " + std::to_string(size) + ": " + difference;
    }
    return "";
  }

  /// Reads all documents of a type.
  void check(const std::string& type, std::size_t count) {
    std::size_t found = 0;
    for (const SuiteDocument& document : readCatalogs(suiteFolder())) {
      if (document.type != type) continue;
      ++found;
      const std::string difference = differenceInMode(document);
      const auto known = kKnownDifferences.find(document.id);
      if (known == kKnownDifferences.end()) {
        EXPECT_EQ("", difference) << document.id << " (" << document.path << ")";
      } else {
        EXPECT_NE("", difference) << document.id
                                  << " is as it should be, but is listed: " << known->second;
      }
    }
    EXPECT_EQ(count, found);
  }
};

TEST_P(XMLSuite, ValidDocumentsAreReadAsExpected) { check("valid", 191); }

TEST_P(XMLSuite, InvalidDocumentsAreReadAsExpected) { check("invalid", 78); }

TEST_P(XMLSuite, DocumentsThatAreNotWellFormedAreRefused) { check("not-wf", 253); }

TEST_P(XMLSuite, DocumentsWithAnErrorThatMayBeIgnoredAreRead) { check("error", 2); }

TEST_P(XMLSuite, HasNoDifferenceListedThatItDoesNotHold) {
  std::map<std::string, std::string> left = kKnownDifferences;
  for (const SuiteDocument& document : readCatalogs(suiteFolder())) left.erase(document.id);
  for (const auto& [id, reason] : left) ADD_FAILURE() << id << ": " << reason;
}

std::string nameOfMode(const testing::TestParamInfo<bool>& mode) {
  return mode.param ? "InBlocks" : "AsAStream";
}

INSTANTIATE_TEST_SUITE_P(Read, XMLSuite, testing::Bool(), nameOfMode);

}  // namespace
