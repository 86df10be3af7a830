#include "commands/CommandLine.h"

#include <Tavrin/Version.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string>
#include <vector>

#include "commands/Commands.h"
#include "files/Output.h"

namespace tool {

namespace {

constexpr char kHelp[] =
    R"(Reads, checks, compares and converts XML documents, in XML text and in Fast Infoset.

Usage: tavrin COMMAND [OPTIONS] ...

Commands:
  convert      copy a document, in the same format or in another
  check        tell whether documents are well-formed
  events       show the events that a reader makes of a document
  stat         count what documents hold
  diff         compare two documents event by event
  types        list the readers and writers there are
  completion   print what a shell needs to complete all this

Options:
  -h, --help   print this help; after a command, the help of that command
  --version    print the version

Exit status:
  0  done
  1  a document cannot be read, or not be written faithfully; or two documents differ
  2  wrong usage, or a file that cannot be opened, read or written

Example:
  tavrin check in.xml
)";

std::string versionText() {
  return "tavrin " + std::to_string(TAVRIN_VERSION_MAJOR) + "." +
         std::to_string(TAVRIN_VERSION_MINOR) + "." + std::to_string(TAVRIN_VERSION_PATCH);
}

void setHelp(CLI::App& app, const std::string& help) {
  app.formatter_fn(
      [help](const CLI::App*, const std::string&, CLI::AppFormatMode) { return help; });
}

/// The parser takes some file names for syntax of its own: lists in brackets and the end of a
/// command. These are written in another way.
std::string protect(const std::string& argument) {
  const bool isList = argument.starts_with('[') && argument.ends_with(']');
  return isList || argument == "{}" || argument == "++" ? "./" + argument : argument;
}

/// The arguments in the order in which the parser takes them: from the last to the first.
std::vector<std::string> argumentsFrom(int argc, char** argv) {
  std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
  std::transform(arguments.begin(), arguments.end(), arguments.begin(), protect);
  std::reverse(arguments.begin(), arguments.end());
  return arguments;
}

/// Prints help or the version where that was asked for; else says what is wrong.
ExitStatus answer(const CLI::App& app, const CLI::ParseError& error) {
  if (error.get_exit_code() == 0) {
    Output output("-", false);
    output.open();
    app.exit(error, output.stream(), output.stream());
    output.commit();
    return Done;
  }
  const auto chosen = app.get_subcommands();
  const std::string command = chosen.empty() ? "" : " " + chosen[0]->get_name();
  const auto unknown = app.remaining(true);
  const std::string message = !unknown.empty() ? "unexpected argument \"" + unknown[0] + "\""
                              : chosen.empty() ? "a command is required"
                                               : std::string(error.what());
  throw Failure::usage(message + " (see tavrin" + command + " --help)");
}

}  // namespace

CLI::App* addCommand(CLI::App& app, const char* name, const std::string& help) {
  CLI::App* command = app.add_subcommand(name);
  setHelp(*command, help);
  return command;
}

ExitStatus runCommandLine(int argc, char** argv) {
  CLI::App app("", "tavrin");
  setHelp(app, kHelp);
  app.set_version_flag("--version", versionText());
  app.require_subcommand(1);
  app.option_defaults()->disable_flag_override();
  const Command commands[] = {makeConvert(app),    makeCheck(app), makeEvents(app),
                              makeStat(app),       makeDiff(app),  makeTypes(app),
                              makeCompletion(app), makeManual(app)};
  try {
    app.parse(argumentsFrom(argc, argv));
  } catch (const CLI::ParseError& error) {
    return answer(app, error);
  }
  const auto chosen = std::find_if(std::begin(commands), std::end(commands),
                                   [](const Command& command) { return command.app->parsed(); });
  return chosen->run();
}

}  // namespace tool
