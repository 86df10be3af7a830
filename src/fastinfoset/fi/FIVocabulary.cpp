#include "../format/Octets.h"
#include "../DecodeAttributes.h"
#include "../TakeOctet.h"
#include "FIDecoder.h"

// The initial vocabulary (X.891, C.2.5 and C.16).

namespace Tavrin {

using namespace fastinfoset;

void XMLReader_FI::Decoder::decodeInitialVocabulary() {
  const unsigned high = takeOctet();
  const unsigned tables = high << 8 | takeOctet();
  if (tables & kExternalVocabulary) {
    std::string uri;
    decodeIdentifier(nullptr, uri);
    if (externalVocabularies_ == nullptr || externalVocabularies_->count(uri) == 0) {
      fail("Unknown external vocabulary - " + uri);
    }
    externalVocabulary_ = externalVocabularies_->at(uri);
  }
  if (tables & kRestrictedAlphabets) decodeStringTable(restrictedAlphabets_);
  if (tables & kEncodingAlgorithms) decodeIdentifierTable(encodingAlgorithms_);
  if (tables & kPrefixes) decodeIdentifierTable(prefixes_);
  if (tables & kNamespaceNames) decodeIdentifierTable(namespaceNames_);
  if (tables & kLocalNames) decodeIdentifierTable(localNames_);
  if (tables & kOtherNCNames) decodeIdentifierTable(otherNCNames_);
  if (tables & kOtherURIs) decodeIdentifierTable(otherURIs_);
  if (tables & kAttributeValues) decodeIdentifierTable(attributeValues_);  // Not as in C.14.
  if (tables & kContentCharacterChunks) decodeStringTable(contentCharacterChunks_);
  if (tables & kOtherStrings) decodeStringTable(otherStrings_);
  if (tables & kElementNameSurrogates) decodeNameTable(elementNames_);
  if (tables & kAttributeNameSurrogates) decodeNameTable(attributeNames_);
}

namespace {

/// Decodes the entries of a table over those that it has. It grows entry by entry, not to the
/// count that the document claims.
template <typename Entry, typename Decode>
void replaceEntries(unsigned long count, std::vector<Entry>& table, Decode decode) {
  if (table.size() > count) table.resize(count);
  for (unsigned long i = 0; i < count; ++i) {
    if (i == table.size()) table.emplace_back();
    decode(table[i]);
  }
}

}  // namespace

void XMLReader_FI::Decoder::decodeStringTable(std::vector<std::string>& table) {
  replaceEntries(decodeNumberOfItems(), table,
                 [this](std::string& entry) { decodeString(nullptr, nullptr, entry); });
}

void XMLReader_FI::Decoder::decodeIdentifierTable(std::vector<std::string>& table) {
  replaceEntries(decodeNumberOfItems(), table,
                 [this](std::string& entry) { decodeIdentifier(nullptr, entry); });
}

XMLReader_FI::QualifiedName& XMLReader_FI::Decoder::decodeQualifiedName(
    unsigned octet, std::vector<QualifiedName>& table) {
  QualifiedName& name = table.emplace_back();
  decodeNameParts(octet, name.prefix, name.namespaceName, name.localName);
  return name;
}

void XMLReader_FI::Decoder::decodeQualifiedNameTable(std::vector<QualifiedName>& table) {
  replaceEntries(decodeNumberOfItems(), table, [this](QualifiedName& name) {
    const unsigned octet = takeOctet();
    decodeNameParts(octet, name.prefix, name.namespaceName, name.localName);
  });
}

/// As decodeQualifiedNameTable, for a table of the document.
void XMLReader_FI::Decoder::decodeNameTable(Names& table) {
  const unsigned long count = decodeNumberOfItems();
  table.shrinkTo(count);
  for (unsigned long i = 0; i < count; ++i) {
    Name& name = i < table.size() ? table[i] : table.append();
    decodeNameParts(takeOctet(), name);
    name.qName = qNameOf(name);
  }
}

XMLReader_FI::QualifiedName XMLReader_FI::Decoder::getName(unsigned long index, const Names& table,
                                                           const char* message) const {
  NameParts name;
  if (!findExternalName(index, table, message, name)) name = table[index];
  return {name.prefix, name.namespaceName, name.localName};
}

XMLReader_FI::QualifiedName XMLReader_FI::Decoder::getElementName(unsigned long index) const {
  return getName(index, elementNames_, kInvalidElementName);
}

XMLReader_FI::QualifiedName XMLReader_FI::Decoder::getAttributeName(unsigned long index) const {
  return getName(index, attributeNames_, kInvalidAttributeName);
}

}  // namespace Tavrin
