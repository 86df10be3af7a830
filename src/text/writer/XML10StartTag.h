#pragma once

#include <Tavrin/Attributes.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "../../io/EventOctets.h"
#include "../../xml/NameCache.h"
#include "../../xml/NamespaceBindings.h"
#include "../../xml/UniqueAttributes.h"

namespace Tavrin {

/// Writes start tags in which names, prefixes and namespaces agree (Namespaces in XML 1.0, section
/// 5), or refuses them with a SAXException.
class XML10StartTag {
 public:
  /// What a declared attribute has for a value where it is not given, if anything, by the names of
  /// the element and the attribute (XML 1.0, section 3.3.2). Only attributes that have to do with
  /// namespaces are of interest. A parser may add them or not, so nothing may depend on it.
  using Defaults =
      std::map<std::string, std::map<std::string, std::optional<std::string>>, std::less<>>;

  struct Element {
    const std::string& uri;
    const std::string& localName;
    const std::string& qName;
    const Attributes& attributes;
    const std::vector<std::string>& mappings;  // Prefix, namespace name, prefix, ...
  };

  /// What the attribute `xml:space` says (XML 1.0, section 2.10).
  enum class Space { Inherited, Default, Preserve };

  /// Appends a start tag without its ">".
  /// @param bindings gains the declarations of the element, some of them also after a refusal
  Space write(EventOctets& out, const Element& element, char quote, const Defaults& defaults,
              xml::NamespaceBindings& bindings);

 private:
  static constexpr int kMapping = -1;  // Instead of an attribute's position.

  struct Declaration {
    std::string_view prefix;
    std::string_view uri;
    int attribute;
  };
  struct ExpandedName {
    std::string_view uri;
    std::string_view localName;
    std::string_view qName;
    bool isDefault;
  };

  /// A name that has been found right with some bindings.
  struct Checked {
    std::uint64_t version;  // Of the bindings.
    std::size_t number;     // Of an attribute, among those that must differ.
    bool isSpace;           // It is `xml:space`.
  };
  using CheckedNames = xml::NameCache<Checked>;

  bool writeKnown(EventOctets& out, const Element& element, char quote,
                  const xml::NamespaceBindings& bindings, Space& space);
  void checkElementName(const Element& element, const xml::NamespaceBindings& bindings);
  std::size_t checkAttributeName(const std::string& uri, const std::string& localName,
                                 const std::string& qName, const xml::NamespaceBindings& bindings);
  void collectDeclarations(const Element& element);
  void declareAll(xml::NamespaceBindings& bindings);
  void collectNames(const Attributes& attributes, const xml::NamespaceBindings& bindings);
  void collectDefaults(const Element& element, const Defaults& defaults,
                       const xml::NamespaceBindings& bindings);
  void refuseDuplicates();

  // Kept between start tags for their memory.
  std::vector<Declaration> declarations_;
  std::vector<bool> isRepeated_;  // By attribute: says what a mapping says already.
  std::vector<ExpandedName> names_;

  CheckedNames checkedElements_;
  CheckedNames checkedAttributes_;
  xml::UniqueAttributes numbers_;  // Of all attributes, but that it forgets now and then.
};

}  // namespace Tavrin
