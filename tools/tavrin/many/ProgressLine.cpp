#include "many/ProgressLine.h"

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <string>

#include "files/Process.h"
#include "printing/Quantities.h"

namespace tool {

namespace {

constexpr std::chrono::milliseconds kPause(100);

}  // namespace

bool ProgressLine::isDue() const {
  return isShown_ && Clock::now() - drawn_.load(std::memory_order_relaxed) >= kPause;
}

void ProgressLine::draw() {
  const auto now = Clock::now();
  drawn_ = now;
  isOnTerminal_ = true;
  setProgressShown(true);
  const double seconds = std::chrono::duration<double>(now - begin_).count();
  const std::uint64_t done = octetsDone_;
  const std::uint64_t all = std::max<std::uint64_t>(octets_, done);  // Files may grow meanwhile.
  const double left = done == 0 ? 0 : static_cast<double>(all - done) / static_cast<double>(done);
  std::cerr << kClearLine + std::to_string(filesDone_) + " of " + std::to_string(files_) +
                   " files, " + megabytes(done) + " of " + megabytes(all) + ", " +
                   rate(done, seconds) + ", " + duration(left * seconds) + " left"
            << std::flush;
}

void ProgressLine::clear() {
  if (!isOnTerminal_) return;
  std::cerr << kClearLine << std::flush;
  isOnTerminal_ = false;
  setProgressShown(false);
}

}  // namespace tool
