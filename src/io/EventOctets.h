#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

#include "EventRoom.h"
#include "WriteOctets.h"

namespace Tavrin {

/// The octets of one event. They are composed in the put area of the stream's buffer, and written
/// when the whole event has been checked. Where that area is too small, they are composed in a
/// string. Measured: composing all of them elsewhere and copying them takes a third longer.
class EventOctets {
 public:
  /// @param out  null where the octets are to be kept in `rest`
  /// @param rest gets the octets that are not written; what it holds already stays
  EventOctets(std::ostream* out, std::string& rest)
      : rest_(rest), kept_(rest.size()), begin_(rest.data() + rest.size()) {
    if (out == nullptr || !isReady(*out)) return;
    const PutArea area(*out->rdbuf());
    if (area.isVisible()) return;
    buffer_ = out->rdbuf();
    begin_ = at_ = area.begin();
    end_ = begin_ + area.size();
  }
  /// An event that is neither written nor kept is discarded.
  ~EventOctets() {
    if (rest_.size() > kept_) rest_.resize(kept_);
  }
  EventOctets(const EventOctets&) = delete;
  EventOctets& operator=(const EventOctets&) = delete;

  /// Appends strings and single octets. Whether they fit is checked once for all of them.
  template <typename... Pieces>
  void append(const Pieces&... pieces) {
    const std::size_t size = (pieceSize(pieces) + ...);
    if (size > static_cast<std::size_t>(end_ - at_)) growBy(size);
    char* at = at_;
    ((at = copyPiece(at, pieces)), ...);
    at_ = at;
  }
  EventOctets& operator+=(std::string_view octets) {
    append(octets);
    return *this;
  }

  /// Room for at least so many octets more: its beginning and its end. All of it may be
  /// overwritten.
  std::pair<char*, const char*> room(std::size_t least) {
    if (least > static_cast<std::size_t>(end_ - at_)) growBy(least);
    return {at_, end_};
  }
  /// Appends the octets that stand in the room already.
  void appendUpTo(char* end) { at_ = end; }

  /// How many octets there are.
  std::size_t size() const { return static_cast<std::size_t>(at_ - begin_); }
  /// Discards all octets but the first ones.
  void truncate(std::size_t size) { at_ = begin_ + size; }

  /// Writes the octets if they are in the put area. Otherwise they stay in the string.
  void write() {
    if (buffer_ == nullptr) return keep();
    PutArea(*buffer_).advance(size());
  }
  /// Keeps the octets in the string.
  void keep();

 private:
  void growBy(std::size_t size);

  std::string& rest_;
  std::size_t kept_;                  // How many octets the string had before the event.
  std::streambuf* buffer_ = nullptr;  // Has the octets in its put area; null: the string has them.
  char* begin_;
  char* at_ = begin_;
  char* end_ = begin_;
};

}  // namespace Tavrin
