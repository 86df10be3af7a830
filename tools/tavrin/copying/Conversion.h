#pragma once

#include <cstdint>
#include <string>

#include "options/CompressionOptions.h"
#include "options/ReadingOptions.h"

namespace tool {

/// What the command line says about copying a document.
struct ConversionOptions {
  std::string to;  ///< The type of writer; empty to go by the name of the copy.
  bool indent = false;
  bool noDeclaration = false;
  std::string encoding;  ///< Of text; empty for UTF-8.
  bool force = false;
  bool lossy = false;
  std::uint64_t document = 0;  ///< The one to copy, counted from 1; 0 for all.
  ReadingOptions reading;
  CompressionOptions compression;
};

/// Copies the documents of a file to another, each with a writer of its own.
/// @param in, out names of files; "-" is standard input or output
/// @throws Failure when the copy cannot be made; Tavrin::SAXException when there is no such type
void convertFile(const ConversionOptions& options, const std::string& in, const std::string& out);

}  // namespace tool
