#include "octets/Tables.h"

#include <unordered_map>

namespace tool::octets {

namespace {

/// Where the texts of a table are in it.
class IndexOfText {
 public:
  IndexOfText(const Tavrin::StringTable& table, const StringTable& strings) {
    std::uint32_t index = 0;
    for (const Excerpt& entry : strings.builtIn()) indexes_.emplace(entry.text, ++index);
    index = strings.first();
    for (const char* const entry : entriesOf(table)) indexes_.emplace(entry, index++);
  }

  /// @param text may be null or empty, which is absent
  std::uint32_t find(const char* text) const {
    if (text == nullptr || *text == '\0') return Name::kAbsent;
    const auto found = indexes_.find(text);
    return found == indexes_.end() ? Name::kUnknown : found->second;
  }

 private:
  std::unordered_map<std::string_view, std::uint32_t> indexes_;
};

}  // namespace

StringTable::StringTable(std::string_view name, std::uint32_t first,
                         const std::vector<std::string_view>& builtIn)
    : name_(name), first_(first) {
  for (const std::string_view entry : builtIn) builtIn_.push_back({std::string(entry)});
}

std::uint32_t StringTable::add(const Excerpt& text) {
  const std::size_t index = first_ + own_.size();
  if (index > format::kMaximumEntries) return 0;
  own_.push_back(text);
  return static_cast<std::uint32_t>(index);
}

const Excerpt* StringTable::find(std::uint64_t index) const {
  if (isBuiltIn(index)) return &builtIn_[index - 1];
  if (index < first_ || index - first_ >= own_.size()) return nullptr;
  return &own_[index - first_];
}

std::uint32_t NameTable::add(const Name& name) {
  if (own_.size() >= format::kMaximumEntries) return 0;
  own_.push_back(name);
  return static_cast<std::uint32_t>(own_.size());
}

const Name* NameTable::find(std::uint64_t index) const {
  return index >= 1 && index <= own_.size() ? &own_[index - 1] : nullptr;
}

void Tables::add(const Tavrin::ExternalVocabulary& vocabulary) {
  using External = Tavrin::ExternalVocabulary;
  constexpr Tavrin::StringTable External::*kStrings[kStringTables] = {
      &External::restrictedAlphabets,
      &External::encodingAlgorithms,
      &External::prefixes,
      &External::namespaceNames,
      &External::localNames,
      &External::otherNCNames,
      &External::otherURIs,
      &External::attributeValues,
      &External::contentCharacterChunks,
      &External::otherStrings};
  for (unsigned table = 0; table < kStringTables; ++table) {
    for (const char* const entry : entriesOf(vocabulary.*kStrings[table])) {
      all[table].add(Excerpt::of(entry));
    }
  }
  const IndexOfText prefixes(vocabulary.prefixes, all[kPrefixes]);
  const IndexOfText namespaceNames(vocabulary.namespaceNames, all[kNamespaceNames]);
  const IndexOfText localNames(vocabulary.localNames, all[kLocalNames]);
  const auto addNames = [&](NameTable& names, const Tavrin::QualifiedNameTable& table) {
    for (std::uint32_t i = 0; i < table.definedCount; ++i) {
      const char* const(&parts)[3] = table.entries[i];
      names.add(
          {prefixes.find(parts[0]), namespaceNames.find(parts[1]), localNames.find(parts[2])});
    }
  };
  addNames(elements, vocabulary.elementNameSurrogates);
  addNames(attributes, vocabulary.attributeNameSurrogates);
}

std::string Tables::qualifiedNameOf(const Name& name) const {
  const auto append = [](std::string& text, const StringTable& table, std::uint32_t index) {
    const Excerpt* const entry = table.find(index);
    text += entry ? entry->text : "?";
    if (entry && !entry->isWhole) text += "...";
  };
  std::string text;
  if (name.prefix != Name::kAbsent) {
    append(text, all[kPrefixes], name.prefix);
    text += ':';
  }
  append(text, all[kLocalNames], name.localName);
  return text;
}

}  // namespace tool::octets
