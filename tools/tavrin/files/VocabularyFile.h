#pragma once

#include <Tavrin/OwnedVocabulary.h>

#include <string>

namespace tool {

/// Reads the vocabulary that a Fast Infoset document begins with; "-" is standard input. It has no
/// entries where the document has none.
/// @throws Failure when the file cannot be read, or its vocabulary cannot be used
Tavrin::OwnedVocabulary readVocabulary(const std::string& name);

}  // namespace tool
