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
  /// Reads the rules of the file, or makes those of "auto". It is done once, for all documents: the
  /// file may be a pipe.
  /// @throws Failure when the file cannot be read, or has a line that is no rule
  void load();
  /// What was loaded; none where no text is to be typed.
  const Tavrin::TypingRules& loadedRules() const { return loaded_; }
  Tavrin::TypedContentFilter::Options filterOptions() const;

 private:
  Tavrin::TypingRules loaded_;
};

/// The part of a help text that lists these options, and the part that explains them.
extern const char kTypingOptionsHelp[];
extern const char kTypingHelp[];

void addTypingOptions(CLI::App& command, TypingOptions& options);

}  // namespace tool
