#pragma once

#include <Tavrin/EncodingAlgorithmAttributes.h>
#include <Tavrin/EncodingAlgorithms.h>
#include <Tavrin/Identifiers.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <ostream>
#include <string>
#include <string_view>
#include <typeinfo>
#include <utility>
#include <vector>

#include "../xml/NameCache.h"
#include "IndexMap.h"
#include "format/Dialect.h"
#include "format/Integers.h"

namespace Tavrin::fastinfoset {

/// The index of what is in no table.
inline constexpr unsigned kNoIndex = ~0U;

/// A name as an event brings it.
struct EventName {
  const std::string& uri;
  const std::string& localName;
  const std::string& qName;

  /// What stands in front of the last colon of the qualified name.
  std::string_view prefix() const {
    const std::size_t colon = qName.rfind(':');
    return std::string_view(qName).substr(0, colon == std::string::npos ? 0 : colon);
  }
};

using StringIndexMap = IndexMap<std::string>;
using NameIndexMap = IndexMap<NameParts>;

/// The tables that a writer adds to (X.891, clause 8).
struct WrittenTables {
  StringIndexMap prefixes;
  StringIndexMap namespaceNames;
  StringIndexMap localNames;
  StringIndexMap otherNCNames;
  StringIndexMap otherURIs;
  StringIndexMap attributeValues;
  StringIndexMap characterChunks;
  StringIndexMap otherStrings;
  NameIndexMap elementNames;
  NameIndexMap attributeNames;

  /// @param table kPrefixes or a later one
  StringIndexMap& strings(unsigned table) {
    StringIndexMap* const maps[] = {&prefixes,  &namespaceNames,  &localNames,      &otherNCNames,
                                    &otherURIs, &attributeValues, &characterChunks, &otherStrings};
    return *maps[table - kPrefixes];
  }
  NameIndexMap& names(unsigned table) {
    return table == kElementNames ? elementNames : attributeNames;
  }
};

/// What enters the tables beside names and identifiers, which all do. Lengths are in octets.
struct WriterLimits {
  std::uint64_t indexedAttributeValueLength = kIndexedLength - 1;  // Others, too.
  std::uint64_t indexedChunkLength = kIndexedLength - 1;
  std::uint64_t maximumTableOctets = UINT64_MAX;
  std::uint64_t tableOctets = 0;  // What the entries count for together.
};

/// The indices of names that came before, found without a look into the tables.
struct KnownNames {
  xml::NameCache<unsigned> elements;
  xml::NameCache<unsigned> attributes;
  const std::type_info* untyped = nullptr;  // A class of attributes without typed values.

  // The name of an attribute: what a list answers need not be valid when it is asked again.
  std::string uri;
  std::string localName;
  std::string qName;
};

/// The attributes with their typed values, or null. Sources tend to use one class of attributes.
/// @param untyped a class without them, as it was found out
inline const EncodingAlgorithmAttributes* findTypedForm(const Attributes& attributes,
                                                        const std::type_info*& untyped) {
  if (&typeid(attributes) == untyped) return nullptr;
  const auto* const typed = dynamic_cast<const EncodingAlgorithmAttributes*>(&attributes);
  if (typed == nullptr) untyped = &typeid(attributes);
  return typed;
}

/// Whether an attribute is in the namespace of declarations.
inline bool isInXmlns(const Attributes& attributes, int index) {
  constexpr std::string_view kXmlns = namespaces::xmlns;
  return attributes.getURI(index) == kXmlns;  // Looks at the length first.
}

/// Encodes what events bring: what all writers of Fast Infoset share, which is the format.
class Encoder {
 public:
  /// What belongs to the writer: programs that derive from it reach some of it.
  struct Shared {
    std::ostream* const& out;
    bool& pendingTerminator;
    std::string& characters;
    BuiltInAlgorithms& builtIn;
  };

  Encoder(const Dialect& dialect, const Shared& shared);
  Encoder(const Encoder&) = delete;
  Encoder& operator=(const Encoder&) = delete;

  // --- Octets ---

