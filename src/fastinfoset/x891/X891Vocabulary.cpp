#include "WrittenVocabulary.h"

#include <Tavrin/Identifiers.h>

#include <algorithm>

#include "../format/Dialect.h"
#include "X891Encoder.h"

// The vocabulary that a document begins with (X.891, C.2.5 and 7.2): built in, external, and its
// own entries, in this order.

namespace Tavrin {

using namespace fastinfoset;

namespace {

/// How many alphabets and algorithms can be named: the indexes up to 256 that are not reserved.
constexpr std::size_t kMaximumAlphabets = kMaximumAlgorithms - kFirstOwnAlphabet;
constexpr std::size_t kMostApplicationAlgorithms =
    kMaximumAlgorithms - kDialectX891.firstApplicationAlgorithm;

std::string textOf(const char* entry) { return entry == nullptr ? std::string() : entry; }

/// How many positions an external table takes.
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

/// Refuses what is no alphabet (X.891, 7.17): it has at least two characters, each once.
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

/// Begins the tables of the document, anew where that was tried before.
/// @throws SAXException where the vocabularies are not possible
XMLWriter_X891::Encoder::WrittenVocabulary XMLWriter_X891::Encoder::prepareVocabulary() {
  clearTables();
  limits_.tableOctets = 0;
  document_.algorithms.clear();
  document_.algorithmFields.clear();
  // What was found out about names is kept by their positions.
  document_.elementBindings.clear();
  document_.attributeRecords.clear();
  WrittenVocabulary written;
  vocabulary_.prefixes.add("xml");
  vocabulary_.namespaceNames.add(namespaces::xml);
  loadExternalVocabulary(written);
  loadInitialVocabulary(written);
  loadAlgorithms(written);
  checkRoom(0, 0);
  document_.loadedValues = vocabulary_.attributeValues.positions();
  return written;
}

void XMLWriter_X891::Encoder::loadExternalVocabulary(WrittenVocabulary& written) {
  const ExternalVocabulary* const external = findExternalVocabulary();
  if (external == nullptr) return;
  written.externalVocabulary = *externalVocabulary_;
  const auto load = [](const StringTable& from, StringIndexMap& to) {
    for (std::uint32_t i = 0; i < from.definedCount; ++i) to.add(textOf(from.entries[i]));
    to.skip(positionsOf(from) - from.definedCount);
    checkPositions(to);
  };
  const auto loadNames = [](const QualifiedNameTable& from, NameIndexMap& to) {
    for (std::uint32_t i = 0; i < from.definedCount; ++i) {
      const auto& [prefix, namespaceName, localName] = from.entries[i];
      to.add({textOf(prefix), textOf(namespaceName), textOf(localName)});
    }
    to.skip(positionsOf(from) - from.definedCount);
    checkPositions(to);
  };
  load(external->prefixes, vocabulary_.prefixes);
  load(external->namespaceNames, vocabulary_.namespaceNames);
  load(external->localNames, vocabulary_.localNames);
  load(external->otherNCNames, vocabulary_.otherNCNames);
  load(external->otherURIs, vocabulary_.otherURIs);
  load(external->attributeValues, vocabulary_.attributeValues);
  load(external->contentCharacterChunks, vocabulary_.characterChunks);
  load(external->otherStrings, vocabulary_.otherStrings);
  loadNames(external->elementNameSurrogates, vocabulary_.elementNames);
  loadNames(external->attributeNameSurrogates, vocabulary_.attributeNames);
}

void XMLWriter_X891::Encoder::loadInitialVocabulary(WrittenVocabulary& written) {
  if (!initialVocabulary_) return;
  const ExternalVocabulary& own = *initialVocabulary_;
  const auto entriesOf = [](const StringTable& table, auto check) {
    std::vector<std::string> entries;
    for (std::uint32_t i = 0; i < table.definedCount; ++i) {
      entries.push_back(textOf(table.entries[i]));
      if (entries.back().empty()) {
        throw SAXException("An entry of the initial vocabulary is empty");
      }
      check(entries.back());
    }
    return entries;
  };
  const auto add = [this](auto& table, const auto& entry) {
    table.add(entry);
    limits_.tableOctets += tableOctetsOf(entry);
  };
  const auto load = [&](const StringTable& from, std::vector<std::string>& list, StringIndexMap& to,
                        auto check) {
    list = entriesOf(from, check);
    for (const std::string& entry : list) add(to, entry);
    checkPositions(to);
  };
  written.restrictedAlphabets = entriesOf(own.restrictedAlphabets, checkAlphabet);
  written.encodingAlgorithms = entriesOf(own.encodingAlgorithms, checkURI);
  load(own.prefixes, written.prefixes, vocabulary_.prefixes, checkNCName);
  load(own.namespaceNames, written.namespaceNames, vocabulary_.namespaceNames, checkURI);
  load(own.localNames, written.localNames, vocabulary_.localNames, checkNCName);
  load(own.otherNCNames, written.otherNCNames, vocabulary_.otherNCNames, checkNCName);
  load(own.otherURIs, written.otherURIs, vocabulary_.otherURIs, checkURI);
  load(own.attributeValues, written.attributeValues, vocabulary_.attributeValues,
       checkVocabularyText);
  load(own.contentCharacterChunks, written.characterChunks, vocabulary_.characterChunks,
       checkVocabularyText);
  load(own.otherStrings, written.otherStrings, vocabulary_.otherStrings, checkVocabularyText);

  // A name refers to its parts, so that they must be in the tables.
  const auto need = [&add](std::vector<std::string>& list, StringIndexMap& table,
                           const std::string& part) {
    if (part.empty() || table.find(part) != nullptr) return;
    list.push_back(part);
    add(table, part);
    checkPositions(table);
  };
  const auto loadNames = [&](const QualifiedNameTable& from, std::vector<NameParts>& list,
                             NameIndexMap& to) {
    for (std::uint32_t i = 0; i < from.definedCount; ++i) {
      const NameParts name = {textOf(from.entries[i][0]), textOf(from.entries[i][1]),
                              textOf(from.entries[i][2])};
      checkNCName(name.localName);
      if (!name.prefix.empty()) checkNCName(name.prefix);
      checkURI(name.namespaceName);
      if (!name.prefix.empty() && name.namespaceName.empty()) {
        throw SAXException("A name of the initial vocabulary has a prefix, but no namespace");
      }
      need(written.prefixes, vocabulary_.prefixes, name.prefix);
      need(written.namespaceNames, vocabulary_.namespaceNames, name.namespaceName);
      need(written.localNames, vocabulary_.localNames, name.localName);
      list.push_back(name);
      add(to, name);
    }
    checkPositions(to);
  };
  loadNames(own.elementNameSurrogates, written.elementNames, vocabulary_.elementNames);
  loadNames(own.attributeNameSurrogates, written.attributeNames, vocabulary_.attributeNames);
}

/// What can be named by a field, and the rest of what is named in the document.
void XMLWriter_X891::Encoder::loadAlgorithms(WrittenVocabulary& written) {
  std::vector<std::string>& named = document_.algorithms;
  std::map<std::string, unsigned>& fields = document_.algorithmFields;
  const auto name = [&](const std::string& uri) {
    const bool isNew =
        fields.emplace(uri, kDialectX891.firstApplicationAlgorithm + named.size()).second;
    named.push_back(uri);
    return isNew;
  };
  std::size_t alphabets = written.restrictedAlphabets.size();
  if (const ExternalVocabulary* const external = findExternalVocabulary()) {
    const StringTable& table = external->encodingAlgorithms;
    for (std::uint32_t i = 0; i < table.definedCount; ++i) name(textOf(table.entries[i]));
    named.resize(std::min<std::size_t>(positionsOf(table), kMostApplicationAlgorithms + 1));
    alphabets += positionsOf(external->restrictedAlphabets);
  }
  for (const std::string& uri : written.encodingAlgorithms) name(uri);
  if (registeredAlgorithms_ != nullptr) {
    for (const auto& [uri, algorithm] : *registeredAlgorithms_) {
      if (fields.contains(uri)) continue;
      if (uri.empty()) throw SAXException("An encoding algorithm is registered without a URI");
      checkURI(uri);
      name(uri);
      written.encodingAlgorithms.push_back(uri);
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

// --- Writing ---

void XMLWriter_X891::Encoder::writeVocabulary(const WrittenVocabulary& vocabulary) {
  const unsigned tables = vocabulary.tables();
  put(tables >> 8);
  put(tables & 0xFF);
  if (!vocabulary.externalVocabulary.empty()) putIdentifier(vocabulary.externalVocabulary);
  for (const std::vector<std::string>* const table :
       {&vocabulary.restrictedAlphabets, &vocabulary.encodingAlgorithms, &vocabulary.prefixes,
        &vocabulary.namespaceNames, &vocabulary.localNames, &vocabulary.otherNCNames,
        &vocabulary.otherURIs}) {
    if (table->empty()) continue;
    putItemCount(static_cast<std::uint32_t>(table->size()));
    for (const std::string& entry : *table) putIdentifier(entry);
  }
  for (const std::vector<std::string>* const table :
       {&vocabulary.attributeValues, &vocabulary.characterChunks, &vocabulary.otherStrings}) {
    if (table->empty()) continue;
    putItemCount(static_cast<std::uint32_t>(table->size()));
    for (const std::string& entry : *table) writeNewString(static_cast<StringIndexMap*>(nullptr), entry);
  }
  writeSurrogates(vocabulary.elementNames);
  writeSurrogates(vocabulary.attributeNames);
}

/// Writes names as the indexes of their parts (C.16).
void XMLWriter_X891::Encoder::writeSurrogates(const std::vector<NameParts>& names) {
  if (names.empty()) return;
  putItemCount(static_cast<std::uint32_t>(names.size()));
  for (const NameParts& name : names) {
    put((name.prefix.empty() ? 0 : kPrefixPresent) |
        (name.namespaceName.empty() ? 0 : kNamespacePresent));
    if (!name.prefix.empty()) encodeIndex(0, vocabulary_.prefixes.at(name.prefix));
    if (!name.namespaceName.empty()) {
      encodeIndex(0, vocabulary_.namespaceNames.at(name.namespaceName));
    }
    encodeIndex(0, vocabulary_.localNames.at(name.localName));
  }
}

}  // namespace Tavrin
