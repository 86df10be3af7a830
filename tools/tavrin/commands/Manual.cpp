#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "commands/Commands.h"
#include "files/Output.h"
#include "manual/Completion.h"
#include "manual/ManualPage.h"
#include "options/Suggestion.h"

namespace tool {

namespace {

constexpr char kCompletionHelp[] =
    R"(Prints what a shell needs to complete the commands and options of tavrin.

Usage: tavrin completion SHELL

  SHELL        bash, zsh or fish

Options:
  -h, --help   print this help

Packages install it. Elsewhere, a shell reads it when it starts; for bash:

  source <(tavrin completion bash)

For zsh, a file _tavrin in a folder of fpath holds it, and for fish, tavrin.fish in
~/.config/fish/completions.

Example:
  tavrin completion fish > ~/.config/fish/completions/tavrin.fish
)";

constexpr char kManualHelp[] =
    R"(Prints the manual page tavrin(1), in the language of troff.

Usage: tavrin manual

Options:
  -h, --help   print this help

Example:
  tavrin manual | man --local-file -
)";

ExitStatus print(const std::string& text) {
  Output output("-", false);
  output.open();
  output.stream() << text;
  output.commit();
  return Done;
}

}  // namespace

Command makeCompletion(CLI::App& app) {
  CLI::App* command = addCommand(app, "completion", kCompletionHelp);
  const auto shell = std::make_shared<std::string>();
  command->add_option("SHELL", *shell)->required()->check(oneOf({"bash", "zsh", "fish"}));
  return {command, [&app, shell] { return print(completionFor(app, *shell)); }};
}

Command makeManual(CLI::App& app) {
  CLI::App* command = addCommand(app, "manual", kManualHelp);
  command->group("");  // For packages, not for users.
  return {command, [&app] { return print(manualPage(app, app.version())); }};
}

}  // namespace tool
