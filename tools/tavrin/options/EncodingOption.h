#pragma once

#include <string>

namespace CLI {
class App;
}

namespace tool {

/// The parts of a help text about the encoding of what is written: the option, and what it means.
extern const char kEncodingOptionHelp[];
extern const char kEncodingHelp[];

/// Adds the option.
/// @param encoding its name, or empty for UTF-8
void addEncodingOption(CLI::App& command, std::string& encoding);

}  // namespace tool
