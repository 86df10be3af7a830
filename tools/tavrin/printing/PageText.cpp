#include "printing/PageText.h"

#include <cstdio>

#include "printing/Text.h"

namespace tool {

std::string forPage(std::string_view text) {
  std::string result;
  for (const char c : forMessage(text)) {
    switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '"':
        result += "&quot;";
        break;
      case '\'':
        result += "&#39;";
        break;
      default:
        result += c;
    }
  }
  return result;
}

std::string grouped(std::uint64_t number) {
  std::string digits = std::to_string(number);
  for (std::size_t i = digits.size(); i > 3; i -= 3) digits.insert(i - 3, 1, ',');
  return digits;
}

std::string percent(std::uint64_t part, std::uint64_t whole) {
  char text[32];
  const double share =
      whole == 0 ? 0 : 100 * static_cast<double>(part) / static_cast<double>(whole);
  std::snprintf(text, sizeof text, "%.1f %%", share);
  return text;
}

const char* nameOf(OctetKind kind) {
  constexpr const char* kNames[kOctetKinds] = {"names",
                                               "values of attributes",
                                               "text",
                                               "typed content",
                                               "references to tables",
                                               "structure",
                                               "comments, instructions, document type"};
  return kNames[static_cast<std::size_t>(kind)];
}

std::string classOf(OctetKind kind) { return "k" + std::to_string(static_cast<std::size_t>(kind)); }

}  // namespace tool