  template <typename Body>
  void perform(Body body);
  void sendOctets();
  void put(unsigned octet);
  void putOctets(const std::string& octets);
  void putIdentifier(const std::string& text);
  void putItemCount(std::uint32_t count);
  void putAlgorithm(bool chunk, unsigned field, std::uint64_t length);
  template <typename Encoding>
  void putInteger(const Encoding& encoding, unsigned bits, std::uint64_t value);
  void encodeIndex(int bits, unsigned index);

  // --- Strings and names, with the tables of the writer or with others ---

  template <typename Table>
  void writeString(Table* table, bool addToTable, const std::string& text);
  template <typename Table>
  void writeNewString(Table* table, const std::string& text);
  template <typename Table>
  void writeIdentifier(Table* table, const std::string& text);
  template <typename Table, typename Name>
  void writeQualifiedName(int bits, Table& table, const Name& name);
  void writeElementName(unsigned attributeFlag, const EventName& name);
  void writeAttributeName(const EventName& name);

  // --- Items ---

  void encodeNamespaces(const std::vector<std::string>& pairs);
  void encodeCharacters(const std::string& text);
  void encodeComment(const std::string& text);
  void encodeProcessingInstruction(const std::string& target, const std::string& data);
  template <typename Algorithm, typename Value>
  void encodeContent(Algorithm& algorithm, const Value& value);
  void finishElement();
  void finishDocument();

  /// Writes the terminator that is pending; with `final`, together with another one.
  void flushTerminator(bool final);
  /// Writes the text that has gathered as one chunk.
  void flushCharacters();

  // --- Tables ---

  void clearTables();
  bool isIndexed(const StringIndexMap& table, const std::string& text) const;
  WrittenTables& tables() { return vocabulary_; }
  KnownNames& known() { return known_; }

 protected:
  [[noreturn]] static void missingNamePart(const std::string& part, const char* what);
  unsigned findNamePart(const StringIndexMap& table, const std::string& part, const char* builtIn,
                        const char* what) const;
  void writeNamePart(StringIndexMap& table, const std::string& part, unsigned index);
  template <typename Key>
  void addEntry(IndexMap<Key>& table, const Key& entry);
  template <typename Key>
  void addEntry(std::map<Key, unsigned>& table, const Key& entry);
  static void assignName(NameParts& name, const EventName& from);
  std::uint64_t lengthOf(const std::string& text) const;
  void write(const char* octets, std::size_t count);

  std::ostream* const& out_;
  bool& pendingTerminator_;
  std::string& characters_;
  BuiltInAlgorithms& builtIn_;

