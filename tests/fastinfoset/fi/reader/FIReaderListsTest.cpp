#include <gtest/gtest.h>

#include <memory>
#include <typeinfo>
#include <vector>

#include <Allocations.h>
#include "FIReaderValues.h"

// The list of attributes as a program finds it: its class, its records, and how long they live.

namespace reader_test {
namespace {

using List = Tavrin::EncodingAlgorithmAttributesImpl;

static_assert(sizeof(List) == sizeof(void*) + sizeof(std::vector<void*>));

constexpr std::size_t kMebibyte = 1024 * 1024;

/// A value of which there may be so many at a time.
class Counted : public Tavrin::EncodedData {
 public:
  Counted() { ++alive; }
  ~Counted() override { --alive; }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

  std::string toString() const override { return "counted"; }
  std::unique_ptr<EncodedData> clone() override { return std::make_unique<Counted>(); }

  inline static int alive = 0;
};

class CountedAlgorithm : public Tavrin::EncodingAlgorithm {
 public:
  Tavrin::EncodedData& decodeFromInputStream(std::uint32_t length, std::istream& stream) override {
    stream.ignore(length);
    return holder_;
  }
  void encodeToOutputStream(bool, const Tavrin::EncodedData&, std::ostream&) override {}

 private:
  Counted holder_;
};

/// Calls an action at each event that has one.
struct Watcher : Tavrin::ContentHandler {
  std::function<void(const Tavrin::Attributes&)> atStart;
  std::function<void()> atCharacters;
  std::function<void()> atEnd;

  void startElement(const std::string&, const std::string&, const std::string&,
                    const Tavrin::Attributes& attributes) override {
    if (atStart) atStart(attributes);
  }
  void characters(const std::string&) override {
    if (atCharacters) atCharacters();
  }
  void endElement(const std::string&, const std::string&, const std::string&) override {
    if (atEnd) atEnd();
  }
};

class FIReaderList : public ::testing::Test {
 protected:
  FIReaderList() {
    reader.setContentHandler(&watcher);
    reader.setProperty(Tavrin::properties::registeredEncodingAlgorithms, &map);
  }

  std::string parse(const std::string& octets) {
    std::istringstream stream(octets);
    return outcomeOf([&] { reader.parse(stream); });
  }
  std::string parseTyped(const std::string& written) {
    return parse(fromComponents("20 04 00 01 00 'u' " + written));
  }

  CountedAlgorithm algorithm;  // With a value of its own.
  Tavrin::EncodingAlgorithmMap map = {{"u", &algorithm}};
  Watcher watcher;
  Tavrin::XMLReader_FI reader;
};

TEST_F(FIReaderList, IsTheOneOfThePublicHeader) {
  int elements = 0;
  watcher.atStart = [&](const Tavrin::Attributes& attributes) {
    ++elements;
    EXPECT_EQ(typeid(List), typeid(attributes));
    const auto& records = static_cast<const List&>(attributes).attributes_;
    ASSERT_EQ(2U, records.size());
    const auto& [uri, localName, qName, type, value, algorithmURI, algorithmIndex, algorithmData] =
        *records[0];
    EXPECT_EQ("u|b|p:b|CDATA|x||-1", uri + "|" + localName + "|" + qName + "|" + type + "|" +
                                         value + "|" + algorithmURI + "|" +
                                         std::to_string(algorithmIndex));
    EXPECT_EQ(nullptr, algorithmData);
    const List::Attribute& typed = *records[1];
    EXPECT_EQ("||c|CDATA||u|32", typed.uri + "||" + typed.qName + "|" + typed.type + "|" +
                                     typed.value + "|" + typed.algorithmURI + "|" +
                                     std::to_string(typed.algorithmIndex));
    EXPECT_EQ("counted", typed.algorithmData->toString());
  };
  EXPECT_EQ("done", parseTyped("78 CF 00 'p' 00 'u' F0 3C 00 'a' 7B 01 01 00 'b' 00 'x' "
                               "78 00 'c' 32 00 'y' FF F0"));
  EXPECT_EQ(1, elements);
}

TEST_F(FIReaderList, LivesNoLongerThanItsStartTag) {
  std::vector<int> alive;
  watcher.atStart = [&](const Tavrin::Attributes&) { alive.push_back(Counted::alive); };
  watcher.atCharacters = [&] { alive.push_back(Counted::alive); };
  watcher.atEnd = [&] { alive.push_back(Counted::alive); };
  // Two values; text; an element without attributes; one value and no content.
  EXPECT_EQ("done", parseTyped("7C 00 'a' 78 00 'b' 32 00 'y' 00 32 00 'y' F0 80 'x' 3C 00 'c' F0 "
                               "40 00 32 00 'y' FF FF"));
  EXPECT_EQ((std::vector<int>{3, 1, 1, 1, 2, 1, 1}), alive);
  EXPECT_EQ(1, Counted::alive);
}

TEST_F(FIReaderList, DoesNotOutliveAFailure) {
  // In the list, behind it, and in the handler.
  for (const char* written :
       {"7C 00 'a' 78 00 'b' 32 00 'y' 80", "7C 00 'a' 78 00 'b' 32 00 'y' F0 CC",
        "7C 00 'a' 78 00 'b' 32 00 'y'", "7C 00 'a' 78 00 'b' 32 00 'y' F0"}) {
    EXPECT_NE("done", parseTyped(written));
    EXPECT_EQ(1, Counted::alive) << written;
  }
  watcher.atStart = [&](const Tavrin::Attributes&) { throw std::runtime_error("enough"); };
  EXPECT_EQ("std::exception: enough", parseTyped("7C 00 'a' 78 00 'b' 32 00 'y' FF F0"));
  EXPECT_EQ(1, Counted::alive);
}

// Whatever a handler makes of a record, the next start tag has its own.
TEST_F(FIReaderList, HasNothingOfTheListBefore) {
  std::string seen;
  watcher.atStart = [&](const Tavrin::Attributes& attributes) {
    for (const auto& record : static_cast<const List&>(attributes).attributes_) {
      seen += record->uri + "|" + record->localName + "|" + record->qName + "|" + record->type +
              "|" + record->value + "|" + record->algorithmURI + "|" +
              std::to_string(record->algorithmIndex) + (record->algorithmData ? "|typed\n" : "\n");
      *record = {"u", "l", "q", "t", "v", "a", 7, std::make_unique<Counted>()};
    }
    EXPECT_EQ(2, attributes.getLength());
  };
  EXPECT_EQ("done", parseTyped("7C 00 'a' 78 00 'b' 32 00 'y' 78 00 'c' 40 'x' F0 "
                               "40 00 40 'z' 01 32 00 'y' FF FF"));
  EXPECT_EQ(
      "|b|b|CDATA||u|32|typed\n|c|c|CDATA|x||-1\n"
      "|b|b|CDATA|z||-1\n|c|c|CDATA||u|32|typed\n",
      seen);
  EXPECT_EQ(1, Counted::alive);
}

/// Tells when it ends.
class Numbered : public Tavrin::EncodedData {
 public:
  explicit Numbered(int number) : number_(number) {}
  ~Numbered() override { ended.push_back(number_); }
  Numbered(const Numbered&) = delete;
  Numbered& operator=(const Numbered&) = delete;

