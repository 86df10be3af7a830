#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <istream>
#include <ostream>
#include <string>
#include <vector>

#include "../io/SingleOctets.h"
#include "../io/WriteOctets.h"

/// The octets of arrays are read and written one by one, with the stream's single-octet operations;
/// those of strings as one block.
namespace Tavrin {

/// What counts in the place of an octet that the stream does not have.
inline constexpr unsigned char kMissingOctet = 0xFF;

/// A number of which the most significant octet comes first.
template <typename Bits>
Bits bigEndian(Bits bits) {
  static_assert(std::endian::native == std::endian::little);
  if constexpr (sizeof bits == 2) return __builtin_bswap16(bits);
  if constexpr (sizeof bits == 4) return __builtin_bswap32(bits);
  if constexpr (sizeof bits == 8) return __builtin_bswap64(bits);
}

/// Reads items, each of so many octets as Octets has.
/// @param itemOf turns Octets, in which they stand as they came, into an element of the vector
template <typename Octets, typename Item, typename ItemOf>
void readItems(std::uint32_t length, std::istream& stream, std::vector<Item>& items,
               ItemOf itemOf) {
  constexpr std::size_t kSize = sizeof(Octets);
  constexpr std::size_t kBlock = 8192;  // So much stays at hand for a processor.
  const std::size_t count = length / kSize;
  const SingleOctets source(stream);
  const auto itemAt = [itemOf](const void* octets) {
    Octets item{};
    std::memcpy(&item, octets, sizeof item);
    return itemOf(item);
  };
  items.clear();
  items.reserve(count);
  while (items.size() < count) {
    const std::size_t begin = items.size();
    const auto run = source.takeAtHand(std::min((count - begin) * kSize, kBlock), kSize);
    if (!run.empty()) {
      items.resize(begin + run.size() / kSize);
      const char* at = run.data();
      for (std::size_t i = begin; i < items.size(); ++i, at += kSize) items[i] = itemAt(at);
      continue;
    }
    std::array<unsigned char, kSize> octets{};
    bool isMissing = false;
    for (unsigned char& octet : octets) {
      const int got = source.get();
      isMissing = got == std::istream::traits_type::eof();
      octet = isMissing ? kMissingOctet : static_cast<unsigned char>(got);
    }
    items.push_back(itemAt(octets.data()));
    if (!isMissing) continue;
    // Once a call has failed, the others change nothing any more.
    octets.fill(kMissingOctet);
    items.resize(count, itemAt(octets.data()));
  }
}

/// Reads numbers of the unsigned type Bits, most significant octet first.
/// @param itemOf turns the bits into an element of the vector
template <typename Bits, typename Item, typename ItemOf>
void readNumbers(std::uint32_t length, std::istream& stream, std::vector<Item>& items,
                 ItemOf itemOf) {
  readItems<Bits>(length, stream, items, [itemOf](Bits bits) { return itemOf(bigEndian(bits)); });
}

/// Writes numbers of the unsigned type Bits, most significant octet first. Where the stream's put
/// has nothing to do but to take room in the buffer, that is done for many at once.
/// @param bitsOf turns an element of the vector into its bits
template <typename Bits, typename Item, typename BitsOf>
void writeNumbers(const std::vector<Item>& items, std::ostream& stream, BitsOf bitsOf) {
  constexpr std::size_t kSize = sizeof(Bits);
  const auto putInto = [bitsOf](Item item, char* octets) {
    const Bits bits = bigEndian<Bits>(bitsOf(item));
    std::memcpy(octets, &bits, sizeof bits);
  };
  for (std::size_t i = 0; i < items.size();) {
    if (isReady(stream)) {
      const Room room(*stream.rdbuf());
      const std::size_t count = std::min(items.size() - i, room.size() / kSize);
      char* at = room.begin();
      for (const std::size_t end = i + count; i < end; ++i, at += kSize) putInto(items[i], at);
      room.take(count * kSize);
      if (i == items.size()) return;
    }
    std::array<char, kSize> octets{};
    putInto(items[i++], octets.data());
    for (const char octet : octets) stream.put(octet);
  }
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
