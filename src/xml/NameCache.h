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
    Entry& entry = entries_[placeOf(qName)];
    const bool isThat = entry.isTaken && sameText(entry.qName, qName) &&
                        sameText(entry.localName, localName) && sameText(entry.uri, uri);
    return isThat ? &entry.value : nullptr;
  }
  void put(const std::string& uri, const std::string& localName, const std::string& qName,
           Value value) {
    entries_[placeOf(qName)] = {true, uri, localName, qName, std::move(value)};
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

  std::array<Entry, 64> entries_;

  /// Names of one document differ in length or at their ends, most of the time.
  std::size_t placeOf(std::string_view name) const {
    const auto at = [name](std::size_t i) {
      return std::size_t{static_cast<unsigned char>(name[i])};
    };
    const std::size_t size = name.size();
    if (size == 0) return 0;
    return (size * 7 + at(0) + at(size / 2) * 5 + at(size - 1) * 3) % entries_.size();
  }
};

}  // namespace Tavrin::xml
