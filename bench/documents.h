#pragma once

#include <string>
#include <vector>

/// Documents to measure with. Generated ones depend on their seed alone, not on the standard
/// library's distributions, so everyone measures the same octets. No text of fewer than seven
/// octets occurs in more than sixteen values, so that the "FI" types can carry them.
namespace documents {

/// Many short records: few distinct names and values, many distinct identifiers, one namespace.
std::string records(unsigned count);

/// Long paragraphs with some elements among their words.
std::string text(unsigned paragraphs);

/// Elements with many attributes of several namespaces.
std::string attributes(unsigned count);

/// Numbers with six significant digits or fewer.
std::vector<float> floats(unsigned count);

/// An element that holds the numbers as text, with blanks between.
std::string floatsAsText(const std::vector<float>& numbers);

/// The content of a file.
/// @throws std::runtime_error when it cannot be read
std::string file(const std::string& path);

}  // namespace documents
