#pragma once

#include <algorithm>
#include <cstdint>

namespace Tavrin::fastinfoset {

/// Tells whether further values of one attribute, or chunks of one element, are worth an entry in
/// their table. Only what may be an entry counts, and what is one. The rule:
///
/// They are judged by windows of kWindow. Of the first, kFewest must be in the table when they
/// come, in each window after it kMore more, up to kMost. Values drawn at random from 2^18 would
/// just do: as long as a table is small, few are found in it. Where too few are found, nothing is
/// added for the next kWindow; then the windows begin again. Each pause is twice as long as the one
/// before, up to kLongestPause, until a window has found kMost. Values are looked up at all times.
///
/// It depends on nothing but the values: the same events have the same octets.
class ValueTally {
 public:
  static constexpr std::uint32_t kWindow = 2048;
  static constexpr std::uint32_t kFewest = 8;
  static constexpr std::uint32_t kMore = 16;
  static constexpr std::uint32_t kMost = kWindow / 8;
  static constexpr std::uint32_t kLongestPause = 64 * kWindow;

  /// Whether the next value is added, unless it is in the table.
  bool adds() const { return pause_ == 0; }

  /// Counts a value.
  /// @param isFound whether it was in the table
  void count(bool isFound) {
    if (pause_ > 0) {
      --pause_;
      return;
    }
    found_ += isFound ? 1 : 0;
    if (++seen_ == kWindow) judge();
  }

 private:
  void judge() {
    if (found_ >= kMost) nextPause_ = kWindow;
    if (found_ >= needed_) {
      needed_ = std::min(needed_ + kMore, kMost);
    } else {
      needed_ = kFewest;
      pause_ = nextPause_;
      nextPause_ = std::min(2 * nextPause_, kLongestPause);
    }
    seen_ = found_ = 0;
  }

  std::uint32_t seen_ = 0;   // In this window.
  std::uint32_t found_ = 0;  // Of these.
  std::uint32_t needed_ = kFewest;
  std::uint32_t pause_ = 0;  // Values until the next window.
  std::uint32_t nextPause_ = kWindow;
};

}  // namespace Tavrin::fastinfoset
