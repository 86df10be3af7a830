#include <Tavrin/EncodingAlgorithms.h>

#include <gtest/gtest.h>

#include <functional>
#include <ios>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>

#include "Kinds.h"
#include "LoggingFlush.h"

// All but strings write each octet with the stream's single-octet put, and so does what introduces
// the data. Whatever the stream is, a program sees the same as if it called put itself.

namespace {

using namespace Tavrin;

using KindsOfSingleOctets =
    ::testing::Types<ShortKind, IntKind, LongKind, BooleanKind, FloatKind, DoubleKind>;

constexpr std::size_t kNever = std::string::npos;

/// What a stream is like.
struct Sink {
  std::size_t area = 0;       ///< The size of the put area; 0 for none.
  std::size_t most = kNever;  ///< How many octets it takes.
  bool throws = false;        ///< Instead of telling that it took no more.
  bool isTied = false;
  bool isUnbuffered = false;
  std::ios::iostate exceptions = std::ios::goodbit;
  std::ios::iostate state = std::ios::goodbit;  ///< That it has already.
};

/// Logs each virtual call, with the octets that come with it and that are in the put area.
class LoggingSink : public std::streambuf {
 public:
  LoggingSink(const Sink& sink, std::string& log) : sink_(sink), log_(log), area_(sink.area, '#') {
    empty();
  }

  std::string pending() const { return {pbase(), pptr()}; }
  const std::string& area() const { return area_; }

 protected:
  int_type overflow(int_type octet) override {
    note("overflow " + std::to_string(octet));
    if (taken_ >= sink_.most) {
      if (sink_.throws) throw std::runtime_error("full");
      return traits_type::eof();
    }
    empty();
    if (sink_.area == 0) {
      ++taken_;
      return traits_type::not_eof(octet);
    }
    return sputc(traits_type::to_char_type(octet));
  }
  std::streamsize xsputn(const char* octets, std::streamsize count) override {
    note("xsputn '" + std::string(octets, static_cast<std::size_t>(count)) + "'");
    return std::streambuf::xsputn(octets, count);
  }
  int sync() override {
    note("sync");
    empty();
    return 0;
  }

 private:
  void note(const std::string& call) {
    log_ += call + " [" + EventLog::showOctets(pending()) + "]\n";
  }
  void empty() {
    taken_ += static_cast<std::size_t>(pptr() - pbase());
    setp(area_.data(), area_.data() + std::min(area_.size(), sink_.most - taken_));
  }

  const Sink sink_;
  std::string& log_;
  std::string area_;
  std::size_t taken_ = 0;
};

/// Everything that a program sees of an encode.
std::string trace(const Sink& sink, const std::function<void(std::ostream&)>& encode) {
  std::string log;
  LoggingSink buffer(sink, log);
  std::ostream out(&buffer);
  LoggingFlush flushed(log);
  std::ostream tied(&flushed);
  if (sink.isTied) out.tie(&tied);
  if (sink.isUnbuffered) out.setf(std::ios::unitbuf);
  if (sink.state != std::ios::goodbit) out.setstate(sink.state);
  out.exceptions(sink.exceptions);
  try {
    encode(out);
  } catch (const std::ios_base::failure&) {
    log += "failure\n";
  } catch (const std::exception& exception) {
    log += std::string("exception ") + exception.what() + '\n';
  }
  log += "state " + std::to_string(out.rdstate()) + ", pending " +
         EventLog::showOctets(buffer.pending()) + ", area " + EventLog::showOctets(buffer.area());
  return log;
}

template <typename K>
std::string introduction(bool chunk, std::size_t length) {
  const typename K::Algorithm algorithm{};
  std::ostringstream out;
  algorithm.writeSize(K::index, chunk, static_cast<std::uint32_t>(length), out);
  return out.str();
}

/// Expects of the algorithm what a program can see of plain puts.
template <typename K>
void expectPlain(const Sink& sink, std::size_t count) {
  SCOPED_TRACE("area " + std::to_string(sink.area) + ", takes " + std::to_string(sink.most) +
               ", exceptions " + std::to_string(sink.exceptions));
  const auto items = someItems<K>(count);
  const std::string data = count == 0 ? std::string() : dataOctets<K>(items);
  for (const bool chunk : {false, true}) {
    const std::string plain = trace(sink, [&](std::ostream& out) {
      for (const char octet : introduction<K>(chunk, data.size()) + data) out.put(octet);
    });
    typename K::Algorithm algorithm;
    EXPECT_EQ(plain, trace(sink, [&](std::ostream& out) {
                algorithm.encodeToOutputStream(chunk, items, out);
              }));
  }
}

constexpr std::size_t kAreas[] = {0, 1, 3, 8, 100};
constexpr std::ios::iostate kAll = std::ios::badbit | std::ios::eofbit | std::ios::failbit;

template <typename K>
class SingleOctetsWritten : public ::testing::Test {};
TYPED_TEST_SUITE(SingleOctetsWritten, KindsOfSingleOctets, KindNames);

TYPED_TEST(SingleOctetsWritten, ShowAsPlainPutsDo) {
  for (const std::size_t count : {0U, 1U, 2U, 3U, 4U, 5U, 13U, 300U}) {
    for (const std::size_t area : kAreas) {
      expectPlain<TypeParam>({.area = area}, count);
      expectPlain<TypeParam>({.area = area, .isTied = true}, count);
      expectPlain<TypeParam>({.area = area, .isUnbuffered = true}, count);
      expectPlain<TypeParam>(
          {.area = area, .isTied = true, .isUnbuffered = true, .exceptions = kAll}, count);
    }
  }
}

TYPED_TEST(SingleOctetsWritten, ShowAsPlainPutsDoWhereTheStreamTakesNoMore) {
  for (std::size_t most = 0; most < 20; ++most) {
    for (const std::size_t area : kAreas) {
      for (const bool throws : {false, true}) {
        for (const std::ios::iostate exceptions :
             {std::ios::goodbit, std::ios::badbit, std::ios::failbit, kAll}) {
          for (const bool isUnbuffered : {false, true}) {
            expectPlain<TypeParam>({.area = area,
                                    .most = most,
                                    .throws = throws,
                                    .isUnbuffered = isUnbuffered,
                                    .exceptions = exceptions},
                                   isBoolean<TypeParam> ? 100 : 3);
          }
        }
      }
    }
  }
}

TYPED_TEST(SingleOctetsWritten, ShowAsPlainPutsDoOfAStreamThatIsNotGood) {
  for (const std::ios::iostate state : {std::ios::badbit, std::ios::eofbit, std::ios::failbit}) {
    for (const bool isTied : {false, true}) {
      expectPlain<TypeParam>({.area = 100, .isTied = isTied, .state = state}, 3);
    }
  }
}

TEST(SingleOctetsWritten, AreTheOverflowsOfABufferWithoutRoom) {
  std::string log;
  LoggingSink buffer({}, log);
  std::ostream out(&buffer);
  ShortEncodingAlgorithm().encodeToOutputStream(true, std::vector<short>{0x0102}, out);
  BooleanEncodingAlgorithm().encodeToOutputStream(false, std::vector<bool>(5, true), out);
  EXPECT_EQ(
      "overflow 140 []\noverflow 9 []\noverflow 1 []\noverflow 2 []\n"
      "overflow 48 []\noverflow 81 []\noverflow 127 []\noverflow 128 []\n",
      log);
}

}  // namespace
