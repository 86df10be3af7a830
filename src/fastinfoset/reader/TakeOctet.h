#pragma once

#include <Tavrin/XMLReader_FI.h>

#include <climits>
#include <cstdint>
#include <streambuf>
#include <string>

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

/// Takes octets that are in the stream's buffer already, as its `sgetn` would.
/// @return where they are, until the next octet is taken; or null where not all of them are in the
///         buffer: nothing has happened then
inline const char* XMLReader_FI::takeBuffered(std::uint64_t length) {
  // Names the protected members of a buffer.
  struct Members : std::streambuf {
    using Get = char* (std::streambuf::*)() const;
    static constexpr Get next() { return &Members::gptr; }
    static constexpr Get end() { return &Members::egptr; }
    static constexpr void (std::streambuf::*advance())(int) { return &Members::gbump; }
  };
  const char* const next = (buffer_->*Members::next())();
  const auto buffered = static_cast<std::uint64_t>((buffer_->*Members::end())() - next);
  if (next == nullptr || length > buffered || length > INT_MAX) return nullptr;
  (buffer_->*Members::advance())(static_cast<int>(length));
  octetsRead_ += length;
  return next;
}

/// The next octet, which must be there.
inline unsigned XMLReader_FI::takeOctet() {
  const int octet = nextOctet();
  if (octet == std::istream::traits_type::eof()) failAtEnd();
  return static_cast<unsigned>(octet);
}

}  // namespace Tavrin
