#include <Tavrin/EncodingAlgorithms.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <ios>
#include <istream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <vector>

#include "Kinds.h"
#include "LoggingFlush.h"

// All but strings read each octet with the stream's single-octet get. Whatever the stream is, a
// program sees the same as if it called get itself.

namespace {

using namespace Tavrin;

using KindsOfSingleOctets =
    ::testing::Types<ShortKind, IntKind, LongKind, BooleanKind, FloatKind, DoubleKind>;

constexpr std::size_t kNever = std::string::npos;

/// What a stream is like.
struct Source {
  std::string octets;
  std::size_t area = 0;          ///< The size of the get area; 0 for none.
  std::size_t throwAt = kNever;  ///< The octet at which the buffer throws, once.
  bool isTied = false;
  std::ios::iostate exceptions = std::ios::goodbit;
  std::ios::iostate state = std::ios::goodbit;  ///< That it has already.
};

/// Logs each virtual call.
class LoggingSource : public std::streambuf {
 public:
  LoggingSource(const Source& source, std::string& log) : source_(source), log_(log) {}

  /// The octets that nobody took.
  std::size_t left() const { return source_.octets.size() - (next_ - (egptr() - gptr())); }

 protected:
  int_type underflow() override {
    log_ += "underflow\n";
    if (isAtEnd()) return traits_type::eof();
    if (source_.area == 0) return traits_type::to_int_type(source_.octets[next_]);
    const std::size_t end = std::min(next_ + source_.area, source_.octets.size());
    // Not beyond the octet at which this throws.
    const std::size_t shown = next_ < source_.throwAt ? std::min(end, source_.throwAt) : end;
    char* const first = source_.octets.data();
    setg(first + next_, first + next_, first + shown);
    next_ = shown;
    return traits_type::to_int_type(*gptr());
  }
  int_type uflow() override {
    log_ += "uflow\n";
    if (source_.area != 0) return std::streambuf::uflow();
    return isAtEnd() ? traits_type::eof() : traits_type::to_int_type(source_.octets[next_++]);
  }
  std::streamsize xsgetn(char* octets, std::streamsize count) override {
    log_ += "xsgetn(" + std::to_string(count) + ")\n";
    return std::streambuf::xsgetn(octets, count);
  }
  std::streamsize showmanyc() override {
    log_ += "showmanyc\n";
    return 0;
  }

 private:
  bool isAtEnd() {
    if (next_ == source_.throwAt) {
      source_.throwAt = kNever;
      throw std::runtime_error("broken");
    }
    return next_ == source_.octets.size();
  }

