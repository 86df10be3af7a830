#pragma once

#include <optional>
#include <string>

#include "files/Compressor.h"

namespace CLI {
class App;
}

namespace tool {

/// What the command line says about compressing what is written.
struct CompressionOptions {
  std::optional<CompressionChoice> chosen;

  /// What was chosen, or else what the name of the file asks for.
  CompressionChoice choiceFor(const std::string& fileName) const;
};

/// The parts of a help text about it: the option, and what it means.
extern const char kCompressionOptionHelp[];
extern const char kCompressionHelp[];

void addCompressionOptions(CLI::App& command, CompressionOptions& options);

}  // namespace tool
