#include <Tavrin/Factories.h>
#include <Tavrin/Identifiers.h>

#include <gtest/gtest.h>

#include <sstream>

#include "FIWriterProbe.h"
#include "WhatIsThrown.h"

// The writer as an object: creation, properties, one document after another.

namespace writer_test {
namespace {

using namespace Tavrin;

/// A document that fills every table, twice over.
void writeDocument(Probe& writer) {
  writer.startDocument();
  writer.startPrefixMapping("p", "u");
  writer.startElement("u", "r", "p:r", namedAttributes({{"u", "a", "p:a", "1"}}));
  for (int i = 0; i < 2; ++i) {
    writer.characters("hi");
    writer.comment("c");
    writer.processingInstruction("t", "d");
    writer.startElement("u", "e", "p:e", namedAttributes({{"u", "a", "p:a", "1"}}));
    writer.endElement("u", "e", "p:e");
  }
  writer.endElement("u", "r", "p:r");
  writer.endDocument();
}

const std::string kDocument = document(
    "78 CF 00 'p' 00 'u' F0 3F 81 81 00 'r' 7B 81 81 00 'a' 40 '1' F0"
    "91 'hi' E2 40 'c' E1 00 't' 40 'd' 7F 81 81 00 'e' 00 80 FF"
    "A0 E2 80 E1 80 81 41 00 80 FF FF");

TEST(WriterReuse, GivesEveryDocumentTablesOfItsOwn) {
  Probe writer;
  for (int i = 0; i < 3; ++i) {
    writeDocument(writer);
    EXPECT_EQ(writer.news(), kDocument) << "document " << i;
    writer.reset();
    EXPECT_EQ(writer.news(), "");
  }
}

TEST(WriterReuse, NeedsAResetBehindADocument) {
  Probe writer;
  writeDocument(writer);
  EXPECT_EQ(thrown([&] { writer.startDocument(); }),
            "SAXException: You cannot start a document at this point");
  EXPECT_EQ(writer.news(), kDocument);
}

TEST(WriterReuse, ForgetsTheOwedTerminatorOfADocumentThatWasLeftOpen) {
  Probe writer;
  writer.startDocument();
  writer.start("r");
  writer.leaf("e");
  writer.reset();
  writer.output.news();
  writeDocument(writer);
  EXPECT_EQ(writer.news(), kDocument);
}

TEST(WriterReuse, KeepsTheTextThatHadGathered) {
  Probe writer;
  writer.startDocument();
  writer.start("r");
  writer.characters("hi");
  writer.reset();
  EXPECT_EQ(writer.written(), document("3C 00 'r'"));
  writer.output.news();
  writer.startDocument();
  writer.start("r");
  writer.characters("hi");
  writer.end("r");
  writer.endDocument();
  // It comes out in front of the root, and is a chunk of the new document like any other.
  EXPECT_EQ(writer.news(), document("91 'hi' 3C 00 'r' A0 FF"));
}

TEST(WriterReuse, KeepsTheTextAlsoForADocumentWithoutAnyElement) {
  Probe writer;
  writer.startDocument();
  writer.start("r");
  writer.startCDATA();
  writer.characters("hi");
  writer.reset();
  writer.output.news();
  writer.startDocument();
  writer.endDocument();
  EXPECT_EQ(writer.news(), document("91 'hi' F0"));
}

TEST(WriterReuse, KeepsTheDeclarationsThatWereWaiting) {
  Probe writer;
  writer.startDocument();
  writer.start("r");
  writer.startPrefixMapping("p", "u");
  writer.reset();
  writer.output.news();
  writer.startDocument();
  writer.startPrefixMapping("q", "v");
  writer.startElement("u", "r", "p:r", attributes({}));
  writer.endElement("u", "r", "p:r");
  writer.endDocument();
  EXPECT_EQ(writer.news(), document("38 CF 00 'p' 00 'u' CF 00 'q' 00 'v' F0 3F 81 81 00 'r' FF"));
}

TEST(WriterReuse, BringsOutWhatIsKeptAlsoByTypedContent) {
  Probe writer;
  writer.startDocument();
  writer.start("r");
  writer.leaf("e");
  writer.characters("hi");
  writer.reset();
  writer.output.news();
  writer.shorts({1});  // Still in front of the new document: all is as it was.
  EXPECT_EQ(writer.news(), hex("F0 91 'hi' 8C 09 00 01"));
  writer.startDocument();
  writer.endDocument();
  EXPECT_EQ(writer.news(), document("F0"));
}

TEST(WriterReuse, KeepsTheStream) {
  Probe writer;
  writer.reset();
  EXPECT_EQ(writer.getOutputStream(), &writer.output);
}

TEST(WriterCreation, IsByNameInAnyCase) {
  for (const char* name : {"FI", "fi", "Fi"}) {
    const std::unique_ptr<XMLWriter> writer = XMLWriterFactory::createXMLWriter(name);
    EXPECT_NE(dynamic_cast<XMLWriter_FI*>(writer.get()), nullptr);
    EXPECT_EQ(writer->getOutputStream(), nullptr);
    std::ostringstream stream;
    writer->setOutputStream(&stream);
    writer->startDocument();
    writer->endDocument();
    EXPECT_EQ(EventLog::showOctets(stream.str()), document("F0"));
  }
}

TEST(WriterCreation, GivesAnEmptyWriter) {
  const std::unique_ptr<XMLWriter> writer = XMLWriter_FI::create();
  EXPECT_EQ(writer->getOutputStream(), nullptr);
  std::ostringstream stream;
  writer->setOutputStream(&stream);
  writer->startDocument();
  writer->startElement("", "r", "r", AttributesImpl());
  writer->endElement("", "r", "r");
  writer->endDocument();
  EXPECT_EQ(EventLog::showOctets(stream.str()), document("3C 00 'r' FF"));
}

TEST(WriterProperties, OfTheReadersTablesAreAcceptedAndIgnored) {
  Probe writer;
  EncodingAlgorithmMap algorithms;
  ShortEncodingAlgorithm algorithm;
  algorithms["urn:x"] = &algorithm;
  for (const char* name :
       {properties::registeredEncodingAlgorithms, properties::externalVocabularies}) {
    EXPECT_EQ(writer.getProperty(name), nullptr);
    writer.setProperty(name, &algorithms);
    EXPECT_EQ(writer.getProperty(name), nullptr);
    writer.setProperty(name, nullptr);
    EXPECT_EQ(writer.getProperty(name), nullptr);
    writer.setProperty(name, &algorithms);
  }
  EXPECT_EQ(writer.getEncodingAlgorithm("urn:x", 32), nullptr);
  writeDocument(writer);
  EXPECT_EQ(writer.written(), kDocument);
}

TEST(WriterProperties, OfAnyOtherNameAreRefused) {
  Probe writer;
  for (const std::string name :
       {"", "x", properties::lexicalHandler, properties::declarationHandler,
        properties::primitiveTypeContentHandler, properties::encodingAlgorithmContentHandler,
        "http://jvnet.org/fastinfoset/parser/properties/External-vocabularies",
        "/fastinfoset/parser/properties/external-vocabularies",
        "http://jvnet.org/fastinfoset/parser/properties/external-vocabularies/"}) {
    const std::string refusal =
        "SAXNotRecognizedException: Property \"" + name + "\" not recognized";
    EXPECT_EQ(thrown([&] { writer.setProperty(name, &writer); }), refusal);
    EXPECT_EQ(thrown([&] { writer.getProperty(name); }), refusal);
  }
}

TEST(WriterFeatures, AreRefused) {
  Probe writer;
  for (const std::string name : {"", "x", features::autoIndent, features::emptyTags,
                                 features::xmlDeclaration, properties::externalVocabularies}) {
    const std::string refusal =
        "SAXNotRecognizedException: Feature \"" + name + "\" not recognized";
    EXPECT_EQ(thrown([&] { writer.setFeature(name, true); }), refusal);
    EXPECT_EQ(thrown([&] { writer.getFeature(name); }), refusal);
  }
}

TEST(WriterInterfaces, AllReachTheSameWriter) {
  Probe writer;
  ContentHandler& content = writer;
  LexicalHandler& lexical = writer;
  DTDHandler& dtd = writer;
  DeclHandler& declarations = writer;
  XMLWriter& base = writer;
  content.startDocument();
  lexical.startDTD("r", "", "");
  dtd.notationDecl("n", "", "s");
  declarations.elementDecl("r", "ANY");
  lexical.endDTD();
  lexical.comment("c");
  content.startPrefixMapping("p", "u");
  content.startElement("u", "r", "p:r", attributes({}));
  content.characters("a");
  lexical.startCDATA();
  content.characters("b");
  lexical.endCDATA();
  content.processingInstruction("t", "d");
  content.endElement("u", "r", "p:r");
  content.endPrefixMapping("p");
  base.endDocument();
  EXPECT_EQ(writer.written(), document("E2 40 'c' 38 CF 00 'p' 00 'u' F0 3F 81 81 00 'r' 8C 25 'ab'"
                                       "E1 00 't' 40 'd' FF"));
}

}  // namespace
}  // namespace writer_test
