#include <Tavrin/EncodingAlgorithmAttributes.h>

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "CountedData.h"
#include "EventLog.h"
#include "HexOctets.h"
#include "Thrown.h"

namespace {

using namespace Tavrin;

constexpr char kOutOfRange[] = "vector::_M_range_check";

/// A text attribute, one of a built-in algorithm, and one of an application's.
class TypedAttributes : public ::testing::Test {
 protected:
  TypedAttributes() {
    list.addAttribute("urn:a", "x", "a:x", "CDATA", "text");
    list.addAttribute("", "n", "n", "NMTOKENS", "", 3,
                      std::make_unique<IntData>(std::vector<long>{1, -2}));
    list.addAttribute("urn:b", "y", "b:y", "ID", "urn:algorithm", 32,
                      std::make_unique<HexadecimalData>(octets("0A FF")));
  }

  EncodingAlgorithmAttributesImpl list;
};

TEST_F(TypedAttributes, AnswerByPosition) {
  ASSERT_EQ(list.getLength(), 3);
  const struct {
    std::string uri, localName, qName, type, value, algorithmURI;
    int algorithmIndex;
  } expected[] = {
      {"urn:a", "x", "a:x", "CDATA", "text", "", -1},
      {"", "n", "n", "NMTOKENS", "1 -2", "", 3},
      {"urn:b", "y", "b:y", "ID", "0AFF", "urn:algorithm", 32},
  };
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(list.getURI(i), expected[i].uri);
    EXPECT_EQ(list.getLocalName(i), expected[i].localName);
    EXPECT_EQ(list.getQName(i), expected[i].qName);
    EXPECT_EQ(list.getType(i), expected[i].type);
    EXPECT_EQ(list.getValue(i), expected[i].value);
    EXPECT_EQ(list.getAlgorithmURI(i), expected[i].algorithmURI);
    EXPECT_EQ(list.getAlgorithmIndex(i), expected[i].algorithmIndex);
  }
  EXPECT_EQ(list.getAlgorithmData(0), nullptr);
  EXPECT_EQ(EventLog::showValue(*list.getAlgorithmData(1)), "IntData{1 -2}");
  EXPECT_EQ(EventLog::showValue(*list.getAlgorithmData(2)), "HexadecimalData{0AFF}");
}

TEST_F(TypedAttributes, AnswerByNamespaceAndLocalName) {
  EXPECT_EQ(list.getIndex("urn:a", "x"), 0);
  EXPECT_EQ(list.getIndex("", "n"), 1);
  EXPECT_EQ(list.getIndex("urn:b", "y"), 2);
  EXPECT_EQ(list.findAttribute("urn:b", "y"), 2);
  EXPECT_EQ(list.getType("", "n"), "NMTOKENS");
  EXPECT_EQ(list.getValue("urn:a", "x"), "text");
  EXPECT_EQ(list.getAlgorithmURI("urn:a", "x"), "");
  EXPECT_EQ(list.getAlgorithmURI("urn:b", "y"), "urn:algorithm");
  EXPECT_EQ(list.getAlgorithmIndex("urn:a", "x"), -1);
  EXPECT_EQ(list.getAlgorithmIndex("", "n"), 3);
  EXPECT_EQ(list.getAlgorithmData("urn:a", "x"), nullptr);
  EXPECT_EQ(list.getAlgorithmData("urn:b", "y"), list.getAlgorithmData(2));
}

TEST_F(TypedAttributes, AnswerByQualifiedName) {
  EXPECT_EQ(list.getIndex("a:x"), 0);
  EXPECT_EQ(list.getIndex("n"), 1);
  EXPECT_EQ(list.getIndex("b:y"), 2);
  EXPECT_EQ(list.findAttribute("b:y"), 2);
  EXPECT_EQ(list.getType("n"), "NMTOKENS");
  EXPECT_EQ(list.getValue("a:x"), "text");
  EXPECT_EQ(list.getAlgorithmURI("a:x"), "");
  EXPECT_EQ(list.getAlgorithmURI("b:y"), "urn:algorithm");
  EXPECT_EQ(list.getAlgorithmIndex("a:x"), -1);
  EXPECT_EQ(list.getAlgorithmIndex("n"), 3);
  EXPECT_EQ(list.getAlgorithmData("a:x"), nullptr);
  EXPECT_EQ(list.getAlgorithmData("n"), list.getAlgorithmData(1));
}

