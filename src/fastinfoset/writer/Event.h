#pragma once

#include <Tavrin/EncodingAlgorithmAttributes.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_FI.h>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <typeinfo>
#include <utility>

#include "../../xml/NameCache.h"
#include "../Dialect.h"
#include "../Integers.h"
#include "IndexMap.h"

namespace Tavrin {

/// The index of what is in no table.
inline constexpr unsigned kNoIndex = ~0U;

/// A name as an event brings it.
struct XMLWriter_FI::Name {
  const std::string& uri;
  const std::string& localName;
  const std::string& qName;

  /// What stands in front of the last colon of the qualified name.
  std::string_view prefix() const {
    const std::size_t colon = qName.rfind(':');
    return std::string_view(qName).substr(0, colon == std::string::npos ? 0 : colon);
  }
};

/// The tables that the writer adds to (X.891, clause 8).
struct XMLWriter_FI::Vocabulary {
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
};

/// What enters the tables beside names and identifiers, which all do. Lengths are in octets.
struct XMLWriter_FI::Limits {
  std::uint64_t indexedAttributeValueLength = fastinfoset::kIndexedLength - 1;  // Others, too.
  std::uint64_t indexedChunkLength = fastinfoset::kIndexedLength - 1;
  std::uint64_t maximumTableOctets = UINT64_MAX;
  std::uint64_t tableOctets = 0;  // What the entries count for together.
};

/// The indices of names that came before, found without a look into the tables.
struct XMLWriter_FI::KnownNames {
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

/// Assigns over a name that is used again and again.
inline void XMLWriter_FI::assignName(QualifiedName& name, const Name& from) {
  name.prefix = from.prefix();
  name.namespaceName = from.uri;
  name.localName = from.localName;
}

/// Gathers what an event has to write. What has gathered is in the stream before code of others
/// runs, and at the end of the event, also where it is refused.
template <typename Body>
void XMLWriter_FI::perform(Body body) {
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
void XMLWriter_FI::putInteger(const Encoding& encoding, unsigned bits, std::uint64_t value) {
  // Most integers are small.
  if (value < encoding.forms[1].bias) {
    put(bits | encoding.forms[0].marker | static_cast<unsigned>(value - encoding.forms[0].bias));
    return;
  }
  const fastinfoset::EncodedInteger integer = fastinfoset::encodeInteger(encoding, bits, value);
  write(integer.octets.data(), integer.length);
}

/// Writes typed content, behind the text that has gathered.
template <typename Algorithm, typename Value>
void XMLWriter_FI::encodeContent(Algorithm& algorithm, const Value& value) {
  flushCharacters();
  flushTerminator(false);
  sendOctets();
  if (out_ != nullptr) algorithm.encodeToOutputStream(true, value, *out_);
}

// --- Tables ---

/// Whether a value, chunk or other string is to enter its table when it is written.
inline bool XMLWriter_FI::isIndexed(const StringIndexMap& table, const std::string& text) const {
  const Limits& limits = *limits_;
  const std::uint64_t longest = &table == &vocabulary_.characterChunks
                                    ? limits.indexedChunkLength
                                    : limits.indexedAttributeValueLength;
  return text.size() <= longest && table.positions() < dialect_.maximumEntries &&
         limits.tableOctets + text.size() + fastinfoset::kEntryOctets <= limits.maximumTableOctets;
}

/// Enters what was written literally into its table.
template <typename Key>
void XMLWriter_FI::addEntry(fastinfoset::IndexMap<Key>& table, const Key& entry) {
  if (table.positions() >= dialect_.maximumEntries) return;
  limits_->tableOctets += fastinfoset::octetsOf(entry) + fastinfoset::kEntryOctets;
  table.add(entry);
}

template <typename Key>
void XMLWriter_FI::addEntry(std::map<Key, unsigned>& table, const Key& entry) {
  table.emplace(entry, static_cast<unsigned>(table.size()));
}

template <typename Key>
const unsigned* findIndex(const fastinfoset::IndexMap<Key>& table, const Key& entry) {
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
void XMLWriter_FI::writeNewString(Table* table, const std::string& text) {
  using namespace fastinfoset;
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
void XMLWriter_FI::writeString(Table* table, bool addToTable, const std::string& text) {
  const unsigned* const index =
      table != nullptr && !text.empty() ? findIndex(*table, text) : nullptr;
  if (index != nullptr) {
    encodeIndex(fastinfoset::kStringIndex, *index);
  } else {
    writeNewString(addToTable ? table : nullptr, text);
  }
}

template <typename Table>
void XMLWriter_FI::writeIdentifier(Table* table, const std::string& text) {
  if (const unsigned* const index = findIndex(*table, text)) {
    encodeIndex(fastinfoset::kStringIndex, *index);
    return;
  }
  addEntry(*table, text);
  putIdentifier(text);
}

template <typename Table>
void XMLWriter_FI::writeQualifiedName(int bits, Table& table, const QualifiedName& name) {
  using namespace fastinfoset;
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

}  // namespace Tavrin
