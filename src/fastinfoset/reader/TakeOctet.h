#pragma once

#include <Tavrin/XMLReader_FI.h>

#include <streambuf>

namespace Tavrin {

// Octets come from the stream's buffer: the stream's own get looks after its state and its tied
// stream each time, which takes longer than all else that is done with an octet. At the end the
// state is set as get would set it. Inline, because it is called for each octet that is not in a
// string.

/// The next octet, or the end of the stream.
inline int XMLReader_FI::nextOctet() {
  int octet = 0;
  try {
    octet = buffer_->sbumpc();
  } catch (...) {
    return brokenStream();
  }
  if (octet == std::istream::traits_type::eof()) return endOfStream();
  ++octetsRead_;
  return octet;
}

/// The next octet, which must be there.
inline unsigned XMLReader_FI::takeOctet() {
  const int octet = nextOctet();
  if (octet == std::istream::traits_type::eof()) failAtEnd();
  return static_cast<unsigned>(octet);
}

}  // namespace Tavrin
