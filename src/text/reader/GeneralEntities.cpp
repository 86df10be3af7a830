#include "GeneralEntities.h"

#include <algorithm>

#include "../../xml/Declarations.h"

namespace Tavrin {

std::optional<EntityReference> nextReference(std::string_view text, std::size_t from) {
  for (std::size_t i = text.find('&', from); i < text.size(); i = text.find('&', i + 1)) {
    const std::size_t end = text.find(';', i);
    if (end == std::string_view::npos) break;
    if (text[i + 1] != '#') return EntityReference{i, text.substr(i + 1, end - i - 1)};
  }
  return {};
}

void GeneralEntities::declare(std::string_view name, std::string_view text) {
  if (isDeclared(name)) return;
  std::vector<std::string>& references = entities_[std::string(name)].references;
  for (auto found = nextReference(text, 0); found; found = nextReference(text, found->position + 1))
    if (!xml::isPredefinedEntity(found->name)) references.emplace_back(found->name);
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
  // Entities within entities, as deep as the document likes: not on the call stack.
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
      // One that refers to itself is expat's to refuse; here it must come to an end.
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

}  // namespace Tavrin
