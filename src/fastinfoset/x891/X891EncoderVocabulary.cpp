#include "../InitialVocabulary.h"

#include <Tavrin/Identifiers.h>

#include <algorithm>
#include <utility>

#include "../SharedVocabulary.h"
#include "../format/Dialect.h"
#include "VocabularyChecks.h"
#include "X891Encoder.h"

// The vocabulary that a document begins with (X.891, 7.2): built-in entries, those of an external
// vocabulary, and its own, in this order.

namespace Tavrin {

using namespace fastinfoset;

namespace {

NameParts nameOf(const char* const (&entry)[3]) {
  return {textOf(entry[0]), textOf(entry[1]), textOf(entry[2])};
}

/// The number of positions of an external table.
template <typename Table>
std::uint32_t positionsOf(const Table& table) {
  return std::max(table.definedCount, table.occupiedCount);
}

}  // namespace

const ExternalVocabulary* XMLWriter_X891::Encoder::findExternalVocabulary() const {
  if (!externalVocabulary_) return nullptr;
  const std::string& uri = *externalVocabulary_;
  if (sharedExternal_ != nullptr && uri == sharedExternalURI_) return sharedExternal_.get();
  const ExternalVocabularyMap* const known = externalVocabularies_;
  const auto found = known ? known->find(uri) : ExternalVocabularyMap::const_iterator();
  if (known == nullptr || found == known->end() || found->second == nullptr || uri.empty()) {
    throw SAXException("Unknown external vocabulary \"" + uri +
                       "\": it must be registered with the property \"" +
                       properties::externalVocabularies + '"');
  }
  return found->second;
}

void XMLWriter_X891::Encoder::setExternalVocabulary(const std::string& uri,
                                                    const OwnedVocabulary& vocabulary) {
  fastinfoset::checkEntry(kOtherURIs, uri);
  std::shared_ptr<const SharedVocabulary> tables = shared(vocabulary);
  std::string name = uri;
  externalVocabulary_ = uri;
  sharedExternalURI_ = std::move(name);
  sharedExternal_ = std::move(tables);
}

void XMLWriter_X891::Encoder::setInitialVocabulary(const OwnedVocabulary& vocabulary) {
  sharedInitial_ = shared(vocabulary);
  initialVocabulary_ = *sharedInitial_;
}

/// Begins the tables of the document, also again after a root element that was refused.
/// @throws SAXException where the vocabularies are not possible
void XMLWriter_X891::Encoder::prepareVocabulary() {
  clearTables();
  limits_.tableOctets = 0;
  document_.algorithms.clear();
  document_.algorithmFields.clear();
  document_.vocabulary = nullptr;
  composed_ = {};
  header_ = &composed_;
  const ExternalVocabulary* const external = findExternalVocabulary();
  // One vocabulary can be used as it is; what is more stands behind it.
  if (external != nullptr && external == sharedExternal_.get()) {
    shareTables(sharedExternal_);
  } else if (external == nullptr && sharedInitial_ != nullptr) {
    shareTables(sharedInitial_);
    header_ = &sharedInitial_->entries();
    limits_.tableOctets = sharedInitial_->tableOctets();
  } else {
    strings(kPrefixes).add("xml");
    strings(kNamespaceNames).add(namespaces::xml);
    if (external != nullptr) loadExternalVocabulary(*external);
  }
  // These are indexed by positions of the tables.
  elementRecords_.forget(document_.vocabulary != nullptr);
  attributeRecords_.forget(document_.vocabulary != nullptr);
  if (external != nullptr) composed_.externalVocabulary = *externalVocabulary_;
  if (header_ == &composed_) loadInitialVocabulary(composed_);
  loadAlgorithms(external);
  checkTableOctets(0, 0);
  document_.loadedValues = strings(kAttributeValues).positions();
}

/// Begins the tables with those of a vocabulary, which is looked up as it is.
void XMLWriter_X891::Encoder::shareTables(std::shared_ptr<const SharedVocabulary> vocabulary) {
  for (unsigned table = kPrefixes; table < kStringTables; ++table) {
    strings(table).setBase(vocabulary->strings(table));
  }
  for (unsigned table = kStringTables; table < kTables; ++table) {
    names(table).setBase(vocabulary->names(table));
  }
  document_.vocabulary = std::move(vocabulary);
}

void XMLWriter_X891::Encoder::loadExternalVocabulary(const ExternalVocabulary& external) {
  const auto load = [](unsigned table, const auto& from, auto& to, auto entryOf) {
    for (std::uint32_t i = 0; i < from.definedCount; ++i) to.add(entryOf(from.entries[i]));
    to.skip(positionsOf(from) - from.definedCount);
    checkPositions(table, to.positions());
  };
  for (unsigned table = kPrefixes; table < kStringTables; ++table) {
    load(table, external.*kStringTableForms[table].external, strings(table), textOf);
  }
  for (unsigned table = kStringTables; table < kTables; ++table) {
    load(table, external.*kExternalNameTables[table - kStringTables], names(table), nameOf);
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
      fastinfoset::checkEntry(table, entry);
      if (to != nullptr) add(*to, entry);
      written.strings[table].push_back(std::move(entry));
    }
    if (to != nullptr) checkPositions(table, to->positions());
  }
  // A name refers to its parts, so they must be in the tables.
  const auto require = [&](unsigned table, const std::string& part) {
    StringIndexMap& to = strings(table);
    if (part.empty() || to.find(part) != nullptr) return;
    written.strings[table].push_back(part);
    add(to, part);
    checkPositions(table, to.positions());
  };
  for (unsigned table = kStringTables; table < kTables; ++table) {
    const QualifiedNameTable& from =
        *initialVocabulary_.*kExternalNameTables[table - kStringTables];
    NameIndexMap& to = names(table);
    for (std::uint32_t i = 0; i < from.definedCount; ++i) {
      const NameParts name = nameOf(from.entries[i]);
      checkNameParts(name);
      require(kPrefixes, name.prefix);
      require(kNamespaceNames, name.namespaceName);
      require(kLocalNames, name.localName);
      written.names[table - kStringTables].push_back(name);
      add(to, name);
    }
    checkPositions(table, to.positions());
  }
}

