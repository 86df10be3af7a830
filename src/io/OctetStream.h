#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <istream>
#include <streambuf>
#include <string>

#include "SingleOctets.h"

namespace Tavrin {

/// A stream over octets in memory, so that an encoding algorithm cannot read beyond its data.
class OctetStream {
 public:
  OctetStream() : stream_(&buffer_) {}

  /// The stream, at the beginning of these octets, which must outlive its use.
  std::istream& over(std::string& octets) {
    buffer_.setg(octets.data(), octets.data(), octets.data() + octets.size());
    stream_.clear();
    return stream_;
  }
  bool isAtEnd() const { return buffer_.gptr() == buffer_.egptr(); }

 private:
  struct Buffer : std::streambuf {
    using std::streambuf::egptr;
    using std::streambuf::gptr;
    using std::streambuf::setg;
  };

  Buffer buffer_;
  std::istream stream_;
};

/// A stream over the next octets of another one, so that an encoding algorithm cannot read beyond
/// its data. They are not copied as a whole.
class NextOctets {
 public:
  /// @param source outlives this
  NextOctets(std::streambuf& source, std::uint64_t count)
      : buffer_(source, count), stream_(&buffer_) {}

  std::istream& stream() { return stream_; }
  /// How many octets of the other stream have been consumed.
  std::uint64_t taken() const { return buffer_.taken; }
  /// Throws what the source threw, if anything.
  void rethrow() const {
    if (buffer_.thrown) std::rethrow_exception(buffer_.thrown);
  }

 private:
  struct Buffer : std::streambuf {
    Buffer(std::streambuf& octets, std::uint64_t count) : source(octets), left(count) {}

    // Octets in the get area of the source are not copied: they stay there until its next read.
    int_type underflow() override {
      const GetArea available(source);
      if (const auto count = std::min<std::uint64_t>(left, available.size()); count > 0) {
        char* const octets = available.begin();
        available.advance(count);
        return show(octets, count);
      }
      const auto wanted = std::min<std::uint64_t>(left, block.size());
      try {
        const auto got = source.sgetn(block.data(), static_cast<std::streamsize>(wanted));
        return show(block.data(), static_cast<std::uint64_t>(got));
      } catch (...) {
        thrown = std::current_exception();  // A stream would not pass it on.
        throw;
      }
    }

    int_type show(char* octets, std::uint64_t count) {
      setg(octets, octets, octets + count);
      taken += count;
      left -= count;
      return count == 0 ? traits_type::eof() : traits_type::to_int_type(*octets);
    }

    std::streambuf& source;
    std::uint64_t left;
    std::uint64_t taken = 0;
    std::exception_ptr thrown;
    std::array<char, 512> block{};  // Small: sources without a get area are slow anyway.
  };

  Buffer buffer_;
  std::istream stream_;
};

/// Appends what is written to a string. Unlike a string stream, a stream over it that throws its
/// failures also throws where memory runs out.
class AppendingBuffer : public std::streambuf {
 public:
  explicit AppendingBuffer(std::string& octets) : octets_(octets) {}

 protected:
  std::streamsize xsputn(const char* octets, std::streamsize count) override {
    octets_.append(octets, static_cast<std::size_t>(count));
    return count;
  }
  int_type overflow(int_type octet) override {
    if (!traits_type::eq_int_type(octet, traits_type::eof())) {
      octets_ += traits_type::to_char_type(octet);
    }
    return traits_type::not_eof(octet);
  }

 private:
  std::string& octets_;
};

}  // namespace Tavrin
