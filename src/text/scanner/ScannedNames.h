#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "../../xml/HashIndex.h"

namespace Tavrin::text {

struct ScannedName;

/// An empty name.
inline const std::string kNoName;

/// What a document type declares of an attribute.
struct DeclaredAttribute {
  ScannedName* name;
  std::string type;
  std::optional<std::string> value;  ///< The default.
};

/// A qualified name of a document. There may be many, so each is small.
struct ScannedName {
  std::string qName;
  const std::string* localName = nullptr;  ///< kNoName where names are not split.
  ScannedName* next = nullptr;             ///< The name that came after it.
  const std::string* uri = nullptr;  ///< The namespace name, or null where the prefix has none,
  std::uint64_t version = 0;         ///< for this version of the declarations.
  std::uint32_t declared = 0;        ///< The number of what is declared for its element, or 0.
  /// Finds attributes that are given twice: of a name without a prefix, the last tag that had it;
  /// of another one, its number among the expanded names, or 0.
  std::uint32_t mark = 0;

  bool hasPrefix() const { return localName != &qName && localName != &kNoName; }
  std::string_view prefix() const {
    const std::size_t size = hasPrefix() ? qName.size() - localName->size() - 1 : 0;
    return std::string_view(qName).substr(0, size);
  }
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
  std::deque<std::string> localNames_;  ///< Of those that have a prefix.
  xml::HashIndex index_;
  ScannedName* last_ = nullptr;
};

}  // namespace Tavrin::text
