#pragma once

#include "Decoder.h"

#include <algorithm>
#include <cstdint>
#include <streambuf>
#include <string>

// Octets of a stated length are taken as they arrive: what a document claims never decides how much
// memory is taken.

namespace Tavrin::fastinfoset {

/// A string grows by at most this, or by as much as has arrived.
inline constexpr std::uint64_t kFirstPiece = std::uint64_t{64} * 1024;

/// Whether taking memory for this many octets is no more than what a small document may cause, or
/// less than what the stream's buffer says that it has.
inline bool Decoder::haveArrived(std::uint64_t length) {
  if (length <= kFirstPiece) return true;
  const std::streamsize there = source_->rdbuf()->in_avail();
  return there > 0 && static_cast<std::uint64_t>(there) >= length;
}

/// Replaces a string by the next octets.
/// @param read called as read(char* octets, std::streamsize wanted); returns how many it got
template <typename Read>
void Decoder::readPieces(std::uint64_t length, std::string& octets, Read read) {
  std::uint64_t begin = 0;
  while (begin < length) {
    const std::uint64_t left = length - begin;
    const std::uint64_t piece =
        haveArrived(left) ? left : std::min(left, std::max(begin, kFirstPiece));
    octets.resize(begin + piece);
    const auto wanted = static_cast<std::streamsize>(piece);
    const std::streamsize got = read(octets.data() + begin, wanted);
    octetsRead_ += static_cast<std::uint64_t>(got);
    if (got != wanted) failAtEnd();
    begin += piece;
  }
  octets.resize(length);
}

}  // namespace Tavrin::fastinfoset