  Source source_;
  std::string& log_;
  std::size_t next_ = 0;
};

/// So many items the holder has of the value before.
constexpr std::size_t kItemsBefore = 3;

/// Everything that a program sees of a decode.
template <typename K>
std::string trace(const Source& source,
                  const std::function<void(std::istream&, typename K::Value&)>& decode) {
  std::string log;
  LoggingSource buffer(source, log);
  std::istream in(&buffer);
  LoggingFlush flushed(log);
  std::ostream tied(&flushed);
  if (source.isTied) in.tie(&tied);
  if (source.state != std::ios::goodbit) in.setstate(source.state);
  in.exceptions(source.exceptions);
  typename K::Value items = someItems<K>(kItemsBefore);
  try {
    decode(in, items);
  } catch (const std::ios_base::failure&) {
    log += "failure\n";
  } catch (const std::exception& exception) {
    log += std::string("exception ") + exception.what() + '\n';
  }
  log += "state " + std::to_string(in.rdstate()) + ", count " + std::to_string(in.gcount()) +
         ", left " + std::to_string(buffer.left()) + '\n' + std::to_string(items.size()) +
         " items: " + showData<K>(items);
  return log;
}

/// An octet; 0xFF stands in the place of one that is missing.
unsigned octetOf(std::istream& in) { return static_cast<unsigned>(in.get()) & 0xFF; }

/// How the algorithm would read, if it were to be understood at a glance.
template <typename K>
void readPlainly(std::uint32_t length, std::istream& in, typename K::Value& items) {
  if constexpr (isBoolean<K>) {
    unsigned octet = octetOf(in);
    items.clear();
    const std::uint32_t count = 8 * length - 4 - (octet >> 4);
    unsigned mask = 0x08;
    while (items.size() < count) {
      if (mask == 0) {
        octet = octetOf(in);
        mask = 0x80;
      }
      items.push_back((octet & mask) != 0);
      mask >>= 1;
    }
  } else {
    items.clear();
    for (std::uint32_t i = 0; i < length / K::itemOctets; ++i) {
      std::uint64_t bits = 0;
      for (std::size_t k = 0; k < K::itemOctets; ++k) bits = bits << 8 | octetOf(in);
      if constexpr (std::is_same_v<K, FloatKind>) {
        items.push_back(std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
      } else if constexpr (std::is_same_v<K, DoubleKind>) {
        items.push_back(std::bit_cast<double>(bits));
      } else if constexpr (std::is_same_v<K, IntKind>) {
        items.push_back(static_cast<std::int32_t>(bits));
      } else {
        items.push_back(static_cast<typename K::Value::value_type>(bits));
      }
    }
  }
}

/// Takes the items of a value when its scope is left, also by an exception.
template <typename K>
struct Take {
  typename K::Holder& holder;
  typename K::Value& items;
  ~Take() { items.swap(holder.data_); }
};

/// Expects of the algorithm what a program can see of the plain reading.
template <typename K>
void expectPlain(const Source& source, std::uint32_t length) {
  SCOPED_TRACE("area " + std::to_string(source.area) + ", octets " +
               std::to_string(source.octets.size()) + " of " + std::to_string(length) +
               ", throws at " + std::to_string(source.throwAt) + ", exceptions " +
               std::to_string(source.exceptions));
  const std::string plain =
      trace<K>(source, [&](std::istream& in, auto& items) { readPlainly<K>(length, in, items); });
  typename K::Algorithm algorithm;
  const std::string before = dataOctets<K>(someItems<K>(kItemsBefore));
  std::istringstream other(before);
  auto& holder = holderOf<K>(algorithm, static_cast<std::uint32_t>(before.size()), other);
  EXPECT_EQ(plain, trace<K>(source, [&](std::istream& in, auto& items) {
              const Take<K> take{holder, items};
              algorithm.decodeFromInputStream(length, in);
            }));
}

constexpr std::size_t kAreas[] = {0, 1, 3, 8, 4096};
constexpr std::ios::iostate kAll = std::ios::badbit | std::ios::eofbit | std::ios::failbit;

template <typename K>
std::string dataOf(std::size_t count) {
  return dataOctets<K>(someItems<K>(count));
}

template <typename K>
class SingleOctetsRead : public ::testing::Test {};
TYPED_TEST_SUITE(SingleOctetsRead, KindsOfSingleOctets, KindNames);

TYPED_TEST(SingleOctetsRead, AreCountedOneByOne) {
  const std::string data = dataOf<TypeParam>(5);
  const auto length = static_cast<std::uint32_t>(data.size());
  typename TypeParam::Algorithm algorithm;
  std::istringstream in(data + "behind");
  algorithm.decodeFromInputStream(length, in);
  EXPECT_EQ(1, in.gcount());
  std::istringstream cut(data.substr(0, data.size() - 1));
  algorithm.decodeFromInputStream(length, cut);
  EXPECT_EQ(0, cut.gcount());
}

TYPED_TEST(SingleOctetsRead, ComeFromTheGetAreaOrByUflow) {
  typename TypeParam::Algorithm algorithm;
  // Two octets have eight booleans and four unused bits.
  const std::string data =
      isBoolean<TypeParam> ? octets("4A 50") : octets("01 02 03 04 05 06 07 08");
  const auto length = static_cast<std::uint32_t>(data.size());
  const auto logOf = [&](std::size_t area, bool isTied) {
    std::string log;
    LoggingSource buffer({.octets = data + "behind", .area = area}, log);
    LoggingFlush flushed(log);
    std::ostream tied(&flushed);
    std::istream in(&buffer);
    if (isTied) in.tie(&tied);
    algorithm.decodeFromInputStream(length, in);
    EXPECT_EQ(6U, buffer.left());
    return log;
  };
  const auto times = [](std::size_t count, const std::string& text) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) all += text;
    return all;
  };
  EXPECT_EQ(times(length, "uflow\n"), logOf(0, false));
  EXPECT_EQ(times(length, "flush\nuflow\n"), logOf(0, true));
  EXPECT_EQ(times((length + 2) / 3, "uflow\nunderflow\n"), logOf(3, false));
  EXPECT_EQ("uflow\nunderflow\n", logOf(100, false));
  EXPECT_EQ("flush\nuflow\nunderflow\n" + times(length - 1, "flush\n"), logOf(100, true));
}

