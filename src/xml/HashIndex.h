#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace Tavrin::xml {

/// Finds numbered entries, which its owner keeps, by hashes of their keys: open addressing with
/// linear probing. The hashes are salted, so that a document cannot make a search long.
class HashIndex {
 public:
  static constexpr std::uint32_t kNone = ~std::uint32_t{0};

  /// The number of an entry, or kNone.
  /// @param isSame is called with the number of an entry that has this hash
  template <typename IsSame>
  std::uint32_t find(std::uint32_t hash, IsSame isSame) const {
    if (slots_.empty()) return kNone;
    for (std::size_t place = hash;; ++place) {
      const Slot& slot = slots_[place & (slots_.size() - 1)];
      const bool isFound = slot.hash == hash && slot.number != kNone && isSame(slot.number);
      if (isFound || slot.number == kNone) return slot.number;
    }
  }

  /// Adds an entry, which find does not find yet.
  void add(std::uint32_t hash, std::uint32_t number) {
    if (slots_.size() <= 2 * count_) grow();
    enter({hash, number});
    ++count_;
  }

  /// Removes all entries. The memory is kept.
  void clear() {
    std::ranges::fill(slots_, Slot{});
    count_ = 0;
  }

 private:
  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t number = kNone;  // kNone: the slot is empty.
  };

  void enter(Slot entry) {
    std::size_t place = entry.hash;
    while (slots_[place & (slots_.size() - 1)].number != kNone) ++place;
    slots_[place & (slots_.size() - 1)] = entry;
  }

  void grow() {
    // Small documents fill small tables: these are not entered again and again.
    constexpr std::size_t kFirstSlots = 64;
    constexpr std::size_t kFewSlots = 1024;
    const std::size_t factor = slots_.size() < kFewSlots ? 4 : 2;
    std::vector<Slot> larger(std::max(kFirstSlots, factor * slots_.size()));
    std::swap(slots_, larger);
    for (const Slot& slot : larger) {
      if (slot.number != kNone) enter(slot);
    }
  }

  std::vector<Slot> slots_;  // None, or a power of two, at most half of them taken.
  std::size_t count_ = 0;
};

}  // namespace Tavrin::xml
