#pragma once

#include <string>

namespace CLI {
class App;
}

namespace tool {

/// What a shell needs to complete the commands and options of the tool, and the values of those
/// options that take one of a few words. Everything else is completed as the name of a file.
/// @param app the command line with all commands
/// @param shell "bash", "zsh" or "fish"
std::string completionFor(const CLI::App& app, const std::string& shell);

}  // namespace tool
