#include "octets/Content.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <concepts>
#include <iterator>

#include "printing/Text.h"

namespace tool::octets {

namespace {

using Kind = Content::Kind;

constexpr std::string_view kUpperDigits = "0123456789ABCDEF";
constexpr std::string_view kBase64 =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
/// Whole groups of three octets in a line of base64.
constexpr std::size_t kBase64Piece = 15;
/// Each boolean is a word.
constexpr std::size_t kBooleanPiece = 2;

unsigned octetAt(std::string_view octets, std::size_t i) {
  return static_cast<unsigned char>(octets[i]);
}

/// How many octets at the end are the beginning of a character that goes on.
std::size_t cutAtEnd(std::string_view text) {
  for (std::size_t back = 1; back <= std::min<std::size_t>(3, text.size()); ++back) {
    const unsigned octet = octetAt(text, text.size() - back);
    if (octet < 0x80) return 0;
    if (octet < 0xC0) continue;
    const std::size_t size = octet >= 0xF0 ? 4 : octet >= 0xE0 ? 3 : 2;
    return size > back ? back : 0;
  }
  return 0;
}

void appendWord(std::string& text, std::string_view word) {
  if (!text.empty()) text += ' ';
  text += word;
}

void appendNumber(std::string& text, std::integral auto number) {
  char digits[24];
  const auto end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
  appendWord(text, {digits, end});
}

void appendNumber(std::string& text, std::floating_point auto number) {
  if (std::isnan(number)) return appendWord(text, "NaN");
  if (std::isinf(number)) return appendWord(text, number > 0 ? "INF" : "-INF");
  char digits[32];
  const auto end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
  appendWord(text, {digits, end});
}

/// Numbers of big-endian octets.
template <typename Bits, typename Number>
void appendNumbers(std::string_view octets, std::string& text) {
  for (std::size_t i = 0; i + sizeof(Bits) <= octets.size(); i += sizeof(Bits)) {
    Bits bits = 0;
    for (std::size_t k = 0; k < sizeof(Bits); ++k) {
      bits = static_cast<Bits>(static_cast<std::uint64_t>(bits) << 8 | octetAt(octets, i + k));
    }
    appendNumber(text, std::bit_cast<Number>(bits));
  }
}

void appendPairs(std::string_view octets, std::string_view digits, std::string& text) {
  for (const char c : octets) {
    text += digits[static_cast<unsigned char>(c) >> 4];
    text += digits[static_cast<unsigned char>(c) & 0xF];
  }
}

void appendBase64(std::string_view octets, std::string& text) {
  for (std::size_t i = 0; i < octets.size(); i += 3) {
    const std::size_t count = std::min<std::size_t>(3, octets.size() - i);
    unsigned group = 0;
    for (std::size_t k = 0; k < 3; ++k)
      group = group << 8 | (k < count ? octetAt(octets, i + k) : 0);
    for (std::size_t k = 0; k < 4; ++k) {
      text += k <= count ? kBase64[group >> (18 - 6 * k) & 0x3F] : '=';
    }
  }
}

void appendUUIDs(std::string_view octets, std::string& text) {
  constexpr std::size_t kParts[] = {4, 2, 2, 2, 6};
  for (; octets.size() >= 16;) {
    std::string word;
    for (const std::size_t part : kParts) {
      if (!word.empty()) word += '-';
      appendPairs(octets.substr(0, part), kDigits, word);
      octets.remove_prefix(part);
    }
    appendWord(text, word);
  }
}

}  // namespace

// --- Alphabet ---

Alphabet::Alphabet(std::string_view characters) : characters_(characters) {
  for (std::uint32_t i = 0; i < characters_.size(); ++i) {
    if (!isContinuation(characters_[i])) begins_.push_back(i);
  }
  const std::size_t count = begins_.size();
  begins_.push_back(static_cast<std::uint32_t>(characters_.size()));
  while (std::size_t{1} << bits_ <= count) ++bits_;
}

std::string_view Alphabet::characterOf(std::uint64_t code) const {
  if (code + 1 >= begins_.size()) return {};
  return std::string_view(characters_).substr(begins_[code], begins_[code + 1] - begins_[code]);
}

// --- Content ---

Content Content::ofAlgorithm(unsigned algorithm) {
  constexpr Kind kKinds[] = {Kind::Hexadecimal, Kind::Base64, Kind::Short,  Kind::Int,  Kind::Long,
                             Kind::Boolean,     Kind::Float,  Kind::Double, Kind::UUID, Kind::UTF8};
  return Content(algorithm - 1 < std::size(kKinds) ? kKinds[algorithm - 1] : Kind::Hexadecimal);
}

std::size_t Content::sizeOfValue() const {
  switch (kind_) {
    case Kind::Short:
      return 2;
    case Kind::Int:
    case Kind::Float:
      return 4;
    case Kind::Long:
    case Kind::Double:
      return 8;
    case Kind::UUID:
      return 16;
    default:
      return 1;
  }
}

std::size_t Content::sizeOfPiece(std::string_view octets, bool isLast) const {
  std::size_t size = octets.size();
  if (kind_ == Kind::Boolean) return std::min(size, kBooleanPiece);
  if (isLast) return size;
  if (kind_ == Kind::UTF8) {
    size -= cutAtEnd(octets);
  } else if (kind_ == Kind::UTF16) {
    size -= size % 2;
    const bool isHigh = size >= 2 && (octetAt(octets, size - 2) & 0xFC) == 0xD8;
    if (isHigh) size -= 2;
  } else if (kind_ == Kind::Base64) {
    size = std::min(size, kBase64Piece);
  } else {
    size -= size % sizeOfValue();
  }
  return size > 0 ? size : octets.size();
}

void Content::append(std::string_view piece, bool isLast, std::string& text) {
  switch (kind_) {
    case Kind::UTF8:
      text += piece;
      return;
    case Kind::UTF16:
      return appendUTF16(piece, text);
    case Kind::Alphabet:
      return appendCharacters(piece, text);
    case Kind::Hexadecimal:
      return appendPairs(piece, kUpperDigits, text);
    case Kind::Base64:
      return appendBase64(piece, text);
    case Kind::Short:
      return appendNumbers<std::uint16_t, std::int16_t>(piece, text);
    case Kind::Int:
      return appendNumbers<std::uint32_t, std::int32_t>(piece, text);
    case Kind::Long:
      return appendNumbers<std::uint64_t, std::int64_t>(piece, text);
    case Kind::Boolean:
      return appendBooleans(piece, isLast, text);
    case Kind::Float:
      return appendNumbers<std::uint32_t, float>(piece, text);
    case Kind::Double:
      return appendNumbers<std::uint64_t, double>(piece, text);
    case Kind::UUID:
      return appendUUIDs(piece, text);
  }
}

/// What is no UTF-16 shows as the replacement character.
void Content::appendUTF16(std::string_view piece, std::string& text) const {
  constexpr char32_t kReplacement = 0xFFFD;
  const auto unitAt = [piece](std::size_t i) -> char32_t {
    return i + 1 < piece.size() ? octetAt(piece, i) << 8 | octetAt(piece, i + 1) : 0;
  };
  for (std::size_t i = 0; i < piece.size(); i += 2) {
    const char32_t unit = unitAt(i);
    const char32_t next = unitAt(i + 2);
    const bool isHigh = unit >= 0xD800 && unit <= 0xDBFF;
    const bool isPair = isHigh && next >= 0xDC00 && next <= 0xDFFF;
    if (isPair) {
      appendUTF8(text, 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
      i += 2;
    } else {
      const bool isCut = i + 1 == piece.size();
      appendUTF8(text, isCut || (unit >= 0xD800 && unit <= 0xDFFF) ? kReplacement : unit);
    }
  }
}

void Content::appendCharacters(std::string_view piece, std::string& text) {
  const std::uint64_t end = (std::uint64_t{1} << alphabet_->bits()) - 1;  // Padding begins.
  for (const char octet : piece) {
    pending_ = (pending_ << 8 | static_cast<unsigned char>(octet)) & 0xFFFFFFFFFF;
    pendingBits_ += 8;
    while (pendingBits_ >= alphabet_->bits() && !isOver_) {
      const std::uint64_t code = pending_ >> (pendingBits_ - alphabet_->bits()) & end;
      pendingBits_ -= alphabet_->bits();
      isOver_ = code == end;
      if (!isOver_) text += alphabet_->characterOf(code);
    }
    if (isOver_) return;
  }
}

/// The first four bits tell how many bits of the last octet are not used (10.7).
void Content::appendBooleans(std::string_view piece, bool isLast, std::string& text) {
  for (std::size_t i = 0; i < piece.size(); ++i) {
    const unsigned octet = octetAt(piece, i);
    unsigned bits = 8;
    if (!hasBegun_) {
      unusedBits_ = octet >> 4;
      bits = 4;
      hasBegun_ = true;
    }
    const bool isEnd = isLast && i + 1 == piece.size();
    const unsigned unused = isEnd ? std::min(unusedBits_, bits) : 0;
    for (unsigned bit = bits; bit-- > unused;) {
      appendWord(text, (octet >> bit & 1) != 0 ? "true" : "false");
    }
  }
}

}  // namespace tool::octets
