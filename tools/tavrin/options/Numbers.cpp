#include "options/Numbers.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace tool {

std::optional<double> numberFrom(std::string_view text) {
  if (text == "none") return std::numeric_limits<double>::infinity();
  constexpr std::string_view kUnits = "KMG";
  const std::size_t unit = text.empty() ? std::string_view::npos : kUnits.find(text.back());
  if (unit != std::string_view::npos) text.remove_suffix(1);
  const bool isDecimal = text.find_first_not_of("0123456789.") == std::string_view::npos &&
                         std::count(text.begin(), text.end(), '.') <= 1 &&
                         text.find_first_not_of('.') != std::string_view::npos;
  if (!isDecimal) return std::nullopt;
  // The locale is that of C; not every library has std::from_chars for such numbers.
  const double value = std::strtod(std::string(text).c_str(), nullptr);
  if (!std::isfinite(value)) return std::nullopt;
  return unit == std::string_view::npos ? value
                                        : std::ldexp(value, 10 * (static_cast<int>(unit) + 1));
}

std::uint64_t countFrom(double number) {
  return number < 0x1p64 ? static_cast<std::uint64_t>(number)
                         : std::numeric_limits<std::uint64_t>::max();
}

std::string whyNotNumber(const std::string& text) {
  return numberFrom(text) ? "" : "\"" + text + "\" is not a number, maybe with K, M or G behind it";
}

std::string whyNotCount(const std::string& text) {
  const bool isNumber = text.find_first_not_of("0123456789") == std::string::npos;
  const bool isPositive = text.find_first_not_of('0') != std::string::npos;
  return isNumber && isPositive ? "" : "\"" + text + "\" is not a number of at least 1";
}

}  // namespace tool
