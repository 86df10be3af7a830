#include <Tavrin/Attributes.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <deque>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include "VirtualSlot.h"
#include "WhatIsThrown.h"

namespace {

using namespace Tavrin;

static_assert(std::is_base_of_v<Attributes, AttributesImpl>);
static_assert(std::is_aggregate_v<AttributesImpl::Attribute>);

const char kOutOfRange[] = "std::out_of_range: vector::_M_range_check";
const int kNoIndexes[] = {std::numeric_limits<int>::min(), -3, -2, -1};

/// A list as text, one attribute a line, its fields in brackets.
std::string show(const Attributes& list) {
  std::string shown;
  for (int i = 0; i < list.getLength(); ++i) {
    shown += "[" + list.getURI(i) + "][" + list.getLocalName(i) + "][" + list.getQName(i) + "][" +
             list.getType(i) + "][" + list.getValue(i) + "]\n";
  }
  return shown;
}

AttributesImpl threeAttributes() {
  AttributesImpl list;
  list.addAttribute("urn:x", "a", "p:a", "CDATA", "1");
  list.addAttribute("", "b", "b", "ID", "2");
  list.addAttribute("urn:y", "a", "q:a", "NMTOKEN", "3");
  return list;
}

const char kThreeAttributes[] =
    "[urn:x][a][p:a][CDATA][1]\n"
    "[][b][b][ID][2]\n"
    "[urn:y][a][q:a][NMTOKEN][3]\n";

/// Every access by position must be refused.
void expectNoAttributeAt(const Attributes& list, int index) {
  EXPECT_EQ(thrown([&] { list.getURI(index); }), kOutOfRange) << index;
  EXPECT_EQ(thrown([&] { list.getLocalName(index); }), kOutOfRange) << index;
  EXPECT_EQ(thrown([&] { list.getQName(index); }), kOutOfRange) << index;
  EXPECT_EQ(thrown([&] { list.getType(index); }), kOutOfRange) << index;
  EXPECT_EQ(thrown([&] { list.getValue(index); }), kOutOfRange) << index;
}

/// Every look-up by namespace name and local name must fail.
void expectNoAttribute(const AttributesImpl& list, const std::string& uri,
                       const std::string& localName) {
  EXPECT_EQ(list.getIndex(uri, localName), -1);
  EXPECT_EQ(list.findAttribute(uri, localName), -1);
  EXPECT_EQ(thrown([&] { list.getType(uri, localName); }), kOutOfRange);
  EXPECT_EQ(thrown([&] { list.getValue(uri, localName); }), kOutOfRange);
}

/// Every look-up by qualified name must fail.
void expectNoAttribute(const AttributesImpl& list, const std::string& qName) {
  EXPECT_EQ(list.getIndex(qName), -1);
  EXPECT_EQ(list.findAttribute(qName), -1);
  EXPECT_EQ(thrown([&] { list.getType(qName); }), kOutOfRange);
  EXPECT_EQ(thrown([&] { list.getValue(qName); }), kOutOfRange);
}

TEST(AttributesImpl, IsEmptyAtFirst) {
  const AttributesImpl list;
  EXPECT_EQ(list.getLength(), 0);
  for (const int index : kNoIndexes) expectNoAttributeAt(list, index);
  for (const int index : {0, 1, std::numeric_limits<int>::max()}) expectNoAttributeAt(list, index);
  expectNoAttribute(list, "a");
  expectNoAttribute(list, "");
  expectNoAttribute(list, "urn:x", "a");
  expectNoAttribute(list, "", "");
}

TEST(AttributesImpl, GivesEveryFieldByPosition) {
  const AttributesImpl list = threeAttributes();
  EXPECT_EQ(list.getLength(), 3);
  EXPECT_EQ(show(list), kThreeAttributes);
}

TEST(AttributesImpl, RefusesPositionsOutsideTheList) {
  const AttributesImpl list = threeAttributes();
  for (const int index : kNoIndexes) expectNoAttributeAt(list, index);
  for (const int index : {3, 4, std::numeric_limits<int>::max()}) expectNoAttributeAt(list, index);
  EXPECT_EQ(list.getValue(2), "3");
}

TEST(AttributesImpl, GivesTheRecordItselfNotACopy) {
  const AttributesImpl list = threeAttributes();
  EXPECT_EQ(&list.getURI(0), &list.getURI(0));
  EXPECT_EQ(&list.getType(1), &list.getType("b"));
  EXPECT_EQ(&list.getType(1), &list.getType("", "b"));
  EXPECT_EQ(&list.getValue(2), &list.getValue("q:a"));
  EXPECT_EQ(&list.getValue(2), &list.getValue("urn:y", "a"));
}

TEST(AttributesImpl, FindsByNamespaceNameAndLocalName) {
  const AttributesImpl list = threeAttributes();
  const struct {
    const char* uri;
    const char* localName;
    int index;
    const char* type;
    const char* value;
  } cases[] = {
      {"urn:x", "a", 0, "CDATA", "1"}, {"", "b", 1, "ID", "2"}, {"urn:y", "a", 2, "NMTOKEN", "3"}};
  for (const auto& c : cases) {
    EXPECT_EQ(list.getIndex(c.uri, c.localName), c.index);
    EXPECT_EQ(list.findAttribute(c.uri, c.localName), c.index);
    EXPECT_EQ(list.getType(c.uri, c.localName), c.type);
    EXPECT_EQ(list.getValue(c.uri, c.localName), c.value);
  }
}

TEST(AttributesImpl, FindsByQualifiedName) {
  const AttributesImpl list = threeAttributes();
  const struct {
    const char* qName;
    int index;
    const char* type;
    const char* value;
  } cases[] = {{"p:a", 0, "CDATA", "1"}, {"b", 1, "ID", "2"}, {"q:a", 2, "NMTOKEN", "3"}};
  for (const auto& c : cases) {
    EXPECT_EQ(list.getIndex(c.qName), c.index);
    EXPECT_EQ(list.findAttribute(c.qName), c.index);
    EXPECT_EQ(list.getType(c.qName), c.type);
    EXPECT_EQ(list.getValue(c.qName), c.value);
  }
}

TEST(AttributesImpl, ComparesNamesOctetForOctet) {
  const AttributesImpl list = threeAttributes();
  for (const char* qName : {"", "a", "A", "p:A", "P:a", "p:a ", " p:a", "p:", "p", ":a", "p:aa"}) {
    SCOPED_TRACE(qName);
    expectNoAttribute(list, qName);
  }
  const struct {
    const char* uri;
    const char* localName;
  } cases[] = {{"", "a"},       {"urn:x", "b"}, {"urn:x", "A"},   {"URN:x", "a"}, {"urn:x ", "a"},
               {"urn:x", ""},   {"", ""},       {"a", "urn:x"},   {"urn:y", "b"}, {"urn", "a"},
               {"urn:x", "aa"}, {"", "p:a"},    {"urn:x", "p:a"}, {"p", "a"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.uri) + " " + c.localName);
    expectNoAttribute(list, c.uri, c.localName);
  }
}

