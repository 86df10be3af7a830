#include "RestrictedAlphabet.h"

#include <algorithm>
#include <cstdint>

namespace Tavrin {

namespace {

constexpr std::size_t kMostCharacters = std::size_t{1} << 20;
constexpr std::size_t kLongestCharacter = 4;  // In UTF-8.

bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

}  // namespace

RestrictedAlphabet::RestrictedAlphabet(std::string_view characters) {
  if (characters.size() > kLongestCharacter * kMostCharacters) return;
  characters_ = characters;
  begins_.reserve(characters_.size() + 1);
  for (std::uint32_t i = 0; i < characters_.size(); ++i) {
    if (!isContinuation(characters_[i])) begins_.push_back(i);
  }
  const std::size_t count = begins_.size();
  begins_.push_back(static_cast<std::uint32_t>(characters_.size()));
  while (std::size_t{1} << bits_ <= count) ++bits_;

  std::vector<std::string_view> sorted;
  sorted.reserve(count);
  for (std::size_t i = 0; i < count; ++i) sorted.push_back(characterAt(i));
  std::ranges::sort(sorted);
  isValid_ =
      count >= 2 && count <= kMostCharacters && std::ranges::adjacent_find(sorted) == sorted.end();
}

std::string_view RestrictedAlphabet::characterAt(std::size_t code) const {
  return std::string_view(characters_).substr(begins_[code], begins_[code + 1] - begins_[code]);
}

/// Calls `visit` with the code of each character.
/// @return false for a code that no character has
template <typename Visit>
bool RestrictedAlphabet::forEachCode(std::string_view octets, Visit visit) const {
  const std::uint64_t end = (std::uint64_t{1} << bits_) - 1;  // All ones: padding begins.
  std::uint64_t pending = 0;
  unsigned pendingBits = 0;
  for (const char octet : octets) {
    pending = (pending << 8 | static_cast<unsigned char>(octet)) & 0xFFFFFFFFFF;
    pendingBits += 8;
    while (pendingBits >= bits_) {
      const std::uint64_t code = pending >> (pendingBits - bits_) & end;
      if (code == end) return true;
      if (code + 1 >= begins_.size()) return false;
      visit(code);
      pendingBits -= bits_;
    }
  }
  return true;
}

// Few octets may decode to many, so the caller checks the size before memory is allocated.
std::optional<std::uint64_t> RestrictedAlphabet::sizeOf(std::string_view octets) const {
  std::uint64_t size = 0;
  const auto add = [&](std::uint64_t code) { size += begins_[code + 1] - begins_[code]; };
  if (!forEachCode(octets, add)) return std::nullopt;
  return size;
}

void RestrictedAlphabet::decode(std::string_view octets, std::string& text) const {
  text.clear();
  forEachCode(octets, [&](std::uint64_t code) { text += characterAt(code); });
}

}  // namespace Tavrin
