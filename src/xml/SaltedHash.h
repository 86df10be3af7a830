#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

// Hashes for tables that a document fills. Were the places of entries known beforehand, a document
// could choose strings that all want the same one. So the process has a secret.

namespace Tavrin::xml {

/// The numbers that the hashes of this process begin with.
struct HashSecret {
  std::uint64_t begin;
  std::uint64_t factor;
};

/// Chosen at random when it is first asked for.
const HashSecret& hashSecret();

/// Both halves of a product, so that every bit depends on all bits above and below it.
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

/// The octets of a text of less than a word, the first one lowest.
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

}  // namespace Tavrin::xml
