#include "xml/ElementStack.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <deque>
#include <string>

namespace {

using namespace Tavrin;

// Namespace names that have memory of their own, have none, and are too long to be kept.
constexpr std::size_t kLengths[] = {0, 5, 15, 16, 31, 32, 33, 100, 255, 256, 257, 5000};

std::string uriOf(std::size_t depth, std::size_t round) {
  const std::size_t length = kLengths[(depth * 5 + round * 7) % std::size(kLengths)];
  return std::string(length, static_cast<char>('a' + (depth + round) % 26));
}

TEST(ElementStack, HaveTheirStringsHoweverOftenMemoryIsUsedAgain) {
  xml::ElementStack stack;
  std::deque<XMLWriter::Element> elements;
  for (std::size_t round = 0; round < 50; ++round) {
    const std::size_t depth = 1 + round % 20;
    for (std::size_t i = 0; i < depth; ++i) {
      stack.push(elements, uriOf(i, round), "local" + std::to_string(i),
                 "p:" + std::string(i, 'q'));
    }
    ASSERT_EQ(elements.size(), depth);
    for (std::size_t i = depth; i > 0; --i) {
      const XMLWriter::Element& element = elements.back();
      EXPECT_EQ(element.uri, uriOf(i - 1, round));
      EXPECT_EQ(element.localName, "local" + std::to_string(i - 1));
      EXPECT_EQ(element.qName, "p:" + std::string(i - 1, 'q'));
      EXPECT_TRUE(
          xml::ElementStack::hasLast(elements, element.uri, element.localName, element.qName));
      EXPECT_FALSE(xml::ElementStack::hasLast(elements, element.uri + "x", element.localName,
                                              element.qName));
      EXPECT_FALSE(xml::ElementStack::hasLast(elements, element.uri, "x" + element.localName,
                                              element.qName));
      EXPECT_FALSE(xml::ElementStack::hasLast(elements, element.uri, element.localName,
                                              element.qName + "x"));
      stack.pop(elements);
    }
    EXPECT_TRUE(elements.empty());
  }
}

}  // namespace
