#pragma once

#include <cstddef>

/// Lets one of the things that may fail in a run fail: the k-th allocation, the k-th event of a
/// handler, and so on. Nothing here allocates.
namespace trap {

enum class Place {
  allocation,  ///< operator new, and what expat allocates.
  handler,     ///< An event that a reader delivers.
  attributes,  ///< A call of the list of attributes that a writer was given.
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

/// Asked at every occasion: whether this one is to fail.
bool springs(Place place);
/// The same, and throws what was asked for. Returns true where a stream is to end.
bool throwsOrEnds(Place place);

/// While there is one, no allocation fails: those are the test's own.
class NoFailure {
 public:
  NoFailure();
  ~NoFailure();
  NoFailure(const NoFailure&) = delete;
  NoFailure& operator=(const NoFailure&) = delete;
};

/// How many allocations have not been given back.
std::ptrdiff_t liveAllocations();

}  // namespace trap
