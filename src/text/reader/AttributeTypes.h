#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace Tavrin::text {

/// The types of attributes that a DTD declares, by the qualified names of element and attribute.
class AttributeTypes {
 public:
  /// Types by the name of the attribute.
  using OfElement = std::map<std::string, std::string, std::less<>>;

  /// Adds a declaration. Of several for one attribute the first is binding (XML 1.0, section 3.3).
  /// @param type as in DeclHandler::attributeDecl
  /// @return whether it is the first
  bool declare(std::string_view element, std::string_view attribute, const std::string& type);

  bool isEmpty() const { return elements_.empty(); }
  /// What is declared for an element, or null.
  const OfElement* find(std::string_view element) const;
  /// The type of an attribute, or null.
  const std::string* find(std::string_view element, std::string_view attribute) const;

  /// Converts a type from expat's form to that of SAX2: "NOTATION(a|b)" gets a blank.
  static std::string declaredForm(std::string_view type);

 private:
  std::map<std::string, OfElement, std::less<>> elements_;
};

}  // namespace Tavrin::text
