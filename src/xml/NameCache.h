#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "SameText.h"

namespace Tavrin::xml {

/// What was found out about names, by all that an event says of them. Documents use few names again
/// and again: comparing three strings takes less time than looking at one closely, or than a table
/// that has a place for every name. It forgets a name where another one takes its place.
template <typename Value>
class NameCache {
 public:
  /// Of more names at once, none should be put in: they would only drive one another out.
  static constexpr std::size_t kMost = 64;

  /// What is kept of a name, or null.
  Value* find(const std::string& uri, const std::string& localName, const std::string& qName) {
    Entry* const pair = pairOf(qName);
    for (Entry* entry = pair; entry != pair + 2; ++entry) {
      if (entry->isTaken && sameText(entry->qName, qName) &&
          sameText(entry->localName, localName) && sameText(entry->uri, uri)) {
        return &entry->value;
      }
    }
    return nullptr;
  }
  void put(const std::string& uri, const std::string& localName, const std::string& qName,
           Value value) {
    Entry* const pair = pairOf(qName);
    if (pair->isTaken) std::swap(pair[0], pair[1]);  // The older one goes.
    *pair = {true, uri, localName, qName, std::move(value)};
  }
  void clear() {
    for (Entry& entry : entries_) entry.isTaken = false;
  }

 private:
  struct Entry {
    bool isTaken = false;
    std::string uri;
    std::string localName;
    std::string qName;
    Value value{};
  };

  static constexpr unsigned kPairBits = 5;  // Of the number of a pair.

  std::array<Entry, kMost> entries_;

  /// The two places that a name may have. Names of one document differ in length or at their ends,
  /// most of the time.
  Entry* pairOf(std::string_view name) {
    const auto at = [name](std::size_t i) {
      return std::uint32_t{static_cast<unsigned char>(name[i])};
    };
    const std::size_t size = name.size();
    if (size == 0) return entries_.data();
    const std::uint32_t octets = at(0) | at(size / 2) << 8U | at(size - 1) << 16U;
    // The high bits of the product depend on all others (Fibonacci hashing).
    const std::uint32_t mixed = (octets ^ static_cast<std::uint32_t>(size) << 24U) * 0x9E3779B1U;
    return &entries_[std::size_t{2} * (mixed >> (32U - kPairBits))];
  }
};

}  // namespace Tavrin::xml
