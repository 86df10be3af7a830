#pragma once

#include <Tavrin/XMLReader.h>
#include <Tavrin/XMLWriter.h>

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace tool {

/// The limits that readers set to hostile documents, and how the command line changes them.
///
/// A limit has the name that ends the identifier of its property.
class Limits {
 public:
  /// @param setting "NAME=VALUE": a number, maybe with K, M or G behind it, or "none"
  /// @throws Failure for any other text
  void add(const std::string& setting);
  /// Sets what was added where a reader has such a limit.
  /// @param isChosen the reader was chosen by name, so it has to have them all
  /// @throws Tavrin::SAXException for a value that a limit cannot have
  void applyTo(Tavrin::XMLReader& reader, bool isChosen) const;
  /// Sets what was added where a writer has such a limit.
  void applyTo(Tavrin::XMLWriter& writer) const;

  /// The names of all.
  static std::vector<std::string> names();
  /// The part of a help text that lists them.
  static std::string help();
  /// The message of a failure and, where a limit brought it about, the option that changes that.
  static std::string withOption(const std::string& message);

 private:
  struct Kind;
  struct Setting {
    const Kind* kind;
    double value;
  };
  static const Kind kKinds[];

  template <typename Set>
  void forEach(Set set) const;

  std::vector<Setting> settings_;
};

/// Adds --limit.
void addLimitOption(CLI::App& command, Limits& limits);

/// What the option is, and what its limits are, for help texts.
extern const char kLimitOptionHelp[];
extern const char kLimitsHelp[];

}  // namespace tool
