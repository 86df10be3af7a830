#include <gtest/gtest.h>

#include "TextReaderSupport.h"

namespace {

/// Notes with every event where the locator stands.
class LocatingLog : public EventLog {
 public:
  LocatingLog() {
    mergeCharacters = false;  // One position an event.
    beforeEvent = [this](std::size_t) {
      EXPECT_EQ("", locator_->getPublicId());
      EXPECT_EQ("", locator_->getSystemId());
      places_.push_back(std::to_string(locator_->getLineNumber()) + ":" +
                        std::to_string(locator_->getColumnNumber()));
    };
  }

  void setDocumentLocator(const Tavrin::Locator* locator) override {
    ASSERT_NE(nullptr, locator);
    locator_ = locator;
    EventLog::setDocumentLocator(locator);
  }

  std::string located() const {
    Lines located;
    for (std::size_t i = 0; i < lines().size(); ++i)
      located.push_back(places_[i] + " " + lines()[i]);
    return join(located);
  }

  void restart() {
    clear();
    places_.clear();
  }

 private:
  const Tavrin::Locator* locator_ = nullptr;
  Lines places_;
};

TEST(ExpatLocator, TellsLineAndColumnFrom1) {
  LocatingLog log;
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  log.attachDeclarationsTo(reader);
  EXPECT_EQ("done", parseText(reader,
                              "<?xml version='1.0'?>\n"
                              "<!DOCTYPE a [\r\n"
                              " <!--c-->\r"
                              " <!ELEMENT a ANY>\n"
                              " <!ATTLIST a d CDATA 'v'>\n"
                              " <!ENTITY e '1\n"
                              "2'>\n"
                              "]>\n"
                              "<a xmlns:p='u'>\n"
                              " <b/>&e;<![CDATA[x]]>\n"
                              "é<?t?><!--d--></a>\n"
                              "<?z?>"));
  EXPECT_EQ(
      join({"1:1 setDocumentLocator()", "1:1 startDocument()", "2:13 startDTD(a, , )",
            "3:2 comment(c)", "4:14 elementDecl(a, ANY)", "5:22 attributeDecl(a, d, CDATA, , v)",
            "6:13 internalEntityDecl(e, 1\\n2)", "8:2 endDTD()", "9:1 startPrefixMapping(p, u)",
            "9:1 startElement(, a, a, [{, d, d, CDATA, v}])", "9:16 characters(\\n)",
            "10:1 characters( )", "10:2 startElement(, b, b, [])",
            // An empty element ends where its tag ends.
            "10:6 endElement(, b, b)",
            // An entity stands where the reference stands.
            "10:6 characters(1)", "10:6 characters(\\n)", "10:6 characters(2)", "10:9 startCDATA()",
            "10:18 characters(x)", "10:19 endCDATA()", "10:22 characters(\\n)",
            "11:1 characters(é)", "11:2 processingInstruction(t, )", "11:7 comment(d)",
            "11:15 endElement(, a, a)", "11:15 endPrefixMapping(p)",
            "12:1 processingInstruction(z, )", "12:6 endDocument()"}),
      log.located());
}

TEST(ExpatLocator, StandsAtTheReferenceWithinAnExternalEntity) {
  LocatingLog log;
  log.entities = {{"x", "\n\n<!--x-->"}, {"e", "<b>\n\n<c/></b>"}};
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  EXPECT_EQ("done",
            parseText(reader, "<!DOCTYPE a SYSTEM 'x' [<!ENTITY e SYSTEM 'e'>\n]><a>\n &e;</a>"));
  EXPECT_EQ(join({"1:1 setDocumentLocator()", "1:1 startDocument()", "1:24 startDTD(a, , x)",
                  "2:2 resolveEntity(, x)", "2:2 comment(x)", "2:2 endDTD()",
                  "2:3 startElement(, a, a, [])", "2:6 characters(\\n)", "3:1 characters( )",
                  "3:2 resolveEntity(, e)", "3:2 startElement(, b, b, [])", "3:2 characters(\\n)",
                  "3:2 characters(\\n)", "3:2 startElement(, c, c, [])", "3:2 endElement(, c, c)",
                  "3:2 endElement(, b, b)", "3:5 endElement(, a, a)", "3:9 endDocument()"}),
            log.located());
}

TEST(ExpatLocator, StandsAtTheFailureInFatalError) {
  LocatingLog log;
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  const Failure failure{XML_ERROR_TAG_MISMATCH, 2, 3};
  EXPECT_EQ(failure.thrown(), parseText(reader, "<a>\n</b>"));
  EXPECT_EQ(join({"1:1 setDocumentLocator()", "1:1 startDocument()", "1:1 startElement(, a, a, [])",
                  "1:4 characters(\\n)", "2:3 " + failure.logged()}),
            log.located());
}

TEST(ExpatLocator, BeginsAnewWithEveryDocument) {
  LocatingLog log;
  Tavrin::XMLReader_Expat reader;
  log.attachTo(reader);
  EXPECT_EQ("done", parseText(reader, "\n\n <a></a>"));
  EXPECT_EQ(join({"1:1 setDocumentLocator()", "1:1 startDocument()", "3:2 startElement(, a, a, [])",
                  "3:5 endElement(, a, a)", "3:9 endDocument()"}),
            log.located());
  log.restart();
  EXPECT_EQ("done", parseBlocks(reader, {"<a></a>"}));
  EXPECT_EQ(join({"1:1 setDocumentLocator()", "1:1 startDocument()", "1:1 startElement(, a, a, [])",
                  "1:4 endElement(, a, a)", "1:8 endDocument()"}),
            log.located());
}

TEST(ExpatLocator, CountsAcrossBlocks) {
  const std::string text = "<a>\n<b>\r\n<c x='1'\n/><!--é--><?t?></b></a>\n";
  const std::string expected =
      join({"1:1 setDocumentLocator()", "1:1 startDocument()", "1:1 startElement(, a, a, [])",
            "1:4 characters(\\n)", "2:1 startElement(, b, b, [])", "2:4 characters(\\n)",
            "3:1 startElement(, c, c, [{, x, x, CDATA, 1}])", "4:3 endElement(, c, c)",
            "4:3 comment(é)", "4:11 processingInstruction(t, )", "4:16 endElement(, b, b)",
            "4:20 endElement(, a, a)", "5:1 endDocument()"});
  for (const std::size_t size : {1U, 2U, 3U, 5U, 7U, 1000U}) {
    SCOPED_TRACE(size);
    LocatingLog log;
    Tavrin::XMLReader_Expat reader;
    log.attachTo(reader);
    std::vector<std::string> blocks = cutEvenly(text, size);
    blocks.emplace_back();
    EXPECT_EQ("done", parseBlocks(reader, blocks));
    EXPECT_EQ(expected, log.located());
  }
}

}  // namespace
