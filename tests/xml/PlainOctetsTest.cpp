#include "xml/simd/PlainOctets.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "EveryPlace.h"

namespace Tavrin::xml {
namespace {

// Several words and a rest, so that every sequence meets every border.
constexpr std::size_t kLongest = 51;

TEST(PlainOctets, EndAtTheFirstOtherOctet) {
  for (const char* other : {"\x1F", "\t", "\n", "\x80", "\xFF", "\x01\x80"}) {
    atEveryPlace(other, kLongest, [](const std::string& text, std::size_t at) {
      EXPECT_EQ(plainOctets(text), at) << text.size();
    });
  }
  using namespace std::string_literals;
  atEveryPlace("\0"s, kLongest, [](const std::string& text, std::size_t at) {
    EXPECT_EQ(plainOctets(text), at) << text.size();
  });
}

TEST(PlainOctets, GoFromSpaceToDelete) {
  for (const char* plain : {" ", "~", "\x7F", "]]>"}) {
    atEveryPlace(plain, kLongest, [](const std::string& text, std::size_t) {
      EXPECT_EQ(plainOctets(text), text.size());
    });
  }
  EXPECT_EQ(plainOctets(""), 0U);
}

}  // namespace
}  // namespace Tavrin::xml
