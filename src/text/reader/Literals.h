#pragma once

#include <expat.h>

#include <string>
#include <string_view>

namespace Tavrin {

/// The value of a literal of a declaration, or what is wrong with it.
struct LiteralValue {
  std::string text;
  XML_Error error = XML_ERROR_NONE;
};

/// The replacement text of an entity (XML 1.0, section 4.5): references to characters are replaced,
/// those to general entities stay.
/// @return XML_ERROR_PARAM_ENTITY_REF for a reference to a parameter entity, which is not for the
///         internal subset
LiteralValue replacementText(std::string_view literal);

/// The default of an attribute, normalised (section 3.3.3). Of general entities only the predefined
/// are known; a reference to any other stands for nothing.
LiteralValue attributeDefault(std::string_view literal, bool isCDATA);

/// A public identifier, normalised (section 4.2.2).
std::string publicIdentifier(std::string_view literal);

}  // namespace Tavrin
