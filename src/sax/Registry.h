#pragma once

#include <Tavrin/Exceptions.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Tavrin {

/// A registry of readers or of writers. The first registration creates its map and the removal of
/// the last deletes it, so that static objects can register in any order. A null map is an empty
/// registry.
template <typename Type>
class Registry {
 public:
  using Map = std::map<std::string, const Type*>;

  static void add(Map*& map, const Type* type) {
    if (map == nullptr) map = new Map;
    (*map)[fold(type->getName())] = type;
  }

  /// Removes the name, also where a later record has replaced this one.
  static void remove(Map*& map, const Type* type) {
    if (map == nullptr) return;
    // Destructors call this, so it allocates no memory.
    const auto found = std::ranges::find_if(*map, [type](const auto& entry) {
      return std::ranges::equal(entry.first, type->getName(), {}, {}, foldCharacter);
    });
    if (found != map->end()) map->erase(found);
    if (map->empty()) {
      delete map;
      map = nullptr;
    }
  }

  /// The record of a name, or null.
  static const Type* find(const Map* map, const std::string& name) {
    if (map == nullptr) return nullptr;
    const auto found = map->find(fold(name));
    return found == map->end() ? nullptr : found->second;
  }

  static std::vector<std::string> names(const Map* map) {
    std::vector<std::string> result;
    if (map == nullptr) return result;
    for (const auto& entry : *map) result.push_back(entry.second->getName());
    return result;
  }

 private:
  // Names must not depend on the locale, so only ASCII is folded.
  static char foldCharacter(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }
  static std::string fold(std::string name) {
    std::ranges::transform(name, name.begin(), foldCharacter);
    return name;
  }
};

}  // namespace Tavrin
