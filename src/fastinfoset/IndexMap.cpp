#include "IndexMap.h"

#include <algorithm>
#include <stdexcept>

#include "../xml/SaltedHash.h"
#include "../xml/SameText.h"

namespace Tavrin::fastinfoset {

namespace {

std::uint32_t hashOf(const std::string& text) {
  return static_cast<std::uint32_t>(xml::saltedHash(text));
}

template <typename Name>
std::uint32_t hashOf(const Name& name) {
  return static_cast<std::uint32_t>(
      xml::saltedHash(name.localName, name.prefix, name.namespaceName));
}

bool areSame(const std::string& a, const std::string& b) { return xml::sameText(a, b); }

template <typename Name>
bool areSame(const Name& a, const Name& b) {
  return xml::sameText(a.localName, b.localName) && xml::sameText(a.prefix, b.prefix) &&
         xml::sameText(a.namespaceName, b.namespaceName);
}

}  // namespace

std::size_t octetsOf(const std::string& text) { return text.size(); }

std::size_t octetsOf(const NameParts& name) {
  return name.prefix.size() + name.namespaceName.size() + name.localName.size();
}

template <typename Key>
IndexMap<Key>::IndexMap() = default;

template <typename Key>
IndexMap<Key>::IndexMap(std::initializer_list<value_type> entries) {
  for (const auto& [key, index] : entries) insert(key, index);
}

/// The position of an entry in entries_, or HashIndex::kNone.
template <typename Key>
std::uint32_t IndexMap<Key>::entryOf(const Key& key, std::uint32_t hash) const {
  return index_.find(hash,
                     [&](std::uint32_t entry) { return areSame(entries_[entry].first, key); });
}

template <typename Key>
const unsigned* IndexMap<Key>::find(const Key& key) const {
  // What is longer than every entry is not in the table, and need not be hashed.
  if (octetsOf(key) > longest_ || (entries_.empty() && base_ == nullptr)) return nullptr;
  const std::uint32_t hash = hashOf(key);
  if (base_ != nullptr) {
    const std::uint32_t entry = base_->entryOf(key, hash);
    if (entry != xml::HashIndex::kNone) return &base_->entries_[entry].second;
  }
  const std::uint32_t entry = entryOf(key, hash);
  return entry == xml::HashIndex::kNone ? nullptr : &entries_[entry].second;
}

template <typename Key>
void IndexMap<Key>::add(const Key& key) {
  if (!insert(key, positions())) ++withoutEntry_;
}

template <typename Key>
const unsigned* IndexMap<Key>::findOrAdd(const Key& key) {
  const std::uint32_t hash = hashOf(key);
  for (const IndexMap* const table : {base_, static_cast<const IndexMap*>(this)}) {
    const std::uint32_t entry =
        table != nullptr ? table->entryOf(key, hash) : xml::HashIndex::kNone;
    if (entry != xml::HashIndex::kNone) return &table->entries_[entry].second;
  }
  insert(key, positions(), hash);
  return nullptr;
}

template <typename Key>
void IndexMap<Key>::clear() {
  if (entries_.capacity() > kMostKept) {
    *this = IndexMap();
    return;
  }
  if (!entries_.empty()) index_.clear();
  entries_.clear();
  base_ = nullptr;
  withoutEntry_ = 0;
  longest_ = 0;
}

template <typename Key>
void IndexMap<Key>::setBase(const IndexMap& base) {
  base_ = &base;
  withoutEntry_ = base.positions();
  longest_ = base.longest_;
}

template <typename Key>
bool IndexMap<Key>::insert(const Key& key, unsigned index) {
  const std::uint32_t hash = hashOf(key);
  if (entryOf(key, hash) != xml::HashIndex::kNone) return false;
  insert(key, index, hash);
  return true;
}

template <typename Key>
void IndexMap<Key>::insert(const Key& key, unsigned index, std::uint32_t hash) {
  // Small documents are many: the first entries come with one allocation.
  if (entries_.capacity() == 0) entries_.reserve(kFirstEntries);
  entries_.emplace_back(key, index);
  try {
    index_.add(hash, static_cast<std::uint32_t>(entries_.size() - 1));
  } catch (...) {
    entries_.pop_back();
    throw;
  }
  longest_ = std::max(longest_, octetsOf(key));
}

template <typename Key>
unsigned IndexMap<Key>::at(const Key& key) const {
  const unsigned* const index = find(key);
  if (index == nullptr) throw std::out_of_range("no such entry");
  return *index;
}

template <typename Key>
bool IndexMap<Key>::operator==(const IndexMap& other) const {
  return size() == other.size() && std::ranges::all_of(entries_, [&other](const value_type& entry) {
           const unsigned* const index = other.find(entry.first);
           return index != nullptr && *index == entry.second;
         });
}

template class IndexMap<std::string>;
template class IndexMap<NameParts>;

}  // namespace Tavrin::fastinfoset
