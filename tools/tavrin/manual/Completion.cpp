#include "manual/Completion.h"

#include <Tavrin/Factories.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string_view>
#include <vector>

#include "manual/HelpText.h"
#include "options/Limits.h"
#include "options/Properties.h"

namespace tool {

namespace {

using Words = std::vector<std::string>;

struct OptionWords {
  Words names;  ///< With their dashes.
  std::string summary;
  bool takesValue = false;
  Words values;  ///< Empty for a file or any text.
};

struct CommandWords {
  std::string name;
  std::string summary;
  std::vector<OptionWords> options;
  Words arguments;  ///< What the first argument may be; empty for files.
};

std::string join(const Words& words, std::string_view separator) {
  std::string text;
  for (const std::string& word : words) {
    if (!text.empty()) text += separator;
    text += word;
  }
  return text;
}

/// The values that an option may have, by its name and what stands for its value in the help.
Words valuesOf(const std::string& name, const std::string& placeholder, Properties::Owners owners) {
  if (placeholder == "TYPE" && name == "--to") return Tavrin::XMLWriterFactory::getTypeNames();
  if (placeholder == "TYPE") return Tavrin::XMLReaderFactory::getTypeNames();
  if (name == "--limit") return Limits::names();
  if (name == "--property" || name == "--feature") {
    return Properties::names(owners, name == "--feature");
  }
  if (name == "--color") return {"auto", "always", "never"};
  return {};
}

OptionWords wordsOf(const CLI::Option& option, const std::vector<HelpBlock>& help,
                    Properties::Owners owners) {
  OptionWords words;
  for (const std::string& name : option.get_snames()) words.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) words.names.push_back("--" + name);
  for (const std::string& name : words.names) {
    if (words.summary.empty()) words.summary = summaryOf(help, name);
  }
  words.takesValue = option.get_items_expected_min() > 0;
  if (words.takesValue) words.values = valuesOf(words.names.back(), option.get_type_name(), owners);
  return words;
}

void addOwnOptions(const CLI::App& command, CommandWords& words) {
  const std::vector<HelpBlock> help = helpOf(command);
  // Only a help text that tells of writers' properties is of a command that has use of them.
  const bool hasWriters = !summaryOf(help, "indent-width").empty();
  const auto owners =
      hasWriters ? Properties::Owners::ReadersAndWriters : Properties::Owners::Readers;
  for (const CLI::Option* option : command.get_options()) {
    if (option->get_name() == "SHELL") words.arguments = {"bash", "zsh", "fish"};
    if (option->get_positional()) continue;
    const OptionWords added = wordsOf(*option, help, owners);
    const bool isThere = std::ranges::any_of(
        words.options, [&](const OptionWords& other) { return other.names == added.names; });
    if (!isThere) words.options.push_back(added);
  }
}

/// Shells are told of the options of all commands below this one together. They have none below.
void addOptions(const CLI::App& command, CommandWords& words) {
  addOwnOptions(command, words);
  for (const CLI::App* below : command.get_subcommands({})) {
    words.arguments.push_back(below->get_name());
    addOwnOptions(*below, words);
  }
}

CommandWords wordsOf(const CLI::App& command, std::string summary) {
  CommandWords words{command.get_name(), std::move(summary), {}, {}};
  addOptions(command, words);
  return words;
}

std::vector<CommandWords> commandsOf(const CLI::App& app) {
  std::vector<CommandWords> commands;
  const std::vector<HelpBlock> help = helpOf(app);
  for (const CLI::App* command : app.get_subcommands({})) {
    if (command->get_group().empty()) continue;  // Not for users.
    commands.push_back(wordsOf(*command, summaryOf(help, command->get_name())));
  }
  return commands;
}

Words optionNames(const CommandWords& command) {
  Words names;
  for (const OptionWords& option : command.options) {
    names.insert(names.end(), option.names.begin(), option.names.end());
  }
  return names;
}

std::string bashCompletion(const std::vector<CommandWords>& commands) {
  Words names;
  std::string options;
  std::string values;
  for (const CommandWords& command : commands) {
    names.push_back(command.name);
    options += "    " + command.name + ") words='" + join(optionNames(command), " ") + "'";
    if (!command.arguments.empty()) options += " arguments='" + join(command.arguments, " ") + "'";
    options += " ;;\n";
    for (const OptionWords& option : command.options) {
      if (option.values.empty()) continue;
      values += "    " + command.name + ":" + join(option.names, "|" + command.name + ":") +
                ") values='" + join(option.values, " ") + "' ;;\n";
    }
  }
  return "# Completion of tavrin for bash.\n"
         "_tavrin() {\n"
         "  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}\n"
         "  local command=${COMP_WORDS[1]} words='' arguments='' values=''\n"
         "  COMPREPLY=()\n"
         "  if ((COMP_CWORD == 1)); then\n"
         "    mapfile -t COMPREPLY < <(compgen -W '" +
         join(names, " ") +
         " --help --version' -- \"$word\")\n"
         "    return\n"
         "  fi\n"
         "  case $command in\n" +
         options +
         "  esac\n"
         "  case $command:$before in\n" +
         values +
         "  esac\n"
         "  if [[ $values ]]; then\n"
         "    mapfile -t COMPREPLY < <(compgen -W \"$values\" -- \"$word\")\n"
         "  elif [[ $word == -* ]]; then\n"
         "    mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$word\")\n"
         "  elif [[ $arguments ]] && ((COMP_CWORD == 2)); then\n"
         "    mapfile -t COMPREPLY < <(compgen -W \"$arguments\" -- \"$word\")\n"
         "  else\n"
         "    compopt -o filenames 2>/dev/null\n"
         "    mapfile -t COMPREPLY < <(compgen -f -- \"$word\")\n"
         "  fi\n"
         "}\n"
         "complete -F _tavrin tavrin\n";
}

/// A text within apostrophes, where only they end it.
std::string shellQuoted(std::string_view text) {
  std::string result = "'";
  for (const char c : text) {
    if (c == '\'') {
      result += "'\\''";
    } else {
      result += c;
    }
  }
  return result + "'";
}

/// A text in front of which the completion functions of zsh have a syntax.
std::string zshText(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (std::string_view("[]:\\").find(c) != std::string_view::npos) result += '\\';
    result += c;
  }
  return result;
}

