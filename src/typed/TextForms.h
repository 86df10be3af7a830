#pragma once

#include <Tavrin/TypedData.h>

#include <sstream>
#include <string>
#include <vector>

/// The texts of typed values: what a handler sees that knows nothing of typed content.
namespace Tavrin {

/// Two upper-case digits an octet.
std::string hexadecimalText(const std::string& octets);

/// Base64 (RFC 4648, section 4), padded, in one line.
std::string base64Text(const std::string& octets);

/// "true" and "false", separated by single spaces.
std::string booleansText(const std::vector<bool>& values);

/// Lower-case digits in the groups of RFC 4122, section 3, separated by single spaces.
std::string uuidsText(const std::vector<UUID>& values);

/// Inserts each element into a fresh stream, separated by single spaces. The stream takes the
/// global locale, as every new stream does.
template <typename Vector, typename Insert>
std::string separatedText(const Vector& values, Insert insert) {
  std::ostringstream text;
  bool first = true;
  for (const auto value : values) {
    if (!first) text << ' ';
    first = false;
    insert(text, value);
  }
  return text.str();
}

/// Signed decimals, separated by single spaces.
template <typename Integer>
std::string integersText(const std::vector<Integer>& values) {
  return separatedText(values, [](std::ostream& text, Integer value) { text << value; });
}

/// Numbers in general notation, separated by single spaces.
/// @param digits significant digits
template <typename Floating>
std::string floatingText(const std::vector<Floating>& values, int digits) {
  return separatedText(values, [digits](std::ostream& text, double value) {
    text.precision(digits);
    text << value;
  });
}

}  // namespace Tavrin
