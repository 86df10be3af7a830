#include <gtest/gtest.h>

#include "XML10ReaderSupport.h"

namespace {

using namespace Tavrin;

/// Notes with every event where the locator stands: [public identifier|system
/// identifier]line:column.
class LocatingLog : public EventLog {
 public:
  LocatingLog() {
    mergeCharacters = false;  // One position an event.
    beforeEvent = [this](std::size_t) {
      places_.push_back("[" + locator_->getPublicId() + "|" + locator_->getSystemId() + "]" +
                        std::to_string(locator_->getLineNumber()) + ":" +
                        std::to_string(locator_->getColumnNumber()));
    };
  }

  void setDocumentLocator(const Locator* locator) override {
    ASSERT_NE(nullptr, locator);
    locator_ = locator;
    EventLog::setDocumentLocator(locator);
  }

  std::string located() const {
    Lines located;
    for (std::size_t i = 0; i < lines().size(); ++i) {
      located.push_back(places_[i] + " " + lines()[i]);
    }
    return join(located);
  }

  void restart() {
    clear();
    places_.clear();
  }

 private:
  const Locator* locator_ = nullptr;
  Lines places_;
};

// A document begins where its first event is; a declaration is told at its end, and so is the end
// of an empty element.
TEST(XML10Locator, TellsTheEntityAndThePlaceInIt) {
  LocatingLog log;
  log.entities = {{"http://h/d.dtd", "\n<!ENTITY e PUBLIC 'E' 'x/e.ent'>"},
                  {"http://h/x/e.ent", "1\n <b/>"}};
  XMLReader_XML10 reader;
  log.attachTo(reader);
  log.attachDeclarationsTo(reader);
  std::string base = "http://h/doc.xml";
  reader.setProperty(properties::baseURI, &base);
  const std::string text =
      "<!DOCTYPE a PUBLIC 'D' 'd.dtd' [\n"
      "<!--c-->]>\n"
      "<a>\n"
      " &e;é<?t?></a>";
  for (int round = 0; round < 2; ++round) {
    log.restart();
    EXPECT_EQ("done", parseText(reader, text));
    EXPECT_EQ(
        "[|http://h/doc.xml]1:32 setDocumentLocator()\n"
        "[|http://h/doc.xml]1:32 startDocument()\n"
        "[|http://h/doc.xml]1:32 startDTD(a, D, d.dtd)\n"
        "[|http://h/doc.xml]2:1 comment(c)\n"
        "[|http://h/doc.xml]2:10 resolveEntity(D, http://h/d.dtd)\n"
        "[D|http://h/d.dtd]1:1 startEntity([dtd])\n"
        "[D|http://h/d.dtd]2:32 externalEntityDecl(e, E, http://h/x/e.ent)\n"
        "[D|http://h/d.dtd]2:33 endEntity([dtd])\n"
        "[|http://h/doc.xml]2:10 endDTD()\n"
        "[|http://h/doc.xml]3:1 startElement(, a, a, [])\n"
        "[|http://h/doc.xml]3:4 characters(\\n)\n"
        "[|http://h/doc.xml]4:1 characters( )\n"
        "[|http://h/doc.xml]4:2 resolveEntity(E, http://h/x/e.ent)\n"
        "[E|http://h/x/e.ent]1:1 startEntity(e)\n"
        "[E|http://h/x/e.ent]1:1 characters(1)\n"
        "[E|http://h/x/e.ent]1:2 characters(\\n)\n"
        "[E|http://h/x/e.ent]2:1 characters( )\n"
        "[E|http://h/x/e.ent]2:2 startElement(, b, b, [])\n"
        "[E|http://h/x/e.ent]2:6 endElement(, b, b)\n"
        "[E|http://h/x/e.ent]2:6 endEntity(e)\n"
        "[|http://h/doc.xml]4:5 characters(é)\n"
        "[|http://h/doc.xml]4:6 processingInstruction(t, )\n"
        "[|http://h/doc.xml]4:11 endElement(, a, a)\n"
        "[|http://h/doc.xml]4:15 endDocument()\n",
        log.located());
  }
}

TEST(XML10Locator, StandsInTheEntityThatFails) {
  LocatingLog log;
  log.entities = {{"s", "1\n</b>"}};
  XMLReader_XML10 reader;
  log.attachTo(reader);
  EXPECT_EQ("SAXParseException(asynchronous entity: </b> (in the entity e, \"s\"), 2, 1)",
            parseText(reader, "<!DOCTYPE a [<!ENTITY e PUBLIC 'p' 's'>]><a>&e;</a>"));
  EXPECT_EQ(
      "[|]1:13 setDocumentLocator()\n"
      "[|]1:13 startDocument()\n"
      "[|]1:13 startDTD(a, , )\n"
      "[|]1:41 endDTD()\n"
      "[|]1:42 startElement(, a, a, [])\n"
      "[|]1:45 resolveEntity(p, s)\n"
      "[p|s]1:1 startEntity(e)\n"
      "[p|s]1:1 characters(1)\n"
      "[p|s]1:2 characters(\\n)\n"
      "[p|s]2:1 fatalError(asynchronous entity: </b> (in the entity e, \"s\"), 2, 1)\n",
      log.located());
  log.restart();
  EXPECT_EQ("SAXParseException(no element found, 1, 1)", parseText(reader, ""));
  EXPECT_EQ(
      "[|]1:1 setDocumentLocator()\n"
      "[|]1:1 startDocument()\n"
      "[|]1:1 fatalError(no element found, 1, 1)\n",
      log.located());
}

}  // namespace
