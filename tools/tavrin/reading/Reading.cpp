#include "reading/Reading.h"

#include <Tavrin/Exceptions.h>
#include <Tavrin/Factories.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/Parse.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>

#include "explaining/ElementPath.h"
#include "explaining/Explaining.h"
#include "explaining/FileKinds.h"
#include "explaining/Surroundings.h"
#include "files/Failure.h"
#include "options/TypeChoice.h"

namespace tool {

namespace {

constexpr char kInEntity[] = " (in the entity ";

/// An octet of a file, by its number in the document that is being read.
std::uint64_t octetOf(const Input& input, std::int32_t octetOfDocument) {
  // Readers count no further.
  const bool isCounted = octetOfDocument < std::numeric_limits<std::int32_t>::max();
  const auto octet = static_cast<std::uint64_t>(octetOfDocument);
  return isCounted ? input.documentStart() + octet : std::max(input.octetsRead(), octet);
}

std::string placeOf(const Input& input, std::uint64_t octet) {
  const std::uint64_t number = input.documentNumber();
  return placeIn(input.name(), octet) +
         (number > 1 ? " (document " + std::to_string(number) + ")" : "");
}

Failure failureAt(const Input& input, std::int32_t line, std::int32_t column,
                  const std::string& message) {
  // The lines of an entity are not those that were read last.
  const bool isShown = input.recent() && message.find(kInEntity) == std::string::npos;
  return Failure::document(placeIn(input.name(), line, column), message,
                           isShown && line > 0 && column > 0
                               ? lineAround(*input.recent(), static_cast<std::uint64_t>(line),
                                            static_cast<std::uint64_t>(column), explanationWidth())
                               : "");
}

Failure failureAt(const Input& input, std::uint64_t octet, const std::string& message) {
  const std::string path = input.path() ? input.path()->text() : std::string();
  return Failure::document(placeOf(input, octet), message,
                           input.recent() ? octetsAround(*input.recent(), octet, path) : "");
}

/// Shows which elements are open to whoever explains a failure of the input.
class PathShown {
 public:
  PathShown(Tavrin::XMLReader& reader, Input& input) : input_(input) {
    if (input.recent() && knowsTypedContent(reader)) path_.emplace(reader);
    input_.setPath(path_ ? &*path_ : nullptr);
  }
  ~PathShown() { input_.setPath(nullptr); }
  PathShown(const PathShown&) = delete;
  PathShown& operator=(const PathShown&) = delete;

 private:
  Input& input_;
  std::optional<ElementPath> path_;
};

void parseDocument(Tavrin::XMLReader& reader, Input& input) {
  const bool isFirst = input.documentNumber() == 1;
  const FileKind* kind = isFirst ? kindOf(input.firstOctets()) : nullptr;
  const auto messageOf = [&](const auto& exception) {
    refuseKind(kind, input.name());
    return withKind(kind, Vocabularies::withOption(Limits::withOption(exception.getMessage())));
  };
  const PathShown path(reader, input);
  try {
    reader.parse(input.stream());
  } catch (const Tavrin::SAXParseException& exception) {
    // A binary format has no lines; the column is the number of the octet.
    const std::int32_t line = exception.getLineNumber();
    const std::int32_t column = exception.getColumnNumber();
    throw line < 0 ? failureAt(input, octetOf(input, column), messageOf(exception))
                   : failureAt(input, line, column, messageOf(exception));
  } catch (const Tavrin::SAXException& exception) {
    throw failureReached(input, nullptr, messageOf(exception));
  } catch (const Tavrin::FastInfosetException& exception) {
    throw failureReached(input, nullptr, messageOf(exception));
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
                 : placeOf(input, input.octetsRead());
}

Failure failureReached(const Input& input, const Tavrin::Locator* locator,
                       const std::string& message) {
  return locator ? failureAt(input, locator->getLineNumber(), locator->getColumnNumber(), message)
                 : failureAt(input, input.octetsRead(), message);
}

const Tavrin::Locator* withLines(const Tavrin::Locator* locator) {
  return locator && locator->getLineNumber() >= 0 ? locator : nullptr;
}

std::string entityAt(const Tavrin::Locator* locator) {
  const std::string systemId = locator ? locator->getSystemId() : std::string();
  return systemId.empty() ? systemId : kInEntity + ("\"" + systemId) + "\")";
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
