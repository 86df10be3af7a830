#pragma once

#include <Tavrin/XMLWriter_FI.h>

#include <utility>

#include "../../xml/NameCache.h"
#include "../Integers.h"

namespace Tavrin {

/// The indices of names that came before, found without a look into the tables.
struct XMLWriter_FI::KnownNames {
  xml::NameCache<unsigned> elements;
  xml::NameCache<unsigned> attributes;
};

/// Writes what an event has to write in one piece. Also where the event is refused: what was
/// written until then stays written.
template <typename Body>
void XMLWriter_FI::perform(Body body) {
  const bool gathers = std::exchange(gathers_, true);
  try {
    body();
  } catch (...) {
    gathers_ = gathers;
    sendOctets();
    throw;
  }
  gathers_ = gathers;
  sendOctets();
}

/// Writes an integer in its shortest form, with the other bits of its first octet.
template <typename Encoding>
void XMLWriter_FI::putInteger(const Encoding& encoding, unsigned bits, std::uint64_t value) {
  // Most integers are small.
  if (value < encoding.forms[1].bias) {
    put(bits | encoding.forms[0].marker | static_cast<unsigned>(value - encoding.forms[0].bias));
    return;
  }
  const fastinfoset::EncodedInteger integer = fastinfoset::encodeInteger(encoding, bits, value);
  write(integer.octets.data(), integer.length);
}

}  // namespace Tavrin