  const Dialect& dialect_;
  WrittenTables vocabulary_;  // Of the current document.
  KnownNames known_;
  WriterLimits limits_;
  NameParts name_;  // Used again for each name: its strings keep their memory.
  bool gathers_ = false;
  std::string gathered_;  // Octets of an event that are not in the stream yet.
};

/// Assigns over a name that is used again and again.
inline void Encoder::assignName(NameParts& name, const EventName& from) {
  name.prefix = from.prefix();
  name.namespaceName = from.uri;
  name.localName = from.localName;
}

/// Gathers what an event has to write. What has gathered is in the stream before code of others
/// runs, and at the end of the event, also where it is refused.
template <typename Body>
void Encoder::perform(Body body) {
  const bool gathers = std::exchange(gathers_, true);
  try {
    body();
  } catch (...) {
    gathers_ = gathers;
    sendOctets();
    throw;
  }
  gathers_ = gathers;
  sendOctets();
}

/// Writes an integer in its shortest form, with the other bits of its first octet.
template <typename Encoding>
void Encoder::putInteger(const Encoding& encoding, unsigned bits, std::uint64_t value) {
  // Most integers are small.
  if (value < encoding.forms[1].bias) {
    put(bits | encoding.forms[0].marker | static_cast<unsigned>(value - encoding.forms[0].bias));
    return;
  }
  const EncodedInteger integer = encodeInteger(encoding, bits, value);
  write(integer.octets.data(), integer.length);
}

/// Writes typed content, behind the text that has gathered.
template <typename Algorithm, typename Value>
void Encoder::encodeContent(Algorithm& algorithm, const Value& value) {
  flushCharacters();
  flushTerminator(false);
  sendOctets();
  if (out_ != nullptr) algorithm.encodeToOutputStream(true, value, *out_);
}

// --- Tables ---

/// Whether a value, chunk or other string is to enter its table when it is written.
inline bool Encoder::isIndexed(const StringIndexMap& table, const std::string& text) const {
  const WriterLimits& limits = limits_;
  const std::uint64_t longest = &table == &vocabulary_.characterChunks
                                    ? limits.indexedChunkLength
                                    : limits.indexedAttributeValueLength;
  return text.size() <= longest && table.positions() < dialect_.maximumEntries &&
         limits.tableOctets + countedOctets(text) <= limits.maximumTableOctets;
}

/// Enters what was written literally into its table.
template <typename Key>
void Encoder::addEntry(IndexMap<Key>& table, const Key& entry) {
  if (table.positions() >= dialect_.maximumEntries) return;
  limits_.tableOctets += countedOctets(entry);
  table.add(entry);
}

template <typename Key>
void Encoder::addEntry(std::map<Key, unsigned>& table, const Key& entry) {
  table.emplace(entry, static_cast<unsigned>(table.size()));
}

template <typename Key>
const unsigned* findIndex(const IndexMap<Key>& table, const Key& entry) {
  return table.find(entry);
}

template <typename Key>
const unsigned* findIndex(const std::map<Key, unsigned>& table, const Key& entry) {
  const auto found = table.find(entry);
  return found == table.end() ? nullptr : &found->second;
}

// --- Strings and names, with the tables of the writer or with others ---

/// Writes a string that is in no table.
/// @param table to which it is added, or null
template <typename Table>
void Encoder::writeNewString(Table* table, const std::string& text) {
  if (text.empty()) {
    put(kEmptyString);
    return;
  }
  if (table != nullptr) addEntry(*table, text);
  putInteger(kStringLength, kStringUTF8 | (table != nullptr ? kStringAddToTable : 0),
             lengthOf(text));
  putOctets(text);
}

template <typename Table>
void Encoder::writeString(Table* table, bool addToTable, const std::string& text) {
  const unsigned* const index =
      table != nullptr && !text.empty() ? findIndex(*table, text) : nullptr;
  if (index != nullptr) {
    encodeIndex(kStringIndex, *index);
  } else {
    writeNewString(addToTable ? table : nullptr, text);
  }
}

template <typename Table>
void Encoder::writeIdentifier(Table* table, const std::string& text) {
  if (const unsigned* const index = findIndex(*table, text)) {
    encodeIndex(kStringIndex, *index);
    return;
  }
  addEntry(*table, text);
  putIdentifier(text);
}

template <typename Table, typename Name>
void Encoder::writeQualifiedName(int bits, Table& table, const Name& name) {
  const bool hasPrefix = !name.prefix.empty();
  const bool hasNamespace = !name.namespaceName.empty();
  // Both are looked up before anything is written or added.
  unsigned prefixIndex = kNoIndex;
  unsigned namespaceIndex = kNoIndex;
  if (hasPrefix) prefixIndex = findNamePart(vocabulary_.prefixes, name.prefix, "xml", "prefix");
  if (hasNamespace) {
    namespaceIndex =
        findNamePart(vocabulary_.namespaceNames, name.namespaceName, namespaces::xml, "namespace");
  }
  addEntry(table, name);
  put(static_cast<unsigned>(bits) | (hasPrefix ? kPrefixPresent : 0) |
      (hasNamespace ? kNamespacePresent : 0));
  if (hasPrefix) writeNamePart(vocabulary_.prefixes, name.prefix, prefixIndex);
  if (hasNamespace) {
    writeNamePart(vocabulary_.namespaceNames, name.namespaceName, namespaceIndex);
  }
  writeIdentifier(&vocabulary_.localNames, name.localName);
}

}  // namespace Tavrin::fastinfoset
