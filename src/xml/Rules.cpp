#include "Rules.h"

namespace Tavrin::xml {

namespace {

/// A message that begins with a string, or that about the characters of the string.
std::string about(std::string_view text, const char* kind, const char* isWhat) {
  const std::string reason = whyNotText(text, kind);
  return reason.empty() ? quoted(text) + isWhat : reason;
}

}  // namespace

std::string invalidText(std::string_view text, std::size_t invalid, const char* place) {
  return "You cannot put " + describeInvalid(text, invalid) + " into " + place;
}

std::string whyNotText(std::string_view text, const char* place) {
  const std::size_t invalid = findInvalid(text);
  return invalid == kAllValid ? std::string() : invalidText(text, invalid, place);
}

std::string whyNotQName(std::string_view name) {
  if (isQName(name)) return {};
  return about(name, "a name", isName(name) ? " is not a qualified name" : " is not a name");
}

std::string whyNotNCName(std::string_view name) {
  if (isNCName(name)) return {};
  return about(name, "a name", isName(name) ? " is not a name without a colon" : " is not a name");
}

std::string whyNotTarget(std::string_view target) {
  if (isTarget(target)) return {};
  if (!isNCName(target)) return whyNotNCName(target);
  return quoted(target) + " is reserved and cannot be the target of a processing instruction";
}

std::string whyNotInstructionData(std::string_view data) {
  if (data.find("?>") == std::string_view::npos) return {};
  return "You cannot put \"?>\" into a processing instruction";
}

std::string whyNotComment(std::string_view text) {
  if (text.find("--") != std::string_view::npos) return "You cannot put \"--\" into a comment";
  return text.ends_with('-') ? "You cannot end a comment with \"-\"" : "";
}

std::string whyNotPublicId(std::string_view publicId) {
  if (isPublicId(publicId)) return {};
  return about(publicId, "a public identifier", " is not a public identifier");
}

std::string whyNotSystemId(std::string_view systemId) {
  if (isSystemId(systemId)) return {};
  const std::string reason = whyNotText(systemId, "a system identifier");
  return reason.empty() ? "A system identifier cannot hold both kinds of quotes" : reason;
}

std::string whyNotVersion(std::string_view version) {
  return isVersion(version) ? std::string() : quoted(version) + " is not a version of XML";
}

// --- Start tags ---

std::string whyNotLocalName(std::string_view localName, std::string_view qName) {
  if (localName == split(qName).localName) return {};
  for (const std::string_view name : {localName, qName}) {
    if (std::string reason = whyNotText(name, "a name"); !reason.empty()) return reason;
  }
  return "The local name " + quoted(localName) + " does not belong to " + quoted(qName);
}

namespace {

std::string whyNotPrefix(std::string_view prefix, const std::string* uri,
                         const NamespaceBindings& bindings) {
  const std::string& bound = bindings.find(prefix);
  if (bound.empty()) return "The prefix " + quoted(prefix) + " is not declared";
  if (uri == nullptr || bound == *uri) return {};
  return boundOtherwise(prefix, bound, *uri);
}

}  // namespace

std::string whyNotElement(std::string_view prefix, const std::string* uri, std::string_view qName,
                          const NamespaceBindings& bindings) {
  if (!prefix.empty()) return whyNotPrefix(prefix, uri, bindings);
  if (uri == nullptr) return {};
  const std::string& bound = bindings.find({});
  if (bound == *uri) return {};
  if (uri->empty()) {
    return "The element " + quoted(qName) + " has no namespace, but the default namespace is " +
           quoted(bound);
  }
  return "The element " + quoted(qName) + " has no prefix, but " + quoted(*uri) +
         " is not the default namespace";
}

std::string whyNotAttribute(std::string_view prefix, const std::string* uri, std::string_view qName,
                            const NamespaceBindings& bindings) {
  if (!prefix.empty()) return whyNotPrefix(prefix, uri, bindings);
  if (qName == "xmlns") return "An attribute with the name \"xmlns\" is a namespace declaration";
  if (uri == nullptr || uri->empty()) return {};
  return "The attribute " + quoted(qName) + " has a namespace, but no prefix";
}

std::string whyNotDeclaration(std::string_view prefix, std::string_view uri,
                              bool undeclaresPrefixes) {
  if (!prefix.empty() && !isNCName(prefix)) return whyNotNCName(prefix);
  const std::string reason = whyNotText(uri, "a namespace name");
  return reason.empty() ? whyNotDeclarable(prefix, uri, undeclaresPrefixes) : reason;
}

std::string boundOtherwise(std::string_view prefix, std::string_view bound, std::string_view uri) {
  return "The prefix " + quoted(prefix) + " is bound to " + quoted(bound) + " and not to " +
         quoted(uri);
}

std::string declaredTwice(std::string_view prefix) {
  return "The prefix " + quoted(prefix) + " is declared twice on one element";
}

std::string givenTwice(std::string_view qName) {
  return "The attribute " + quoted(qName) + " is given twice";
}

}  // namespace Tavrin::xml
