#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Tavrin::text {

/// The elements that are open, for the messages of failures. Most end in the block in which they
/// begin, so only the others are looked at: measured, reading takes a twentieth longer where each
/// name and line is kept.
class OpenElements {
 public:
  /// @param octet where the start tag begins in its entity
  void push(std::uint64_t octet) { octets_.push_back(octet); }
  void pop() {
    octets_.pop_back();
    if (named_.size() > octets_.size()) {
      names_.resize(named_.back().begin);
      named_.pop_back();
    }
  }

  std::size_t depth() const { return octets_.size(); }
  std::uint64_t octetAt(std::size_t depth) const { return octets_[depth]; }

  /// How many have a name; the others are inside of these.
  std::size_t namedDepth() const { return named_.size(); }
  /// Names the outermost that has no name.
  /// @param name empty where it is not known
  /// @param line 0 where it is not known
  void name(std::string_view name, std::uint64_t line) {
    named_.push_back({names_.size(), line});
    names_.append(name);
  }
  /// Of the innermost one that has a name.
  std::string_view innermostName() const {
    return std::string_view(names_).substr(named_.back().begin);
  }
  std::uint64_t innermostLine() const { return named_.back().line; }

 private:
  struct Named {
    std::size_t begin;  // Of its name.
    std::uint64_t line;
  };

  std::vector<std::uint64_t> octets_;
  std::vector<Named> named_;
  std::string names_;
};

}  // namespace Tavrin::text
