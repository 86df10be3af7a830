#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

namespace tool {

/// Recognises the text of a number that prints exactly where it is short, as that of most
/// measurements is, eight octets at a time. That takes less than half of the time of printing.
template <typename Number>
class ShortNumbers {
 public:
  /// How long the text of a number is, if it stands somewhere, with a blank behind it.
  /// @param end of the octets that may be looked at
  /// @return 0 where it does not, or only printing would tell
  static std::size_t sizeAt(const char* at, const char* end, Number number) {
    if constexpr (std::endian::native != std::endian::little) return 0;
    if (end - at < kLookedAt) return 0;
    // Nothing branches on the sign, which nobody can predict. The text is not empty, so that the
    // search for the blank need not wait for the sign.
    const std::size_t sign = *at == '-' ? 1 : 0;
    const std::uint64_t blank = firstOf(' ', load(at + 1));
    std::size_t size = 1 + sizeof blank;
    if (blank != 0) {
      size = 1 + indexOf(blank);
    } else if (at[size] != ' ') {
      return 0;
    }
    const std::size_t count = size - sign;
    if (count - 1 >= sizeof(std::uint64_t)) return 0;
    const std::uint64_t text = load(at + sign) << 8 * (sizeof text - count);
    return isTextOf(number, sign, text, count) ? size : 0;
  }

 private:
  /// A sign, the digits with a point, and a blank.
  static constexpr std::ptrdiff_t kLookedAt = 1 + sizeof(std::uint64_t) + 1;
  static constexpr std::array<double, 8> kPowers = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7};

  static std::uint64_t load(const char* from) {
    std::uint64_t octets = 0;
    std::memcpy(&octets, from, sizeof octets);
    return octets;
  }
  static constexpr std::uint64_t each(std::uint64_t octet) { return octet * 0x0101010101010101U; }
  /// The lowest bit that is set is the highest of the first octet that is this character; 0 where
  /// none is.
  static std::uint64_t firstOf(char c, std::uint64_t octets) {
    const std::uint64_t others = octets ^ each(static_cast<unsigned char>(c));
    return (others - each(1)) & ~others & each(0x80);
  }
  static std::size_t indexOf(std::uint64_t found) {
    return static_cast<std::size_t>(std::countr_zero(found)) / 8;
  }

  /// @param text  without the sign, in the last octets; the others are zeros
  /// @param count of them
  static bool isTextOf(Number number, std::size_t sign, std::uint64_t text, std::size_t count) {
    const auto first = static_cast<char>(text >> 8 * (sizeof text - count));
    const std::uint64_t point = firstOf('.', text);
    if (point == 0) {
      std::uint32_t integer = 0;
      return (first != '0' || count == 1) && parse(text, count, integer) &&
             isInteger(number, sign, integer);
    }
    if constexpr (std::is_floating_point_v<Number>) {
      constexpr int kLast = 8 * (sizeof text - 1);
      const auto last = static_cast<char>(text >> kLast);
      const std::size_t decimals = sizeof text - 1 - indexOf(point);
      // No zero could be left out, and there are digits on both sides of the point.
      if (last <= '0' || first < '0' || (first == '0' && count != decimals + 2)) return false;
      // The digits in front of the point close up.
      const std::uint64_t bit = point & -point;
      text = (text & -(bit << 1)) | (text & ((bit >> 7) - 1)) << 8;
      std::uint32_t digits = 0;
      return parse(text, count - 1, digits) && isFraction(number, sign, digits, decimals);
    }
    return false;
  }

  /// The number of some digits; false where they are none.
  static bool parse(std::uint64_t text, std::size_t count, std::uint32_t& number) {
    std::uint64_t values = text ^ each('0') << 8 * (sizeof text - count);
    if (((values + each(0x7F - 9)) | values) & each(0x80)) return false;
    constexpr std::uint64_t kPairs = 0x000000FF000000FF;
    values = values * 10 + (values >> 8);
    values = (values & kPairs) * 0x000F424000000064 + (values >> 16 & kPairs) * 0x0000271000000001;
    number = static_cast<std::uint32_t>(values >> 32);
    return true;
  }

  static bool isInteger(Number number, std::size_t sign, std::uint32_t integer) {
    if constexpr (std::is_floating_point_v<Number>) {
      constexpr std::uint32_t kMayHaveExponent = 100'000;
      return integer < kMayHaveExponent && isSame(number, sign, static_cast<Number>(integer));
    } else {
      const std::int64_t value = integer;
      return number == (sign != 0 ? -value : value) && (integer != 0 || sign == 0);
    }
  }
  static bool isFraction(Number number, std::size_t sign, std::uint32_t digits,
                         std::size_t decimals) {
    // So few digits are the shortest text of the number that they are read as. That number is the
    // quotient, as both parts are exact.
    constexpr std::uint32_t kTooMany =
        std::numeric_limits<Number>::digits10 < 8 ? 1'000'000 : 100'000'000;
    constexpr auto kMayHaveExponent = static_cast<Number>(1e-3);
    const auto size = static_cast<Number>(digits) / static_cast<Number>(kPowers[decimals]);
    return digits < kTooMany && size >= kMayHaveExponent && isSame(number, sign, size);
  }
  static bool isSame(Number number, std::size_t sign, Number size) {
    using Bits = std::conditional_t<sizeof(Number) == 4, std::uint32_t, std::uint64_t>;
    constexpr int kSign = 8 * sizeof(Bits) - 1;
    return std::bit_cast<Bits>(number) ==
           (std::bit_cast<Bits>(size) | static_cast<Bits>(sign) << kSign);
  }
};

}  // namespace tool
