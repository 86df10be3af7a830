#pragma once

#include <cstddef>
#include <ostream>
#include <string_view>

#include "CopyOctets.h"
#include "WriteOctets.h"

namespace Tavrin {

inline std::size_t pieceSize(char) { return 1; }
inline std::size_t pieceSize(std::string_view octets) { return octets.size(); }

// These return the end of the copy.
inline char* copyPiece(char* to, char octet) {
  *to = octet;
  return to + 1;
}
inline char* copyPiece(char* to, std::string_view octets) { return copyOctets(to, octets); }

/// Copies strings and single octets.
/// @param end of the room
/// @return the end of the copy, or null where there is too little room: then nothing is copied
template <typename... Pieces>
char* copyPieces(char* to, const char* end, const Pieces&... pieces) {
  const std::size_t size = (pieceSize(pieces) + ...);
  if (size > static_cast<std::size_t>(end - to)) return nullptr;
  ((to = copyPiece(to, pieces)), ...);
  return to;
}

/// The put area of a stream's buffer as the room for the octets of one event. They are put when the
/// whole event has been checked. Measured: composing them elsewhere and copying them takes a third
/// longer.
class EventRoom {
 public:
  /// @param out may be null
  explicit EventRoom(std::ostream* out) {
    if (out == nullptr || !isReady(*out)) return;
    const PutArea area(*out->rdbuf());
    if (area.isVisible()) return;
    buffer_ = out->rdbuf();
    begin_ = area.begin();
    end_ = begin_ + area.size();
  }

  /// The room; of no octets where the stream has none. All of it may be overwritten.
  char* begin() const { return begin_; }
  const char* end() const { return end_; }
  std::size_t size() const { return static_cast<std::size_t>(end_ - begin_); }

  /// Puts the octets from the beginning of the room up to here.
  void put(const char* end) const {
    PutArea(*buffer_).advance(static_cast<std::size_t>(end - begin_));
  }

 private:
  std::streambuf* buffer_ = nullptr;
  char* begin_ = nullptr;
  const char* end_ = nullptr;
};

}  // namespace Tavrin
