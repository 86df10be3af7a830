#include "printing/Text.h"

// NOLINTBEGIN(modernize-deprecated-headers): uselocale and wcwidth are not of C.
#include <locale.h>
#include <wchar.h>
// NOLINTEND(modernize-deprecated-headers)

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <vector>

namespace tool {

namespace {

/// One character and the octets it takes; no octets where the text is not UTF-8.
struct Character {
  char32_t code;
  std::size_t size;
};

Character decodeFirst(std::string_view text) {
  const auto octet = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = octet(0);
  if (lead < 0x80) return {lead, 1};
  const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < size) return {0, 0};
  char32_t code = lead & (0x7FU >> size);
  for (std::size_t i = 1; i < size; ++i) {
    if ((octet(i) & 0xC0U) != 0x80) return {0, 0};
    code = code << 6 | (octet(i) & 0x3FU);
  }
  const bool overlong = (size == 3 && code < 0x800) || (size == 4 && code < 0x10000);
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  if (overlong || surrogate || code > 0x10FFFF) return {0, 0};
  return {code, size};
}

/// C0 and C1 controls, and the line and paragraph separators.
bool mayBreakLine(char32_t code) {
  return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x2028 || code == 0x2029;
}

/// The marks, embeddings, overrides and isolates of the bidirectional algorithm (Unicode Standard
/// Annex #9): text behind them may show in another order than it has.
bool turnsDirection(char32_t code) {
  return code == 0x061C || code == 0x200E || code == 0x200F || (code >= 0x202A && code <= 0x202E) ||
         (code >= 0x2066 && code <= 0x2069);
}

bool showsAsItIs(char32_t code) { return !mayBreakLine(code) && !turnsDirection(code); }

void appendCode(std::string& out, const char* format, char32_t code) {
  char digits[16];
  std::snprintf(digits, sizeof digits, format, static_cast<unsigned>(code));
  out += digits;
}

bool appendShortEscape(std::string& out, char32_t code) {
  switch (code) {
    case '\n':
      out += "\\n";
      return true;
    case '\r':
      out += "\\r";
      return true;
    case '\t':
      out += "\\t";
      return true;
    default:
      return false;
  }
}

// A message has the name of a file, that of what is wrong there, and some words.
constexpr std::size_t kLongestWord = 200;
constexpr std::size_t kLongestMessage = 1000;
constexpr std::size_t kLongestCharacter = 4;  // In octets.
constexpr std::string_view kEllipsis = "...";

/// Where each character of a text begins; an octet that is not part of valid UTF-8 counts as one.
std::vector<std::size_t> charactersOf(std::string_view text) {
  std::vector<std::size_t> begins;
  for (std::size_t i = 0; i < text.size();) {
    begins.push_back(i);
    i += std::max<std::size_t>(decodeFirst(text.substr(i)).size, 1);
  }
  return begins;
}

/// The beginning and the end of a text that has more than so many characters. Both matter: a place
/// stands at the end of the name of a file, and so does what tells one name from the next.
std::string withoutMiddle(std::string_view whole, std::size_t limit) {
  std::string text(whole);
  if (text.size() <= limit) return text;
  // Neither part takes more octets than this, however long the text is.
  const std::size_t enough = limit * kLongestCharacter;
  if (text.size() > 2 * enough) text.erase(enough, text.size() - 2 * enough);
  const std::vector<std::size_t> begins = charactersOf(text);
  if (begins.size() <= limit) return text;
  const std::size_t kept = limit - kEllipsis.size();
  const std::size_t behind = begins[begins.size() - kept / 2];
  const std::size_t front = begins[kept - kept / 2];
  return text.replace(front, behind - front, kEllipsis);
}

template <typename Floating>
void appendFloating(std::string& out, Floating value) {
  if (!std::isfinite(value)) {
    out += std::isnan(value) ? "\"nan\"" : value > 0 ? "\"inf\"" : "\"-inf\"";
    return;
  }
  char digits[32];
  out.append(digits, std::to_chars(std::begin(digits), std::end(digits), value).ptr);
}

}  // namespace

