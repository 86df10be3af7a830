#pragma once

#include <string>

/// Documents of XML text.
namespace documents {

/// One that has everything. Entities stand behind system identifiers of the same name.
/// @param undeclares whether the default namespace is undeclared in it, at which the reader "Expat"
///                   ends
const std::string& text(bool undeclares);
/// What a system identifier of the document stands for.
const std::string& entity(const std::string& systemId);

/// One of declarations.
/// @param withIdentifiers notations, unparsed and external entities among them; the reader "Expat"
///                        ends at them
const std::string& declarations(bool withIdentifiers);

}  // namespace documents
