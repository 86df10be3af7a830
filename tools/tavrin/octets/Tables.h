#pragma once

#include <Tavrin/Vocabulary.h>

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "octets/Format.h"
#include "octets/Note.h"

namespace tool::octets {

/// The tables of strings, in the order of an initial vocabulary (C.2.5).
enum Table : unsigned {
  kAlphabets,
  kAlgorithms,
  kPrefixes,
  kNamespaceNames,
  kLocalNames,
  kOtherNCNames,
  kOtherURIs,
  kAttributeValues,
  kChunks,
  kOtherStrings,
  kNoTable,  ///< For strings that belong to none.
};
inline constexpr unsigned kStringTables = kNoTable;

/// The strings of a table, counted from 1 as the standard does.
class StringTable {
 public:
  /// @param first   the index of the first entry that a document adds
  /// @param builtIn the entries in front of it
  StringTable(std::string_view name, std::uint32_t first,
              const std::vector<std::string_view>& builtIn = {});

  std::string_view name() const { return name_; }
  /// Adds an entry. Returns its index, or 0 where the table is full.
  std::uint32_t add(const Excerpt& text);
  /// The entry of an index, or null.
  const Excerpt* find(std::uint64_t index) const;
  /// Whether an index names an entry that every document has.
  bool isBuiltIn(std::uint64_t index) const { return index >= 1 && index <= builtIn_.size(); }
  std::uint32_t first() const { return first_; }
  const std::vector<Excerpt>& builtIn() const { return builtIn_; }
  const std::vector<Excerpt>& own() const { return own_; }

 private:
  std::string_view name_;
  std::uint32_t first_;
  std::vector<Excerpt> builtIn_;
  std::vector<Excerpt> own_;
};

/// The entries of a table of an external vocabulary.
inline std::span<const char* const> entriesOf(const Tavrin::StringTable& table) {
  return {table.entries, table.definedCount};
}

/// A name, by the indexes of its parts in the tables of strings.
struct Name {
  static constexpr std::uint32_t kAbsent = 0;
  static constexpr std::uint32_t kUnknown = 0xFFFFFFFF;  ///< In no table, or in one not known.

  std::uint32_t prefix = kAbsent;
  std::uint32_t namespaceName = kAbsent;
  std::uint32_t localName = kUnknown;
};

/// The names of a table, counted from 1.
class NameTable {
 public:
  explicit NameTable(std::string_view name) : name_(name) {}

  std::string_view name() const { return name_; }
  std::uint32_t add(const Name& name);
  const Name* find(std::uint64_t index) const;
  const std::vector<Name>& own() const { return own_; }

 private:
  std::string_view name_;
  std::vector<Name> own_;
};

/// The tables of a document (7.2, clause 8). Of long strings, they hold the beginning.
struct Tables {
  StringTable& strings(unsigned table) { return all[table]; }

  /// Adds the entries of an external vocabulary, while there are no others.
  void add(const Tavrin::ExternalVocabulary& vocabulary);
  /// The name as it stands in a tag, as far as its parts are known.
  std::string qualifiedNameOf(const Name& name) const;

  std::array<StringTable, kStringTables> all = {{
      {"RESTRICTED ALPHABET", format::kFirstOwnAlphabet, {"0123456789-+.E ", "0123456789-:TZ "}},
      {"ENCODING ALGORITHM",
       format::kFirstOwnAlgorithm,
       {"hexadecimal", "base64", "short", "int", "long", "boolean", "float", "double", "uuid",
        "cdata"}},
      {"PREFIX", 2, {"xml"}},
      {"NAMESPACE NAME", 2, {"http://www.w3.org/XML/1998/namespace"}},
      {"LOCAL NAME", 1},
      {"OTHER NCNAME", 1},
      {"OTHER URI", 1},
      {"ATTRIBUTE VALUE", 1},
      {"CONTENT CHARACTER CHUNK", 1},
      {"OTHER STRING", 1},
  }};
  NameTable elements{"ELEMENT NAME"};
  NameTable attributes{"ATTRIBUTE NAME"};

  /// Whether there is an external vocabulary that is not known. Its entries come first, and nobody
  /// knows here what they are and how many.
  bool hasUnknownEntries = false;
};

}  // namespace tool::octets