TEST(AttributesImpl, FindsTheFirstOfEqualNames) {
  AttributesImpl list;
  list.addAttribute("urn:x", "other", "p:other", "CDATA", "0");
  list.addAttribute("urn:x", "a", "p:a", "ID", "1");
  list.addAttribute("urn:x", "a", "p:a", "CDATA", "2");
  list.addAttribute("urn:y", "a", "p:a", "NMTOKEN", "3");
  list.addAttribute("urn:x", "a", "q:a", "NMTOKENS", "4");
  EXPECT_EQ(list.getLength(), 5);

  EXPECT_EQ(list.getIndex("p:a"), 1);
  EXPECT_EQ(list.findAttribute("p:a"), 1);
  EXPECT_EQ(list.getType("p:a"), "ID");
  EXPECT_EQ(list.getValue("p:a"), "1");
  EXPECT_EQ(list.getIndex("urn:x", "a"), 1);
  EXPECT_EQ(list.findAttribute("urn:x", "a"), 1);
  EXPECT_EQ(list.getType("urn:x", "a"), "ID");
  EXPECT_EQ(list.getValue("urn:x", "a"), "1");
  EXPECT_EQ(list.getIndex("urn:y", "a"), 3);
  EXPECT_EQ(list.getIndex("q:a"), 4);
}

TEST(AttributesImpl, FindsEmptyNames) {
  AttributesImpl list;
  list.addAttribute("urn:x", "a", "a", "CDATA", "named");
  list.addAttribute("", "", "", "", "");
  EXPECT_EQ(list.getIndex(""), 1);
  EXPECT_EQ(list.getIndex("", ""), 1);
  EXPECT_EQ(list.getType(""), "");
  EXPECT_EQ(list.getValue("", ""), "");
  EXPECT_EQ(show(list), "[urn:x][a][a][CDATA][named]\n[][][][][]\n");
}

