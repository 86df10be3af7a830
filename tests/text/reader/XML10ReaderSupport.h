#pragma once

#include <memory>
#include <optional>

#include "ReaderDocuments.h"

/// A document, how it is to be read with "XML10", and all that the reader tells of it.
struct XML10Document {
  const char* name;
  std::string text;
  /// What comes between startDocument and the end, be that endDocument or the failure.
  EventLog::Lines events = {};
  /// The external entities that can be read, by resolved system identifier.
  std::map<std::string, std::string> entities = {};
  /// Whether a resolver is set.
  bool resolves = true;
  /// Features to be set.
  std::map<std::string, bool> features = {};
  /// The base URI, where there is one.
  std::string baseURI = {};
  /// How the document fails: "message, line, column".
  std::string failure = {};
};

/// Reads each document as a stream, as one block, octet by octet, and in blocks cut at random,
/// twice each, with all handlers set.
void checkXML10(const std::vector<XML10Document>& documents);
