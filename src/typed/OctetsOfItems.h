#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <istream>
#include <ostream>
#include <string>
#include <vector>

/// Octets of arrays, read and written in blocks of a fixed size.
namespace Tavrin {

inline constexpr std::size_t kBlockOctets = 8192;

/// What counts in the place of an octet that the stream does not have.
inline constexpr unsigned char kMissingOctet = 0xFF;

/// Reads a number of octets block by block and hands each block on. A block in which octets are
/// missing is the last.
/// @param take called as take(const unsigned char* octets, std::size_t count)
template <typename Take>
void readBlocks(std::uint64_t length, std::istream& stream, Take take) {
  unsigned char block[kBlockOctets];
  while (length > 0) {
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(length, sizeof block));
    stream.read(reinterpret_cast<char*>(block), static_cast<std::streamsize>(wanted));
    const auto got = static_cast<std::size_t>(stream.gcount());
    std::fill(block + got, block + wanted, kMissingOctet);
    take(block, wanted);
    if (got < wanted) return;
    length -= wanted;
  }
}

/// A number of which the most significant octet comes first.
template <typename Bits>
Bits bigEndian(const unsigned char* octets) {
  static_assert(std::endian::native == std::endian::little);
  Bits bits = 0;
  std::memcpy(&bits, octets, sizeof bits);
  if constexpr (sizeof bits == 2) return __builtin_bswap16(bits);
  if constexpr (sizeof bits == 4) return __builtin_bswap32(bits);
  if constexpr (sizeof bits == 8) return __builtin_bswap64(bits);
}

/// Reads numbers of the unsigned type Bits, most significant octet first.
/// @param itemOf turns the bits into an element of the vector
template <typename Bits, typename Item, typename ItemOf>
void readItems(std::uint32_t length, std::istream& stream, std::vector<Item>& items,
               ItemOf itemOf) {
  items.clear();
  items.reserve(length / sizeof(Bits));
  readBlocks(length, stream, [&](const unsigned char* octets, std::size_t count) {
    const std::size_t begin = items.size();
    items.resize(begin + (count + sizeof(Bits) - 1) / sizeof(Bits));
    for (std::size_t i = begin; i < items.size(); ++i, octets += sizeof(Bits)) {
      items[i] = itemOf(bigEndian<Bits>(octets));
    }
  });
  items.resize(length / sizeof(Bits), itemOf(static_cast<Bits>(~Bits{0})));
}

/// Writes numbers of the unsigned type Bits, most significant octet first.
/// @param bitsOf turns an element of the vector into its bits
template <typename Bits, typename Item, typename BitsOf>
void writeItems(const std::vector<Item>& items, std::ostream& stream, BitsOf bitsOf) {
  char block[kBlockOctets];
  std::size_t used = 0;
  for (const Item item : items) {
    const Bits bits = bitsOf(item);
    for (std::size_t k = sizeof(Bits); k-- > 0;) block[used++] = static_cast<char>(bits >> (8 * k));
    if (used == sizeof block) {
      stream.write(block, static_cast<std::streamsize>(used));
      used = 0;
    }
  }
  stream.write(block, static_cast<std::streamsize>(used));
}

/// Reads octets over a string. Where the stream ends early, the rest of the string stays as the
/// resizing left it.
inline void readOctets(std::uint32_t length, std::istream& stream, std::string& octets) {
  octets.resize(length);
  stream.read(octets.data(), static_cast<std::streamsize>(length));
}

inline void writeOctets(const std::string& octets, std::ostream& stream) {
  stream.write(octets.data(), static_cast<std::streamsize>(octets.size()));
}

}  // namespace Tavrin
