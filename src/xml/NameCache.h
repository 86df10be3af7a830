#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "SameText.h"

namespace Tavrin::xml {

/// What was found out about names, by the three strings that an event gives. Documents use few names
/// again and again: comparing three strings takes less time than checking one, or than a table that
/// must find every entry. It grows with the names that come, up to a limit, and may forget a name at
/// any time: names with the same place, by chance or by design, replace one another instead of
/// making a search long.
template <typename Value>
class NameCache {
 public:
  /// The most names that are kept, and the most octets of one.
  static constexpr std::size_t kMost = std::size_t{1} << 14U;
  static constexpr std::size_t kLongest = 256;

  /// What is kept of a name, or null. Valid until the next change.
  Value* find(const std::string& uri, const std::string& localName, const std::string& qName) {
    if (entries_.empty()) return nullptr;
    // Names follow one another as they did before.
    std::uint32_t& next = entries_[last_].next;
    if (!isSame(entries_[next], uri, localName, qName)) {
      const std::uint32_t number = search(uri, localName, qName);
      if (number == kNone) return nullptr;
      next = number;
    }
    last_ = next;
    return &entries_[next].value;
  }

  /// Keeps a name, unless it is a very long one.
  void put(const std::string& uri, const std::string& localName, const std::string& qName,
           Value value) {
    if (uri.size() + localName.size() + qName.size() > kLongest) return;
    if (Value* const known = find(uri, localName, qName)) {
      *known = std::move(value);
      return;
    }
    if (entries_.size() == kMost) clear();
    if (slots_.size() < 2 * (entries_.size() + 1)) grow();
    const std::uint32_t number = enter({uri, localName, qName, std::move(value)});
    last_ = entries_[last_].next = number;
  }

  void clear() {
    entries_.clear();
    last_ = 0;
    std::ranges::fill(slots_, Slot{});
  }

 private:
  struct Entry {
    std::string uri;
    std::string localName;
    std::string qName;
    Value value{};
    std::uint32_t next = 0;  // The number of the name that came after it.
  };

  static constexpr std::uint32_t kNone = ~std::uint32_t{0};

  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t number = kNone;  // Of the entry.
  };

  /// So many slots are searched for a name.
  static constexpr std::size_t kTries = 8;

  std::vector<Entry> entries_;
  std::vector<Slot> slots_;  // None, or a power of two, at most half of them taken.
  unsigned shift_ = 0;       // Leaves of a hash the number of a slot.

  std::uint32_t last_ = 0;  // The number of the name that was found or put last.

  static bool isSame(const Entry& entry, std::string_view uri, std::string_view localName,
                     std::string_view qName) {
    return sameText(entry.qName, qName) && sameText(entry.localName, localName) &&
           sameText(entry.uri, uri);
  }

  // Apart from what finds the common name, which is to be short.
  [[gnu::noinline]] std::uint32_t search(std::string_view uri, std::string_view localName,
                                         std::string_view qName) {
    const std::uint32_t hash = hashOf(qName);
    for (std::size_t attempt = 0; attempt < kTries; ++attempt) {
      const Slot& slot = slotOf(hash, attempt);
      if (slot.number == kNone) break;
      if (slot.hash == hash && isSame(entries_[slot.number], uri, localName, qName)) {
        return slot.number;
      }
    }
    return kNone;
  }

  Slot& slotOf(std::uint32_t hash, std::size_t attempt) {
    return slots_[((hash >> shift_) + attempt) & (slots_.size() - 1)];
  }

  /// An empty slot, or that of a name which goes.
  Slot& slotFor(std::uint32_t hash) {
    std::size_t attempt = 0;
    while (attempt < kTries - 1 && slotOf(hash, attempt).number != kNone) ++attempt;
    return slotOf(hash, attempt);
  }

  /// Enters a name that is not found. Another one may go for it, wholly: a name has one entry.
  std::uint32_t enter(Entry entry) {
    const std::uint32_t hash = hashOf(entry.qName);
    Slot& slot = slotFor(hash);
    slot.hash = hash;
    if (slot.number == kNone) {
      entries_.push_back(std::move(entry));
      slot.number = static_cast<std::uint32_t>(entries_.size() - 1);
    } else {
      entries_[slot.number] = std::move(entry);
    }
    return slot.number;
  }

  void grow() {
    constexpr std::size_t kFirstSlots = 32;
    slots_.assign(std::max(kFirstSlots, 2 * slots_.size()), Slot{});
    shift_ = 32U - static_cast<unsigned>(std::countr_zero(slots_.size()));
    last_ = 0;
    std::vector<Entry> old = std::exchange(entries_, {});
    entries_.reserve(slots_.size() / 2);  // Where memory runs out, all names are forgotten.
    for (Entry& entry : old) {
      entry.next = 0;
      enter(std::move(entry));
    }
  }

  static std::uint32_t hashOf(std::string_view name) {
    constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15;
    constexpr std::size_t kWord = sizeof(std::uint64_t);
    constexpr std::size_t kHalf = kWord / 2;
    const std::size_t size = name.size();
    const auto wordAt = [name](std::size_t at, auto word) {
      std::memcpy(&word, name.data() + at, sizeof word);
      return std::uint64_t{word};
    };
    std::uint64_t hash = size * kFactor;
    if (size >= kWord) {
      for (std::size_t i = 0; i < size - kWord; i += kWord) {
        hash = (hash ^ wordAt(i, std::uint64_t{})) * kFactor;
        hash ^= hash >> 32U;
      }
      hash ^= wordAt(size - kWord, std::uint64_t{});
    } else if (size >= kHalf) {
      hash ^= wordAt(0, std::uint32_t{}) | wordAt(size - kHalf, std::uint32_t{}) << 32U;
    } else if (size > 0) {
      hash ^= wordAt(0, std::uint8_t{}) | wordAt(size / 2, std::uint8_t{}) << 8U |
              wordAt(size - 1, std::uint8_t{}) << 16U;
    }
    // The high bits of the product depend on all others (Fibonacci hashing).
    return static_cast<std::uint32_t>((hash * kFactor) >> 32U);
  }
};

}  // namespace Tavrin::xml
