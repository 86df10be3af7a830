#include <Tavrin/EncodingAlgorithmAttributes.h>
#include <Tavrin/Exceptions.h>

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <vector>

#include <Allocations.h>
#include "CountedData.h"
#include "Kinds.h"
#include "Thrown.h"
#include "typed/ExactNumbers.h"

// Copies of typed values, and of lists that hold some.

namespace {

using namespace Tavrin;

template <typename K>
class KeptValue : public ::testing::Test {};
TYPED_TEST_SUITE(KeptValue, AllKinds, KindNames);

TYPED_TEST(KeptValue, IsACopyOfTheSameType) {
  using Holder = typename TypeParam::Holder;
  for (const std::size_t count : {0U, 1U, 1000U}) {
    const auto value = someItems<TypeParam>(count);
    auto holder = std::make_unique<Holder>(value);
    const std::unique_ptr<EncodedData> kept = static_cast<const EncodedData&>(*holder).copy();
    const EncodedData& copy = *kept;
    ASSERT_EQ(typeid(Holder), typeid(copy));
    EXPECT_EQ(showData<TypeParam>(value), showData<TypeParam>(holder->data_));
    holder.reset();
    EXPECT_EQ(showData<TypeParam>(value),
              showData<TypeParam>(static_cast<const Holder&>(copy).data_));
  }
}

TEST(KeptUUIDs, AreACopy) {
  const UUIDData holder(std::vector<UUID>{UUID{1, 2, 3}});
  const std::unique_ptr<EncodedData> kept = holder.copy();
  EXPECT_EQ(holder.data_, dynamic_cast<const UUIDData&>(*kept).data_);
}

// The text stays exact.
TEST(KeptExactNumbers, AreExactToo) {
  ExactDoubleData doubles;
  doubles.data_ = {1.0 / 3};
  EXPECT_EQ("0.3333333333333333", doubles.copy()->toString());
  ExactFloatData floats;
  floats.data_ = {1.0F / 3};
  EXPECT_EQ("0.33333334", floats.copy()->toString());
  ExactIntData ints;
  ints.data_ = {-1};
  const std::unique_ptr<EncodedData> kept = ints.copy();
  EXPECT_NE(nullptr, dynamic_cast<const ExactIntData*>(kept.get()));
}

const char* const kNoCopy = "This typed value cannot be copied";

TEST(KeptOwnValue, IsRefusedWhereItsClassDoesNotCopy) {
  const CountedData data("own");
  EXPECT_EQ(kNoCopy, thrown<EncodingAlgorithmException>([&] { data.copy(); }));
  EXPECT_EQ("own", data.text);
}

/// A holder with an operation of its own that has the name of the base's, and one that can be
/// copied.
struct OwnName : CountedData {
  using CountedData::CountedData;
  virtual int copy() const { return 1; }
};
struct Copyable : CountedData {
  using CountedData::CountedData;

 protected:
  std::unique_ptr<EncodedData> copyEncodedData() const override {
    return std::make_unique<Copyable>(text);
  }
};

TEST(KeptOwnValue, MayCallItsOperationsAsItLikes) {
  const OwnName data("own");
  EXPECT_EQ(1, data.copy());
  EXPECT_EQ(kNoCopy, thrown<EncodingAlgorithmException>(
                         [&] { static_cast<const EncodedData&>(data).copy(); }));
}

TEST(KeptOwnValue, IsACopyWhereItsClassCopies) {
  const Copyable data("own");
  const std::unique_ptr<EncodedData> kept = static_cast<const EncodedData&>(data).copy();
  EXPECT_EQ("own", kept->toString());
  EXPECT_EQ("own", data.text);
}

struct SomeList : EncodingAlgorithmAttributesImpl {
  SomeList();
};

SomeList::SomeList() {
  EncodingAlgorithmAttributesImpl& list = *this;
  list.addAttribute("urn:a", "n", "a:n", "T", "", 3,
                    std::make_unique<IntData>(std::vector<long>{1, -2}));
  list.addAttribute("", "t", "t", "NMTOKEN", "text");
  list.addAttribute("", "e", "e", "T", "");
  list.addAttribute("", "o", "o", "T", "urn:algorithm", 33, std::make_unique<CDATAData>("own"));
}

std::string shown(const EncodingAlgorithmAttributesImpl& list) {
  std::string lines;
  for (const auto& each : list.attributes_) {
    lines += each->uri + "|" + each->localName + "|" + each->qName + "|" + each->type + "|" +
             each->value + "|" + each->algorithmURI + "|" + std::to_string(each->algorithmIndex) +
             "|" + (each->algorithmData ? EventLog::showValue(*each->algorithmData) : "") + "\n";
  }
  return lines;
}

const char* const kShown =
    "urn:a|n|a:n|T|||3|IntData{1 -2}\n"
    "|t|t|NMTOKEN|text||-1|\n"
    "|e|e|T|||-1|\n"
    "|o|o|T||urn:algorithm|33|CDATAData{own}\n";

TEST(KeptAttributes, AreACopyWithTypes) {
  auto source = std::make_unique<SomeList>();
  source->getValue(0);  // A text that was made is made again when it is asked for.
  EncodingAlgorithmAttributesImpl list;
  list.addAttribute("", "old", "old", "T", "", 40, std::make_unique<CountedData>("old"));
  list.copyAttributes(*source);
  EXPECT_EQ(0, CountedData::alive);
  EXPECT_NE(source->getAlgorithmData(0), list.getAlgorithmData(0));
  source.reset();
  EXPECT_EQ(kShown, shown(list));
  EXPECT_EQ("1 -2", list.getValue(0));
  list.copyAttributes(list);
  EXPECT_EQ(kShown, shown(list));
  list.copyAttributes(EncodingAlgorithmAttributesImpl());
  EXPECT_EQ("", shown(list));
}

TEST(KeptAttributes, AreWhatTheyWereWhereOneCannotBeCopied) {
  SomeList list;
  SomeList source;
  source.addAttribute("", "o", "o", "T", "", 40, std::make_unique<CountedData>("own"));
  EXPECT_EQ(kNoCopy, thrown<EncodingAlgorithmException>([&] { list.copyAttributes(source); }));
  EXPECT_EQ(kShown, shown(list));
  for (std::size_t number = 0;; ++number) {
    const SomeList copied;
    EncodingAlgorithmAttributesImpl target;
    bool threw = false;
    {
      const allocations::Failure failure(number);
      try {
        target.copyAttributes(copied);
      } catch (const std::bad_alloc&) {
        threw = true;
      }
      EXPECT_EQ(failure.happened(), threw);
    }
    EXPECT_EQ(threw ? "" : kShown, shown(target));
    if (!threw) break;
  }
}

}  // namespace
