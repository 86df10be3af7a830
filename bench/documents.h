#pragma once

#include <string>
#include <vector>

/// Documents to measure with. Generated ones depend on their seed alone, not on the standard
/// library's distributions, so everyone measures the same octets. No text of fewer than seven
/// octets occurs in more than sixteen values, so that the "FI" types can carry them.
namespace documents {

/// Many short records of three elements: few distinct names and values, many distinct identifiers,
/// one namespace.
std::string records(unsigned count);

/// About how many of these records make a million octets.
constexpr double kRecordsPerMegabyte = 6350;

/// Rows of a table: each has a key that never comes again, and values of which there are few.
std::string table(unsigned rows);

/// A message of about 2 KB in which nearly every name is new: a SOAP envelope with an SVG icon.
std::string message();

/// Long paragraphs with some elements among their words.
std::string text(unsigned paragraphs);

/// Chapters of long paragraphs with nothing in them but lines of words.
std::string prose(unsigned paragraphs);

/// Paragraphs as those of `text`, in turn in languages whose characters take two, three and four
/// octets.
std::string languages(unsigned paragraphs);

/// Elements with many attributes of several namespaces.
std::string attributes(unsigned count);

/// Chains of elements in one another, as many as it takes for so many elements.
std::string nested(unsigned elements, unsigned depth);

/// Elements with so many attributes each, as many as it takes for so many attributes in all.
std::string crowded(unsigned attributes, unsigned length);

/// Numbers with six significant digits or fewer.
std::vector<float> floats(unsigned count);

/// An element `mesh` that holds the numbers as text, with blanks between.
std::string mesh(const std::vector<float>& numbers);

/// The content of a file.
/// @throws std::runtime_error when it cannot be read
std::string file(const std::string& path);

}  // namespace documents
