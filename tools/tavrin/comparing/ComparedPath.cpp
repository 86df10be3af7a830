#include "comparing/ComparedPath.h"

#include <utility>

namespace tool {

/// What a record is counted as; nothing for one that is not counted.
std::string ComparedPath::nameOf(const Record& record) {
  switch (record.kind) {
    case RecordKind::StartElement:
      return std::string(stringsOf(record)[2]);
    case RecordKind::Text:
    case RecordKind::Numbers:
    case RecordKind::Octets:
      return kText;
    case RecordKind::Comment:
      return "comment()";
    case RecordKind::ProcessingInstruction:
      return "processing-instruction()";
    default:
      return {};
  }
}

void ComparedPath::pass(const Record& record) {
  if (record.kind == RecordKind::Border) {
    levels_.resize(1);
    counts().clear();
    path_.clear();
    return;
  }
  if (record.kind == RecordKind::EndElement) {
    levels_.pop_back();
    path_.resize(levels_.back().pathSize);
    return;
  }
  std::string name = nameOf(record);
  if (name.empty()) return;
  if (record.kind != RecordKind::StartElement) {
    ++counts()[std::move(name)];
    return;
  }
  path_ = of(record);
  ++counts()[std::move(name)];
  levels_.push_back({path_.size(), {}});
}

std::string ComparedPath::of(const Record& next) const {
  const std::string name = nameOf(next);
  if (name.empty()) return path_.empty() ? "/" : path_;
  std::string path = path_ + "/" + name;
  const bool isRoot = levels_.size() == 1 && next.kind == RecordKind::StartElement;
  if (isRoot) return path;
  const auto found = levels_.back().counts.find(name);
  const std::uint64_t before = found == levels_.back().counts.end() ? 0 : found->second;
  return path + "[" + std::to_string(before + 1) + "]";
}

}  // namespace tool
