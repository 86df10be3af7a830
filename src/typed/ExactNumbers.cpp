#include "ExactNumbers.h"

#include <charconv>
#include <cmath>

namespace Tavrin {

namespace {

template <typename Number>
void append(std::string& text, Number number) {
  if (std::isnan(number)) {
    text += "NaN";
  } else if (std::isinf(number)) {
    text += number < 0 ? "-INF" : "INF";
  } else {
    char digits[32];  // The longest double takes 24.
    text.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
  }
}

template <typename Number>
std::string exactText(const std::vector<Number>& numbers) {
  std::string text;
  for (const Number number : numbers) {
    if (!text.empty()) text += ' ';
    append(text, number);
  }
  return text;
}

template <typename Holder>
std::unique_ptr<EncodedData> takeOver(Holder& holder) {
  auto taken = std::make_unique<Holder>();
  taken->data_.swap(holder.data_);
  return taken;
}

}  // namespace

std::string ExactFloatData::toString() const { return exactText(data_); }
std::unique_ptr<EncodedData> ExactFloatData::clone() { return takeOver(*this); }

std::string ExactDoubleData::toString() const { return exactText(data_); }
std::unique_ptr<EncodedData> ExactDoubleData::clone() { return takeOver(*this); }

}  // namespace Tavrin
