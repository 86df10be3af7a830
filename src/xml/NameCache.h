#pragma once

#include <array>
#include <cstddef>
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

  static constexpr std::size_t kPairs = 32;

  std::array<Entry, 2 * kPairs> entries_;

  /// The two places that a name may have. Names of one document differ in length or at their ends,
  /// most of the time.
  Entry* pairOf(std::string_view name) {
    const auto at = [name](std::size_t i) {
      return std::size_t{static_cast<unsigned char>(name[i])};
    };
    const std::size_t size = name.size();
    const std::size_t number =
        size == 0 ? 0 : size * 7 + at(0) + at(size / 2) * 5 + at(size - 1) * 3;
    return &entries_[2 * (number % kPairs)];
  }
};

}  // namespace Tavrin::xml
