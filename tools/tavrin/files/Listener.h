#pragma once

#include <cstdint>
#include <string>

namespace tool {

/// Hears how far the reading of an input has come.
class Meter {
 public:
  virtual ~Meter() = default;

  /// There is so much more to read than was known.
  virtual void lengthen(std::uint64_t octets) = 0;
  /// @param done so many octets have been read, those that were read twice counted twice
  virtual void show(std::uint64_t done) = 0;
};

/// Hears what the work on one of many inputs has to say, in place of the terminal.
class Listener : public Meter {
 public:
  /// @param line for standard error, with its end
  virtual void message(const std::string& line) = 0;
};

/// The listener of the calling thread, or null where it speaks for itself.
Listener* currentListener();

/// Makes an object the listener of the calling thread, as long as this one lives.
class Listening {
 public:
  explicit Listening(Listener& listener);
  ~Listening();
  Listening(const Listening&) = delete;
  Listening& operator=(const Listening&) = delete;

 private:
  Listener* before_;
};

/// Hands a line to the listener of the calling thread, or writes it to standard error. A progress
/// bar that is shown gives way to it.
/// @param line with its end
void say(const std::string& line);

}  // namespace tool
