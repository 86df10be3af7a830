#include "IndexMap.h"

#include <algorithm>
#include <stdexcept>

#include "../xml/SaltedHash.h"
#include "../xml/SameText.h"

namespace Tavrin::fastinfoset {

namespace {

std::uint32_t hashOf(std::string_view text) {
  return static_cast<std::uint32_t>(xml::saltedHash(text));
}

std::uint32_t hashOf(const NameView& name) {
  return static_cast<std::uint32_t>(
      xml::saltedHash(name.localName, name.prefix, name.namespaceName));
}

template <typename View>
std::uint32_t hashOf(const View& key, KeyHash& hash) {
  // The one key in four thousand million that has the hash 0 gets another one.
  if (hash.value == 0) hash.value = std::max<std::uint32_t>(1, hashOf(key));
  return hash.value;
}

bool areSame(std::string_view a, std::string_view b) { return xml::sameText(a, b); }

bool areSame(const NameView& a, const NameView& b) {
  return xml::sameText(a.localName, b.localName) && xml::sameText(a.prefix, b.prefix) &&
         xml::sameText(a.namespaceName, b.namespaceName);
}

std::size_t octetsOf(std::string_view text) { return text.size(); }

std::size_t octetsOf(const NameView& name) {
  return name.prefix.size() + name.namespaceName.size() + name.localName.size();
}

std::string_view keep(xml::TextStore& texts, std::string_view text, std::string_view) {
  return texts.keep(text);
}

/// Keeps the parts of a name, but not the namespace of the name before it once more.
NameView keep(xml::TextStore& texts, const NameView& name, const NameView& last) {
  const bool isSame = xml::sameText(name.namespaceName, last.namespaceName);
  return {texts.keep(name.prefix), isSame ? last.namespaceName : texts.keep(name.namespaceName),
          texts.keep(name.localName)};
}

}  // namespace

template <typename Key>
IndexMap<Key>::IndexMap() = default;

template <typename Key>
IndexMap<Key>::IndexMap(std::initializer_list<value_type> entries) {
  for (const auto& [key, index] : entries) insert(key, index);
}

template <typename Key>
IndexMap<Key>::IndexMap(const IndexMap& other)
    : base_(other.base_), withoutEntry_(other.withoutEntry_), longest_(other.longest_) {
  for (const auto& [key, index] : other.entries_) insert(key, index);
}

template <typename Key>
IndexMap<Key>& IndexMap<Key>::operator=(const IndexMap& other) {
  if (this != &other) *this = IndexMap(other);
  return *this;
}

/// The position of an entry in entries_, or HashIndex::kNone.
template <typename Key>
std::uint32_t IndexMap<Key>::entryOf(View key, std::uint32_t hash) const {
  return index_.find(hash,
                     [&](std::uint32_t entry) { return areSame(entries_[entry].first, key); });
}

template <typename Key>
const unsigned* IndexMap<Key>::find(View key, KeyHash& hash) const {
  // What is longer than every entry is not in the table, and need not be hashed.
  if (octetsOf(key) > longest_ || (entries_.empty() && base_ == nullptr)) return nullptr;
  const std::uint32_t keyHash = hashOf(key, hash);
  if (base_ != nullptr) {
    const std::uint32_t entry = base_->entryOf(key, keyHash);
    if (entry != xml::HashIndex::kNone) return &base_->entries_[entry].second;
  }
  const std::uint32_t entry = entryOf(key, keyHash);
  return entry == xml::HashIndex::kNone ? nullptr : &entries_[entry].second;
}

template <typename Key>
void IndexMap<Key>::add(View key) {
  if (!insert(key, positions())) ++withoutEntry_;
}

template <typename Key>
void IndexMap<Key>::addNew(View key, KeyHash hash) {
  insert(key, positions(), hashOf(key, hash));
}

template <typename Key>
const unsigned* IndexMap<Key>::findOrAdd(View key) {
  KeyHash keyHash;
  const std::uint32_t hash = hashOf(key, keyHash);
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
  texts_.clear();
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
bool IndexMap<Key>::insert(View key, unsigned index) {
  KeyHash keyHash;
  const std::uint32_t hash = hashOf(key, keyHash);
  if (entryOf(key, hash) != xml::HashIndex::kNone) return false;
  insert(key, index, hash);
  return true;
}

template <typename Key>
void IndexMap<Key>::insert(View key, unsigned index, std::uint32_t hash) {
  // Small documents are many: the first entries come with one allocation.
  if (entries_.capacity() == 0) entries_.reserve(kFirstEntries);
  entries_.emplace_back(keep(texts_, key, entries_.empty() ? View() : entries_.back().first),
                        index);
  try {
    index_.add(hash, static_cast<std::uint32_t>(entries_.size() - 1));
  } catch (...) {
    entries_.pop_back();
    throw;
  }
  longest_ = std::max(longest_, octetsOf(key));
}

template <typename Key>
unsigned IndexMap<Key>::at(View key) const {
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
