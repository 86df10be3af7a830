#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "files/Failure.h"

namespace tool {

/// A file to read, as one of those that the command line means.
struct Document {
  std::string name;
  /// Where the part of the name begins that is kept in a folder for copies: behind the folder of
  /// the command line that the file was found in, or behind the last slash.
  std::size_t kept = 0;

  std::string_view keptName() const { return std::string_view(name).substr(kept); }
};

/// The files that names of the command line mean: a folder stands for the documents in it and in
/// the folders below it, in the order of their names, octet by octet.
///
/// What is a document in a folder shows by the ending of its name (see isDocumentName). Left out is
/// what has a dot in front of its name, what is neither a file nor a folder, and folders behind
/// symbolic links. Files behind links are documents like others.
class Documents {
 public:
  /// @param except a folder whose content is left out wherever it is met; empty for none
  explicit Documents(std::string except = {}) : except_(std::move(except)) {}

  /// Adds what a name of the command line means. What cannot be looked into is reported on standard
  /// error, as is a folder that holds no documents.
  /// @throws Failure when the name is that of the folder which is left out
  void add(const std::string& name);

  const std::vector<Document>& all() const { return all_; }
  /// The worst of what could not be looked into.
  ExitStatus status() const { return status_; }

 private:
  void addFolder(const std::string& name);
  std::vector<std::string> lookInto(const std::string& folder, std::size_t kept);
  void report(const Failure& failure);

  std::string except_;
  std::vector<Document> all_;
  ExitStatus status_ = Done;
};

/// Whether a file of this name in a folder is taken for a document.
bool isDocumentName(std::string_view name);

}  // namespace tool
