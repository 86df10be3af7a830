#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "StableList.h"
#include "format/Tables.h"

/// The tables of a vocabulary as a decoder keeps them (X.891, clause 8). Those of an encoder are in
/// IndexMap.h.
namespace Tavrin::fastinfoset {

/// Octets of an unknown algorithm.
struct RawOctets {
  unsigned field;
  std::string uri;
  std::string octets;
};

/// A table of strings: the entries of an external vocabulary, then those of the document.
class Strings {
 public:
  explicit Strings(unsigned table) : table_(table) {}

  unsigned table() const { return table_; }  ///< Which of the tables it is.
  const StringTableForm& form() const { return kStringTableForms[table_]; }

  /// The entries of the document.
  StableList<std::string>& own() { return own_; }

  /// How many positions the external vocabulary takes.
  std::size_t externalPositions() const { return external_ ? external_->occupiedCount : 0; }
  /// How many positions are in use; those of the built-in entry count as well.
  std::size_t positions() const {
    return builtInEntries(table_) + externalPositions() + own_.size();
  }

  /// The built-in entry, of a table that has one.
  const std::string& builtIn() const;
  /// The entry of a position, not counting the built-in one, or null. It stays where it is until
  /// the next document.
  const std::string* find(unsigned long position) {
    if (external_ != nullptr) {
      if (position < external_->occupiedCount) return findExternal(position);
      position -= external_->occupiedCount;
    }
    return position < own_.size() ? &own_[position] : nullptr;
  }

  const std::string& append(std::string_view entry) {
    std::string& next = own_.next();
    next = entry;
    own_.grow();
    return next;
  }

  /// Appends octets that no text is known of. Such an entry is an empty string, so that nobody has
  /// to look for it where there is a text.
  void append(RawOctets entry) {
    append(std::string_view());
    raw_.insert_or_assign(own_.size() - 1, std::move(entry));
  }
  /// The octets of a position, or null where its entry is a text.
  const RawOctets* findRaw(unsigned long position) const {
    if (raw_.empty() || position < externalPositions()) return nullptr;
    const auto found = raw_.find(position - externalPositions());
    return found == raw_.end() ? nullptr : &found->second;
  }

  /// Drops the entries from a position of the document's own on.
  void shrinkTo(std::size_t size) {
    own_.shrinkTo(size, [](std::string& entry) {
      if (entry.capacity() > kMostSpare) std::string().swap(entry);
    });
    if (!raw_.empty()) raw_.erase(raw_.lower_bound(size), raw_.end());
  }

  /// Puts entries before all others.
  /// @param external outlives its use; null for none
  /// @param shared   the same entries as strings, where they do not change; or null
  void setExternal(const StringTable* external, const std::vector<std::string>* shared) {
    external_ = external;
    shared_ = shared;
    forgetExternalEntries();
  }
  /// The entries of an external vocabulary are the application's, which may change them between
  /// documents.
  void forgetExternalEntries() { externalEntries_.clear(); }

 private:
  static constexpr std::size_t kMostSpare = 64;  // Octets of an entry that is kept for later.

  const std::string* findExternal(unsigned long position);

  unsigned table_;
  const StringTable* external_ = nullptr;
  const std::vector<std::string>* shared_ = nullptr;
  std::map<unsigned long, std::string> externalEntries_;  // Those that were used.
  StableList<std::string> own_;
  std::map<std::size_t, RawOctets> raw_;  // By position in own_.
};

/// A name of a table, with what a decoder needs besides its parts. These are entries of other
/// tables, as a rule: most names share their namespace. Measured: with copies of its own for each
/// name, reading small messages takes a fifth longer.
class Name {
 public:
  const std::string& prefix() const { return *prefix_; }
  const std::string& namespaceName() const { return *namespaceName_; }
  const std::string& localName() const { return *localName_; }
  /// Prefix, colon and local name, or the local name alone.
  const std::string& qName() const { return prefix_->empty() ? *localName_ : qName_; }
  // NOLINTNEXTLINE(google-explicit-constructor): as names have them everywhere.
  operator NameView() const { return {*prefix_, *namespaceName_, *localName_}; }
  /// Copies of the parts.
  NameParts parts() const { return {*prefix_, *namespaceName_, *localName_}; }

