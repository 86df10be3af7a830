#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "HashIndex.h"
#include "SaltedHash.h"
#include "SameText.h"
#include "TextStore.h"

namespace Tavrin::xml {

/// Finds attributes that are given twice in a start tag (Namespaces in XML, section 6.3). The time
/// per attribute does not depend on how many there are. A name is searched once: the caller keeps
/// its number.
class UniqueAttributes {
 public:
  /// A name that has no number yet.
  static constexpr std::size_t kUnknown = 0;

  /// The number of a namespace name with a local name, always the same for the same two.
  std::size_t number(std::string_view uri, std::string_view localName) {
    const auto hash = static_cast<std::uint32_t>(saltedHash(localName, uri));
    const std::uint32_t found = index_.find(hash, [&](std::uint32_t position) {
      const Name& name = names_[position];
      return sameText(name.localName, localName) && sameText(name.uri, uri);
    });
    return 1 + std::size_t{found == HashIndex::kNone ? add(uri, localName, hash) : found};
  }
  /// How many names have a number.
  std::size_t size() const { return names_.size(); }
  /// An estimate of the memory that they need, in octets.
  std::size_t octets() const { return octets_; }

  /// Forgets all names. Little memory is kept.
  void clear() {
    if (names_.capacity() > kMostKept) {
      *this = UniqueAttributes();
      return;
    }
    names_.clear();
    texts_.clear();
    index_.clear();
    tag_ = 1;
    octets_ = 0;
  }

  void beginTag() { ++tag_; }
  /// Records an attribute of the tag.
  /// @return whether it is the first with its number
  bool take(std::size_t number) { return isFirst(names_[number - 1].lastTag); }
  /// Likewise, of a name that the caller tells apart: it keeps the last tag that had it, at first
  /// 0.
  bool isFirst(std::uint64_t& lastTag) const { return std::exchange(lastTag, tag_) != tag_; }

 private:
  struct Name {
    std::string_view uri;
    std::string_view localName;
    std::uint64_t lastTag = 0;  // The last tag that had it.
  };

  static constexpr std::size_t kMostKept = 64;

  std::uint32_t add(std::string_view uri, std::string_view localName, std::uint32_t hash) {
    constexpr std::size_t kOfEntry = 128;
    constexpr std::size_t kFirstNames = 16;  // Small documents are many.
    const auto position = static_cast<std::uint32_t>(names_.size());
    if (names_.capacity() == 0) names_.reserve(kFirstNames);
    names_.push_back({texts_.keep(uri), texts_.keep(localName)});
    try {
      index_.add(hash, position);
    } catch (...) {  // Where memory runs out, the name has no number yet.
      names_.pop_back();
      throw;
    }
    octets_ += uri.size() + localName.size() + kOfEntry;
    return position;
  }

  std::vector<Name> names_;  // By number, from 1.
  TextStore texts_;
  HashIndex index_;  // Of positions in names_.
  std::uint64_t tag_ = 1;
  std::size_t octets_ = 0;
};

}  // namespace Tavrin::xml
