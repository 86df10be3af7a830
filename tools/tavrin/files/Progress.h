#pragma once

#include <chrono>
#include <cstdint>

namespace tool {

/// A progress bar on the terminal behind standard error. It goes away with the object.
class Progress {
 public:
  explicit Progress(std::uint64_t total) : total_(total) {}
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// There is so much more to do than was known.
  void lengthen(std::uint64_t total) { total_ += total; }
  /// Draws the bar, unless it was drawn a moment ago.
  /// @param done so many octets of the total
  void show(std::uint64_t done);

 private:
  std::uint64_t total_;
  bool shown_ = false;
  std::chrono::steady_clock::time_point drawn_{};
};

}  // namespace tool
