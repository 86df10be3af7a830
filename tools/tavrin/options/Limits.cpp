#include "options/Limits.h"

#include <Tavrin/Exceptions.h>
#include <Tavrin/Identifiers.h>

#include <CLI/CLI.hpp>
#include <cstdint>
#include <optional>
#include <string_view>

#include "files/Failure.h"
#include "options/Numbers.h"
#include "options/Suggestion.h"
#include "printing/Text.h"

namespace tool {

namespace {

namespace properties = Tavrin::properties;

}  // namespace

const char kLimitOptionHelp[] =
    R"(  --limit NAME=VALUE
                    change a limit to what hostile documents may cost; may stand several times
)";

const char kLimitsHelp[] =
    R"(Limits end the reading of documents that are made to exhaust whoever reads them. VALUE is a number,
maybe with K, M or G behind it, or none. Unless --limit says otherwise, they are those in brackets:

)";

struct Limits::Kind {
  enum class Value { Factor, Count };  // A `double`, a `std::uint64_t`.

  const char* property;
  Value value;
  const char* help;

  std::string_view name() const {
    const std::string_view identifier = property;
    return identifier.substr(identifier.rfind('/') + 1);
  }
};

/// In the order of the help.
const Limits::Kind Limits::kKinds[] = {
    {properties::entityAmplificationFactor, Kind::Value::Factor,
     "text: octets that entities or defaults make of each (100)"},
    {properties::entityAmplificationThreshold, Kind::Value::Count,
     "text: so many octets before that factor counts (8M)"},
    {properties::maximumDepth, Kind::Value::Count, "elements that may be open at a time (none)"},
    {properties::amplificationFactor, Kind::Value::Factor,
     "Fast Infoset: octets from tables for each one read (1000)"},
    {properties::amplificationThreshold, Kind::Value::Count,
     "Fast Infoset: so many octets before that factor counts (8M)"},
    {properties::maximumTableOctets, Kind::Value::Count,
     "Fast Infoset: octets of all tables of a document (512M)"},
    {properties::maximumLiteralOctets, Kind::Value::Count,
     "Fast Infoset: octets of one string or typed value (1G)"},
    {properties::maximumCoalescedOctets, Kind::Value::Count,
     "octets of text that --feature coalesce-characters joins (1G)"},
};

void Limits::add(const std::string& setting) {
  const std::size_t sign = setting.find('=');
  const std::string_view name = std::string_view(setting).substr(0, sign);
  for (const Kind& kind : kKinds) {
    if (kind.name() != name) continue;
    const auto value = sign == std::string::npos
                           ? std::nullopt
                           : numberFrom(std::string_view(setting).substr(sign + 1));
    if (!value) {
      throw Failure::usage("--limit " + setting + ": the value is not a number or none");
    }
    return settings_.push_back({&kind, *value});
  }
  const std::string meant = suggestion(name, names());
  throw Failure::usage(
      "--limit " + setting + ": there is no such limit (" +
      (meant.empty() ? "there are " + listed(names()) : meant.substr(0, meant.size() - 1)) + ")");
}

/// Calls with each property and a pointer to its value.
template <typename Set>
void Limits::forEach(Set set) const {
  for (const auto& [kind, value] : settings_) {
    double factor = value;
    std::uint64_t count = countFrom(value);
    const bool isFactor = kind->value == Kind::Value::Factor;
    set(kind->property, isFactor ? static_cast<void*>(&factor) : static_cast<void*>(&count));
  }
}

void Limits::applyTo(Tavrin::XMLReader& reader, bool isChosen) const {
  forEach([&](const char* property, void* value) {
    try {
      reader.setProperty(property, value);
    } catch (const Tavrin::SAXNotRecognizedException&) {
      if (isChosen) throw;
    }
  });
}

void Limits::applyTo(Tavrin::XMLWriter& writer) const {
  forEach([&](const char* property, void* value) {
    try {
      writer.setProperty(property, value);
    } catch (const Tavrin::SAXNotRecognizedException&) {
      // Most of them are for reading.
    }
  });
}

std::vector<std::string> Limits::names() {
  std::vector<std::string> names;
  for (const Kind& kind : kKinds) names.emplace_back(kind.name());
  return names;
}

std::string Limits::help() {
  std::string text;
  for (const Kind& kind : kKinds) {
    text += helpRow(kind.name(), kind.help);
  }
  return text;
}

std::string Limits::withOption(const std::string& message) {
  for (const Kind& kind : kKinds) {
    // Readers and writers tell which property it is.
    const std::string name(kind.name());
    const std::string property = "(property " + name + ")";
    const std::size_t told = message.find(property);
    if (told == std::string::npos) continue;
    return std::string(message).replace(told, property.size(), "(see --limit " + name + ")");
  }
  return message;
}

void addLimitOption(CLI::App& command, Limits& limits) {
  command
      .add_option_function<std::vector<std::string>>(
          "--limit",
          [&limits](const std::vector<std::string>& settings) {
            for (const std::string& setting : settings) limits.add(setting);
          })
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
}

}  // namespace tool
