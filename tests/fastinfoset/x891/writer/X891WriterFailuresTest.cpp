#include <gtest/gtest.h>

#include "WriterFailures.h"
#include "X891WriterSupport.h"

// What fails in the midst of a document, and what the writer does then.

namespace x891_test {
namespace {

using namespace Tavrin;
using failures::Event;
using failures::failing;
using failures::FailingAttributes;

XMLWriter_X891& x891(XMLWriter& writer) { return dynamic_cast<XMLWriter_X891&>(writer); }

/// A document with everything in it. What events are given takes no memory while they run.
std::vector<Event> everything() {
  const std::string longText(300, 'x');
  const std::string name = "an-element-of-a-long-name";
  const FailingAttributes none = failing({});
  const FailingAttributes several =
      failing({{"", "first", "first", "a value"},
               {"urn:a", "second", "p:second", "another value, which is a long one"},
               {"", "third", "third", ""}});
  const FailingAttributes declaring = failing({{"", "", "xmlns:q", "urn:q"},
                                               {"", "", "xmlns", "urn:default"},
                                               {"urn:q", "b", "q:b", "another value"},
                                               {"", "first", "first", "a value"}});
  const std::string p = "p", a = "a", d = "d", e = "e", q = "q", urnA = "urn:a", urnQ = "urn:q";
  const std::string empty, urnDefault = "urn:default", pa = "p:" + name, qd = "q:d";
  const std::string section = "]]>x]]>", text = "some text";
  const std::vector<long> integers(70, -1);
  const std::vector<bool> booleans(9, true);
  return {
      [=](XMLWriter& w) { w.startDocument(); },
      [=](XMLWriter& w) { w.comment(text); },
      [=](XMLWriter& w) { w.startDTD(a, p, longText); },
      [=](XMLWriter& w) { w.notationDecl(a, p, longText); },
      [=](XMLWriter& w) { w.unparsedEntityDecl(e, p, longText, a); },
      [=](XMLWriter& w) { w.externalEntityDecl(e, p, longText); },
      [=](XMLWriter& w) { w.processingInstruction(p, longText); },
      [=](XMLWriter& w) { w.endDTD(); },
      [=](XMLWriter& w) { w.startPrefixMapping(p, urnA); },
      [=](XMLWriter& w) { w.startElement(urnA, name, pa, several); },
      [=](XMLWriter& w) { w.characters(text); },
      [=](XMLWriter& w) { w.startElement(urnQ, d, qd, declaring); },
      [=](XMLWriter& w) { w.characters(longText); },
      [=](XMLWriter& w) { x891(w).ints(integers); },
      [=](XMLWriter& w) { x891(w).booleans(booleans); },
      [=](XMLWriter& w) { x891(w).bytes(longText); },
      [=](XMLWriter& w) { w.startCDATA(); },
      [=](XMLWriter& w) { w.characters(section); },
      [=](XMLWriter& w) { w.endCDATA(); },
      [=](XMLWriter& w) { w.characters(text); },
      [=](XMLWriter& w) { w.skippedEntity(e); },
      [=](XMLWriter& w) { w.startElement(urnDefault, name, name, none); },
      [=](XMLWriter& w) { w.endElement(urnDefault, name, name); },
      [=](XMLWriter& w) { w.comment(longText); },
      [=](XMLWriter& w) { w.endElement(urnQ, d, qd); },
      [=](XMLWriter& w) { w.startElement(empty, d, d, several); },
      [=](XMLWriter& w) { w.processingInstruction(q, text); },
      [=](XMLWriter& w) { w.endElement(empty, d, d); },
      [=](XMLWriter& w) { w.startElement(urnA, name, pa, several); },
      [=](XMLWriter& w) { w.endElement(urnA, name, pa); },
      [=](XMLWriter& w) { w.endElement(urnA, name, pa); },
      [=](XMLWriter& w) { w.comment(text); },
      [=](XMLWriter& w) { w.endDocument(); },
  };
}

TEST(X891WriterFailures, LeaveNoTraceOrEndTheDocument) {
  failures::failInEveryWay<XMLWriter_X891>(everything());
}

TEST(X891WriterFailures, LeaveNoTraceInVocabularies) {
  static const char* const prefixes[] = {"p", "q"};
  static const char* const texts[] = {"some text", "a value"};
  static const char* const names[][3] = {{"p", "urn:a", "an-element-of-a-long-name"}};
  ExternalVocabulary own;
  own.prefixes = {prefixes, 2, 2};
  own.attributeValues = own.contentCharacterChunks = {texts, 2, 2};
  own.elementNameSurrogates = {names, 1, 1};
  EncodingAlgorithmMap algorithms = {{"urn:algorithm", nullptr}};
  failures::failInEveryWay<XMLWriter_X891>(everything(), [&](XMLWriter_X891& writer) {
    writer.setProperty(properties::initialVocabulary, &own);
    writer.setProperty(properties::registeredEncodingAlgorithms, &algorithms);
  });
}

// The declarations of the element were still in force, and its octets came later.
TEST(X891WriterFailures, OfAStreamAtAnEndTagEndTheDocument) {
  failures::FailingStream stream;
  XMLWriter_X891 writer;
  writer.setOutputStream(&stream);
  writer.startDocument();
  writer.startElement("", "a", "a", AttributesImpl());
  writer.startPrefixMapping("p", "u");
  writer.startElement("", "b", "b", AttributesImpl());
  writer.characters("text");
  stream.news();
  stream.failAfter(3);
  EXPECT_THROW(writer.endElement("", "b", "b"), failures::Failure);
  stream.clear();
  const std::string broken = "SAXException: " + std::string(failures::kBroken);
  EXPECT_EQ(thrown([&] { writer.startElement("u", "c", "p:c", AttributesImpl()); }), broken);
  EXPECT_EQ(thrown([&] { writer.characters("x"); }), broken);
  EXPECT_EQ(thrown([&] { writer.startDocument(); }), broken);
  EXPECT_EQ(thrown([&] { writer.endDocument(); }), broken);
  EXPECT_EQ(thrown([&] { writer.shorts({1}); }), broken);
  stream.news();
  writer.reset();
  writer.startDocument();
  EXPECT_EQ(thrown([&] { writer.startElement("u", "c", "p:c", AttributesImpl()); }),
            "SAXException: The prefix \"p\" is not declared");
  writer.startElement("", "a", "a", AttributesImpl());
  writer.endElement("", "a", "a");
  writer.endDocument();
  EXPECT_EQ(EventLog::showOctets(stream.news()), document("3C 00 'a' FF"));
}

// What was found out about the names of one vocabulary was taken for those of another.
TEST(X891WriterFailures, OfARootSayNothingOfAnotherVocabulary) {
  static const char* const one[][3] = {{"", "", "a"}};
  static const char* const other[][3] = {{"p", "u", "b"}};
  ExternalVocabulary vocabulary;
  vocabulary.elementNameSurrogates = {one, 1, 1};
  Writer writer;
  writer.set(properties::initialVocabulary, vocabulary);
  writer.startDocument();
  EXPECT_EQ(thrown([&] {
              writer.start("a", {{"c", "\xFF"}});
            }),
            "SAXException: You cannot put UTF-8 octet 0xFF into an attribute value");
  vocabulary.elementNameSurrogates = {other, 1, 1};
  writer.set(properties::initialVocabulary, vocabulary);
  EXPECT_EQ(thrown([&] { writer.startElement("u", "b", "p:b", AttributesImpl()); }),
            "SAXException: The prefix \"p\" is not declared");
}

}  // namespace
}  // namespace x891_test
