#pragma once

#include <string>
#include <vector>

/// Encoded strings of ITU-T X.891, decoded without the library.
namespace x891 {

/// A typed value in the ways in which it can be told.
struct Value {
  std::string holder;     ///< The class that holds it, as EventLog shows it.
  std::string text;       ///< As text.
  std::string primitive;  ///< As an event of primitive types; empty where there is none.
};

/// Decodes the octets of one of the ten built-in algorithms.
/// @param field the index of the standard minus 1
/// @throws std::runtime_error where there is none, or it cannot have made them
Value valueOf(unsigned field, const std::string& octets);

/// Decodes UTF-16 without a byte order mark, the more significant octet first.
/// @throws std::runtime_error
std::string ofUTF16(const std::string& octets);

/// Decodes the octets of a restricted alphabet (X.891, 7.17.6).
/// @param alphabet its characters in UTF-8
/// @throws std::runtime_error
std::string ofAlphabet(const std::string& alphabet, const std::string& octets);

/// The characters of a text in UTF-8.
/// @throws std::runtime_error where it is not UTF-8
std::vector<std::string> charactersOf(const std::string& text);

}  // namespace x891
