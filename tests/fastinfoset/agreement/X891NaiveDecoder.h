#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

/// A second opinion on ITU-T X.891: it decodes documents of the standard, all of it, plainly and
/// slowly, from tables of its own, and shares nothing with the library.
namespace x891 {

/// What becomes of typed content.
enum class TypedAs {
  primitives,  ///< `shorts(1 2)`, as a handler of primitive types hears it; else as text.
  objects,     ///< `object(, 2, ShortData{1 2})`, as a handler of encoding algorithms hears it.
  text,        ///< `characters(1 2)`.
};

struct Name {
  std::string prefix;
  std::string uri;
  std::string local;
};

/// The tables of X.891, clause 8, with entries of applications only.
struct Vocabulary {
  std::vector<std::string> alphabets;
  std::vector<std::string> algorithms;
  std::vector<std::string> prefixes;
  std::vector<std::string> uris;
  std::vector<std::string> locals;
  std::vector<std::string> otherNames;
  std::vector<std::string> otherURIs;
  std::vector<std::string> values;
  std::vector<std::string> chunks;
  std::vector<std::string> otherStrings;
  std::vector<Name> elementNames;
  std::vector<Name> attributeNames;
};

struct Decoded {
  /// The events, a line each, as EventLog has them when it shows algorithms. Text of chunks in a
  /// row is not merged. Everything stands where its octets stand: notations and unparsed entities
  /// behind startDocument, not within a document type. Behind a start tag stand its typed values
  /// once more, as primitives. Octets of an application's algorithm are `octets(...)` however typed
  /// content is told.
  std::vector<std::string> lines;
  std::string version;                      ///< As the document states it, or empty.
  std::string standalone;                   ///< "yes", "no" or empty.
  std::string scheme;                       ///< The character encoding scheme, or empty.
  std::vector<std::string> additionalData;  ///< URI, octets, ...
  /// Of the references to entities: name, public and system identifier, ...
  std::vector<std::string> entities;
  Vocabulary vocabulary;   ///< As it is in the end, without built-in entries.
  std::size_t octets = 0;  ///< How many octets the document takes.
};

/// Decodes a document; octets may follow it.
/// @param external vocabularies that the document may refer to, by URI
/// @throws std::runtime_error where the octets are not a document
Decoded decode(const std::string& octets, TypedAs typedAs = TypedAs::text,
               const std::map<std::string, Vocabulary>& external = {});

}  // namespace x891
