#pragma once

#include <string>

/// Documents to measure with. Generated ones depend on their seed alone, not on the standard
/// library's distributions, so everyone measures the same octets.
namespace documents {

/// Many short records: few distinct names and values, many distinct identifiers, one namespace.
std::string records(unsigned count);

/// The content of a file.
/// @throws std::runtime_error when it cannot be read
std::string file(const std::string& path);

}  // namespace documents
