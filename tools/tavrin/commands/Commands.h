#pragma once

#include <functional>
#include <string>
#include <vector>

#include "files/Failure.h"

namespace CLI {
class App;
}

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
Command makeGet(CLI::App& app);
Command makeStat(CLI::App& app);
Command makeDiff(CLI::App& app);
Command makeInspect(CLI::App& app);
Command makeAssemble(CLI::App& app);
Command makeVocabulary(CLI::App& app);
Command makeTypes(CLI::App& app);
Command makeCompletion(CLI::App& app);
Command makeManual(CLI::App& app);

/// Adds an empty command.
/// @param help all that its --help prints
CLI::App* addCommand(CLI::App& app, const char* name, const std::string& help);

/// The command that has these commands, one of which is to be chosen.
Command asGroup(CLI::App& app, std::vector<Command> commands);

}  // namespace tool
