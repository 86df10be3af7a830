#include <Tavrin/Connect.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLReader_XML10.h>

#include "Catalog.h"
#include "InstalledDocuments.h"

namespace {

/// What a document is without its layout: all but white space between tags.
class Content : public Tavrin::ContentHandler, public Tavrin::LexicalHandler {
 public:
  explicit Content(std::istream& document) {
    Tavrin::XMLReader_XML10 reader;
    reader.setFeature(Tavrin::features::coalesceCharacters, true);
    Tavrin::connect(reader, *this);
    reader.parse(document);
  }

  std::string lines;

  void startElement(const std::string& uri, const std::string& localName, const std::string&,
                    const Tavrin::Attributes& attributes) override {
    add("<" + uri + " " + localName);
    for (int i = 0; i < attributes.getLength(); ++i) {
      lines += " " + attributes.getQName(i) + "=" + attributes.getValue(i);
    }
    isBehindStart_ = true;
  }
  void endElement(const std::string&, const std::string&, const std::string&) override {
    if (isBehindStart_) lines += whiteSpace_;  // There is nothing else.
    add(">");
  }
  void characters(const std::string& text) override {
    if (text.find_first_not_of(" \t\r\n") == std::string::npos) {
      whiteSpace_ += text;
    } else {
      lines += whiteSpace_ + text;
      whiteSpace_.clear();
      isBehindStart_ = false;
    }
  }
  void processingInstruction(const std::string& target, const std::string& data) override {
    add("?" + target + " " + data);
  }
  void comment(const std::string& text) override { add("!" + text); }
  void skippedEntity(const std::string& name) override { add("&" + name); }
  void startCDATA() override { add("["); }
  void endCDATA() override { add("]"); }

 private:
  void add(const std::string& event) {
    whiteSpace_.clear();
    isBehindStart_ = false;
    lines += "\n" + event;
  }

  bool isBehindStart_ = false;
  std::string whiteSpace_;
};

/// The layout of whole corpora: done twice it is as done once, and the content stays.
class LayoutCorpus : public InstalledDocuments {
 protected:
  void expectLaidOut(const std::string& document) {
    SCOPED_TRACE(document);
    if (run({"convert", "--force", document, "plain.xml"}).status != 0) return;
    EXPECT_EQ(run({"convert", "--force", "--indent", document, "once.xml"}), silent(0));
    EXPECT_EQ(run({"convert", "--force", "--indent", "once.xml", "twice.xml"}), silent(0));
    EXPECT_TRUE(readFile("twice.xml") == readFile("once.xml"));
    EXPECT_EQ(run({"convert", "--force", "--tabs", "once.xml", "tabs.xml"}), silent(0));
    EXPECT_EQ(run({"convert", "--force", "--indent", "tabs.xml", "twice.xml"}), silent(0));
    EXPECT_TRUE(readFile("twice.xml") == readFile("once.xml")) << "by way of tabs";
    EXPECT_TRUE(contentOf("once.xml") == contentOf("plain.xml"));
    ++laidOut_;
  }

  int laidOut_ = 0;

 private:
  std::string contentOf(const std::string& name) const {
    std::ifstream document(path(name), std::ios::binary);
    return Content(document).lines;
  }
};

}  // namespace

TEST_F(LayoutCorpus, OfTheMachineStaysAsItIs) {
  for (const std::string& document : documents(100)) expectLaidOut(document);
  EXPECT_GT(laidOut_, 0);
}

TEST_F(LayoutCorpus, OfTheXMLSuiteStaysAsItIs) {
  const char* suite = std::getenv("TAVRIN_XML_SUITE");
  if (!suite) GTEST_SKIP() << "TAVRIN_XML_SUITE does not name the folder of the suite.";
  for (const SuiteDocument& document : readCatalogs(suite)) {
    if (document.type != "not-wf") expectLaidOut(document.path);
  }
  EXPECT_GT(laidOut_, 200);
}
