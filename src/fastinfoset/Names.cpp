#include "Decoder.h"
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
