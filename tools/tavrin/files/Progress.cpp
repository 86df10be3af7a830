#include "files/Progress.h"

#include <algorithm>
#include <iostream>
#include <string>

#include "files/Process.h"

namespace tool {

namespace {

constexpr std::size_t kCells = 50;
constexpr std::chrono::milliseconds kPause(100);

std::string bar(std::uint64_t done, std::uint64_t total) {
  // A file may grow while it is read.
  const double part = static_cast<double>(done) / static_cast<double>(std::max(total, done));
  const auto filled = static_cast<std::size_t>(part * static_cast<double>(kCells));
  const std::string percent = std::to_string(static_cast<int>(part * 100));
  return "\r[" + std::string(filled, '#') + std::string(kCells - filled, '.') + "] " +
         std::string(3 - percent.size(), ' ') + percent + "%";
}

}  // namespace

Progress::~Progress() {
  if (!shown_) return;
  std::cerr << kClearLine << std::flush;
  setProgressShown(false);
}

void Progress::show(std::uint64_t done) {
  const auto now = std::chrono::steady_clock::now();
  if (shown_ && now - drawn_ < kPause) return;
  shown_ = true;
  drawn_ = now;
  setProgressShown(true);
  std::cerr << bar(done, total_) << std::flush;
}

}  // namespace tool
