#include "Vocabulary.h"

#include <utility>

#include "Decoder.h"
#include "Encoder.h"
#include "format/Octets.h"

// The vocabulary: its tables, and the initial vocabulary of a document (X.891, 7.2, clause 8 and
// C.2.5).

namespace Tavrin::fastinfoset {

// --- Tables ---

const std::string& Strings::builtIn() const {
  static const std::string prefix = kStringTableForms[kPrefixes].builtIn;
  static const std::string namespaceName = kStringTableForms[kNamespaceNames].builtIn;
  return table_ == kPrefixes ? prefix : namespaceName;
}

const std::string Name::kNone;

const std::string* Strings::findExternal(unsigned long position) {
  if (position >= external_->definedCount) return nullptr;
  if (shared_ != nullptr) return &(*shared_)[position];
  const auto [entry, isNew] = externalEntries_.try_emplace(position);
  if (isNew) entry->second = textOf(external_->entries[position]);
  return &entry->second;
}

Name* Names::findExternal(unsigned long position) {
  if (position >= external_->definedCount) return nullptr;
  const auto known = externalEntries_.find(position);
  if (known != externalEntries_.end()) return &known->second;
  Name name;
  if (shared_ != nullptr) {
    const NameParts& parts = (*shared_)[position];
    name.refer(parts.prefix, parts.namespaceName, parts.localName);
  } else {
    const auto& [prefix, namespaceName, localName] = external_->entries[position];
    name.own({textOf(prefix), textOf(namespaceName), textOf(localName)});
  }
  return &externalEntries_.emplace(position, std::move(name)).first->second;
}

/// @return the entry, or null where the table is full
const std::string* Decoder::addEntry(Strings& table, std::string_view entry) {
  if (table.positions() >= dialect_.maximumEntries) return nullptr;
  accountFor(countedOctets(entry));
  const std::string& added = table.append(entry);
  recordEntry(table.table());
  return &added;
}

/// Adds what an unknown algorithm has made.
void Decoder::addEntry(Strings& table, unsigned field, const std::string& uri,
                       const std::string& octets) {
  if (table.positions() >= dialect_.maximumEntries) return;
  accountFor(countedOctets(octets) + countedOctets(uri));
  table.append({field, uri, octets});
  recordEntry(table.table());
}

Name& Decoder::appendName(Names& table) {
  recordEntry(table.table());
  return table.append();
}

// --- The initial vocabulary ---

void Decoder::decodeInitialVocabulary() {
  if (!progress_.vocabulary) {
    const unsigned high = readOctet();
    checkPadding(high & kVocabularyPadding);
    const unsigned components = high << 8 | readOctet();
    if (components == 0) fail("Initial vocabulary without a component");
    progress_.vocabulary = components;
    endStep();
  }
  unsigned& components = *progress_.vocabulary;
  const auto decode = [&](unsigned bit, auto component) {
    if ((components & bit) == 0) return;
    component();
    components &= ~bit;
    endStep();
  };
  decode(kExternalVocabulary, [this] {
    std::string uri;
    decodeIdentifier(uri);
    checkText(uri);
    useExternalVocabulary(uri);
  });
  for (Strings& table : strings_) {
    decode(componentBit(table.table()), [&] { decodeEntries(table); });
  }
  for (Names& table : names_) {
    decode(componentBit(table.table()), [&] { decodeEntries(table); });
  }
}

void Decoder::useExternalVocabulary(const std::string& uri) {
  if (const auto owned = sharedVocabularies_.find(uri); owned != sharedVocabularies_.end()) {
    return setExternalVocabulary(owned->second.get(), owned->second);
  }
  const ExternalVocabularyMap* const known = externalVocabularies_;
  const auto found = known ? known->find(uri) : ExternalVocabularyMap::const_iterator();
  const bool isKnown = known != nullptr && found != known->end();
  setExternalVocabulary(chooseVocabulary(uri, isKnown ? found->second : nullptr));
}

const ExternalVocabulary* Decoder::chooseVocabulary(const std::string& uri,
                                                    const ExternalVocabulary* known) {
  if (known == nullptr) fail(describeUnknownVocabulary(uri));
  return known;
}

/// @param vocabulary outlives its use; null for none
/// @param shared     the same, where it is a shared one
void Decoder::setExternalVocabulary(const ExternalVocabulary* vocabulary,
                                    std::shared_ptr<const SharedVocabulary> shared) {
  const auto isUsed = [&](const auto& table) {
    return vocabulary != nullptr && (dialect_.externalTables & componentBit(table.table())) != 0;
  };
  const InitialVocabulary* const entries = shared ? &shared->entries() : nullptr;
  for (Strings& table : strings_) {
    table.setExternal(isUsed(table) ? &(vocabulary->*table.form().external) : nullptr,
                      entries ? &entries->strings[table.table()] : nullptr);
  }
  for (Names& table : names_) {
    table.setExternal(isUsed(table) ? &(vocabulary->*table.external()) : nullptr,
                      entries ? &entries->names[table.table() - kStringTables] : nullptr);
  }
  vocabulary_ = std::move(shared);
}

void Decoder::failAtEntries(unsigned long most) const {
  fail("Initial vocabulary with more than " + std::to_string(most) + " entries of a kind");
}

void Decoder::decodeEntries(Strings& table) {
  const bool isNumbered = table.table() <= kEncodingAlgorithms;  // By fields of eight bits.
  std::string entry;
  decodeItems(isNumbered ? kMaximumAlgorithms : kMaximumEntries, [&] {
    if (table.form().isEncoded) {
      const unsigned octet = readOctet();
      checkPadding(octet & (kStringIndex | kStringAddToTable));
      if ((octet & kStringAlgorithmMask) == kStringAlgorithm) return decodeTypedEntry(octet, table);
      decodeString(octet, nullptr, entry);
    } else {
      decodeIdentifier(entry);
      checkEntry(table.table(), entry);
    }
    addEntry(table, entry);
  });
}

/// Decodes an entry that an algorithm has made. The table holds its text.
void Decoder::decodeTypedEntry(unsigned octet, Strings& table) {
  const Field field = decodeStringField(octet);
  expectLiteral(field.length);
  std::string uri;
  EncodingAlgorithm* const algorithm = getEncodingAlgorithm(field.number, uri);
  if (algorithm == nullptr) {
    addEntry(table, field.number, uri, decodeUnknown(field, uri).data_);
    return;
  }
  const std::string text = textOfValue(field.number, decodeData(*algorithm, field));
  checkText(text);
  addEntry(table, text);
}

void Decoder::decodeEntries(Names& table) {
  decodeItems(kMaximumEntries, [&] {
    Name name = decodeNameSurrogate();
    if (table.positions() >= kMaximumEntries) return;
    accountFor(countedOctets(name));
    Name& entry = appendName(table);
    entry.refer(name.prefix(), name.namespaceName(), name.localName());
  });
}

void Encoder::encodeInitialVocabulary(const InitialVocabulary& vocabulary) {
  const unsigned components = vocabulary.components();
  put(components >> 8);
  put(components & 0xFF);
  if (!vocabulary.externalVocabulary.empty()) {
    encodeLiteralIdentifier(vocabulary.externalVocabulary);
  }
  const auto encodeCount = [this](const auto& entries) {
    if (!entries.empty()) encodeNumberOfItems(static_cast<std::uint32_t>(entries.size()));
  };
  for (unsigned table = 0; table < kStringTables; ++table) {
    const std::vector<std::string>& entries = vocabulary.strings[table];
    encodeCount(entries);
    for (const std::string& entry : entries) {
      if (kStringTableForms[table].isEncoded) {
        encodeLiteralString(false, entry);
      } else {
        encodeLiteralIdentifier(entry);
      }
    }
  }
  for (const std::vector<NameParts>& entries : vocabulary.names) {
    encodeCount(entries);
    for (const NameParts& name : entries) encodeNameSurrogate(name);
  }
}

}  // namespace Tavrin::fastinfoset
