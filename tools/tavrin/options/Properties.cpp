#include "options/Properties.h"

#include <Tavrin/Exceptions.h>
#include <Tavrin/Identifiers.h>

#include <CLI/CLI.hpp>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <optional>
#include <string_view>

#include "files/Failure.h"
#include "options/Numbers.h"
#include "printing/Text.h"

namespace tool {

namespace {

namespace features = Tavrin::features;
namespace properties = Tavrin::properties;

constexpr double kWidestIndentation = 1000;

}  // namespace

const char kPropertiesHelp[] =
    R"(  --property NAME=VALUE
                    change a property of the reader or the writer; may stand several times
  --feature NAME    turn a feature of the reader or the writer on; NAME=off turns it off; may stand
                    several times
)";

struct Properties::Kind {
  enum class Form { Feature, Flag, Quote, Width, Length, Indexing, Scanner, Text };

  const char* identifier;
  Form form;
  bool isOfReaders;
  const char* help;

  bool isFeature() const { return form == Form::Feature; }
  std::string_view name() const {
    const std::string_view all = identifier;
    return all.substr(all.rfind('/') + 1);
  }
  bool isFor(Owners owners) const { return isOfReaders || owners == Owners::ReadersAndWriters; }

  /// What a value may be, for messages.
  const char* values() const {
    switch (form) {
      case Form::Quote:
        return "' or \"";
      case Form::Width:
        return "a number up to 1000";
      case Form::Length:
        return "a number or none";
      case Form::Indexing:
        return "always, never or adaptive";
      case Form::Scanner:
        return "automatic or expat";
      default:
        return "on or off";
    }
  }

  std::optional<Value> valueFrom(const std::string& text) const {
    switch (form) {
      case Form::Text:
        return text;
      case Form::Quote:
        return text == "'" || text == "\"" ? std::optional<Value>(text[0]) : std::nullopt;
      case Form::Width: {
        const auto number = numberFrom(text);
        const bool isWidth = number && *number <= kWidestIndentation;
        return isWidth ? std::optional<Value>(static_cast<unsigned>(*number)) : std::nullopt;
      }
      case Form::Length: {
        const auto number = numberFrom(text);
        return number ? std::optional<Value>(countFrom(*number)) : std::nullopt;
      }
      case Form::Indexing: {
        const bool isMode = text == "always" || text == "never" || text == "adaptive";
        return isMode ? std::optional<Value>(text) : std::nullopt;
      }
      case Form::Scanner: {
        const bool isScanner = text == "automatic" || text == "expat";
        return isScanner ? std::optional<Value>(text) : std::nullopt;
      }
      default:
        return text == "on" || text == "off" ? std::optional<Value>(text == "on") : std::nullopt;
    }
  }
};

/// In the order of the help: properties, then features.
const Properties::Kind Properties::kKinds[] = {
    {properties::baseURI, Kind::Form::Text, true,
     "text: what relative system identifiers count from (none)"},
    {properties::reparseDeferral, Kind::Form::Flag, true,
     "text: where a token is cut, wait for twice as much (on)"},
    {properties::textScanner, Kind::Form::Scanner, true,
     "text: who reads it: automatic, expat (automatic)"},
    {properties::rawOctets, Kind::Form::Flag, true,
     "Fast Infoset: read on if a vocabulary is unknown (off)"},
    {properties::indentWidth, Kind::Form::Width, false, "text: spaces for each level (2)"},
    {properties::quoteCharacter, Kind::Form::Quote, false,
     "text: around attribute values, ' or \" (')"},
    {properties::indexedAttributeValueLength, Kind::Form::Length, false,
     "Fast Infoset: octets of a value in a table, at most (32)"},
    {properties::indexedChunkLength, Kind::Form::Length, false,
     "Fast Infoset: octets of a text in a table, at most (32)"},
    {properties::valueIndexing, Kind::Form::Indexing, false,
     "Fast Infoset: values in tables: always, never, adaptive (adaptive)"},
    {features::coalesceCharacters, Kind::Form::Feature, true,
     "all text between two events is one event (off)"},
    {features::namespaces, Kind::Form::Feature, true,
     "text: split names, and report prefix mappings (on)"},
    {features::namespacePrefixes, Kind::Form::Feature, true,
     "text: declarations of namespaces are attributes, too (off)"},
    {features::xmlnsURIs, Kind::Form::Feature, true,
     "text: these attributes have a namespace (off)"},
    {features::externalGeneralEntities, Kind::Form::Feature, true,
     "text: read them, with --entities (on)"},
    {features::externalParameterEntities, Kind::Form::Feature, true,
     "text: and those of the document type (on)"},
    {features::autoIndent, Kind::Form::Feature, false,
     "text: begin tags on lines of their own (off)"},
    {features::emptyTags, Kind::Form::Feature, false,
     "text: one tag for an element without content (on)"},
    {features::xmlDeclaration, Kind::Form::Feature, false,
     "text: begin with an XML declaration (on)"},
};