TEST_F(TypedAttributes, AnswerTheSameThroughTheirInterfaces) {
  const EncodingAlgorithmAttributes& typed = list;
  const Attributes& plain = list;
  EXPECT_EQ(plain.getLength(), 3);
  EXPECT_EQ(plain.getValue(2), "0AFF");
  EXPECT_EQ(plain.getIndex("b:y"), 2);
  EXPECT_EQ(&plain.getQName(0), &list.getQName(0));
  EXPECT_EQ(typed.getAlgorithmIndex("b:y"), 32);
  EXPECT_EQ(&typed.getAlgorithmURI(2), &list.getAlgorithmURI("urn:b", "y"));
  EXPECT_EQ(dynamic_cast<const EncodingAlgorithmAttributes*>(&plain), &typed);
}

std::vector<std::string> failuresByPosition(const EncodingAlgorithmAttributes& list, int i) {
  using Failure = std::out_of_range;
  return {thrown<Failure>([&] { list.getURI(i); }),
          thrown<Failure>([&] { list.getLocalName(i); }),
          thrown<Failure>([&] { list.getQName(i); }),
          thrown<Failure>([&] { list.getType(i); }),
          thrown<Failure>([&] { list.getValue(i); }),
          thrown<Failure>([&] { list.getAlgorithmURI(i); }),
          thrown<Failure>([&] { list.getAlgorithmIndex(i); }),
          thrown<Failure>([&] { list.getAlgorithmData(i); })};
}

TEST_F(TypedAttributes, RefuseAPositionOutsideTheList) {
  using Limits = std::numeric_limits<int>;
  for (const int position : {-1, 3, 4, Limits::min(), Limits::max()}) {
    EXPECT_EQ(failuresByPosition(list, position), std::vector<std::string>(8, kOutOfRange))
        << position;
  }
  const EncodingAlgorithmAttributesImpl empty;
  for (const int position : {-1, 0, 1, Limits::min(), Limits::max()}) {
    EXPECT_EQ(failuresByPosition(empty, position), std::vector<std::string>(8, kOutOfRange))
        << position;
  }
}

std::vector<std::string> failuresByName(const EncodingAlgorithmAttributes& list,
                                        const std::string& uri, const std::string& localName) {
  using Failure = std::out_of_range;
  return {thrown<Failure>([&] { list.getType(uri, localName); }),
          thrown<Failure>([&] { list.getValue(uri, localName); }),
          thrown<Failure>([&] { list.getAlgorithmURI(uri, localName); }),
          thrown<Failure>([&] { list.getAlgorithmIndex(uri, localName); }),
          thrown<Failure>([&] { list.getAlgorithmData(uri, localName); })};
}

std::vector<std::string> failuresByName(const EncodingAlgorithmAttributes& list,
                                        const std::string& qName) {
  using Failure = std::out_of_range;
  return {thrown<Failure>([&] { list.getType(qName); }),
          thrown<Failure>([&] { list.getValue(qName); }),
          thrown<Failure>([&] { list.getAlgorithmURI(qName); }),
          thrown<Failure>([&] { list.getAlgorithmIndex(qName); }),
          thrown<Failure>([&] { list.getAlgorithmData(qName); })};
}