TEST(AttributesImpl, ComparesBeyondAnEmbeddedNul) {
  const std::string first("n\0a", 3);
  const std::string second("n\0b", 3);
  AttributesImpl list;
  list.addAttribute(first, first, first, first, first);
  list.addAttribute(second, second, second, second, second);
  EXPECT_EQ(list.getIndex(first), 0);
  EXPECT_EQ(list.getIndex(second), 1);
  EXPECT_EQ(list.getIndex(second, second), 1);
  EXPECT_EQ(list.getValue(second), second);
  EXPECT_EQ(list.getType(second, second), second);
  expectNoAttribute(list, "n");
  expectNoAttribute(list, first, second);
}

TEST(AttributesImpl, KeepsLongAndManyAttributes) {
  constexpr int kCount = 2'000;
  const std::string value(100'000, 'v');
  AttributesImpl list;
  for (int i = 0; i < kCount; ++i) {
    const std::string name = "a" + std::to_string(i);
    list.addAttribute("urn:x", name, "p:" + name, "CDATA", std::to_string(i));
  }
  list.addAttribute("", "long", "long", "CDATA", value);
  EXPECT_EQ(list.getLength(), kCount + 1);
  for (int i = 0; i < kCount; ++i) {
    ASSERT_EQ(list.getIndex("p:a" + std::to_string(i)), i);
    ASSERT_EQ(list.getValue("urn:x", "a" + std::to_string(i)), std::to_string(i));
  }
  EXPECT_EQ(list.getValue("long"), value);
  expectNoAttributeAt(list, kCount + 1);
}

TEST(AttributesImpl, IsCopiedAsAValue) {
  AttributesImpl list = threeAttributes();
  const AttributesImpl copy = list;
  list.addAttribute("", "d", "d", "CDATA", "4");
  EXPECT_EQ(show(copy), kThreeAttributes);
  EXPECT_EQ(list.getLength(), 4);
}

/// A list whose every answer is made up: attribute i has i in every field.
class MadeUpAttributes : public Attributes {
 public:
  explicit MadeUpAttributes(int length) : length_(length) {}

  int getLength() const override { return length_; }
  const std::string& getURI(int i) const override { return answer("u", i); }
  const std::string& getLocalName(int i) const override { return answer("l", i); }
  const std::string& getQName(int i) const override { return answer("q", i); }
  const std::string& getType(int i) const override { return answer("t", i); }
  const std::string& getValue(int i) const override { return answer("v", i); }
  int getIndex(const std::string&, const std::string&) const override { return byName(); }
  int getIndex(const std::string&) const override { return byName(); }
  const std::string& getType(const std::string&, const std::string&) const override {
    return answer("t", byName());
  }
  const std::string& getType(const std::string&) const override { return answer("t", byName()); }
  const std::string& getValue(const std::string&, const std::string&) const override {
    return answer("v", byName());
  }
  const std::string& getValue(const std::string&) const override { return answer("v", byName()); }

 private:
  const std::string& answer(const char* field, int i) const {
    if (i < 0 || i >= length_) ADD_FAILURE() << "asked for position " << i;
    answers_.push_back(field + std::to_string(i));
    if (answers_.size() > 1'000) ADD_FAILURE() << "asked too often";
    return answers_.back();
  }
  static int byName() {
    ADD_FAILURE() << "asked by name";
    return -1;
  }

  int length_;
  mutable std::deque<std::string> answers_;  // References into it stay valid.
};

TEST(SetAttributes, CopiesEveryFieldInOrder) {
  AttributesImpl list;
  list.setAttributes(threeAttributes());
  EXPECT_EQ(show(list), kThreeAttributes);
}

TEST(SetAttributes, ReplacesAllThatWasThere) {
  AttributesImpl list = threeAttributes();
  list.addAttribute("", "d", "d", "CDATA", "4");
  list.setAttributes(MadeUpAttributes(3));
  EXPECT_EQ(show(list), "[u0][l0][q0][t0][v0]\n[u1][l1][q1][t1][v1]\n[u2][l2][q2][t2][v2]\n");
  expectNoAttribute(list, "p:a");
  expectNoAttribute(list, "d");
  expectNoAttributeAt(list, 3);
}

TEST(SetAttributes, FromOneAttributeLeavesOne) {
  AttributesImpl list = threeAttributes();
  list.setAttributes(MadeUpAttributes(1));
  EXPECT_EQ(show(list), "[u0][l0][q0][t0][v0]\n");
}

TEST(SetAttributes, FromAListWithoutAttributesLeavesNone) {
  for (const int length : {0, -1, -3, std::numeric_limits<int>::min()}) {
    AttributesImpl list = threeAttributes();
    list.setAttributes(MadeUpAttributes(length));
    EXPECT_EQ(list.getLength(), 0) << length;
    expectNoAttributeAt(list, 0);
  }
  AttributesImpl list = threeAttributes();
  list.setAttributes(AttributesImpl());
  EXPECT_EQ(list.getLength(), 0);
}

TEST(SetAttributes, KeepsNoTieToTheOtherList) {
  AttributesImpl list;
  {
    AttributesImpl other = threeAttributes();
    list.setAttributes(other);
    other.addAttribute("", "d", "d", "CDATA", "4");
  }
  EXPECT_EQ(show(list), kThreeAttributes);
}

TEST(SetAttributes, TwiceFromTheSameListGivesTheSame) {
  const AttributesImpl other = threeAttributes();
  AttributesImpl list;
  list.setAttributes(other);
  list.setAttributes(other);
  EXPECT_EQ(show(list), kThreeAttributes);
}

// The old records go before the other list is asked for its length: here it is empty by then.
TEST(SetAttributes, FromTheListItselfLeavesNone) {
  AttributesImpl list = threeAttributes();
  list.setAttributes(list);
  EXPECT_EQ(show(list), "");
  list.setAttributes(list);
  EXPECT_EQ(show(list), "");
}

/// Answers with one string, as a cursor over the rows of a table may.
class Cursor : public AttributesImpl {
 public:
  explicit Cursor(const AttributesImpl& rows) : AttributesImpl(rows) {}

  int getLength() const override { return tell("length", AttributesImpl::getLength()); }
  const std::string& getURI(int i) const override { return tell("uri", at(i).uri); }
  const std::string& getLocalName(int i) const override { return tell("local", at(i).localName); }
  const std::string& getQName(int i) const override { return tell("q", at(i).qName); }
  const std::string& getType(int i) const override { return tell("type", at(i).type); }
  const std::string& getValue(int i) const override { return tell("value", at(i).value); }

  mutable std::string asked;

 private:
  const Attribute& at(int i) const { return attributes_.at(static_cast<std::size_t>(i)); }
  int tell(const char* what, int length) const {
    asked += std::string(what) + " ";
    return length;
  }
  const std::string& tell(const char* what, const std::string& field) const {
    asked += std::string(what) + " ";
    return answer_ = field;
  }
  mutable std::string answer_;
};

TEST(SetAttributes, CopiesOneFieldBeforeTheNextIsAskedFor) {
  const Cursor cursor(threeAttributes());
  AttributesImpl list;
  list.setAttributes(cursor);
  EXPECT_EQ(show(list), kThreeAttributes);
  EXPECT_EQ(cursor.asked,
            "length uri local q type value uri local q type value uri local q type value ");
}

TEST(Attribute, HasItsFieldsInOrder) {
  const AttributesImpl::Attribute attribute{"u", "l", "q", "t", "v"};
  EXPECT_EQ(attribute.uri, "u");
  EXPECT_EQ(attribute.localName, "l");
  EXPECT_EQ(attribute.qName, "q");
  EXPECT_EQ(attribute.type, "t");
  EXPECT_EQ(attribute.value, "v");
}

template <typename List>
std::vector<std::ptrdiff_t> slotsOf() {
  using Field = const std::string& (List::*)(int) const;
  using IndexByName = int (List::*)(const std::string&, const std::string&) const;
  using IndexByQName = int (List::*)(const std::string&) const;
  using FieldByName = const std::string& (List::*)(const std::string&, const std::string&) const;
  using FieldByQName = const std::string& (List::*)(const std::string&) const;
  return {slotOf(&List::getLength),
          slotOf(&List::getURI),
          slotOf(&List::getLocalName),
          slotOf(&List::getQName),
          slotOf(static_cast<Field>(&List::getType)),
          slotOf(static_cast<Field>(&List::getValue)),
          slotOf(static_cast<IndexByName>(&List::getIndex)),
          slotOf(static_cast<IndexByQName>(&List::getIndex)),
          slotOf(static_cast<FieldByName>(&List::getType)),
          slotOf(static_cast<FieldByQName>(&List::getType)),
          slotOf(static_cast<FieldByName>(&List::getValue)),
          slotOf(static_cast<FieldByQName>(&List::getValue))};
}

TEST(VirtualTable, OfAttributesKeepsItsOrder) {
  const std::vector<std::ptrdiff_t> order{2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13};
  EXPECT_EQ(slotsOf<Attributes>(), order);
  EXPECT_EQ(slotsOf<AttributesImpl>(), order);
}

}  // namespace
