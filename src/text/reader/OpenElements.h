#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Tavrin::text {

/// Where a start tag begins: its line, or the octets before it in its entity.
struct ElementPlace {
  std::uint64_t number = 0;
  bool isLine = false;
};

/// The elements that are open, for the messages of failures. Measured: an element takes as long as
/// copying its name.
class OpenElements {
 public:
  /// @param name as expat gives it
  void push(const char* name, ElementPlace place) {
    const std::size_t begin = names_.size();
    names_.append(name);
    elements_.push_back({begin, place});
  }
  void pop() {
    names_.resize(elements_.back().begin);
    elements_.pop_back();
  }

  std::size_t depth() const { return elements_.size(); }
  /// The name of the innermost element. There must be one.
  std::string_view name() const { return std::string_view(names_).substr(elements_.back().begin); }
  ElementPlace place() const { return elements_.back().place; }

 private:
  struct Element {
    std::size_t begin;  // Of its name.
    ElementPlace place;
  };

  std::string names_;
  std::vector<Element> elements_;
};

}  // namespace Tavrin::text
