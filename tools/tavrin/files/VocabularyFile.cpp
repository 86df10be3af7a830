#include "files/VocabularyFile.h"

#include <Tavrin/Exceptions.h>

#include "explaining/FileKinds.h"
#include "files/Failure.h"
#include "files/Input.h"

namespace tool {

namespace {

/// The limits of a vocabulary are those of the library: no property of this tool changes them.
std::string withoutProperty(std::string message) {
  const std::size_t begin = message.find(" (property ");
  const std::size_t end = message.find(')', begin);
  if (begin != std::string::npos && end != std::string::npos) message.erase(begin, end + 1 - begin);
  return message;
}

/// @throws Failure, also for a file that could be opened, and not be read to the end
Tavrin::OwnedVocabulary readFrom(Input& input) {
  const FileKind* const kind = kindOf(input.firstOctets());
  const auto messageOf = [&](const Tavrin::SAXException& exception) {
    refuseKind(kind, input.name());
    return withKind(kind, withoutProperty(exception.getMessage()));
  };
  try {
    return Tavrin::OwnedVocabulary::read(input.stream());
  } catch (const Tavrin::SAXParseException& exception) {
    input.checkRead();
    const auto octet = static_cast<std::uint64_t>(exception.getColumnNumber());
    throw Failure::document(placeIn(input.name(), octet), messageOf(exception));
  } catch (const Tavrin::SAXException& exception) {
    input.checkRead();
    throw Failure::document(input.name(), messageOf(exception));
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
