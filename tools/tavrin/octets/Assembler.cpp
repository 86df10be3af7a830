#include "octets/Assembler.h"

#include <algorithm>
#include <utility>

#include "files/Failure.h"
#include "octets/Content.h"
#include "printing/Text.h"

namespace tool::octets {

namespace {

constexpr std::size_t kEnoughOctets = 65536;
constexpr std::size_t kMostOffsetDigits = 16;
constexpr char kColour = '\x1B';
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr char kTwoDigits[] = "an octet has two hexadecimal digits";
constexpr char kHalf[] = "half of a surrogate pair";
constexpr char kNotClosed[] = "the text that begins here is not closed on its line";

/// The value of a hexadecimal digit, or -1.
int valueOf(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  const auto lower = static_cast<char>(c | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

}  // namespace

void Assembler::failAt(std::uint64_t column, const std::string& message) const {
  throw Failure::document(name_ + ":" + std::to_string(line_) + ":" +
                              std::to_string(std::max<std::uint64_t>(column, 1)),
                          message);
}

void Assembler::put(char octet) {
  octets_ += octet;
  if (octets_.size() >= kEnoughOctets) {
    sink_(octets_);
    octets_.clear();
  }
}

void Assembler::read(std::string_view block) {
  if (!std::exchange(hasBegun_, true) && block.starts_with(kByteOrderMark)) {
    block.remove_prefix(kByteOrderMark.size());
  }
  while (!block.empty()) {
    if (state_ == State::Comment) {
      // Most of a text is comments.
      block.remove_prefix(std::min(block.find('\n'), block.size()));
      if (block.empty()) return;
    }
    const char c = block.front();
    block.remove_prefix(1);
    if (!isContinuation(c)) ++column_;
    take(c);
    if (c == '\n') endLine();
  }
}

void Assembler::endLine() {
  ++line_;
  column_ = 0;
  state_ = State::Begin;
}

void Assembler::end() {
  switch (state_) {
    case State::Begin:
      ++column_;
      endFirst();
      if (state_ != State::Digit) break;
      [[fallthrough]];
    case State::Digit:
      failAt(digitColumn_, kTwoDigits);
    case State::Text:
    case State::Escape:
    case State::EscapeDigits:
      failAt(textColumn_, kNotClosed);
    default:
      break;
  }
  if (!octets_.empty()) sink_(octets_);
  octets_.clear();
}

void Assembler::take(char c) {
  switch (state_) {
    case State::Begin:
      return takeFirst(c);
    case State::Between:
      return takeBetween(c);
    case State::Digit:
      return takeSecondDigit(c);
    case State::Comment:
      return;
    case State::Text:
      return takeText(c);
    case State::Escape:
      return takeEscape(c);
    case State::EscapeDigits:
      return takeEscapeDigit(c);
    case State::Colour:
      if (c != '[') fail("expected octets, a text in quotes or a comment, not the control 1B");
      state_ = State::ColourParameters;
      return;
    case State::ColourParameters:
      if (c == 'm') {
        state_ = outsideColour_;
      } else if (c != ';' && (c < '0' || c > '9')) {
        fail("expected the end of a colour, which is \"m\"");
      }
      return;
  }
}

/// What stands before the octets of a line.
void Assembler::takeFirst(char c) {
  if (valueOf(c) >= 0 && first_.size() < kMostOffsetDigits) {
    first_ += c;
  } else if (c == ':' && !first_.empty()) {
    first_.clear();
    state_ = State::Between;
  } else if (first_.empty() && c == kColour) {
    outsideColour_ = state_;
    state_ = State::Colour;
  } else if (!first_.empty() || (c != ' ' && c != '\t')) {
    endFirst();
    if (state_ == State::Digit) return takeSecondDigit(c);
    takeBetween(c);
  }
}

/// The digits were no offset.
void Assembler::endFirst() {
  state_ = State::Between;
  for (std::size_t i = 0; i + 1 < first_.size(); i += 2) {
    put(static_cast<char>(valueOf(first_[i]) << 4 | valueOf(first_[i + 1])));
  }
  if (first_.size() % 2 != 0) {
    beginPair(first_.back(), column_ - 1);
  }
  first_.clear();
}

void Assembler::beginPair(char digit, std::uint64_t column) {
  digit_ = static_cast<unsigned>(valueOf(digit));
  digitColumn_ = column;
  state_ = State::Digit;
}

void Assembler::takeSecondDigit(char c) {
  if (valueOf(c) < 0) failAt(digitColumn_, kTwoDigits);
  put(static_cast<char>(digit_ << 4 | static_cast<unsigned>(valueOf(c))));
  state_ = State::Between;
}

void Assembler::takeBetween(char c) {
  if (valueOf(c) >= 0) return beginPair(c, column_);
  switch (c) {
    case ' ':
    case '\t':
    case '\r':
    case '\n':
      return;
    case '#':
      state_ = State::Comment;
      return;
    case '"':
      textColumn_ = column_;
      state_ = State::Text;
      return;
    case kColour:
      outsideColour_ = State::Between;
      state_ = State::Colour;
      return;
    default:
      fail("expected octets, a text in quotes or a comment");
  }
}

// --- Texts ---

void Assembler::takeText(char c) {
  if (c == '\\') {
    escapeColumn_ = column_;
    state_ = State::Escape;
    return;
  }
  checkNoHalf();
  if (c == '\n') failAt(textColumn_, kNotClosed);
  if (c == '"') {
    state_ = State::Between;
  } else {
    put(c);
  }
}

void Assembler::takeEscape(char c) {
  state_ = State::Text;
  if (c == 'x' || c == 'u') {
    isCode_ = c == 'u';
    digitsLeft_ = isCode_ ? 4 : 2;
    code_ = 0;
    state_ = State::EscapeDigits;
    return;
  }
  checkNoHalf();
  constexpr std::string_view kNames = "\"\\nrt";
  constexpr std::string_view kOctets = "\"\\\n\r\t";
  const std::size_t which = kNames.find(c);
  if (which == std::string_view::npos) {
    failAt(escapeColumn_, R"(expected \", \\, \n, \r, \t, \xNN or \uNNNN)");
  }
  put(kOctets[which]);
}

void Assembler::takeEscapeDigit(char c) {
  if (valueOf(c) < 0) {
    failAt(escapeColumn_, isCode_ ? "expected four hexadecimal digits behind \\u"
                                  : "expected two hexadecimal digits behind \\x");
  }
  code_ = code_ << 4 | static_cast<char32_t>(valueOf(c));
  if (--digitsLeft_ == 0) endEscape();
}

void Assembler::endEscape() {
  state_ = State::Text;
  const bool isLow = isCode_ && code_ >= 0xDC00 && code_ <= 0xDFFF;
  if (isLow && half_ != 0) {
    return putCharacter(0x10000 + ((std::exchange(half_, 0) - 0xD800) << 10) + (code_ - 0xDC00));
  }
  checkNoHalf();
  if (!isCode_) return put(static_cast<char>(code_));
  if (code_ >= 0xD800 && code_ <= 0xDBFF) {
    half_ = code_;
    halfColumn_ = escapeColumn_;
  } else if (!isLow) {
    putCharacter(code_);
  } else if (code_ >= 0xDC80 && code_ <= 0xDCFF) {
    put(static_cast<char>(code_ & 0xFF));  // How texts show an octet that is not UTF-8.
  } else {
    failAt(escapeColumn_, kHalf);
  }
}

void Assembler::checkNoHalf() {
  if (half_ != 0) failAt(halfColumn_, kHalf);
}

void Assembler::putCharacter(char32_t code) {
  std::string octets;
  appendUTF8(octets, code);
  for (const char octet : octets) put(octet);
}

}  // namespace tool::octets
