#include "Requirements.h"

#include <Tavrin/Exceptions.h>

#include "Characters.h"
#include "NamespaceBindings.h"

namespace Tavrin::xml {

namespace {

std::string quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

/// The strings of a message are UTF-8, so that what is not stays out of it.
[[noreturn]] void throwAbout(std::string_view text, const char* isWhat) {
  const std::size_t invalid = findInvalid(text);
  if (invalid != kAllValid) refuseText(text, invalid, "a name");
  throw SAXException(quoted(text) + isWhat);
}

}  // namespace

void refuseText(std::string_view text, std::size_t invalid, const char* place) {
  throw SAXException("You cannot put " + describeInvalid(text, invalid) + " into " + place);
}

void requireText(std::string_view text, const char* place) {
  const std::size_t invalid = findInvalid(text);
  if (invalid != kAllValid) refuseText(text, invalid, place);
}

void requireQName(std::string_view name) {
  if (isQName(name)) return;
  throwAbout(name, isName(name) ? " is not a qualified name" : " is not a name");
}

void requireNCName(std::string_view name) {
  if (isNCName(name)) return;
  throwAbout(name, isName(name) ? " is not a name without a colon" : " is not a name");
}

void requireTarget(std::string_view target) {
  if (isTarget(target)) return;
  requireNCName(target);
  throwAbout(target, " is reserved and cannot be the target of a processing instruction");
}

void requirePublicId(std::string_view publicId) {
  if (isPublicId(publicId)) return;
  requireText(publicId, "a public identifier");
  throw SAXException(quoted(publicId) + " is not a public identifier");
}

void requireSystemId(std::string_view systemId) {
  if (isSystemId(systemId)) return;
  requireText(systemId, "a system identifier");
  throw SAXException("A system identifier cannot hold both kinds of quotes");
}

void requireDeclarable(std::string_view prefix, std::string_view uri) {
  if (!prefix.empty()) requireNCName(prefix);
  requireText(uri, "a namespace name");
  const std::string reason = whyNotDeclarable(prefix, uri);
  if (!reason.empty()) throw SAXException(reason);
}

}  // namespace Tavrin::xml
