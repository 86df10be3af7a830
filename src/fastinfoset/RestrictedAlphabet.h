#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Tavrin {

/// A restricted alphabet (X.891, 7.17.6): characters that are packed into as few bits each as let
/// the code of all ones free.
class RestrictedAlphabet {
 public:
  /// How many octets of memory are taken for each octet of the characters, at most.
  static constexpr std::uint64_t kMostCopies = 32;

  RestrictedAlphabet() = default;

  /// @param characters the characters in order, in valid UTF-8
  explicit RestrictedAlphabet(std::string_view characters);

  /// Whether there are at least two characters and at most 2^20, none of them twice.
  bool isValid() const { return isValid_; }

  /// How many octets the characters take that are packed into these, or nothing where a code stands
  /// for no character.
  std::optional<std::uint64_t> sizeOf(std::string_view octets) const;
  /// Unpacks characters of which the size is known.
  void decode(std::string_view octets, std::string& text) const;

 private:
  template <typename Take>
  bool forEachCode(std::string_view octets, Take take) const;
  std::string_view characterAt(std::size_t code) const;

  std::string characters_;
  std::vector<std::uint32_t> begins_;  // Where each character begins; behind them, the end.
  unsigned bits_ = 0;                  // Of a code.
  bool isValid_ = false;
};

/// The characters of the built-in alphabets (X.891, 9.1 and 9.2).
inline constexpr std::string_view kNumericCharacters = "0123456789-+.E ";
inline constexpr std::string_view kDateAndTimeCharacters = "0123456789-:TZ ";

}  // namespace Tavrin
