#include <Tavrin/TypedData.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include "EventLog.h"
#include "Kinds.h"

namespace {

using namespace Tavrin;

template <typename K>
class EveryHolder : public ::testing::Test {};
TYPED_TEST_SUITE(EveryHolder, AllKinds, KindNames);

TYPED_TEST(EveryHolder, IsEmptyWhenItIsMade) {
  const typename TypeParam::Holder holder;
  EXPECT_TRUE(holder.data_.empty());
  EXPECT_EQ(holder.toString(), "");
}

TYPED_TEST(EveryHolder, TakesItsValueWhenItIsMade) {
  const auto value = someItems<TypeParam>(9);
  const typename TypeParam::Holder holder(value);
  EXPECT_EQ(showData<TypeParam>(holder.data_), showData<TypeParam>(value));
}

TYPED_TEST(EveryHolder, IsNotMadeFromAValueUnasked) {
  using Holder = typename TypeParam::Holder;
  using Value = typename TypeParam::Value;
  EXPECT_TRUE((std::is_constructible_v<Holder, Value>));
  EXPECT_FALSE((std::is_convertible_v<Value, Holder>));
}

TYPED_TEST(EveryHolder, LetsItsValueBeSetAndChanged) {
  typename TypeParam::Holder holder;
  holder.data_ = someItems<TypeParam>(3);
  holder.data_.pop_back();
  EXPECT_EQ(showData<TypeParam>(holder.data_), showData<TypeParam>(someItems<TypeParam>(2)));
}

TYPED_TEST(EveryHolder, IsUnchangedByItsText) {
  const typename TypeParam::Holder holder(someItems<TypeParam>(5));
  const std::string text = holder.toString();
  EXPECT_EQ(holder.toString(), text);
  EXPECT_EQ(showData<TypeParam>(holder.data_), showData<TypeParam>(someItems<TypeParam>(5)));
}

TYPED_TEST(EveryHolder, GivesItsValueToAClone) {
  using Holder = typename TypeParam::Holder;
  for (const std::size_t count : {1U, 3U, 16U, 5000U}) {
    const auto value = someItems<TypeParam>(count);
    Holder holder(value);
    EncodedData& base = holder;
    const std::unique_ptr<EncodedData> clone = base.clone();
    const EncodedData& cloned = *clone;
    ASSERT_EQ(typeid(cloned), typeid(Holder));
    EXPECT_EQ(showData<TypeParam>(dynamic_cast<Holder&>(*clone).data_), showData<TypeParam>(value));
    EXPECT_TRUE(holder.data_.empty());
    EXPECT_EQ(holder.toString(), "");
  }
}

TYPED_TEST(EveryHolder, HasNothingForASecondClone) {
  using Holder = typename TypeParam::Holder;
  Holder holder(someItems<TypeParam>(3));
  const std::unique_ptr<EncodedData> first = holder.clone();
  const std::unique_ptr<EncodedData> second = holder.clone();
  const EncodedData& cloned = *second;
  ASSERT_EQ(typeid(cloned), typeid(Holder));
  EXPECT_TRUE(dynamic_cast<Holder&>(*second).data_.empty());
  EXPECT_TRUE(holder.data_.empty());
  EXPECT_EQ(showData<TypeParam>(dynamic_cast<Holder&>(*first).data_),
            showData<TypeParam>(someItems<TypeParam>(3)));
}

TYPED_TEST(EveryHolder, MayBeFilledAgainAfterAClone) {
  using Holder = typename TypeParam::Holder;
  Holder holder(someItems<TypeParam>(3));
  const std::unique_ptr<EncodedData> first = holder.clone();
  holder.data_ = someItems<TypeParam>(7);
  const std::unique_ptr<EncodedData> second = holder.clone();
  EXPECT_EQ(showData<TypeParam>(dynamic_cast<Holder&>(*first).data_),
            showData<TypeParam>(someItems<TypeParam>(3)));
  EXPECT_EQ(showData<TypeParam>(dynamic_cast<Holder&>(*second).data_),
            showData<TypeParam>(someItems<TypeParam>(7)));
}

TYPED_TEST(EveryHolder, OutlivesTheHolderThatItWasClonedFrom) {
  using Holder = typename TypeParam::Holder;
  auto holder = std::make_unique<Holder>(someItems<TypeParam>(100));
  const std::unique_ptr<EncodedData> clone = holder->clone();
  holder.reset();
  EXPECT_EQ(showData<TypeParam>(dynamic_cast<Holder&>(*clone).data_),
            showData<TypeParam>(someItems<TypeParam>(100)));
}

// Taken over, not copied: the items stay where they are in memory.
TYPED_TEST(EveryHolder, MovesItsItemsIntoAClone) {
  using Holder = typename TypeParam::Holder;
  Holder holder(someItems<TypeParam>(1000));
  if constexpr (isBoolean<TypeParam>) {
    const std::size_t capacity = (holder.data_.reserve(123456), holder.data_.capacity());
    const std::unique_ptr<EncodedData> clone = holder.clone();
    EXPECT_EQ(dynamic_cast<Holder&>(*clone).data_.capacity(), capacity);
  } else {
    const void* const items = holder.data_.data();
    const std::unique_ptr<EncodedData> clone = holder.clone();
    EXPECT_EQ(dynamic_cast<Holder&>(*clone).data_.data(), items);
  }
}

TEST(Holders, DeliverTheirValueToTheOneMatchingOperation) {
  const auto delivered = [](const EncodedData& data) {
    EventLog log;
    data.callContentHandler(log);
    return log.text();
  };
  EXPECT_EQ(delivered(HexadecimalData(octets("00 7F A0"))), "bytes(00 7F A0)\n");
  EXPECT_EQ(delivered(Base64Data(octets("4D 61 6E"))), "bytes(4D 61 6E)\n");
  EXPECT_EQ(delivered(CDATAData("<a>")), "bytes(3C 61 3E)\n");
  EXPECT_EQ(delivered(ShortData({-1, 0, 32767})), "shorts(-1 0 32767)\n");
  EXPECT_EQ(delivered(IntData({1, -2})), "ints(1 -2)\n");
  EXPECT_EQ(delivered(IntData({4294967301})), "ints(4294967301)\n");
  EXPECT_EQ(delivered(LongData({1, -2})), "longs(1 -2)\n");
  EXPECT_EQ(delivered(BooleanData({true, false})), "booleans(1 0)\n");
  EXPECT_EQ(delivered(FloatData({1.5F, -2.25F})), "floats(1.5 -2.25)\n");
  EXPECT_EQ(delivered(DoubleData({1.5, -2.25})), "doubles(1.5 -2.25)\n");

  EXPECT_EQ(delivered(HexadecimalData()), "bytes()\n");
  EXPECT_EQ(delivered(Base64Data()), "bytes()\n");
  EXPECT_EQ(delivered(CDATAData()), "bytes()\n");
  EXPECT_EQ(delivered(ShortData()), "shorts()\n");
  EXPECT_EQ(delivered(IntData()), "ints()\n");
  EXPECT_EQ(delivered(LongData()), "longs()\n");
  EXPECT_EQ(delivered(BooleanData()), "booleans()\n");
  EXPECT_EQ(delivered(FloatData()), "floats()\n");
  EXPECT_EQ(delivered(DoubleData()), "doubles()\n");
}

/// Notes where the value lies that it is given.
class AddressHandler : public PrimitiveTypeContentHandler {
 public:
  const void* address = nullptr;

