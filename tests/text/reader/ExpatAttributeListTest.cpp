#include <gtest/gtest.h>

#include <typeinfo>

#include <Allocations.h>
#include "TextReaderSupport.h"

namespace {

using Tavrin::AttributesImpl;

/// Runs a function on the list of every start tag.
struct Lists : Tavrin::ContentHandler {
  std::function<void(const std::string& element, const Tavrin::Attributes&)> atStart;
  std::function<void()> atText = [] {};

  void startElement(const std::string&, const std::string&, const std::string& qName,
                    const Tavrin::Attributes& attributes) override {
    atStart(qName, attributes);
  }
  void characters(const std::string&) override { atText(); }
};

TEST(ExpatAttributeLists, ArePlainListsThatProgramsMayLookInto) {
  std::size_t lists = 0;
  Lists handler;
  handler.atStart = [&](const std::string& element, const Tavrin::Attributes& attributes) {
    ++lists;
    EXPECT_TRUE(typeid(attributes) == typeid(AttributesImpl));
    const auto* list = dynamic_cast<const AttributesImpl*>(&attributes);
    ASSERT_NE(nullptr, list);
    if (element == "none") {
      EXPECT_TRUE(list->attributes_.empty());
      EXPECT_EQ(-1, list->findAttribute("a"));
      return;
    }
    EXPECT_EQ(0, list->findAttribute("a"));
    EXPECT_EQ(1, list->findAttribute("u", "b"));
    EXPECT_EQ(1, list->findAttribute("p:b"));
    EXPECT_EQ(2, list->findAttribute("uvw", "c\nlong"));
    EXPECT_EQ(-1, list->findAttribute("u", "a"));
    ASSERT_EQ(3U, list->attributes_.size());
    const AttributesImpl::Attribute& plain = list->attributes_[0];
    EXPECT_EQ("||a|a|CDATA|1|", "|" + plain.uri + "|" + plain.localName + "|" + plain.qName + "|" +
                                    plain.type + "|" + plain.value + "|");
    const AttributesImpl::Attribute& split = list->attributes_[1];
    EXPECT_EQ("u|b|p:b|CDATA|2", split.uri + "|" + split.localName + "|" + split.qName + "|" +
                                     split.type + "|" + split.value);
    const AttributesImpl::Attribute& whole = list->attributes_[2];
    EXPECT_EQ("uvw|c\nlong|c\nlong|CDATA|3", whole.uri + "|" + whole.localName + "|" + whole.qName +
                                                 "|" + whole.type + "|" + whole.value);
  };
  Tavrin::XMLReader_Expat reader;
  reader.setContentHandler(&handler);
  EXPECT_EQ("done", parseText(reader,
                              "<root xmlns:p='u' xmlns:long='uvw' a='1' p:b='2' long:c='3'>"
                              "<none/><none></none>"
                              "<some a='1' p:b='2' long:c='3'/></root>"));
  EXPECT_EQ(4U, lists);
}

TEST(ExpatAttributeLists, OfOneTagAreNotHeldDuringTheNext) {
  constexpr std::size_t kHuge = std::size_t{16} << 20;
  const std::string huge(kHuge, 'v');
  std::vector<std::size_t> held;
  Lists handler;
  const auto note = [&] { held.push_back(allocations::inUse()); };
  handler.atStart = [&](const std::string&, const Tavrin::Attributes&) { note(); };
  handler.atText = note;
  Tavrin::XMLReader_Expat reader;
  reader.setContentHandler(&handler);
  held.reserve(16);
  const std::string document = "<a><b v='" + huge + "'>t<c v='w'/></b><b v='" + huge + "'/></a>";
  std::istringstream stream(document);
  EXPECT_EQ("done", outcomeOf([&] { reader.parse(stream); }));
  ASSERT_EQ(5U, held.size());
  // expat keeps its own copy of the value; that of the list is gone after the tag.
  EXPECT_GE(held[1], held[2] + kHuge);
  EXPECT_LT(held[3], held[2] + kHuge);
}

TEST(ExpatAttributeLists, OfOneTagAreNotThoseOfTheNext) {
  // A list that is copied by its type lives on by itself.
  std::vector<AttributesImpl> copies;
  Lists handler;
  handler.atStart = [&](const std::string&, const Tavrin::Attributes& attributes) {
    copies.push_back(dynamic_cast<const AttributesImpl&>(attributes));
  };
  Tavrin::XMLReader_Expat reader;
  reader.setContentHandler(&handler);
  EXPECT_EQ("done", parseText(reader, "<a x='1' y='2'><b x='3'/><c/></a>"));
  ASSERT_EQ(3U, copies.size());
  EXPECT_EQ(2, copies[0].getLength());
  EXPECT_EQ("1", copies[0].getValue("x"));
  EXPECT_EQ("2", copies[0].getValue("y"));
  EXPECT_EQ(1, copies[1].getLength());
  EXPECT_EQ("3", copies[1].getValue("x"));
  EXPECT_EQ(0, copies[2].getLength());
}

}  // namespace
