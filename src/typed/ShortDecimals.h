#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace Tavrin {

/// Numbers as measurements have them: few digits, neither very small nor very large. Their text is
/// found without the tables of a general algorithm, in half of the time.
template <typename Number>
class ShortDecimals {
 public:
  /// Writes the text that std::to_chars writes, if the number is such a one.
  /// @param to room for the sign, the point and kDigits + 1 digits
  /// @return the end of the text; null for any other number, where nothing is written
  static char* print(char* to, Number number) {
    const double size = std::fabs(static_cast<double>(number));
    // Beyond these bounds the text may have an exponent. A NaN is not within them.
    if (!(size >= 1e-3 && size < 1e5)) return nullptr;
    std::size_t decimals = kDigits;
    while (decimals > 0 && size >= kPowers[kDigits - decimals]) --decimals;

    // A decimal number of so few digits is the only one that is read as this number. The quotient
    // of two integers that a double holds is rounded once, so the comparison is exact.
    const double power = kPowers[decimals];
    constexpr double kHalf = 0.5;  // No number is a tie, so this rounds as std::lround, but faster.
    const auto digits = static_cast<std::uint64_t>(size * power + kHalf);
    const double value = static_cast<double>(digits) / power;
    if (static_cast<Number>(value) != static_cast<Number>(size)) return nullptr;

    const auto unit = static_cast<std::uint64_t>(power);
    if (number < 0) *to++ = '-';
    to = printInteger(to, digits / unit);
    return printFraction(to, digits % unit, decimals);
  }

 private:
  /// All decimal numbers of so many digits are different numbers in binary.
  static constexpr std::size_t kDigits = std::numeric_limits<Number>::digits10;

  static constexpr auto kPowers = [] {
    std::array<double, kDigits + 1> powers{};
    double power = 1;
    for (double& one : powers) {
      one = power;
      power *= 10;
    }
    return powers;
  }();

  static char* printInteger(char* to, std::uint64_t integer) {
    std::size_t size = 1;
    for (std::uint64_t bound = 10; integer >= bound; bound *= 10) ++size;
    printDigits(to, size, integer);
    return to + size;
  }

  static char* printFraction(char* to, std::uint64_t fraction, std::size_t decimals) {
    if (fraction == 0) return to;
    for (; fraction % 10 == 0; fraction /= 10) --decimals;
    *to++ = '.';
    printDigits(to, decimals, fraction);
    return to + decimals;
  }

  static void printDigits(char* to, std::size_t size, std::uint64_t integer) {
    for (; size > 0; integer /= 10) to[--size] = static_cast<char>('0' + integer % 10);
  }
};

}  // namespace Tavrin
