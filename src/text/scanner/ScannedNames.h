#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

#include "../../xml/HashIndex.h"
#include "../../xml/NamespaceBindings.h"
#include "../../xml/SaltedHash.h"
#include "../../xml/SameText.h"
#include "../../xml/UniqueAttributes.h"

namespace Tavrin::text {

/// A qualified name of a document. What it means is found once for all places with the same
/// namespace declarations.
struct ScannedName {
  std::string qName;
  std::string localName;        ///< Empty where names are not split.
  std::size_t prefixSize = 0;   ///< Likewise.
  bool declares = false;        ///< Whether an attribute of this name declares a namespace.
  ScannedName* next = nullptr;  ///< The name that came after it.

  std::string_view prefix() const { return std::string_view(qName).substr(0, prefixSize); }

  /// The namespace name for some version of the declarations; null where there is none for the
  /// prefix.
  struct Meaning {
    std::uint64_t version = 0;
    const std::string* uri = nullptr;
    std::size_t number = 0;  ///< Of an attribute, as UniqueAttributes gives it.
  };
  Meaning asElement;
  Meaning asAttribute;
};

/// The names of a document, by their octets.
class ScannedNames {
 public:
  /// @param splits whether names are split by Namespaces in XML
  explicit ScannedNames(bool splits) : splits_(splits) {}

  /// The name that is most likely to come next, or null.
  ScannedName* expected() const { return last_ != nullptr ? last_->next : nullptr; }
  /// Records that it came.
  void confirm(ScannedName& name) { last_ = &name; }
  /// Any name.
  ScannedName& find(std::string_view qName);

 private:
  const bool splits_;
  std::deque<ScannedName> names_;
  xml::HashIndex index_;
  ScannedName* last_ = nullptr;
};

}  // namespace Tavrin::text
