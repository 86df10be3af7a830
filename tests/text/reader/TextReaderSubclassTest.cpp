#include <gtest/gtest.h>

#include <type_traits>

#include "TextReaderSupport.h"

namespace {

// The base with its four handlers, and what works behind it.
static_assert(sizeof(Tavrin::XMLReader_Expat) == sizeof(Tavrin::XMLReader) + sizeof(void*));
static_assert(sizeof(Tavrin::XMLReader_XML10) == sizeof(Tavrin::XMLReader) + sizeof(void*));
static_assert(!std::is_base_of_v<Tavrin::XMLReader_Expat, Tavrin::XMLReader_XML10>);

/// An application's reader that is its own content handler, and has names of its own for what it
/// does. None of them is one of the reader's.
template <typename Reader>
struct OwnHandler : Reader, Tavrin::ContentHandler {
  void startDocument() override { events += "startDocument "; }
  void endDocument() override { events += "endDocument "; }
  void startElement(const std::string&, const std::string&, const std::string& qName,
                    const Tavrin::Attributes&) override {
    events += "<" + qName + "> ";
  }

  // Members that a reader might well have, of types that it surely has not.
  std::string createParser() { return name("createParser"); }
  std::string configureParser() { return name("configureParser"); }
  std::string createLocator() const { return "createLocator"; }
  std::string beginDocument() { return name("beginDocument"); }
  std::string announceDocument() { return name("announceDocument"); }
  std::string makeReady() { return name("makeReady"); }
  std::string handlerThrew() { return name("handlerThrew"); }
  std::string parseBlock(const void*, unsigned long, bool) { return name("parseBlock"); }
  std::string reportError() { return name("reportError"); }
  std::string leaveParse() { return name("leaveParse"); }
  std::string releaseParser() { return name("releaseParser"); }
  std::string parser() { return name("parser"); }
  std::string fail(const std::string&) { return name("fail"); }

  std::string name(const char* called) {
    events += called;
    return called;
  }

  std::string events;
};

template <typename Reader>
void checkSubclass(const std::string& failure) {
  OwnHandler<Reader> reader;
  EXPECT_EQ("done", parseText(reader, "<a/>"));
  EXPECT_EQ("", reader.events) << "it is not its handler yet";
  EXPECT_EQ("done", parseBlocks(reader, {"<a>", "</a>"}));
  EXPECT_EQ("", reader.events);

  EventLog log;
  log.attachTo(reader);
  EXPECT_EQ("done", parseText(reader, "<a/>"));
  EXPECT_EQ("", reader.events);
  EXPECT_EQ(wholeLog({"startElement(, a, a, [])", "endElement(, a, a)"}), log.text());

  reader.setContentHandler(&reader);
  EXPECT_EQ("done", parseText(reader, "<a/>"));
  EXPECT_EQ("startDocument <a> endDocument ", reader.events);
  reader.events.clear();
  EXPECT_EQ("done", parseBlocks(reader, {"<a>", "<b/></a>"}));
  EXPECT_EQ("startDocument <a> <b> endDocument ", reader.events);
  reader.events.clear();
  EXPECT_EQ("SAXParseException(" + failure + ", 1, 6)", parseText(reader, "<a></b>"));
  EXPECT_EQ("startDocument <a> ", reader.events);
}

TEST(ExpatSubclass, HearsItsOwnEventsExactlyWhenItIsTheHandler) {
  checkSubclass<Tavrin::XMLReader_Expat>("mismatched tag");
}

TEST(XML10Subclass, HearsItsOwnEventsExactlyWhenItIsTheHandler) {
  checkSubclass<Tavrin::XMLReader_XML10>("mismatched tag: expected </a> of line 1");
}

}  // namespace
