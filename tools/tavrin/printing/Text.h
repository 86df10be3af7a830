#pragma once

#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// Appends a text as a JSON string (RFC 8259, section 7).
///
/// Everything that a terminal or another program could take for a line break, a control or a change
/// of direction is written as \uXXXX, so the result stands on one line and shows as it is. An octet
/// NN that is not part of valid UTF-8 becomes \uDCNN, which no valid text holds: nothing is lost.
void appendQuoted(std::string& out, std::string_view text);

/// Appends a character as UTF-8.
void appendUTF8(std::string& out, char32_t code);

/// Appends a JSON value: a number in its shortest form that reads back as the same number, "nan",
/// "inf" or "-inf" in quotes, true or false.
void appendValue(std::string& out, bool value);
void appendValue(std::string& out, float value);
void appendValue(std::string& out, double value);
template <std::signed_integral Integer>
void appendValue(std::string& out, Integer value) {
  out += std::to_string(value);
}

/// A text on one line that shows as it is, whole: what may break the line, control a terminal or
/// turn the direction of text stands as \n, \r, \t, \xNN or \uXXXX, and an octet that is not part
/// of valid UTF-8 as \xNN.
std::string escaped(std::string_view text);

/// A line of a help text: a term, and in a column of its own what it means.
std::string helpRow(std::string_view term, std::string_view meaning);

/// Names with commas between them.
std::string listed(const std::vector<std::string>& names);
/// How many octets the first character of a text takes; 1 for an octet that is not part of valid
/// UTF-8.
std::size_t characterSize(std::string_view text);
/// How many columns a text that shows as it is takes on a terminal.
std::size_t columnsOf(std::string_view text);

/// A message for people, which may hold names of any length: as escaped, and the middle is left out
/// of words longer than 200 characters, and of the whole if that is still longer than 1000.
std::string forMessage(std::string_view text);

}  // namespace tool
