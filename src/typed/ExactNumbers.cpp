#include "ExactNumbers.h"

namespace Tavrin {

template <typename Holder>
std::string ExactNumbers<Holder>::toString() const {
  std::string text;
  std::array<char, kLongestNumber> digits{};
  for (const auto number : this->data_) {
    if (!text.empty()) text += ' ';
    text.append(digits.data(), printExactly(digits.data(), number));
  }
  return text;
}

template class ExactNumbers<ShortData>;
template class ExactNumbers<IntData>;
template class ExactNumbers<LongData>;
template class ExactNumbers<FloatData>;
template class ExactNumbers<DoubleData>;

}  // namespace Tavrin
