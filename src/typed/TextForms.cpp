#include "TextForms.h"

#include <Tavrin/EncodingAlgorithms.h>

#include <array>
#include <cstdint>
#include <limits>
#include <system_error>
#include <type_traits>
#include <utility>
#include <vector>

#include "ExactNumbers.h"
#include "FromChars.h"

namespace Tavrin {

namespace {

constexpr const char* kOutOfRange = "is out of range";

/// By the number of the algorithm.
constexpr std::array<std::string_view, 10> kNames = {
    "hexadecimal", "base64", "short", "int", "long", "boolean", "float", "double", "uuid", "cdata"};

// --- Items: each appends one to a list, or tells why not ---

/// Removes a plus sign, which std::from_chars does not take.
std::string_view withoutPlus(std::string_view item) {
  const bool isPlus = item.size() > 1 && item[0] == '+' && item[1] != '-';
  return isPlus ? item.substr(1) : item;
}

template <typename Number>
const char* parseNumber(std::string_view digits, const char* whyNot, Number& number) {
  const char* const last = digits.data() + digits.size();
  const auto [end, failure] = fromChars(digits.data(), last, number);
  if (failure == std::errc::invalid_argument || end != last) return whyNot;
  return failure == std::errc() ? nullptr : kOutOfRange;
}

template <typename Number>
struct IntegerItem {
  template <typename List>
  static const char* append(std::string_view item, TextForm form, List& list) {
    constexpr const char* kWhyNot = "is no integer";
    Number number{};
    if (form == TextForm::canonical) {
      const bool isNegative = item.size() > 1 && item[0] == '-';
      if (item.size() > 1 && item[isNegative ? 1 : 0] == '0') return kWhyNot;
    } else {
      item = withoutPlus(item);
    }
    const char* const reason = parseNumber(item, kWhyNot, number);
    if (reason == nullptr) list.push_back(number);
    return reason;
  }
};

template <typename Number>
struct FloatItem {
  static const char* append(std::string_view item, TextForm form, std::vector<Number>& list) {
    Number number{};
    const char* const reason = parse(item, form, number);
    if (reason == nullptr) list.push_back(number);
    return reason;
  }

 private:
  static const char* parse(std::string_view item, TextForm form, Number& number) {
    constexpr const char* kWhyNot = "is no number";
    const std::string_view digits = form == TextForm::any ? withoutPlus(item) : item;
    // std::from_chars has other names for what is no finite number.
    const char first =
        digits.empty() ? '\0' : digits[digits[0] == '-' && digits.size() > 1 ? 1 : 0];
    if (first != '.' && (first < '0' || first > '9'))
      return parseName(item, number) ? nullptr : kWhyNot;
    if (const char* const reason = parseNumber(digits, kWhyNot, number)) return reason;
    if (form == TextForm::any || isPlain(item)) return nullptr;
    std::array<char, kLongestNumber> printed{};
    const char* const end = printExactly(printed.data(), number);
    const std::string_view text(printed.data(), static_cast<std::size_t>(end - printed.data()));
    return text == item ? nullptr : kWhyNot;
  }

  /// Whether the number prints like this in any case. So few digits come back, which no other
  /// number of so few digits does; and none of the zeros could be left out, so that no exponent is
  /// shorter.
  static bool isPlain(std::string_view item) {
    const std::string_view digits = item.substr(item[0] == '-' ? 1 : 0);
    const std::size_t point = std::min(digits.find('.'), digits.size());
    std::size_t count = digits.size();
    if (point < digits.size()) --count;
    if (digits[0] == '0') {
      if (digits.size() < 3 || point != 1 || digits[2] == '0') return false;
      --count;
    }
    if (count > std::numeric_limits<Number>::digits10) return false;
    if (digits[0] == '.' || digits.back() == '.' || digits.back() == '0') return false;
    return std::all_of(digits.begin(), digits.end(),
                       [](char c) { return c == '.' || (c >= '0' && c <= '9'); });
  }

