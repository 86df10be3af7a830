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
#include "../../xml/Escapes.h"
#include "../../xml/NameCache.h"
#include "../../xml/NamespaceBindings.h"
#include "../../xml/UniqueAttributes.h"

namespace Tavrin::text {

/// Appends a text with its characters escaped, or refuses it.
/// @param place what holds the text, with its article
void appendEscaped(EventOctets& out, std::string_view text, const xml::Escapes& escapes,
                   const char* place);

/// Writes start tags, or refuses them with a SAXException where names, prefixes and namespaces do
/// not agree (Namespaces in XML 1.0, section 5).
class XML10StartTag {
 public:
  /// The defaults of declared attributes, if they have one, by the names of element and attribute
  /// (XML 1.0, section 3.3.2). Only attributes that concern namespaces are kept. A parser may add
  /// them or not, so a start tag must be right in both cases.
  using Defaults =
      std::map<std::string, std::map<std::string, std::optional<std::string>>, std::less<>>;

  struct Element {
    const std::string& uri;
    const std::string& localName;
    const std::string& qName;
    const Attributes& attributes;
    const std::vector<std::string>& mappings;  // Prefix, namespace name, prefix, ...
  };

  /// The value of the attribute `xml:space` (XML 1.0, section 2.10).
  enum class Space { Inherited, Default, Preserve };

  /// Appends a start tag without its ">".
  /// @param bindings gets the declarations of the element; where it is refused, maybe some of them
  Space write(EventOctets& out, const Element& element, char quote, const Defaults& defaults,
              xml::NamespaceBindings& bindings);
  /// Likewise, into a room that ends at `end`, if the start tag is of the most common kind: it
  /// declares no namespace, no attribute has a default, and all names have been checked with these
  /// bindings. Measured: records take a third less time.
  /// @return the end of the copy; or null for any other one, or where there may be too little room
  char* copyKnown(char* to, const char* end, const Element& element, char quote,
                  const xml::NamespaceBindings& bindings, Space& space);

 private:
  static constexpr int kMapping = -1;  // In place of an attribute's index.

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

  /// What is kept of a name that has been checked.
  struct Checked {
    std::uint64_t version;  // Of the bindings with which the name is right.
    std::size_t number;     // Of an attribute, in numbers_.
    bool isSpace;           // It is `xml:space`.
  };
  using CheckedNames = xml::NameCache<Checked>;

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
  std::vector<bool> isRepeated_;  // By attribute: it declares what a mapping has declared.
  std::vector<ExpandedName> names_;

  CheckedNames checkedElements_;
  CheckedNames checkedAttributes_;
  xml::UniqueAttributes numbers_;  // Of the attributes, until there are too many.
};

}  // namespace Tavrin::text
