#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Tavrin::xml {

/// Finds attributes that stand twice in a start tag (Namespaces in XML, section 6.3), however many
/// there are. A name is looked up once; the caller keeps its number with it.
class UniqueAttributes {
 public:
  /// A name that has no number yet.
  static constexpr std::size_t kUnknown = 0;

  /// The number of a namespace name and local name, the same for the same two.
  std::size_t number(std::string_view uri, std::string_view localName) {
    const auto found = numbers_.find(std::pair(uri, localName));
    if (found != numbers_.end()) return found->second;
    constexpr std::size_t kOfEntry = 128;
    octets_ += uri.size() + localName.size() + kOfEntry;
    lastTag_.push_back(0);
    return numbers_.emplace(std::pair(uri, localName), lastTag_.size() - 1).first->second;
  }
  /// How many numbers were given.
  std::size_t size() const { return numbers_.size(); }
  /// About how many octets of memory they take.
  std::size_t octets() const { return octets_; }

  void beginTag() { ++tag_; }
  /// Takes an attribute of the tag. Returns whether it is the first with its number.
  bool take(std::size_t number) { return std::exchange(lastTag_[number], tag_) != tag_; }

 private:
  using Name = std::pair<std::string, std::string>;

  struct Less {
    using is_transparent = void;
    template <typename A, typename B>
    bool operator()(const A& a, const B& b) const {
      const std::string_view localNames[] = {a.second, b.second};
      if (localNames[0] != localNames[1]) return localNames[0] < localNames[1];
      return std::string_view(a.first) < std::string_view(b.first);
    }
  };

  std::map<Name, std::size_t, Less> numbers_;  // Ordered: no document can make it slow.
  std::vector<std::uint64_t> lastTag_{0};      // By number: the last tag that had it.
  std::uint64_t tag_ = 1;
  std::size_t octets_ = 0;
};

}  // namespace Tavrin::xml
