#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <string>
#include <string_view>

#include "WriteOctets.h"

namespace Tavrin {

/// The octets of one event. They are composed where they are to be, in the room of the stream's
/// buffer, and are written when all of the event is known to be right. Measured: composing them
/// elsewhere and copying them takes a XXX longer.
class EventOctets {
 public:
  /// @param out  null where the octets are kept
  /// @param rest takes all octets where the stream has no room for them, and those that are kept;
  ///             what it holds already stands in front of the event
  EventOctets(std::ostream* out, std::string& rest) : rest_(rest), inFront_(rest.size()) {
    if (out == nullptr || !isReady(*out)) return;
    buffer_ = out->rdbuf();
    const Room room(*buffer_);
    if (room.isVisible()) return;
    begin_ = at_ = room.begin();
    end_ = begin_ + room.size();
  }
  /// An event that is neither written nor kept is gone.
  ~EventOctets() {
    if (!isDone_ && rest_.size() != inFront_) truncate(0);
  }
  EventOctets(const EventOctets&) = delete;
  EventOctets& operator=(const EventOctets&) = delete;

  /// Appends pieces, strings and single octets, for which room is looked after together.
  template <typename... Pieces>
  void append(const Pieces&... pieces) {
    if ((sizeOf(pieces) + ...) > static_cast<std::size_t>(end_ - at_)) {
      (appendToRest(pieces), ...);
      return;
    }
    char* at = at_;
    ((at = copy(at, pieces)), ...);
    at_ = at;
  }
  EventOctets& operator+=(std::string_view octets) {
    append(octets);
    return *this;
  }

  /// How many octets there are.
  std::size_t size() const {
    return static_cast<std::size_t>(at_ - begin_) + rest_.size() - inFront_;
  }
  /// Takes back all octets but so many.
  void truncate(std::size_t size);

  /// Writes the octets if they stand where they are to be. Otherwise, leaves them in the string.
  void write() {
    if (at_ == begin_) return keep();
    Room(*buffer_).take(static_cast<std::size_t>(at_ - begin_));
    isDone_ = true;
  }
  /// Leaves the octets in the string.
  void keep();

 private:
  void appendToRest(std::string_view octets);
  void appendToRest(char octet) { appendToRest(std::string_view(&octet, 1)); }

  static std::size_t sizeOf(char) { return 1; }
  static std::size_t sizeOf(std::string_view octets) { return octets.size(); }

  /// Each returns where the copy ends. A call of the C library takes longer than the copy of a
  /// short piece.
  static char* copy(char* to, char octet) {
    *to = octet;
    return to + 1;
  }
  static char* copy(char* to, std::string_view octets) {
    const std::size_t size = octets.size();
    const char* const from = octets.data();
    // Words, of which the last may overlap the one in front of it.
    const auto copyWord = [to, from](auto word, std::size_t at) {
      std::memcpy(&word, from + at, sizeof word);
      std::memcpy(to + at, &word, sizeof word);
    };
    constexpr std::size_t kLong = sizeof(std::uint64_t);
    constexpr std::size_t kShort = sizeof(std::uint32_t);
    if (size > 2 * kLong) {
      std::memcpy(to, from, size);
    } else if (size >= kLong) {
      copyWord(std::uint64_t{}, 0);
      copyWord(std::uint64_t{}, size - kLong);
    } else if (size >= kShort) {
      copyWord(std::uint32_t{}, 0);
      copyWord(std::uint32_t{}, size - kShort);
    } else {
      for (std::size_t i = 0; i < size; ++i) to[i] = from[i];
    }
    return to + size;
  }

  std::string& rest_;
  std::size_t inFront_;
  bool isDone_ = false;  // Written or kept.
  std::streambuf* buffer_ = nullptr;
  // Octets in the room. When it gets too small, all of them go over to the string.
  char* begin_ = nullptr;
  char* at_ = nullptr;
  char* end_ = nullptr;
};

}  // namespace Tavrin
