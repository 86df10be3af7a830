#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

namespace Tavrin::text {

/// The octets of a document that have come and are to be scanned, in one piece: those of a token
/// that is not complete, and what follows.
class WaitingOctets {
 public:
  std::string_view all() const { return {octets_.get() + begin_, end_ - begin_}; }
  bool isEmpty() const { return begin_ == end_; }

  /// Room for more octets behind the others.
  char* roomFor(std::size_t size) {
    if (capacity_ - end_ < size) makeRoom(size);
    return octets_.get() + end_;
  }
  /// Adds what has been written there.
  void add(std::size_t size) { end_ += size; }
  void append(const char* octets, std::size_t size) {
    if (size == 0) return;
    std::memcpy(roomFor(size), octets, size);
    add(size);
  }

  /// Drops all others.
  /// @param rest the last ones of `all`, or the only ones that wait
  void keep(std::string_view rest) {
    if (rest.empty()) {
      begin_ = end_ = 0;
    } else if (isEmpty()) {
      append(rest.data(), rest.size());
    } else {
      begin_ = end_ - rest.size();
    }
  }

 private:
  void makeRoom(std::size_t size) {
    const std::size_t used = end_ - begin_;
    // Each octet is moved a few times at most.
    if (capacity_ - used >= size && begin_ >= used) {
      std::memmove(octets_.get(), octets_.get() + begin_, used);
    } else {
      const std::size_t capacity = used == 0 ? size : 2 * used + size;
      std::unique_ptr<char[]> larger(new char[capacity]);
      if (used > 0) std::memcpy(larger.get(), octets_.get() + begin_, used);
      octets_ = std::move(larger);
      capacity_ = capacity;
    }
    begin_ = 0;
    end_ = used;
  }

  std::unique_ptr<char[]> octets_;
  std::size_t capacity_ = 0;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
};

}  // namespace Tavrin::text
