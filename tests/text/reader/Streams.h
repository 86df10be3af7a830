#pragma once

#include <algorithm>
#include <cstring>
#include <functional>
#include <istream>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

/// What one read of a stream's buffer asked for, and got.
struct Read {
  std::streamsize asked;
  std::streamsize given;

  bool operator==(const Read&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Read& read) {
  return out << read.given << " of " << read.asked;
}

/// A buffer over a text that notes how it is read.
class NotingBuffer : public std::streambuf {
 public:
  explicit NotingBuffer(std::string text) : text_(std::move(text)) {}

  /// The most that one read gives.
  std::streamsize limit = 1 << 30;
  /// Called before a read, with the number of reads so far. May throw.
  std::function<void(std::size_t)> beforeRead;

  const std::vector<Read>& reads() const { return reads_; }

 protected:
  int_type underflow() override {
    if (beforeRead) beforeRead(reads_.size());
    return position_ == text_.size() ? traits_type::eof()
                                     : traits_type::to_int_type(text_[position_]);
  }
  int_type uflow() override {
    const int_type next = underflow();
    if (next != traits_type::eof()) ++position_;
    return next;
  }
  std::streamsize showmanyc() override {
    return std::min<std::streamsize>(static_cast<std::streamsize>(text_.size() - position_), limit);
  }
  std::streamsize xsgetn(char* target, std::streamsize asked) override {
    if (beforeRead) beforeRead(reads_.size());
    const std::streamsize rest = static_cast<std::streamsize>(text_.size() - position_);
    const std::streamsize given = std::min({asked, rest, limit});
    std::memcpy(target, text_.data() + position_, static_cast<std::size_t>(given));
    position_ += static_cast<std::size_t>(given);
    reads_.push_back({asked, given});
    return given;
  }

 private:
  std::string text_;
  std::size_t position_ = 0;
  std::vector<Read> reads_;
};

/// The block in which the reader reads.
inline constexpr std::streamsize kBlock = 1048576;
