#include "X891NaiveValues.h"

#include <cstdint>
#include <cstdio>
#include <stdexcept>

#include "EventLog.h"
#include "NaiveValues.h"

namespace x891 {

namespace {

unsigned octetAt(const std::string& octets, std::size_t i) {
  return static_cast<unsigned char>(octets.at(i));
}

/// 8-4-4-4-12 hexadecimal digits each, with a space between them.
Value uuids(const std::string& octets) {
  if (octets.size() % 16 != 0) throw std::runtime_error("half a uuid");
  std::string text;
  for (std::size_t i = 0; i < octets.size(); ++i) {
    const std::size_t position = i % 16;
    if (position == 0 && i > 0) text += ' ';
    if (position == 4 || position == 6 || position == 8 || position == 10) text += '-';
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02x", octetAt(octets, i));
    text += digits;
  }
  const std::string shown = EventLog::showValue(Tavrin::UUIDData());
  return {shown.substr(0, shown.find('{')), text, ""};
}

std::string utf8(std::uint32_t c) {
  const auto octet = [](std::uint32_t bits) { return static_cast<char>(bits); };
  if (c < 0x80) return {octet(c)};
  if (c < 0x800) return {octet(0xC0 | c >> 6), octet(0x80 | (c & 0x3F))};
  if (c < 0x10000) {
    return {octet(0xE0 | c >> 12), octet(0x80 | (c >> 6 & 0x3F)), octet(0x80 | (c & 0x3F))};
  }
  return {octet(0xF0 | c >> 18), octet(0x80 | (c >> 12 & 0x3F)), octet(0x80 | (c >> 6 & 0x3F)),
          octet(0x80 | (c & 0x3F))};
}

}  // namespace

Value valueOf(unsigned field, const std::string& octets) {
  if (field == 8) return uuids(octets);
  const naive::Value value = naive::valueOf(field, octets);
  return {value.holder, value.text, value.primitive};
}

std::string ofUTF16(const std::string& octets) {
  if (octets.size() % 2 != 0) throw std::runtime_error("half a unit of UTF-16");
  std::string text;
  for (std::size_t i = 0; i < octets.size(); i += 2) {
    std::uint32_t c = octetAt(octets, i) * 256 + octetAt(octets, i + 1);
    if (c >= 0xDC00 && c <= 0xDFFF) throw std::runtime_error("a low surrogate alone");
    if (c >= 0xD800 && c <= 0xDBFF) {
      i += 2;
      if (i == octets.size()) throw std::runtime_error("a high surrogate at the end");
      const std::uint32_t low = octetAt(octets, i) * 256 + octetAt(octets, i + 1);
      if (low < 0xDC00 || low > 0xDFFF) throw std::runtime_error("a high surrogate alone");
      c = 0x10000 + (c - 0xD800) * 0x400 + (low - 0xDC00);
    }
    text += utf8(c);
  }
  return text;
}

std::vector<std::string> charactersOf(const std::string& text) {
  std::vector<std::string> characters;
  std::size_t wanted = 0;
  for (const char c : text) {
    const unsigned octet = static_cast<unsigned char>(c);
    if (octet >= 0x80 && octet < 0xC0) {
      if (wanted == 0) throw std::runtime_error("no UTF-8: an octet too many");
      --wanted;
      characters.back() += c;
      continue;
    }
    if (wanted > 0 || octet > 0xF7) throw std::runtime_error("no UTF-8");
    wanted = octet < 0x80 ? 0 : octet < 0xE0 ? 1 : octet < 0xF0 ? 2 : 3;
    characters.emplace_back(1, c);
  }
  if (wanted > 0) throw std::runtime_error("no UTF-8: the end");
  return characters;
}

std::string ofAlphabet(const std::string& alphabet, const std::string& octets) {
  const std::vector<std::string> characters = charactersOf(alphabet);
  if (characters.size() < 2) throw std::runtime_error("an alphabet of no choice");
  std::size_t width = 1;
  while ((std::size_t{1} << width) <= characters.size()) ++width;
  std::string bits;
  for (const char c : octets) {
    for (int bit = 7; bit >= 0; --bit) {
      bits += (static_cast<unsigned char>(c) >> bit & 1) != 0 ? '1' : '0';
    }
  }
  std::string text;
  std::size_t i = 0;
  for (; bits.size() - i >= width; i += width) {
    const std::string code = bits.substr(i, width);
    if (code.find('0') == std::string::npos) break;
    const unsigned long number = std::stoul(code, nullptr, 2);
    if (number >= characters.size()) throw std::runtime_error("no character of the alphabet");
    text += characters[number];
  }
  if (bits.find('0', i) != std::string::npos || bits.size() - i >= 8) {
    throw std::runtime_error("padding that is none");
  }
  return text;
}

}  // namespace x891
