#pragma once

#include <Tavrin/Attributes.h>
#include <Tavrin/XMLWriter.h>
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <functional>
#include <new>
#include <ostream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

#include "Allocations.h"
#include "AttributeLists.h"

/// Lets the events of a document fail at every place, and looks at what a writer does then.
namespace failures {

/// What attributes and streams throw here.
struct Failure : std::runtime_error {
  Failure() : std::runtime_error("failure") {}
};

/// Attributes that throw at one of the calls.
class FailingAttributes : public Tavrin::Attributes {
 public:
  /// Throws at the next call but so many, once.
  static void failAfter(std::size_t count) {
    left_ = count;
    fails_ = true;
  }
  static void stopFailing() { fails_ = false; }

  explicit FailingAttributes(Tavrin::AttributesImpl list) : list_(std::move(list)) {}

  int getLength() const override { return take().getLength(); }
  const std::string& getURI(int i) const override { return take().getURI(i); }
  const std::string& getLocalName(int i) const override { return take().getLocalName(i); }
  const std::string& getQName(int i) const override { return take().getQName(i); }
  const std::string& getType(int i) const override { return take().getType(i); }
  const std::string& getValue(int i) const override { return take().getValue(i); }
  int getIndex(const std::string& uri, const std::string& localName) const override {
    return take().getIndex(uri, localName);
  }
  int getIndex(const std::string& qName) const override { return take().getIndex(qName); }
  const std::string& getType(const std::string& uri, const std::string& localName) const override {
    return take().getType(uri, localName);
  }
  const std::string& getType(const std::string& qName) const override {
    return take().getType(qName);
  }
  const std::string& getValue(const std::string& uri, const std::string& localName) const override {
    return take().getValue(uri, localName);
  }
  const std::string& getValue(const std::string& qName) const override {
    return take().getValue(qName);
  }

 private:
  const Tavrin::Attributes& take() const {
    if (fails_ && left_-- == 0) {
      fails_ = false;
      throw Failure();
    }
    return list_;
  }

  static inline bool fails_ = false;
  static inline std::size_t left_ = 0;
  Tavrin::AttributesImpl list_;
};

inline FailingAttributes failing(std::initializer_list<Named> list) {
  return FailingAttributes(namedAttributes(list));
}

/// A stream that takes no memory, and throws at one of the octets.
class FailingStream : public std::ostream {
 public:
  FailingStream() : std::ostream(nullptr) {
    rdbuf(&buffer_);
    exceptions(badbit);
  }
  /// Throws behind so many octets, once.
  void failAfter(std::size_t count) { buffer_.limit = count; }
  /// What came since this was asked last.
  std::string news() {
    const std::string text(buffer_.octets.data(), buffer_.size);
    buffer_.size = 0;
    return text;
  }

 private:
  struct Buffer : std::streambuf {
    std::array<char, 1 << 14> octets{};
    std::size_t size = 0;
    std::size_t limit = ~std::size_t{0};

    int_type overflow(int_type octet) override {
      if (size == limit) {
        limit = ~std::size_t{0};
        throw Failure();
      }
      octets.at(size++) = traits_type::to_char_type(octet);
      return octet;
    }
  };

  Buffer buffer_;
};

using Event = std::function<void(Tavrin::XMLWriter&)>;

inline constexpr std::string_view kBroken =
    "The document cannot go on after a failure: the writer must be reset";

/// How a document went of which an event failed.
struct Outcome {
  bool failed = false;
  bool broke = false;
};

/// Sends events, of which one fails. Sent again, it comes as if it had not failed, or it is
/// refused like all that follow.
inline Outcome send(const std::vector<Event>& events, Tavrin::XMLWriter& writer,
                    const std::function<void()>& repair) {
  Outcome outcome;
  for (const Event& event : events) {
    try {
      try {
        event(writer);
      } catch (const std::bad_alloc&) {
        repair();
        outcome.failed = true;
        event(writer);
      } catch (const Failure&) {
        repair();
        outcome.failed = true;
        event(writer);
      }
    } catch (const Tavrin::SAXException& exception) {
      EXPECT_EQ(exception.getMessage(), kBroken);
      EXPECT_TRUE(outcome.failed);
      outcome.broke = true;
    }
  }
  return outcome;
}

/// Lets a document fail at every place, the first, the second and so on, and looks at the octets.
/// @param arm    lets what it is given fail at that place
/// @param repair lets nothing fail any more
/// @return how often it failed, and how often the document could not go on
template <typename Writer, typename Arm>
std::pair<std::size_t, std::size_t> failEverywhere(const std::vector<Event>& events,
                                                   const std::function<void(Writer&)>& prepare,
                                                   Arm arm, const std::function<void()>& repair) {
  FailingStream stream;
  std::string right;
  {
    Writer writer;
    prepare(writer);
    writer.setOutputStream(&stream);
    send(events, writer, repair);
    right = stream.news();
  }
  EXPECT_FALSE(right.empty());
  std::size_t broken = 0;
  for (std::size_t place = 0;; ++place) {
    SCOPED_TRACE("place " + std::to_string(place));
    Writer writer;
    prepare(writer);
    writer.setOutputStream(&stream);
    arm(place, stream);
    const Outcome outcome = send(events, writer, [&] {
      repair();
      stream.clear();
    });
    repair();
    const std::string octets = stream.news();
    if (!outcome.broke) {
      EXPECT_EQ(octets, right);
    } else {
      EXPECT_EQ(octets, right.substr(0, octets.size()));
      ++broken;
    }
    if (!outcome.failed) return {place, broken};
    writer.reset();
    EXPECT_FALSE(send(events, writer, repair).broke);
    EXPECT_EQ(stream.news(), right);
    if (testing::Test::HasFailure()) return {place, broken};
  }
}

/// Memory, attributes and streams, one after the other.
template <typename Writer>
void failInEveryWay(
    const std::vector<Event>& events,
    const std::function<void(Writer&)>& prepare = [](Writer&) {}) {
  {
    SCOPED_TRACE("memory");
    const auto [failed, broken] = failEverywhere<Writer>(
        events, prepare, [](std::size_t place, FailingStream&) { allocations::failAfter(place); },
        [] { allocations::stopFailing(); });
    EXPECT_GT(failed, 20U);
    EXPECT_LT(broken, failed);
  }
  {
    SCOPED_TRACE("attributes");
    const auto [failed, broken] = failEverywhere<Writer>(
        events, prepare,
        [](std::size_t place, FailingStream&) { FailingAttributes::failAfter(place); },
        [] { FailingAttributes::stopFailing(); });
    EXPECT_GT(failed, 20U);
    EXPECT_LT(broken, failed);
  }
  {
    SCOPED_TRACE("stream");
    const auto [failed, broken] = failEverywhere<Writer>(
        events, prepare, [](std::size_t place, FailingStream& stream) { stream.failAfter(place); },
        [] {});
    EXPECT_GT(failed, 100U);
    EXPECT_EQ(broken, failed);
  }
}

}  // namespace failures
