#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "comparing/RecordReader.h"

namespace tool {

/// What follows in an element, up to its end or to a limit: elements with all that they hold, texts
/// and other single events.
class Siblings {
 public:
  /// Looks ahead from the current record, which begins one of them.
  explicit Siblings(RecordReader& records);

  struct Sibling {
    RecordKind kind = RecordKind::Text;
    std::string name;        ///< Of an element or an instruction.
    std::size_t hash = 0;    ///< Of all that it is, but for the declarations in front of it.
    std::uint64_t size = 0;  ///< Likewise, in octets.
    std::size_t tag = 0;     ///< A hash of a start tag that has attributes; else 0.
    bool isEnd = false;      ///< Nothing: the element ends, or the document.
    bool isWhole = true;     ///< It was seen up to its end.
    bool isKnown = false;    ///< It can be recognised: it is no white space, and was seen whole.

    bool equals(const Sibling& other) const;
    /// Whether they begin with the same tag, which has attributes.
    bool hasTagOf(const Sibling& other) const { return tag != 0 && tag == other.tag; }
    /// Whether one may be the other, changed.
    bool isLike(const Sibling& other) const;
  };

  const std::vector<Sibling>& list() const { return list_; }

 private:
  bool add(RecordReader& records, RecordReader::Position& position);

  std::vector<Sibling> list_;
  std::uint64_t octets_ = 0;
};

/// What to do about a difference between siblings.
enum class SiblingStep {
  Pair,   ///< The first of both are the same one, changed.
  OnlyA,  ///< The first of A has nothing like it in B.
  OnlyB,
  Neither  ///< Both.
};

/// Chooses by what follows: the nearest sibling that both have, unchanged, or else with the same
/// attributes, or else of the same kind and name.
SiblingStep chooseStep(const Siblings& a, const Siblings& b);

}  // namespace tool
