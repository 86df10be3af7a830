#pragma once

#include <Tavrin/TypedData.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <istream>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

#include "../io/SingleOctets.h"
#include "../io/WriteOctets.h"

/// Numbers and UUIDs are read, and numbers are written, by the stream's operations for single
/// octets; everything else is read and written as one block.
namespace Tavrin {

/// Replaces each octet that the stream does not have.
inline constexpr unsigned char kMissingOctet = 0xFF;

/// Converts between the native order of octets and the most significant octet first.
template <typename Bits>
Bits bigEndian(Bits bits) {
  static_assert(std::endian::native == std::endian::little);
  if constexpr (sizeof bits == 2) return __builtin_bswap16(bits);
  if constexpr (sizeof bits == 4) return __builtin_bswap32(bits);
  if constexpr (sizeof bits == 8) return __builtin_bswap64(bits);
}

/// Converts the octets of the stream to an item: an unsigned number to a number of the same bits; a
/// UUID needs no conversion.
template <typename Item, typename Encoded>
Item decodeItem(Encoded encoded) {
  if constexpr (std::is_same_v<Item, Encoded>) {
    return encoded;
  } else if constexpr (std::is_floating_point_v<Item>) {
    return std::bit_cast<Item>(bigEndian(encoded));
  } else {
    return Item{static_cast<std::make_signed_t<Encoded>>(bigEndian(encoded))};
  }
}

/// Converts an item to the octets of the stream. An integer loses the bits that do not fit.
template <typename Encoded, typename Item>
Encoded encodeItem(Item item) {
  if constexpr (std::is_floating_point_v<Item>) {
    return bigEndian(std::bit_cast<Encoded>(item));
  } else {
    return bigEndian(static_cast<Encoded>(item));
  }
}

/// Reads items of the size of Encoded.
template <typename Encoded, typename Item>
void readItems(std::uint32_t length, std::istream& stream, std::vector<Item>& items) {
  constexpr std::size_t kSize = sizeof(Encoded);
  constexpr std::size_t kBlock = 8192;  // Small enough for a processor's first cache.
  const std::size_t count = length / kSize;
  const SingleOctets source(stream);
  const auto itemAt = [](const void* octets) {
    Encoded encoded{};
    std::memcpy(&encoded, octets, kSize);
    return decodeItem<Item>(encoded);
  };
  items.clear();
  items.reserve(count);
  while (items.size() < count) {
    const std::size_t begin = items.size();
    const auto run = source.consumeAvailable(std::min((count - begin) * kSize, kBlock), kSize);
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
    // After a call has failed, all further calls fail.
    if (items.size() < count) source.getAfterFailure();
    octets.fill(kMissingOctet);
    items.resize(count, itemAt(octets.data()));
  }
}

/// Writes numbers, each in the size of Encoded. Where the stream's put would only append to its
/// buffer, many numbers are appended at once.
template <typename Encoded, typename Item>
void writeItems(const std::vector<Item>& items, std::ostream& stream) {
  constexpr std::size_t kSize = sizeof(Encoded);
  const auto putInto = [](Item item, char* octets) {
    const auto encoded = encodeItem<Encoded>(item);
    std::memcpy(octets, &encoded, kSize);
  };
  for (std::size_t i = 0; i < items.size();) {
    if (isReady(stream)) {
      const PutArea area(*stream.rdbuf());
      const std::size_t count = std::min(items.size() - i, area.size() / kSize);
      char* at = area.begin();
      for (const std::size_t end = i + count; i < end; ++i, at += kSize) putInto(items[i], at);
      area.advance(count * kSize);
      if (i == items.size()) return;
    }
    std::array<char, kSize> octets{};
    putInto(items[i++], octets.data());
    for (const char octet : octets) stream.put(octet);
  }
}

/// Reads octets into a string. Where the stream ends early, the rest of the string is what it was
/// before, or zero.
template <typename Encoded>
void readItems(std::uint32_t length, std::istream& stream, std::string& octets) {
  octets.resize(length);
  stream.read(octets.data(), static_cast<std::streamsize>(length));
}

/// Strings and UUIDs have the same octets in memory as in the stream.
template <typename Encoded>
void writeItems(const std::string& octets, std::ostream& stream) {
  stream.write(octets.data(), static_cast<std::streamsize>(octets.size()));
}
template <typename Encoded>
void writeItems(const std::vector<UUID>& items, std::ostream& stream) {
  stream.write(reinterpret_cast<const char*>(items.data()),
               static_cast<std::streamsize>(sizeof(UUID) * items.size()));
}

}  // namespace Tavrin
