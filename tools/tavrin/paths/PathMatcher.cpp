#include "paths/PathMatcher.h"

#include <algorithm>
#include <bit>

namespace tool {

namespace {

constexpr std::size_t kBits = 64;

void add(std::uint64_t* set, std::size_t number) {
  set[number / kBits] |= std::uint64_t{1} << (number % kBits);
}

/// Calls a function with the number of each member of two sets.
template <typename Work>
void forEachOfBoth(const std::uint64_t* set, const std::uint64_t* other, std::size_t size,
                   Work work) {
  for (std::size_t i = 0; i < size; ++i) {
    for (std::uint64_t word = set[i] & other[i]; word != 0; word &= word - 1) {
      work(i * kBits + static_cast<std::size_t>(std::countr_zero(word)));
    }
  }
}

bool hasAttribute(const Tavrin::Attributes& attributes, const Predicate& predicate) {
  const int length = attributes.getLength();
  for (int i = 0; i < length; ++i) {
    if (!predicate.attribute.matches(attributes.getURI(i), attributes.getLocalName(i))) continue;
    if (predicate.kind == Predicate::Kind::HasAttribute) return true;
    const bool isEqual = attributes.getValue(i) == predicate.value;
    // Of several attributes, one is enough (XPath 1.0, section 3.4).
    if (isEqual == (predicate.comparison == Predicate::Comparison::Equal)) return true;
  }
  return false;
}

}  // namespace

PathMatcher::PathMatcher(const Paths& paths)
    : paths_(paths),
      setSize_((paths.steps.size() + kBits - 1) / kBits),
      frameSize_(setSize_ + paths.counters),
      descendants_(setSize_) {
  for (Set& set : ofKind_) set.resize(setSize_);
  for (std::size_t i = 0; i < paths.steps.size(); ++i) {
    add(ofKind_[static_cast<std::size_t>(paths.steps[i].kind)].data(), i);
    if (paths.steps[i].isDescendant) add(descendants_.data(), i);
  }
}

void PathMatcher::startDocument() {
  depthWithoutSteps_ = 0;
  frames_.assign(frameSize_, 0);
  for (std::size_t i = 0; i < paths_.steps.size(); ++i) {
    if (i == 0 || paths_.steps[i - 1].isLast) add(frames_.data(), i);
  }
}

bool PathMatcher::accepts(const Step& step, Word* counters,
                          const Tavrin::Attributes* attributes) const {
  return std::all_of(step.predicates.begin(), step.predicates.end(),
                     [&](const Predicate& predicate) {
                       return predicate.kind == Predicate::Kind::Position
                                  ? predicate.acceptsPosition(++counters[predicate.counter])
                                  : attributes != nullptr && hasAttribute(*attributes, predicate);
                     });
}

bool PathMatcher::enter(const std::string& uri, const std::string& localName,
                        const Tavrin::Attributes& attributes) {
  frames_.resize(frames_.size() + frameSize_);
  Word* const child = frames_.data() + frames_.size() - frameSize_;
  Word* const parent = child - frameSize_;
  bool isResult = false;
  for (std::size_t i = 0; i < setSize_; ++i) child[i] = parent[i] & descendants_[i];
  forEachOfBoth(parent, stepsTo(NodeKind::Element).data(), setSize_, [&](std::size_t number) {
    const Step& step = paths_.steps[number];
    if (!step.name.matches(uri, localName)) return;
    if (!accepts(step, parent + setSize_, &attributes)) return;
    if (step.isLast) {
      isResult = true;
    } else {
      add(child, number + 1);
    }
  });
  if (std::all_of(child, child + setSize_, [](Word word) { return word == 0; })) {
    frames_.resize(frames_.size() - frameSize_);
    depthWithoutSteps_ = 1;
  }
  return isResult;
}

bool PathMatcher::looksAt(NodeKind kind) const {
  if (depthWithoutSteps_ > 0) return false;
  const Word* const frame = frames_.data() + frames_.size() - frameSize_;
  const Set& steps = stepsTo(kind);
  for (std::size_t i = 0; i < setSize_; ++i) {
    if ((frame[i] & steps[i]) != 0) return true;
  }
  return false;
}

bool PathMatcher::leadsTo(NodeKind kind, const std::string& uri, const std::string& localName) {
  if (depthWithoutSteps_ > 0) return false;
  Word* const frame = frames_.data() + frames_.size() - frameSize_;
  bool isResult = false;
  forEachOfBoth(frame, stepsTo(kind).data(), setSize_, [&](std::size_t number) {
    const Step& step = paths_.steps[number];
    const bool hasName = kind == NodeKind::Attribute || kind == NodeKind::Instruction;
    if (hasName && !step.name.matches(uri, localName)) return;
    isResult = accepts(step, frame + setSize_, nullptr) || isResult;
  });
  return isResult;
}

}  // namespace tool
