#pragma once

#include <Tavrin/OwnedVocabulary.h>
#include <Tavrin/Vocabulary.h>

#include <array>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "IndexMap.h"
#include "InitialVocabulary.h"
#include "format/Tables.h"

namespace Tavrin::fastinfoset {

/// What copies of an OwnedVocabulary share, in the forms that readers and writers need, so that
/// none of them makes its own. Once it is sealed it does not change, and any number of threads may
/// use it.
class SharedVocabulary : public ExternalVocabulary {
 public:
  SharedVocabulary();
  SharedVocabulary(const SharedVocabulary&) = delete;
  SharedVocabulary& operator=(const SharedVocabulary&) = delete;
  ~SharedVocabulary() = default;

  /// A copy that is not sealed.
  std::shared_ptr<SharedVocabulary> copy() const;
  /// Fills the structure that this is. No entry may be added after that.
  void seal();
  bool isSealed() const { return isSealed_; }

  const InitialVocabulary& entries() const { return entries_; }  ///< Without built-in ones.
  /// By entry, as a writer looks them up: with built-in entries, and indices from 0.
  const StringIndexMap& strings(unsigned table) const { return strings_[table]; }
  const NameIndexMap& names(unsigned table) const { return names_[table - kStringTables]; }
  std::uint64_t tableOctets() const { return tableOctets_; }  ///< By countedOctets.

  /// Adds an entry at the next position, whether it is there already or not.
  /// @return its index, from 0
  unsigned append(unsigned table, const std::string& entry);
  unsigned append(unsigned table, const NameParts& entry);

 private:
  template <typename Key>
  unsigned append(std::vector<Key>& entries, IndexMap<Key>& indices, const Key& entry);
  void fillTables();

  InitialVocabulary entries_;
  std::array<StringIndexMap, kStringTables> strings_;
  std::array<NameIndexMap, kTables - kStringTables> names_;
  std::uint64_t tableOctets_ = 0;

  bool isSealed_ = false;
  std::once_flag sealing_;
  // The arrays of the structure.
  std::array<std::vector<const char*>, kStringTables> texts_;
  std::array<std::unique_ptr<const char*[][3]>, kTables - kStringTables> nameTexts_;
};

/// What a vocabulary shares with its copies.
inline std::shared_ptr<const SharedVocabulary> shared(const OwnedVocabulary& vocabulary) {
  return std::static_pointer_cast<const SharedVocabulary>(vocabulary.tables());
}

}  // namespace Tavrin::fastinfoset
