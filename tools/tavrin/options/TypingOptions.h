#pragma once

#include <Tavrin/TypedContentFilter.h>

#include <string>

namespace CLI {
class App;
}

namespace tool {

/// What the command line says about text that becomes typed content.
struct TypingOptions {
  std::string rules;       ///< A file of rules, or "auto"; nothing to type no text.
  bool isExact = false;    ///< What would not come back as it was stays text.
  bool isLenient = false;  ///< What is not of its type stays text.

  bool isWanted() const { return !rules.empty(); }
  /// The rules of the file, or those of "auto"; none where no text is to be typed.
  /// @throws Failure when the file cannot be read, or has a line that is no rule
  Tavrin::TypingRules readRules() const;
  Tavrin::TypedContentFilter::Options filterOptions() const;
};

/// The part of a help text that lists these options, and the part that explains them.
extern const char kTypingOptionsHelp[];
extern const char kTypingHelp[];

void addTypingOptions(CLI::App& command, TypingOptions& options);

}  // namespace tool
