#include "many/Turns.h"

#include <iostream>

namespace tool {

namespace {

constexpr std::size_t kMostKept = std::size_t{16} << 20;
constexpr std::size_t kFarthestAhead = 65536;

}  // namespace

// --- Lines ---

void Lines::add(Stream stream, const std::string& text) {
  if (text.empty()) return;
  if (parts_.empty() || parts_.back().first != stream || stream == Stream::Block) {
    parts_.emplace_back(stream, "");
  }
  parts_.back().second += text;
  size_ += text.size();
}

// --- Turns ---

Turns::Turns(ProgressLine& line) : line_(line), output_("-", false) { output_.open(); }

bool Turns::mayBegin(std::size_t index) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [&] { return index >= stop_ || index - current_ < kFarthestAhead; });
  return index < stop_;
}

void Turns::show(std::size_t index, Lines& lines) {
  if (lines.empty()) return;
  std::unique_lock lock(mutex_);
  if (index != current_ && kept_ + lines.size() <= kMostKept) return;
  changed_.wait(lock, [&] { return index == current_ || index >= stop_; });
  writeAll(index, std::exchange(lines, {}));
}

void Turns::end(std::size_t index, Lines lines) {
  const std::lock_guard lock(mutex_);
  line_.addFile();
  if (index != current_) {
    kept_ += lines.size();
    ended_.emplace(index, std::move(lines));
    return;
  }
  writeAll(index, lines);
  if (index >= stop_) return;
  ++current_;
  for (auto next = ended_.begin(); next != ended_.end() && next->first == current_;) {
    kept_ -= next->second.size();
    writeAll(current_, next->second);
    if (current_ >= stop_) break;
    next = ended_.erase(next);
    ++current_;
  }
  changed_.notify_all();
}

void Turns::fail(std::size_t index, std::exception_ptr failure) {
  const std::lock_guard lock(mutex_);
  stopAt(index, std::move(failure));
}

void Turns::stopAt(std::size_t index, std::exception_ptr failure) {
  if (index >= stop_) return;
  stop_ = index;
  failure_ = std::move(failure);
  changed_.notify_all();
}

/// Writes what an input has printed whose turn it is.
void Turns::writeAll(std::size_t index, const Lines& lines) {
  if (index >= stop_ || lines.empty()) return;
  try {
    write(lines);
  } catch (...) {
    stopAt(index, std::current_exception());
  }
}

// Both streams may end in one place, where the order of the lines counts.
void Turns::write(const Lines& lines) {
  line_.clear();
  for (const auto& [stream, text] : lines.parts()) {
    if (stream == Lines::Stream::Error) {
      std::cerr << text << std::flush;
    } else {
      if (stream == Lines::Stream::Block && std::exchange(hasBlocks_, true)) {
        output_.stream() << '\n';
      }
      output_.stream() << text;
      output_.flush();
    }
  }
}

void Turns::drawProgress() {
  const std::unique_lock lock(mutex_, std::try_to_lock);
  if (lock.owns_lock() && line_.isDue()) line_.draw();
}

void Turns::check() const {
  if (failure_) std::rethrow_exception(failure_);
}

// --- Turn ---

void Turn::message(const std::string& line) {
  lines_.add(Lines::Stream::Error, line);
  flush();
}

void Turn::flush() { turns_.show(index_, lines_); }

void Turn::end() {
  turns_.end(index_, std::move(lines_));
  if (turns_.line().isDue()) turns_.drawProgress();
}

void Turn::lengthen(std::uint64_t octets) { turns_.line().lengthen(octets); }

void Turn::show(std::uint64_t done) {
  turns_.line().addOctets(done - done_);
  done_ = done;
  if (turns_.line().isDue()) turns_.drawProgress();
}

}  // namespace tool
