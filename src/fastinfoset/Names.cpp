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
    unlisted_.setQName();
    return unlisted_;
  }
  Name& name = table.append();
  decodeNameParts(octet, name);
  accountFor(countedOctets(name));
  name.setQName();
  return name;
}

/// Decodes the parts of a literal name that an octet's low bits announce.
void Decoder::decodeNameParts(unsigned octet, std::string& prefix, std::string& namespaceName,
                              std::string& localName) {
  if ((octet & kPrefixPresent) && !(octet & kNamespacePresent)) fail(kPrefixWithoutNamespace);
  if (octet & kPrefixPresent) decodeNamePart(kPrefixes, "Error when parsing prefix", prefix);
  if (octet & kNamespacePresent) {
    decodeNamePart(kNamespaceNames, "Error when parsing namespace", namespaceName);
  }
  decodeIdentifier(kLocalNames, localName);
}

void Decoder::decodeNamePart(unsigned table, const char* message, std::string& part) {
  const unsigned octet = readOctet();
  Strings& entries = strings(table);
  if (dialect_.literalNameParts && (octet & kStringIndex) == 0) {
    return decodeLiteralIdentifier(octet, &entries, part);
  }
  const unsigned long index = decodeIndex(octet);
  if (index == kBuiltInNameIndex) {
    part = entries.form().builtIn;
    return;
  }
  const std::string* const entry = entries.find(index - kBuiltInNames);
  if (entry == nullptr) fail(message);
  part = *entry;
}

/// An entry of a table of names: the external entries first, then the document's own.
Name& Decoder::nameAt(unsigned long index, Names& table, const char* message) {
  Name* const name = table.find(index);
  if (name == nullptr) fail(message);
  return *name;
}

void Encoder::writeQualifiedName(int bits, NameIndexMap& table, const NameParts& name) {
  // The parts are found before anything is written or added.
  const PartIndices indices = findParts(name.prefix, name.namespaceName);
  addEntry(table, name);
  writeLiteralName(static_cast<unsigned>(bits), name.prefix, name.namespaceName, name.localName,
                   indices);
}

void Encoder::writeLiteralName(unsigned bits, const std::string& prefix,
                               const std::string& namespaceName, const std::string& localName,
                               PartIndices indices) {
  put(bits | (prefix.empty() ? 0 : kPrefixPresent) |
      (namespaceName.empty() ? 0 : kNamespacePresent));
  if (!prefix.empty()) writePart(vocabulary_.prefixes, prefix, indices.prefix);
  if (!namespaceName.empty()) {
    writePart(vocabulary_.namespaceNames, namespaceName, indices.namespaceName);
  }
  writeIdentifier(&vocabulary_.localNames, localName);
}

Encoder::PartIndices Encoder::findParts(const std::string& prefix,
                                        const std::string& namespaceName) const {
  PartIndices indices;
  if (!prefix.empty()) indices.prefix = findPart(vocabulary_.prefixes, prefix, "xml", "prefix");
  if (!namespaceName.empty()) {
    indices.namespaceName =
        findPart(vocabulary_.namespaceNames, namespaceName, namespaces::xml, "namespace");
  }
  return indices;
}

/// The index of a prefix or namespace name as a literal name counts it, or kNoIndex where it may be
/// written literally.
unsigned Encoder::findPart(const StringIndexMap& table, const std::string& part,
                           const char* builtIn, const char* what) const {
  if (part == builtIn) return kBuiltInNameIndex;
  if (const unsigned* const index = table.find(part)) {
    return *index + kBuiltInNames - dialect_.builtInNamesInDeclarations;
  }
  if (!dialect_.literalNameParts) missingNamePart(part, what);
  return kNoIndex;
}

void Encoder::missingNamePart(const std::string& part, const char* what) {
  throw SAXException(std::string("Undeclared ") + what + " \"" + part + "\"");
}

void Encoder::writePart(StringIndexMap& table, const std::string& part, unsigned index) {
  if (index == kNoIndex) {
    writeIdentifier(&table, part);
  } else {
    encodeIndex(kStringIndex, index);
  }
}

void Encoder::writeElementName(unsigned attributeFlag, const EventName& name) {
  const auto& [uri, localName, qName] = name;
  const unsigned* index = known_.elements.find(uri, localName, qName);
  if (index == nullptr) {
    assignName(name_, name);
    index = vocabulary_.elementNames.find(name_);
    if (index == nullptr) {
      writeQualifiedName(static_cast<int>(kLiteralElementName | attributeFlag),
                         vocabulary_.elementNames, name_);
      return;
    }
    known_.elements.put(uri, localName, qName, *index);
  }
  putInteger(kElementIndex, attributeFlag, *index);
}

void Encoder::writeAttributeName(const EventName& name) {
  const auto& [uri, localName, qName] = name;
  const unsigned* index = known_.attributes.find(uri, localName, qName);
  if (index == nullptr) {
    assignName(name_, name);
    index = vocabulary_.attributeNames.find(name_);
    if (index == nullptr) {
      writeQualifiedName(kLiteralAttributeName, vocabulary_.attributeNames, name_);
      return;
    }
    known_.attributes.put(uri, localName, qName, *index);
  }
  encodeIndex(0, *index);
}

// --- Surrogates ---

/// Decodes a name as the indexes of its parts.
NameParts Decoder::decodeNameSurrogate() {
  const unsigned octet = readOctet();
  checkPadding(octet & ~(kPrefixPresent | kNamespacePresent));
  if ((octet & kPrefixPresent) && !(octet & kNamespacePresent)) fail(kPrefixWithoutNamespace);
  NameParts name;
  if (octet & kPrefixPresent) name.prefix = decodeSurrogatePart(kPrefixes);
  if (octet & kNamespacePresent) name.namespaceName = decodeSurrogatePart(kNamespaceNames);
  name.localName = decodeSurrogatePart(kLocalNames);
  return name;
}

std::string Decoder::decodeSurrogatePart(unsigned table) {
  const unsigned octet = readOctet();
  checkPadding(octet & kStringIndex);
  const unsigned long index = decodeIndex(octet);
  const unsigned long builtIn = builtInEntries(table);
  Strings& entries = strings(table);
  return index < builtIn ? entries.form().builtIn : stringAt(index - builtIn, entries);
}

}  // namespace Tavrin::fastinfoset
