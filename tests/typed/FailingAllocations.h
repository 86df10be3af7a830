#pragma once

#include <cstddef>

/// Lets `operator new` of this program, which replaces it, fail once.
namespace allocations {

/// The allocation of that number from now on fails; 0 is the next.
void failAt(std::size_t number);

/// Lets none fail. Returns whether one has.
bool failed();

}  // namespace allocations
