#pragma once

#include <stdexcept>
#include <string>

/// Octets as a test writes them: hexadecimal pairs, and text in apostrophes. Blanks separate, and
/// count within apostrophes only: octets("3C 00 'a' F0").
inline std::string octets(const std::string& written) {
  const auto digit = [&written](std::size_t i) {
    const std::size_t value = std::string("0123456789ABCDEF").find(written.at(i));
    if (value == std::string::npos) throw std::invalid_argument("not octets: " + written);
    return static_cast<unsigned>(value);
  };
  std::string result;
  for (std::size_t i = 0; i < written.size();) {
    if (written[i] == ' ') {
      ++i;
    } else if (written[i] == '\'') {
      const std::size_t end = written.find('\'', i + 1);
      if (end == std::string::npos) throw std::invalid_argument("no end of text: " + written);
      result += written.substr(i + 1, end - i - 1);
      i = end + 1;
    } else {
      result += static_cast<char>(digit(i) << 4 | digit(i + 1));
      i += 2;
    }
  }
  return result;
}
