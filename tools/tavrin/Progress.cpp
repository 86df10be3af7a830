#include "Progress.h"

#include <algorithm>
#include <iostream>
#include <string>

#include "Process.h"

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

void Progress::advance(std::uint64_t octets) {
  done_ += octets;
  const auto now = std::chrono::steady_clock::now();
  if (shown_ && now - drawn_ < kPause) return;
  shown_ = true;
  drawn_ = now;
  setProgressShown(true);
  std::cerr << bar(done_, total_) << std::flush;
}

CountingBuffer::int_type CountingBuffer::underflow() { return source_.sgetc(); }

CountingBuffer::int_type CountingBuffer::uflow() {
  const int_type c = source_.sbumpc();
  if (!traits_type::eq_int_type(c, traits_type::eof())) progress_.advance(1);
  return c;
}

CountingBuffer::int_type CountingBuffer::pbackfail(int_type c) {
  return traits_type::eq_int_type(c, traits_type::eof())
             ? source_.sungetc()
             : source_.sputbackc(traits_type::to_char_type(c));
}

std::streamsize CountingBuffer::xsgetn(char* target, std::streamsize size) {
  const std::streamsize count = source_.sgetn(target, size);
  progress_.advance(static_cast<std::uint64_t>(count));
  return count;
}

}  // namespace tool
