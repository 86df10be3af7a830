#include <Tavrin/Tavrin.h>

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "EventLog.h"
#include "HexOctets.h"

namespace {

using namespace Tavrin;

/// Expects that a setter and a getter have the handler of a property.
template <typename Reader, typename Handler>
void expectSame(const char* property, void (Reader::*set)(Handler*),
                Handler* (Reader::*get)() const) {
  EventLog log;
  Handler* const handler = &log;  // The address of just this interface.
  Reader reader;
  EXPECT_EQ(nullptr, (reader.*get)());
  (reader.*set)(&log);
  EXPECT_EQ(handler, (reader.*get)());
  EXPECT_EQ(static_cast<void*>(handler), reader.getProperty(property));
  (reader.*set)(nullptr);
  EXPECT_EQ(nullptr, (reader.*get)());
  EXPECT_EQ(nullptr, reader.getProperty(property));
  reader.setProperty(property, handler);
  EXPECT_EQ(handler, (reader.*get)());
}

TEST(HandlerSetters, OfXML10AreThoseOfTheProperties) {
  using Reader = XMLReader_XML10;
  expectSame(properties::lexicalHandler, &Reader::setLexicalHandler, &Reader::getLexicalHandler);
  expectSame(properties::declarationHandler, &Reader::setDeclHandler, &Reader::getDeclHandler);
}

TEST(HandlerSetters, OfX891AreThoseOfTheProperties) {
  using Reader = XMLReader_X891;
  expectSame(properties::lexicalHandler, &Reader::setLexicalHandler, &Reader::getLexicalHandler);
  expectSame(properties::declarationHandler, &Reader::setDeclHandler, &Reader::getDeclHandler);
  expectSame(properties::primitiveTypeContentHandler, &Reader::setPrimitiveTypeContentHandler,
             &Reader::getPrimitiveTypeContentHandler);
  expectSame(properties::encodingAlgorithmContentHandler,
             &Reader::setEncodingAlgorithmContentHandler,
             &Reader::getEncodingAlgorithmContentHandler);
}

TEST(HandlerSetters, OfXML10CountFromTheNextEvent) {
  struct Switcher : EventLog {
    void comment(const std::string& text) override {
      EventLog::comment(text);
      reader.setLexicalHandler(nullptr);
    }
    XMLReader_XML10 reader;
  } log;
  log.reader.setLexicalHandler(&log);
  log.reader.setDeclHandler(&log);
  std::istringstream stream("<!DOCTYPE a [<!ELEMENT a ANY><!--1--><!--2-->]><a/>");
  log.reader.parse(stream);
  EXPECT_EQ("startDTD(a, , )\nelementDecl(a, ANY)\ncomment(1)\n", log.text());
}

TEST(HandlerSetters, OfX891CountFromTheNextEvent) {
  struct Switcher : EventLog {
    void shorts(const std::vector<short>& data) override {
      EventLog::shorts(data);
      reader.setPrimitiveTypeContentHandler(nullptr);
    }
    XMLReader_X891 reader;
  } log;
  log.reader.setPrimitiveTypeContentHandler(&log);
  log.reader.setEncodingAlgorithmContentHandler(&log);
  const std::string value = "8C 09 00 05 ";  // Shorts: 5.
  std::istringstream stream(octets("E0 00 00 01 00 3C 00 'a' " + value + value + "FF"));
  log.reader.parse(stream);
  EXPECT_EQ("shorts(5)\nobject(, 2, ShortData{5})\n", log.text());
}

}  // namespace
