#include "options/TypeChoice.h"

#include <Tavrin/Exceptions.h>

#include <algorithm>
#include <vector>

#include "files/Compression.h"
#include "options/Suggestion.h"
#include "printing/Text.h"

namespace tool {

using namespace std::string_view_literals;

namespace {

/// Names of files that end otherwise are those of text.
constexpr std::string_view kEndingsOfFastInfoset[] = {".fi"sv, ".finf"sv, ".x3db"sv};

template <typename Create>
auto createOf(const std::string& type, const std::vector<std::string>& names, Create create) {
  try {
    return create();
  } catch (const Tavrin::SAXException& exception) {
    throw Tavrin::SAXException(exception.getMessage() + " (" + suggestion(type, names) +
                               "there are " + listed(names) + ")");
  }
}

}  // namespace

std::string writerTypeFor(std::string_view fileName) {
  fileName = withoutCompression(fileName);
  const bool isFastInfoset = std::ranges::any_of(
      kEndingsOfFastInfoset, [&](std::string_view ending) { return fileName.ends_with(ending); });
  return isFastInfoset ? "X891" : kTextWriter;
}

std::unique_ptr<Tavrin::XMLReader> createReader(const std::string& type) {
  using Factory = Tavrin::XMLReaderFactory;
  return createOf(type, Factory::getTypeNames(), [&] { return Factory::createXMLReader(type); });
}

std::unique_ptr<Tavrin::XMLWriter> createWriter(const std::string& type) {
  using Factory = Tavrin::XMLWriterFactory;
  return createOf(type, Factory::getTypeNames(), [&] { return Factory::createXMLWriter(type); });
}

}  // namespace tool
