#include "ExactNumbers.h"

#include <charconv>
#include <cmath>
#include <type_traits>

#include "TakeOver.h"

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
  char digits[32];  // The longest double takes 24.
  text.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
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

}  // namespace

std::string ExactShortData::toString() const { return exactText(data_); }
std::unique_ptr<EncodedData> ExactShortData::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> ExactShortData::copyEncodedData() const {
  return std::make_unique<ExactShortData>(data_);
}

std::string ExactIntData::toString() const { return exactText(data_); }
std::unique_ptr<EncodedData> ExactIntData::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> ExactIntData::copyEncodedData() const {
  return std::make_unique<ExactIntData>(data_);
}

std::string ExactLongData::toString() const { return exactText(data_); }
std::unique_ptr<EncodedData> ExactLongData::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> ExactLongData::copyEncodedData() const {
  return std::make_unique<ExactLongData>(data_);
}

std::string ExactFloatData::toString() const { return exactText(data_); }
std::unique_ptr<EncodedData> ExactFloatData::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> ExactFloatData::copyEncodedData() const {
  return std::make_unique<ExactFloatData>(data_);
}

std::string ExactDoubleData::toString() const { return exactText(data_); }
std::unique_ptr<EncodedData> ExactDoubleData::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> ExactDoubleData::copyEncodedData() const {
  return std::make_unique<ExactDoubleData>(data_);
}

}  // namespace Tavrin
