#pragma once

#include <concepts>
#include <string>
#include <string_view>

namespace tool {

/// Appends a text as a JSON string (RFC 8259, section 7).
///
/// Everything that a terminal or another program could take for a line break or a control is
/// written as \uXXXX, so the result stands on one line. An octet that is not part of valid UTF-8
/// becomes U+FFFD.
void appendQuoted(std::string& out, std::string_view text);

/// Appends a JSON value: a number in its shortest form that reads back as the same number, "nan",
/// "inf" or "-inf" in quotes, true or false.
void appendValue(std::string& out, bool value);
void appendValue(std::string& out, float value);
void appendValue(std::string& out, double value);
template <std::signed_integral Integer>
void appendValue(std::string& out, Integer value) {
  out += std::to_string(value);
}

/// A text in which control characters show as \n, \r, \t or \xNN, so that it takes one line.
std::string oneLine(std::string_view text);

}  // namespace tool
