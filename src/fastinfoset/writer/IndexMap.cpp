#include <Tavrin/XMLWriter_FI.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <stdexcept>

#include "../../xml/SameText.h"

// The tables: entries in the order of their arrival, and slots in which they are found. A document
// decides what enters them; were the places known beforehand, it could choose strings that all
// want the same one. So the process has a secret.

namespace Tavrin {

namespace {

__extension__ using Product = unsigned __int128;

struct Secret {
  std::uint64_t begin;
  std::uint64_t factor;
};

std::uint64_t randomBits(std::random_device& device) {
  return std::uint64_t{device()} << 32 | device();
}

const Secret& secret() {
  static const Secret secret = [] {
    std::random_device device;
    return Secret{randomBits(device), randomBits(device) | 1};
  }();
  return secret;
}

/// Both halves of a product, so that every bit depends on all bits above and below it.
std::uint64_t mix(std::uint64_t bits, std::uint64_t factor) {
  const Product product = Product{bits} * factor;
  return static_cast<std::uint64_t>(product >> 64) ^ static_cast<std::uint64_t>(product);
}

template <typename Word>
std::uint64_t wordAt(const char* octets) {
  Word word = 0;
  std::memcpy(&word, octets, sizeof word);
  return word;
}

constexpr std::size_t kWord = sizeof(std::uint64_t);

/// The octets of a text of less than a word, the first one lowest.
std::uint64_t wordOf(const std::string& text) {
  const std::size_t size = text.size();
  const char* octets = text.data();
  constexpr std::size_t kHalf = kWord / 2;
  if (size >= kHalf) {
    // The halves may overlap; they agree where they do.
    const std::size_t second = size - kHalf;
    return wordAt<std::uint32_t>(octets) | wordAt<std::uint32_t>(octets + second) << 8 * second;
  }
  std::uint64_t word = 0;
  for (std::size_t i = 0; i < size; ++i) word |= wordAt<std::uint8_t>(octets + i) << 8 * i;
  return word;
}

std::uint64_t hashOf(const std::string& text, std::uint64_t begin, std::uint64_t factor) {
  const std::size_t size = text.size();
  const std::uint64_t hash = mix(begin ^ size, factor);
  if (size < kWord) return mix(hash ^ wordOf(text), factor);
  const char* octets = text.data();
  std::uint64_t result = hash;
  for (std::size_t i = 0; i < size - kWord; i += kWord) {
    result = mix(result ^ wordAt<std::uint64_t>(octets + i), factor);
  }
  return mix(result ^ wordAt<std::uint64_t>(octets + size - kWord), factor);
}

// --- Tags ---

// The highest octet of a tag tells which entries have it. The tag of a short text is its octets and
// its length, so that nothing else has it and no entry needs to be looked at; that of any other
// entry is a hash. Measured: writing attributes with short values takes an eighth less time.

constexpr unsigned kKindShift = 56;
constexpr std::uint64_t kHashed = std::uint64_t{0xFF} << kKindShift;

bool isHashed(std::uint64_t tag) { return tag >> kKindShift == kHashed >> kKindShift; }

template <typename Name>
std::uint64_t tagOf(const Name& name) {
  const auto [begin, factor] = secret();
  return kHashed | hashOf(name.namespaceName,
                          hashOf(name.prefix, hashOf(name.localName, begin, factor), factor),
                          factor);
}

std::uint64_t tagOf(const std::string& text) {
  const std::size_t size = text.size();
  if (size < kWord) return wordOf(text) | std::uint64_t{size + 1} << kKindShift;
  return kHashed | hashOf(text, secret().begin, secret().factor);
}

std::size_t placeOf(std::uint64_t tag) {
  return static_cast<std::size_t>(mix(tag ^ secret().begin, secret().factor));
}

// --- Entries ---

bool areSame(const std::string& a, const std::string& b) { return xml::sameText(a, b); }

template <typename Name>
bool areSame(const Name& a, const Name& b) {
  return xml::sameText(a.localName, b.localName) && xml::sameText(a.prefix, b.prefix) &&
         xml::sameText(a.namespaceName, b.namespaceName);
}

}  // namespace

std::size_t XMLWriter_FI::octetsOf(const std::string& text) { return text.size(); }

std::size_t XMLWriter_FI::octetsOf(const QualifiedName& name) {
  return name.prefix.size() + name.namespaceName.size() + name.localName.size();
}

template <typename Key>
XMLWriter_FI::IndexMap<Key>::IndexMap() = default;

template <typename Key>
XMLWriter_FI::IndexMap<Key>::IndexMap(std::initializer_list<value_type> entries) {
  for (const auto& [key, index] : entries) enter(key, index);
}

/// The slot of an entry, or the empty one in which it would be found.
template <typename Key>
std::size_t XMLWriter_FI::IndexMap<Key>::slotOf(std::uint64_t tag, const Key& key) const {
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t place = placeOf(tag) & mask;; place = (place + 1) & mask) {
    const Slot& slot = slots_[place];
    if (slot.tag == 0) return place;
    if (slot.tag == tag && (!isHashed(tag) || areSame(entries_[slot.entry].first, key))) {
      return place;
    }
  }
}

template <typename Key>
const unsigned* XMLWriter_FI::IndexMap<Key>::find(const Key& key) const {
  // Nothing is found in an empty table, and long texts are not hashed in vain.
  if (entries_.empty() || octetsOf(key) > longest_) return nullptr;
  const Slot& slot = slots_[slotOf(tagOf(key), key)];
  return slot.tag == 0 ? nullptr : &entries_[slot.entry].second;
}

template <typename Key>
void XMLWriter_FI::IndexMap<Key>::add(const Key& key) {
  if (!enter(key, positions())) ++withoutEntry_;
}

template <typename Key>
bool XMLWriter_FI::IndexMap<Key>::enter(const Key& key, unsigned index) {
  if (slots_.size() <= 2 * entries_.size()) grow();
  const std::uint64_t tag = tagOf(key);
  Slot& slot = slots_[slotOf(tag, key)];
  if (slot.tag != 0) return false;
  const auto entry = static_cast<std::uint32_t>(entries_.size());
  entries_.emplace_back(key, index);
  slot = {tag, entry};
  longest_ = std::max(longest_, octetsOf(key));
  return true;
}

template <typename Key>
void XMLWriter_FI::IndexMap<Key>::grow() {
  constexpr std::size_t kFirstSlots = 16;
  std::vector<Slot> larger(std::max(kFirstSlots, 2 * slots_.size()), Slot{0, 0});
  const std::size_t mask = larger.size() - 1;
  for (const Slot& slot : slots_) {
    if (slot.tag == 0) continue;
    std::size_t place = placeOf(slot.tag) & mask;
    while (larger[place].tag != 0) place = (place + 1) & mask;
    larger[place] = slot;
  }
  slots_ = std::move(larger);
}

template <typename Key>
unsigned XMLWriter_FI::IndexMap<Key>::at(const Key& key) const {
  const unsigned* const index = find(key);
  if (index == nullptr) throw std::out_of_range("no such entry");
  return *index;
}

template <typename Key>
bool XMLWriter_FI::IndexMap<Key>::operator==(const IndexMap& other) const {
  return size() == other.size() && std::ranges::all_of(entries_, [&other](const value_type& entry) {
           const unsigned* const index = other.find(entry.first);
           return index != nullptr && *index == entry.second;
         });
}

template class XMLWriter_FI::IndexMap<std::string>;
template class XMLWriter_FI::IndexMap<XMLWriter_FI::QualifiedName>;

}  // namespace Tavrin
