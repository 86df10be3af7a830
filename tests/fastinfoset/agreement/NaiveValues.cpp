#include "NaiveValues.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <vector>

#include "EventLog.h"

namespace naive {

namespace {

std::uint64_t bigEndian(const std::string& octets, std::size_t begin, std::size_t count) {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < count; ++i) {
    number = number * 256 + static_cast<unsigned char>(octets[begin + i]);
  }
  return number;
}

/// A number of 2, 4 or 8 octets in two's complement.
long long signedNumber(std::uint64_t bits, std::size_t octets) {
  const bool negative = bits >> (8 * octets - 1) != 0;
  if (!negative) return static_cast<long long>(bits);
  const std::uint64_t complement = octets == 8 ? ~bits : ~bits & ((1ULL << (8 * octets)) - 1);
  return -static_cast<long long>(complement) - 1;
}

std::string printed(double number, int digits) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*g", digits, number);
  return text;
}

double singleOf(std::uint64_t bits) {
  const auto low = static_cast<std::uint32_t>(bits);
  float number = 0;
  std::memcpy(&number, &low, sizeof number);
  return static_cast<double>(number);
}

double doubleOf(std::uint64_t bits) {
  double number = 0;
  std::memcpy(&number, &bits, sizeof number);
  return number;
}

std::string base64(const std::string& octets) {
  const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string bits;
  for (const char c : octets) {
    for (int bit = 7; bit >= 0; --bit)
      bits += (static_cast<unsigned char>(c) >> bit & 1) ? '1' : '0';
  }
  while (bits.size() % 6 != 0) bits += '0';
  std::string text;
  for (std::size_t i = 0; i < bits.size(); i += 6) {
    text += alphabet[std::stoul(bits.substr(i, 6), nullptr, 2)];
  }
  while (text.size() % 4 != 0) text += '=';
  return text;
}

std::string hexadecimal(const std::string& octets) {
  std::string text;
  for (const char c : octets) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02X",
                  static_cast<unsigned>(static_cast<unsigned char>(c)));
    text += digits;
  }
  return text;
}

std::string listed(const std::vector<std::string>& items) {
  std::string text;
  for (const std::string& item : items) text += (text.empty() ? "" : " ") + item;
  return text;
}

Value integers(const std::string& holder, const std::string& event, const std::string& octets,
               std::size_t size) {
  if (octets.size() % size != 0) throw std::runtime_error("half an integer");
  std::vector<std::string> items;
  for (std::size_t i = 0; i < octets.size(); i += size) {
    items.push_back(std::to_string(signedNumber(bigEndian(octets, i, size), size)));
  }
  return {holder, listed(items), event + "(" + listed(items) + ")"};
}

/// @param digits those of the text, and those that keep every number apart
Value numbers(const std::string& holder, const std::string& event, const std::string& octets,
              std::size_t size, double (*numberOf)(std::uint64_t), int textDigits, int allDigits) {
  if (octets.size() % size != 0) throw std::runtime_error("half a number");
  std::vector<std::string> texts;
  std::vector<std::string> exact;
  for (std::size_t i = 0; i < octets.size(); i += size) {
    const double number = numberOf(bigEndian(octets, i, size));
    texts.push_back(printed(number, textDigits));
    exact.push_back(printed(number, allDigits));
  }
  return {holder, listed(texts), event + "(" + listed(exact) + ")"};
}

Value booleans(const std::string& octets) {
  if (octets.empty()) throw std::runtime_error("booleans of no octet");
  std::string bits;
  for (const char c : octets) {
    for (int bit = 7; bit >= 0; --bit)
      bits += (static_cast<unsigned char>(c) >> bit & 1) ? '1' : '0';
  }
  const std::size_t unused = std::stoul(bits.substr(0, 4), nullptr, 2);
  if (unused > 7 || 4 + unused > bits.size()) throw std::runtime_error("too many unused bits");
  const std::string used = bits.substr(4, bits.size() - 4 - unused);
  if (bits.substr(bits.size() - unused) != std::string(unused, '0')) {
    throw std::runtime_error("unused bits that are set");
  }
  std::vector<std::string> words;
  std::vector<std::string> digits;
  for (const char bit : used) {
    words.push_back(bit == '1' ? "true" : "false");
    digits.push_back(std::string(1, bit));
  }
  return {"BooleanData", listed(words), "booleans(" + listed(digits) + ")"};
}

}  // namespace

bool isBuiltIn(unsigned field) { return field <= 7 || field == 9; }

Value valueOf(unsigned field, const std::string& octets) {
  const std::string bytes = "bytes(" + EventLog::showOctets(octets) + ")";
  switch (field) {
    case 0:
      return {"HexadecimalData", hexadecimal(octets), bytes};
    case 1:
      return {"Base64Data", base64(octets), bytes};
    case 2:
      return integers("ShortData", "shorts", octets, 2);
    case 3:
      return integers("IntData", "ints", octets, 4);
    case 4:
      return integers("LongData", "longs", octets, 8);
    case 5:
      return booleans(octets);
    case 6:
      return numbers("FloatData", "floats", octets, 4, &singleOf, 6, 9);
    case 7:
      return numbers("DoubleData", "doubles", octets, 8, &doubleOf, 12, 17);
    case 9:
      return {"CDATAData", octets, bytes};
    default:
      throw std::runtime_error("no built-in algorithm " + std::to_string(field));
  }
}

}  // namespace naive
