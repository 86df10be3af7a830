#include "octets/Tables.h"

namespace tool::octets {

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
