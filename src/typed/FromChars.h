#pragma once

#include <locale.h>  // NOLINT(modernize-deprecated-headers): newlocale is not of C.

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string>
#include <system_error>
#include <type_traits>

namespace Tavrin {

/// Where a floating point number ends, in the syntax of std::chars_format::general; the beginning
/// where there is none. Names, such as "inf", are not taken.
inline const char* endOfNumber(const char* first, const char* last) {
  const auto digits = [last](const char* at) {
    while (at != last && *at >= '0' && *at <= '9') ++at;
    return at;
  };
  const char* const begin = first != last && *first == '-' ? first + 1 : first;
  const char* end = digits(begin);
  bool hasDigits = end != begin;
  if (end != last && *end == '.') {
    const char* const behind = digits(end + 1);
    hasDigits = hasDigits || behind != end + 1;
    end = behind;
  }
  if (!hasDigits) return first;
  if (end != last && (*end == 'e' || *end == 'E')) {
    const char* exponent = end + 1;
    if (exponent != last && (*exponent == '-' || *exponent == '+')) ++exponent;
    if (digits(exponent) != exponent) end = digits(exponent);
  }
  return end;
}

/// As std::from_chars for the digits of a floating point number, by the functions of C in the
/// locale of C, whatever that of the program.
template <typename Number>
std::from_chars_result fromCharsByC(const char* first, const char* last, Number& number) {
  const char* const end = endOfNumber(first, last);
  if (end == first) return {first, std::errc::invalid_argument};
  static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
  const std::string text(first, end);
  const int before = errno;
  errno = 0;
  Number result;
  if constexpr (std::is_same_v<Number, float>) {
    result = strtof_l(text.c_str(), nullptr, locale);
  } else {
    result = strtod_l(text.c_str(), nullptr, locale);
  }
  // A number that is smaller than the smallest normal one has ERANGE, too, but is one.
  const bool isOutOfRange = errno == ERANGE && (result == 0 || !std::isfinite(result));
  errno = before;
  if (isOutOfRange) return {end, std::errc::result_out_of_range};
  number = result;
  return {end, {}};
}

/// std::from_chars, also where the standard library has it for integers alone, as libc++ has before
/// its version 20.
template <typename Number>
std::from_chars_result fromChars(const char* first, const char* last, Number& number) {
#if defined(_LIBCPP_VERSION) && _LIBCPP_VERSION < 200000
  if constexpr (std::is_floating_point_v<Number>) {
    return fromCharsByC(first, last, number);
  } else {
    return std::from_chars(first, last, number);
  }
#else
  return std::from_chars(first, last, number);
#endif
}

}  // namespace Tavrin
