#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "comparing/Records.h"

namespace tool {

/// Where reading is in the elements of a document, as a path: names as they are written, each with
/// its number among those of its name in the same element.
class ComparedPath {
 public:
  ComparedPath() : levels_(1) {}

  /// Takes note of a record that is no part of a text, and so of the elements that are open.
  void pass(const Record& record);
  /// Takes note of a text.
  void passText() { ++counts()[kText]; }
  /// The path of what comes next.
  std::string of(const Record& next) const;
  /// How many elements are open.
  std::size_t depth() const { return levels_.size() - 1; }

 private:
  static constexpr char kText[] = "text()";
  using Counts = std::unordered_map<std::string, std::uint64_t>;

  struct Level {
    std::size_t pathSize = 0;  // Up to this element.
    Counts counts;             // Of what it has had, by name.
  };

  static std::string nameOf(const Record& record);
  Counts& counts() { return levels_.back().counts; }

  std::string path_;
  std::vector<Level> levels_;
};

}  // namespace tool
