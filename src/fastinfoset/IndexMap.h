#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "../xml/HashIndex.h"
#include "../xml/TextStore.h"
#include "format/Tables.h"

namespace Tavrin::fastinfoset {

/// The hash of a key, computed where it is first needed. Whoever looks for a key before adding it
/// keeps this, so that it is computed once.
struct KeyHash {
  std::uint32_t value = 0;  ///< 0: not computed.
};

/// A table of the vocabulary as a writer needs it: entries with their indices, from 0. Measured:
/// with std::unordered_map, writing records takes more than twice the time; with a string for each
/// part of an entry and a hash for each use, small messages take a quarter longer.
template <typename Key>
class IndexMap {
 public:
  /// How a key is given.
  using View = std::conditional_t<std::is_same_v<Key, std::string>, std::string_view, NameView>;
  using value_type = std::pair<View, unsigned int>;  ///< Entry and index.

  IndexMap();  ///< An empty table.
  /// A table of given entries.
  IndexMap(std::initializer_list<value_type> entries);
  IndexMap(IndexMap&& other) noexcept = default;
  IndexMap& operator=(IndexMap&& other) noexcept = default;
  IndexMap(const IndexMap& other);
  IndexMap& operator=(const IndexMap& other);
  ~IndexMap() = default;

  /// The index of an entry, or null where there is none. Valid until the next change.
  const unsigned int* find(View key) const {
    KeyHash hash;
    return find(key, hash);
  }
  const unsigned int* find(View key, KeyHash& hash) const;
  /// Adds an entry at the next position. Of equal entries, the first is found.
  void add(View key);
  /// Likewise, where there is none that is equal.
  void addNew(View key, KeyHash hash);
  /// Likewise, if there is none that is equal. It costs less than the two.
  /// @return the index of an equal one, or null where the entry was added
  const unsigned int* findOrAdd(View key);
  /// Puts the entries of another table before all others; this one must be empty. That costs the
  /// same whatever their number.
  /// @param base does not change, and outlives this table
  void setBase(const IndexMap& base);
  /// Leaves positions without an entry.
  void skip(unsigned int count) { withoutEntry_ += count; }
  /// The number of positions, which is the index of the next entry.
  unsigned int positions() const {
    return static_cast<unsigned int>(entries_.size()) + withoutEntry_;
  }
  /// The index of an entry.
  /// @throws std::out_of_range where there is none
  unsigned int at(View key) const;
  /// How many entries there are, without those of a base.
  std::size_t size() const { return entries_.size(); }
  /// Whether there are none.
  bool empty() const { return entries_.empty(); }
  /// Empties the table. It keeps some memory, which small documents need again.
  void clear();

  /// Whether the entries and their indices are the same, in any order.
  bool operator==(const IndexMap& other) const;

 private:
  static constexpr std::size_t kFirstEntries = 32;
  static constexpr std::size_t kMostKept = 256;  // Entries.

  bool insert(View key, unsigned int index);
  void insert(View key, unsigned int index, std::uint32_t hash);
  std::uint32_t entryOf(View key, std::uint32_t hash) const;

  std::vector<value_type> entries_;  // In the order of insertion.
  xml::TextStore texts_;             // Of the entries.
  xml::HashIndex index_;             // Finds positions in entries_.
  const IndexMap* base_ = nullptr;
  unsigned int withoutEntry_ = 0;  // Positions; those of the base are among them.
  std::size_t longest_ = 0;        // Octets.
};

using StringIndexMap = IndexMap<std::string>;
using NameIndexMap = IndexMap<NameParts>;

}  // namespace Tavrin::fastinfoset
