#pragma once

#include <string>
#include <string_view>

namespace Tavrin::xml {

/// Whether a text is the content model of an element type declaration (XML 1.0, production 46).
bool isContentModel(std::string_view text);

/// The type of an attribute declaration (production 54) as a document writes it, or an empty string
/// where the text is not a type. The blank after NOTATION may be missing in the text.
std::string attributeType(std::string_view text);

/// Whether a text may be declared as the replacement text of an entity: that of a predefined entity
/// must be its character (section 4.6).
bool isReplacementText(std::string_view name, std::string_view text);

/// Whether an entity is one of the five predefined ones (section 4.6).
bool isPredefinedEntity(std::string_view name);
/// The character of a predefined entity; 0 for any other.
char predefinedCharacter(std::string_view name);

}  // namespace Tavrin::xml
