#pragma once

#include <Tavrin/Exceptions.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "Characters.h"
#include "Escapes.h"
#include "NamespaceBindings.h"

/// The rules of XML 1.0 and Namespaces in XML for what readers deliver and writers write, each with
/// its message: a function returns why a string may not stand where it is to stand, or an empty
/// string.
namespace Tavrin::xml {

/// Refuses what a writer is given.
/// @param reason what a rule returned
inline void refuseIf(const std::string& reason) {
  if (!reason.empty()) throw SAXException(reason);
}

/// The message about a text in which findInvalid found something.
/// @param place what the text stands in, with its article
std::string invalidText(std::string_view text, std::size_t invalid, const char* place);
/// Characters of XML 1.0 in UTF-8. Other rules, but for names and identifiers, leave this to it.
[[nodiscard]] std::string whyNotText(std::string_view text, const char* place);
/// Appends a text with its escapes, or refuses it.
template <typename Out>
void appendText(Out& out, std::string_view text, const Escapes& escapes, const char* place) {
  const std::size_t invalid = escapes.append(out, text);
  if (invalid != kAllValid) throw SAXException(invalidText(text, invalid, place));
}

/// The name of an element or attribute, with a prefix or without.
[[nodiscard]] std::string whyNotQName(std::string_view name);
/// The name of an entity or notation, or a prefix.
[[nodiscard]] std::string whyNotNCName(std::string_view name);
/// The target of a processing instruction (XML 1.0, production 17).
[[nodiscard]] std::string whyNotTarget(std::string_view target);
/// The data of a processing instruction (production 16).
[[nodiscard]] std::string whyNotInstructionData(std::string_view data);
/// The text of a comment (production 15).
[[nodiscard]] std::string whyNotComment(std::string_view text);
/// A public identifier (production 12); an empty one, too.
[[nodiscard]] std::string whyNotPublicId(std::string_view publicId);
/// A system identifier that can be put between quotes of one kind (production 11); an empty one,
/// too.
[[nodiscard]] std::string whyNotSystemId(std::string_view systemId);
/// The number of a version of XML (production 26).
[[nodiscard]] std::string whyNotVersion(std::string_view version);

/// The parts of a qualified name.
struct QNameParts {
  std::string_view prefix;
  std::string_view localName;
};
inline QNameParts split(std::string_view qName) {
  const std::size_t colon = qName.rfind(':');
  if (colon == std::string_view::npos || colon == 0) return {{}, qName};
  return {qName.substr(0, colon), qName.substr(colon + 1)};
}

/// The local name that an event gives with a qualified name.
[[nodiscard]] std::string whyNotLocalName(std::string_view localName, std::string_view qName);

// The names of an element and of an attribute, where declarations are in force (Namespaces in XML,
// section 5). The namespace is null where any will do.

[[nodiscard]] std::string whyNotElement(std::string_view prefix, const std::string* uri,
                                        std::string_view qName, const NamespaceBindings& bindings);
[[nodiscard]] std::string whyNotAttribute(std::string_view prefix, const std::string* uri,
                                          std::string_view qName,
                                          const NamespaceBindings& bindings);

/// A namespace declaration, as whyNotDeclarable has it, and its strings.
[[nodiscard]] std::string whyNotDeclaration(std::string_view prefix, std::string_view uri,
                                            bool undeclaresPrefixes = false);

// What else is wrong with a start tag: a prefix with another namespace than an event gives, and
// what stands there twice.

std::string boundOtherwise(std::string_view prefix, std::string_view bound, std::string_view uri);
std::string declaredTwice(std::string_view prefix);
std::string givenTwice(std::string_view qName);

}  // namespace Tavrin::xml
