#pragma once

#include <cstddef>

/// What `operator new` has given out in this program, which replaces it to count, and to let it
/// fail. A program that wants this compiles it in.
namespace allocations {

/// Octets that are in use now.
std::size_t inUse();

/// The most octets that were in use at a time since the last call of resetPeak.
std::size_t peak();
void resetPeak();

/// Lets an allocation fail, once.
/// @param count which one from now on, beginning with 1; 0 for none
void failAt(std::size_t count);

/// From the next allocation but so many on, all fail, until stopFailing is called.
void failAfter(std::size_t count);
void stopFailing();

}  // namespace allocations