  static bool parseName(std::string_view name, Number& number) {
    using Limits = std::numeric_limits<Number>;
    if (name == kInfinity) {
      number = Limits::infinity();
    } else if (name == kMinusInfinity) {
      number = -Limits::infinity();
    } else if (name == kNotANumber) {
      number = Limits::quiet_NaN();
    } else {
      return false;
    }
    return true;
  }
};

struct BooleanItem {
  static const char* append(std::string_view item, TextForm form, std::vector<bool>& list) {
    const bool isAny = form == TextForm::any;
    const bool isTrue = item == "true" || (isAny && item == "1");
    if (!isTrue && item != "false" && !(isAny && item == "0")) return "is no boolean";
    list.push_back(isTrue);
    return nullptr;
  }
};

/// The value of a hexadecimal digit, or -1.
int digitOf(char c, TextForm form) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return form == TextForm::any && c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

struct UUIDItem {
  static const char* append(std::string_view item, TextForm form, std::vector<UUID>& list) {
    constexpr const char* kWhyNot = "is no UUID";
    constexpr std::size_t kLength = 36;
    if (item.size() != kLength) return kWhyNot;
    UUID uuid{};
    std::size_t digits = 0;
    for (std::size_t i = 0; i < kLength; ++i) {
      if (i == 8 || i == 13 || i == 18 || i == 23) {
        if (item[i] != '-') return kWhyNot;
        continue;
      }
      const int digit = digitOf(item[i], TextForm::any);
      // A UUID prints in lower case.
      const bool isUpper = item[i] >= 'A' && item[i] <= 'F';
      if (digit < 0 || (isUpper && form == TextForm::canonical)) return kWhyNot;
      auto& octet = uuid[digits++ / 2];
      octet = static_cast<std::uint8_t>(octet << 4 | digit);
    }
    list.push_back(uuid);
    return nullptr;
  }
};

// --- Values: each tells what is wrong ---

/// Items with white space between; in canonical form, one space.
template <typename Item, typename List>
TextFault parseItems(std::string_view text, TextForm form, List& list) {
  const bool isAny = form == TextForm::any;
  for (std::size_t at = 0;; ++at) {
    if (isAny) {
      while (at < text.size() && isWhiteSpace(text[at])) ++at;
      if (at == text.size()) return {};
    }
    std::size_t end = at;
    while (end < text.size() && !isWhiteSpace(text[end])) ++end;
    const char* const reason = Item::append(text.substr(at, end - at), form, list);
    if (reason != nullptr) return {at, end - at, reason};
    if (end == text.size()) return {};
    if (!isAny && text[end] != ' ') return {end, 1, "does not separate items"};
    at = end;
  }
}

/// The length in octets of the character that begins at an offset.
std::size_t characterAt(std::string_view text, std::size_t at) {
  std::size_t end = at + 1;
  while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) ++end;
  return end - at;
}

TextFault parseHexadecimal(std::string_view text, TextForm form, std::string& octets) {
  constexpr const char* kNoDigit = "is no hexadecimal digit";
  for (std::size_t at = 0; at < text.size();) {
    if (form == TextForm::any && isWhiteSpace(text[at])) {
      ++at;
      continue;
    }
    const int high = digitOf(text[at], form);
    if (high < 0) return {at, characterAt(text, at), kNoDigit};
    if (at + 1 == text.size() || isWhiteSpace(text[at + 1])) return {at, 1, "is half an octet"};
    const int low = digitOf(text[at + 1], form);
    if (low < 0) return {at + 1, characterAt(text, at + 1), kNoDigit};
    octets += static_cast<char>(high << 4 | low);
    at += 2;
  }
  return {};
}

/// By octet: the value of a base64 digit, or -1.
constexpr std::array<int, 256> kBase64Digits = [] {
  std::array<int, 256> digits{};
  digits.fill(-1);
  int value = 0;
  for (unsigned char c = 'A'; c <= 'Z'; ++c) digits[c] = value++;
  for (unsigned char c = 'a'; c <= 'z'; ++c) digits[c] = value++;
  for (unsigned char c = '0'; c <= '9'; ++c) digits[c] = value++;
  digits['+'] = value++;
  digits['/'] = value++;
  return digits;
}();

/// Four digits stand for three octets; padding replaces one or two digits of the last four
/// (RFC 4648, section 4).
TextFault parseBase64(std::string_view text, TextForm form, std::string& octets) {
  std::size_t begin = 0;  // Of the group.
  unsigned count = 0;     // Digits of the group, and padding.
  unsigned padding = 0;
  std::uint32_t group = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    if (form == TextForm::any && isWhiteSpace(c)) continue;
    if (count == 0) {
      if (padding > 0) return {at, characterAt(text, at), "follows the padding"};
      begin = at;
    }
    const int digit = kBase64Digits[static_cast<unsigned char>(c)];
    if (c == '=' && count >= 2) {
      ++padding;
    } else if (digit < 0) {
      return {at, characterAt(text, at), "is no base64 digit"};
    } else if (padding > 0) {
      return {at, 1, "follows the padding"};
    }
    group = group << 6 | static_cast<std::uint32_t>(digit < 0 ? 0 : digit);
    if (++count < 4) continue;
    const unsigned present = 3 - padding;
    if ((group & ((1U << 8 * padding) - 1)) != 0) {
      return {begin, at + 1 - begin, "has bits that belong to no octet"};
    }
    for (unsigned i = 0; i < present; ++i) octets += static_cast<char>(group >> (16 - 8 * i));
    count = 0;
    group = 0;
  }
  if (count == 0) return {};
  return {begin, text.size() - begin, "is not four digits or their padding"};
}

