#include "ExactNumbers.h"

#include <charconv>
#include <cmath>
#include <type_traits>

namespace Tavrin {

namespace {

template <typename Number>
void append(std::string& text, Number number) {
  if constexpr (std::is_floating_point_v<Number>) {
    if (std::isnan(number)) {
      text += "NaN";
      return;
    }
    if (std::isinf(number)) {
      text += number < 0 ? "-INF" : "INF";
      return;
    }
  }
  char digits[32];  // The longest double has 24.
  text.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

}  // namespace

template <typename Holder>
std::string ExactNumbers<Holder>::toString() const {
  std::string text;
  for (const auto number : this->data_) {
    if (!text.empty()) text += ' ';
    append(text, number);
  }
  return text;
}

template class ExactNumbers<ShortData>;
template class ExactNumbers<IntData>;
template class ExactNumbers<LongData>;
template class ExactNumbers<FloatData>;
template class ExactNumbers<DoubleData>;

}  // namespace Tavrin