std::string zshCompletion(const std::vector<CommandWords>& commands) {
  std::string described;
  std::string cases;
  for (const CommandWords& command : commands) {
    described += "    " + shellQuoted(zshText(command.name) + ":" + command.summary) + "\n";
    cases += "    " + command.name + ")\n      _arguments -S";
    for (const OptionWords& option : command.options) {
      const std::string value = !option.takesValue ? ""
                                : option.values.empty()
                                    ? ":value:_files"
                                    : ":value:(" + join(option.values, " ") + ")";
      for (const std::string& name : option.names) {
        cases += " \\\n        ";
        cases += shellQuoted(join({"*", name, "[", zshText(option.summary), "]", value}, ""));
      }
    }
    if (!command.arguments.empty()) {
      cases += " \\\n        " + shellQuoted("1:command:(" + join(command.arguments, " ") + ")");
    }
    cases += " \\\n        '*:file:_files'\n      ;;\n";
  }
  return "#compdef tavrin\n"
         "# Completion of tavrin for zsh.\n"
         "_tavrin() {\n"
         "  local -a commands=(\n" +
         described +
         "  )\n"
         "  if ((CURRENT == 2)); then\n"
         "    _describe command commands\n"
         "    return\n"
         "  fi\n"
         "  local command=$words[2]\n"
         "  words=(\"${(@)words[2,-1]}\")\n"
         "  ((CURRENT--))\n"
         "  case $command in\n" +
         cases +
         "  esac\n"
         "}\n"
         "_tavrin \"$@\"\n";
}

std::string fishCompletion(const std::vector<CommandWords>& commands) {
  std::string text =
      "# Completion of tavrin for fish.\n"
      "complete -c tavrin -n __fish_use_subcommand -s h -l help -d 'print this help'\n"
      "complete -c tavrin -n __fish_use_subcommand -l version -d 'print the version'\n";
  for (const CommandWords& command : commands) {
    text += "complete -c tavrin -n __fish_use_subcommand -f -a " + command.name + " -d " +
            shellQuoted(command.summary) + "\n";
  }
  for (const CommandWords& command : commands) {
    const std::string condition =
        "complete -c tavrin -n " + shellQuoted("__fish_seen_subcommand_from " + command.name);
    for (const OptionWords& option : command.options) {
      text += condition;
      for (const std::string& name : option.names) {
        text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
      }
      if (option.takesValue) text += option.values.empty() ? " -r" : " -x";
      if (!option.values.empty()) text += " -a " + shellQuoted(join(option.values, " "));
      text += " -d " + shellQuoted(option.summary) + "\n";
    }
    if (!command.arguments.empty()) {
      text += condition + " -a " + shellQuoted(join(command.arguments, " ")) + "\n";
    }
  }
  return text;
}

}  // namespace

std::string completionFor(const CLI::App& app, const std::string& shell) {
  const std::vector<CommandWords> commands = commandsOf(app);
  if (shell == "bash") return bashCompletion(commands);
  return shell == "zsh" ? zshCompletion(commands) : fishCompletion(commands);
}

}  // namespace tool
