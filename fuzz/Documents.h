#pragma once

#include <initializer_list>
#include <optional>
#include <string>

#include "Recording.h"

/// What a document states of itself beside its events.
struct Statements {
  std::optional<bool> standalone;
  std::optional<std::string> version;

  bool operator==(const Statements&) const = default;
};

/// What reading a document came to.
struct Reading {
  Events events;
  std::string failure;  ///< Empty for a document that was read to its end.
  Statements statements;
};

/// How octets come to a reader.
struct Pieces {
  enum { whole, oneByOne, blocks } way = whole;
  unsigned seed = 0;  ///< Of the sizes of blocks.
};

/// Reads Fast Infoset. The amounts that a document may expand to are small, for the sake of speed.
Reading readFastInfoset(Tavrin::XMLReader& reader, const std::string& octets, bool typed,
                        Pieces pieces = {});

/// Reads XML text. Its entities come from the resolver, where there is one.
Reading readText(Tavrin::XMLReader& reader, const std::string& text,
                 Tavrin::EntityResolver* resolver = nullptr, Pieces pieces = {});

/// A reader of either type with all that a target sets once.
std::unique_ptr<Tavrin::XMLReader> makeReader(const char* type);

/// A reason for which a writer may refuse what a reader accepted.
struct Reason {
  const char* begin;  ///< How its message begins,
  const char* end;    ///< and how it ends.
};

struct Writing {
  std::string octets;
  std::string refusal;  ///< Empty for a document that was written to its end.
};

/// Writes events with a new writer. Ends the program where one is refused for any reason but these.
Writing write(const char* type, const Reading& reading, std::initializer_list<Reason> reasons);

/// A vocabulary that every target knows as "urn:v".
Tavrin::ExternalVocabularyMap& externalVocabularies();