/// Parses text of an algorithm into the value of its holder.
template <int algorithm, typename Value>
TextFault parseInto(std::string_view text, TextForm form, Value& value) {
  using namespace algorithms;
  if constexpr (algorithm == hexadecimal) return parseHexadecimal(text, form, value);
  if constexpr (algorithm == base64) return parseBase64(text, form, value);
  if constexpr (algorithm == shortInteger) {
    return parseItems<IntegerItem<std::int16_t>>(text, form, value);
  }
  if constexpr (algorithm == integer) {
    return parseItems<IntegerItem<std::int32_t>>(text, form, value);
  }
  if constexpr (algorithm == longInteger) {
    return parseItems<IntegerItem<std::int64_t>>(text, form, value);
  }
  if constexpr (algorithm == boolean) return parseItems<BooleanItem>(text, form, value);
  if constexpr (algorithm == floatNumber) return parseItems<FloatItem<float>>(text, form, value);
  if constexpr (algorithm == doubleNumber) return parseItems<FloatItem<double>>(text, form, value);
  if constexpr (algorithm == uuid) return parseItems<UUIDItem>(text, form, value);
  if constexpr (algorithm == cdata) value = text;
  return {};
}

template <int algorithm, typename Holder>
std::unique_ptr<EncodedData> parseAs(std::string_view text, TextForm form, TextFault& fault) {
  auto holder = std::make_unique<Holder>();
  fault = parseInto<algorithm>(text, form, holder->data_);
  if (fault.reason != nullptr) return nullptr;
  return holder;
}

template <int algorithm, typename Holder>
Holder fromTextAs(std::string_view text) {
  Holder holder;
  const TextFault fault = parseInto<algorithm>(text, TextForm::any, holder.data_);
  if (fault.reason == nullptr) return holder;
  throw EncodingAlgorithmException(describe(algorithm, text, fault));
}

}  // namespace

std::unique_ptr<EncodedData> parseValue(int algorithm, std::string_view text, TextForm form,
                                        TextFault& fault) {
  switch (algorithm) {
    case algorithms::hexadecimal:
      return parseAs<algorithms::hexadecimal, HexadecimalData>(text, form, fault);
    case algorithms::base64:
      return parseAs<algorithms::base64, Base64Data>(text, form, fault);
    case algorithms::shortInteger:
      return parseAs<algorithms::shortInteger, ExactShortData>(text, form, fault);
    case algorithms::integer:
      return parseAs<algorithms::integer, ExactIntData>(text, form, fault);
    case algorithms::longInteger:
      return parseAs<algorithms::longInteger, ExactLongData>(text, form, fault);
    case algorithms::boolean:
      return parseAs<algorithms::boolean, BooleanData>(text, form, fault);
    case algorithms::floatNumber:
      return parseAs<algorithms::floatNumber, ExactFloatData>(text, form, fault);
    case algorithms::doubleNumber:
      return parseAs<algorithms::doubleNumber, ExactDoubleData>(text, form, fault);
    case algorithms::uuid:
      return parseAs<algorithms::uuid, UUIDData>(text, form, fault);
    default:
      return parseAs<algorithms::cdata, CDATAData>(text, form, fault);
  }
}

