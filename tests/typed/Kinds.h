#pragma once

#include <Tavrin/EncodingAlgorithms.h>

#include <gtest/gtest.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "EventLog.h"
#include "HexOctets.h"

/// The nine kinds of typed content, for tests that hold for each of them.
template <typename AlgorithmType, typename HolderType, std::size_t octetsOfItem>
struct Kind {
  using Algorithm = AlgorithmType;
  using Holder = HolderType;
  using Value = decltype(HolderType::data_);
  static constexpr std::size_t itemOctets = octetsOfItem;  ///< Of booleans without a meaning.
};

struct HexadecimalKind : Kind<Tavrin::HexadecimalEncodingAlgorithm, Tavrin::HexadecimalData, 1> {
  static constexpr char name[] = "Hexadecimal";
  static constexpr int index = 0;
};
struct Base64Kind : Kind<Tavrin::Base64EncodingAlgorithm, Tavrin::Base64Data, 1> {
  static constexpr char name[] = "Base64";
  static constexpr int index = 1;
};
struct ShortKind : Kind<Tavrin::ShortEncodingAlgorithm, Tavrin::ShortData, 2> {
  static constexpr char name[] = "Short";
  static constexpr int index = 2;
};
struct IntKind : Kind<Tavrin::IntEncodingAlgorithm, Tavrin::IntData, 4> {
  static constexpr char name[] = "Int";
  static constexpr int index = 3;
};
struct LongKind : Kind<Tavrin::LongEncodingAlgorithm, Tavrin::LongData, 8> {
  static constexpr char name[] = "Long";
  static constexpr int index = 4;
};
struct BooleanKind : Kind<Tavrin::BooleanEncodingAlgorithm, Tavrin::BooleanData, 1> {
  static constexpr char name[] = "Boolean";
  static constexpr int index = 5;
};
struct FloatKind : Kind<Tavrin::FloatEncodingAlgorithm, Tavrin::FloatData, 4> {
  static constexpr char name[] = "Float";
  static constexpr int index = 6;
};
struct DoubleKind : Kind<Tavrin::DoubleEncodingAlgorithm, Tavrin::DoubleData, 8> {
  static constexpr char name[] = "Double";
  static constexpr int index = 7;
};
struct CDATAKind : Kind<Tavrin::CDATAEncodingAlgorithm, Tavrin::CDATAData, 1> {
  static constexpr char name[] = "CDATA";
  static constexpr int index = 9;
};

using StringKinds = ::testing::Types<HexadecimalKind, Base64Kind, CDATAKind>;
using NumberKinds = ::testing::Types<ShortKind, IntKind, LongKind, FloatKind, DoubleKind>;
using AllKinds = ::testing::Types<HexadecimalKind, Base64Kind, ShortKind, IntKind, LongKind,
                                  BooleanKind, FloatKind, DoubleKind, CDATAKind>;

/// Names the cases of a typed test.
struct KindNames {
  template <typename K>
  static std::string GetName(int) {
    return K::name;
  }
};

template <typename K>
inline constexpr bool isString = std::is_same_v<typename K::Value, std::string>;
template <typename K>
inline constexpr bool isBoolean = std::is_same_v<typename K::Value, std::vector<bool>>;

/// A number of items, all bits of which vary. Those of floating-point numbers include NaNs.
template <typename K>
typename K::Value someItems(std::size_t count) {
  typename K::Value items;
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint64_t bits = (i + 1) * 0x9E3779B97F4A7C15U;
    if constexpr (isString<K>) {
      items.push_back(static_cast<char>(bits >> 56));
    } else if constexpr (isBoolean<K>) {
      items.push_back(bits >> 63 != 0);
    } else if constexpr (std::is_same_v<K, FloatKind>) {
      items.push_back(std::bit_cast<float>(static_cast<std::uint32_t>(bits >> 32)));
    } else if constexpr (std::is_same_v<K, DoubleKind>) {
      items.push_back(std::bit_cast<double>(bits));
    } else if constexpr (std::is_same_v<K, ShortKind>) {
      items.push_back(static_cast<short>(bits >> 48));
    } else if constexpr (std::is_same_v<K, IntKind>) {
      items.push_back(static_cast<std::int32_t>(bits >> 32));
    } else {
      items.push_back(static_cast<long>(bits));
    }
  }
  return items;
}

/// Big-endian octets of a number of up to 64 bits.
inline std::string bigEndian(std::uint64_t bits, std::size_t count) {
  std::string octets;
  for (std::size_t k = count; k-- > 0;) octets += static_cast<char>(bits >> (8 * k) & 0xFF);
  return octets;
}

/// The octets of encoded data, without what introduces it. Two values that differ in any bit differ
/// here as well, those of NaNs too.
template <typename K>
std::string dataOctets(const typename K::Value& value) {
  if constexpr (isString<K>) {
    return value;
  } else if constexpr (isBoolean<K>) {
    std::string bits;
    for (const bool item : value) bits += item ? '1' : '0';
    std::size_t unused = 0;
    for (; (4 + bits.size()) % 8 != 0; ++unused) bits += '0';
    for (unsigned mask = 1; mask <= 8; mask <<= 1) bits.insert(0, unused & mask ? "1" : "0");
    std::string octets;
    for (std::size_t i = 0; i < bits.size(); i += 8) {
      octets += static_cast<char>(std::stoul(bits.substr(i, 8), nullptr, 2));
    }
    return octets;
  } else {
    std::string octets;
    for (const auto item : value) {
      if constexpr (std::is_same_v<K, FloatKind>) {
        octets += bigEndian(std::bit_cast<std::uint32_t>(item), K::itemOctets);
      } else if constexpr (std::is_same_v<K, DoubleKind>) {
        octets += bigEndian(std::bit_cast<std::uint64_t>(item), K::itemOctets);
      } else {
        octets += bigEndian(static_cast<std::uint64_t>(item), K::itemOctets);
      }
    }
    return octets;
  }
}

/// How a value shows in a failure; no two values show alike, except a 64-bit element of ints that
/// has the same low half as another.
template <typename K>
std::string showData(const typename K::Value& value) {
  return EventLog::showOctets(dataOctets<K>(value));
}

/// The octets of a value in content (chunk) or in an attribute.
template <typename K>
std::string encoded(bool chunk, const typename K::Value& value) {
  typename K::Algorithm algorithm;
  std::ostringstream out;
  algorithm.encodeToOutputStream(chunk, value, out);
  return out.str();
}

/// Lets an algorithm decode, and gives its holder.
template <typename K>
typename K::Holder& holderOf(typename K::Algorithm& algorithm, std::uint32_t length,
                             std::istream& in) {
  return dynamic_cast<typename K::Holder&>(algorithm.decodeFromInputStream(length, in));
}

/// Decodes a whole string of octets.
template <typename K>
typename K::Value decoded(const std::string& octets) {
  typename K::Algorithm algorithm;
  std::istringstream in(octets);
  return holderOf<K>(algorithm, static_cast<std::uint32_t>(octets.size()), in).data_;
}

/// What a stream still holds.
inline std::string rest(std::istream& in) {
  return std::string(std::istreambuf_iterator<char>(in), {});
}
