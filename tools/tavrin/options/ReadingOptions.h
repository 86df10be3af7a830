#pragma once

#include <string>
#include <string_view>

#include "files/EntityFiles.h"
#include "options/Limits.h"
#include "options/Properties.h"
#include "options/Vocabularies.h"

namespace CLI {
class App;
}

namespace tool {

/// What the command line says about reading a document.
struct ReadingOptions {
  /// @param owners whose properties the command has use of
  explicit ReadingOptions(Properties::Owners owners = Properties::Owners::Readers)
      : properties(owners) {}

  std::string from;      ///< The type of reader; empty to go by the document's first octets.
  std::string entities;  ///< What --entities has: nothing without it, "folder" or "any".
  Limits limits;
  Vocabularies vocabularies;
  Properties properties;

  EntityAccess entityAccess() const;
  /// Sets limits and properties. See Limits::applyTo and Properties::applyTo for the failures.
  void applyTo(Tavrin::XMLReader& reader) const;
  /// @param isChosen the type of writer was chosen by name
  void applyTo(Tavrin::XMLWriter& writer, bool isChosen) const;
};

/// Puts a text in the place of a line of a help text, if it has that line.
void replaceLine(std::string& help, std::string_view line, const std::string& text);

/// Adds a command that reads documents.
/// @param help all that its --help prints, but for the lines "%options%" and "%limits%": in place
/// of
///             them stand the options that addReadingOptions adds, and what they mean. Lines that
///             stand for options of other rooms are replaced likewise
/// @param owners whose properties the command has use of
CLI::App* addReadingCommand(CLI::App& app, const char* name, const std::string& help,
                            Properties::Owners owners = Properties::Owners::Readers);

/// Adds the options that all these commands have, apart from the type of reader.
void addReadingOptions(CLI::App& command, ReadingOptions& options,
                       VocabularyUse use = VocabularyUse::Reading);

}  // namespace tool
