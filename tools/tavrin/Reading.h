#pragma once

#include <Tavrin/XMLReader.h>

#include <memory>
#include <string>

#include "Input.h"

namespace tool {

/// A reader for a document.
/// @param type the type's name; empty to go by the document's first octets
/// @throws Tavrin::SAXException when there is no such type
std::unique_ptr<Tavrin::XMLReader> createReader(Input& input, const std::string& type = {});

/// Reads the whole document.
/// @throws Failure when it cannot be read; also what a handler throws may come through
void parse(Tavrin::XMLReader& reader, Input& input);

}  // namespace tool
