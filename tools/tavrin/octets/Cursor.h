#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace tool::octets {

/// Goes through octets from the first to the last, with a few of those that come next in view. It
/// holds no more than a block, however many there are.
class Cursor {
 public:
  /// Puts octets at a place, as many as it says unless none are left. Returns how many.
  using Source = std::function<std::size_t(char*, std::size_t)>;

  static constexpr std::size_t kMostInView = 4096;

  explicit Cursor(Source source) : source_(std::move(source)), buffer_(kBuffer) {}

  /// How many octets have been passed.
  std::uint64_t offset() const { return offset_; }
  /// The octets that come next: at least `size`, unless fewer are left. Valid until the next call.
  /// @param size at most kMostInView
  std::string_view view(std::size_t size) {
    if (end_ - begin_ < size) fill(size);
    return {buffer_.data() + begin_, end_ - begin_};
  }
  /// Passes octets that are in view.
  void pass(std::size_t size) {
    begin_ += size;
    offset_ += size;
  }
  bool isAtEnd() { return view(1).empty(); }

 private:
  static constexpr std::size_t kBuffer = 65536 + kMostInView;

  void fill(std::size_t size);

  Source source_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  std::uint64_t offset_ = 0;
  bool isEnded_ = false;
};

}  // namespace tool::octets
