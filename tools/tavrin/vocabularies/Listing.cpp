#include "vocabularies/Listing.h"

#include <iomanip>

#include "printing/Text.h"
#include "vocabularies/VocabularyTables.h"

namespace tool {

namespace {

constexpr int kIndexWidth = 9;

void printLine(std::ostream& out, std::uint32_t index, const std::string& entry) {
  out << std::setw(kIndexWidth) << index << "  " << entry << '\n';
}

std::string quoted(const std::string& text) {
  std::string result;
  appendQuoted(result, text);
  return result;
}

}  // namespace

void printVocabulary(std::ostream& out, const std::string& name,
                     const Tavrin::OwnedVocabulary& vocabulary) {
  const std::uint64_t count = entriesOf(vocabulary);
  out << escaped(name) << ": " << (count == 0 ? "no" : std::to_string(count))
      << (count == 1 ? " entry" : " entries") << '\n';
  const auto tables = vocabulary.tables();
  for (const auto& form : kStringTables) {
    const Tavrin::StringTable& table = (*tables).*form.table;
    if (table.definedCount > 0) out << "  " << form.title << '\n';
    for (std::uint32_t i = 0; i < table.definedCount; ++i) {
      printLine(out, form.first + i, quoted(textOf(table.entries[i])));
    }
  }
  for (const auto& form : kNameTables) {
    const Tavrin::QualifiedNameTable& table = (*tables).*form.table;
    if (table.definedCount > 0) out << "  " << form.title << '\n';
    for (std::uint32_t i = 0; i < table.definedCount; ++i) {
      const QualifiedName entry(table.entries[i]);
      const std::string uri = entry.uri.empty() ? "" : "  " + quoted(entry.uri);
      printLine(out, 1 + i, escaped(entry.qName()) + uri);
    }
  }
}

}  // namespace tool
