#include <Tavrin/Tavrin.h>

#include <Allocations.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "FIWriterProbe.h"
#include "HexOctets.h"
#include "ReaderSupport.h"
#include "VocabularySupport.h"
#include "WhatIsThrown.h"
#include "WriterWithOutput.h"
#include "X891ReaderSupport.h"

// Vocabularies that readers and writers share.

namespace vocabulary_test {
namespace {

using namespace Tavrin;
using Writer = WriterWithOutput<XMLWriter_X891>;
using Reader = x891_test::X891Reader;
using writer_test::hex;

/// A document that uses every table of oneOfEach.
void writeAll(Writer& writer) {
  writer.reset();
  writer.startDocument();
  writer.processingInstruction("n", "t");
  writer.startPrefixMapping("p", "u");
  writer.startElement("u", "l", "p:l", attributes({{"b", "v"}}));
  writer.characters("c");
  writer.octets("u:a", 0, "x");
  writer.leaf("l");
  writer.leaf("new", {{"b", "new"}});
  writer.leaf("new", {{"b", "new"}});
  writer.endElement("u", "l", "p:l");
  writer.endDocument();
}

/// What follows the vocabulary in it: the tables of the document go on where those end.
constexpr char kAll[] =
    "E1 80 80 78 CF 81 81 F0 00 00 80 F0 A0 8C 7C 'x' 3C 80 F0 7C 02 'new' 00 42 'new' FF"
    "42 00 81 FF FF";

/// What is told of it.
std::string toldOfAll() {
  return reader_test::whole(
      {"processingInstruction(n, t)", "startPrefixMapping(p, u)",
       "startElement(u, l, p:l, [{, b, b, CDATA, v}])", "characters(c)", "octets(u:a, 31, 78)",
       "startElement(, l, l, [])", "endElement(, l, l)",
       "startElement(, new, new, [{, b, b, CDATA, new}])", "endElement(, new, new)",
       "startElement(, new, new, [{, b, b, CDATA, new}])", "endElement(, new, new)",
       "endElement(u, l, p:l)", "endPrefixMapping(p)"});
}

std::string written(const std::function<void(Writer&)>& prepare,
                    const std::function<void(Writer&)>& events = writeAll) {
  Writer writer;
  prepare(writer);
  events(writer);
  return writer.text();
}

std::string shown(const std::string& octets) { return EventLog::showOctets(octets); }

/// The octets of a vocabulary in a document that holds it, behind its components.
std::string entriesOfOneOfEach() {
  const std::string file = kFileOfOneOfEach;
  const std::string head = "E0 00 00 01 20 0F FF ";
  return file.substr(head.size(), file.find("38 CF") - head.size());
}

TEST(SharedVocabulary, IsInEachDocumentAsTheInitialOne) {
  Writer writer;
  writer.setInitialVocabulary(oneOfEach());
  const std::string expected = hex("E0 00 00 01 20 0F FF " + entriesOfOneOfEach() + kAll);
  for (int document = 0; document < 3; ++document) {
    writeAll(writer);
    EXPECT_EQ(expected, shown(writer.output.news())) << document;
  }
  Reader reader;
  reader.log.attachAlgorithmsTo(reader.reader);
  EXPECT_EQ(toldOfAll(), reader.read(writer.text().substr(0, writer.text().size() / 3)));
}

TEST(SharedVocabulary, IsReferredToAsAnExternalOne) {
  Writer writer;
  Reader reader;
  reader.log.attachAlgorithmsTo(reader.reader);
  {
    const OwnedVocabulary vocabulary = oneOfEach();
    writer.setExternalVocabulary("urn:v", vocabulary);
    reader.reader.addExternalVocabulary("urn:v", vocabulary);
  }
  const std::string expected = std::string("E0 00 00 01 20 10 00 04 'urn:v'") + kAll;
  for (int document = 0; document < 3; ++document) {
    writeAll(writer);
    EXPECT_EQ(hex(expected), shown(writer.output.news())) << document;
    EXPECT_EQ(toldOfAll(), reader.read(octets(expected)));
  }
}

TEST(SharedVocabulary, ExternalAndInitialFollowEachOther) {
  OwnedVocabulary own;
  own.addLocalName("own");
  own.addElementName("u", "l", "q:l");
  Writer writer;
  writer.setExternalVocabulary("urn:v", oneOfEach());
  writer.setInitialVocabulary(own);
  writer.startDocument();
  writer.startPrefixMapping("q", "u");
  writer.startElement("u", "l", "q:l", attributes({{"own", "v"}}));
  writer.endElement("u", "l", "q:l");
  writer.endDocument();
  // Of the parts, the initial vocabulary has those of its own, and the first is found.
  const std::string expected =
      "E0 00 00 01 20 13 82 04 'urn:v' 00 00 'q' 00 00 'u' 01 02 'own' 00 'l' 00 03 02 01 00"
      "78 CF 82 81 F0 01 78 82 80 FF F0";
  EXPECT_EQ(hex(expected), writer.written());
  Reader reader;
  reader.reader.addExternalVocabulary("urn:v", oneOfEach());
  EXPECT_EQ(reader_test::whole({"startPrefixMapping(q, u)",
                                "startElement(u, l, q:l, [{, own, own, CDATA, v}])",
                                "endElement(u, l, q:l)", "endPrefixMapping(q)"}),
            reader.read(octets(expected)));
}

// Algorithms that are registered, but not in the vocabulary, join it for the document alone.
TEST(SharedVocabulary, TakesRegisteredAlgorithmsAsWell) {
  OwnedVocabulary vocabulary;
  vocabulary.addEncodingAlgorithm("u:a");
  vocabulary.addLocalName("l");
  EncodingAlgorithmMap algorithms = {{"u:a", nullptr}, {"u:b", nullptr}};
  Writer writer;
  writer.setInitialVocabulary(vocabulary);
  const auto write = [&] {
    writer.reset();
    writer.startDocument();
    writer.start("l");
    writer.octets("u:a", 0, "x");
    writer.end("l");
    writer.endDocument();
    return shown(writer.output.news());
  };
  const std::string without = hex("E0 00 00 01 20 04 80 00 02 'u:a' 00 00 'l' 3C 80 8C 7C 'x' FF");
  EXPECT_EQ(without, write());
  writer.setProperty(properties::registeredEncodingAlgorithms, &algorithms);
  EXPECT_EQ(hex("E0 00 00 01 20 04 80 01 02 'u:a' 02 'u:b' 00 00 'l' 3C 80 8C 7C 'x' FF"), write());
  writer.setProperty(properties::registeredEncodingAlgorithms, nullptr);
  EXPECT_EQ(without, write());
}

// --- Beside the properties ---

TEST(SharedVocabulary, AndThePropertiesTakeEachOthersPlace) {
  OwnedVocabulary shared;
  shared.addLocalName("a");
  static const char* const names[] = {"b"};
  ExternalVocabulary plain;
  plain.localNames = {names, 1, 1};
  ExternalVocabularyMap known = {{"urn:v", &plain}, {"urn:w", &plain}};
  Writer writer;
  const auto write = [&] {
    writer.reset();
    writer.startDocument();
    writer.leaf("a");
    writer.endDocument();
    return shown(writer.output.news());
  };
  writer.set(properties::initialVocabulary, plain);
  writer.setInitialVocabulary(shared);
  EXPECT_EQ(hex("E0 00 00 01 20 00 80 00 00 'a' 3C 80 FF"), write());
  writer.set(properties::initialVocabulary, plain);
  EXPECT_EQ(hex("E0 00 00 01 20 00 80 00 00 'b' 3C 00 'a' FF"), write());
  writer.setInitialVocabulary({});
  const std::string none = hex("E0 00 00 01 00 3C 00 'a' FF");
  EXPECT_EQ(none, write());
  writer.setInitialVocabulary(shared);
  writer.setProperty(properties::initialVocabulary, nullptr);
  EXPECT_EQ(none, write());

  writer.setProperty(properties::externalVocabularies, &known);
  writer.setExternalVocabulary("urn:v", shared);
  EXPECT_EQ(hex("E0 00 00 01 20 10 00 04 'urn:v' 3C 80 FF"), write());
  writer.set(properties::externalVocabulary, std::string("urn:w"));
  EXPECT_EQ(hex("E0 00 00 01 20 10 00 04 'urn:w' 3C 00 'a' FF"), write());
  writer.set(properties::externalVocabulary, std::string("urn:v"));
  EXPECT_EQ(hex("E0 00 00 01 20 10 00 04 'urn:v' 3C 80 FF"), write());
  EXPECT_EQ("urn:v",
            *static_cast<std::string*>(writer.getProperty(properties::externalVocabulary)));
  writer.setProperty(properties::externalVocabulary, nullptr);
  EXPECT_EQ(none, write());
}

TEST(SharedVocabulary, ComesBeforeThePropertyOfTheReader) {
  OwnedVocabulary shared;
  shared.addLocalName("a");
  static const char* const names[] = {"b"};
  ExternalVocabulary plain;
  plain.localNames = {names, 1, 1};
  ExternalVocabularyMap known = {{"u", &plain}, {"w", &plain}};
  Reader reader;
  reader.reader.setProperty(properties::externalVocabularies, &known);
  const auto nameIn = [&](const std::string& uri) {
    return reader.read(octets("E0 00 00 01 20 10 00 00 '" + uri + "' 3C 80 FF"));
  };
  const auto named = [](const std::string& name) {
    return reader_test::whole({"startElement(, " + name + ", " + name + ", [])",
                               "endElement(, " + name + ", " + name + ")"});
  };
  EXPECT_EQ(named("b"), nameIn("u"));
  reader.reader.addExternalVocabulary("u", shared);
  EXPECT_EQ(named("a"), nameIn("u"));
  EXPECT_EQ(named("b"), nameIn("w"));
  reader.reader.setProperty(properties::externalVocabularies, nullptr);
  EXPECT_EQ(named("a"), nameIn("u"));
  EXPECT_EQ(x891_test::failure({},
                               "Unknown external vocabulary - w (add it to the property "
                               "external-vocabularies)",
                               9),
            nameIn("w"));
  EXPECT_EQ(named("a"), nameIn("u"));
}

// The structure that a vocabulary gives serves the reader of the other dialect.
TEST(SharedVocabulary, ServesAsTheStructureOfTheProperty) {
  ExternalVocabulary tables = *oneOfEach().tables();
  OwnedVocabulary vocabulary = oneOfEach();
  tables = *vocabulary.tables();
  ExternalVocabularyMap known = {{"urn:v", &tables}};
  Reader reader;
  reader.log.attachAlgorithmsTo(reader.reader);
  reader.reader.setProperty(properties::externalVocabularies, &known);
  EXPECT_EQ(toldOfAll(),
            reader.read(octets(std::string("E0 00 00 01 20 10 00 04 'urn:v'") + kAll)));
}

TEST(SharedVocabulary, NeedsAURI) {
  XMLReader_X891 reader;
  XMLWriter_X891 writer;
  for (const auto& [uri, message] :
       {std::pair{std::string(), "SAXException: An entry of the vocabulary is empty"},
        {"\xFF", "SAXException: You cannot put UTF-8 octet 0xFF into a URI"}}) {
    const std::string& name = uri;
    EXPECT_EQ(message, thrown([&] { reader.addExternalVocabulary(name, {}); }));
    EXPECT_EQ(message, thrown([&] { writer.setExternalVocabulary(name, {}); }));
  }
  EXPECT_EQ(nullptr, writer.getProperty(properties::externalVocabulary));
}

// --- Indexes ---

/// A writer, and a reader that must tell the same as one of the same document without vocabulary.
void expectSameWithBoth(const OwnedVocabulary& vocabulary, const std::string& octetsOfBody,
                        const std::function<void(Writer&)>& events) {
  Reader plain;
  const std::string expected = plain.read(written([](Writer&) {}, events));
  const std::string external =
      written([&](Writer& writer) { writer.setExternalVocabulary("v", vocabulary); }, events);
  EXPECT_EQ(hex("E0 00 00 01 20 10 00 00 'v'" + octetsOfBody), shown(external));
  Reader reader;
  reader.reader.addExternalVocabulary("v", vocabulary);
  EXPECT_EQ(expected, reader.read(external));
  const std::string initial =
      written([&](Writer& writer) { writer.setInitialVocabulary(vocabulary); }, events);
  const std::string body = octets(octetsOfBody);
  EXPECT_EQ(shown(body), shown(initial.substr(initial.size() - body.size())));
  EXPECT_EQ(expected, Reader().read(initial));
}

// C.25: 64, 65, 8256, 8257; behind the last one, the document's own.
TEST(SharedVocabulary, HasIndexesOfAllFormsForValues) {
  OwnedVocabulary vocabulary;
  for (int i = 1; i <= 8257; ++i) {
    EXPECT_EQ(static_cast<unsigned>(i), vocabulary.addAttributeValue("v" + std::to_string(i)));
  }
  expectSameWithBoth(vocabulary,
                     "7C 00 'r' 78 00 'a' 80 78 00 'b' BF 78 00 'c' C0 00 78 00 'd' DF FF"
                     "78 00 'e' E0 00 00 78 00 'f' 42 'own' F0 7C 00 'k' 78 80 E0 00 01 FF FF",
                     [](Writer& writer) {
                       writer.startDocument();
                       writer.start("r", {{"a", "v1"},
                                          {"b", "v64"},
                                          {"c", "v65"},
                                          {"d", "v8256"},
                                          {"e", "v8257"},
                                          {"f", "own"}});
                       writer.leaf("k", {{"r", "own"}});
                       writer.end("r");
                       writer.endDocument();
                     });
}

// C.27: 32, 33, 2080, 2081.
TEST(SharedVocabulary, HasIndexesOfAllFormsForElements) {
  OwnedVocabulary vocabulary;
  for (int i = 1; i <= 2081; ++i) vocabulary.addElementName("", "e" + std::to_string(i));
  expectSameWithBoth(vocabulary,
                     "00 1F F0 20 00 F0 27 FF F0 28 00 00 F0 3C 02 'own' F0 28 00 01 FF F0",
                     [](Writer& writer) {
                       writer.startDocument();
                       writer.start("e1");
                       for (const char* name : {"e32", "e33", "e2080", "e2081", "own", "own"}) {
                         writer.leaf(name);
                       }
                       writer.end("e1");
                       writer.endDocument();
                     });
}

// C.28: 16, 17, 1040, 1041.
TEST(SharedVocabulary, HasIndexesOfAllFormsForCharacters) {
  OwnedVocabulary vocabulary;
  for (int i = 1; i <= 1041; ++i) vocabulary.addCharacters("c" + std::to_string(i));
  vocabulary.addElementName("", "e");
  expectSameWithBoth(
      vocabulary,
      "00 00 A0 F0 00 AF F0 00 B0 00 F0 00 B3 FF F0 00 B4 00 00 F0"
      "00 92 00 'own' F0 00 B4 00 01 FF F0",
      [](Writer& writer) {
        writer.startDocument();
        writer.start("e");
        for (const char* text : {"c1", "c16", "c17", "c1040", "c1041", "own", "own"}) {
          writer.start("e");
          writer.characters(text);
          writer.end("e");
        }
        writer.end("e");
        writer.endDocument();
      });
}

// A table that is full takes nothing from the document.
TEST(SharedVocabulary, MayFillItsTables) {
  OwnedVocabulary vocabulary;
  for (int i = 0; i < 1 << 20; ++i) vocabulary.addAttributeValue("v" + std::to_string(i));
  EXPECT_EQ("SAXException: A table of the vocabulary has more than 1048576 entries",
            thrown([&] { vocabulary.addAttributeValue("own"); }));
  expectSameWithBoth(vocabulary,
                     "7C 00 'r' 78 00 'a' 02 'own' 78 00 'b' 02 'own' 78 00 'c' EF DF BF FF F0",
                     [](Writer& writer) {
                       writer.startDocument();
                       writer.leaf("r", {{"a", "own"}, {"b", "own"}, {"c", "v1048575"}});
                       writer.endDocument();
                     });
}

// --- Lifetimes ---

TEST(SharedVocabulary, MayEndBeforeOrAfterThoseWhoUseIt) {
  std::optional<OwnedVocabulary> vocabulary = oneOfEach();
  const auto reader = std::make_unique<Reader>();
  reader->log.attachAlgorithmsTo(reader->reader);
  {
    Reader first;
    first.reader.addExternalVocabulary("urn:v", *vocabulary);
    Writer writer;
    writer.setExternalVocabulary("urn:v", *vocabulary);
  }
  reader->reader.addExternalVocabulary("urn:v", *vocabulary);
  vocabulary->addElementName("", "another");  // The copies of others stay.
  vocabulary.reset();
  EXPECT_EQ(toldOfAll(),
            reader->read(octets(std::string("E0 00 00 01 20 10 00 04 'urn:v'") + kAll)));
}

// What changes within a document counts from the next one.
TEST(SharedVocabulary, MayBeReplacedWhileADocumentIsRead) {
  struct Handler : DefaultHandler {
    void startElement(const std::string&, const std::string& localName, const std::string&,
                      const Attributes&) override {
      names += localName + " ";
      OwnedVocabulary other;
      for (int i = 0; i < 100; ++i) other.addLocalName("x" + std::to_string(i));
      reader->addExternalVocabulary("u", other);
    }
    XMLReader_X891* reader = nullptr;
    std::string names;
  } handler;
  XMLReader_X891 reader;
  handler.reader = &reader;
  reader.setContentHandler(&handler);
  OwnedVocabulary first;
  first.addElementName("", "a");
  first.addElementName("", "b");
  reader.addExternalVocabulary("u", first);
  first = {};
  const std::string document = octets("E0 00 00 01 20 10 00 00 'u' 00 01 F0 3C 81 FF F0");
  for (const char octet : document) reader.parse(&octet, 1, false);
  EXPECT_EQ("a b b ", handler.names);
  handler.names.clear();
  std::istringstream second(octets("E0 00 00 01 20 10 00 00 'u' 3C 81 FF"));
  reader.parse(second);
  EXPECT_EQ("x1 ", handler.names);
}

TEST(SharedVocabulary, MayBeReplacedWhileADocumentIsWritten) {
  OwnedVocabulary first;
  first.addElementName("", "a");
  Writer writer;
  writer.setExternalVocabulary("v", first);
  first = {};
  writer.startDocument();
  writer.start("a");
  writer.setExternalVocabulary("w", {});
  writer.setInitialVocabulary(oneOfEach());
  writer.setInitialVocabulary({});
  writer.leaf("a");
  writer.end("a");
  writer.endDocument();
  EXPECT_EQ(hex("E0 00 00 01 20 10 00 00 'v' 00 00 FF F0"), shown(writer.output.news()));
  writer.reset();
  writer.startDocument();
  writer.leaf("a");
  writer.endDocument();
  EXPECT_EQ(hex("E0 00 00 01 20 10 00 00 'w' 3C 00 'a' FF"), shown(writer.output.news()));
}

// A root that is refused, an event that fails, and reset leave the vocabulary as it was.
TEST(SharedVocabulary, GoesOnAfterFailures) {
  Writer writer;
  writer.setExternalVocabulary("urn:v", oneOfEach());
  const std::string expected = hex(std::string("E0 00 00 01 20 10 00 04 'urn:v'") + kAll);
  writer.startDocument();
  EXPECT_NE("nothing", thrown([&] { writer.start("1"); }));
  writer.start("a");
  writer.reset();
  writer.output.news();
  writeAll(writer);
  EXPECT_EQ(expected, shown(writer.output.news()));

  Reader reader;
  reader.log.attachAlgorithmsTo(reader.reader);
  reader.reader.addExternalVocabulary("urn:v", oneOfEach());
  const std::string head = "E0 00 00 01 20 10 00 04 'urn:v'";
  EXPECT_EQ(x891_test::failure({"startDocument()"},
                               "Error when decoding element name - invalid index", 14),
            reader.read(octets(head + "01")));
  EXPECT_EQ(toldOfAll(), reader.read(octets(head + kAll)));
}

// --- Cost ---

/// The allocations of a document, and the most memory that it takes, when writer and reader have
/// had others before.
struct Cost {
  std::size_t allocations;
  std::size_t peak;
};

template <typename Work>
Cost costOf(Work work) {
  work();
  work();
  const std::size_t before = allocations::total();
  const std::size_t peak = allocations::peakOf(work);
  return {allocations::total() - before, peak};
}

TEST(SharedVocabulary, CostsTheSameWhateverItsSize) {
  if (!allocations::areCounted()) {
    GTEST_SKIP() << "valgrind has functions of its own in place";
  }
  std::vector<Cost> writing;
  std::vector<Cost> reading;
  for (const int size : {0, 100, 100000}) {
    OwnedVocabulary vocabulary = oneOfEach();
    for (int i = 0; i < size; ++i) {
      const std::string name = "n" + std::to_string(i);
      vocabulary.addAttributeName("", name);
      vocabulary.addElementName("u", name, "p:" + name);
      vocabulary.addCharacters(name);
    }
    std::ostringstream stream;
    XMLWriter_X891 writer;
    writer.setOutputStream(&stream);
    writer.setExternalVocabulary("urn:v", vocabulary);
    const std::string document =
        octets("E0 00 00 01 20 10 00 04 'urn:v' 78 CF 81 81 F0 00 00 80 F0 A0 FF");
    writing.push_back(costOf([&] {
      stream.str("");
      writer.reset();
      writer.startDocument();
      writer.startPrefixMapping("p", "u");
      writer.startElement("u", "l", "p:l", attributes({{"b", "v"}}));
      writer.characters("c");
      writer.endElement("u", "l", "p:l");
      writer.endDocument();
    }));
    XMLReader_X891 reader;
    DefaultHandler handler;
    connect(reader, handler);
    reader.addExternalVocabulary("urn:v", vocabulary);
    reading.push_back(costOf([&] {
      MemoryStream in(document);
      reader.parse(in);
    }));
  }
  // What the allocator gives may be a little more than what it was asked for.
  const auto expectSamePeak = [](const Cost& one, const Cost& other) {
    constexpr std::size_t kLittle = 64;
    EXPECT_LE(one.peak, other.peak + kLittle);
    EXPECT_LE(other.peak, one.peak + kLittle);
  };
  for (std::size_t i = 1; i < writing.size(); ++i) {
    EXPECT_EQ(writing[0].allocations, writing[i].allocations);
    expectSamePeak(writing[0], writing[i]);
    EXPECT_EQ(reading[0].allocations, reading[i].allocations);
    expectSamePeak(reading[0], reading[i]);
  }
}

}  // namespace
}  // namespace vocabulary_test
