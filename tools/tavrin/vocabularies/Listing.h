#pragma once

#include <Tavrin/OwnedVocabulary.h>

#include <ostream>
#include <string>

namespace tool {

/// Prints the tables of a vocabulary, a line for each entry: its index and its text in quotes, or
/// the qualified name and the namespace name.
/// @param name of the file, for the first line
void printVocabulary(std::ostream& out, const std::string& name,
                     const Tavrin::OwnedVocabulary& vocabulary);

}  // namespace tool
