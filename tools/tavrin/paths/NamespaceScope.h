#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

namespace tool {

/// The namespace declarations in whose scope a reader is, the outermost first.
class NamespaceScope {
 public:
  struct Mapping {
    std::string prefix;
    std::string uri;
    std::size_t before = kNone;  ///< The one that it hides.
    bool isHidden = false;       ///< By one of an inner element, with the same prefix.
  };

  /// A declaration of the element that starts next.
  void declare(const std::string& prefix, const std::string& uri) {
    const auto [place, isNew] = latest_.emplace(prefix, mappings_.size());
    const std::size_t before = isNew ? kNone : place->second;
    if (before != kNone) mappings_[before].isHidden = true;
    place->second = mappings_.size();
    mappings_.push_back({prefix, uri, before});
  }
  /// The next declarations are those of another element.
  void closeStartTag() { own_ = mappings_.size(); }
  /// The scope of the last declaration ended.
  void removeLast() {
    if (mappings_.empty()) return;
    const Mapping& last = mappings_.back();
    if (last.before == kNone) {
      latest_.erase(last.prefix);
    } else {
      mappings_[last.before].isHidden = false;
      latest_[last.prefix] = last.before;
    }
    mappings_.pop_back();
    own_ = mappings_.size();
  }
  void clear() { *this = {}; }

  /// Calls a function with prefix and namespace name of what the element that starts now inherits.
  template <typename Work>
  void forEachInherited(Work work) const {
    for (std::size_t i = 0; i < own_; ++i) {
      const Mapping& mapping = mappings_[i];
      if (!mapping.isHidden && !mapping.uri.empty()) work(mapping.prefix, mapping.uri);
    }
  }
  /// Likewise with what it declares itself.
  template <typename Work>
  void forEachOwn(Work work) const {
    for (std::size_t i = own_; i < mappings_.size(); ++i) {
      work(mappings_[i].prefix, mappings_[i].uri);
    }
  }

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  std::vector<Mapping> mappings_;
  std::size_t own_ = 0;  // The first of the element that starts.
  std::unordered_map<std::string, std::size_t> latest_;
};

}  // namespace tool
