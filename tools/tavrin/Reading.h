#pragma once

#include <Tavrin/Handlers.h>
#include <Tavrin/XMLReader.h>

#include <memory>
#include <string>
#include <string_view>

#include "EntityFiles.h"
#include "Input.h"

namespace tool {

/// A reader for a document.
/// @param type the type's name; empty to go by the document's first octets
/// @throws Tavrin::SAXException when there is no such type
std::unique_ptr<Tavrin::XMLReader> createReader(Input& input, const std::string& type = {});

/// Sets a property of readers that know it. Returns whether this one does.
bool setPropertyIfKnown(Tavrin::XMLReader& reader, const std::string& name, void* value);

/// Whether a reader follows the standards: it can report all declarations, and it reports
/// references to entities that were not read.
bool followsStandard(Tavrin::XMLReader& reader);

/// How far reading has come, for messages: the locator's place, or without one the last octet that
/// was read.
std::string placeReached(const Input& input, const Tavrin::Locator* locator);

/// What to add to a message about a place in an external entity; nothing in the document itself.
std::string entityAt(const Tavrin::Locator* locator);

/// The name of the external subset in startEntity and endEntity.
inline constexpr std::string_view kExternalSubset = "[dtd]";

/// Reads the whole document.
/// @param entities gives the external entities; null where they are not read
/// @throws Failure when it cannot be read; also what a handler throws may come through
void parse(Tavrin::XMLReader& reader, Input& input, const EntityFiles* entities = nullptr);

}  // namespace tool
