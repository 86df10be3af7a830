#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Tavrin {

/// A reference to a general entity in a text.
struct EntityReference {
  std::size_t position;
  std::string_view name;
};

/// The first reference at or behind a position. References to characters are none.
std::optional<EntityReference> nextReference(std::string_view text, std::size_t from);

/// The entities that a document declares, as far as expat processes the declarations.
///
/// They are kept for what expat keeps silent about: where declarations may not have been read, a
/// reference in an attribute value to an entity that nothing declares is no error (XML 1.0,
/// section 4.1, "Entity Declared"), and no text takes its place.
class GeneralEntities {
 public:
  /// Takes a declaration. Of several for an entity the first counts (section 4.2).
  /// @param name as SAX2 reports it: parameter entities are told apart, and known by name alone
  /// @param text the replacement text of an internal entity; of others, nothing
  void declare(std::string_view name, std::string_view text);
  bool isDeclared(std::string_view name) const { return entities_.contains(name); }

  /// The entity for which no text is there where a name is referred to: that one, or one that its
  /// text refers to; null where there is none.
  const std::string* findMissing(const std::string& name);

 private:
  struct Entity {
    std::vector<std::string> references;  // In its text, without the predefined ones.
    std::string missing;                  // What findMissing tells; empty for null.
    std::size_t examinedAt = 0;           // How many entities there were by then; 0 for never.
  };

  std::map<std::string, Entity, std::less<>> entities_;
};

}  // namespace Tavrin