/// Assigns fields to the algorithms of the vocabularies and to all that are registered; these are
/// added to the initial vocabulary.
void XMLWriter_X891::Encoder::loadAlgorithms(const ExternalVocabulary* external) {
  std::vector<std::string>& named = document_.algorithms;
  std::map<std::string, unsigned>& fields = document_.algorithmFields;
  const auto name = [&](const std::string& uri) {
    fields.emplace(uri, kDialectX891.firstApplicationAlgorithm + named.size());
    named.push_back(uri);
  };
  std::size_t alphabets = header_->strings[kRestrictedAlphabets].size();
  if (external != nullptr) {
    const StringTable& table = external->encodingAlgorithms;
    for (std::uint32_t i = 0; i < table.definedCount; ++i) name(textOf(table.entries[i]));
    named.resize(std::min<std::size_t>(positionsOf(table), kMaximumAlgorithms));
    alphabets += positionsOf(external->restrictedAlphabets);
  }
  for (const std::string& uri : header_->strings[kEncodingAlgorithms]) name(uri);
  const auto nameInDocument = [&](const std::string& uri) {
    if (fields.contains(uri)) return;
    checkURI(uri);
    name(uri);
    if (header_ != &composed_) composed_ = *std::exchange(header_, &composed_);
    composed_.strings[kEncodingAlgorithms].push_back(uri);
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
  checkPositions(kEncodingAlgorithms, named.size());
  checkPositions(kRestrictedAlphabets, alphabets);
}

}  // namespace Tavrin
