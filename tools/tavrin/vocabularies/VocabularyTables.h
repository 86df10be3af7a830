#pragma once

#include <Tavrin/OwnedVocabulary.h>
#include <Tavrin/Vocabulary.h>

#include <cstdint>
#include <string>

namespace tool {

/// One of the ten tables of strings, as the commands for vocabularies speak of it.
struct StringTableForm {
  Tavrin::StringTable Tavrin::ExternalVocabulary::*table;
  std::uint32_t (Tavrin::OwnedVocabulary::*add)(const std::string& entry);
  const char* title;
  const char* operation;  ///< The name of `add`.
  std::uint32_t first;    ///< The index of the first entry that is not built in (X.891, 7.2).
};

/// One of the two tables of names.
struct NameTableForm {
  Tavrin::QualifiedNameTable Tavrin::ExternalVocabulary::*table;
  std::uint32_t (Tavrin::OwnedVocabulary::*add)(const std::string& uri,
                                                const std::string& localName,
                                                const std::string& qName);
  const char* title;
  const char* operation;
};

/// The tables in the order of the standard.
extern const StringTableForm kStringTables[10];
extern const NameTableForm kNameTables[2];

/// The parts of an entry of a table of names.
struct QualifiedName {
  std::string prefix;
  std::string uri;
  std::string localName;

  explicit QualifiedName(const char* const (&entry)[3]);
  std::string qName() const { return prefix.empty() ? localName : prefix + ":" + localName; }
};

/// The text of an entry of a table of strings.
std::string textOf(const char* entry);

/// How many entries all tables have, without those that are built in.
std::uint64_t entriesOf(const Tavrin::OwnedVocabulary& vocabulary);

}  // namespace tool
