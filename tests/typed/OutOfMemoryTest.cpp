#include <Allocations.h>
#include <Tavrin/TypedData.h>
#include <gtest/gtest.h>

#include <new>
#include <string>

#include "Kinds.h"

// Where memory runs out, a text is whole or is not made.

namespace {

template <typename K>
class TextOutOfMemory : public ::testing::Test {};
TYPED_TEST_SUITE(TextOutOfMemory, AllKinds, KindNames);

TYPED_TEST(TextOutOfMemory, IsWholeOrNotMade) {
  if (!allocations::areCounted()) GTEST_SKIP() << "allocations cannot fail here";
  const typename TypeParam::Holder holder(someItems<TypeParam>(5000));
  const std::string whole = holder.toString();
  for (std::size_t number = 0;; ++number) {
    ASSERT_LT(number, 1000U);
    std::string text;
    bool threw = false;
    bool failed = false;
    {
      const allocations::Failure failure(number);
      try {
        text = holder.toString();
      } catch (const std::bad_alloc&) {
        threw = true;
      }
      failed = failure.happened();
    }
    EXPECT_EQ(failed, threw) << number;
    EXPECT_TRUE(threw || text == whole) << number;
    if (!failed) break;
  }
}

}  // namespace
