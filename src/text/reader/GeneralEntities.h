#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Tavrin::text {

/// Calls a function with the name and the position of each reference to a general entity in a text.
template <typename Visit>
void forEachReference(std::string_view text, Visit visit) {
  for (std::size_t i = text.find('&'); i < text.size(); i = text.find('&', i + 1)) {
    const std::size_t end = text.find(';', i);
    if (end == std::string_view::npos) return;
    if (text[i + 1] != '#') visit(text.substr(i + 1, end - i - 1), i);
  }
}

enum class EntityKind { internal, external, unparsed };

/// The entities that a document declares, as far as expat processes the declarations.
///
/// They show what expat does not report: where declarations may not have been read, a reference to
/// an undeclared entity in an attribute value is no error (XML 1.0, section 4.1, "Entity
/// Declared"), and no text replaces it.
class GeneralEntities {
 public:
  /// Adds a declaration. Of several for an entity the first is binding (section 4.2).
  /// @param name as SAX2 reports it, which marks parameter entities
  /// @param text the replacement text of an internal general entity; empty for others
  void declare(std::string_view name, std::string_view text, EntityKind kind);
  bool isDeclared(std::string_view name) const { return entities_.contains(name); }

  /// The undeclared entity for which a reference has no text: the one it refers to, or one that the
  /// text of that entity refers to; null where there is none.
  const std::string* findMissing(const std::string& name);

  /// The first entity of a kind among an entity and those that its text refers to, or null.
  const std::string* findKind(const std::string& name, EntityKind kind) const;
  /// The first entity, likewise, whose text refers to itself, or null.
  /// @param open entities whose texts are being read
  const std::string* findRecursive(const std::string& name,
                                   const std::vector<std::string>& open) const;

 private:
  struct Entity {
    EntityKind kind = EntityKind::internal;
    std::vector<std::string> references;  // In its text, without the predefined ones, in order.
    std::string missing;                  // The last result of findMissing; empty for null.
    std::size_t examinedAt = 0;           // How many entities there were then, or 0.
  };

  using Entities = std::map<std::string, Entity, std::less<>>;

  /// Follows references from an entity on, each entity once.
  /// @param isSought called with an entity and whether a text that is being followed is its own
  template <typename IsSought>
  const std::string* follow(const std::string& name, IsSought isSought) const;

  Entities entities_;
};

}  // namespace Tavrin::text
