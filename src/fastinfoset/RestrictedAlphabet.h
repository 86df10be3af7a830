#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Tavrin {

/// A restricted alphabet (X.891, 7.17.6). The code of a character has the fewest bits with which
/// the code of all ones is not used: that one means padding.
class RestrictedAlphabet {
 public:
  /// How many octets of memory an alphabet needs at most for each octet of its characters.
  static constexpr std::uint64_t kMostCopies = 32;

  RestrictedAlphabet() = default;

  /// @param characters the characters in order, in valid UTF-8
  explicit RestrictedAlphabet(std::string_view characters);

  /// Whether there are at least two characters and at most 2^20, none of them twice.
  bool isValid() const { return isValid_; }

  /// The size of the decoded text in octets, or nothing where a code is that of no character.
  std::optional<std::uint64_t> sizeOf(std::string_view octets) const;
  /// Decodes octets for which sizeOf has returned a size.
  void decode(std::string_view octets, std::string& text) const;

 private:
  template <typename Visit>
  bool forEachCode(std::string_view octets, Visit visit) const;
  std::string_view characterAt(std::size_t code) const;

  std::string characters_;
  std::vector<std::uint32_t> begins_;  // Where each character begins; then the end of the last.
  unsigned bits_ = 0;                  // Of a code.
  bool isValid_ = false;
};

/// The characters of the built-in alphabets (X.891, 9.1 and 9.2).
inline constexpr std::string_view kNumericCharacters = "0123456789-+.E ";
inline constexpr std::string_view kDateAndTimeCharacters = "0123456789-:TZ ";

}  // namespace Tavrin
