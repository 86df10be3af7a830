#include "xml/UniqueAttributes.h"

#include <gtest/gtest.h>

namespace Tavrin::xml {
namespace {

TEST(UniqueAttributes, AreNumberedByBothParts) {
  UniqueAttributes attributes;
  const std::size_t first = attributes.number("urn:a", "b");
  EXPECT_NE(first, UniqueAttributes::kUnknown);
  EXPECT_EQ(attributes.number("urn:a", "b"), first);
  EXPECT_NE(attributes.number("", "b"), first);
  EXPECT_NE(attributes.number("urn:a", "c"), first);
  EXPECT_NE(attributes.number("urn:", "ab"), first);
  EXPECT_EQ(attributes.size(), 4U);
}

TEST(UniqueAttributes, AreFirstOncePerTag) {
  UniqueAttributes attributes;
  const std::size_t a = attributes.number("", "a");
  const std::size_t b = attributes.number("", "b");
  for (int tag = 0; tag < 3; ++tag) {
    attributes.beginTag();
    EXPECT_TRUE(attributes.take(a));
    EXPECT_TRUE(attributes.take(b));
    EXPECT_FALSE(attributes.take(a));
    EXPECT_FALSE(attributes.take(b));
    EXPECT_FALSE(attributes.take(b));
  }
}

TEST(UniqueAttributes, MayBeManyInATag) {
  UniqueAttributes attributes;
  attributes.beginTag();
  for (int i = 0; i < 10000; ++i) {
    EXPECT_TRUE(attributes.take(attributes.number("urn:a", std::to_string(i))));
  }
  for (int i = 0; i < 10000; ++i) {
    EXPECT_FALSE(attributes.take(attributes.number("urn:a", std::to_string(i))));
  }
  EXPECT_EQ(attributes.size(), 10000U);
}

TEST(UniqueAttributes, AreForgotten) {
  UniqueAttributes attributes;
  for (const std::size_t names : {3U, 1000U, 0U, 2U}) {
    for (std::size_t i = 0; i < names; ++i) {
      EXPECT_TRUE(attributes.take(attributes.number("urn:a", std::to_string(i))));
    }
    EXPECT_EQ(attributes.size(), names);
    attributes.clear();
    EXPECT_EQ(attributes.size(), 0U);
    EXPECT_EQ(attributes.octets(), 0U);
  }
}

}  // namespace
}  // namespace Tavrin::xml
