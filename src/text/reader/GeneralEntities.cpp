#include "GeneralEntities.h"

#include <algorithm>

#include "../../xml/Declarations.h"

namespace Tavrin::text {

void GeneralEntities::declare(std::string_view name, std::string_view text) {
  if (isDeclared(name)) return;
  std::vector<std::string>& references = entities_[std::string(name)].references;
  forEachReference(text, [&](std::string_view referred, std::size_t) {
    if (!xml::isPredefinedEntity(referred)) references.emplace_back(referred);
  });
  // A long text may refer to one entity very often.
  std::ranges::sort(references);
  references.erase(std::unique(references.begin(), references.end()), references.end());
  references.shrink_to_fit();
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
