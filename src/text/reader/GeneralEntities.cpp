#include "GeneralEntities.h"

#include <algorithm>
#include <set>

#include "../../xml/Declarations.h"

namespace Tavrin::text {

void GeneralEntities::declare(std::string_view name, std::string_view text, EntityKind kind) {
  if (isDeclared(name)) return;
  Entity& entity = entities_[std::string(name)];
  entity.kind = kind;
  std::set<std::string_view> known;  // A long text may refer to one entity very often.
  forEachReference(text, [&](std::string_view referred, std::size_t) {
    if (xml::isPredefinedEntity(referred) || !known.insert(referred).second) return;
    entity.references.emplace_back(referred);
  });
  entity.references.shrink_to_fit();
}

template <typename IsSought>
const std::string* GeneralEntities::follow(const std::string& name, IsSought isSought) const {
  struct Level {
    Entities::const_iterator entity;
    std::size_t next = 0;
  };
  std::vector<Level> levels;                    // A document decides how deep entities are nested.
  std::map<std::string_view, bool> isFollowed;  // Those that were met, and are not done yet.
  const auto enter = [&](const std::string& referred) -> const std::string* {
    const auto found = entities_.find(referred);
    if (found == entities_.end()) return nullptr;
    const auto [state, isNew] = isFollowed.try_emplace(found->first, true);
    if (isSought(*found, !isNew && state->second)) return &found->first;
    if (isNew) levels.push_back({found, 0});
    return nullptr;
  };
  const std::string* sought = enter(name);
  while (sought == nullptr && !levels.empty()) {
    Level& level = levels.back();
    const auto& [levelName, entity] = *level.entity;
    if (level.next == entity.references.size()) {
      isFollowed[levelName] = false;
      levels.pop_back();
    } else {
      sought = enter(entity.references[level.next++]);
    }
  }
  return sought;
}

const std::string* GeneralEntities::findKind(const std::string& name, EntityKind kind) const {
  return follow(name, [kind](const auto& entry, bool) { return entry.second.kind == kind; });
}

const std::string* GeneralEntities::findRecursive(const std::string& name,
                                                  const std::vector<std::string>& open) const {
  return follow(name, [&open](const auto& entry, bool isFollowed) {
    return isFollowed || std::ranges::find(open, entry.first) != open.end();
  });
}

const std::string* GeneralEntities::findMissing(const std::string& name) {
  if (xml::isPredefinedEntity(name)) return nullptr;
  struct Level {
    Entity* entity;
    std::size_t next;
  };
  // A document decides how deep entities are nested, so there is no recursion.
  std::vector<Level> levels;
  const std::string* missing = nullptr;
  const auto enter = [&](const std::string& entityName) {
    const auto found = entities_.find(entityName);
    if (found == entities_.end()) {
      missing = &entityName;
      return;
    }
    Entity& entity = found->second;
    if (entity.examinedAt != entities_.size()) {
      // Set first, so that the loop ends for an entity that refers to itself, which expat refuses.
      entity.examinedAt = entities_.size();
      entity.missing.clear();
      levels.push_back({&entity, 0});
    } else if (!entity.missing.empty()) {
      missing = &entity.missing;
    }
  };
  enter(name);
  while (missing == nullptr && !levels.empty()) {
    Level& level = levels.back();
    if (level.next == level.entity->references.size()) {
      levels.pop_back();
    } else {
      enter(level.entity->references[level.next++]);
    }
  }
  if (missing == nullptr) return nullptr;
  for (const Level& level : levels) level.entity->missing = *missing;
  return missing;
}

}  // namespace Tavrin::text
