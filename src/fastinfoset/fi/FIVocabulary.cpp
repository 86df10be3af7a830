#include "../format/Octets.h"
#include "FIDecoder.h"

// The initial vocabulary of this dialect, and strings and names in tables of derived readers.

namespace Tavrin::fastinfoset {

namespace {

constexpr const char* kNoSuchElementName = "Error when decoding element name - invalid index";
constexpr const char* kNoSuchAttributeName = "Error when decoding attribute name - invalid index";

}  // namespace

// --- The initial vocabulary ---

void FIDecoder::decodeInitialVocabulary() {
  // A derived reader may call this at any time: names keep the parts that they have.
  for (const unsigned table : {kElementNames, kAttributeNames}) {
    for (std::size_t i = 0; i < names(table).size(); ++i) {
      names(table)[i].own(names(table)[i].parts());
    }
  }
  const unsigned high = readOctet();
  const unsigned components = high << 8 | readOctet();
  if (components & kExternalVocabulary) {
    std::string uri;
    Decoder::decodeIdentifier(uri);
    if (externalVocabularies_ == nullptr || externalVocabularies_->count(uri) == 0) {
      fail(describeUnknownVocabulary(uri));
    }
    setExternalVocabulary(externalVocabularies_->at(uri));
  }
  for (unsigned table = 0; table < kTables; ++table) {
    if ((components & componentBit(table)) == 0) continue;
    const bool isText = table == kRestrictedAlphabets || table == kContentCharacterChunks ||
                        table == kOtherStrings;  // Attribute values are not.
    if (table >= kStringTables) {
      decodeNameTable(names(table));
    } else if (isText) {
      decodeStringEntries(strings(table));
    } else {
      decodeIdentifierEntries(strings(table));
    }
  }
}

namespace {

/// Decodes the entries of a table over those that it has. It grows entry by entry, not to the count
/// that the document claims.
template <typename Entry, typename Decode>
void replaceEntries(unsigned long count, std::vector<Entry>& table, Decode decode) {
  if (table.size() > count) table.resize(count);
  for (unsigned long i = 0; i < count; ++i) {
    if (i == table.size()) table.emplace_back();
    decode(table[i]);
  }
}

template <typename Decode>
void replaceEntries(unsigned long count, Strings& table, Decode decode) {
  table.shrinkTo(count);
  for (unsigned long i = 0; i < count; ++i) {
    if (i == table.own().size()) table.append(std::string_view());
    decode(table.own()[i]);
  }
}

}  // namespace

void FIDecoder::decodeStringTable(Table& table) {
  replaceEntries(decodeNumberOfItems(), table,
                 [this](std::string& entry) { decodeString(nullptr, nullptr, entry); });
}

void FIDecoder::decodeStringEntries(Strings& table) {
  replaceEntries(decodeNumberOfItems(), table,
                 [this](std::string& entry) { decodeString(nullptr, nullptr, entry); });
}

void FIDecoder::decodeIdentifierEntries(Strings& table) {
  replaceEntries(decodeNumberOfItems(), table,
                 [this](std::string& entry) { decodeIdentifier(nullptr, entry); });
}

void FIDecoder::decodeIdentifierTable(Table& table) {
  replaceEntries(decodeNumberOfItems(), table,
                 [this](std::string& entry) { decodeIdentifier(nullptr, entry); });
}

void FIDecoder::decodeQualifiedNameTable(NameTable& table) {
  replaceEntries(decodeNumberOfItems(), table,
                 [this](QualifiedName& name) { decodeQualifiedName(readOctet(), name); });
}

void FIDecoder::decodeNameTable(Names& table) {
  const unsigned long count = decodeNumberOfItems();
  table.shrinkTo(count);
  for (unsigned long i = 0; i < count; ++i) {
    Name& name = i < table.size() ? table[i] : table.append();
    decodeNameParts(readOctet(), name);
  }
}

// --- Names ---

FIDecoder::QualifiedName& FIDecoder::decodeQualifiedName(unsigned octet, NameTable& table) {
  QualifiedName& name = table.emplace_back();
  decodeQualifiedName(octet, name);
  return name;
}

void FIDecoder::decodeQualifiedName(unsigned octet, QualifiedName& name) {
  Name decoded;
  decodeNameParts(octet, decoded);
  name.prefix = decoded.prefix();
  name.namespaceName = decoded.namespaceName();
  name.localName = decoded.localName();
}

FIDecoder::QualifiedName FIDecoder::getElementName(unsigned long index) {
  const Name& name = nameAt(index, names(kElementNames), kNoSuchElementName);
  return {name.prefix(), name.namespaceName(), name.localName()};
}

FIDecoder::QualifiedName FIDecoder::getAttributeName(unsigned long index) {
  const Name& name = nameAt(index, names(kAttributeNames), kNoSuchAttributeName);
  return {name.prefix(), name.namespaceName(), name.localName()};
}

// --- Strings ---

std::string FIDecoder::getString(unsigned long index, const Table* table,
                                 const StringTable* external) const {
  if (external != nullptr) {
    if (index < external->definedCount) return textOf(external->entries[index]);
    if (index < external->occupiedCount) fail(kInvalidStringIndex);
    index -= external->occupiedCount;
  }
  if (table == nullptr) fail("Error when decoding string");
  if (index >= table->size()) fail(kInvalidStringIndex);
  return (*table)[index];
}

void FIDecoder::decodeString(unsigned octet, Table* table, const StringTable* external,
                             std::string& text) {
  const bool isIndex = (octet & kStringIndex) != 0 && octet != kEmptyString;
  if (isIndex) {
    text = getString(decodeIndex(octet), table, external);
    return;
  }
  Decoder::decodeString(octet, nullptr, text);
  const bool adds = (octet & kStringAddToTable) != 0 && octet != kEmptyString;
  if (adds && table != nullptr) table->push_back(text);
}

void FIDecoder::decodeString(Table* table, const StringTable* external, std::string& text) {
  decodeString(readOctet(), table, external, text);
}

void FIDecoder::decodeIdentifier(Table* table, std::string& text) {
  const unsigned octet = readOctet();
  if ((octet & kStringIndex) == 0) {
    decodeLiteralIdentifier(octet, text);
    if (table != nullptr) table->push_back(text);
  } else {
    if (table == nullptr) fail("Error when parsing identifier");
    text = getString(decodeIndex(octet), table, nullptr);
  }
}

}  // namespace Tavrin::fastinfoset
