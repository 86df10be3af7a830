#include <strings.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "../../xml/Characters.h"
#include "../../xml/Declarations.h"
#include "../../xml/simd/OctetClasses.h"
#include "../../xml/simd/Search.h"
#include "XML10Scanner.h"

// Content: text, sections, references. A line end is reported by itself, as expat does.

namespace Tavrin::text {

namespace {

bool isBeyondASCII(char c) { return static_cast<unsigned char>(c) >= 0x80; }

/// Texts of one octet, which last.
constexpr std::array<char, 0x80> kASCII = [] {
  std::array<char, 0x80> octets{};
  for (unsigned c = 0; c < octets.size(); ++c) octets[c] = static_cast<char>(c);
  return octets;
}();

}  // namespace

/// [43] content ::= CharData? ((element | Reference | CDSect | PI | Comment) CharData?)*
XML10Scanner::Step XML10Scanner::content() {
  Step step = Step::done;
  while (step == Step::done && phase_ == Phase::content && !isHalted_) {
    event_ = at_;
    if (at_ == end_) return Step::cut;
    switch (*at_) {
      case '<':
        step = markup();
        break;
      case '&':
        step = contentReference();
        break;
      case '\n':
      case '\r':
        step = lineEnd();
        break;
      default:
        step = charData();
    }
  }
  return step;
}

XML10Scanner::Step XML10Scanner::markup() {
  if (left(at_) < 2) return Step::cut;
  switch (at_[1]) {
    case '/':
      return endTag();
    case '?':
      return instruction();
    case '!':
      return left(at_) > 2 && at_[2] == '[' ? beginSection() : comment();
    default:
      return startTag();
  }
}

/// [14] CharData ::= [^<&]* - ([^<&]* ']]>' [^<&]*)
XML10Scanner::Step XML10Scanner::charData() {
  const char* to = at_;
  for (;;) {
    to = xml::findOctet<true, '<', '&', '>'>(to, end_);
    if (to == end_) break;
    if (isBeyondASCII(*to)) {
      const char* const next = overCharacters(to);
      if (next == to) break;
      to = next;
    } else if (*to == '>') {
      if (to - at_ >= 2 && to[-1] == ']' && to[-2] == ']') return Step::refused;
      ++to;
    } else {
      break;
    }
  }
  // What may be "]]>" waits.
  if (to == end_ && to[-1] == ']') to -= to - at_ >= 2 && to[-2] == ']' ? 2 : 1;
  if (to == at_) {
    const bool isCut =
        *at_ == ']' || (isBeyondASCII(*at_) && xml::firstCharacter({at_, left(at_)}).isCut);
    return isCut ? Step::cut : Step::refused;
  }
  report({at_, static_cast<std::size_t>(to - at_)});
  at_ = to;
  return Step::done;
}

/// Goes over characters, the first of which is beyond ASCII. Some ASCII may follow, but nothing
/// that ends a text.
/// @return where it began, if there is no such character
const char* XML10Scanner::overCharacters(const char* at) const {
#ifdef TAVRIN_HAS_AVX2
  static constexpr xml::OctetClasses kClasses = [] {
    xml::OctetClasses classes(xml::OctetClasses::Characters::all);
    for (const char c : {'<', '&', '>', '\n', '\r'}) classes.addFault(c);
    return classes;
  }();
  if (left(at) >= xml::kLeastTogether && xml::hasAVX2()) {
    const std::size_t octets = xml::findInCharacters(kClasses, {at, left(at)});
    if (octets > 0) return at + octets;
  }
#endif
  return at + xml::firstCharacter({at, left(at)}).octets;
}

XML10Scanner::Reference XML10Scanner::reference(const char* at) const {
  // A longer one is strange, but may be right.
  constexpr std::size_t kLongest = 16;
  const std::string_view octets(at, std::min(left(at), kLongest));
  const std::size_t end = octets.find(';');
  const std::string_view inside = octets.substr(1, end - 1);
  const bool isCut = end == std::string_view::npos;
  Reference found = inside.starts_with('#') ? characterReference(inside.substr(1), isCut)
                                            : entityReference(inside, isCut);
  found.octets = end + 1;
  if (found.step == Step::cut && octets.size() == kLongest) found.step = Step::refused;
  return found;
}

/// [68] EntityRef ::= '&' Name ';'. The entities that need no declaration (section 4.6).
XML10Scanner::Reference XML10Scanner::entityReference(std::string_view name, bool isCut) {
  const bool mayBeOne = std::ranges::all_of(name, [](char c) { return c >= 'a' && c <= 'z'; });
  if (isCut) return {mayBeOne ? Step::cut : Step::refused};
  const char character = xml::predefinedCharacter(name);
  if (character == '\0') return {Step::refused};
  return {Step::done, 0, std::string(1, character)};
}

/// [66] CharRef ::= '&#' [0-9]+ ';' | '&#x' [0-9a-fA-F]+ ';'
XML10Scanner::Reference XML10Scanner::characterReference(std::string_view number, bool isCut) {
  const bool isHexadecimal = number.starts_with('x');
  if (isHexadecimal) number.remove_prefix(1);
  std::uint32_t value = 0;
  const char* const end = number.data() + number.size();
  const auto [digits, error] = std::from_chars(number.data(), end, value, isHexadecimal ? 16 : 10);
  const bool hasDigits = error == std::errc() && digits == end && value <= 0x10FFFF;
  if (isCut) return {hasDigits || number.empty() ? Step::cut : Step::refused};
  std::string character;
  if (hasDigits) xml::appendUTF8(value, character);
  if (character.empty() || xml::firstCharacter(character).octets == 0) return {Step::refused};
  return {Step::done, 0, std::move(character)};
}

XML10Scanner::Step XML10Scanner::contentReference() {
  const Reference found = reference(at_);
  if (found.step != Step::done) return found.step;
  if (found.text.size() == 1) {
    report({&kASCII[static_cast<unsigned char>(found.text.front())], 1});
  } else {
    text_ = found.text;
    report(text_);
    isHalted_ = isHalted_ || isHaltedHere_;  // The next one is kept there, too.
  }
  at_ += found.octets;
  return Step::done;
}

/// Section 2.11.
XML10Scanner::Step XML10Scanner::lineEnd() {
  const bool isReturn = *at_ == '\r';
  if (isReturn && left(at_) == 1) return Step::cut;
  report(isReturn ? "\n" : std::string_view(at_, 1));
  at_ += isReturn && at_[1] == '\n' ? 2 : 1;
  return Step::done;
}

namespace {

/// Whether octets begin with some; where they are fewer, whether they may.
bool mayBegin(std::string_view octets, std::string_view sought) {
  return octets.substr(0, sought.size()) == sought.substr(0, octets.size());
}

constexpr std::string_view kSectionStart = "<![CDATA[";
constexpr std::string_view kCommentStart = "<!--";

}  // namespace

/// [19] CDStart ::= '<![CDATA['
XML10Scanner::Step XML10Scanner::beginSection() {
  const std::string_view octets(at_, left(at_));
  if (!mayBegin(octets, kSectionStart)) return Step::refused;
  if (octets.size() < kSectionStart.size()) return Step::cut;
  events_.scannedStartOfCDATA();
  at_ += kSectionStart.size();
  phase_ = Phase::section;
  return Step::done;
}

/// [20] CData ::= (Char* - (Char* ']]>' Char*))
/// [21] CDEnd ::= ']]>'
XML10Scanner::Step XML10Scanner::section() {
  event_ = at_;
  if (at_ == end_) return Step::cut;
  if (*at_ == '\n' || *at_ == '\r') return lineEnd();
  const char* to = at_;
  if (*at_ == ']') {
    if (left(at_) < 2 || (at_[1] == ']' && left(at_) < 3)) return Step::cut;
    if (at_[1] == ']' && at_[2] == '>') {
      events_.scannedEndOfCDATA();
      at_ += 3;
      phase_ = Phase::content;
      return Step::done;
    }
    ++to;
  }
  // As expat does, a piece ends in front of each bracket.
  for (;;) {
    to = xml::findOctet<true, ']'>(to, end_);
    if (to == end_ || !isBeyondASCII(*to)) break;
    const std::size_t octets = xml::firstCharacter({to, left(to)}).octets;
    if (octets == 0) break;
    to += octets;
  }
  if (to == at_) {
    const bool isCut = isBeyondASCII(*at_) && xml::firstCharacter({at_, left(at_)}).isCut;
    return isCut ? Step::cut : Step::refused;
  }
  report({at_, static_cast<std::size_t>(to - at_)});
  at_ = to;
  return Step::done;
}

// --- Comments and processing instructions ---

namespace {

/// With each line end as a line feed (section 2.11).
void assignWithLines(std::string& text, const char* at, const char* end) {
  text.assign(at, end);
  const std::size_t first = text.find('\r');
  if (first == std::string::npos) return;
  std::size_t to = first;
  for (std::size_t from = first; from < text.size(); ++from) {
    if (text[from] != '\r') {
      text[to++] = text[from];
    } else if (from + 1 == text.size() || text[from + 1] != '\n') {
      text[to++] = '\n';
    }
  }
  text.resize(to);
}

}  // namespace

XML10Scanner::Step XML10Scanner::overCharacter(const char*& at) const {
  if (*at == '\n' || *at == '\r') {
    ++at;
    return Step::done;
  }
  const xml::FirstCharacter first = xml::firstCharacter({at, left(at)});
  if (first.isCut) return Step::cut;
  if (first.octets == 0) return Step::refused;
  at += first.octets;
  return Step::done;
}

/// [15] Comment ::= '<!--' ((Char - '-') | ('-' (Char - '-')))* '-->'
XML10Scanner::Step XML10Scanner::comment() {
  const std::string_view octets(at_, left(at_));
  if (!mayBegin(octets, kCommentStart)) return Step::refused;
  if (octets.size() < kCommentStart.size()) return Step::cut;
  const char* const text = at_ + kCommentStart.size();
  const char* to = at_ + std::max(resume_, kCommentStart.size());
  const auto cut = [&] {
    resume_ = static_cast<std::size_t>(to - at_);
    return Step::cut;
  };
  for (;;) {
    to = xml::findOctet<true, '-'>(to, end_);
    if (to == end_) return cut();
    if (*to == '-') {
      if (left(to) < 2) return cut();
      if (to[1] != '-') {
        ++to;
        continue;
      }
      if (left(to) < 3) return cut();
      if (to[2] != '>') return Step::refused;
      break;
    }
    const Step step = overCharacter(to);
    if (step == Step::cut) return cut();
    if (step == Step::refused) return step;
  }
  assignWithLines(text_, text, to);
  resume_ = 0;
  events_.scannedComment(text_);
  at_ = to + 3;
  return Step::done;
}

/// [16] PI ::= '<?' PITarget (S (Char* - (Char* '?>' Char*)))? '?>'
XML10Scanner::Step XML10Scanner::instruction() {
  const char* to = at_ + std::max<std::size_t>(resume_, 2);
  Step step = targetEnd_ == 0 ? instructionTarget(to) : Step::done;
  while (step == Step::done) {
    to = xml::findOctet<true, '?'>(to, end_);
    if (to == end_ || (*to == '?' && left(to) < 2)) {
      step = Step::cut;
    } else if (*to != '?') {
      step = overCharacter(to);
    } else if (to[1] == '>') {
      break;
    } else {
      ++to;
    }
  }
  if (step == Step::cut) resume_ = static_cast<std::size_t>(to - at_);
  if (step != Step::done) return step;
  const char* data = at_ + targetEnd_;
  while (data != to && isSpace(*data)) ++data;
  assignWithLines(text_, data, to);
  resume_ = 0;
  targetEnd_ = 0;
  events_.scannedInstruction(target_, text_);
  at_ = to + 2;
  return Step::done;
}

/// [17] PITarget ::= Name - (('X' | 'x') ('M' | 'm') ('L' | 'l'))
XML10Scanner::Step XML10Scanner::instructionTarget(const char*& at) {
  const Step step = nameOctets(at, at_ + 2, nullptr);
  if (step != Step::done) return step;
  target_.assign(at_ + 2, at);
  if (strcasecmp(target_.c_str(), "xml") == 0) return Step::refused;
  const bool hasData = isSpace(*at);
  if (!hasData && *at != '?') return Step::refused;
  if (!hasData && left(at) < 2) return Step::cut;
  if (!hasData && at[1] != '>') return Step::refused;
  targetEnd_ = static_cast<std::size_t>(at - at_);
  if (hasData) ++at;
  return Step::done;
}

}  // namespace Tavrin::text
