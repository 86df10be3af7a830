#include "Catalog.h"
#include "InstalledDocuments.h"

namespace {

/// Canonical XML of whole corpora, beside that of libxml2.
class CanonicalCorpus : public InstalledDocuments {
 protected:
  void SetUp() override {
    if (!isInstalled("xmllint")) GTEST_SKIP() << "xmllint is missing: Debian's libxml2-utils";
  }

  /// Compares all three forms. What xmllint does not read is not compared.
  void compare(const std::string& document) {
    SCOPED_TRACE(document);
    for (const auto& [form, option] :
         {std::pair{"1.0", "c14n"}, {"1.1", "c14n11"}, {"exclusive", "exc-c14n"}}) {
      SCOPED_TRACE(form);
      const Result result = run({"convert", "--force", std::string("--canonical=") + form,
                                 "--comments", "--entities=any", document, "canonical"});
      if (result.status != 0) {
        EXPECT_TRUE(hasNoForm(document, result.err)) << result.err;
        return;
      }
      const std::string command =
          std::string("xmllint --nonet --") + option + " '" + document + "' >expected 2>warnings";
      if (shell(command) != 0 || readFile("expected").empty()) return;
      EXPECT_TRUE(readFile("canonical") == readFile("expected"));
      ++compared_;
    }
  }

  int compared_ = 0;

 private:
  /// Whether a document may be refused.
  bool hasNoForm(const std::string& document, const std::string& message) const {
    return message.find("was not read") != std::string::npos ||
           message.find("is relative") != std::string::npos ||
           run({"check", "--entities=any", document}).status != 0;
  }
};

}  // namespace

TEST_F(CanonicalCorpus, OfTheMachineIsThatOfXmllint) {
  for (const std::string& document : documents(100)) {
    if (document.find('\'') == std::string::npos) compare(document);
  }
  EXPECT_GT(compared_, 0);
}

TEST_F(CanonicalCorpus, OfTheXMLSuiteIsThatOfXmllint) {
  const char* suite = std::getenv("TAVRIN_XML_SUITE");
  if (!suite) GTEST_SKIP() << "TAVRIN_XML_SUITE does not name the folder of the suite.";
  for (const SuiteDocument& document : readCatalogs(suite)) {
    // Of this one, xmllint makes a line feed of "&#13;" in the value of an entity.
    const bool isKnown = document.id == "xmltest/valid-sa-068";
    if (document.type == "valid" && !isKnown) compare(document.path);
  }
  EXPECT_GT(compared_, 500);
}
