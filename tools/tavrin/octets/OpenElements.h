#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "octets/Tables.h"

namespace tool::octets {

/// The elements that are open, and the path of the innermost.
class OpenElements {
 public:
  /// @param tables have the names; they outlive the object
  explicit OpenElements(const Tables& tables) : tables_(tables) {}

  std::size_t count() const { return indexes_.size(); }
  /// @param index of the name in the table of element names; 0 where it is not there
  void open(std::uint32_t index, const Name& name);
  void close();
  /// The path of the innermost element, from the end as far as there is room; nothing outside of
  /// the root element.
  std::string path() const;

 private:
  std::string stepOf(const Name& name) const;
  void fillWindow();

  const Tables& tables_;
  // Documents may be a million deep, so elements are the indexes of their names. Those of names
  // that have none stand in a list of their own.
  std::vector<std::uint32_t> indexes_;
  std::vector<Name> unlisted_;
  // The end of the path, with more steps than are shown: few have to be composed twice.
  std::string window_;
  std::vector<std::size_t> begins_;  // Of the steps in the window.
};

}  // namespace tool::octets
