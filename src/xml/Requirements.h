#pragma once

#include <cstddef>
#include <string_view>

#include "Escapes.h"

/// What must hold of a string before it is written. Each function throws a SAXException that names
/// the string and the reason where it does not.
namespace Tavrin::xml {

/// Characters of XML 1.0 in UTF-8.
/// @param place where the text stands, as "a comment"
void requireText(std::string_view text, const char* place);
/// Refuses a text for what findInvalid found in it.
[[noreturn]] void refuseText(std::string_view text, std::size_t invalid, const char* place);
/// As requireText, and appends the text with its escapes.
template <typename Out>
void appendText(Out& out, std::string_view text, const Escapes& escapes, const char* place) {
  const std::size_t invalid = escapes.append(out, text);
  if (invalid != kAllValid) refuseText(text, invalid, place);
}
/// The name of an element or attribute, with a prefix or without.
void requireQName(std::string_view name);
/// The name of an entity or notation, or a prefix.
void requireNCName(std::string_view name);
/// The target of a processing instruction.
void requireTarget(std::string_view target);
/// A public identifier; an empty one, too.
void requirePublicId(std::string_view publicId);
/// A system identifier that can be put between quotes of one kind; an empty one, too.
void requireSystemId(std::string_view systemId);
/// A namespace declaration.
/// @param prefix empty for the default namespace
/// @param uri    empty for none
void requireDeclarable(std::string_view prefix, std::string_view uri);

}  // namespace Tavrin::xml
