#pragma once

#include <cstddef>

/// What `operator new` has given out in this program, which replaces it to count. A program that
/// wants this compiles it in.
namespace allocations {

/// Octets that are in use now.
std::size_t inUse();

/// The most octets that were in use at a time since the last call of resetPeak.
std::size_t peak();
void resetPeak();

/// From the next allocation but so many on, all fail, until stopFailing is called.
void failAfter(std::size_t count);
void stopFailing();

}  // namespace allocations
