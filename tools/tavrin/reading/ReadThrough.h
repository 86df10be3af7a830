#pragma once

#include <cstdint>
#include <string>

#include "options/ReadingOptions.h"

namespace tool {

/// What was read of a file.
struct ReadThrough {
  std::uint64_t documents = 0;
  std::uint64_t octets = 0;
};

/// Reads every document of a file. What no reader can tell, and what else it warns of, is a
/// warning.
/// @param name of the file; "-" is standard input
/// @throws Failure when one of them is not well-formed
ReadThrough readThrough(const std::string& name, const ReadingOptions& options);

}  // namespace tool
