#pragma once

#include <string>

namespace CLI {
class App;
}

namespace tool {

/// The manual page tavrin(1), made of the help texts of the tool and of all its commands, in the
/// language of troff.
/// @param app the command line with all commands
/// @param version what --version prints
std::string manualPage(const CLI::App& app, const std::string& version);

}  // namespace tool
