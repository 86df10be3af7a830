#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

namespace tool {

/// One line on the terminal behind standard error about the work on many files: how many are done,
/// the octets that were read, the rate and the time that is left. Any thread may count; one at a
/// time draws and clears.
class ProgressLine {
 public:
  /// @param isShown whether it is drawn at all
  ProgressLine(bool isShown, std::uint64_t files, std::uint64_t octets)
      : isShown_(isShown), files_(files), octets_(octets) {}
  ~ProgressLine() { clear(); }
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  void addOctets(std::uint64_t octets) { octetsDone_ += octets; }
  void addFile() { ++filesDone_; }
  /// There is so much more to read than was known.
  void lengthen(std::uint64_t octets) { octets_ += octets; }

  /// Whether it has not been drawn for a moment.
  bool isDue() const;
  void draw();
  /// Takes the line off the terminal until it is drawn again.
  void clear();

 private:
  using Clock = std::chrono::steady_clock;

  const bool isShown_;
  const std::uint64_t files_;
  std::atomic<std::uint64_t> octets_;
  std::atomic<std::uint64_t> filesDone_ = 0;
  std::atomic<std::uint64_t> octetsDone_ = 0;
  const Clock::time_point begin_ = Clock::now();
  std::atomic<Clock::time_point> drawn_{};
  bool isOnTerminal_ = false;
};

}  // namespace tool
