#include "many/CopyNames.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "files/Compression.h"
#include "many/Documents.h"

namespace tool {

using namespace std::string_view_literals;

namespace {

/// In the order of kFoldersHelp.
constexpr std::string_view kEndings[] = {
    ".xml"sv,  ".fi"sv,   ".finf"sv, ".x3d"sv, ".x3db"sv, ".svg"sv,   ".xsd"sv,
    ".xsl"sv,  ".xslt"sv, ".rng"sv,  ".sch"sv, ".wsdl"sv, ".xhtml"sv, ".rdf"sv,
    ".rss"sv,  ".atom"sv, ".gml"sv,  ".kml"sv, ".gpx"sv,  ".dae"sv,   ".mml"sv,
    ".dita"sv, ".dbk"sv,  ".tei"sv,  ".xmi"sv, ".xlf"sv,  ".osm"sv,   ".musicxml"sv};

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; }

/// The name without its ending, where it has that and something in front of it.
std::optional<std::string_view> without(std::string_view name, std::string_view ending) {
  if (name.size() <= ending.size()) return std::nullopt;
  const std::string_view rest = name.substr(0, name.size() - ending.size());
  if (rest.ends_with('/')) return std::nullopt;
  const bool isThere =
      std::ranges::equal(name.substr(rest.size()), ending, {}, [](char c) { return lower(c); });
  return isThere ? std::optional(rest) : std::nullopt;
}

}  // namespace

bool isDocumentName(std::string_view name) {
  name = withoutCompression(name);
  return std::ranges::any_of(kEndings,
                             [&](auto ending) { return without(name, ending).has_value(); });
}

bool isNameOfFastInfoset(std::string_view name) {
  return without(name, ".fi") || without(name, ".finf") || without(name, ".x3db");
}

std::string nameInFastInfoset(std::string_view name) {
  if (isNameOfFastInfoset(name)) return std::string(name);
  if (const auto rest = without(name, ".xml")) return std::string(*rest) + ".fi";
  if (const auto rest = without(name, ".x3d")) return std::string(*rest) + ".x3db";
  return std::string(name) + ".fi";
}

std::string nameInText(std::string_view name) {
  if (const auto rest = without(name, ".x3db")) return std::string(*rest) + ".x3d";
  for (const std::string_view ending : {".fi"sv, ".finf"sv}) {
    const auto rest = without(name, ending);
    if (rest) return isDocumentName(*rest) ? std::string(*rest) : std::string(*rest) + ".xml";
  }
  return std::string(name);
}

}  // namespace tool
