#include <Tavrin/Identifiers.h>

#include <algorithm>
#include <string_view>

#include "../../../xml/Characters.h"
#include "State.h"

// What is decoded must be expressible as XML 1.0 with namespaces. Strings are checked when they
// enter the document, names once for the declarations in scope.

namespace Tavrin {

void XMLReader_X891::checkCharacters(const std::string& text) const {
  const std::size_t position = xml::findInvalid(text);
  if (position != xml::kAllValid) fail("Invalid " + xml::describeInvalid(text, position));
}

void XMLReader_X891::checkLiteral(const Strings* table, const std::string& text) {
  if (table == &prefixes_ || table == &localNames_ || table == &otherNCNames_) {
    if (!xml::isNCName(text)) fail("Invalid name \"" + text + "\"");
  } else if (table != nullptr) {
    checkCharacters(text);
  }
}

void XMLReader_X891::checkIdentifiers(const std::string& publicId,
                                      const std::string& systemId) const {
  if (!xml::isPublicId(publicId)) fail("Invalid public identifier \"" + publicId + "\"");
  if (!xml::isSystemId(systemId)) fail("Invalid system identifier \"" + systemId + "\"");
}

// --- Namespaces ---

/// Takes the declarations of an element into account. They are delivered when its name is known.
void XMLReader_X891::deliverDeclarations(const Strings& declarations) {
  State::Document& document = state_->document;
  std::vector<std::string_view> prefixes;
  for (std::size_t i = 0; i < declarations.size(); i += 2) {
    const std::string why =
        xml::whyNotDeclarable(declarations[i], declarations[i + 1], document.version == "1.1");
    if (!why.empty()) fail(why);
    document.bindings.declare(declarations[i], declarations[i + 1]);
    prefixes.push_back(declarations[i]);
  }
  std::ranges::sort(prefixes);
  const auto twice = std::ranges::adjacent_find(prefixes);
  if (twice != prefixes.end()) {
    fail("The prefix \"" + std::string(*twice) + "\" is declared twice by an element");
  }
}

void XMLReader_X891::checkBinding(const QualifiedName& name) const {
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

namespace {

/// The record of a name by its position in its table; null for one that is in no table.
template <typename Names, typename Checked>
auto* checkedName(const Names& table, const typename Names::value_type& name, Checked& checked) {
  const bool isListed = !table.empty() && !std::less<>()(&name, table.data()) &&
                        std::less<>()(&name, table.data() + table.size());
  if (!isListed) return static_cast<typename Checked::value_type*>(nullptr);
  if (checked.size() < table.size()) checked.resize(table.size());
  return &checked[static_cast<std::size_t>(&name - table.data())];
}

}  // namespace

void XMLReader_X891::checkElementName(const QualifiedName& name) {
  State::Document& document = state_->document;
  ++document.elements;
  State::CheckedName* checked = checkedName(elementNames_, name, document.elementNames);
  if (checked && checked->bindings == document.bindings.version()) return;
  checkBinding(name);
  if (checked) checked->bindings = document.bindings.version();
}

void XMLReader_X891::checkAttributeName(const QualifiedName& name) {
  State::Document& document = state_->document;
  State::CheckedName* checked = checkedName(attributeNames_, name, document.attributeNames);
  if (!checked || checked->bindings != document.bindings.version()) {
    if (name.prefix.empty()) {
      if (!name.namespaceName.empty()) {
        fail("Attribute \"" + name.localName + "\" in a namespace, but without a prefix");
      }
      // As XML, it would declare the default namespace.
      if (name.localName == "xmlns") fail("Attribute with the name \"xmlns\"");
    } else {
      checkBinding(name);
    }
    if (checked) checked->bindings = document.bindings.version();
  }

  std::size_t identity = checked ? checked->identity : 0;
  if (identity == 0) {
    identity = document.attributeIdentities
                   .try_emplace({name.namespaceName, name.localName}, document.lastElement.size())
                   .first->second;
    if (identity == document.lastElement.size()) {
      // What the table has no place for is remembered here, so it counts here.
      if (!checked) accountFor(name.namespaceName.size() + name.localName.size());
      document.lastElement.push_back(0);
    }
    if (checked) checked->identity = identity;
  }
  if (document.lastElement[identity] == document.elements) {
    fail("Attribute \"" + name.qName() + "\" is there twice");
  }
  document.lastElement[identity] = document.elements;
}

}  // namespace Tavrin
