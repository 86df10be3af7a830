#pragma once

#include <Tavrin/OwnedVocabulary.h>

#include <ostream>
#include <string>

namespace tool {

/// What the C++ code is called that makes a vocabulary.
struct HeaderNames {
  std::string function = "makeVocabulary";  ///< Maybe with namespaces and "::" in front.
  std::string uri;                          ///< Of the vocabulary; empty for none.
};

/// Whether a text is an identifier of C++ and no keyword, maybe with namespaces in front.
bool isFunctionName(const std::string& text);

/// Prints a C++ header with a function that makes the vocabulary.
/// @throws Failure for a vocabulary that no program can make: a table has an entry twice
void printHeader(std::ostream& out, const HeaderNames& names, const std::string& file,
                 const Tavrin::OwnedVocabulary& vocabulary);

}  // namespace tool
