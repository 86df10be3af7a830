#include "measuring/Timing.h"

#include <sys/stat.h>
#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>

#include "files/Failure.h"
#include "files/Listener.h"
#include "printing/Quantities.h"
#include "printing/Text.h"

namespace tool {

const char kTimingHelp[] =
    R"(  --timing          tell on standard error how long the work on each file took
  --repeat N        then do it N times again, up to 10000, and tell the least and the median time
)";

namespace {

constexpr unsigned kMostRepeats = 10000;

/// Does not let anything be heard.
class Silence : public Listener {
 public:
  void message(const std::string&) override {}
  void lengthen(std::uint64_t) override {}
  void show(std::uint64_t) override {}
};

/// The one in the middle of sorted times, or the mean of both.
double medianOf(const std::vector<double>& times) {
  const std::size_t middle = times.size() / 2;
  return times.size() % 2 == 1 ? times[middle] : (times[middle - 1] + times[middle]) / 2;
}

std::string checkRepeat(const std::string& text) {
  unsigned number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool isNumber = error == std::errc() && end == text.data() + text.size();
  return isNumber && number > 0 && number <= kMostRepeats
             ? ""
             : "\"" + text + "\" is not a number from 1 to " + std::to_string(kMostRepeats);
}

}  // namespace

void addTimingOptions(CLI::App& command, TimingOptions& options) {
  command.add_flag("--timing", options.isOn);
  command.add_option("--repeat", options.repeat)->type_name("N")->check(checkRepeat);
}

void measure(const std::string& name, const std::string& what, unsigned times, std::uint64_t octets,
             const std::function<void()>& work) {
  std::vector<double> all;
  for (unsigned i = 0; i < times; ++i) {
    Silence silence;
    const Listening listening(silence);
    const Stopwatch stopwatch;
    work();
    all.push_back(stopwatch.seconds());
  }
  std::sort(all.begin(), all.end());
  say(escaped(name) + ": " + what + " " + std::to_string(times) + " times: min " +
      milliseconds(all.front()) + ", median " + milliseconds(medianOf(all)) + ", " +
      rate(octets, all.front()) + "\n");
}

void refuseToRepeat(const TimingOptions& options, const std::vector<std::string>& names) {
  if (options.repeat == 0) return;
  for (const std::string& name : names) {
    struct stat status {};
    // What does not exist fails when it is read.
    const bool isStream = name == "-" || (stat(name.c_str(), &status) == 0 &&
                                          !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode));
    if (isStream) throw Failure::usage("--repeat: " + name + " can be read only once");
  }
}

}  // namespace tool
