#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

namespace agreement {

/// Random numbers that depend on their seed alone (SplitMix64); the distributions of the standard
/// library do not.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  std::uint64_t bits() {
    state_ += 0x9E3779B97F4A7C15U;
    std::uint64_t mixed = state_;
    mixed = (mixed ^ mixed >> 30) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EBU;
    return mixed ^ mixed >> 31;
  }

  /// A number below a limit.
  std::size_t below(std::size_t limit) { return static_cast<std::size_t>(bits() % limit); }
  /// True once in so many times.
  bool oneIn(std::size_t times) { return below(times) == 0; }

  template <typename Item>
  const Item& pick(const std::vector<Item>& items) {
    return items[below(items.size())];
  }
  std::size_t pick(std::initializer_list<std::size_t> items) {
    return items.begin()[below(items.size())];
  }

 private:
  std::uint64_t state_;
};

}  // namespace agreement
