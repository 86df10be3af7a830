#pragma once

#include <Tavrin/Attributes.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "paths/Path.h"

namespace tool {

/// Tells which nodes of a document paths lead to, each where it begins.
///
/// Of every open element it knows the steps that lead on from it, as a set of bits: the document is
/// read once, and memory grows with the depth of the document only. Where no step leads on, as in
/// most of a document for a path without "//", nothing is kept at all.
class PathMatcher {
 public:
  /// @param paths must outlive the object
  explicit PathMatcher(const Paths& paths);

  void startDocument();

  /// Each returns whether the node is a result. Those of an element's content come between its
  /// start and its end, those of its attributes before its content.
  /// @{
  bool startElement(const std::string& uri, const std::string& localName,
                    const Tavrin::Attributes& attributes) {
    if (depthWithoutSteps_ == 0) return enter(uri, localName, attributes);
    ++depthWithoutSteps_;
    return false;
  }
  bool attribute(const std::string& uri, const std::string& localName) {
    return leadsTo(NodeKind::Attribute, uri, localName);
  }
  bool text() { return leadsTo(NodeKind::Text, {}, {}); }
  bool comment() { return leadsTo(NodeKind::Comment, {}, {}); }
  bool instruction(const std::string& target) { return leadsTo(NodeKind::Instruction, {}, target); }
  /// @}

  void endElement() {
    if (depthWithoutSteps_ > 0) {
      --depthWithoutSteps_;
    } else {
      frames_.resize(frames_.size() - frameSize_);
    }
  }

  /// Whether nodes of this kind, directly inside of the element that is open, may be results.
  bool looksAt(NodeKind kind) const;

 private:
  using Word = std::uint64_t;
  using Set = std::vector<Word>;  // Of steps, by their numbers.

  bool enter(const std::string& uri, const std::string& localName,
             const Tavrin::Attributes& attributes);
  bool leadsTo(NodeKind kind, const std::string& uri, const std::string& localName);
  bool accepts(const Step& step, Word* counters, const Tavrin::Attributes* attributes) const;
  const Set& stepsTo(NodeKind kind) const { return ofKind_[static_cast<std::size_t>(kind)]; }

  const Paths& paths_;
  std::size_t setSize_;    // In words.
  std::size_t frameSize_;  // A set and the counters.
  std::array<Set, kNodeKinds> ofKind_;
  Set descendants_;
  // For the root and every open element: the steps that lead on from there, and how many nodes
  // inside have come to each predicate that counts them.
  std::vector<Word> frames_;
  std::uint64_t depthWithoutSteps_ = 0;  // Innermost elements that have no frame.
};

}  // namespace tool
