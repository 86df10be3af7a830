#pragma once

#include <cstddef>

/// Lets one of the things that may fail in a run fail: the k-th allocation, the k-th event of a
/// handler, and so on. Nothing here allocates. Allocations fail and are counted as
/// tests/support/Allocations.h has it.
namespace trap {

enum class Place {
  allocation,  ///< What anybody allocates.
  handler,     ///< An event that a reader delivers.
  attributes,  ///< A call of the list of attributes that a writer was given.
  algorithm,   ///< A call of an algorithm of the application's own, where it begins and ends.
  input,       ///< An octet that a stream is asked for.
  output       ///< An octet that a stream is given.
};

/// What happens where the trap springs. Allocations always end in std::bad_alloc, or null.
enum class Kind {
  foreign,       ///< An exception that no other class derives from.
  saxException,  ///< A Tavrin::SAXException.
  endOfStream,   ///< The stream ends, or is full.
};

struct Foreign {};

/// Lets the occasion of this number fail, counted from 0, and no other.
void set(Place place, std::size_t number, Kind kind);
/// Nothing fails any more. Returns whether the trap has sprung.
bool clear();

/// Whether it has since it was set.
bool hasSprung();

/// Asked at every other occasion than an allocation: whether this one is to fail.
bool springs(Place place);
/// The same, and throws what was asked for. Returns true where a stream is to end.
bool throwsOrEnds(Place place);

}  // namespace trap
