#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

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
  std::vector<std::string>& own() { return own_; }
  const std::vector<std::string>& own() const { return own_; }

  /// How many positions the external vocabulary takes.
  std::size_t externalPositions() const { return external_ ? external_->occupiedCount : 0; }
  /// How many positions are in use; those of the built-in entry count as well.
  std::size_t positions() const {
    return builtInEntries(table_) + externalPositions() + own_.size();
  }

  /// The entry of a position, not counting the built-in one, or null. An entry of the document is
  /// valid until the next one comes, one of an external vocabulary until the end of the document.
  const std::string* find(unsigned long position) {
    if (external_ != nullptr) {
      if (position < external_->occupiedCount) return findExternal(position);
      position -= external_->occupiedCount;
    }
    return position < own_.size() ? &own_[position] : nullptr;
  }

  void append(const std::string& entry) {
    // Small documents are many: the first entries come with one allocation.
    if (own_.capacity() == 0) own_.reserve(kFirstEntries);
    own_.push_back(entry);
  }

  /// Appends octets that no text is known of. Such an entry is an empty string, so that nobody has
  /// to look for it where there is a text.
  void append(RawOctets entry) {
    append(std::string());
    raw_.insert_or_assign(own_.size() - 1, std::move(entry));
  }
  /// The octets of a position, or null where its entry is a text.
  const RawOctets* findRaw(unsigned long position) const {
    if (raw_.empty() || position < externalPositions()) return nullptr;
    const auto found = raw_.find(position - externalPositions());
    return found == raw_.end() ? nullptr : &found->second;
  }

  void removeLast() {
    own_.pop_back();
    raw_.erase(own_.size());
  }
  void removeAll() {
    own_.clear();
    raw_.clear();
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
  static constexpr std::size_t kFirstEntries = 16;

  const std::string* findExternal(unsigned long position);

  unsigned table_;
  const StringTable* external_ = nullptr;
  const std::vector<std::string>* shared_ = nullptr;
  std::map<unsigned long, std::string> externalEntries_;  // Those that were used.
  std::vector<std::string> own_;
  std::map<std::size_t, RawOctets> raw_;  // By position in own_.
};

/// A name of a table, with what a decoder needs besides its parts.
struct Name : NameParts {
  std::string qName;  ///< Prefix, colon and local name, or the local name alone.

  static constexpr std::uint32_t kUnlisted = UINT32_MAX;
  std::uint32_t position = kUnlisted;  ///< Among the document's own entries of its table.

  // What a reader that checks names has found, so that each is checked once.
  std::uint32_t identity = 0;  ///< The number of the namespace name and local name, or 0.
  std::uint64_t bindings = 0;  ///< The version of the bindings for which the prefix is right.
  std::size_t octets = 0;      ///< How many octets are reported with it.

  /// Makes the qualified name of the parts.
  void setQName() { qName = prefix.empty() ? localName : prefix + ":" + localName; }
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

  std::size_t size() const { return size_; }  ///< Without external entries.
  Name& operator[](std::size_t position) { return blocks_[position / kBlock][position % kBlock]; }
  std::size_t positions() const { return (external_ ? external_->occupiedCount : 0) + size_; }

  /// The entry of a position, or null. An external entry is made a name once, however often a
  /// document refers to it.
  Name* find(unsigned long position) {
    if (external_ != nullptr) {
      if (position < external_->occupiedCount) return findExternal(position);
      position -= external_->occupiedCount;
    }
    return position < size_ ? &(*this)[position] : nullptr;
  }

  Name& append();
  /// Drops the names from a position on.
  void shrinkTo(std::size_t size);

  /// As in Strings.
  void setExternal(const QualifiedNameTable* external, const std::vector<NameParts>* shared) {
    external_ = external;
    shared_ = shared;
    forgetExternalEntries();
  }
  void forgetExternalEntries() { externalEntries_.clear(); }

 private:
  static constexpr std::size_t kBlock = 16;

  Name* findExternal(unsigned long position);

  unsigned table_;
  const QualifiedNameTable* external_ = nullptr;
  const std::vector<NameParts>* shared_ = nullptr;
  std::map<unsigned long, Name> externalEntries_;  // Those that were used.
  std::vector<std::vector<Name>> blocks_;
  std::size_t size_ = 0;
};

}  // namespace Tavrin::fastinfoset
