#include "AttributeTypes.h"

namespace Tavrin::text {

namespace {

constexpr std::string_view kNotation = "NOTATION";

/// The form in which Attributes::getType returns a declared type.
std::string reportedForm(const std::string& type) {
  if (type[0] == '(') return "NMTOKEN";
  return type.compare(0, kNotation.size(), kNotation) == 0 ? std::string(kNotation) : type;
}

}  // namespace

bool AttributeTypes::declare(std::string_view element, std::string_view attribute,
                             const std::string& type) {
  auto found = elements_.find(element);
  if (found == elements_.end()) found = elements_.emplace(element, OfElement()).first;
  return found->second.try_emplace(std::string(attribute), reportedForm(type)).second;
}

const AttributeTypes::OfElement* AttributeTypes::find(std::string_view element) const {
  const auto found = elements_.find(element);
  return found == elements_.end() ? nullptr : &found->second;
}

const std::string* AttributeTypes::find(std::string_view element,
                                        std::string_view attribute) const {
  const OfElement* const types = find(element);
  if (types == nullptr) return nullptr;
  const auto found = types->find(attribute);
  return found == types->end() ? nullptr : &found->second;
}

std::string AttributeTypes::declaredForm(std::string_view type) {
  std::string text(type);
  if (type.substr(0, kNotation.size()) == kNotation) text.insert(kNotation.size(), 1, ' ');
  return text;
}

}  // namespace Tavrin::text
