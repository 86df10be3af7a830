#include "SharedVocabulary.h"

#include <algorithm>
#include <utility>

namespace Tavrin::fastinfoset {

SharedVocabulary::SharedVocabulary() {
  for (unsigned table = 0; table < kStringTables; ++table) {
    const char* const builtIn = kStringTableForms[table].builtIn;
    if (builtIn != nullptr) strings_[table].add(builtIn);
  }
}

std::shared_ptr<SharedVocabulary> SharedVocabulary::copy() const {
  auto result = std::make_shared<SharedVocabulary>();
  result->entries_ = entries_;
  result->strings_ = strings_;
  result->names_ = names_;
  result->tableOctets_ = tableOctets_;
  return result;
}

unsigned SharedVocabulary::append(unsigned table, const std::string& entry) {
  return append(entries_.strings[table], strings_[table], entry);
}

unsigned SharedVocabulary::append(unsigned table, const NameParts& entry) {
  const unsigned name = table - kStringTables;
  return append(entries_.names[name], names_[name], entry);
}

template <typename Key>
unsigned SharedVocabulary::append(std::vector<Key>& entries, IndexMap<Key>& indices,
                                  const Key& entry) {
  // Where memory runs out, the position is taken in neither of the two.
  Key copy = entry;
  constexpr std::size_t kFirstEntries = 8;
  if (entries.size() == entries.capacity()) {
    entries.reserve(std::max(kFirstEntries, 2 * entries.size()));
  }
  const unsigned index = indices.positions();
  indices.add(entry);
  entries.push_back(std::move(copy));
  tableOctets_ += countedOctets(entry);
  return index;
}

void SharedVocabulary::seal() {
  std::call_once(sealing_, [this] { fillTables(); });
}

void SharedVocabulary::fillTables() {
  for (unsigned table = 0; table < kStringTables; ++table) {
    const std::vector<std::string>& from = entries_.strings[table];
    std::vector<const char*>& to = texts_[table];
    to.resize(from.size());
    std::ranges::transform(from, to.begin(), &std::string::c_str);
    const auto count = static_cast<std::uint32_t>(from.size());
    this->*kStringTableForms[table].external = {to.data(), count, count};
  }
  for (std::size_t table = 0; table < nameTexts_.size(); ++table) {
    const std::vector<NameParts>& from = entries_.names[table];
    nameTexts_[table] = std::make_unique<const char*[][3]>(from.size());
    for (std::size_t i = 0; i < from.size(); ++i) {
      auto& to = nameTexts_[table][i];
      to[0] = from[i].prefix.c_str();
      to[1] = from[i].namespaceName.c_str();
      to[2] = from[i].localName.c_str();
    }
    const auto count = static_cast<std::uint32_t>(from.size());
    this->*kExternalNameTables[table] = {nameTexts_[table].get(), count, count};
  }
  isSealed_ = true;
}

}  // namespace Tavrin::fastinfoset
