#include "files/VocabularyFile.h"

#include <Tavrin/Exceptions.h>

#include "files/Failure.h"
#include "files/Input.h"

namespace tool {

namespace {

/// @throws Failure, also for a file that could be opened, and not be read to the end
Tavrin::OwnedVocabulary readFrom(Input& input) {
  try {
    return Tavrin::OwnedVocabulary::read(input.stream());
  } catch (const Tavrin::SAXParseException& exception) {
    input.checkRead();
    const auto octet = static_cast<std::uint64_t>(exception.getColumnNumber());
    throw Failure::document(placeIn(input.name(), octet), exception.getMessage());
  } catch (const Tavrin::SAXException& exception) {
    input.checkRead();
    throw Failure::document(input.name(), exception.getMessage());
  }
}

}  // namespace

Tavrin::OwnedVocabulary readVocabulary(const std::string& name) {
  Input input(name);
  Tavrin::OwnedVocabulary vocabulary = readFrom(input);
  input.checkRead();
  return vocabulary;
}

}  // namespace tool
