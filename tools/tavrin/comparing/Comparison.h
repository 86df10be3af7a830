#pragma once

#include <string>
#include <vector>

#include "comparing/ComparedDocuments.h"
#include "comparing/Description.h"
#include "files/Failure.h"

namespace tool {

/// Whether two records that are no parts of texts are the same.
inline bool isSame(const Record& a, const Record& b) {
  return a.kind == b.kind && a.body == b.body;
}

/// Finds the first difference of two files of documents.
/// @return a line about each side; nothing where there is none up to where both can be read
std::string findDifference(ComparedDocuments& a, ComparedDocuments& b, Form form);

/// Why files of documents could not be read to their ends, behind the last record of both.
std::vector<Failure> failuresOf(ComparedDocuments& a, ComparedDocuments& b);

}  // namespace tool
