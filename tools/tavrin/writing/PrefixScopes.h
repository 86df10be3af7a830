#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

namespace tool {

/// The namespace names to which prefixes are bound, element by element.
class PrefixScopes {
 public:
  /// The name that is bound to a prefix; empty where none is. The default namespace has an empty
  /// prefix.
  const std::string& find(const std::string& prefix) const;
  /// Binds a prefix in an element at this depth, which is the innermost, and in those within it.
  void bind(const std::string& prefix, const std::string& uri, std::size_t depth);
  /// The element at this depth ends.
  void leave(std::size_t depth);

 private:
  using Bound = std::unordered_map<std::string, std::string>;

  /// What was bound before.
  struct Former {
    std::size_t depth;
    Bound::pointer bound;  // It stands where it is while others come and go.
    bool isNew;
    std::string uri;
  };

  Bound bound_;
  std::vector<Former> former_;
};

}  // namespace tool
