#pragma once

#include <Tavrin/XMLWriter.h>

#include <memory>
#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace tool {

/// What the command line says about Canonical XML.
struct CanonicalOptions {
  std::optional<std::string> form;  ///< "exclusive", or another one, inclusive.
  bool comments = false;
  std::string inclusivePrefixes;  ///< With commas or blanks between them.

  bool isChosen() const { return form.has_value(); }
  /// @throws Failure where the options contradict each other
  std::unique_ptr<Tavrin::XMLWriter> createWriter() const;
};

/// The part of a help text that lists the options, and the one that explains them.
extern const char kCanonicalOptionsHelp[];
extern const char kCanonicalHelp[];

/// Adds the options to a command that has the options for other writers already.
void addCanonicalOptions(CLI::App& command, CanonicalOptions& options);

}  // namespace tool
