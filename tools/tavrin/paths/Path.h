#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// The kinds of nodes that a step may lead to (XPath 1.0, section 5).
enum class NodeKind : std::uint8_t { Element, Attribute, Text, Comment, Instruction };
inline constexpr std::size_t kNodeKinds = 5;

/// Which names a step, or an attribute in a predicate, may have (XPath 1.0, section 2.3).
struct NameTest {
  bool isAnyURI = false;
  bool isAnyName = false;
  std::string uri;
  std::string localName;

  bool matches(std::string_view otherURI, std::string_view otherName) const {
    return (isAnyName || otherName == localName) && (isAnyURI || otherURI == uri);
  }
};

/// What is asked of a node of the right name (XPath 1.0, section 2.4).
struct Predicate {
  enum class Kind : std::uint8_t { HasAttribute, HasAttributeValue, Position };
  enum class Comparison : std::uint8_t {
    Equal,
    Unequal,
    Less,
    LessOrEqual,
    Greater,
    GreaterOrEqual
  };

  Kind kind = Kind::Position;
  Comparison comparison = Comparison::Equal;
  NameTest attribute;
  std::string value;           ///< What the attribute's value is compared with.
  std::uint64_t position = 0;  ///< What the position is compared with.
  std::size_t counter = 0;     ///< Which of the counters of the parent counts positions.

  /// Whether a node of this position, from 1, is meant.
  bool acceptsPosition(std::uint64_t other) const;
};

/// From a node to some that are directly inside of it.
struct Step {
  NodeKind kind = NodeKind::Element;
  bool isDescendant = false;  ///< Also to those inside of the elements in it.
  bool isLast = false;        ///< What it leads to are results.
  NameTest name;              ///< Of a processing instruction: its target, without a namespace.
  std::vector<Predicate> predicates;
};

/// Paths from the root of a document, one behind the other.
struct Paths {
  std::vector<Step> steps;
  std::size_t counters = 0;  ///< How many predicates ask for positions.

  /// Whether a path leads to nodes of this kind.
  bool leadTo(NodeKind kind) const;
};

}  // namespace tool
