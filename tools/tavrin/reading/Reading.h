#pragma once

#include <Tavrin/Connect.h>
#include <Tavrin/Handlers.h>
#include <Tavrin/TypedData.h>
#include <Tavrin/XMLReader.h>

#include <memory>
#include <string>
#include <string_view>

#include "files/EntityFiles.h"
#include "files/Failure.h"
#include "files/Input.h"
#include "options/ReadingOptions.h"

namespace tool {

/// A reader for the document that comes next in an input, with its limits set. Documents of Fast
/// Infoset may follow each other: what stands behind a document that its reader has not taken has
/// to be another one.
/// @return null behind the last document
/// @throws Failure where octets are left that begin no document
/// @throws Tavrin::SAXException when there is no such type
std::unique_ptr<Tavrin::XMLReader> nextReader(Input& input, const ReadingOptions& options);

/// Receives the content of encoding algorithms and drops it. Without such a handler, readers may
/// refuse content of algorithms that they do not know.
using AnyAlgorithm = Tavrin::EncodingAlgorithmContentHandler;

/// Lets a reader report to an object, by all of its interfaces or by all but those for
/// declarations. The object and the reader have lexical events.
void attach(Tavrin::XMLReader& reader, Tavrin::HandlerSet handlers, bool takesDeclarations);

/// Whether a reader knows typed content, as those of Fast Infoset do.
bool knowsTypedContent(Tavrin::XMLReader& reader);

/// Whether a reader follows the standards: it can report all declarations, and it reports
/// references to entities that were not read.
bool followsStandard(Tavrin::XMLReader& reader);

/// How far reading has come, for messages: the locator's place, or without one the last octet that
/// was read, with the number of the document if it is not the first.
std::string placeReached(const Input& input, const Tavrin::Locator* locator);

/// A failure at that place.
Failure failureReached(const Input& input, const Tavrin::Locator* locator,
                       const std::string& message);

/// The locator, or null for one of a document without lines: the input counts octets itself, over
/// all documents.
const Tavrin::Locator* withLines(const Tavrin::Locator* locator);

/// What to add to a message about a place in an external entity; nothing in the document itself.
std::string entityAt(const Tavrin::Locator* locator);

/// The name of the external subset in startEntity and endEntity.
inline constexpr std::string_view kExternalSubset = "[dtd]";

/// Reads the whole document.
/// @param entities gives the external entities; null where they are not read
/// @throws Failure when it cannot be read; also what a handler throws may come through
void parse(Tavrin::XMLReader& reader, Input& input, const EntityFiles* entities = nullptr);

}  // namespace tool
