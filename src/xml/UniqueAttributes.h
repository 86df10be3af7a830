#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "SaltedHash.h"
#include "SameText.h"

namespace Tavrin::xml {

/// Finds attributes that are given twice in a start tag (Namespaces in XML, section 6.3), however
/// many there are. A name is looked up once; the caller keeps its number with it.
class UniqueAttributes {
 public:
  /// A name that has no number yet.
  static constexpr std::size_t kUnknown = 0;

  /// The number of a namespace name and local name, the same for the same two.
  std::size_t number(std::string_view uri, std::string_view localName) {
    if (slots_.size() <= 2 * names_.size()) grow();
    const auto hash = static_cast<std::uint32_t>(hashOf(uri, localName));
    Slot& slot = slotOf(hash, [&](std::uint32_t number) {
      const Name& name = names_[number];
      return sameText(name.localName, localName) && sameText(name.uri, uri);
    });
    if (slot.number == kUnknown) {
      constexpr std::size_t kOfEntry = 128;
      // Where memory runs out, the name has no number yet.
      lastTags_.resize(names_.size() + 1);
      names_.push_back({std::string(uri), std::string(localName)});
      slot = {hash, static_cast<std::uint32_t>(names_.size() - 1)};
      octets_ += uri.size() + localName.size() + kOfEntry;
    }
    return slot.number;
  }
  /// How many numbers were given.
  std::size_t size() const { return names_.empty() ? 0 : names_.size() - 1; }
  /// About how many octets of memory they take.
  std::size_t octets() const { return octets_; }

  void beginTag() { ++tag_; }
  /// Notes an attribute of the tag. Returns whether it is the first with its number.
  bool take(std::size_t number) { return std::exchange(lastTags_[number], tag_) != tag_; }

 private:
  struct Name {
    std::string uri;
    std::string localName;
  };
  struct Slot {
    std::uint32_t hash;
    std::uint32_t number;  // kUnknown: it is empty.
  };

  static std::uint64_t hashOf(std::string_view uri, std::string_view localName) {
    const auto [begin, factor] = hashSecret();
    return xml::hashOf(uri, xml::hashOf(localName, begin, factor), factor);
  }

  template <typename IsSame>
  Slot& slotOf(std::uint32_t hash, IsSame isSame) {
    const std::size_t mask = slots_.size() - 1;
    std::size_t place = hash & mask;
    while (slots_[place].number != kUnknown &&
           (slots_[place].hash != hash || !isSame(slots_[place].number))) {
      place = (place + 1) & mask;
    }
    return slots_[place];
  }

  void grow() {
    constexpr std::size_t kFirstSlots = 16;
    constexpr std::size_t kFirstNames = kFirstSlots / 2;
    if (names_.empty()) {
      lastTags_.reserve(kFirstNames);
      names_.emplace_back();  // None has the number kUnknown.
      lastTags_.push_back(0);
    }
    const std::vector<Slot> old = std::exchange(
        slots_, std::vector<Slot>(std::max(kFirstSlots, 2 * slots_.size()), Slot{0, kUnknown}));
    for (const Slot& slot : old) {
      if (slot.number == kUnknown) continue;
      slotOf(slot.hash, [](std::uint32_t) { return false; }) = slot;
    }
  }

  std::deque<Name> names_;               // By number.
  std::vector<std::uint64_t> lastTags_;  // By number: the last tag that had it.
  std::vector<Slot> slots_;              // A power of two, at most half of them taken.
  std::uint64_t tag_ = 1;
  std::size_t octets_ = 0;
};

}  // namespace Tavrin::xml
