#pragma once

#include <string>
#include <vector>

/// A second opinion on the format: it decodes what the writer writes, plainly and slowly, from
/// tables of its own, and shares nothing with the library.
namespace naive {

/// What becomes of typed content.
enum class TypedAs {
  primitives,  ///< `shorts(1 2)`, as a handler of primitive types hears it.
  objects,     ///< `object(, 2, ShortData{1 2})`, as a handler of encoding algorithms hears it.
  text,        ///< `characters(1 2)`.
};

/// The events of a document, a line each, as EventLog has them when it merges no text and shows
/// algorithms. Behind a start tag stand its typed values once more, as primitives.
/// @throws std::runtime_error where the octets are not a document without optional components in
///         the forms that the writer uses
std::vector<std::string> decode(const std::string& octets, TypedAs typedAs);

}  // namespace naive