  /// Takes parts that stay where they are as long as they are used.
  void refer(const std::string& prefix, const std::string& namespaceName,
             const std::string& localName) {
    prefix_ = &prefix;
    namespaceName_ = &namespaceName;
    localName_ = &localName;
    if (prefix.empty()) return;
    qName_.reserve(prefix.size() + 1 + localName.size());
    qName_.assign(prefix).append(1, ':').append(localName);
  }
  /// Takes parts that have no other place.
  void own(NameParts parts) {
    own_ = std::make_unique<NameParts>(std::move(parts));
    refer(own_->prefix, own_->namespaceName, own_->localName);
  }
  /// Makes it a name without parts, of a position.
  void reset(std::uint32_t newPosition) {
    prefix_ = namespaceName_ = localName_ = &kNone;
    position = newPosition;
    identity = 0;
    bindings = 0;
    octets = 0;
  }
  /// Frees what takes memory.
  void release() {
    constexpr std::size_t kMostSpare = 64;
    own_.reset();
    if (qName_.capacity() > kMostSpare) std::string().swap(qName_);
  }

  static const std::string kNone;  ///< In place of a part that is absent.
  static constexpr std::uint32_t kUnlisted = UINT32_MAX;
  std::uint32_t position = kUnlisted;  ///< Among the document's own entries of its table.

  // What a reader that checks names has found, so that each is checked once.
  std::uint32_t identity = 0;  ///< The number of the namespace name and local name, or 0.
  std::uint64_t bindings = 0;  ///< The version of the bindings for which the prefix is right.
  std::size_t octets = 0;      ///< How many octets are reported with it.

 private:
  const std::string* prefix_ = &kNone;
  const std::string* namespaceName_ = &kNone;
  const std::string* localName_ = &kNone;
  std::string qName_;               // Where there is a prefix.
  std::unique_ptr<NameParts> own_;  // The parts, where they are in no table.
};

/// A table of names: the entries of an external vocabulary, then those of the document, which stay
/// where they are when the table grows.
class Names {
 public:
  explicit Names(unsigned table) : table_(table) {}

  unsigned table() const { return table_; }  ///< Which of the tables it is.
  /// The same table of an external vocabulary.
  QualifiedNameTable ExternalVocabulary::*external() const {
    return kExternalNameTables[table_ - kStringTables];
  }

  std::size_t size() const { return own_.size(); }  ///< Without external entries.
  Name& operator[](std::size_t position) { return own_[position]; }
  std::size_t positions() const { return (external_ ? external_->occupiedCount : 0) + own_.size(); }

  /// The entry of a position, or null. An external entry is made a name once, however often a
  /// document refers to it.
  Name* find(unsigned long position) {
    if (external_ != nullptr) {
      if (position < external_->occupiedCount) return findExternal(position);
      position -= external_->occupiedCount;
    }
    return position < own_.size() ? &own_[position] : nullptr;
  }

  /// Appends a name without parts.
  Name& append() {
    Name& name = own_.next();
    name.reset(static_cast<std::uint32_t>(own_.size()));
    own_.grow();
    return name;
  }
  /// Drops the names from a position on.
  void shrinkTo(std::size_t size) { own_.shrinkTo(size, std::mem_fn(&Name::release)); }

  /// As in Strings.
  void setExternal(const QualifiedNameTable* external, const std::vector<NameParts>* shared) {
    external_ = external;
    shared_ = shared;
    forgetExternalEntries();
  }
  void forgetExternalEntries() { externalEntries_.clear(); }

 private:
  Name* findExternal(unsigned long position);

  unsigned table_;
  const QualifiedNameTable* external_ = nullptr;
  const std::vector<NameParts>* shared_ = nullptr;
  std::map<unsigned long, Name> externalEntries_;  // Those that were used.
  StableList<Name> own_;
};

}  // namespace Tavrin::fastinfoset
