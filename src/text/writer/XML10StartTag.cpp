#include "XML10StartTag.h"

#include <Tavrin/Exceptions.h>
#include <Tavrin/Identifiers.h>

#include <algorithm>
#include <tuple>

#include "../../xml/Rules.h"

namespace Tavrin::text {

using namespace xml;

namespace {

constexpr std::string_view kSpaceAttribute = "xml:space";

// When the numbered names exceed this, all are forgotten.
constexpr std::size_t kMostOctets = std::size_t{4} << 20U;

/// Whether an event is one of a reader that does not process namespaces.
bool isRaw(const std::string& uri, const std::string& localName) {
  return uri.empty() && localName.empty();
}

/// The namespace of an attribute whose prefix is bound, or empty.
std::string_view boundTo(std::string_view prefix, const NamespaceBindings& bindings) {
  return prefix.empty() ? std::string_view() : bindings.find(prefix);
}

void appendAttribute(EventOctets& out, std::string_view name, std::string_view value, char quote) {
  out.append(' ', name, '=', quote);
  appendEscaped(out, value, attributeEscapes(quote), "an attribute value");
  out.append(quote);
}

/// The length of a start tag in which nothing is escaped.
std::size_t lengthOf(const XML10StartTag::Element& element) {
  std::size_t length = 1 + element.qName.size();
  const Attributes& attributes = element.attributes;
  for (int i = 0; i < attributes.getLength(); ++i) {
    length += 4 + attributes.getQName(i).size() + attributes.getValue(i).size();
  }
  return length;
}

XML10StartTag::Space spaceOf(std::string_view value) {
  return value == "preserve" ? XML10StartTag::Space::Preserve : XML10StartTag::Space::Default;
}

}  // namespace

void appendEscaped(EventOctets& out, std::string_view text, const Escapes& escapes,
                   const char* place) {
  const auto [begin, end] = out.room(text.size());
  if (char* const copied = escapes.copy(text, begin, end)) return out.appendUpTo(copied);
  appendText(out, text, escapes, place);
}

XML10StartTag::Space XML10StartTag::write(EventOctets& out, const Element& element, char quote,
                                          const Defaults& defaults, NamespaceBindings& bindings) {
  Space space = Space::Inherited;
  if (element.mappings.empty() && defaults.empty()) {
    const auto [begin, end] = out.room(lengthOf(element));
    if (char* const written = copyKnown(begin, end, element, quote, bindings, space)) {
      out.appendUpTo(written);
      return space;
    }
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

char* XML10StartTag::copyKnown(char* to, const char* end, const Element& element, char quote,
                               const NamespaceBindings& bindings, Space& space) {
  const auto find = [version = bindings.version()](CheckedNames& names, const auto&... name) {
    const Checked* const checked = names.find(name...);
    return checked != nullptr && checked->version == version ? checked : nullptr;
  };
  if (!find(checkedElements_, element.uri, element.localName, element.qName)) return nullptr;
  to = copyPieces(to, end, '<', std::string_view(element.qName));
  const Attributes& attributes = element.attributes;
  const int length = attributes.getLength();
  if (length == 0) return to;
  const Escapes& escapes = attributeEscapes(quote);
  numbers_.beginTag();
  for (int i = 0; i < length && to != nullptr; ++i) {
    const std::string& qName = attributes.getQName(i);
    const Checked* const checked =
        find(checkedAttributes_, attributes.getURI(i), attributes.getLocalName(i), qName);
    if (checked == nullptr || !numbers_.take(checked->number)) return nullptr;
    const std::string& value = attributes.getValue(i);
    if (checked->isSpace) space = spaceOf(value);
    to = copyPieces(to, end, ' ', std::string_view(qName), '=', quote);
    if (to != nullptr) to = escapes.copy(value, to, end);
    if (to != nullptr) to = copyPieces(to, end, quote);
  }
  return to;
}

/// Collects the declarations of the element, by mappings and by attributes.
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

/// Adds the declarations of the element to the bindings, each once.
void XML10StartTag::declareAll(NamespaceBindings& bindings) {
  // For each prefix, a mapping precedes attributes.
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
  const std::string_view prefix = split(qName).prefix;
  if (!raw) refuseUnlessLocalName(prefix, localName, qName);
  refuseIf(whyNotElement(prefix, raw ? nullptr : &uri, qName, bindings));
  checkedElements_.put(uri, localName, qName,
                       {bindings.version(), UniqueAttributes::kUnknown, false});
}

/// @return the number of the attribute in numbers_
std::size_t XML10StartTag::checkAttributeName(const std::string& uri, const std::string& localName,
                                              const std::string& qName,
                                              const NamespaceBindings& bindings) {
  const Checked* const known = checkedAttributes_.find(uri, localName, qName);
  if (known != nullptr && known->version == bindings.version()) return known->number;
  if (known == nullptr) refuseIf(whyNotQName(qName));
  const auto [prefix, local] = split(qName);
  const bool raw = isRaw(uri, localName);
  if (!raw && known == nullptr) refuseUnlessLocalName(prefix, localName, qName);
  refuseIf(whyNotAttribute(prefix, raw ? nullptr : &uri, qName, bindings));
  std::size_t number = known != nullptr && !raw ? known->number : UniqueAttributes::kUnknown;
  if (number == UniqueAttributes::kUnknown) {
    number = numbers_.number(boundTo(prefix, bindings), local);
  }
  checkedAttributes_.put(uri, localName, qName,
                         {bindings.version(), number, qName == kSpaceAttribute});
  return number;
}

/// Collects the names of the attributes, which have been checked.
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

/// Collects the names of the attributes that the element has by default. As a parser may add them,
/// they must change no binding, and their prefixes must be bound.
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
    // The declaration was not checked itself: it may be of an element that never occurs.
    refuseIf(whyNotDeclaration(prefix, *value));
    if (bindings.find(prefix) != *value) {
      throw SAXException("The element " + quoted(element.qName) + " has " + quoted(name) +
                         " by default, but does not declare it");
    }
  }
}

/// Refuses attributes that have the same expanded name. Only a default may have the qualified name
/// of an attribute that is given.
void XML10StartTag::refuseDuplicates() {
  std::ranges::stable_sort(
      names_, {}, [](const ExpandedName& name) { return std::tuple(name.localName, name.uri); });
  for (std::size_t i = 1; i < names_.size(); ++i) {
    const ExpandedName& one = names_[i - 1];
    const ExpandedName& other = names_[i];
    if (one.localName != other.localName || one.uri != other.uri) continue;
    const bool isReplacedDefault = one.isDefault != other.isDefault && one.qName == other.qName;
    if (!isReplacedDefault) throw SAXException(givenTwice(other.qName));
  }
}

}  // namespace Tavrin::text
