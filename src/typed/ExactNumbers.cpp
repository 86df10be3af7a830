#include "ExactNumbers.h"

namespace Tavrin {

template <typename Holder>
std::string ExactNumbers<Holder>::toString() const {
  std::string text;
  std::array<char, 16 * (1 + kLongestNumber)> some{};
  char* end = some.data();
  for (const auto number : this->data_) {
    if (static_cast<std::size_t>(some.data() + some.size() - end) <= kLongestNumber) {
      text.append(some.data(), end);
      end = some.data();
    }
    *end++ = ' ';
    end = printExactly(end, number);
  }
  text.append(some.data(), end);
  if (!text.empty()) text.erase(0, 1);
  return text;
}

template class ExactNumbers<ShortData>;
template class ExactNumbers<IntData>;
template class ExactNumbers<LongData>;
template class ExactNumbers<FloatData>;
template class ExactNumbers<DoubleData>;

}  // namespace Tavrin
