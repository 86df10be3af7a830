#pragma once

#include <cstddef>

/// What this program takes from the allocator: C++ and C alike, the libraries below it included.
/// Nothing here asks the allocator, whose caches and arenas have a mood of their own: each call is
/// counted on its way there.
///
/// A build with sanitizers counts through their hooks, and lets `operator new` alone fail. valgrind
/// puts functions of its own in front of these, so that nothing is counted and nothing fails.
namespace allocations {

/// Whether calls are counted and can fail. A test that stands on it is skipped where they are not.
bool areCounted();

/// Blocks that are in use now.
std::size_t live();

/// Blocks that were ever given out.
std::size_t total();

/// Octets that are in use now: what the allocator gave, which may be more than it was asked for.
std::size_t inUse();

/// The most octets that were in use at a time since the last call of resetPeak.
std::size_t peak();
void resetPeak();

/// The most octets that a piece of work has in use at a time, beyond those of before.
template <typename Work>
std::size_t peakOf(Work work) {
  const std::size_t before = inUse();
  resetPeak();
  work();
  return peak() - before;
}

/// While it lives, an allocation of its thread fails: `operator new` throws, `malloc` returns null.
/// There is one at a time in a thread.
///
/// A test of what happens without memory lets each allocation of some work fail in turn:
///
///     for (std::size_t number = 0;; ++number) {
///       const allocations::Failure failure(number);
///       ... the work, and what is expected of it with and without failure.happened()
///       if (!failure.happened()) break;
///     }
class Failure {
 public:
  enum class Later { succeeds, fails };

  /// @param number of the allocation, counted from 0
  /// @param later  what all those behind it do
  explicit Failure(std::size_t number, Later later = Later::succeeds);
  ~Failure();
  Failure(const Failure&) = delete;
  Failure& operator=(const Failure&) = delete;

  /// Whether the work has come so far.
  bool happened() const;
};

/// @name The same without an object
/// @{

/// Lets an allocation of this thread fail, once.
/// @param count which one from now on, beginning with 1; 0 for none
void failAt(std::size_t count);

/// From the next allocation of this thread but so many on, all fail, until stopFailing is called.
void failAfter(std::size_t count);
void stopFailing();
/// @}

}  // namespace allocations
