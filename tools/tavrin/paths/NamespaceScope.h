#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace tool {

/// The namespace declarations in whose scope a reader is, the outermost first.
class NamespaceScope {
 public:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  struct Mapping {
    std::string prefix;
    std::string uri;
    std::size_t before = kNone;  ///< The one that it hides.
    std::size_t by = kNone;  ///< The one of an inner element, with the same prefix, that hides it.
    std::uint64_t number = 0;  ///< Among all that there have been, from 1.
  };

  /// A declaration of the element that starts next.
  void declare(const std::string& prefix, const std::string& uri) {
    const auto [place, isNew] = latest_.emplace(prefix, mappings_.size());
    const std::size_t before = isNew ? kNone : place->second;
    if (before != kNone) mappings_[before].by = mappings_.size();
    place->second = mappings_.size();
    mappings_.push_back({prefix, uri, before, kNone, ++declared_});
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
      mappings_[last.before].by = kNone;
      latest_[last.prefix] = last.before;
    }
    mappings_.pop_back();
    own_ = mappings_.size();
  }
  void clear() {
    mappings_.clear();
    latest_.clear();
    own_ = 0;
  }

  /// A number for what the element that starts now inherits: the same where that is the same.
  std::uint64_t inherited() const { return own_ == 0 ? 0 : mappings_[own_ - 1].number; }
  /// Calls a function with prefix and namespace name of what the element that starts now inherits.
  /// @param all also what it declares anew
  template <typename Work>
  void forEachInherited(bool all, Work work) const {
    for (std::size_t i = 0; i < own_; ++i) {
      const Mapping& mapping = mappings_[i];
      const bool isHidden = mapping.by < (all ? own_ : kNone);
      if (!isHidden && !mapping.uri.empty()) work(mapping.prefix, mapping.uri);
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
  std::vector<Mapping> mappings_;
  std::uint64_t declared_ = 0;
  std::size_t own_ = 0;  // The first of the element that starts.
  std::unordered_map<std::string, std::size_t> latest_;
};

}  // namespace tool