TYPED_TEST(SingleOctetsRead, ShowAsPlainGetsDo) {
  for (const std::size_t count : {1U, 2U, 3U, 4U, 5U, 13U, 300U}) {
    const std::string data = dataOf<TypeParam>(count);
    const auto length = static_cast<std::uint32_t>(data.size());
    for (const std::size_t area : kAreas) {
      for (const bool isTied : {false, true}) {
        expectPlain<TypeParam>({.octets = data + "behind", .area = area, .isTied = isTied}, length);
        expectPlain<TypeParam>({.octets = data, .area = area, .isTied = isTied, .exceptions = kAll},
                               length);
      }
    }
  }
}

TYPED_TEST(SingleOctetsRead, ShowAsPlainGetsDoWhereTheyAreMissing) {
  const std::string data = dataOf<TypeParam>(isBoolean<TypeParam> ? 100 : 3);
  const auto length = static_cast<std::uint32_t>(data.size());
  for (std::size_t present = 0; present < data.size(); ++present) {
    for (const std::size_t area : kAreas) {
      for (const bool isTied : {false, true}) {
        for (const std::ios::iostate exceptions :
             {std::ios::goodbit, std::ios::badbit, std::ios::eofbit, std::ios::failbit, kAll}) {
          expectPlain<TypeParam>({.octets = data.substr(0, present),
                                  .area = area,
                                  .isTied = isTied,
                                  .exceptions = exceptions},
                                 length);
        }
      }
    }
  }
}

TYPED_TEST(SingleOctetsRead, ShowAsPlainGetsDoWhereTheBufferThrows) {
  const std::string data = dataOf<TypeParam>(isBoolean<TypeParam> ? 100 : 3);
  const auto length = static_cast<std::uint32_t>(data.size());
  for (std::size_t at = 0; at < data.size(); ++at) {
    for (const std::size_t area : kAreas) {
      for (const std::ios::iostate exceptions :
           {std::ios::goodbit, std::ios::badbit, std::ios::failbit, kAll}) {
        expectPlain<TypeParam>(
            {.octets = data, .area = area, .throwAt = at, .exceptions = exceptions}, length);
      }
    }
  }
}

TYPED_TEST(SingleOctetsRead, ShowAsPlainGetsDoOfAStreamThatIsNotGood) {
  const std::string data = dataOf<TypeParam>(3);
  for (const std::ios::iostate state : {std::ios::badbit, std::ios::eofbit, std::ios::failbit}) {
    for (const bool isTied : {false, true}) {
      // A count of booleans that is below zero is refused rather than taken for a huge one.
      expectPlain<TypeParam>({.octets = data, .area = 3, .isTied = isTied, .state = state},
                             isBoolean<TypeParam> ? 16 : static_cast<std::uint32_t>(data.size()));
    }
  }
}

TYPED_TEST(SingleOctetsRead, AreNotReadAtAllForNothing) {
  if constexpr (!isBoolean<TypeParam>) {
    expectPlain<TypeParam>({.octets = "abc"}, 0);
    expectPlain<TypeParam>({.octets = "abc", .isTied = true, .state = std::ios::badbit}, 0);
  }
}

TEST(BooleanDecoder, ReadsEachOctetWhenItsBitsAreNeeded) {
  // Twelve bits are unused, so the last octet stays.
  expectPlain<BooleanKind>({.octets = octets("CA A5 FF")}, 3);
  expectPlain<BooleanKind>({.octets = octets("CA A5 FF"), .area = 3}, 3);
  expectPlain<BooleanKind>({.octets = octets("4F 00")}, 1);
  // The unused bits may be any.
  expectPlain<BooleanKind>({.octets = octets("70 7F")}, 2);
}

TEST(BooleanDecoder, CountsInThirtyTwoBits) {
  // 4294967304 bits, of which 4294967300 are booleans: 4 of the first octet.
  expectPlain<BooleanKind>({.octets = octets("0A FF")}, 0x20000001);
  // Two octets more; three bits are unused.
  expectPlain<BooleanKind>({.octets = octets("3A A5 FF FF")}, 0x20000003);
}

}  // namespace
