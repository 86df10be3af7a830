#pragma once

#include <array>
#include <cstdint>
#include <limits>

namespace tool {

/// The tables that writers fill, in the order of the standard.
enum class Table : unsigned {
  Prefixes,
  NamespaceNames,
  LocalNames,
  OtherNames,
  OtherURIs,
  AttributeValues,
  Characters,
  OtherStrings,
  ElementNames,
  AttributeNames
};

inline constexpr std::size_t kTables = 10;
inline constexpr std::size_t kTablesOfStrings = 8;

/// The longest value, chunk or other string that a writer adds to its table on its own, in octets.
inline constexpr std::size_t kLongestAdded = 32;

/// Whether a table gets every string that a document has.
constexpr bool getsEverything(Table table) {
  return table != Table::AttributeValues && table != Table::Characters &&
         table != Table::OtherStrings;
}

/// How many octets it takes to write what is not larger than some bounds.
struct Steps {
  std::array<std::uint64_t, 3> bounds;

  constexpr std::uint64_t octetsOf(std::uint64_t value, std::uint64_t beyond) const {
    for (std::size_t i = 0; i < bounds.size(); ++i) {
      if (value <= bounds[i]) return i + 1;
    }
    return beyond;
  }
};

/// The largest indexes, counted from 1, that take one, two and three octets (X.891, C.25 to C.28).
constexpr Steps indexSteps(Table table) {
  if (table == Table::ElementNames) return {{32, 2080, 526368}};
  if (table == Table::Characters) return {{16, 1040, 263184}};
  return {{64, 8256, std::uint64_t{1} << 20}};
}

/// Octets of an index.
/// @param position of the entry, counted from 0 and without built-in entries
constexpr std::uint64_t octetsOfIndex(Table table, std::uint64_t position) {
  const bool hasBuiltIn = table == Table::Prefixes || table == Table::NamespaceNames;
  return indexSteps(table).octetsOf(position + (hasBuiltIn ? 2 : 1), 4);
}

/// Octets of a string that is not empty, with its length in front (C.22 to C.24).
constexpr std::uint64_t octetsOfLiteral(Table table, std::uint64_t size) {
  const std::uint64_t shortest = table == Table::Characters ? 2 : getsEverything(table) ? 64 : 8;
  const std::uint64_t length = size <= shortest ? 1 : size <= shortest + 256 ? 2 : 5;
  return length + size;
}

}  // namespace tool