std::string describe(int algorithm, std::string_view text, const TextFault& fault) {
  constexpr std::size_t kLongest = 40;
  std::size_t length = fault.length;
  if (length > kLongest) {
    length = kLongest;
    // Not within a character.
    while (length > 0 && (static_cast<unsigned char>(text[fault.offset + length]) & 0xC0) == 0x80) {
      --length;
    }
  }
  return "Invalid " + std::string(kNames[static_cast<std::size_t>(algorithm)]) + " text: \"" +
         std::string(text.substr(fault.offset, length)) + (length < fault.length ? "...\"" : "\"") +
         " at offset " + std::to_string(fault.offset) + ' ' + fault.reason;
}

int algorithmNamed(std::string_view name) {
  const auto* const found = std::find(kNames.begin(), kNames.end(), name);
  return found == kNames.end() ? -1 : static_cast<int>(found - kNames.begin());
}

std::string algorithmNames() {
  std::string names;
  for (const std::string_view name : kNames) {
    if (!names.empty()) names += ", ";
    names += name;
  }
  return names;
}

std::unique_ptr<EncodedData> encodedDataFromText(int algorithm, std::string_view text) {
  if (algorithm < 0 || algorithm > algorithms::cdata) {
    throw EncodingAlgorithmException("No built-in encoding algorithm has the number " +
                                     std::to_string(algorithm));
  }
  TextFault fault;
  auto value = parseValue(algorithm, text, TextForm::any, fault);
  if (value == nullptr) throw EncodingAlgorithmException(describe(algorithm, text, fault));
  return value;
}

std::unique_ptr<EncodedData> encodedDataFromText(std::string_view algorithm,
                                                 std::string_view text) {
  const int number = algorithmNamed(algorithm);
  if (number >= 0) return encodedDataFromText(number, text);
  throw EncodingAlgorithmException("Unknown encoding algorithm \"" + std::string(algorithm) +
                                   "\"; known are " + algorithmNames());
}

HexadecimalData HexadecimalEncodingAlgorithm::fromText(std::string_view text) {
  return fromTextAs<algorithms::hexadecimal, HexadecimalData>(text);
}
Base64Data Base64EncodingAlgorithm::fromText(std::string_view text) {
  return fromTextAs<algorithms::base64, Base64Data>(text);
}
ShortData ShortEncodingAlgorithm::fromText(std::string_view text) {
  return fromTextAs<algorithms::shortInteger, ShortData>(text);
}
IntData IntEncodingAlgorithm::fromText(std::string_view text) {
  return fromTextAs<algorithms::integer, IntData>(text);
}
LongData LongEncodingAlgorithm::fromText(std::string_view text) {
  return fromTextAs<algorithms::longInteger, LongData>(text);
}
BooleanData BooleanEncodingAlgorithm::fromText(std::string_view text) {
  return fromTextAs<algorithms::boolean, BooleanData>(text);
}
FloatData FloatEncodingAlgorithm::fromText(std::string_view text) {
  return fromTextAs<algorithms::floatNumber, FloatData>(text);
}
DoubleData DoubleEncodingAlgorithm::fromText(std::string_view text) {
  return fromTextAs<algorithms::doubleNumber, DoubleData>(text);
}
UUIDData UUIDEncodingAlgorithm::fromText(std::string_view text) {
  return fromTextAs<algorithms::uuid, UUIDData>(text);
}
CDATAData CDATAEncodingAlgorithm::fromText(std::string_view text) {
  return fromTextAs<algorithms::cdata, CDATAData>(text);
}

}  // namespace Tavrin
