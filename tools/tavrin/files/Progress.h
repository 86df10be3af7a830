#pragma once

#include <chrono>
#include <cstdint>

#include "files/Listener.h"

namespace tool {

/// A progress bar on the terminal behind standard error. It goes away with the object.
class Progress : public Meter {
 public:
  explicit Progress(std::uint64_t total) : total_(total) {}
  ~Progress() override;
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void lengthen(std::uint64_t octets) override { total_ += octets; }
  /// Draws the bar, unless it was drawn a moment ago.
  void show(std::uint64_t done) override;

 private:
  std::uint64_t total_;
  bool shown_ = false;
  std::chrono::steady_clock::time_point drawn_{};
};

}  // namespace tool
