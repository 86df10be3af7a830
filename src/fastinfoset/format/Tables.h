#pragma once

#include <Tavrin/Identifiers.h>
#include <Tavrin/Vocabulary.h>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

/// The twelve tables of a vocabulary (X.891, 7.2 and clause 8).
namespace Tavrin::fastinfoset {

/// The tables, in the order in which an initial vocabulary has them (C.2.5).
enum Table : unsigned {
  kRestrictedAlphabets,
  kEncodingAlgorithms,
  kPrefixes,
  kNamespaceNames,
  kLocalNames,
  kOtherNCNames,
  kOtherURIs,
  kAttributeValues,
  kContentCharacterChunks,
  kOtherStrings,
  kElementNames,
  kAttributeNames,
};
inline constexpr unsigned kStringTables = 10;  ///< The first of them; the others hold names.
inline constexpr unsigned kTables = 12;

/// The bits of the two octets that begin an initial vocabulary, as one number: the external
/// vocabulary, then one bit for each table.
inline constexpr unsigned kExternalVocabulary = 0x1000;
constexpr unsigned componentBit(unsigned table) { return 0x0800U >> table; }
/// The bits of the first octet that are padding.
inline constexpr unsigned kVocabularyPadding = 0xE0;

/// The most entries that a table has, and the most restricted alphabets and encoding algorithms.
inline constexpr std::uint32_t kMaximumEntries = 1 << 20;
inline constexpr std::uint32_t kMaximumAlgorithms = 256;

/// What the entries of a table are.
enum class EntryKind { alphabet, uri, name, text };

/// What distinguishes a table of strings.
struct StringTableForm {
  EntryKind kind = EntryKind::text;
  StringTable ExternalVocabulary::*external =
      nullptr;  ///< The same table of an external vocabulary.
  /// The entry that every document has before all others (7.2.21, 7.2.22), or null.
  const char* builtIn = nullptr;
  /// Whether an initial vocabulary has encoded character strings (C.19), not octet strings (C.22).
  bool isEncoded = false;
};

/// With external linkage, as what refers to it has; the public constant has internal linkage.
inline constexpr auto kXMLNamespaceName = std::to_array(namespaces::xml);

inline constexpr std::array<StringTableForm, kStringTables> kStringTableForms = {{
    {EntryKind::alphabet, &ExternalVocabulary::restrictedAlphabets},
    {EntryKind::uri, &ExternalVocabulary::encodingAlgorithms},
    {EntryKind::name, &ExternalVocabulary::prefixes, "xml"},
    {EntryKind::uri, &ExternalVocabulary::namespaceNames, kXMLNamespaceName.data()},
    {EntryKind::name, &ExternalVocabulary::localNames},
    {EntryKind::name, &ExternalVocabulary::otherNCNames},
    {EntryKind::uri, &ExternalVocabulary::otherURIs},
    {EntryKind::text, &ExternalVocabulary::attributeValues, nullptr, true},
    {EntryKind::text, &ExternalVocabulary::contentCharacterChunks, nullptr, true},
    {EntryKind::text, &ExternalVocabulary::otherStrings, nullptr, true},
}};

/// The tables of names of an external vocabulary: those of elements and of attributes.
inline constexpr std::array<QualifiedNameTable ExternalVocabulary::*, kTables - kStringTables>
    kExternalNameTables = {&ExternalVocabulary::elementNameSurrogates,
                           &ExternalVocabulary::attributeNameSurrogates};

/// The number of built-in entries of a table.
constexpr std::uint32_t builtInEntries(unsigned table) {
  return kStringTableForms[table].builtIn == nullptr ? 0 : 1;
}

/// A text of an external vocabulary; a null one is empty.
inline std::string textOf(const char* entry) { return entry == nullptr ? "" : entry; }

/// A name as the tables of names hold it (8.5); a part that is absent is empty.
struct NameParts {
  std::string prefix;
  std::string namespaceName;
  std::string localName;

  bool operator==(const NameParts&) const = default;
};

/// A name whose parts are elsewhere.
struct NameView {
  std::string_view prefix;
  std::string_view namespaceName;
  std::string_view localName;

  NameView() = default;
  NameView(std::string_view thePrefix, std::string_view theNamespaceName,
           std::string_view theLocalName)
      : prefix(thePrefix), namespaceName(theNamespaceName), localName(theLocalName) {}
  // NOLINTNEXTLINE(google-explicit-constructor): as a string is a view of one.
  NameView(const NameParts& parts) : NameView(parts.prefix, parts.namespaceName, parts.localName) {}
};

// --- The estimated memory of entries, by which tables are bounded ---

// A reader never needs more for an entry, including the overhead of growing tables and of the
// allocator.

inline constexpr std::uint64_t kEntryOctets = 128;  ///< Besides the octets of a string.
inline constexpr std::uint64_t kNameOctets = 320;   ///< Besides the octets of a name's parts.
/// The parts of a name are also in their own tables, in the qualified name, and among the names by
/// which duplicate attributes are found.
inline constexpr std::uint64_t kNameCopies = 3;

inline std::uint64_t countedOctets(std::string_view entry) { return entry.size() + kEntryOctets; }
inline std::uint64_t countedOctets(const NameView& name) {
  return kNameCopies * (name.prefix.size() + name.namespaceName.size() + name.localName.size()) +
         kNameOctets;
}

}  // namespace Tavrin::fastinfoset
