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
#include "TextStore.h"

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
    const std::uint32_t hash = hashOf(qName);
    std::uint32_t number = numberOf(qName, hash);
    if (number != HashIndex::kNone) {
      Entry& known = entries_[number];
      if (isSame(known, uri, localName, qName)) {
        known.value = std::move(value);
        last_ = entries_[last_].next = number;
        return;
      }
    }
    if (entries_.size() == kMost || unused_ > kMostUnused) {
      clear();
      number = HashIndex::kNone;
    }
    if (entries_.capacity() == 0) entries_.reserve(kFirst);
    Entry entry = keep(uri, localName, qName, std::move(value));
    if (number != HashIndex::kNone) {
      Entry& other = entries_[number];
      unused_ += other.uri.size() + other.localName.size() + other.qName.size();
      entry.next = other.next;
      other = std::move(entry);
    } else {
      number = static_cast<std::uint32_t>(entries_.size());
      entries_.push_back(std::move(entry));
      try {
        index_.add(hash, number);
      } catch (...) {
        entries_.pop_back();
        throw;
      }
    }
    last_ = entries_[last_].next = number;
  }

  void clear() {
    entries_.clear();
    index_.clear();
    texts_.clear();
    unused_ = 0;
    last_ = 0;
  }

 private:
  static constexpr std::size_t kFirst = 32;
  static constexpr std::size_t kMostUnused = std::size_t{1} << 14U;

  struct Entry {
    std::string_view uri;
    std::string_view localName;
    std::string_view qName;
    Value value{};
    std::uint32_t next = 0;  // The number of the name that came after it.
  };

  static bool isSame(const Entry& entry, std::string_view uri, std::string_view localName,
                     std::string_view qName) {
    return sameText(entry.qName, qName) && sameText(entry.localName, localName) &&
           sameText(entry.uri, uri);
  }

  /// Keeps the texts of an entry. A local name is the end of the qualified name, in most cases, and
  /// the namespace that of the name before it.
  Entry keep(std::string_view uri, std::string_view localName, std::string_view qName,
             Value value) {
    Entry entry;
    entry.qName = texts_.keep(qName);
    const bool isEnd = qName.ends_with(localName);
    entry.localName =
        isEnd ? entry.qName.substr(qName.size() - localName.size()) : texts_.keep(localName);
    const bool isSameURI = !entries_.empty() && sameText(entries_.back().uri, uri);
    entry.uri = isSameURI ? entries_.back().uri : texts_.keep(uri);
    entry.value = std::move(value);
    return entry;
  }

  static std::uint32_t hashOf(std::string_view qName) {
    return static_cast<std::uint32_t>(saltedHash(qName));
  }

  /// The number of the entry with a qualified name, or kNone.
  std::uint32_t numberOf(std::string_view qName, std::uint32_t hash) const {
    return index_.find(
        hash, [&](std::uint32_t number) { return sameText(entries_[number].qName, qName); });
  }

  // Not inline, so that the code for the common case is short.
  [[gnu::noinline]] std::uint32_t search(std::string_view uri, std::string_view localName,
                                         std::string_view qName) const {
    const std::uint32_t number = numberOf(qName, hashOf(qName));
    const bool isFound =
        number != HashIndex::kNone && isSame(entries_[number], uri, localName, qName);
    return isFound ? number : HashIndex::kNone;
  }

  std::vector<Entry> entries_;
  HashIndex index_;
  TextStore texts_;
  std::size_t unused_ = 0;  // Octets of names that were replaced, at most.
  std::uint32_t last_ = 0;  // The number of the name that was found or kept last.
};

}  // namespace Tavrin::xml