// Names compare octet for octet, and both parts of a pair must agree.
TEST_F(TypedAttributes, RefuseANameThatIsNotInTheList) {
  const std::vector<std::pair<std::string, std::string>> names = {
      {"", ""},  {"urn:a", "y"}, {"urn:b", "x"},  {"urn:A", "x"},
      {"", "x"}, {"urn:a", ""},  {"urn:a", "x "}, {"urn:a", std::string("x\0", 2)}};
  for (const auto& [uri, localName] : names) {
    EXPECT_EQ(list.getIndex(uri, localName), -1);
    EXPECT_EQ(list.findAttribute(uri, localName), -1);
    EXPECT_EQ(failuresByName(list, uri, localName), std::vector<std::string>(5, kOutOfRange));
  }
  for (const std::string& qName :
       {std::string(), std::string("x"), std::string("A:x"), std::string("n "),
        std::string("n\0", 2), std::string("urn:a")}) {
    EXPECT_EQ(list.getIndex(qName), -1);
    EXPECT_EQ(list.findAttribute(qName), -1);
    EXPECT_EQ(failuresByName(list, qName), std::vector<std::string>(5, kOutOfRange));
  }
}

TEST(TypedAttributesImpl, AreEmptyAtFirst) {
  const EncodingAlgorithmAttributesImpl empty;
  EXPECT_EQ(empty.getLength(), 0);
  EXPECT_EQ(empty.getIndex("", ""), -1);
  EXPECT_EQ(empty.getIndex(""), -1);
  EXPECT_EQ(failuresByName(empty, ""), std::vector<std::string>(5, kOutOfRange));
  EXPECT_EQ(failuresByName(empty, "", ""), std::vector<std::string>(5, kOutOfRange));
}

TEST(TypedAttributesImpl, AreSearchedFromTheFirst) {
  EncodingAlgorithmAttributesImpl list;
  list.addAttribute("urn:b", "x", "p:x", "T0", "zero");
  list.addAttribute("urn:a", "x", "p:x", "T1", "", 2,
                    std::make_unique<ShortData>(std::vector<short>{7}));
  list.addAttribute("urn:a", "x", "q:x", "T2", "two");
  EXPECT_EQ(list.getIndex("p:x"), 0);
  EXPECT_EQ(list.getType("p:x"), "T0");
  EXPECT_EQ(list.getValue("p:x"), "zero");
  EXPECT_EQ(list.getAlgorithmIndex("p:x"), -1);
  EXPECT_EQ(list.getIndex("urn:a", "x"), 1);
  EXPECT_EQ(list.getType("urn:a", "x"), "T1");
  EXPECT_EQ(list.getAlgorithmIndex("urn:a", "x"), 2);
  EXPECT_EQ(list.getIndex("q:x"), 2);
}

TEST(TypedAttributesImpl, TakeAnyFieldEmpty) {
  EncodingAlgorithmAttributesImpl list;
  list.addAttribute("", "", "", "", "");
  list.addAttribute("", "", "", "", "", -1, nullptr);
  ASSERT_EQ(list.getLength(), 2);
  EXPECT_EQ(list.getIndex(""), 0);
  EXPECT_EQ(list.getIndex("", ""), 0);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(list.getValue(i), "");
    EXPECT_EQ(list.getAlgorithmURI(i), "");
    EXPECT_EQ(list.getAlgorithmIndex(i), -1);
    EXPECT_EQ(list.getAlgorithmData(i), nullptr);
  }
}

TEST(TypedAttributesImpl, KeepStringsAndValuesInPlaceWhileTheyGrow) {
  EncodingAlgorithmAttributesImpl list;
  list.addAttribute("u", "l", "q", "t", "v");
  list.addAttribute("", "n", "n", "", "", 2, std::make_unique<ShortData>(std::vector<short>{7}));
  const std::string* const name = &list.getQName(0);
  const std::string* const value = &list.getValue(1);
  const EncodedData* const data = list.getAlgorithmData(1);
  for (int i = 0; i < 1000; ++i) list.addAttribute("", "a", "a", "", "");
  EXPECT_EQ(list.getLength(), 1002);
  EXPECT_EQ(&list.getQName(0), name);
  EXPECT_EQ(&list.getValue(1), value);
  EXPECT_EQ(list.getAlgorithmData(1), data);
  EXPECT_EQ(*name, "q");
  EXPECT_EQ(*value, "7");
}

