#pragma once

#include <string>

/// Typed values, decoded without the library's algorithms and told without its text forms.
namespace naive {

/// A value in the three ways in which it can be told.
struct Value {
  std::string holder;     ///< The class that holds it.
  std::string text;       ///< As text.
  std::string primitive;  ///< As an event of primitive types.
};

/// Whether a field of the stream names an algorithm of the standard that is known here.
bool isBuiltIn(unsigned field);

/// Decodes the octets of a built-in algorithm.
/// @throws std::runtime_error where the algorithm cannot have made them
Value valueOf(unsigned field, const std::string& octets);

}  // namespace naive
