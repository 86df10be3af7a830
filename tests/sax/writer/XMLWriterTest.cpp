#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <iterator>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "VirtualSlot.h"
#include "WhatIsThrown.h"
#include "WriterProbe.h"

namespace {

using namespace Tavrin;

static_assert(std::is_base_of_v<ContentHandler, XMLWriter>);
static_assert(std::is_base_of_v<DTDHandler, XMLWriter>);
static_assert(std::is_base_of_v<DeclHandler, XMLWriter>);
static_assert(std::is_base_of_v<LexicalHandler, XMLWriter>);

using BaseWriter = Probe<XMLWriter>;

TEST(XMLWriter, BeginsWithoutStreamAndElements) {
  const BaseWriter writer;
  EXPECT_EQ(writer.getOutputStream(), nullptr);
  EXPECT_EQ(writer.out_, nullptr);
  EXPECT_EQ(static_cast<int>(writer.state_), 0);
  EXPECT_TRUE(writer.elements_.empty());
}

TEST(XMLWriter, KeepsTheStreamThatWasSetLast) {
  BaseWriter writer;
  std::ostringstream first;
  std::ostringstream second;
  writer.setOutputStream(&first);
  EXPECT_EQ(writer.getOutputStream(), &first);
  writer.setOutputStream(&second);
  EXPECT_EQ(writer.getOutputStream(), &second);
  EXPECT_EQ(writer.out_, &second);
  writer.setOutputStream(nullptr);
  EXPECT_EQ(writer.getOutputStream(), nullptr);
}

TEST(XMLWriter, WritesNothingItself) {
  for (const auto& place : kPlaces) {
    for (const auto& event : kEvents) {
      std::ostringstream stream;
      BaseWriter writer;
      writer.setOutputStream(&stream);
      bringTo(place.place, writer);
      thrown([&] { send(event.event, writer); });
      writer.flush();
      writer.reset();
      EXPECT_EQ(stream.str(), "") << event.name << " " << place.name;
    }
  }
}

TEST(XMLWriter, KeepsCopiesOfAnElementsNames) {
  BaseWriter writer;
  writer.startDocument();
  {
    const std::string uri(100, 'u');
    const std::string localName(100, 'l');
    const std::string qName(100, 'q');
    writer.startElement(uri, localName, qName, AttributesImpl());
  }
  writer.startElement("", "", "", AttributesImpl());
  ASSERT_EQ(writer.elements_.size(), 2U);
  EXPECT_EQ(writer.elements_[0].uri, std::string(100, 'u'));
  EXPECT_EQ(writer.elements_[0].localName, std::string(100, 'l'));
  EXPECT_EQ(writer.elements_[0].qName, std::string(100, 'q'));
  EXPECT_EQ(writer.elements_[1].uri, "");
  EXPECT_EQ(writer.elements_[1].localName, "");
  EXPECT_EQ(writer.elements_[1].qName, "");
}

// --- Events that are free ---

TEST(XMLWriter, PassesOverUncheckedEventsInEveryState) {
  for (const auto& place : kPlaces) {
    for (const bool content : {false, true}) {
      BaseWriter writer;
      bringTo(place.place, writer);
      writer.hasContent_ = content;
      const std::string open = writer.openElements();
      writer.setDocumentLocator(nullptr);
      writer.startPrefixMapping("p", "urn:x");
      writer.endPrefixMapping("p");
      writer.skippedEntity("e");
      writer.startEntity("e");
      writer.endEntity("e");
      EXPECT_EQ(static_cast<int>(writer.state_), place.state) << place.name;
      EXPECT_EQ(writer.hasContent_, content) << place.name;
      EXPECT_EQ(writer.openElements(), open) << place.name;
    }
  }
}

TEST(XMLWriter, DoesNothingOnFlush) {
  for (const auto& place : kPlaces) {
    for (const bool content : {false, true}) {
      BaseWriter writer;
      bringTo(place.place, writer);
      writer.hasContent_ = content;
      const std::string open = writer.openElements();
      writer.flush();
      writer.flush();
      EXPECT_EQ(static_cast<int>(writer.state_), place.state) << place.name;
      EXPECT_EQ(writer.hasContent_, content) << place.name;
      EXPECT_EQ(writer.openElements(), open) << place.name;
    }
  }
}

// --- Features and properties ---

TEST(XMLWriter, RefusesEveryFeatureAndProperty) {
  BaseWriter writer;
  int value = 0;
  const std::string names[] = {"",
                               "x",
                               "\"",
                               "a\"b",
                               "URN:MixedCase",
                               std::string("nul\0inside", 10),
                               features::autoIndent,
                               features::emptyTags,
                               features::xmlDeclaration,
                               properties::lexicalHandler,
                               properties::declarationHandler,
                               std::string(100'000, 'n')};
  for (const std::string& name : names) {
    const std::string feature =
        "SAXNotRecognizedException: Feature \"" + name + "\" not recognized";
    const std::string property =
        "SAXNotRecognizedException: Property \"" + name + "\" not recognized";
    EXPECT_EQ(thrown([&] { writer.setFeature(name, true); }), feature);
    EXPECT_EQ(thrown([&] { writer.setFeature(name, false); }), feature);
    EXPECT_EQ(thrown([&] { writer.getFeature(name); }), feature);
    EXPECT_EQ(thrown([&] { writer.setProperty(name, &value); }), property);
    EXPECT_EQ(thrown([&] { writer.setProperty(name, nullptr); }), property);
    EXPECT_EQ(thrown([&] { writer.getProperty(name); }), property);
  }
}

TEST(XMLWriter, SpellsTheRefusalOfAFeatureInFull) {
  BaseWriter writer;
  EXPECT_EQ(thrown([&] { writer.setFeature("x", true); }),
            "SAXNotRecognizedException: Feature \"x\" not recognized");
  EXPECT_EQ(thrown([&] { writer.getProperty("x"); }),
            "SAXNotRecognizedException: Property \"x\" not recognized");
}

// --- Reset and several documents ---

TEST(XMLWriterReset, ForgetsTheDocumentInEveryState) {
  for (const auto& place : kPlaces) {
    for (const bool content : {false, true}) {
      std::ostringstream stream;
      BaseWriter writer;
      writer.setOutputStream(&stream);
      bringTo(place.place, writer);
      writer.hasContent_ = content;
      for (int i = 0; i < 2; ++i) {
        writer.reset();
        EXPECT_EQ(static_cast<int>(writer.state_), 0) << place.name;
        EXPECT_TRUE(writer.elements_.empty()) << place.name;
        EXPECT_EQ(writer.hasContent_, content) << place.name;
        EXPECT_EQ(writer.out_, &stream) << place.name;
      }
    }
  }
}

TEST(XMLWriterReset, LetsAnotherDocumentBeginFromEveryState) {
  for (const auto& place : kPlaces) {
    BaseWriter writer;
    bringTo(place.place, writer);
    writer.reset();
    bringTo(Place::Ended, writer);
    EXPECT_EQ(static_cast<int>(writer.state_), 7) << place.name;
  }
}

TEST(XMLWriterReset, IsNeededBetweenTwoDocuments) {
  BaseWriter writer;
  bringTo(Place::Ended, writer);
  EXPECT_EQ(thrown([&] { writer.startDocument(); }),
            "SAXException: You cannot start a document at this point");
  writer.reset();
  writer.startDocument();
  EXPECT_EQ(static_cast<int>(writer.state_), 1);
}

TEST(XMLWriterReset, EmptiesADeepStack) {
  BaseWriter writer;
  writer.startDocument();
  const AttributesImpl none;
  for (int i = 0; i < 100'000; ++i) writer.startElement("urn:u", "e", "p:e", none);
  writer.reset();
  EXPECT_TRUE(writer.elements_.empty());
  EXPECT_EQ(static_cast<int>(writer.state_), 0);
}

TEST(XMLWriter, NestsAMillionElements) {
  constexpr std::size_t kDepth = 1'000'000;
  BaseWriter writer;
  writer.startDocument();
  const AttributesImpl none;
  const std::string uri = "urn:u";
  const std::string name = "e";
  for (std::size_t i = 0; i < kDepth; ++i) writer.startElement(uri, name, name, none);
  EXPECT_EQ(writer.elements_.size(), kDepth);
  for (std::size_t i = 0; i < kDepth; ++i) writer.endElement(uri, name, name);
  EXPECT_TRUE(writer.elements_.empty());
  EXPECT_EQ(static_cast<int>(writer.state_), 6);
  writer.endDocument();
}

// --- Binary interface ---

// A property takes an untyped pointer to one interface, so each has its own address.
TEST(XMLWriter, HoldsItsInterfacesInOrder) {
  BaseWriter probe;
  XMLWriter& writer = probe;
  const void* const addresses[] = {
      static_cast<ContentHandler*>(&writer), static_cast<DTDHandler*>(&writer),
      static_cast<DeclHandler*>(&writer), static_cast<LexicalHandler*>(&writer)};
  const auto* const begin = reinterpret_cast<const std::byte*>(&writer);
  for (std::size_t i = 0; i < std::size(addresses); ++i) {
    EXPECT_EQ(addresses[i], begin + i * sizeof(void*));
  }
}

TEST(XMLWriter, IsReachedThroughAnUntypedPointerToAnInterface) {
  BaseWriter writer;
  bringTo(Place::InRoot, writer);
  void* const untyped = static_cast<LexicalHandler*>(&writer);
  static_cast<LexicalHandler*>(untyped)->startCDATA();
  EXPECT_EQ(static_cast<int>(writer.state_), 5);
}

TEST(XMLWriter, KeepsTheOrderOfItsVirtualTable) {
  const std::vector<std::ptrdiff_t> slots{
      slotOf(&XMLWriter::setDocumentLocator),
      slotOf(&XMLWriter::startDocument),
      slotOf(&XMLWriter::endDocument),
      slotOf(&XMLWriter::startPrefixMapping),
      slotOf(&XMLWriter::endPrefixMapping),
      slotOf(&XMLWriter::startElement),
      slotOf(&XMLWriter::endElement),
      slotOf(&XMLWriter::characters),
      slotOf(&XMLWriter::ignorableWhitespace),
      slotOf(&XMLWriter::processingInstruction),
      slotOf(&XMLWriter::skippedEntity),
      slotOf(&XMLWriter::setFeature),
      slotOf(&XMLWriter::getFeature),
      slotOf(&XMLWriter::setProperty),
      slotOf(&XMLWriter::getProperty),
      slotOf(&XMLWriter::flush),
      slotOf(&XMLWriter::reset),
      slotOf(&XMLWriter::notationDecl),
      slotOf(&XMLWriter::unparsedEntityDecl),
      slotOf(&XMLWriter::elementDecl),
      slotOf(&XMLWriter::attributeDecl),
      slotOf(&XMLWriter::internalEntityDecl),
      slotOf(&XMLWriter::externalEntityDecl),
      slotOf(&XMLWriter::startDTD),
      slotOf(&XMLWriter::endDTD),
      slotOf(&XMLWriter::startCDATA),
      slotOf(&XMLWriter::endCDATA),
      slotOf(&XMLWriter::comment),
  };
  EXPECT_EQ(slots,
            (std::vector<std::ptrdiff_t>{2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15,
                                         16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29}));
}

}  // namespace
