#include "writing/PrefixScopes.h"

#include <utility>

namespace tool {

const std::string& PrefixScopes::find(const std::string& prefix) const {
  static const std::string kNone;
  if (former_.empty()) return kNone;
  const auto found = bound_.find(prefix);
  return found == bound_.end() ? kNone : found->second;
}

void PrefixScopes::bind(const std::string& prefix, const std::string& uri, std::size_t depth) {
  const auto [bound, isNew] = bound_.try_emplace(prefix);
  former_.push_back({depth, &*bound, isNew, std::exchange(bound->second, uri)});
}

void PrefixScopes::leave(std::size_t depth) {
  for (; !former_.empty() && former_.back().depth == depth; former_.pop_back()) {
    Former& former = former_.back();
    if (former.isNew) {
      bound_.erase(bound_.find(former.bound->first));
    } else {
      former.bound->second = std::move(former.uri);
    }
  }
}

}  // namespace tool
