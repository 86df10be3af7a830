#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "measuring/PathTree.h"

namespace tool {

/// The strings of documents that take the most octets, in bounded memory: whenever there are too
/// many, the half that took least is forgotten. If one of these comes again, what it took before is
/// missing, which is never more than `forgotten`.
class CostlyStrings {
 public:
  static constexpr std::size_t kMaximumStrings = 20000;
  static constexpr std::size_t kLongestString = 200;  ///< Of longer ones the beginning is kept.

  enum class Use { Element, Attribute, Value, Text };

  struct Entry {
    Use use;
    std::string text;    ///< Its beginning.
    std::uint64_t size;  ///< In octets of UTF-8.
    std::uint64_t times = 0;
    std::array<std::uint64_t, kEncodingCount> octets{};

    std::uint64_t sum() const { return octets[0] + octets[1]; }
  };

  /// Counts a use of a string; strings that agree in their length and beginning are one.
  /// @param text  its beginning, or more of it
  /// @param size  its length in octets
  /// @param times 1, or 0 for another part of the same use
  void add(Use use, std::string_view text, std::uint64_t size, std::uint64_t times,
           const std::array<std::uint64_t, kEncodingCount>& octets);

  /// Those that took most in both encodings together.
  std::vector<Entry> costliest(std::size_t number) const;
  std::uint64_t forgotten() const { return forgotten_; }

 private:
  void forgetHalf();

  std::unordered_map<std::string, Entry> entries_;
  std::uint64_t forgotten_ = 0;
  std::string key_;  // Kept for its storage.
};

}  // namespace tool
