#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "../xml/HashIndex.h"
#include "format/Tables.h"

namespace Tavrin::fastinfoset {

std::size_t octetsOf(const std::string& text);  ///< Octets of a string.
std::size_t octetsOf(const NameParts& name);    ///< Octets of all parts.

/// A table of the vocabulary as a writer needs it: entries with their indices, from 0. Measured:
/// with std::unordered_map, writing records takes more than twice the time.
template <typename Key>
class IndexMap {
 public:
  using value_type = std::pair<Key, unsigned int>;          ///< Entry and index.
  using Entries = std::vector<value_type>;                  ///< How they are kept.
  using const_iterator = typename Entries::const_iterator;  ///< In the order of insertion.
  using iterator = const_iterator;                          ///< In the order of insertion.

  IndexMap();  ///< An empty table.
  /// A table of given entries.
  IndexMap(std::initializer_list<value_type> entries);

  /// The index of an entry, or null where there is none. Valid until the next change.
  const unsigned int* find(const Key& key) const;
  /// Adds an entry at the next position. Of equal entries, the first is found.
  void add(const Key& key);
  /// Likewise, where there is none that is equal. It costs less than the two.
  /// @return the index of an equal one, or null where the entry was added
  const unsigned int* findOrAdd(const Key& key);
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
  unsigned int at(const Key& key) const;
  /// How many entries there are, without those of a base.
  std::size_t size() const { return entries_.size(); }
  /// Whether there are none.
  bool empty() const { return entries_.empty(); }
  /// Empties the table. It keeps some memory, which small documents need again.
  void clear();

  const_iterator begin() const { return entries_.begin(); }  ///< The first entry.
  const_iterator end() const { return entries_.end(); }      ///< After the last entry.
  /// Whether the entries and their indices are the same, in any order.
  bool operator==(const IndexMap& other) const;

 private:
  static constexpr std::size_t kFirstEntries = 16;
  static constexpr std::size_t kMostKept = 256;  // Entries.

  bool insert(const Key& key, unsigned int index);
  void insert(const Key& key, unsigned int index, std::uint32_t hash);
  std::uint32_t entryOf(const Key& key, std::uint32_t hash) const;

  Entries entries_;
  xml::HashIndex index_;  // Finds positions in entries_.
  const IndexMap* base_ = nullptr;
  unsigned int withoutEntry_ = 0;  // Positions; those of the base are among them.
  std::size_t longest_ = 0;        // Octets.
};

using StringIndexMap = IndexMap<std::string>;
using NameIndexMap = IndexMap<NameParts>;

}  // namespace Tavrin::fastinfoset
