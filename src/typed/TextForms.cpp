#include "TextForms.h"

#include <cstddef>
#include <cstdint>

namespace Tavrin {

std::string hexadecimalText(const std::string& octets) {
  static const char digits[] = "0123456789ABCDEF";
  std::string text;
  text.reserve(2 * octets.size());
  for (const char c : octets) {
    const auto octet = static_cast<unsigned char>(c);
    text += digits[octet >> 4];
    text += digits[octet & 0x0F];
  }
  return text;
}

std::string base64Text(const std::string& octets) {
  static const char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  constexpr std::size_t kGroup = 3;
  std::string text;
  text.reserve((octets.size() + kGroup - 1) / kGroup * 4);
  for (std::size_t i = 0; i < octets.size(); i += kGroup) {
    // Octets that the last group lacks count as zero; "=" stands for what only they would give.
    const std::size_t present = octets.size() - i < kGroup ? octets.size() - i : kGroup;
    std::uint32_t group = 0;
    for (std::size_t k = 0; k < kGroup; ++k) {
      group = group << 8 | (k < present ? static_cast<unsigned char>(octets[i + k]) : 0U);
    }
    text += alphabet[group >> 18];
    text += alphabet[group >> 12 & 63];
    text += present > 1 ? alphabet[group >> 6 & 63] : '=';
    text += present > 2 ? alphabet[group & 63] : '=';
  }
  return text;
}

std::string booleansText(const std::vector<bool>& values) {
  std::string text;
  appendSeparated(values, text, [&text](bool value) { text += value ? "true" : "false"; });
  return text;
}

std::string uuidsText(const std::vector<UUID>& values) {
  static const char digits[] = "0123456789abcdef";
  std::string text;
  for (const UUID& uuid : values) {
    if (!text.empty()) text += ' ';
    for (std::size_t i = 0; i < uuid.size(); ++i) {
      if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
      text += digits[uuid[i] >> 4];
      text += digits[uuid[i] & 0x0F];
    }
  }
  return text;
}

}  // namespace Tavrin
