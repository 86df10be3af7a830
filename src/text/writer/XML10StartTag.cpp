#include "XML10StartTag.h"

#include <Tavrin/Exceptions.h>
#include <Tavrin/Identifiers.h>

#include <algorithm>
#include <tuple>

#include "../../xml/Escapes.h"
#include "../../xml/Rules.h"

namespace Tavrin {

using namespace xml;

namespace {

constexpr std::string_view kSpaceAttribute = "xml:space";

// Names of elements long gone are not kept for ever.
constexpr std::size_t kMostOctets = std::size_t{4} << 20U;

std::string quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

/// What reports no namespaces gives an empty namespace name and an empty local name.
bool isRaw(const std::string& uri, const std::string& localName) {
  return uri.empty() && localName.empty();
}

/// The namespace of an attribute with a prefix that is bound, or with none.
std::string_view boundTo(std::string_view prefix, const NamespaceBindings& bindings) {
  return prefix.empty() ? std::string_view() : bindings.find(prefix);
}

void appendAttribute(EventOctets& out, std::string_view name, std::string_view value, char quote) {
  const Escapes& escapes = attributeEscapes(quote);
  if (escapes.isVerbatim(value)) return out.append(' ', name, '=', quote, value, quote);
  out.append(' ', name, '=', quote);
  appendText(out, value, escapes, "an attribute value");
  out.append(quote);
}

XML10StartTag::Space spaceOf(std::string_view value) {
  return value == "preserve" ? XML10StartTag::Space::Preserve : XML10StartTag::Space::Default;
}

}  // namespace

XML10StartTag::Space XML10StartTag::write(EventOctets& out, const Element& element, char quote,
                                          const Defaults& defaults, NamespaceBindings& bindings) {
  Space space = Space::Inherited;
  if (element.mappings.empty() && defaults.empty()) {
    if (writeKnown(out, element, quote, bindings, space)) return space;
    space = Space::Inherited;
  }
  if (numbers_.octets() > kMostOctets) {
    numbers_ = {};
    checkedAttributes_.clear();
  }
  collectDeclarations(element);
  if (!declarations_.empty()) declareAll(bindings);
  checkElementName(element, bindings);
  out.append('<', std::string_view(element.qName));
  for (std::size_t i = 0; i < element.mappings.size(); i += 2) {
    const std::string& prefix = element.mappings[i];
    const std::string name = prefix.empty() ? "xmlns" : "xmlns:" + prefix;
    appendAttribute(out, name, element.mappings[i + 1], quote);
  }
  numbers_.beginTag();
  bool areUnique = true;
  const Attributes& attributes = element.attributes;
  const int length = attributes.getLength();
  for (int i = 0; i < length; ++i) {
    const std::string& qName = attributes.getQName(i);
    const std::string& value = attributes.getValue(i);
    if (!isDeclarationName(qName)) {
      const std::size_t number =
          checkAttributeName(attributes.getURI(i), attributes.getLocalName(i), qName, bindings);
      areUnique = numbers_.take(number) && areUnique;
      if (qName == kSpaceAttribute) space = spaceOf(value);
    } else if (isRepeated_[static_cast<std::size_t>(i)]) {
      continue;
    }
    appendAttribute(out, qName, value, quote);
  }
  if (!areUnique || !defaults.empty()) {
    collectNames(attributes, bindings);
    collectDefaults(element, defaults, bindings);
    refuseDuplicates();
  }
  return space;
}

/// The commonest tags: all their names have been found right with these bindings, so none of them
/// declares a namespace. Measured: records take a third less time.
/// @return false, and nothing is appended, where it is another tag
bool XML10StartTag::writeKnown(EventOctets& out, const Element& element, char quote,
                               const NamespaceBindings& bindings, Space& space) {
  const auto find = [version = bindings.version()](CheckedNames& names, const auto&... name) {
    const Checked* const checked = names.find(name...);
    return checked != nullptr && checked->version == version ? checked : nullptr;
  };
  if (!find(checkedElements_, element.uri, element.localName, element.qName)) return false;
  const std::size_t begin = out.size();
  out.append('<', std::string_view(element.qName));
  const Attributes& attributes = element.attributes;
  const int length = attributes.getLength();
  if (length == 0) return true;
  numbers_.beginTag();
  for (int i = 0; i < length; ++i) {
    const std::string& qName = attributes.getQName(i);
    const Checked* const checked =
        find(checkedAttributes_, attributes.getURI(i), attributes.getLocalName(i), qName);
    if (checked == nullptr || !numbers_.take(checked->number)) {
      out.truncate(begin);
      return false;
    }
    const std::string& value = attributes.getValue(i);
    if (checked->isSpace) space = spaceOf(value);
    appendAttribute(out, qName, value, quote);
  }
  return true;
}

/// Finds what the element declares, by mappings and by attributes.
void XML10StartTag::collectDeclarations(const Element& element) {
  declarations_.clear();
  isRepeated_.clear();
  for (std::size_t i = 0; i < element.mappings.size(); i += 2) {
    declarations_.push_back({element.mappings[i], element.mappings[i + 1], kMapping});
  }
  const Attributes& attributes = element.attributes;
  const int length = attributes.getLength();
  for (int i = 0; i < length; ++i) {
    const std::string& qName = attributes.getQName(i);
    if (!isDeclarationName(qName)) continue;
    isRepeated_.resize(static_cast<std::size_t>(length));
    refuseIf(whyNotQName(qName));
    const std::string& uri = attributes.getURI(i);
    if (!uri.empty() && uri != namespaces::xmlns) {
      throw SAXException(boundOtherwise("xmlns", namespaces::xmlns, uri));
    }
    if (const std::string& localName = attributes.getLocalName(i); !localName.empty()) {
      refuseIf(whyNotLocalName(localName, qName));
    }
    const std::string& value = attributes.getValue(i);
    refuseIf(whyNotDeclaration(declaredPrefix(qName), value));
    declarations_.push_back({declaredPrefix(qName), value, i});
  }
}

/// Declares in the bindings what the element declares, each once.
void XML10StartTag::declareAll(NamespaceBindings& bindings) {
  // Of each prefix, a mapping comes first.
  std::ranges::sort(declarations_, {}, [](const Declaration& declaration) {
    return std::tuple(declaration.prefix, declaration.attribute);
  });
  const Declaration* last = nullptr;
  for (const Declaration& declaration : declarations_) {
    if (last != nullptr && last->prefix == declaration.prefix) {
      const bool isRepetition =
          last->attribute == kMapping && declaration.attribute >= 0 && last->uri == declaration.uri;
      if (!isRepetition) throw SAXException(declaredTwice(declaration.prefix));
      isRepeated_[static_cast<std::size_t>(declaration.attribute)] = true;
    } else {
      bindings.declare(declaration.prefix, declaration.uri);
    }
    last = &declaration;
  }
}

void XML10StartTag::checkElementName(const Element& element, const NamespaceBindings& bindings) {
  const auto& [uri, localName, qName, attributes, mappings] = element;
  refuseIf(whyNotQName(qName));
  const bool raw = isRaw(uri, localName);
  if (!raw) refuseIf(whyNotLocalName(localName, qName));
  refuseIf(whyNotElement(split(qName).prefix, raw ? nullptr : &uri, qName, bindings));
  checkedElements_.put(uri, localName, qName,
                       {bindings.version(), UniqueAttributes::kUnknown, false});
}

/// @return the number of the attribute, among those that must differ
std::size_t XML10StartTag::checkAttributeName(const std::string& uri, const std::string& localName,
                                              const std::string& qName,
                                              const NamespaceBindings& bindings) {
  const Checked* const known = checkedAttributes_.find(uri, localName, qName);
  if (known != nullptr && known->version == bindings.version()) return known->number;
  if (known == nullptr) refuseIf(whyNotQName(qName));
  const auto [prefix, local] = split(qName);
  const bool raw = isRaw(uri, localName);
  if (!raw && known == nullptr) refuseIf(whyNotLocalName(localName, qName));
  refuseIf(whyNotAttribute(prefix, raw ? nullptr : &uri, qName, bindings));
  std::size_t number = known != nullptr && !raw ? known->number : UniqueAttributes::kUnknown;
  if (number == UniqueAttributes::kUnknown) {
    number = numbers_.number(boundTo(prefix, bindings), local);
  }
  checkedAttributes_.put(uri, localName, qName,
                         {bindings.version(), number, qName == kSpaceAttribute});
  return number;
}

/// The names of the attributes, which are known to be right.
void XML10StartTag::collectNames(const Attributes& attributes, const NamespaceBindings& bindings) {
  names_.clear();
  const int length = attributes.getLength();
  for (int i = 0; i < length; ++i) {
    const std::string& qName = attributes.getQName(i);
    if (isDeclarationName(qName)) continue;
    const auto [prefix, local] = split(qName);
    names_.push_back({boundTo(prefix, bindings), local, qName, false});
  }
}

/// The names of the attributes that the element has by default. A parser may add them: they must
/// change no binding, and be bound.
void XML10StartTag::collectDefaults(const Element& element, const Defaults& defaults,
                                    const NamespaceBindings& bindings) {
  const auto found = defaults.find(element.qName);
  if (found == defaults.end()) return;
  for (const auto& [name, value] : found->second) {
    if (!value) continue;
    if (!isDeclarationName(name)) {
      const auto [prefix, local] = split(name);
      refuseIf(whyNotAttribute(prefix, nullptr, name, bindings));
      names_.push_back({boundTo(prefix, bindings), local, name, true});
      continue;
    }
    const std::string_view prefix = declaredPrefix(name);
    const bool isDeclared =
        std::ranges::binary_search(declarations_, prefix, {}, &Declaration::prefix);
    if (isDeclared) continue;
    // Of an element that does not come, it may be anything.
    refuseIf(whyNotDeclaration(prefix, *value));
    if (bindings.find(prefix) != *value) {
      throw SAXException("The element " + quoted(element.qName) + " has " + quoted(name) +
                         " by default, but does not declare it");
    }
  }
}

/// Refuses attributes that have one expanded name, as those have that are written alike. Only a
/// default may be given as well.
void XML10StartTag::refuseDuplicates() {
  std::ranges::stable_sort(
      names_, {}, [](const ExpandedName& name) { return std::tuple(name.localName, name.uri); });
  for (std::size_t i = 1; i < names_.size(); ++i) {
    const ExpandedName& one = names_[i - 1];
    const ExpandedName& other = names_[i];
    if (one.localName != other.localName || one.uri != other.uri) continue;
    if (one.qName != other.qName) {
      throw SAXException("The attributes " + quoted(one.qName) + " and " + quoted(other.qName) +
                         " have the same name");
    }
    if (one.isDefault == other.isDefault) throw SAXException(givenTwice(one.qName));
  }
}

}  // namespace Tavrin
