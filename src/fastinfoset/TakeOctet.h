#pragma once

#include "Decoder.h"

#include <cstdint>
#include <streambuf>
#include <string>

#include "../io/SingleOctets.h"

namespace Tavrin::fastinfoset {

/// What the stream's get operation gives, and with all that it does.
inline int Decoder::getOctet() { return SingleOctets(*stream_, *source_).get(); }

// A dialect may take octets from the stream's buffer whatever is tied and counted. It obeys the
// state of the stream and the buffer that it has at the time, too, and at the end the state is set
// as get would set it. Inline, because it is called for each octet that is not in a string.

/// The next octet, or the end of the stream.
inline int Decoder::nextOctet() {
  if (callsGet_) return getOctet();
  if (!source_->good()) return endOfStream();
  int octet = 0;
  try {
    octet = source_->rdbuf()->sbumpc();
  } catch (...) {
    return brokenStream();
  }
  if (octet == std::istream::traits_type::eof()) return endOfStream();
  ++octetsRead_;
  return octet;
}

/// Takes octets that are in the stream's buffer already, as its `sgetn` would.
/// @return where they are, until the next octet is taken; or null where not all of them are in the
///         buffer: nothing has happened then
inline const char* Decoder::takeBuffered(std::uint64_t length) {
  if (callsGet_) return nullptr;
  const GetArea area(*source_->rdbuf());
  if (length > area.size()) return nullptr;
  const char* const octets = area.begin();
  area.advance(length);
  octetsRead_ += length;
  return octets;
}

/// The next octet, which must be there.
inline unsigned Decoder::takeOctet() {
  const int octet = nextOctet();
  if (octet == std::istream::traits_type::eof()) failAtEnd();
  return static_cast<unsigned>(octet);
}

}  // namespace Tavrin::fastinfoset
