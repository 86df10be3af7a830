#pragma once

#include <string>
#include <vector>

#include "document.h"

/// The documents to measure with.
struct Corpus {
  double scale = 1.0;
  std::vector<DocumentPointer> documents;  ///< Generated ones, then files.
  DocumentPointer mesh;                    ///< One of the documents.
  DocumentPointer small;                   ///< None of them.
  DocumentPointer messages;                ///< Likewise.

  /// @param scale multiplies the sizes of generated documents
  /// @param files paths; a document is called by the name of its file without the extension
  /// @throws std::runtime_error when one is not a file of XML, or when two have the same name
  Corpus(double scale, const std::vector<std::string>& files);

  /// A number of things at this scale, at least one.
  unsigned scaled(double number) const;

 private:
  void addFile(const std::string& path);
};
