#include "printing/Quantities.h"

#include <cstdio>

namespace tool {

namespace {

/// A number with so many digits behind the point.
std::string fixed(double value, int digits) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", digits, value);
  return text;
}

}  // namespace

std::string megabytes(std::uint64_t octets) {
  return fixed(static_cast<double>(octets) / 1e6, 1) + " MB";
}

std::string size(std::uint64_t octets) {
  if (octets < 10'000) return std::to_string(octets) + " octets";
  if (octets >= 1'000'000) return megabytes(octets);
  return fixed(static_cast<double>(octets) / 1e3, 1) + " kB";
}

std::string rate(std::uint64_t octets, double seconds) {
  return (seconds > 0 ? fixed(static_cast<double>(octets) / 1e6 / seconds, 1) : "-") + " MB/s";
}

std::string duration(double seconds) {
  constexpr double kMost = 1e9;  // Nobody waits for that.
  const auto whole = static_cast<std::uint64_t>(seconds < kMost ? seconds + 0.5 : kMost);
  if (whole < 60) return std::to_string(whole) + " s";
  const std::uint64_t minutes = whole / 60;
  if (minutes < 60) return std::to_string(minutes) + " min " + std::to_string(whole % 60) + " s";
  return std::to_string(minutes / 60) + " h " + std::to_string(minutes % 60) + " min";
}

std::string timeTaken(double seconds) {
  return seconds < 60 ? fixed(seconds, 3) + " s" : duration(seconds);
}

std::string milliseconds(double seconds) { return fixed(seconds * 1e3, 3) + " ms"; }

}  // namespace tool
