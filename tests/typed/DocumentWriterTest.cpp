#include <Tavrin/DocumentWriter.h>
#include <Tavrin/Tavrin.h>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "EventLog.h"
#include "HexOctets.h"
#include "WhatIsThrown.h"

namespace {

using namespace Tavrin;
using Value = DocumentWriter::Value;

/// What a writer writes.
/// @param work is given the writer
template <typename Writer, typename Work>
std::string written(Work work) {
  std::ostringstream stream;
  Writer writer;
  writer.setOutputStream(&stream);
  if constexpr (std::is_same_v<Writer, XMLWriter_XML10>) {
    writer.setFeature(features::xmlDeclaration, false);
  }
  work(writer);
  return stream.str();
}

/// The elements of a document in XML text.
template <typename Work>
std::string text(Work work) {
  return written<XMLWriter_XML10>([&](XMLWriter& writer) {
    DocumentWriter document(writer);
    work(document);
  });
}

TEST(DocumentWriter, EndsElementsWithTheirScope) {
  EXPECT_EQ("<a><b>1<c/></b><d><e/></d></a>", text([](DocumentWriter& document) {
              const auto a = document.element("a");
              {
                const auto b = document.element("b");
                document.write("1");
                document.element("c");
              }
              const auto d = document.element("d");
              document.element("e");
            }));
}

TEST(DocumentWriter, WritesWholeElements) {
  EXPECT_EQ("<a><b>&lt;</b><c d='e'>5</c><f/><g/></a>", text([](DocumentWriter& document) {
              const auto a = document.element("a");
              document.element("b", {}, "<");
              document.element("c", {{"d", "e"}}, 5);
              document.element("f", {}, std::vector<float>{});
              document.element("g", {}, "");
            }));
}

TEST(DocumentWriter, WritesElementsThatHaveOnlyContent) {
  EXPECT_EQ("<a><b>text</b><c>5</c><d>x</d><e>1 2</e><f>7</f><g>true</g><h/><i>v</i></a>",
            text([](DocumentWriter& document) {
              const auto a = document.element("a");
              document.element("b", "text");
              document.element("c", 5);
              document.element("d", 'x');
              document.element("e", {1, 2});
              document.element("f", {7});
              document.element("g", true);
              document.element("h", std::string());
              document.element("i", Value("v"));
            }));
}

TEST(DocumentWriter, TellsAttributesFromContent) {
  EXPECT_EQ("<a><b c='d'/><c d='e' f='g'/><d e='1'>2</d></a>", text([](DocumentWriter& document) {
              const auto a = document.element("a");
              document.element("b", {{"c", "d"}});
              document.element("c", {{"d", "e"}, {"f", "g"}});
              document.element("d", {{"e", 1}}, {2});
            }));
}

TEST(DocumentWriter, TakesAttributesFromAVector) {
  EXPECT_EQ("<a><b/><c x='1' y='z'/><d x='1' y='z'>2 3</d><e x='1' y='z'/></a>",
            text([](DocumentWriter& document) {
              std::vector<DocumentWriter::Attribute> attributes;
              const auto a = document.element("a", attributes);
              document.element("b", attributes);
              attributes = {{"x", 1}};
              attributes.push_back({"y", "z"});
              { const auto c = document.element("c", attributes); }
              document.element("d", attributes, {2, 3});
              document.start("e", attributes);
              document.end();
            }));
}

TEST(DocumentWriter, EndsTheDocumentWhenAskedTo) {
  std::ostringstream stream;
  XMLWriter_XML10 writer;
  writer.setOutputStream(&stream);
  writer.setFeature(features::xmlDeclaration, false);
  {
    DocumentWriter document(writer, {{"", "urn:d"}});
    const auto a = document.element("a");
    document.start("b");
    document.endDocument();
    EXPECT_EQ("<a xmlns='urn:d'><b/></a>", stream.str());
    EXPECT_EQ(0U, document.depth());
    const std::string refusal = "SAXException: The document has ended";
    EXPECT_EQ(refusal, thrown([&] { document.start("c"); }));
    EXPECT_EQ(refusal, thrown([&] { document.element("c"); }));
    EXPECT_EQ(refusal, thrown([&] { document.element("c", 1); }));
    EXPECT_EQ(refusal, thrown([&] { document.element("c", {}, 1); }));
    EXPECT_EQ(refusal, thrown([&] { document.write("c"); }));
    EXPECT_EQ(refusal, thrown([&] { document.end(); }));
    EXPECT_EQ(refusal, thrown([&] { document.endDocument(); }));
  }
  EXPECT_EQ("<a xmlns='urn:d'><b/></a>", stream.str());
}

TEST(DocumentWriter, MayBeUsedWithoutScopes) {
  EXPECT_EQ("<a><b/></a>", text([](DocumentWriter& document) {
              document.start("a");
              document.start("b");
              EXPECT_EQ(2U, document.depth());
              document.end();
              document.end();
              EXPECT_EQ(0U, document.depth());
              EXPECT_EQ("SAXException: No element is open", thrown([&] { document.end(); }));
            }));
}

TEST(DocumentWriter, EndsElementsThatAreOpenInAnother) {
  EXPECT_EQ("<a><b><c/></b><d/></a>", text([](DocumentWriter& document) {
              document.start("a");
              {
                const auto b = document.element("b");
                document.start("c");
              }
              {
                const auto d = document.element("d");
                document.end();
              }
            }));
}

TEST(DocumentWriter, DeclaresNamespacesOnTheRoot) {
  EXPECT_EQ(
      "<p:a xmlns='urn:d' xmlns:p='urn:p' p:b='1' c='2' xml:lang='en'><d/><p:e/></p:a>",
      written<XMLWriter_XML10>([](XMLWriter& writer) {
        DocumentWriter document(writer, {{"p", "urn:p"}, {"", "urn:d"}});
        const auto a = document.element("p:a", {{"p:b", "1"}, {"c", "2"}, {"xml:lang", "en"}});
        document.element("d");
        document.element("p:e");
      }));
}

TEST(DocumentWriter, SendsAllEventsOfADocument) {
  struct Log : XMLWriter {
    void startDocument() override { log.startDocument(); }
    void endDocument() override { log.endDocument(); }
    void startPrefixMapping(const std::string& prefix, const std::string& uri) override {
      log.startPrefixMapping(prefix, uri);
    }
    void endPrefixMapping(const std::string& prefix) override { log.endPrefixMapping(prefix); }
    void startElement(const std::string& uri, const std::string& localName,
                      const std::string& qName, const Attributes& attributes) override {
      log.startElement(uri, localName, qName, attributes);
    }
    void endElement(const std::string& uri, const std::string& localName,
                    const std::string& qName) override {
      log.endElement(uri, localName, qName);
    }
    void characters(const std::string& data) override { log.characters(data); }
    EventLog log;
  } writer;
  writer.log.showAlgorithms = true;
  {
    DocumentWriter document(writer, {{"p", "urn:p"}, {"", "urn:d"}});
    const auto a = document.element("a", {{"p:b", 1}, {"c", "2"}});
    document.element("p:d", {}, std::vector<short>{3, 4});
  }
  EXPECT_EQ(
      "startDocument()\nstartPrefixMapping(, urn:d)\nstartPrefixMapping(p, urn:p)\n"
      "startElement(urn:d, a, a, [{urn:p, b, p:b, CDATA, 1, , 3, IntData{1}}, "
      "{, c, c, CDATA, 2}])\n"
      "startElement(urn:p, d, p:d, [])\ncharacters(3 4)\nendElement(urn:p, d, p:d)\n"
      "endElement(urn:d, a, a)\nendPrefixMapping()\nendPrefixMapping(p)\nendDocument()\n",
      writer.log.text());
}

TEST(DocumentWriter, RefusesAPrefixWithoutANamespace) {
  EXPECT_EQ("<a/>", text([](DocumentWriter& document) {
              const auto a = document.element("a");
              EXPECT_EQ("SAXException: The prefix \"p\" has no namespace",
                        thrown([&] { document.element("p:b"); }));
              EXPECT_EQ("SAXException: The prefix \"q\" has no namespace", thrown([&] {
                          document.element("b", {{"q:c", 1}});
                        }));
            }));
}

TEST(DocumentWriter, WritesNumbersAsTextInXML) {
  EXPECT_EQ(
      "<a b='true' c='-1' d='5000000000' e='0.1' f='0.1' g='1 2'><h>1 -2</h><i>3</i><j>4 5</j>"
      "<k>0.1 INF</k><l>0.1 -0.25</l><m>true false</m></a>",
      text([](DocumentWriter& document) {
        const auto a = document.element("a", {{"b", true},
                                              {"c", -1},
                                              {"d", 5'000'000'000},
                                              {"e", 0.1F},
                                              {"f", 0.1},
                                              {"g", std::vector<int>{1, 2}}});
        document.element("h", {}, std::vector<short>{1, -2});
        document.element("i", {}, std::vector<int>{3});
        document.element("j", {}, std::vector<long>{4, 5});
        document.element("k", {}, std::vector<float>{0.1F, INFINITY});
        document.element("l", {}, std::vector<double>{0.1, -0.25});
        document.element("m", {}, std::vector<bool>{true, false});
      }));
}

template <typename Work>
std::string eventsOfFastInfoset(Work work) {
  const std::string document = written<XMLWriter_X891>([&](XMLWriter& writer) {
    DocumentWriter content(writer);
    work(content);
  });
  EventLog log;
  log.showAlgorithms = true;
  XMLReader_X891 reader;
  reader.setContentHandler(&log);
  reader.setEncodingAlgorithmContentHandler(&log);
  MemoryStream stream(document);
  reader.parse(stream);
  return log.text();
}

TEST(DocumentWriter, KeepsTheTypesOfNumbersInFastInfoset) {
  EXPECT_EQ(
      "setDocumentLocator()\nstartDocument()\n"
      "startElement(, a, a, [{, b, b, CDATA, true, , 5, BooleanData{true}}, "
      "{, c, c, CDATA, -1, , 3, IntData{-1}}, {, d, d, CDATA, 2, , 4, LongData{2}}, "
      "{, e, e, CDATA, 0.5, , 6, FloatData{0.5}}, {, f, f, CDATA, 0.25, , 7, DoubleData{0.25}}, "
      "{, g, g, CDATA, }])\n"
      "object(, 2, ShortData{1 -2})\nobject(, 3, IntData{3})\nobject(, 4, LongData{4 5})\n"
      "object(, 6, FloatData{0.5})\nobject(, 7, DoubleData{0.25})\n"
      "object(, 5, BooleanData{true false})\ncharacters(text)\nendElement(, a, a)\n"
      "endDocument()\n",
      eventsOfFastInfoset([](DocumentWriter& document) {
        const auto a = document.element("a", {{"b", true},
                                              {"c", -1},
                                              {"d", 2L},
                                              {"e", 0.5F},
                                              {"f", 0.25},
                                              {"g", std::vector<long>{}}});
        document.write(std::vector<short>{1, -2});
        document.write(3);
        document.write(std::vector<long>{4, 5});
        document.write(0.5F);
        document.write(0.25);
        document.write(std::vector<bool>{true, false});
        document.write("text");
      }));
}

TEST(DocumentWriter, WritesTypedContentWithTheWriterFI) {
  EXPECT_EQ(octets("E0 00 00 01 00 3C 00 'a' 8C 09 00 05 FF"),
            written<XMLWriter_FI>([](XMLWriter& writer) {
              DocumentWriter document(writer);
              document.element("a", {}, std::vector<short>{5});
            }));
}

TEST(DocumentWriter, LeavesOtherEventsToTheWriter) {
  EXPECT_EQ("<a><!--b--></a>", written<XMLWriter_XML10>([](XMLWriter& writer) {
              DocumentWriter document(writer);
              const auto a = document.element("a");
              writer.comment("b");
            }));
}

// --- Failures ---

TEST(DocumentWriter, WritesNothingMoreWhereAnExceptionLeavesItsScope) {
  EXPECT_EQ("<a><b", written<XMLWriter_XML10>([](XMLWriter& writer) {
              EXPECT_EQ("std::out_of_range: stop", thrown([&] {
                          DocumentWriter document(writer);
                          const auto a = document.element("a");
                          const auto b = document.element("b");
                          throw std::out_of_range("stop");
                        }));
            }));
}

TEST(DocumentWriter, GoesOnAfterAnExceptionThatIsCaughtWithin) {
  EXPECT_EQ("<a><b/></a>", text([](DocumentWriter& document) {
              const auto a = document.element("a");
              EXPECT_EQ("std::out_of_range: stop", thrown([&] {
                          const auto b = document.element("b");
                          throw std::out_of_range("stop");
                        }));
              EXPECT_EQ(2U, document.depth());
            }));
}

TEST(DocumentWriter, ThrowsWhatTheWriterThrowsAtTheEndOfAScope) {
  XMLWriter_XML10 writer;
  EXPECT_EQ("SAXException: You cannot end a document without an element",
            thrown([&] { DocumentWriter(writer, {}); }));
  writer.reset();
  EXPECT_EQ("SAXException: You cannot end an element at this point", thrown([&] {
              DocumentWriter document(writer);
              {
                const auto a = document.element("a");
                writer.startCDATA();
              }
            }));
}

TEST(DocumentWriter, FailsOnceWhereTheEndOfTheDocumentFails) {
  XMLWriter_XML10 writer;
  {
    DocumentWriter document(writer);
    EXPECT_EQ("SAXException: You cannot end a document without an element",
              thrown([&] { document.endDocument(); }));
    EXPECT_EQ("SAXException: The document has ended", thrown([&] { document.endDocument(); }));
  }
  writer.reset();
  DocumentWriter document(writer);
  const auto a = document.element("a");
  const auto b = document.element("b");
  writer.startCDATA();
  EXPECT_EQ("SAXException: You cannot end an element at this point",
            thrown([&] { document.endDocument(); }));
  EXPECT_EQ("SAXException: The document has ended", thrown([&] { document.element("c"); }));
}

/// The class and text of a value, or its text in quotes.
std::string shown(const Value& value) {
  return value.data() ? EventLog::showValue(*value.data()) : '"' + value.toString() + '"';
}

TEST(DocumentWriterValue, IsMadeOfAnyInteger) {
  using Limits = std::numeric_limits<long long>;
  EXPECT_EQ("IntData{-1}", shown(static_cast<signed char>(-1)));
  EXPECT_EQ("IntData{255}", shown(static_cast<unsigned char>(255)));
  EXPECT_EQ("IntData{-2}", shown(static_cast<short>(-2)));
  EXPECT_EQ("IntData{65535}", shown(static_cast<unsigned short>(65535)));
  EXPECT_EQ("IntData{-2147483648}", shown(std::numeric_limits<int>::min()));
  EXPECT_EQ("LongData{4294967295}", shown(std::numeric_limits<unsigned>::max()));
  EXPECT_EQ("LongData{-3}", shown(-3L));
  EXPECT_EQ("LongData{-9223372036854775808}", shown(Limits::min()));
  EXPECT_EQ("LongData{3}", shown(std::vector<int>(3).size()));
  EXPECT_EQ("LongData{9223372036854775807}", shown(std::size_t{Limits::max()}));
  EXPECT_EQ("\"9223372036854775808\"", shown(std::size_t{Limits::max()} + 1));
  EXPECT_EQ("LongData{0}", shown(0ULL));
  EXPECT_EQ("\"18446744073709551615\"", shown(std::numeric_limits<unsigned long long>::max()));
}

TEST(DocumentWriterValue, IsMadeOfAnyText) {
  const std::string_view view("textual", 4);
  char letters[] = "letters";
  EXPECT_EQ("\"text\"", shown(view));
  EXPECT_EQ("\"\"", shown(std::string_view()));
  EXPECT_EQ("\"letters\"", shown(letters));
  EXPECT_EQ("\"x\"", shown('x'));
  const char* const none = nullptr;
  const std::string refusal = "SAXException: The text of a value is a null pointer";
  EXPECT_EQ(refusal, thrown([&] { Value value(none); }));
  EXPECT_EQ(refusal, thrown([&] { DocumentWriter::Attribute attribute{"a", none}; }));
}

TEST(DocumentWriterValue, IsMadeOfListsOfNumbers) {
  const int numbers[] = {1, -2};
  const std::array<float, 2> floats = {0.5F, 0.25F};
  const std::array<bool, 1> truths = {true};
  EXPECT_EQ("IntData{1 -2}", shown(numbers));
  EXPECT_EQ("FloatData{0.5 0.25}", shown(floats));
  EXPECT_EQ("BooleanData{true}", shown(truths));
  EXPECT_EQ("\"\"", shown(std::array<double, 0>()));
  EXPECT_EQ("IntData{1 2 3}", shown({1, 2, 3}));
  EXPECT_EQ("DoubleData{0.5}", shown({0.5}));
  EXPECT_EQ("LongData{1}", shown({1U}));
  EXPECT_EQ("\"x\"", shown({'x'}));
}

TEST(DocumentWriterValue, IsCopied) {
  const Value text("a");
  const Value numbers({1, 2});
  Value copy = text;
  EXPECT_EQ("\"a\"", shown(copy));
  copy = numbers;
  EXPECT_EQ("IntData{1 2}", shown(copy));
  EXPECT_EQ("IntData{1 2}", shown(numbers));
  EXPECT_EQ(algorithms::integer, copy.algorithm());
}

TEST(DocumentWriterValue, HasATextAndATypedForm) {
  EXPECT_EQ("a", Value("a").toString());
  EXPECT_EQ(nullptr, Value(std::string("a")).data());
  EXPECT_EQ(-1, Value("a").algorithm());
  EXPECT_EQ("1 2", Value(std::vector<int>{1, 2}).toString());
  EXPECT_EQ(algorithms::integer, Value(1).algorithm());
  EXPECT_EQ((std::vector<long>{1, 2}),
            dynamic_cast<const IntData&>(*Value(std::vector<int>{1, 2}).data()).data_);
  const Value none(std::vector<double>{});
  EXPECT_EQ("", none.toString());
  EXPECT_EQ(-1, none.algorithm());
  EXPECT_EQ(nullptr, none.data());
}

static_assert(!std::is_constructible_v<Value, const int*>);
static_assert(!std::is_constructible_v<Value, wchar_t>);
static_assert(!std::is_constructible_v<Value, char16_t>);
static_assert(!std::is_constructible_v<Value, char32_t>);
static_assert(!std::is_constructible_v<Value, std::vector<char>>);
static_assert(!std::is_constructible_v<Value, std::array<char, 2>>);

}  // namespace
