#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>

#include "files/Failure.h"

namespace tool {

/// One command of the tool: its part of the command line, and what it does once that is parsed.
struct Command {
  CLI::App* app;
  /// Throws Failure, or the SAXException with which the library refuses a type or a feature.
  std::function<ExitStatus()> run;
};

// Each adds its command to the command line.
Command makeConvert(CLI::App& app);
Command makeCheck(CLI::App& app);
Command makeEvents(CLI::App& app);
Command makeStat(CLI::App& app);
Command makeDiff(CLI::App& app);
Command makeTypes(CLI::App& app);
Command makeCompletion(CLI::App& app);
Command makeManual(CLI::App& app);

/// Adds an empty command.
/// @param help all that its --help prints
CLI::App* addCommand(CLI::App& app, const char* name, const std::string& help);

}  // namespace tool
