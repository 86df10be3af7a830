#pragma once

#include <Tavrin/XMLWriter.h>

#include <memory>
#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace tool {

/// What the command line says about the layout of XML text.
struct LayoutOptions {
  std::optional<std::string> indent;  ///< How many blanks for each level.
  bool tabs = false;                  ///< One for each level, instead of blanks.

  /// The writer that lays out what a writer of XML text writes, or that writer itself.
  /// @throws Tavrin::SAXException for a writer that knows no lines
  std::unique_ptr<Tavrin::XMLWriter> layOut(std::unique_ptr<Tavrin::XMLWriter> writer) const;
};

/// The part of a help text that lists the options, and the one that explains them.
extern const char kLayoutOptionsHelp[];
extern const char kLayoutHelp[];

void addLayoutOptions(CLI::App& command, LayoutOptions& options);

}  // namespace tool
