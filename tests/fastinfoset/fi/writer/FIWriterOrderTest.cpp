#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <type_traits>
#include <vector>

#include "ActingAttributes.h"
#include "FIWriterProbe.h"
#include "WhatIsThrown.h"

// The order in which a start tag is written, what code of others sees of it, and which code of
// others is called.

namespace writer_test {
namespace {

using namespace Tavrin;

using Lines = std::vector<std::string>;

// --- Declarations are done with as soon as they are written ---

/// What a document has in which one more declaration is made, behind a start tag that broke.
std::string nextDocument(Probe& writer) {
  writer.reset();
  writer.output.news();
  writer.startDocument();
  writer.startPrefixMapping("q", "v");
  writer.start("r");
  writer.end("r");
  writer.endDocument();
  return writer.news();
}

const std::string kNextDocument = document("38 CF 00 'q' 00 'v' F0 3C 00 'r' FF");

TEST(WriterDeclarations, AreNotWrittenAgainBehindANameThatIsRefused) {
  Probe writer;
  writer.startDocument();
  writer.startPrefixMapping("p", "u");
  EXPECT_EQ(thrown([&] {
              writer.startElement("u", "e", "x:e", attributes({{"a", "1"}}));
            }),
            "SAXException: Undeclared prefix \"x\"");
  EXPECT_EQ(writer.written(), document("78 CF 00 'p' 00 'u' F0"));
  EXPECT_EQ(nextDocument(writer), kNextDocument);
}

TEST(WriterDeclarations, AreNotWrittenAgainBehindAnAttributeThatIsRefused) {
  Probe writer;
  writer.startDocument();
  writer.startPrefixMapping("p", "u");
  EXPECT_EQ(thrown([&] {
              writer.startElement("u", "e", "p:e",
                                  namedAttributes({{"", "a", "a", "1"}, {"u", "b", "x:b", "2"}}));
            }),
            "SAXException: Undeclared prefix \"x\"");
  EXPECT_EQ(writer.written(), document("78 CF 00 'p' 00 'u' F0 3F 81 81 00 'e' 78 00 'a' 40 '1'"));
  EXPECT_EQ(nextDocument(writer), kNextDocument);
}

// --- Getters of an application's attributes ---

TEST(WriterGetters, SeeWhatPrecedesTheirAnswer) {
  Probe writer;
  Lines seen;
  const ActingAttributes acting(
      [&](const std::string& what) { seen.push_back(what + " " + writer.news()); });
  writer.startDocument();
  writer.start("r");
  writer.leaf("e");
  writer.characters("hi");
  writer.startPrefixMapping("p", "u");
  writer.output.news();
  writer.startElement("u", "e", "p:e", acting);
  EXPECT_EQ(seen, (Lines{"name " + hex("F0 91 'hi' 78 CF 00 'p' 00 'u' F0 3F 81 81 81"),
                         "value " + hex("78 00 'a'"), "name " + hex("40 '1'"),
                         "value " + hex("78 00 'b'")}));
  EXPECT_EQ(writer.news(), hex("40 '2'"));
}

TEST(WriterGetters, MayThrowInTheMidstOfATag) {
  Probe writer;
  int values = 0;
  const ActingAttributes acting([&](const std::string& what) {
    if (what == "value" && ++values == 2) throw std::logic_error("no value");
  });
  writer.startDocument();
  writer.startPrefixMapping("p", "u");
  EXPECT_THROW(writer.startElement("u", "e", "p:e", acting), std::logic_error);
  EXPECT_EQ(writer.written(),
            document("78 CF 00 'p' 00 'u' F0 3F 81 81 00 'e' 78 00 'a' 40 '1' 78 00 'b'"));
  EXPECT_EQ(nextDocument(writer), kNextDocument);
}

TEST(WriterGetters, MayChangeTheStream) {
  Probe writer;
  Output second;
  std::ostream* next[] = {&second, nullptr};
  int values = 0;
  const ActingAttributes acting([&](const std::string& what) {
    if (what == "value") writer.setOutputStream(next[values++]);
  });
  writer.startDocument();
  writer.startElement("", "e", "e", acting);
  EXPECT_EQ(writer.written(), document("7C 00 'e' 78 00 'a'"));
  EXPECT_EQ(EventLog::showOctets(second.text()), hex("40 '1' 78 00 'b'"));
}

// --- Members of a subclass ---

/// Has members called like steps that a writer may have.
struct NamesakeWriter : Probe {
  [[noreturn]] static void refuse() { throw std::logic_error("called"); }
  virtual void beginDocument() { refuse(); }
  virtual void beginTag() { refuse(); }
  virtual void send() { refuse(); }
  virtual void put(unsigned) { refuse(); }
  virtual void missingNamePart(const std::string&, const char*) const { refuse(); }
  virtual bool isDeclaration(const Attributes&, int) const { refuse(); }
  virtual void takeDeclarations(const Attributes&, const std::vector<int>&) { refuse(); }
  virtual void checkValue(const std::string&, unsigned) const { refuse(); }
  virtual void checkTypedValue(const std::string&, int, const EncodedData&) { refuse(); }
  virtual void encodeTypedValue(const std::string&, int, const EncodedData&) { refuse(); }
  virtual EncodingAlgorithm* getEncodingAlgorithm(const std::string&, int) { refuse(); }
  virtual void flushCharacters() { refuse(); }
  virtual void flushTerminator(bool) { refuse(); }
  virtual int countAttributes(const Attributes&) const { refuse(); }
};

TEST(WriterMembers, OfASubclassAreNotCalled) {
  NamesakeWriter writer;
  EncodingAlgorithmAttributesImpl list;
  list.addAttribute("", "s", "s", "CDATA", "", 2,
                    std::make_unique<ShortData>(std::vector<short>{1}));
  list.addAttribute("", "a", "a", "CDATA", "1");
  writer.startDocument();
  writer.startElement("", "r", "r", list);
  writer.characters("x");
  writer.object("", 9, CDATAData("y"));
  EXPECT_EQ(thrown([&] { writer.startElement("u", "e", "p:e", attributes({})); }),
            "SAXException: Undeclared prefix \"p\"");
  EXPECT_EQ(writer.written(),
            document("7C 00 'r' 78 00 's' 30 21 00 01 78 00 'a' 40 '1' F0 90 'x' 8C 24 'y'"));
}

// --- Names for programs ---

/// What the primitives take is told by their types.
struct Types : XMLWriter_FI {
  static_assert(std::is_same_v<decltype(&Types::encodeString),
                               void (XMLWriter_FI::*)(std::map<std::string, unsigned int>*, bool,
                                                      const std::string&)>);
  static_assert(std::is_same_v<decltype(&Types::encodeIdentifier),
                               void (XMLWriter_FI::*)(std::map<std::string, unsigned int>*,
                                                      const std::string&)>);
  static_assert(std::is_same_v<decltype(&Types::encodeQualifiedName),
                               void (XMLWriter_FI::*)(int, std::map<QualifiedName, unsigned int>&,
                                                      const QualifiedName&)>);
};

TEST(WriterNames, MayBeUsedByPrograms) {
  const XMLWriter_FI::QualifiedName name = {"p", "u", "l"};
  EXPECT_EQ(name.prefix + name.namespaceName + name.localName, "pul");
  EXPECT_TRUE(name < (XMLWriter_FI::QualifiedName{"", "", "m"}));
  XMLWriter_FI writer;
  EXPECT_NE(dynamic_cast<ShortEncodingAlgorithm*>(writer.getEncodingAlgorithm("", 2)), nullptr);
}

}  // namespace
}  // namespace writer_test
