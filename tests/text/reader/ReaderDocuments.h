#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "TextReaderSupport.h"

/// A document and all that a reader tells of it.
struct Document {
  const char* name;
  std::string text;
  /// What comes between startDocument and the end, be that endDocument or the failure.
  EventLog::Lines events = {};
  /// The external entities that can be read, by system identifier.
  std::map<std::string, std::string> entities = {};
  /// Whether the DTD handler and the declaration handler are set.
  bool declarations = false;
  std::optional<Failure> failure = std::nullopt;
};

std::vector<Document> namespaceDocuments();
std::vector<Document> contentDocuments();
std::vector<Document> encodingDocuments();
std::vector<Document> declarationDocuments();
std::vector<Document> entityDocuments();
std::vector<Document> skippedEntityDocuments();
std::vector<Document> malformedDocuments();
std::vector<Document> malformedNamespaceDocuments();
std::vector<Document> malformedEntityDocuments();
