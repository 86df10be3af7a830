#pragma once

#include <Tavrin/Exceptions.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "Characters.h"
#include "Escapes.h"
#include "NamespaceBindings.h"
#include "SameText.h"

/// The rules of XML 1.0 and Namespaces in XML for what readers deliver and writers write, each with
/// its message. A function whose name begins with whyNot returns the message for a string that
/// breaks the rule, and an empty string for any other.
namespace Tavrin::xml {

/// A text in quotation marks, for a message.
inline std::string quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

/// Throws a SAXException with the message that a rule returned, unless it is empty.
inline void refuseIf(const std::string& reason) {
  if (!reason.empty()) throw SAXException(reason);
}

/// The message about a text that is not valid.
/// @param invalid the position that findInvalid returned
/// @param place   what holds the text, with its article
std::string invalidText(std::string_view text, std::size_t invalid, const char* place);
/// Characters of XML 1.0 in UTF-8. Only the rules for names and identifiers check this themselves.
[[nodiscard]] std::string whyNotText(std::string_view text, const char* place);
/// Appends a text with its characters escaped, or refuses it.
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
/// A public identifier (production 12), or an empty string.
[[nodiscard]] std::string whyNotPublicId(std::string_view publicId);
/// A system identifier that can be put between quotes of one kind (production 11), or an empty
/// string.
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

/// Refuses another local name than that of a qualified name.
/// @param prefix what split gives
inline void refuseUnlessLocalName(std::string_view prefix, std::string_view localName,
                                  std::string_view qName) {
  const std::size_t before = prefix.empty() ? 0 : prefix.size() + 1;
  const bool isRight =
      qName.size() == before + localName.size() && sameText(qName.substr(before), localName);
  if (!isRight) refuseIf(whyNotLocalName(localName, qName));
}

// The names of an element and of an attribute within the scope of declarations (Namespaces in XML,
// section 5). The namespace name is null where the prefix may be bound to any.

[[nodiscard]] std::string whyNotElement(std::string_view prefix, const std::string* uri,
                                        std::string_view qName, const NamespaceBindings& bindings);
[[nodiscard]] std::string whyNotAttribute(std::string_view prefix, const std::string* uri,
                                          std::string_view qName,
                                          const NamespaceBindings& bindings);

/// A namespace declaration: its strings, and the rules of whyNotDeclarable.
[[nodiscard]] std::string whyNotDeclaration(std::string_view prefix, std::string_view uri,
                                            bool undeclaresPrefixes = false);

// The messages about other faults of a start tag.

/// A prefix is bound to another namespace than the one of the event.
std::string boundOtherwise(std::string_view prefix, std::string_view bound, std::string_view uri);
std::string declaredTwice(std::string_view prefix);
/// Two attributes have one expanded name (Namespaces in XML, section 6.3).
/// @param qName that of the second one
std::string givenTwice(std::string_view qName);

}  // namespace Tavrin::xml
