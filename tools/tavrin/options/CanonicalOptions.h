#pragma once

#include <Tavrin/XMLWriter.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

namespace tool {

/// What the command line says about Canonical XML.
struct CanonicalOptions {
  std::string form;  ///< "1.0", "1.1" or "exclusive"; empty for none.
  bool comments = false;
  std::string inclusivePrefixes;  ///< With commas or blanks between them.

  bool isChosen() const { return !form.empty(); }
  /// @throws Failure where the options contradict each other
  std::unique_ptr<Tavrin::XMLWriter> createWriter() const;
};

/// The part of a help text that lists the options, and the one that explains them.
extern const char kCanonicalOptionsHelp[];
extern const char kCanonicalHelp[];

/// Adds the options to a command that has the options for other writers already.
void addCanonicalOptions(CLI::App& command, CanonicalOptions& options);

}  // namespace tool