  std::string toString() const override { return "numbered"; }
  std::unique_ptr<EncodedData> clone() override { return std::make_unique<Numbered>(++cloned_); }

  inline static std::vector<int> ended;

 private:
  int number_;
  int cloned_ = 0;
};

class NumberingAlgorithm : public Tavrin::EncodingAlgorithm {
 public:
  Tavrin::EncodedData& decodeFromInputStream(std::uint32_t length, std::istream& stream) override {
    stream.ignore(length);
    return holder_;
  }
  void encodeToOutputStream(bool, const Tavrin::EncodedData&, std::ostream&) override {}

 private:
  Numbered holder_{0};
};

TEST_F(FIReaderList, EndsItsValuesFromTheFirstOn) {
  for (const int count : {1, 3, 16, 17, 40}) {
    NumberingAlgorithm numbering;
    map = {{"u", &numbering}};
    std::string written = "7C 00 'a' 78 00 'b' 32 00 'y'";
    std::vector<int> expected = {1};
    for (int i = 2; i <= count; ++i) {
      written += " 00 32 00 'y'";
      expected.push_back(i);
    }
    Numbered::ended.clear();
    EXPECT_EQ("done", parseTyped(written + " FF F0"));
    EXPECT_EQ(expected, Numbered::ended);
  }
}

TEST_F(FIReaderList, TakesItsMemoryAlong) {
  if (!allocations::areCounted()) GTEST_SKIP() << "valgrind has functions of its own in place";
  std::size_t atStart = 0;
  std::size_t atCharacters = 0;
  watcher.atStart = [&](const Tavrin::Attributes&) { atStart = allocations::inUse(); };
  watcher.atCharacters = [&] { atCharacters = allocations::inUse(); };
  const std::string value(kMebibyte, 'v');
  EXPECT_EQ("done", parse(document("7C 00 'a' 78 00 'b' 0C") + bigEndian(value.size() - 265, 4) +
                          value + octets("F0 80 'x' FF")));
  EXPECT_GE(atStart, atCharacters + kMebibyte);
}

TEST_F(FIReaderList, GivesItsMemoryBackWhenItBecomesACopyOfAnEmptyOne) {
  if (!allocations::areCounted()) GTEST_SKIP() << "valgrind has functions of its own in place";
  List list;
  list.addAttribute("", "a", "a", "CDATA", std::string(kMebibyte, 'v'));
  list.addAttribute("", "b", "b", "CDATA", "u", 32, std::make_unique<Counted>());
  const std::size_t before = allocations::inUse();
  list.setAttributes(Tavrin::AttributesImpl());
  EXPECT_LE(allocations::inUse() + kMebibyte, before);
  EXPECT_EQ(1, Counted::alive);
  EXPECT_TRUE(list.attributes_.empty());
}

}  // namespace
}  // namespace reader_test
