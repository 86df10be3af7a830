#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <string_view>

// Hashes for tables that a document fills. If hashes could be predicted, a document could choose
// strings that all have the same one. So they depend on a secret of the process.

namespace Tavrin::xml {

/// What the hashes of this process depend on.
struct HashSecret {
  std::uint64_t begin;
  std::uint64_t factor;
};

/// The secret, chosen at random by the first call.
inline const HashSecret& hashSecret() {
  static const HashSecret secret = [] {
    std::random_device device;
    const auto randomBits = [&device] { return std::uint64_t{device()} << 32U | device(); };
    return HashSecret{randomBits(), randomBits() | 1U};
  }();
  return secret;
}

/// Both halves of a product, combined, so that every bit depends on all bits of both numbers.
inline std::uint64_t mix(std::uint64_t bits, std::uint64_t factor) {
  __extension__ using Product = unsigned __int128;
  const Product product = Product{bits} * factor;
  return static_cast<std::uint64_t>(product >> 64U) ^ static_cast<std::uint64_t>(product);
}

template <typename Word>
std::uint64_t wordAt(const char* octets) {
  Word word = 0;
  std::memcpy(&word, octets, sizeof word);
  return word;
}

/// The octets of a text that is shorter than a word. The first one has the lowest bits.
inline std::uint64_t shortWord(std::string_view text) {
  constexpr std::size_t kHalf = sizeof(std::uint32_t);
  const std::size_t size = text.size();
  const char* const octets = text.data();
  if (size >= kHalf) {
    // The halves may overlap; they agree where they do.
    const std::size_t second = size - kHalf;
    return wordAt<std::uint32_t>(octets) | wordAt<std::uint32_t>(octets + second) << 8 * second;
  }
  std::uint64_t word = 0;
  for (std::size_t i = 0; i < size; ++i) word |= wordAt<std::uint8_t>(octets + i) << 8 * i;
  return word;
}

/// The hash of a text after others.
/// @param begin the hash of what comes before, at first HashSecret::begin
inline std::uint64_t hashOf(std::string_view text, std::uint64_t begin, std::uint64_t factor) {
  constexpr std::size_t kWord = sizeof(std::uint64_t);
  const std::size_t size = text.size();
  std::uint64_t hash = mix(begin ^ size, factor);
  if (size < kWord) return mix(hash ^ shortWord(text), factor);
  const char* const octets = text.data();
  for (std::size_t i = 0; i < size - kWord; i += kWord) {
    hash = mix(hash ^ wordAt<std::uint64_t>(octets + i), factor);
  }
  return mix(hash ^ wordAt<std::uint64_t>(octets + size - kWord), factor);
}

/// The hash of several texts. It depends on where one ends and the next begins.
template <typename... Texts>
std::uint64_t saltedHash(const Texts&... texts) {
  auto [hash, factor] = hashSecret();
  ((hash = hashOf(texts, hash, factor)), ...);
  return hash;
}

}  // namespace Tavrin::xml
