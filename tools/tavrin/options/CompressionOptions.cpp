#include "options/CompressionOptions.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <string_view>

namespace tool {

const char kCompressionOptionHelp[] =
    R"(  --compress FORM   compress the copy: gzip, zstd or none, instead of going by the name of OUT
)";

const char kCompressionHelp[] =
    R"(OUT is compressed if its name ends in .gz (gzip) or .zst (zstd); the name in front of that tells the
type of writer, as in out.fi.zst. FORM may have a level behind a colon, from 1 (fast) to 9 for gzip
and to 22 for zstd: gzip:9. IN is decompressed whatever its name is: its first octets tell.
)";

namespace {

/// Reads "FORM" or "FORM:LEVEL". Returns what is wrong with it, or nothing.
std::string readChoice(const std::string& text, CompressionChoice& choice) {
  const std::size_t colon = text.find(':');
  const std::string_view name = std::string_view(text).substr(0, colon);
  const Compression forms[] = {Compression::None, Compression::Gzip, Compression::Zstd};
  const auto* const form = std::find_if(std::begin(forms), std::end(forms),
                                        [name](Compression each) { return nameOf(each) == name; });
  if (form == std::end(forms)) return "\"" + text + "\" is not gzip, zstd or none";
  choice = {.compression = *form};
  if (colon == std::string::npos) return {};
  const std::string_view level = std::string_view(text).substr(colon + 1);
  const auto [end, error] = std::from_chars(level.begin(), level.end(), choice.level);
  const int highest = highestLevelOf(*form);
  if (error == std::errc() && end == level.end() && choice.level >= 1 && choice.level <= highest) {
    return {};
  }
  if (highest == 0) return "none has no level";
  return "the level of " + std::string(name) + " is a number from 1 to " + std::to_string(highest);
}

}  // namespace

CompressionChoice CompressionOptions::choiceFor(const std::string& fileName) const {
  return chosen.value_or(CompressionChoice{.compression = compressionFor(fileName)});
}

void addCompressionOptions(CLI::App& command, CompressionOptions& options) {
  command
      .add_option_function<std::string>(
          "--compress",
          [&options](const std::string& text) { readChoice(text, options.chosen.emplace()); })
      ->type_name("FORM")
      ->check([](const std::string& text) {
        CompressionChoice choice;
        return readChoice(text, choice);
      });
}

}  // namespace tool