  void bytes(const std::string& data) override { address = &data; }
  void shorts(const std::vector<short>& data) override { address = &data; }
  void ints(const std::vector<long>& data) override { address = &data; }
  void longs(const std::vector<long>& data) override { address = &data; }
  void booleans(const std::vector<bool>& data) override { address = &data; }
  void floats(const std::vector<float>& data) override { address = &data; }
  void doubles(const std::vector<double>& data) override { address = &data; }
};

TYPED_TEST(EveryHolder, DeliversItsValueWithoutACopy) {
  const typename TypeParam::Holder holder(someItems<TypeParam>(2));
  AddressHandler handler;
  holder.callContentHandler(handler);
  EXPECT_EQ(handler.address, &holder.data_);
}

TYPED_TEST(EveryHolder, PassesOnWhatTheHandlerThrows) {
  const typename TypeParam::Holder holder(someItems<TypeParam>(2));
  EventLog log;
  log.beforeEvent = [](std::size_t) { throw SAXException("stop"); };
  EXPECT_THROW(holder.callContentHandler(log), SAXException);
  EXPECT_EQ(showData<TypeParam>(holder.data_), showData<TypeParam>(someItems<TypeParam>(2)));
}

/// A value of an application that knows no handler operation.
class OwnData : public EncodedData {
 public:
  std::string toString() const override { return "own"; }
  std::unique_ptr<EncodedData> clone() override { return std::make_unique<OwnData>(); }
};

class OwnTextData : public EncodedDataTemplate<std::string> {
 public:
  using EncodedDataTemplate::EncodedDataTemplate;
  std::string toString() const override { return data_; }
  std::unique_ptr<EncodedData> clone() override {
    return std::make_unique<OwnTextData>(std::exchange(data_, {}));
  }
};

TEST(EncodedData, DeliversNothingUnlessItIsOverridden) {
  EventLog log;
  const OwnData own;
  own.callContentHandler(log);
  const OwnTextData text("text");
  text.callContentHandler(log);
  EXPECT_EQ(log.text(), "");
  EXPECT_EQ(text.data_, "text");
}

TEST(EncodedData, IsAbstractAndHoldsNothing) {
  EXPECT_TRUE(std::is_abstract_v<EncodedData>);
  EXPECT_TRUE(std::is_abstract_v<EncodedDataTemplate<std::string>>);
  EXPECT_EQ(sizeof(EncodedData), sizeof(void*));
}

TEST(EncodedData, FreesAHolderThroughTheBase) {
  static int alive;
  struct Counted : OwnData {
    Counted() { ++alive; }
    ~Counted() override { --alive; }
  };
  alive = 0;
  std::unique_ptr<EncodedData> data = std::make_unique<Counted>();
  EXPECT_EQ(alive, 1);
  data.reset();
  EXPECT_EQ(alive, 0);
}

TEST(PrimitiveTypeContentHandler, AcceptsEverythingWhenNothingIsOverridden) {
  class : public PrimitiveTypeContentHandler {
  } handler;
  for (const std::size_t count : {0U, 1U, 100U}) {
    EXPECT_NO_THROW(handler.bytes(someItems<CDATAKind>(count)));
    EXPECT_NO_THROW(handler.shorts(someItems<ShortKind>(count)));
    EXPECT_NO_THROW(handler.ints(someItems<IntKind>(count)));
    EXPECT_NO_THROW(handler.longs(someItems<LongKind>(count)));
    EXPECT_NO_THROW(handler.booleans(someItems<BooleanKind>(count)));
    EXPECT_NO_THROW(handler.floats(someItems<FloatKind>(count)));
    EXPECT_NO_THROW(handler.doubles(someItems<DoubleKind>(count)));
  }
  EXPECT_EQ(sizeof(PrimitiveTypeContentHandler), sizeof(void*));
}

TEST(EncodingAlgorithmContentHandler, AcceptsEverythingWhenNothingIsOverridden) {
  class : public EncodingAlgorithmContentHandler {
  } handler;
  const OwnData own;
  for (const int index : {-1, 0, 32, 255, 256}) {
    EXPECT_NO_THROW(handler.octets("urn:algorithm", index, "data"));
    EXPECT_NO_THROW(handler.octets("", index, ""));
    EXPECT_NO_THROW(handler.object("urn:algorithm", index, own));
    EXPECT_NO_THROW(handler.object("", index, ShortData()));
  }
  EXPECT_EQ(sizeof(EncodingAlgorithmContentHandler), sizeof(void*));
}

// Ints and longs have the same element type, octets and CDATA text the same operation.
TEST(Holders, HaveTheElementTypesThatHandlersExpect) {
  EXPECT_TRUE((std::is_base_of_v<EncodedDataTemplate<std::string>, HexadecimalData>));
  EXPECT_TRUE((std::is_base_of_v<EncodedDataTemplate<std::string>, Base64Data>));
  EXPECT_TRUE((std::is_base_of_v<EncodedDataTemplate<std::string>, CDATAData>));
  EXPECT_TRUE((std::is_base_of_v<EncodedDataTemplate<std::vector<short>>, ShortData>));
  EXPECT_TRUE((std::is_base_of_v<EncodedDataTemplate<std::vector<long>>, IntData>));
  EXPECT_TRUE((std::is_base_of_v<EncodedDataTemplate<std::vector<long>>, LongData>));
  EXPECT_TRUE((std::is_base_of_v<EncodedDataTemplate<std::vector<bool>>, BooleanData>));
  EXPECT_TRUE((std::is_base_of_v<EncodedDataTemplate<std::vector<float>>, FloatData>));
  EXPECT_TRUE((std::is_base_of_v<EncodedDataTemplate<std::vector<double>>, DoubleData>));
  EXPECT_EQ(sizeof(long), 8U);
  EXPECT_EQ(sizeof(short), 2U);
}

}  // namespace
