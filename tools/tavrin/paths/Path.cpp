#include "paths/Path.h"

#include <algorithm>

namespace tool {

bool Predicate::acceptsPosition(std::uint64_t other) const {
  switch (comparison) {
    case Comparison::Equal:
      return other == position;
    case Comparison::Unequal:
      return other != position;
    case Comparison::Less:
      return other < position;
    case Comparison::LessOrEqual:
      return other <= position;
    case Comparison::Greater:
      return other > position;
    case Comparison::GreaterOrEqual:
      return other >= position;
  }
  return false;
}

bool Paths::leadTo(NodeKind kind) const {
  return std::any_of(steps.begin(), steps.end(),
                     [kind](const Step& step) { return step.isLast && step.kind == kind; });
}

}  // namespace tool
