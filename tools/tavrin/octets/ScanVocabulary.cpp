#include "octets/Scanner.h"

// The initial vocabulary (X.891, C.2.5 and C.16).

namespace tool::octets {

namespace {

/// The bit of a table, in the order of the tables.
constexpr unsigned bitOf(unsigned table) { return format::kExternalVocabulary >> (1 + table); }

constexpr unsigned kElementNames = kStringTables;
constexpr unsigned kAttributeNames = kStringTables + 1;
constexpr std::uint64_t kMostNumbered = 256;  // Alphabets and algorithms.
constexpr std::uint64_t kMostEntries = format::kMaximumEntries;

constexpr const char* kItems[kStringTables] = {
    "restricted alphabet", "encoding algorithm", "prefix",
    "namespace name",      "local name",         "other NCName",
    "other URI",           "attribute value",    "content character chunk",
    "other string"};

}  // namespace

void Scanner::scanVocabulary() {
  constexpr char kExpected[] = "the components of an initial vocabulary (C.2.5)";
  const unsigned high = octetAhead(0, kExpected);
  if ((high << 8 & format::kVocabularyPadding) != 0) fail("three padding bits of zero (C.2.5)");
  const unsigned components = high << 8 | octetAhead(1, kExpected);
  if (components == 0) fail("a component of the initial vocabulary (C.2.5)", 1);
  note_.begin("initial vocabulary", "C.2.5");
  write(2);
  ++extraLevels_;
  if ((components & format::kExternalVocabulary) != 0) scanExternalVocabulary();
  for (unsigned table = 0; table < kStringTables; ++table) {
    if ((components & bitOf(table)) != 0) scanEntries(table);
  }
  if ((components & bitOf(kElementNames)) != 0) scanSurrogates(tables_.elements);
  if ((components & bitOf(kAttributeNames)) != 0) scanSurrogates(tables_.attributes);
  --extraLevels_;
}

void Scanner::scanExternalVocabulary() {
  Identifier identifier = peekIdentifier("external vocabulary", kNoTable);
  std::string uri;
  writeLiteral(std::move(*identifier.literal), &uri);
  const auto vocabulary = vocabularies_.find(uri);
  tables_.hasUnknownEntries = vocabulary == nullptr;
  if (!vocabulary) return;
  tables_.add(*vocabulary);
  std::uint32_t number = format::kFirstOwnAlphabet;
  for (const char* const characters : entriesOf(vocabulary->restrictedAlphabets)) {
    alphabets_.emplace(number++, Alphabet(characters));
  }
}

std::uint64_t Scanner::scanCount(std::string_view what, std::uint64_t most) {
  const Number count = numberAhead(format::kCount, 0, "a number of items");
  if (count.value > most) {
    fail("at most " + std::to_string(most) + " items (C.2.5)", 0,
         "found " + std::to_string(count.value));
  }
  note_.begin(what, "C.21").add(": ", count.value).add(count.value == 1 ? " item" : " items");
  write(count.size);
  return count.value;
}

void Scanner::scanEntries(unsigned table) {
  const bool isNumbered = table == kAlphabets || table == kAlgorithms;
  const std::uint64_t count =
      scanCount(tables_.strings(table).name(), isNumbered ? kMostNumbered : kMostEntries);
  ++extraLevels_;
  for (std::uint64_t i = 0; i < count; ++i) {
    if (table >= kAttributeValues) {
      scanEncodedEntry(table);
      continue;
    }
    Identifier entry = peekIdentifier(kItems[table], table, false);
    if (table != kAlphabets) {
      writeIdentifier(std::move(entry));
      continue;
    }
    std::string characters;
    const std::uint32_t number = entry.index;
    writeLiteral(std::move(*entry.literal), &characters);
    if (!tables_.hasUnknownEntries) alphabets_.emplace(number, Alphabet(characters));
  }
  --extraLevels_;
}

void Scanner::scanEncodedEntry(unsigned table) {
  constexpr char kExpected[] = "two padding bits of zero, and an encoded string (C.2.5, C.19)";
  const unsigned octet = octetAhead(0, kExpected);
  if ((octet & (format::kIndex | format::kStringAdds)) != 0) fail(kExpected);
  scanEncoded(kItems[table], "C.19", encodedAhead(octet), table, true, {});
}

void Scanner::scanSurrogates(NameTable& names) {
  const std::uint64_t count = scanCount(names.name(), kMostEntries);
  ++extraLevels_;
  for (std::uint64_t i = 0; i < count; ++i) {
    const unsigned octet = octetAhead(0, "a name surrogate (C.16)");
    if ((octet & ~format::kPartBits) != 0) fail("six padding bits of zero (C.2.5, C.16)");
    checkParts(octet);
    note_.begin("name surrogate", "C.16");
    write(1);
    ++extraLevels_;
    Name name;
    if ((octet & format::kPrefixPresent) != 0) name.prefix = scanSurrogatePart("prefix", kPrefixes);
    if ((octet & format::kNamespacePresent) != 0) {
      name.namespaceName = scanSurrogatePart("namespace name", kNamespaceNames);
    }
    const auto [index, size] = peekSurrogatePart("local name", kLocalNames);
    name.localName = index;
    noteAdded(names.name(), names.add(name));
    write(size);
    --extraLevels_;
  }
  --extraLevels_;
}

/// The index of a part. The note tells what it is, and nothing is written yet.
Scanner::SurrogatePart Scanner::peekSurrogatePart(const char* what, unsigned table) {
  constexpr char kExpected[] = "an index behind a bit of zero (C.16, C.25)";
  if ((octetAhead(0, kExpected) & format::kIndex) != 0) fail(kExpected);
  const Number index = numberAhead(format::kNumber, 0, kExpected);
  note_.begin(what, "C.16, C.25");
  return {noteEntry(table, index.value), index.size};
}

std::uint32_t Scanner::scanSurrogatePart(const char* what, unsigned table) {
  const auto [index, size] = peekSurrogatePart(what, table);
  write(size);
  return index;
}

}  // namespace tool::octets