/// A list of one typed attribute, and that value.
struct OneCounted {
  explicit OneCounted(const std::string& text) {
    auto owned = std::make_unique<CountedData>(text);
    data = owned.get();
    list.addAttribute("urn:a", "x", "a:x", "", "", 40, std::move(owned));
  }

  EncodingAlgorithmAttributesImpl list;
  CountedData* data;
};

TEST(TypedValue, IsTurnedIntoTextOnce) {
  OneCounted attribute("text");
  EXPECT_EQ(attribute.data->texts, 0);
  const std::string& first = attribute.list.getValue(0);
  EXPECT_EQ(first, "text");
  EXPECT_EQ(attribute.data->texts, 1);
  attribute.data->text = "changed";
  EXPECT_EQ(&attribute.list.getValue(0), &first);
  EXPECT_EQ(attribute.list.getValue(0), "text");
  EXPECT_EQ(attribute.data->texts, 1);
}

TEST(TypedValue, IsTurnedIntoTextAgainWhileTheTextIsEmpty) {
  OneCounted attribute("");
  EXPECT_EQ(attribute.list.getValue(0), "");
  EXPECT_EQ(attribute.list.getValue(0), "");
  EXPECT_EQ(attribute.data->texts, 2);
  attribute.data->text = "at last";
  EXPECT_EQ(attribute.list.getValue(0), "at last");
  EXPECT_EQ(attribute.list.getValue(0), "at last");
  EXPECT_EQ(attribute.data->texts, 3);
}

TEST(TypedValue, HasNoTextByNameUntilItWasAskedForByPosition) {
  OneCounted attribute("text");
  EXPECT_EQ(attribute.list.getValue("a:x"), "");
  EXPECT_EQ(attribute.list.getValue("urn:a", "x"), "");
  EXPECT_EQ(attribute.data->texts, 0);
  EXPECT_EQ(attribute.list.getValue(0), "text");
  EXPECT_EQ(attribute.list.getValue("a:x"), "text");
  EXPECT_EQ(attribute.list.getValue("urn:a", "x"), "text");
  EXPECT_EQ(&attribute.list.getValue("a:x"), &attribute.list.getValue(0));
  EXPECT_EQ(attribute.data->texts, 1);
}

TEST(TypedValue, IsNotTurnedIntoTextByAnythingElse) {
  OneCounted attribute("text");
  attribute.list.getLength();
  attribute.list.getURI(0);
  attribute.list.getLocalName(0);
  attribute.list.getQName(0);
  attribute.list.getType(0);
  attribute.list.getAlgorithmURI(0);
  attribute.list.getAlgorithmIndex(0);
  EXPECT_EQ(attribute.list.getAlgorithmData(0), attribute.data);
  EXPECT_EQ(attribute.list.getIndex("text"), -1);
  EXPECT_EQ(attribute.data->texts, 0);
  EXPECT_EQ(attribute.list.getValue("a:x"), "");
}

TEST(TypedValue, IsAskedAgainAfterItsTextFailed) {
  OneCounted attribute("text");
  attribute.data->beforeText = [] { throw std::runtime_error("no text"); };
  EXPECT_EQ(thrown<std::runtime_error>([&] { attribute.list.getValue(0); }), "no text");
  EXPECT_EQ(attribute.list.getValue("a:x"), "");
  attribute.data->beforeText = nullptr;
  EXPECT_EQ(attribute.list.getValue(0), "text");
  EXPECT_EQ(attribute.data->texts, 2);
}

TEST(TypedValue, IsFreedWithItsList) {
  ASSERT_EQ(CountedData::alive, 0);
  {
    EncodingAlgorithmAttributesImpl list;
    for (int i = 0; i < 10; ++i) {
      list.addAttribute("", "a", "a", "", "", 40, std::make_unique<CountedData>("text"));
    }
    EXPECT_EQ(CountedData::alive, 10);
    list.getValue(3);
    EXPECT_EQ(CountedData::alive, 10);
  }
  EXPECT_EQ(CountedData::alive, 0);
}

}  // namespace
