#include "reading/Reading.h"

#include <Tavrin/Exceptions.h>
#include <Tavrin/Factories.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/Parse.h>

#include <algorithm>
#include <cstdint>
#include <limits>

#include "files/Failure.h"
#include "options/TypeChoice.h"

namespace tool {

namespace {

/// The place of a failure in a document without lines: the octet in the file.
std::string placeOfOctet(const Input& input, std::int32_t octetOfDocument) {
  // Readers count no further.
  const bool isCounted = octetOfDocument < std::numeric_limits<std::int32_t>::max();
  const auto octet = static_cast<std::uint64_t>(octetOfDocument);
  return placeIn(input.name(),
                 isCounted ? input.documentStart() + octet : std::max(input.octetsRead(), octet));
}

void parseDocument(Tavrin::XMLReader& reader, Input& input) {
  const auto failure = [](const std::string& place, const std::string& message) {
    return Failure::document(place, Vocabularies::withOption(Limits::withOption(message)));
  };
  try {
    reader.parse(input.stream());
  } catch (const Tavrin::SAXParseException& exception) {
    // A binary format has no lines; the column is the number of the octet.
    const int line = exception.getLineNumber();
    const int column = exception.getColumnNumber();
    throw failure(line < 0 ? placeOfOctet(input, column) : placeIn(input.name(), line, column),
                  exception.getMessage());
  } catch (const Tavrin::SAXException& exception) {
    throw failure(placeReached(input, nullptr), exception.getMessage());
  } catch (const Tavrin::FastInfosetException& exception) {
    throw failure(placeReached(input, nullptr), exception.getMessage());
  }
}

/// A reader for the octets that come next. One alone begins no document of Fast Infoset.
std::unique_ptr<Tavrin::XMLReader> createReaderFor(Input& input) {
  return input.firstOctets().size() > 1 ? Tavrin::createReaderFor(input.stream())
                                        : Tavrin::XMLReaderFactory::createXMLReader("XML10");
}

/// Whether a document may begin where the one before has ended.
bool mayFollow(Input& input, Tavrin::XMLReader& reader, bool isChosen) {
  const bool wasRead = input.octetsRead() > input.documentStart();
  return wasRead && (isChosen || knowsTypedContent(reader));
}

}  // namespace

std::unique_ptr<Tavrin::XMLReader> nextReader(Input& input, const ReadingOptions& options) {
  const bool isFirst = input.documentNumber() == 0;
  if (!isFirst && input.isAtEnd()) {
    input.checkRead();
    return nullptr;
  }
  const bool isChosen = !options.from.empty();
  auto reader = isChosen ? createReader(options.from) : createReaderFor(input);
  if (!isFirst && !mayFollow(input, *reader, isChosen)) {
    throw Failure::document(placeIn(input.name(), input.octetsRead() + 1),
                            "No Fast Infoset document begins here");
  }
  options.applyTo(*reader);
  options.vocabularies.applyTo(*reader);
  input.beginDocument();
  return reader;
}

void attach(Tavrin::XMLReader& reader, Tavrin::HandlerSet handlers, bool takesDeclarations) {
  if (!takesDeclarations) {
    handlers.dtd = nullptr;
    handlers.declarations = nullptr;
  }
  // Comments are content here: a reader that does not report them is refused.
  reader.setProperty(Tavrin::properties::lexicalHandler, handlers.lexical);
  connect(reader, handlers);
}

bool knowsTypedContent(Tavrin::XMLReader& reader) {
  try {
    reader.getProperty(Tavrin::properties::encodingAlgorithmContentHandler);
    return true;
  } catch (const Tavrin::SAXNotRecognizedException&) {
    return false;
  }
}

bool followsStandard(Tavrin::XMLReader& reader) {
  try {
    reader.getFeature(Tavrin::features::isStandalone);
    return true;
  } catch (const Tavrin::SAXNotRecognizedException&) {
    return false;
  }
}

std::string placeReached(const Input& input, const Tavrin::Locator* locator) {
  return locator ? placeIn(input.name(), locator->getLineNumber(), locator->getColumnNumber())
                 : placeIn(input.name(), input.octetsRead());
}

const Tavrin::Locator* withLines(const Tavrin::Locator* locator) {
  return locator && locator->getLineNumber() >= 0 ? locator : nullptr;
}

std::string entityAt(const Tavrin::Locator* locator) {
  const std::string systemId = locator ? locator->getSystemId() : std::string();
  return systemId.empty() ? systemId : " (in the entity \"" + systemId + "\")";
}

void parse(Tavrin::XMLReader& reader, Input& input, const EntityFiles* entities) {
  const auto checkRead = [&] {
    input.checkRead();
    if (entities) entities->check();
  };
  try {
    parseDocument(reader, input);
  } catch (...) {
    checkRead();  // A document that was cut off by a failed read is not to blame.
    throw;
  }
  checkRead();
}

}  // namespace tool
