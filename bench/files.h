#pragma once

#include <string>

#include "corpus.h"

namespace files {

/// Writes every document as DIRECTORY/NAME.xml and as DIRECTORY/NAME.fi, which holds what the
/// writer "X891" makes of it. Existing files are replaced.
/// @throws std::runtime_error when a file cannot be written
void writeAll(const Corpus& corpus, const std::string& directory);

}  // namespace files
