#include "Text.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdio>

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

void appendValue(std::string& out, bool value) { out += value ? "true" : "false"; }

void appendValue(std::string& out, float value) { appendFloating(out, value); }

void appendValue(std::string& out, double value) { appendFloating(out, value); }

void appendQuoted(std::string& out, std::string_view text) {
  out += '"';
  std::size_t done = 0;  // What stands before this has been appended.
  for (std::size_t i = 0; i < text.size();) {
    const Character character = decodeFirst(text.substr(i));
    const char32_t code = character.code;
    const bool valid = character.size > 0;
    if (valid && code != '"' && code != '\\' && !mayBreakLine(code)) {
      i += character.size;
      continue;
    }
    out.append(text, done, i - done);
    if (!valid) {
      out += "\xEF\xBF\xBD";
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

std::string oneLine(std::string_view text) {
  std::string line;
  for (const char c : text) {
    const auto octet = static_cast<unsigned char>(c);
    if (octet >= 0x20 && octet != 0x7F) {
      line += c;
    } else if (!appendShortEscape(line, octet)) {
      appendCode(line, "\\x%02X", octet);
    }
  }
  return line;
}

}  // namespace tool
