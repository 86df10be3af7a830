#include "../xml/SameText.h"
#include "Decoder.h"
#include "Encoder.h"
#include "format/Octets.h"

// Names: surrogates of an initial vocabulary, and names of elements and attributes (X.891, C.16 to
// C.18).

namespace Tavrin::fastinfoset {

namespace {

constexpr const char* kPrefixWithoutNamespace =
    "Qualified name with a prefix, but without a namespace";

}  // namespace

/// Decodes a literal name whose first octet was read, and adds it to the table.
Name& Decoder::decodeLiteralName(unsigned octet, Names& table) {
  if (table.positions() >= dialect_.maximumEntries) {
    unlisted_ = {};
    decodeNameParts(octet, unlisted_);
    return unlisted_;
  }
  Name& name = appendName(table);
  decodeNameParts(octet, name);
  accountFor(countedOctets(name));
  return name;
}

/// Decodes the parts of a literal name that an octet's low bits announce.
void Decoder::decodeNameParts(unsigned octet, Name& name) {
  if ((octet & kPrefixPresent) && !(octet & kNamespacePresent)) fail(kPrefixWithoutNamespace);
  NameParts unlisted;  // Those that are in no table, as it is full.
  const std::string* prefix = &Name::kNone;
  const std::string* namespaceName = &Name::kNone;
  if (octet & kPrefixPresent) {
    prefix = &decodeNamePart(kPrefixes, "Error when parsing prefix", unlisted.prefix);
  }
  if (octet & kNamespacePresent) {
    namespaceName =
        &decodeNamePart(kNamespaceNames, "Error when parsing namespace", unlisted.namespaceName);
  }
  const std::string& localName = decodeEntry(kLocalNames, unlisted.localName);
  const bool isListed = prefix != &unlisted.prefix && namespaceName != &unlisted.namespaceName &&
                        &localName != &unlisted.localName;
  if (isListed) {
    name.refer(*prefix, *namespaceName, localName);
  } else {
    name.own({*prefix, *namespaceName, localName});
  }
}

/// @param unlisted holds the part where it is in no table
const std::string& Decoder::decodeNamePart(unsigned table, const char* message,
                                           std::string& unlisted) {
  const unsigned octet = readOctet();
  Strings& entries = strings(table);
  if (dialect_.literalNameParts && (octet & kStringIndex) == 0) {
    return decodeLiteralIdentifier(octet, entries, unlisted);
  }
  const unsigned long index = decodeIndex(octet);
  if (index == kBuiltInNameIndex) return entries.builtIn();
  const std::string* const entry = entries.find(index - kBuiltInNames);
  if (entry == nullptr) fail(message);
  return *entry;
}

/// An entry of a table of names: the external entries first, then the document's own.
Name& Decoder::nameAt(unsigned long index, Names& table, const char* message) {
  Name* const name = table.find(index);
  if (name == nullptr) fail(message);
  return *name;
}

void Encoder::encodeNewName(unsigned bits, unsigned table, const NameView& name, KeyHash hash) {
  // This may throw, so it comes before anything is written or added.
  const PartIndices indices = findNameParts(name.prefix, name.namespaceName);
  addEntry(names(table), name, hash);
  encodeLiteralName(bits, name, indices);
}

void Encoder::encodeLiteralName(unsigned bits, const NameView& name, PartIndices indices) {
  const auto& [prefix, namespaceName, localName] = name;
  put(bits | (prefix.empty() ? 0 : kPrefixPresent) |
      (namespaceName.empty() ? 0 : kNamespacePresent));
  if (!prefix.empty()) encodeNamePart(kPrefixes, prefix, indices.prefix);
  if (!namespaceName.empty()) {
    encodeNamePart(kNamespaceNames, namespaceName, indices.namespaceName);
  }
  encodeIdentifier(kLocalNames, localName);
}

Encoder::PartIndices Encoder::findNameParts(std::string_view prefix,
                                            std::string_view namespaceName) {
  KnownParts& known = parts_;
  if (known.isKnown && xml::sameText(known.prefix, prefix) &&
      xml::sameText(known.namespaceName, namespaceName)) {
    return known.indices;
  }
  PartIndices indices;
  if (!prefix.empty()) indices.prefix = findNamePart(kPrefixes, prefix, "prefix");
  if (!namespaceName.empty()) {
    indices.namespaceName = findNamePart(kNamespaceNames, namespaceName, "namespace");
  }
  // What is in no table now may be there later.
  known.isKnown = false;
  if ((prefix.empty() || indices.prefix != kNoIndex) &&
      (namespaceName.empty() || indices.namespaceName != kNoIndex)) {
    known.prefix = prefix;
    known.namespaceName = namespaceName;
    known.indices = indices;
    known.isKnown = true;
  }
  return indices;
}

/// The index of a prefix or namespace name as a literal name counts it, or kNoIndex where it is
/// written literally.
unsigned Encoder::findNamePart(unsigned table, std::string_view part, const char* what) const {
  if (part == kStringTableForms[table].builtIn) return kBuiltInNameIndex;
  if (const unsigned* const index = strings(table).find(part)) {
    return *index + kBuiltInNames - dialect_.builtInNamesInDeclarations;
  }
  if (!dialect_.literalNameParts) {
    throw SAXException(std::string("Undeclared ") + what + " \"" + std::string(part) + "\"");
  }
  return kNoIndex;
}

void Encoder::encodeNamePart(unsigned table, std::string_view part, unsigned index) {
  if (index == kNoIndex) {
    encodeIdentifier(table, part);
  } else {
    encodeIndex(kStringIndex, index);
  }
}

void Encoder::encodeElementName(unsigned attributeFlag, const EventName& name) {
  const auto& [uri, localName, qName] = name;
  const unsigned* index = known_.elements.find(uri, localName, qName);
  if (index == nullptr) {
    const NameView parts = name.parts();
    KeyHash hash;
    index = names(kElementNames).find(parts, hash);
    if (index == nullptr) {
      return encodeNewName(kLiteralElementName | attributeFlag, kElementNames, parts, hash);
    }
    known_.elements.put(uri, localName, qName, *index);
  }
  writeInteger(kElementIndex, attributeFlag, *index);
}

void Encoder::encodeAttributeName(const EventName& name) {
  const auto& [uri, localName, qName] = name;
  const unsigned* index = known_.attributes.find(uri, localName, qName);
  if (index == nullptr) {
    const NameView parts = name.parts();
    KeyHash hash;
    index = names(kAttributeNames).find(parts, hash);
    if (index == nullptr) {
      return encodeNewName(kLiteralAttributeName, kAttributeNames, parts, hash);
    }
    known_.attributes.put(uri, localName, qName, *index);
  }
  encodeIndex(0, *index);
}

// --- Surrogates ---

/// Decodes a name as the indexes of its parts.
Name Decoder::decodeNameSurrogate() {
  const unsigned octet = readOctet();
  checkPadding(octet & ~(kPrefixPresent | kNamespacePresent));
  if ((octet & kPrefixPresent) && !(octet & kNamespacePresent)) fail(kPrefixWithoutNamespace);
  const auto decode = [this](bool isPresent, unsigned table) -> const std::string& {
    return isPresent ? decodeSurrogatePart(table) : Name::kNone;
  };
  const std::string& prefix = decode(octet & kPrefixPresent, kPrefixes);
  const std::string& namespaceName = decode(octet & kNamespacePresent, kNamespaceNames);
  Name name;
  name.refer(prefix, namespaceName, decodeSurrogatePart(kLocalNames));
  return name;
}

const std::string& Decoder::decodeSurrogatePart(unsigned table) {
  const unsigned octet = readOctet();
  checkPadding(octet & kStringIndex);
  const unsigned long index = decodeIndex(octet);
  const unsigned long builtIn = builtInEntries(table);
  Strings& entries = strings(table);
  return index < builtIn ? entries.builtIn() : stringAt(index - builtIn, entries);
}

void Encoder::encodeNameSurrogate(const NameParts& name) {
  put((name.prefix.empty() ? 0 : kPrefixPresent) |
      (name.namespaceName.empty() ? 0 : kNamespacePresent));
  if (!name.prefix.empty()) encodeIndex(0, strings(kPrefixes).at(name.prefix));
  if (!name.namespaceName.empty()) encodeIndex(0, strings(kNamespaceNames).at(name.namespaceName));
  encodeIndex(0, strings(kLocalNames).at(name.localName));
}

}  // namespace Tavrin::fastinfoset
