#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}

namespace tool {

/// A part of a help text, as its layout tells: the manual page and the completions of shells are
/// made of it, so that each option is described once.
struct HelpBlock {
  enum class Kind {
    Usage,      ///< A line of how to call it, without "Usage: ".
    Heading,    ///< A line with a colon, directly above what it is about; without the colon.
    Row,        ///< A term, such as an option, and what it means.
    Paragraph,  ///< Text whose lines may be broken anew.
    Literal     ///< An indented line that stands as it is.
  };

  Kind kind;
  std::string term;  ///< Of a row.
  std::string text;
};

/// The parts of what a command prints for --help.
std::vector<HelpBlock> helpOf(const CLI::App& command);

/// The text of the row for an option, up to the first colon, semicolon or full stop; empty without
/// a row.
/// @param option its name with the dashes
std::string summaryOf(const std::vector<HelpBlock>& help, std::string_view option);

}  // namespace tool
