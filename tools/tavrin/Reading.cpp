#include "Reading.h"

#include <Tavrin/Exceptions.h>
#include <Tavrin/Factories.h>
#include <Tavrin/Identifiers.h>

#include "Failure.h"
#include "TypeChoice.h"

namespace tool {

namespace {

void parseDocument(Tavrin::XMLReader& reader, Input& input) {
  try {
    reader.parse(input.stream());
  } catch (const Tavrin::SAXParseException& exception) {
    // A binary format has no lines; the column is the number of the octet.
    const int line = exception.getLineNumber();
    const int column = exception.getColumnNumber();
    throw Failure::document(line < 0 ? placeIn(input.name(), static_cast<std::uint64_t>(column))
                                     : placeIn(input.name(), line, column),
                            exception.getMessage());
  } catch (const Tavrin::SAXException& exception) {
    throw Failure::document(placeReached(input, nullptr), exception.getMessage());
  } catch (const Tavrin::FastInfosetException& exception) {
    throw Failure::document(placeReached(input, nullptr), exception.getMessage());
  }
}

}  // namespace

std::unique_ptr<Tavrin::XMLReader> createReader(Input& input, const std::string& type) {
  return Tavrin::XMLReaderFactory::createXMLReader(type.empty() ? readerTypeFor(input.firstOctets())
                                                                : type);
}

bool setPropertyIfKnown(Tavrin::XMLReader& reader, const std::string& name, void* value) {
  try {
    reader.setProperty(name, value);
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
