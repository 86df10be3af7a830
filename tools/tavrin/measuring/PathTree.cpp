#include "measuring/PathTree.h"

#include <string_view>

namespace tool {

std::uint32_t PathTree::childOf(std::uint32_t parent, const std::string& name) {
  const bool isFull = numbers_.size() >= kMaximumPaths || open_.size() >= kMaximumLevels;
  const auto find = [&](std::string_view part) {
    key_.assign(reinterpret_cast<const char*>(&parent), sizeof parent).append(part);
    return numbers_.find(key_);
  };
  const std::string_view kept = std::string_view(name).substr(0, kLongestName);
  auto found = find(kept);
  if (found != numbers_.end()) return found->second;
  if (isFull && (found = find("")) != numbers_.end()) return found->second;
  const auto number = static_cast<std::uint32_t>(nodes_.size());
  numbers_.emplace(key_, number);
  nodes_[parent].children.push_back(number);
  nodes_.emplace_back().parent = parent;
  if (!isFull) nodes_.back().name = kept;
  return number;
}

void PathTree::startElement(const std::string& name) {
  const bool isTogether = open_.size() > 1 && nodes_[open_.back()].name.empty();
  if (isTogether) {
    ++deeper_;
  } else {
    open_.push_back(childOf(open_.back(), name));
  }
  ++nodes_[open_.back()].elements;
}

void PathTree::endElement() {
  if (deeper_ > 0) {
    --deeper_;
  } else if (open_.size() > 1) {
    open_.pop_back();
  }
}

void PathTree::add(Encoding encoding, const OctetsByKind& octets) {
  OctetsByKind& own = nodes_[open_.back()].own[static_cast<std::size_t>(encoding)];
  for (std::size_t i = 0; i < kOctetKinds; ++i) own[i] += octets[i];
}

}  // namespace tool
