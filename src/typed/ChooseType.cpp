#include "ChooseType.h"

#include <Tavrin/EncodingAlgorithms.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <utility>
#include <vector>

#include "EncodedLength.h"
#include "ExactNumbers.h"
#include "TextForms.h"

namespace Tavrin {

namespace {

std::unique_ptr<EncodedData> parseExactly(int algorithm, std::string_view text) {
  TextFault fault;
  return parseValue(algorithm, text, TextForm::canonical, fault);
}

/// The value, if it has so few octets that the text takes more, also with the number of the
/// algorithm.
TypedText ifSmaller(int algorithm, std::unique_ptr<EncodedData> data, std::size_t octets,
                    std::string_view text) {
  if (octets + 1 >= text.size()) return {};
  return {algorithm, std::move(data)};
}

template <typename Holder>
const auto& valueOf(const EncodedData& data) {
  return static_cast<const Holder&>(data).data_;
}

// --- Integers: parsed once, then kept in the smallest size ---

template <typename Number>
bool fit(const std::vector<long>& numbers) {
  const auto [least, most] = std::minmax_element(numbers.begin(), numbers.end());
  return *least >= std::numeric_limits<Number>::min() &&
         *most <= std::numeric_limits<Number>::max();
}

TypedText chooseInteger(std::unique_ptr<EncodedData> longs, std::string_view text) {
  const std::vector<long>& numbers = valueOf<LongData>(*longs);
  const std::size_t count = numbers.size();
  if (fit<std::int16_t>(numbers)) {
    auto shorts =
        std::make_unique<ExactShortData>(std::vector<short>(numbers.begin(), numbers.end()));
    return ifSmaller(algorithms::shortInteger, std::move(shorts), count * sizeof(std::int16_t),
                     text);
  }
  if (fit<std::int32_t>(numbers)) {
    return ifSmaller(algorithms::integer, std::make_unique<ExactIntData>(numbers),
                     count * sizeof(std::int32_t), text);
  }
  return ifSmaller(algorithms::longInteger, std::move(longs), count * sizeof(std::int64_t), text);
}

TypedText chooseNumber(std::string_view text) {
  if (auto longs = parseExactly(algorithms::longInteger, text)) {
    return chooseInteger(std::move(longs), text);
  }
  if (auto floats = parseExactly(algorithms::floatNumber, text)) {
    const std::size_t octets = valueOf<FloatData>(*floats).size() * sizeof(float);
    return ifSmaller(algorithms::floatNumber, std::move(floats), octets, text);
  }
  if (auto doubles = parseExactly(algorithms::doubleNumber, text)) {
    const std::size_t octets = valueOf<DoubleData>(*doubles).size() * sizeof(double);
    return ifSmaller(algorithms::doubleNumber, std::move(doubles), octets, text);
  }
  return {};
}

// --- Other values, which are always smaller than their text ---

TypedText chooseFrom(std::initializer_list<int> candidates, std::string_view text) {
  for (const int algorithm : candidates) {
    if (auto data = parseExactly(algorithm, text)) return {algorithm, std::move(data)};
  }
  return {};
}

bool isUUID(std::string_view text) {
  constexpr std::size_t kFirstHyphen = 8;
  return text.size() > kFirstHyphen && text[kFirstHyphen] == '-';
}

}  // namespace

bool mayHaveValue(char first) {
  return (first >= '0' && first <= '9') || (first >= 'A' && first <= 'Z') ||
         (first >= 'a' && first <= 'z') || first == '-' || first == '+' || first == '/';
}

TypedText chooseType(std::string_view text) {
  if (text.size() <= kLongestIndexedText || !mayHaveValue(text[0])) return {};
  const bool isOneItem = text.find(' ') == std::string_view::npos;
  if (isUUID(text)) {
    if (TypedText uuids = chooseFrom({algorithms::uuid}, text); uuids.data) return uuids;
  }
  // No number has so many digits.
  if (isOneItem) return chooseFrom({algorithms::hexadecimal, algorithms::base64}, text);
  if (text[0] == 't' || text[0] == 'f') return chooseFrom({algorithms::boolean}, text);
  return chooseNumber(text);
}

}  // namespace Tavrin
