#include "Trap.h"

#include <Tavrin/Exceptions.h>

#include <optional>

#include "Allocations.h"

namespace trap {

namespace {

bool isSet = false;
bool sprung = false;
Place place{};
Kind kind{};
std::size_t left = 0;
std::optional<allocations::Failure> failure;  // Where allocations are the place.

}  // namespace

void set(Place at, std::size_t number, Kind what) {
  place = at;
  left = number;
  kind = what;
  sprung = false;
  isSet = true;
  if (at == Place::allocation) failure.emplace(number);
}

bool clear() {
  const bool result = hasSprung();
  isSet = sprung = false;
  failure.reset();
  return result;
}

bool hasSprung() { return sprung || (failure && failure->happened()); }

bool springs(Place at) {
  if (!isSet || at != place) return false;
  if (left-- > 0) return false;
  isSet = false;
  return sprung = true;
}

bool throwsOrEnds(Place at) {
  if (!springs(at)) return false;
  if (kind == Kind::foreign) throw Foreign();
  if (kind == Kind::saxException) throw Tavrin::SAXException("mine");
  return true;
}

}  // namespace trap
