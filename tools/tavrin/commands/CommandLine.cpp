#include "commands/CommandLine.h"

#include <Tavrin/Version.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "commands/Commands.h"
#include "files/Output.h"
#include "options/Suggestion.h"

namespace tool {

namespace {

constexpr char kCommandLineHelp[] =
    R"(Reads, checks, compares and converts XML documents, in XML text and in Fast Infoset.

Usage: tavrin COMMAND [OPTIONS] ...

Commands:
  convert      copy a document, in the same format or in another
  check        tell whether documents are well-formed
  events       show the events that a reader makes of a document
  get          print what a path leads to in documents
  stat         count what documents hold
  diff         compare two documents event by event
  inspect      show what every octet of a Fast Infoset document is
  assemble     make the octets of a document of what inspect shows
  vocabulary   learn what documents have in common, and show it
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

bool isOption(const std::string& argument) { return argument.size() > 1 && argument[0] == '-'; }

/// An argument without the value that an option may have.
std::string nameOf(const std::string& argument) {
  return isOption(argument) ? argument.substr(0, argument.find('=')) : argument;
}

std::string messageAbout(const std::string& unknown, bool lacksCommand) {
  const char* const what = isOption(unknown) ? "unknown option"
                           : lacksCommand    ? "unknown command"
                                             : "unexpected argument";
  return std::string(what) + " \"" + unknown + "\"";
}

/// All commands and options that there are in a place.
std::vector<std::string> namesOf(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
    names.push_back(command->get_name());
  }
  for (const CLI::Option* option : app.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  return names;
}

bool takesNoValue(const CLI::Option& option) {
  return option.get_expected_min() == 0 && option.get_disable_flag_override();
}

/// What the parser says, but for what it says of options that have too many values or too few.
std::string messageOf(const CLI::App& command, const CLI::ParseError& error) {
  std::string words = error.what();
  if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) == nullptr) return words;
  std::string name = words.substr(0, words.find_first_of(": "));
  if (!name.starts_with('-')) name.insert(0, "--");
  const CLI::Option* const option = command.get_option_no_throw(name);
  if (option == nullptr) return words;
  if (takesNoValue(*option)) return name + " takes no value";
  const bool isTooMany = static_cast<int>(option->count()) > option->get_items_expected_max();
  return name +
         (isTooMany ? ": it may stand once" : ": " + option->get_type_name() + " is missing");
}

/// The command that an argument leads to from another, or that one.
const CLI::App& commandAt(const CLI::App& app, const std::string& argument) {
  const auto named = app.get_subcommands(
      [&argument](const CLI::App* command) { return command->check_name(argument); });
  return named.empty() ? app : *named[0];
}

/// The words that call a command.
std::string wordsOf(const CLI::App& command) {
  std::string words = command.get_name();
  for (const CLI::App* group = command.get_parent(); group; group = group->get_parent()) {
    words.insert(0, group->get_name() + " ");
  }
  return words;
}

/// The parser would take the next word for the value of "--name=".
void refuseEmptyValues(const CLI::App& app, int argc, char** argv) {
  const CLI::App* command = &app;
  for (int i = 1; i < argc && std::strcmp(argv[i], "--") != 0; ++i) {
    const std::string argument = argv[i];
    command = &commandAt(*command, argument);
    const std::string name = nameOf(argument);
    if (!argument.starts_with("--") || argument != name + "=") continue;
    const CLI::Option* const option = command->get_option_no_throw(name);
    if (option == nullptr) continue;
    throw Failure::usage(name +
                         (takesNoValue(*option) ? " takes no value" : ": the value is missing") +
                         " (see " + wordsOf(*command) + " --help)");
  }
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
  const CLI::App* command = &app;
  for (auto chosen = app.get_subcommands(); !chosen.empty(); chosen = command->get_subcommands()) {
    command = chosen[0];
  }
  const bool lacksCommand = command->get_require_subcommand_min() > 0;
  auto unknown = app.remaining(true);
  std::erase(unknown, "--");  // Arguments may follow it.
  const std::string message = !unknown.empty() ? messageAbout(unknown[0], lacksCommand)
                              : lacksCommand   ? "a command is required"
                                               : messageOf(*command, error);
  const std::string meant =
      unknown.empty() ? "" : suggestion(nameOf(unknown[0]), namesOf(*command));
  throw Failure::usage(message + " (" + meant + "see " + wordsOf(*command) + " --help)");
}

}  // namespace

CLI::App* addCommand(CLI::App& app, const char* name, const std::string& help) {
  CLI::App* command = app.add_subcommand(name);
  setHelp(*command, help);
  return command;
}

Command asGroup(CLI::App& app, std::vector<Command> commands) {
  app.require_subcommand(1);
  const auto run = [commands = std::move(commands)] {
    const auto chosen = std::find_if(commands.begin(), commands.end(),
                                     [](const Command& command) { return command.app->parsed(); });
    return chosen->run();
  };
  return {&app, run};
}

ExitStatus runCommandLine(int argc, char** argv) {
  CLI::App app("", "tavrin");
  setHelp(app, kCommandLineHelp);
  app.set_version_flag("--version", versionText());
  app.option_defaults()->disable_flag_override();
  const Command commands =
      asGroup(app, {makeConvert(app), makeCheck(app), makeEvents(app), makeGet(app), makeStat(app),
                    makeDiff(app), makeInspect(app), makeAssemble(app), makeVocabulary(app),
                    makeTypes(app), makeCompletion(app), makeManual(app)});
  try {
    refuseEmptyValues(app, argc, argv);
    app.parse(argumentsFrom(argc, argv));
  } catch (const CLI::ParseError& error) {
    return answer(app, error);
  }
  return commands.run();
}

}  // namespace tool
