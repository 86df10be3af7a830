#include <Tavrin/XMLReader_FI.h>

#include "../Octets.h"
#include "TakeOctet.h"

// The initial vocabulary (X.891, C.2.5 and C.16).

namespace Tavrin {

using namespace fastinfoset;

void XMLReader_FI::decodeInitialVocabulary() { dialectDecodeInitialVocabulary(); }

void XMLReader_FI::dialectDecodeInitialVocabulary() {
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

void XMLReader_FI::decodeStringTable(std::vector<std::string>& table) {
  replaceEntries(decodeNumberOfItems(), table,
                 [this](std::string& entry) { decodeString(nullptr, nullptr, entry); });
}

void XMLReader_FI::decodeIdentifierTable(std::vector<std::string>& table) {
  replaceEntries(decodeNumberOfItems(), table,
                 [this](std::string& entry) { decodeIdentifier(nullptr, entry); });
}

void XMLReader_FI::decodeQualifiedNameTable(std::vector<QualifiedName>& table) {
  replaceEntries(decodeNumberOfItems(), table,
                 [this](QualifiedName& name) { decodeNameParts(takeOctet(), name); });
}

/// As decodeQualifiedNameTable, for a table of the document.
void XMLReader_FI::decodeNameTable(Names& table) {
  replaceEntries(decodeNumberOfItems(), table, [this](Name& name) {
    decodeNameParts(takeOctet(), name);
    name.qName = qNameOf(name);
  });
}

}  // namespace Tavrin