void appendUTF8(std::string& out, char32_t code) {
  const auto append = [&out](char32_t octet) { out += static_cast<char>(octet); };
  if (code < 0x80) return append(code);
  if (code < 0x800) {
    append(0xC0 | code >> 6);
  } else if (code < 0x10000) {
    append(0xE0 | code >> 12);
    append(0x80 | (code >> 6 & 0x3F));
  } else {
    append(0xF0 | code >> 18);
    append(0x80 | (code >> 12 & 0x3F));
    append(0x80 | (code >> 6 & 0x3F));
  }
  append(0x80 | (code & 0x3F));
}

void appendValue(std::string& out, bool value) { out += value ? "true" : "false"; }

void appendValue(std::string& out, float value) { appendFloating(out, value); }

void appendValue(std::string& out, double value) { appendFloating(out, value); }

void appendQuoted(std::string& out, std::string_view text) {
  constexpr char32_t kStrayOctets = 0xDC00;  // And the octet.
  out += '"';
  std::size_t done = 0;  // What stands before this has been appended.
  for (std::size_t i = 0; i < text.size();) {
    const Character character = decodeFirst(text.substr(i));
    const char32_t code = character.code;
    const bool valid = character.size > 0;
    if (valid && code != '"' && code != '\\' && showsAsItIs(code)) {
      i += character.size;
      continue;
    }
    out.append(text, done, i - done);
    if (!valid) {
      appendCode(out, "\\u%04X", kStrayOctets + static_cast<unsigned char>(text[i]));
    } else if (code == '"' || code == '\\') {
      out += '\\';
      out += static_cast<char>(code);
    } else if (!appendShortEscape(out, code)) {
      appendCode(out, "\\u%04X", code);
    }
    i += valid ? character.size : 1;
    done = i;
  }
  out.append(text, done);
  out += '"';
}

std::string escaped(std::string_view text) {
  std::string line;
  for (std::size_t i = 0; i < text.size();) {
    const Character character = decodeFirst(text.substr(i));
    if (character.size == 0) {
      appendCode(line, "\\x%02X", static_cast<unsigned char>(text[i]));
    } else if (showsAsItIs(character.code)) {
      line.append(text, i, character.size);
    } else if (!appendShortEscape(line, character.code)) {
      appendCode(line, character.code < 0x80 ? "\\x%02X" : "\\u%04X", character.code);
    }
    i += std::max<std::size_t>(character.size, 1);
  }
  return line;
}

std::string helpRow(std::string_view term, std::string_view meaning) {
  constexpr std::size_t kMeaningColumn = 34;
  std::string row = "  ";
  row += term;
  row.resize(kMeaningColumn, ' ');
  row += meaning;
  return row += '\n';
}

std::string listed(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) list += (list.empty() ? "" : ", ") + name;
  return list;
}

std::size_t characterSize(std::string_view text) {
  return std::max<std::size_t>(decodeFirst(text).size, 1);
}

std::size_t columnsOf(std::string_view text) {
  // The program's own locale is "C", in which numbers look the same everywhere.
  static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  const locale_t before = locale ? uselocale(locale) : nullptr;
  std::size_t columns = 0;
  while (!text.empty()) {
    const Character character = decodeFirst(text);
    const int width = locale ? wcwidth(static_cast<wchar_t>(character.code)) : 1;
    columns += static_cast<std::size_t>(width < 0 ? 1 : width);
    text.remove_prefix(std::max<std::size_t>(character.size, 1));
  }
  if (before) uselocale(before);
  return columns;
}

std::string forMessage(std::string_view text) {
  std::string line;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of(" \""), text.size() - 1) + 1;
    line += withoutMiddle(text.substr(0, end), kLongestWord);
    text.remove_prefix(end);
  }
  return escaped(withoutMiddle(line, kLongestMessage));
}

}  // namespace tool
