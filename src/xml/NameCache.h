#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "HashIndex.h"
#include "SaltedHash.h"
#include "SameText.h"

namespace Tavrin::xml {

/// Keeps a value for each name, by the three strings of an event. Documents use few names again and
/// again, most often in the same order: comparing three strings takes less time than checking one,
/// or than searching a table. Of names with the same qualified name, the last is kept. All names
/// may be forgotten at any time, so that the size has a limit.
template <typename Value>
class NameCache {
 public:
  /// The most names that are kept, and the most octets of one.
  static constexpr std::size_t kMost = std::size_t{1} << 14U;
  static constexpr std::size_t kLongest = 256;

  /// What is kept of a name, or null. Valid until the next change.
  Value* find(const std::string& uri, const std::string& localName, const std::string& qName) {
    if (entries_.empty()) return nullptr;
    // The name that came after the last one before is tried first.
    std::uint32_t& next = entries_[last_].next;
    if (!isSame(entries_[next], uri, localName, qName)) {
      const std::uint32_t number = search(uri, localName, qName);
      if (number == HashIndex::kNone) return nullptr;
      next = number;
    }
    last_ = next;
    return &entries_[next].value;
  }

  /// Keeps a name, unless it is a very long one.
  void put(const std::string& uri, const std::string& localName, const std::string& qName,
           Value value) {
    if (uri.size() + localName.size() + qName.size() > kLongest) return;
    Entry entry{uri, localName, qName, std::move(value)};
    std::uint32_t number = numberOf(qName);
    if (number != HashIndex::kNone) {
      entries_[number] = std::move(entry);
    } else {
      if (entries_.size() == kMost) clear();
      number = static_cast<std::uint32_t>(entries_.size());
      entries_.push_back(std::move(entry));
      index_.add(hashOf(qName), number);
    }
    last_ = entries_[last_].next = number;
  }

  void clear() {
    entries_.clear();
    index_.clear();
    last_ = 0;
  }

 private:
  struct Entry {
    std::string uri;
    std::string localName;
    std::string qName;
    Value value{};
    std::uint32_t next = 0;  // The number of the name that came after it.
  };

  static bool isSame(const Entry& entry, std::string_view uri, std::string_view localName,
                     std::string_view qName) {
    return sameText(entry.qName, qName) && sameText(entry.localName, localName) &&
           sameText(entry.uri, uri);
  }

  static std::uint32_t hashOf(std::string_view qName) {
    return static_cast<std::uint32_t>(saltedHash(qName));
  }

  /// The number of the entry with a qualified name, or kNone.
  std::uint32_t numberOf(std::string_view qName) const {
    return index_.find(hashOf(qName), [&](std::uint32_t number) {
      return sameText(entries_[number].qName, qName);
    });
  }

  // Not inline, so that the code for the common case is short.
  [[gnu::noinline]] std::uint32_t search(std::string_view uri, std::string_view localName,
                                         std::string_view qName) const {
    const std::uint32_t number = numberOf(qName);
    const bool isFound =
        number != HashIndex::kNone && isSame(entries_[number], uri, localName, qName);
    return isFound ? number : HashIndex::kNone;
  }

  std::vector<Entry> entries_;
  HashIndex index_;
  std::uint32_t last_ = 0;  // The number of the name that was found or kept last.
};

}  // namespace Tavrin::xml
