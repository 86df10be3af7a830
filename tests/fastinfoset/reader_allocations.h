#pragma once

#include <cstddef>

/// What `operator new` has given out in this program, which replaces it to count.
namespace allocations {

/// Octets that are in use now.
std::size_t inUse();

/// The most octets that were in use at a time since the last call of resetPeak.
std::size_t peak();
void resetPeak();

}  // namespace allocations