std::vector<std::string> Properties::names(Owners owners, bool ofFeatures) {
  std::vector<std::string> names;
  for (const Kind& kind : kKinds) {
    if (kind.isFor(owners) && kind.isFeature() == ofFeatures) names.emplace_back(kind.name());
  }
  return names;
}

/// The kind that a setting names.
const Properties::Kind& Properties::find(const std::string& option, const std::string& setting,
                                         bool isFeature) const {
  const std::string_view name = std::string_view(setting).substr(0, setting.find('='));
  for (const Kind& kind : kKinds) {
    if (kind.isFor(owners_) && kind.isFeature() == isFeature && kind.name() == name) return kind;
  }
  throw Failure::usage(option + " " + setting + ": there is no such " +
                       (isFeature ? "feature" : "property") + " (there are " +
                       listed(names(owners_, isFeature)) + ")");
}

void Properties::addProperty(const std::string& setting) {
  const Kind& kind = find("--property", setting, false);
  const std::size_t sign = setting.find('=');
  const auto value =
      sign == std::string::npos ? std::nullopt : kind.valueFrom(setting.substr(sign + 1));
  if (!value) {
    throw Failure::usage(
        "--property " + setting + ": the value is " +
        (sign == std::string::npos ? "missing" : "not " + std::string(kind.values())));
  }
  settings_.emplace_back(&kind, *value);
}

void Properties::addFeature(const std::string& setting) {
  const Kind& kind = find("--feature", setting, true);
  const std::size_t sign = setting.find('=');
  const auto value = kind.valueFrom(sign == std::string::npos ? "on" : setting.substr(sign + 1));
  if (!value) {
    throw Failure::usage("--feature " + setting + ": the value is not " + kind.values());
  }
  settings_.emplace_back(&kind, *value);
}

bool Properties::sets(const char* feature, bool value) const {
  bool isSet = false;
  for (const auto& [kind, given] : settings_) {
    if (std::strcmp(kind->identifier, feature) == 0) isSet = std::get<bool>(given) == value;
  }
  return isSet;
}

void Properties::requireNamespaces(const std::string& user) const {
  if (sets(features::namespaces, false) || sets(features::namespacePrefixes, true)) {
    throw Failure::usage(user +
                         " needs the feature namespaces, and does without namespace-prefixes");
  }
}

template <typename Owner>
void Properties::apply(Owner& owner, bool ofReaders, bool isChosen) const {
  for (const auto& [kind, value] : settings_) {
    if (kind->isOfReaders != ofReaders) continue;
    try {
      if (kind->isFeature()) {
        owner.setFeature(kind->identifier, std::get<bool>(value));
      } else {
        std::visit([&owner, name = kind->identifier](auto copy) { owner.setProperty(name, &copy); },
                   value);
      }
    } catch (const Tavrin::SAXNotRecognizedException&) {
      if (isChosen) throw;
    }
  }
}

void Properties::applyTo(Tavrin::XMLReader& reader, bool isChosen) const {
  apply(reader, true, isChosen);
}

void Properties::applyTo(Tavrin::XMLWriter& writer, bool isChosen) const {
  apply(writer, false, isChosen);
}

std::string Properties::help(Owners owners) {
  std::string text;
  bool wasFeature = false;
  for (const Kind& kind : kKinds) {
    if (!kind.isFor(owners)) continue;
    if (kind.isFeature() && !wasFeature)
      text += "\nThe features, with what they are otherwise:\n\n";
    wasFeature = kind.isFeature();
    text += helpRow(kind.name(), kind.help);
  }
  return text;
}

void addPropertyOptions(CLI::App& command, Properties& properties) {
  const auto add = [&command](const char* option, const char* placeholder,
                              const std::function<void(const std::string&)>& setting) {
    command
        .add_option_function<std::vector<std::string>>(
            option,
            [setting](const std::vector<std::string>& settings) {
              for (const std::string& one : settings) setting(one);
            })
        ->type_name(placeholder)
        ->allow_extra_args(false);
  };
  add("--property", "NAME=VALUE",
      [&properties](const std::string& setting) { properties.addProperty(setting); });
  add("--feature", "NAME",
      [&properties](const std::string& setting) { properties.addFeature(setting); });
}

}  // namespace tool
