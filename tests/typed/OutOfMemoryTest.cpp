#include <Tavrin/TypedData.h>

#include <gtest/gtest.h>

#include <new>
#include <string>

#include "FailingAllocations.h"
#include "Kinds.h"

// Where memory runs out, a text is whole or is not made.

namespace {

template <typename K>
class TextOutOfMemory : public ::testing::Test {};
TYPED_TEST_SUITE(TextOutOfMemory, AllKinds, KindNames);

TYPED_TEST(TextOutOfMemory, IsWholeOrNotMade) {
  const typename TypeParam::Holder holder(someItems<TypeParam>(5000));
  const std::string whole = holder.toString();
  for (std::size_t number = 0;; ++number) {
    ASSERT_LT(number, 1000U);
    std::string text;
    bool threw = false;
    allocations::failAt(number);
    try {
      text = holder.toString();
    } catch (const std::bad_alloc&) {
      threw = true;
    }
    const bool failed = allocations::failed();
    EXPECT_EQ(failed, threw) << number;
    EXPECT_TRUE(threw || text == whole) << number;
    if (!failed) break;
  }
}

}  // namespace
