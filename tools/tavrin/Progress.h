#pragma once

#include <chrono>
#include <cstdint>
#include <streambuf>

namespace tool {

/// A progress bar on the terminal behind standard error. It goes away with the object.
class Progress {
 public:
  explicit Progress(std::uint64_t total) : total_(total) {}
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void advance(std::uint64_t octets);

 private:
  std::uint64_t total_;
  std::uint64_t done_ = 0;
  bool shown_ = false;
  std::chrono::steady_clock::time_point drawn_{};
};

/// Counts what is read from another buffer, to which every request is handed on as it is.
class CountingBuffer : public std::streambuf {
 public:
  CountingBuffer(std::streambuf& source, Progress& progress)
      : source_(source), progress_(progress) {}

 protected:
  int_type underflow() override;
  int_type uflow() override;
  int_type pbackfail(int_type c) override;
  std::streamsize xsgetn(char* target, std::streamsize size) override;

 private:
  std::streambuf& source_;
  Progress& progress_;
};

}  // namespace tool
