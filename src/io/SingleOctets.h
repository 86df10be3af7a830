#pragma once

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstring>
#include <istream>
#include <streambuf>
#include <string_view>

namespace Tavrin {

/// The get area of a stream's buffer: the octets that can be consumed without a read.
class GetArea {
 public:
  explicit GetArea(std::streambuf& buffer) : buffer_(buffer) {}

  char* begin() const { return (buffer_.*&Members::gptr)(); }
  bool isEmpty() const { return begin() >= end(); }
  std::size_t size() const {
    return isEmpty() ? 0 : std::min(static_cast<std::size_t>(end() - begin()), kMost);
  }

  /// Consumes octets, as `sbumpc` does with one.
  void advance(std::size_t count) const { (buffer_.*&Members::gbump)(static_cast<int>(count)); }

 private:
  static constexpr std::size_t kMost = INT_MAX;

  /// Gives access to protected members of a buffer.
  struct Members : std::streambuf {
    using std::streambuf::egptr;
    using std::streambuf::gbump;
    using std::streambuf::gptr;
  };

  const char* end() const { return (buffer_.*&Members::egptr)(); }

  std::streambuf& buffer_;
};

/// Reads a stream as its single-octet `get` does, one call for each octet: a stream or buffer of
/// the application cannot notice a difference. Where no stream is tied to it and the get area has
/// octets, such a call only consumes one and counts it, so there is none. Measured: with a call for
/// each octet, reading text takes half as long again.
class SingleOctets {
 public:
  explicit SingleOctets(std::istream& stream) : SingleOctets(stream, stream) {}
  /// @param base that of the stream, where the caller knows it
  SingleOctets(std::istream& stream, std::ios& base) : stream_(stream), base_(base) {}

  /// Does what the stream's `get` does.
  int get() const {
    if (isReady() && !GetArea(*base_.rdbuf()).isEmpty()) {
      countOne();
      return base_.rdbuf()->sbumpc();
    }
    return stream_.get();
  }

  /// Does what all further calls do after one that failed. Where the buffer threw, libc++ sets
  /// failbit only now.
  void getAfterFailure() const { stream_.get(); }

  /// Consumes octets of the get area, in units of some size.
  /// @param most a multiple of the unit
  /// @return valid until the next octet is consumed; empty where `get` has more to do than consume
  std::string_view consumeAvailable(std::size_t most, std::size_t unit = 1) const {
    if (!isReady()) return {};
    const GetArea area(*base_.rdbuf());
    const std::string_view octets(area.begin(), std::min(most, area.size() / unit * unit));
    if (octets.empty()) return {};
    area.advance(octets.size());
    countOne();
    return octets;
  }

  /// Copies the next octets.
  /// @return how many there are; fewer than `count` at the end of the stream
  std::size_t copy(char* octets, std::size_t count) const {
    std::size_t copied = 0;
    while (copied < count) {
      if (const auto run = consumeAvailable(count - copied); !run.empty()) {
        std::memcpy(octets + copied, run.data(), run.size());
        copied += run.size();
      } else if (const int octet = get(); octet != std::istream::traits_type::eof()) {
        octets[copied++] = static_cast<char>(octet);
      } else {
        break;
      }
    }
    return copied;
  }

 private:
#ifdef __GLIBCXX__
  bool isReady() const { return base_.good() && base_.tie() == nullptr; }
  void countOne() const {
    struct Members : std::istream {
      static constexpr std::streamsize std::istream::*count() { return &Members::_M_gcount; }
    };
    stream_.*Members::count() = 1;
  }
#else
  // The count cannot be set.
  static constexpr bool isReady() { return false; }
  static constexpr void countOne() {}
#endif

  std::istream& stream_;
  std::ios& base_;
};

}  // namespace Tavrin
