#include <Tavrin/Identifiers.h>

#include <algorithm>
#include <string_view>

#include "../../../xml/Characters.h"
#include "../../../xml/EasyText.h"
#include "State.h"

// What is decoded must be expressible as XML 1.0 with namespaces. Strings are checked when they
// enter the document, names once for the declarations in scope.

namespace Tavrin {

void XMLReader_X891::dialectCheckText(std::string_view text) {
  if (xml::isEasyText(text)) return;
  const std::size_t position = xml::findInvalid(text);
  if (position != xml::kAllValid) fail("Invalid " + xml::describeInvalid(text, position));
}

void XMLReader_X891::dialectCheckIdentifier(const Strings* table, const std::string& text) {
  if (table == nullptr) return;  // Octets, or a string that is checked where it is used.
  if (table == &prefixes_ || table == &localNames_ || table == &otherNCNames_) {
    if (!xml::isNCName(text)) fail("Invalid name \"" + text + "\"");
  } else {
    dialectCheckText(text);
  }
}

void XMLReader_X891::checkIdentifiers(const std::string& publicId,
                                      const std::string& systemId) const {
  if (!xml::isPublicId(publicId)) fail("Invalid public identifier \"" + publicId + "\"");
  if (!xml::isSystemId(systemId)) fail("Invalid system identifier \"" + systemId + "\"");
}

// --- Namespaces ---

/// Takes the declarations of an element into account. They are delivered when its name is known.
void XMLReader_X891::dialectDeliverDeclarations(const Strings& declarations) {
  State::Document& document = state_->document;
  std::vector<std::string_view> prefixes;
  for (std::size_t i = 0; i < declarations.size(); i += 2) {
    const std::string why =
        xml::whyNotDeclarable(declarations[i], declarations[i + 1], document.version == "1.1");
    if (!why.empty()) fail(why);
    document.bindings.declare(declarations[i], declarations[i + 1]);
    if (declarations.size() > 2) prefixes.push_back(declarations[i]);
  }
  std::ranges::sort(prefixes);
  const auto twice = std::ranges::adjacent_find(prefixes);
  if (twice != prefixes.end()) {
    fail("The prefix \"" + std::string(*twice) + "\" is declared twice by an element");
  }
}

std::size_t XMLReader_X891::octetsOf(const Name& name) {
  return name.namespaceName.size() + name.localName.size() + name.qName.size();
}

void XMLReader_X891::checkBinding(const Name& name) const {
  const std::string& bound = state_->document.bindings.find(name.prefix);
  const bool isUnbound = !name.prefix.empty() && bound.empty();
  if (bound == name.namespaceName && !isUnbound) return;
  if (name.prefix.empty()) {
    fail("Element \"" + name.localName + "\" in the namespace \"" + name.namespaceName +
         "\" where the default namespace is \"" + bound + "\"");
  }
  fail("The prefix \"" + name.prefix + "\" is not bound to the namespace \"" + name.namespaceName +
       "\"");
}

/// Finds out how many octets are allowed now that more have been read. Measured: asking that each
/// time, beyond the threshold, takes a twentieth of the time of reading records.
void XMLReader_X891::allowMoreFromTables() const {
  constexpr std::uint64_t kMost = std::uint64_t{1} << 63U;  // As much as all, and for infinity.
  const double byFactor = state_->amplificationFactor * static_cast<double>(octetsRead_);
  state_->document.allowedFromTables =
      std::max(state_->amplificationThreshold,
               byFactor < 0x1p63 ? static_cast<std::uint64_t>(byFactor) : kMost);
  if (fromTables_ > state_->document.allowedFromTables) {
    fail("More octets delivered for each octet read than the limit allows");
  }
}

void XMLReader_X891::dialectCheckElementName(Name& name) {
  State::Document& document = state_->document;
  document.attributes.beginTag();
  if (name.bindings != document.bindings.version()) {
    checkBinding(name);
    name.bindings = document.bindings.version();
    name.octets = octetsOf(name);
  }
  fromTables_ += 2 * name.octets;  // It comes again with the end.
}

void XMLReader_X891::dialectCheckAttributeName(Name& name) {
  State::Document& document = state_->document;
  if (name.bindings != document.bindings.version()) {
    if (name.prefix.empty()) {
      if (!name.namespaceName.empty()) {
        fail("Attribute \"" + name.localName + "\" in a namespace, but without a prefix");
      }
      // As XML, it would declare the default namespace.
      if (name.localName == "xmlns") fail("Attribute with the name \"xmlns\"");
    } else {
      checkBinding(name);
    }
    name.bindings = document.bindings.version();
    name.octets = octetsOf(name);
  }
  // Attributes count before they are kept: a start tag may hold very many.
  fromTables_ += name.octets;
  dialectCheckAmplification();

  xml::UniqueAttributes& attributes = document.attributes;
  if (name.identity == xml::UniqueAttributes::kUnknown) {
    const std::size_t known = attributes.size();
    name.identity = attributes.number(name.namespaceName, name.localName);
    // What the table has no place for is remembered here, so it counts here.
    if (&name == &unlisted_ && attributes.size() > known) {
      accountFor(name.namespaceName.size() + name.localName.size());
    }
  }
  if (!attributes.take(name.identity)) fail("Attribute \"" + name.qName + "\" is there twice");
}

}  // namespace Tavrin
