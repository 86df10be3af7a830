#pragma once

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>
#include <type_traits>

namespace tool {

/// Recognises the text of a number that prints exactly where it is short, as that of most
/// measurements is, eight octets at a time. That takes less than half of the time of printing.
template <typename Number>
class ShortNumbers {
 public:
  /// Whether the text of a number stands somewhere, with a blank behind it.
  /// @param at is moved to that blank
  /// @param end of the octets that may be looked at
  /// @return false also where only printing would tell
  static bool skip(const char*& at, const char* end, Number number) {
    if constexpr (std::endian::native != std::endian::little) return false;
    if (static_cast<std::size_t>(end - at) < kLookedAt) return false;
    const bool isNegative = *at == '-';
    // It is not empty, so that the search for the blank needs not wait for the sign.
    const std::size_t size =
        1 + static_cast<std::size_t>(std::countr_zero(firstOf(' ', load(at + 1)))) / 8;
    const std::size_t digits = size - (isNegative ? 1 : 0);
    if (digits == 0 || digits > sizeof(std::uint64_t) || at[size] != ' ') return false;
    const std::uint64_t text = load(at + (isNegative ? 1 : 0)) << 8 * (sizeof text - digits);
    if (!isTextOf(number, isNegative, text, digits)) return false;
    at += size;
    return true;
  }

 private:
  /// A sign, the digits with a point, and a blank.
  static constexpr std::size_t kLookedAt = 1 + sizeof(std::uint64_t) + 1;

  /// Numbers of more digits may be the same number in binary.
  static constexpr std::uint32_t kDigitsEnd =
      std::numeric_limits<Number>::digits10 < 8 ? 1'000'000 : 100'000'000;

  static constexpr std::array<double, 8> kPowers = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7};

  static std::uint64_t load(const char* from) {
    std::uint64_t octets = 0;
    std::memcpy(&octets, from, sizeof octets);
    return octets;
  }
  static constexpr std::uint64_t each(std::uint64_t octet) { return octet * 0x0101010101010101U; }
  /// The lowest bit that is set is in the first octet that is this character; 0 where none is.
  static std::uint64_t firstOf(char c, std::uint64_t octets) {
    const std::uint64_t others = octets ^ each(static_cast<unsigned char>(c));
    return (others - each(1)) & ~others & each(0x80);
  }

  /// @param text  in its last octets; the others are zeros
  /// @param count of octets
  static bool isTextOf(Number number, bool isNegative, std::uint64_t text, std::size_t count) {
    const std::uint64_t point = firstOf('.', text);
    const std::size_t front = sizeof text - count;
    std::size_t decimals = 0;
    if (point != 0) {
      const auto index = static_cast<std::size_t>(std::countr_zero(point)) / 8;
      decimals = sizeof text - 1 - index;
      // Those in front of the point close up.
      const std::uint64_t behind =
          index + 1 < sizeof text ? ~std::uint64_t{0} << 8 * (index + 1) : 0;
      text = (text & behind) | (text & ~behind & ~(std::uint64_t{0xFF} << 8 * index)) << 8;
      if (index == front || decimals == 0) return false;
      --count;
    }
    const std::uint64_t values = text ^ each('0') << 8 * (sizeof text - count);
    if (((values + each(0x7F - 9)) | values) & each(0x80)) return false;  // They are no digits.
    return isCanonical(values, count, decimals) &&
           isEqual(number, isNegative, join(values), decimals);
  }

  /// Whether no zero could be left out.
  static bool isCanonical(std::uint64_t values, std::size_t count, std::size_t decimals) {
    const auto first = values >> 8 * (sizeof values - count) & 0xFF;
    const auto last = values >> 8 * (sizeof values - 1);
    return (first != 0 || count == decimals + 1) && (last != 0 || decimals == 0);
  }

  /// The number of eight digits.
  static std::uint32_t join(std::uint64_t values) {
    constexpr std::uint64_t kPairs = 0x000000FF000000FF;
    values = values * 10 + (values >> 8);
    return static_cast<std::uint32_t>(
        ((values & kPairs) * 0x000F424000000064 + (values >> 16 & kPairs) * 0x0000271000000001) >>
        32);
  }

  static bool isEqual(Number number, bool isNegative, std::uint32_t digits, std::size_t decimals) {
    if constexpr (std::is_integral_v<Number>) {
      const std::int64_t value = isNegative ? -std::int64_t{digits} : std::int64_t{digits};
      return decimals == 0 && number == value && (digits != 0 || !isNegative);
    } else {
      if (digits == 0) return number == 0 && std::signbit(number) == isNegative && decimals == 0;
      // So few digits are the shortest text of the number that they are read as, and within these
      // bounds it has no exponent. The quotient is that number: both parts are exact.
      const double size = digits / kPowers[decimals];
      if (!(size >= 1e-3 && size < 1e5 && digits < kDigitsEnd)) return false;
      return static_cast<Number>(isNegative ? -size : size) == number;
    }
  }
};

}  // namespace tool
