#pragma once

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <type_traits>

#include "ShortDecimals.h"
#include "TakeOver.h"

namespace Tavrin {

/// Enough for the digits of any number; the longest double has 24.
inline constexpr std::size_t kLongestNumber = 32;

inline constexpr std::string_view kInfinity = "INF";
inline constexpr std::string_view kMinusInfinity = "-INF";
inline constexpr std::string_view kNotANumber = "NaN";

/// Writes the text of a number in its exact form.
/// @param digits room for kLongestNumber characters
/// @return the end of the text
template <typename Number>
char* printExactly(char* digits, Number number) {
  if constexpr (std::is_floating_point_v<Number>) {
    const auto print = [digits](std::string_view name) {
      return digits + name.copy(digits, name.size());
    };
    if (std::isnan(number)) return print(kNotANumber);
    if (std::isinf(number)) return print(number < 0 ? kMinusInfinity : kInfinity);
    if (char* const end = ShortDecimals<Number>::print(digits, number)) return end;
  }
  return std::to_chars(digits, digits + kLongestNumber, number).ptr;
}

/// Numbers whose text is read back as the same numbers, in every locale: integers in canonical form
/// (X.891, 10.4 to 10.6), floating-point numbers with the fewest digits that suffice, in the
/// lexical form of XML Schema (10.8, 10.9).
/// @tparam Holder the class that holds the numbers; its own text may lose digits
template <typename Holder>
class ExactNumbers final : public Holder {
 public:
  using Holder::Holder;
  std::string toString() const override;
  std::unique_ptr<EncodedData> clone() override { return takeOver(*this); }

 protected:
  std::unique_ptr<EncodedData> copyEncodedData() const override { return copyOf(*this); }
};

using ExactShortData = ExactNumbers<ShortData>;
using ExactIntData = ExactNumbers<IntData>;
using ExactLongData = ExactNumbers<LongData>;
using ExactFloatData = ExactNumbers<FloatData>;
using ExactDoubleData = ExactNumbers<DoubleData>;

}  // namespace Tavrin
