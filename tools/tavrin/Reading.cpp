#include "Reading.h"

#include <Tavrin/Exceptions.h>
#include <Tavrin/Factories.h>

#include "Failure.h"
#include "TypeChoice.h"

namespace tool {

namespace {

void parseDocument(Tavrin::XMLReader& reader, Input& input) {
  try {
    reader.parse(input.stream());
  } catch (const Tavrin::SAXParseException& exception) {
    throw Failure::document(input.name(), exception.getLineNumber(), exception.getColumnNumber(),
                            exception.getMessage());
  } catch (const Tavrin::SAXException& exception) {
    throw Failure::document(input.name(), exception.getMessage());
  } catch (const Tavrin::FastInfosetException& exception) {
    throw Failure::document(input.name(), exception.getMessage());
  }
}

}  // namespace

std::unique_ptr<Tavrin::XMLReader> createReader(Input& input, const std::string& type) {
  return Tavrin::XMLReaderFactory::createXMLReader(type.empty() ? readerTypeFor(input.firstOctets())
                                                                : type);
}

void parse(Tavrin::XMLReader& reader, Input& input) {
  try {
    parseDocument(reader, input);
  } catch (...) {
    input.checkRead();  // A document that was cut off by a failed read is not to blame.
    throw;
  }
  input.checkRead();
}

}  // namespace tool
