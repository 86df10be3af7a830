#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <string_view>

#include "files/EntityFiles.h"
#include "options/Limits.h"

namespace tool {

/// What the command line says about reading a document.
struct ReadingOptions {
  std::string from;      ///< The type of reader; empty to go by the document's first octets.
  std::string entities;  ///< What --entities has: nothing without it, "folder" or "any".
  Limits limits;

  EntityAccess entityAccess() const;
};

/// Puts a text in place of a line that stands for it.
void replaceLine(std::string& help, std::string_view line, const std::string& text);

/// Adds a command that reads documents.
/// @param help all that its --help prints, but for the lines "%options%" and "%limits%": in place
/// of
///             them stand the options that addReadingOptions adds, and what they mean
CLI::App* addReadingCommand(CLI::App& app, const char* name, const std::string& help);

/// Adds the options that all these commands have, apart from the type of reader.
void addReadingOptions(CLI::App& command, ReadingOptions& options);

}  // namespace tool
