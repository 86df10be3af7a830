#include "../InitialVocabulary.h"

#include <Tavrin/Identifiers.h>

#include <algorithm>

#include "../format/Dialect.h"
#include "X891Encoder.h"

// The vocabulary that a document begins with (X.891, 7.2): built-in entries, those of an external
// vocabulary, and its own, in this order.

namespace Tavrin {

using namespace fastinfoset;

namespace {

/// The most alphabets and algorithms of a document: their indexes are those up to 256 that are not
/// reserved.
constexpr std::size_t kMaximumAlphabets = kMaximumAlgorithms - kFirstOwnAlphabet;
constexpr std::size_t kMostApplicationAlgorithms =
    kMaximumAlgorithms - kDialectX891.firstApplicationAlgorithm;

NameParts nameOf(const char* const (&entry)[3]) {
  return {textOf(entry[0]), textOf(entry[1]), textOf(entry[2])};
}

/// The number of positions of an external table.
template <typename Table>
std::uint32_t positionsOf(const Table& table) {
  return std::max(table.definedCount, table.occupiedCount);
}

template <typename Map>
void checkPositions(const Map& table) {
  if (table.positions() > kMaximumEntries) {
    throw SAXException("A table of the vocabulary has more than " +
                       std::to_string(kMaximumEntries) + " entries");
  }
}

void checkURI(const std::string& uri) { checkText(uri, "a URI"); }
void checkVocabularyText(const std::string& text) { checkText(text, "the initial vocabulary"); }

void checkVocabularyName(const NameParts& name) {
  checkNCName(name.localName);
  if (!name.prefix.empty()) checkNCName(name.prefix);
  checkURI(name.namespaceName);
  if (!name.prefix.empty() && name.namespaceName.empty()) {
    throw SAXException("A name of the initial vocabulary has a prefix, but no namespace");
  }
}

/// A restricted alphabet has at least two characters, each once (X.891, 7.17).
void checkAlphabet(const std::string& alphabet) {
  checkVocabularyText(alphabet);
  std::vector<std::string> characters;
  for (const char octet : alphabet) {
    const bool continues = (static_cast<unsigned char>(octet) & 0xC0) == 0x80;
    if (!continues) characters.emplace_back();
    characters.back() += octet;
  }
  if (characters.size() < 2) {
    throw SAXException(
        "A restricted alphabet of the initial vocabulary has fewer than two characters");
  }
  std::ranges::sort(characters);
  if (std::ranges::adjacent_find(characters) != characters.end()) {
    throw SAXException("A restricted alphabet of the initial vocabulary repeats a character");
  }
}

void checkEntry(EntryKind kind, const std::string& entry) {
  if (entry.empty()) throw SAXException("An entry of the initial vocabulary is empty");
  switch (kind) {
    case EntryKind::alphabet:
      return checkAlphabet(entry);
    case EntryKind::uri:
      return checkURI(entry);
    case EntryKind::name:
      return checkNCName(entry);
    case EntryKind::text:
      return checkVocabularyText(entry);
  }
}

}  // namespace

const ExternalVocabulary* XMLWriter_X891::Encoder::findExternalVocabulary() const {
  if (!externalVocabulary_) return nullptr;
  const std::string& uri = *externalVocabulary_;
  const ExternalVocabularyMap* const known = externalVocabularies_;
  const auto found = known ? known->find(uri) : ExternalVocabularyMap::const_iterator();
  if (known == nullptr || found == known->end() || found->second == nullptr || uri.empty()) {
    throw SAXException("Unknown external vocabulary \"" + uri +
                       "\": it must be registered with the property \"" +
                       properties::externalVocabularies + '"');
  }
  return found->second;
}

/// Begins the tables of the document, also again after a root element that was refused.
/// @throws SAXException where the vocabularies are not possible
XMLWriter_X891::Encoder::InitialVocabulary XMLWriter_X891::Encoder::prepareVocabulary() {
  clearTables();
  limits_.tableOctets = 0;
  document_.algorithms.clear();
  document_.algorithmFields.clear();
  // These are indexed by positions of the tables.
  document_.elementBindings.clear();
  document_.attributeRecords.clear();
  InitialVocabulary written;
  strings(kPrefixes).add("xml");
  strings(kNamespaceNames).add(namespaces::xml);
  loadExternalVocabulary(written);
  loadInitialVocabulary(written);
  loadAlgorithms(written);
  checkTableOctets(0, 0);
  document_.loadedValues = strings(kAttributeValues).positions();
  return written;
}

void XMLWriter_X891::Encoder::loadExternalVocabulary(InitialVocabulary& written) {
  const ExternalVocabulary* const external = findExternalVocabulary();
  if (external == nullptr) return;
  written.externalVocabulary = *externalVocabulary_;
  const auto load = [](const auto& from, auto& to, auto entryOf) {
    for (std::uint32_t i = 0; i < from.definedCount; ++i) to.add(entryOf(from.entries[i]));
    to.skip(positionsOf(from) - from.definedCount);
    checkPositions(to);
  };
  for (unsigned table = kPrefixes; table < kStringTables; ++table) {
    load(external->*kStringTableForms[table].external, strings(table), textOf);
  }
  for (unsigned table = kStringTables; table < kTables; ++table) {
    load(external->*kExternalNameTables[table - kStringTables], names(table), nameOf);
  }
}

void XMLWriter_X891::Encoder::loadInitialVocabulary(InitialVocabulary& written) {
  if (!initialVocabulary_) return;
  const auto add = [this](auto& table, const auto& entry) {
    table.add(entry);
    limits_.tableOctets += countedOctets(entry);
  };
  for (unsigned table = 0; table < kStringTables; ++table) {
    const StringTableForm& form = kStringTableForms[table];
    const StringTable& from = *initialVocabulary_.*form.external;
    // The writer itself finds nothing in the tables of alphabets and algorithms.
    StringIndexMap* const to = table >= kPrefixes ? &strings(table) : nullptr;
    for (std::uint32_t i = 0; i < from.definedCount; ++i) {
      std::string entry = textOf(from.entries[i]);
      checkEntry(form.kind, entry);
      if (to != nullptr) add(*to, entry);
      written.strings[table].push_back(std::move(entry));
    }
    if (to != nullptr) checkPositions(*to);
  }
  // A name refers to its parts, so they must be in the tables.
  const auto require = [&](unsigned table, const std::string& part) {
    StringIndexMap& to = strings(table);
    if (part.empty() || to.find(part) != nullptr) return;
    written.strings[table].push_back(part);
    add(to, part);
    checkPositions(to);
  };
  for (unsigned table = kStringTables; table < kTables; ++table) {
    const QualifiedNameTable& from =
        *initialVocabulary_.*kExternalNameTables[table - kStringTables];
    NameIndexMap& to = names(table);
    for (std::uint32_t i = 0; i < from.definedCount; ++i) {
      const NameParts name = nameOf(from.entries[i]);
      checkVocabularyName(name);
      require(kPrefixes, name.prefix);
      require(kNamespaceNames, name.namespaceName);
      require(kLocalNames, name.localName);
      written.names[table - kStringTables].push_back(name);
      add(to, name);
    }
    checkPositions(to);
  }
}

/// Assigns fields to the algorithms of the vocabularies and to all that are registered; these are
/// added to the initial vocabulary.
void XMLWriter_X891::Encoder::loadAlgorithms(InitialVocabulary& written) {
  std::vector<std::string>& named = document_.algorithms;
  std::map<std::string, unsigned>& fields = document_.algorithmFields;
  const auto name = [&](const std::string& uri) {
    fields.emplace(uri, kDialectX891.firstApplicationAlgorithm + named.size());
    named.push_back(uri);
  };
  std::size_t alphabets = written.strings[kRestrictedAlphabets].size();
  if (const ExternalVocabulary* const external = findExternalVocabulary()) {
    const StringTable& table = external->encodingAlgorithms;
    for (std::uint32_t i = 0; i < table.definedCount; ++i) name(textOf(table.entries[i]));
    named.resize(std::min<std::size_t>(positionsOf(table), kMostApplicationAlgorithms + 1));
    alphabets += positionsOf(external->restrictedAlphabets);
  }
  for (const std::string& uri : written.strings[kEncodingAlgorithms]) name(uri);
  const auto nameInDocument = [&](const std::string& uri) {
    if (fields.contains(uri)) return;
    checkURI(uri);
    name(uri);
    written.strings[kEncodingAlgorithms].push_back(uri);
  };
  if (algorithmURIs_) {
    for (const std::string& uri : *algorithmURIs_) {
      if (!uri.empty()) nameInDocument(uri);
    }
  }
  if (registeredAlgorithms_ != nullptr) {
    for (const auto& [uri, algorithm] : *registeredAlgorithms_) {
      if (uri.empty() && !fields.contains(uri)) {
        throw SAXException("An encoding algorithm is registered without a URI");
      }
      nameInDocument(uri);
    }
  }
  if (named.size() > kMostApplicationAlgorithms) {
    throw SAXException("More than " + std::to_string(kMostApplicationAlgorithms) +
                       " encoding algorithms");
  }
  if (alphabets > kMaximumAlphabets) {
    throw SAXException("More than " + std::to_string(kMaximumAlphabets) + " restricted alphabets");
  }
}

}  // namespace Tavrin
