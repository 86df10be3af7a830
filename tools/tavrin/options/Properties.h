#pragma once

#include <Tavrin/XMLReader.h>
#include <Tavrin/XMLWriter.h>

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace CLI {
class App;
}

namespace tool {

/// The properties and features of readers and writers that the command line can set, besides the
/// limits: those whose values can be written in one word.
///
/// One has the name that ends its identifier.
class Properties {
 public:
  /// Of whom a command has use.
  enum class Owners { Readers, ReadersAndWriters };

  explicit Properties(Owners owners = Owners::Readers) : owners_(owners) {}

  /// @param setting "NAME=VALUE"
  /// @throws Failure for any other text, for a name that is not known and a value that is none
  void addProperty(const std::string& setting);
  /// @param setting "NAME=on" or "NAME=off"; NAME alone is on
  /// @throws Failure likewise
  void addFeature(const std::string& setting);

  /// Sets what was added where a reader or writer has it.
  /// @param isChosen the type was chosen by name, so it has to have all that is its own
  /// @throws Tavrin::SAXException where it has not, and for a value that it refuses
  void applyTo(Tavrin::XMLReader& reader, bool isChosen) const;
  void applyTo(Tavrin::XMLWriter& writer, bool isChosen) const;

  /// Whether a feature was given this value, and no other one behind it.
  /// @param feature its identifier
  bool sets(const char* feature, bool value) const;
  /// For whoever goes by names in namespaces, and takes attributes for content.
  /// @throws Failure where namespaces are off, or declarations of them come as attributes, too
  void requireNamespaces(const std::string& user) const;

  /// The part of a help text that lists them.
  static std::string help(Owners owners);
  /// The names of all properties, or of all features.
  static std::vector<std::string> names(Owners owners, bool ofFeatures);

 private:
  struct Kind;
  using Value = std::variant<bool, char, unsigned, std::uint64_t, std::string>;
  static const Kind kKinds[];

  template <typename Owner>
  void apply(Owner& owner, bool ofReaders, bool isChosen) const;
  const Kind& find(const std::string& option, const std::string& setting, bool isFeature) const;

  Owners owners_;
  std::vector<std::pair<const Kind*, Value>> settings_;
};

/// The lines of a help text about the options, in place of the line "%properties%".
extern const char kPropertiesHelp[];

/// Adds --property and --feature.
void addPropertyOptions(CLI::App& command, Properties& properties);

}  // namespace tool
