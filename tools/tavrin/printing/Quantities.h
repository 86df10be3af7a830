#pragma once

#include <cstdint>
#include <string>

namespace tool {

/// Quantities for people. A megabyte is a million octets.

/// "12.3 MB"
std::string megabytes(std::uint64_t octets);
/// "45 octets", "45.1 kB", "45.1 MB"
std::string size(std::uint64_t octets);
/// "95.3 MB/s"; "- MB/s" where no time has passed.
std::string rate(std::uint64_t octets, double seconds);
/// "7 s", "3 min 7 s", "2 h 3 min"
std::string duration(double seconds);
/// "7.123 s" below a minute; as duration above
std::string timeTaken(double seconds);
/// "12.345 ms"
std::string milliseconds(double seconds);

}  // namespace tool
