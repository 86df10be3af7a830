#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace tool {

/// What the command line says about measuring.
struct TimingOptions {
  bool isOn = false;
  unsigned repeat = 0;  ///< So many times more, to measure.

  bool isAsked() const { return isOn || repeat > 0; }
};

/// The lines of a help text about these options, in place of the line "%timing%".
extern const char kTimingHelp[];

/// Adds --timing and --repeat.
void addTimingOptions(CLI::App& command, TimingOptions& options);

/// Time that has passed since the object was made.
class Stopwatch {
 public:
  double seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin_).count();
  }

 private:
  std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

/// Does something so many times, and says on standard error how long the fastest and the median
/// took, and the rate of the fastest. What the work itself has to say is not heard.
/// @param what the name of the work
/// @param octets that are read each time
void measure(const std::string& name, const std::string& what, unsigned times, std::uint64_t octets,
             const std::function<void()>& work);

/// Refuses to read something again that may not be the same then.
void refuseToRepeat(const TimingOptions& options, const std::vector<std::string>& names);

}  // namespace tool
