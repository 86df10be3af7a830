#pragma once

#include <cstddef>

// This program replaces `operator new`, to count and to fail.

/// The octets that `operator new` has given out and that have not come back.
std::size_t liveOctets();

/// Lets one allocation fail, once, as when there is no memory left.
class FailingAllocation {
 public:
  /// @param number of the allocation that fails, counted from 0
  explicit FailingAllocation(int number);
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;

  /// Whether it came to that.
  static bool hasFailed();
};
