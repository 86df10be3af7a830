#pragma once

#include <Tavrin/XMLReader_FI.h>

#include <climits>
#include <cstdint>
#include <streambuf>
#include <string>

namespace Tavrin {

// The stream's own get looks after its tied stream each time and counts, which takes longer than
// all else that is done with an octet: a dialect may take octets from the stream's buffer. It obeys
// the state of the stream and the buffer that it has at the time, too, and at the end the state is
// set as get would set it. Inline, because it is called for each octet that is not in a string.

/// The next octet, or the end of the stream.
inline int XMLReader_FI::nextOctet() {
  if (callsGet_) return stream_->get();
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
inline const char* XMLReader_FI::takeBuffered(std::uint64_t length) {
  // Names the protected members of a buffer.
  struct Members : std::streambuf {
    using Get = char* (std::streambuf::*)() const;
    static constexpr Get next() { return &Members::gptr; }
    static constexpr Get end() { return &Members::egptr; }
    static constexpr void (std::streambuf::*advance())(int) { return &Members::gbump; }
  };
  if (callsGet_) return nullptr;
  std::streambuf* const buffer = source_->rdbuf();
  const char* const next = (buffer->*Members::next())();
  const auto buffered = static_cast<std::uint64_t>((buffer->*Members::end())() - next);
  if (next == nullptr || length > buffered || length > INT_MAX) return nullptr;
  (buffer->*Members::advance())(static_cast<int>(length));
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
