#include <Tavrin/Exceptions.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <exception>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>

#include "WhatIsThrown.h"

namespace {

using namespace Tavrin;

// Rethrowing by value must drop the derived part, and nothing may look like a std::exception.
template <typename Exception>
constexpr bool isPlainValue =
    !std::is_polymorphic_v<Exception> && !std::has_virtual_destructor_v<Exception> &&
    !std::is_base_of_v<std::exception, Exception> && std::is_copy_constructible_v<Exception> &&
    std::is_copy_assignable_v<Exception>;

static_assert(isPlainValue<SAXException>);
static_assert(isPlainValue<SAXParseException>);
static_assert(isPlainValue<SAXNotRecognizedException>);
static_assert(isPlainValue<FastInfosetException>);
static_assert(isPlainValue<EncodingAlgorithmException>);

static_assert(std::is_base_of_v<SAXException, SAXParseException>);
static_assert(std::is_base_of_v<SAXException, SAXNotRecognizedException>);
static_assert(!std::is_base_of_v<SAXParseException, SAXNotRecognizedException>);
static_assert(std::is_base_of_v<FastInfosetException, EncodingAlgorithmException>);
static_assert(!std::is_base_of_v<SAXException, FastInfosetException>);
static_assert(!std::is_base_of_v<FastInfosetException, SAXException>);

static_assert(std::is_same_v<decltype(std::declval<const SAXParseException&>().getLineNumber()),
                             std::int32_t>);
static_assert(std::is_same_v<decltype(std::declval<const SAXParseException&>().getColumnNumber()),
                             std::int32_t>);

constexpr auto kLowest = std::numeric_limits<std::int32_t>::min();
constexpr auto kHighest = std::numeric_limits<std::int32_t>::max();

template <typename Exception>
class MessageOnly : public testing::Test {};

using MessageOnlyTypes = testing::Types<SAXException, SAXNotRecognizedException,
                                        FastInfosetException, EncodingAlgorithmException>;
TYPED_TEST_SUITE(MessageOnly, MessageOnlyTypes);

TYPED_TEST(MessageOnly, KeepsTheMessageOctetForOctet) {
  const std::string messages[] = {
      "", "m", "two\nlines", std::string("a\0b\0", 4), "\xC3\xA9\xFF", std::string(100'000, 'x')};
  for (const std::string& message : messages) {
    EXPECT_EQ(TypeParam(message).getMessage(), message);
  }
}

TYPED_TEST(MessageOnly, KeepsItsOwnCopyOfTheMessage) {
  std::string message(100, 'x');
  const TypeParam exception(message);
  message.assign(100, 'y');
  EXPECT_EQ(exception.getMessage(), std::string(100, 'x'));
}

TYPED_TEST(MessageOnly, IsCopiedAndAssignedAsAValue) {
  TypeParam first("the first message, too long for a short string");
  const TypeParam copy(first);
  first = TypeParam("second");
  EXPECT_EQ(copy.getMessage(), "the first message, too long for a short string");
  EXPECT_EQ(first.getMessage(), "second");
}

TEST(SAXParseException, KeepsMessageLineAndColumn) {
  const SAXParseException exception("mismatched tag", 12, 345);
  EXPECT_EQ(exception.getMessage(), "mismatched tag");
  EXPECT_EQ(exception.getLineNumber(), 12);
  EXPECT_EQ(exception.getColumnNumber(), 345);
}

TEST(SAXParseException, TakesEveryLineAndColumn) {
  const std::int32_t numbers[] = {kLowest, -1, 0, 1, kHighest};
  for (const std::int32_t line : numbers) {
    for (const std::int32_t column : numbers) {
      const SAXParseException exception("", line, column);
      EXPECT_EQ(exception.getMessage(), "");
      EXPECT_EQ(exception.getLineNumber(), line);
      EXPECT_EQ(exception.getColumnNumber(), column);
    }
  }
}

TEST(SAXParseException, IsCopiedAndAssignedWithItsPosition) {
  SAXParseException first("first", 1, 2);
  const SAXParseException copy(first);
  first = SAXParseException("second", 3, 4);
  EXPECT_EQ(thrown([&] { throw copy; }), "SAXParseException: first (1:2)");
  EXPECT_EQ(thrown([&] { throw first; }), "SAXParseException: second (3:4)");
}

/// Catches as SAXException and throws the caught object again by value.
template <typename Exception>
void throwAgainByValue(const Exception& exception) {
  try {
    throw exception;
  } catch (const SAXException& caught) {
    throw caught;
  }
}

TEST(ThrownAgainByValue, SAXParseExceptionIsASAXExceptionOnly) {
  EXPECT_EQ(thrown([] { throwAgainByValue(SAXParseException("no element found", 7, 8)); }),
            "SAXException: no element found");
}

TEST(ThrownAgainByValue, SAXNotRecognizedExceptionIsASAXExceptionOnly) {
  EXPECT_EQ(thrown([] { throwAgainByValue(SAXNotRecognizedException("not that")); }),
            "SAXException: not that");
}

TEST(ThrownAgainByValue, EncodingAlgorithmExceptionIsAFastInfosetExceptionOnly) {
  EXPECT_EQ(thrown([] {
              try {
                throw EncodingAlgorithmException("too short");
              } catch (const FastInfosetException& caught) {
                throw caught;
              }
            }),
            "FastInfosetException: too short");
}

TEST(ThrownAgainAsItIs, KeepsTheDerivedPart) {
  EXPECT_EQ(thrown([] {
              try {
                throw SAXParseException("syntax error", 2, 0);
              } catch (const SAXException&) {
                throw;
              }
            }),
            "SAXParseException: syntax error (2:0)");
}

/// The first of three nested handlers, from the inside out, that catches an exception.
template <typename Exception>
std::string caughtAs(const Exception& exception) {
  try {
    try {
      try {
        throw exception;
      } catch (const SAXException& e) {
        return "SAXException: " + e.getMessage();
      }
    } catch (const EncodingAlgorithmException& e) {
      return "EncodingAlgorithmException: " + e.getMessage();
    }
  } catch (const FastInfosetException& e) {
    return "FastInfosetException: " + e.getMessage();
  }
}

TEST(CatchingASAXException, CatchesWhatDerivesFromIt) {
  EXPECT_EQ(caughtAs(SAXException("a")), "SAXException: a");
  EXPECT_EQ(caughtAs(SAXParseException("b", 1, 1)), "SAXException: b");
  EXPECT_EQ(caughtAs(SAXNotRecognizedException("c")), "SAXException: c");
}

TEST(CatchingASAXException, LetsTheFastInfosetExceptionsPass) {
  EXPECT_EQ(caughtAs(FastInfosetException("d")), "FastInfosetException: d");
  EXPECT_EQ(caughtAs(EncodingAlgorithmException("e")), "EncodingAlgorithmException: e");
}

TEST(CatchingAFastInfosetException, CatchesAnEncodingAlgorithmException) {
  std::string message;
  try {
    throw EncodingAlgorithmException("bad length");
  } catch (const FastInfosetException& e) {
    message = e.getMessage();
  }
  EXPECT_EQ(message, "bad length");
}

}  // namespace
