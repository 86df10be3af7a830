#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "files/Listener.h"
#include "files/Output.h"
#include "many/ProgressLine.h"

namespace tool {

/// What the work on an input has printed, and not shown yet.
class Lines {
 public:
  enum class Stream {
    Output,
    Block,  ///< Standard output, with an empty line between blocks.
    Error
  };

  void add(Stream stream, const std::string& text);
  bool empty() const { return parts_.empty(); }
  std::size_t size() const { return size_; }
  const std::vector<std::pair<Stream, std::string>>& parts() const { return parts_; }

 private:
  std::vector<std::pair<Stream, std::string>> parts_;
  std::size_t size_ = 0;
};

/// Shows what the work on many inputs prints, in the order of the inputs, whichever thread is the
/// first. What comes too early waits; it is bounded, and so is how far the threads get ahead.
///
/// The inputs have the numbers from 0 on, and their work begins in this order. So the one whose
/// turn it is has begun, and never waits.
class Turns {
 public:
  explicit Turns(ProgressLine& line);

  /// Waits until the work on an input is not too far ahead.
  /// @return whether it is to begin at all
  bool mayBegin(std::size_t index);
  /// Shows what was printed, or keeps it until its turn comes.
  void show(std::size_t index, Lines& lines);
  /// The work on an input is done.
  void end(std::size_t index, Lines lines);
  /// What has happened to the work on an input ends everything, and nothing is shown of those
  /// behind it.
  void fail(std::size_t index, std::exception_ptr failure);
  /// Draws the progress unless another thread is at it.
  void drawProgress();
  ProgressLine& line() { return line_; }
  /// Throws the failure of the first input that has ended everything.
  void check() const;

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  void write(const Lines& lines);
  void writeAll(std::size_t index, const Lines& lines);
  void stopAt(std::size_t index, std::exception_ptr failure);

  ProgressLine& line_;
  Output output_;
  bool hasBlocks_ = false;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::size_t current_ = 0;             // Whose turn it is.
  std::size_t kept_ = 0;                // Octets that wait for their turn.
  std::map<std::size_t, Lines> ended_;  // Before their turn.
  std::size_t stop_ = kNone;            // The input that has ended everything.
  std::exception_ptr failure_;
};

/// The work on one of many inputs, as it speaks.
class Turn : public Listener {
 public:
  Turn(Turns& turns, std::size_t index) : turns_(turns), index_(index) {}

  /// Prints to standard output: no later than with what comes next on standard error.
  void print(const std::string& text) { lines_.add(Lines::Stream::Output, text); }
  /// Prints to standard output as print does, with an empty line in front unless it is the first
  /// block of all files.
  void printBlock(const std::string& text) { lines_.add(Lines::Stream::Block, text); }
  void message(const std::string& line) override;
  void lengthen(std::uint64_t octets) override;
  void show(std::uint64_t done) override;
  /// Shows what was printed, if it is its turn.
  void flush();

  void end();
  void fail(std::exception_ptr failure) { turns_.fail(index_, std::move(failure)); }

 private:
  Turns& turns_;
  std::size_t index_;
  Lines lines_;
  std::uint64_t done_ = 0;  // Octets that the progress knows of.
};

}  // namespace tool
