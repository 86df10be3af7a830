#include "comparing/TextComparison.h"

#include <algorithm>
#include <utility>

#include "comparing/NumberText.h"
#include "printing/Text.h"

namespace tool {

namespace {

// Of a text longer than this only a part is shown: so much before and behind the difference.
constexpr std::size_t kLongText = 80;
constexpr std::size_t kShownBefore = 30;
constexpr std::size_t kShownBehind = 50;
constexpr std::size_t kLongestCharacter = 4;
/// So many octets tell whether a text is long, and hold what is shown of it.
constexpr std::size_t kKept = kLongText + kLongestCharacter;

bool isWithinCharacter(std::string_view text, std::size_t index) {
  return index < text.size() && (static_cast<unsigned char>(text[index]) & 0xC0U) == 0x80;
}

std::size_t firstDifference(std::string_view a, std::string_view b) {
  const auto end = std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first;
  return static_cast<std::size_t>(end - a.begin());
}

/// Appends the octets that come next, so many at most.
/// @return whether there are more
bool appendBeginning(TextPieces& pieces, std::string& text) {
  std::size_t room = kKept;
  for (std::string_view rest = pieces.rest(); !rest.empty(); rest = pieces.rest()) {
    if (room == 0) return true;
    const std::size_t size = std::min(room, rest.size());
    text += rest.substr(0, size);
    pieces.take(size);
    room -= size;
  }
  return false;
}

}  // namespace

template <typename Append>
std::string Excerpt::print(Append append) const {
  std::size_t begin = 0;
  std::size_t end = text.size();
  if (isContinuation || isContinued || text.size() > kLongText) {
    begin = index - std::min(index, kShownBefore);
    end = std::min(text.size(), index + kShownBehind);
    // Characters stay whole.
    for (std::size_t i = 1; i < kLongestCharacter && isWithinCharacter(text, begin); ++i) --begin;
    for (std::size_t i = 1; i < kLongestCharacter && isWithinCharacter(text, end); ++i) ++end;
  }
  std::string result = isContinuation || begin > 0 ? "..." : "";
  append(result, std::string_view(text).substr(begin, end - begin));
  return isContinued || end < text.size() ? result + "..." : result;
}

std::string Excerpt::quoted() const { return print(appendQuoted); }

std::string Excerpt::plain() const {
  return print([](std::string& out, std::string_view part) { out += escaped(part); });
}

Excerpt beginningOf(TextPieces& text) {
  Excerpt excerpt;
  excerpt.isContinued = appendBeginning(text, excerpt.text);
  return excerpt;
}

Excerpt differenceFrom(std::string_view text, std::string_view other) {
  return {std::string(text), firstDifference(text, other), false, false};
}

void TextComparison::keep(std::string_view common) {
  common_ += common.substr(common.size() - std::min(common.size(), kKept));
  isContinuation_ = isContinuation_ || common.size() > kKept || common_.size() > kKept;
  if (common_.size() > kKept) common_.erase(0, common_.size() - kKept);
}

/// Of many numbers, text is made of the last alone, and that only where it is shown.
void TextComparison::keepNumbers(std::string_view common) {
  constexpr std::size_t kEnough = kKept / 2;  // A number is a digit, and a blank.
  std::string last = Numbers::lastOf(common, kEnough);
  const bool areMany = last.size() < common.size();
  if (!areMany) makeText();
  isContinuation_ = isContinuation_ || areMany;
  numbers_ = std::move(last);
}

void TextComparison::makeText() {
  if (numbers_.empty()) return;
  std::string text;
  Numbers::appendText(text, numbers_);
  numbers_.clear();
  keep(text);
}

Excerpt TextComparison::excerpt(TextPieces& pieces) const {
  Excerpt excerpt{common_, common_.size(), isContinuation_, false};
  excerpt.isContinued = appendBeginning(pieces, excerpt.text);
  return excerpt;
}

/// Takes numbers that are text on the other side, as far as that can be seen without printing them.
bool TextComparison::takeNumbers(TextPieces& numbers, TextPieces& text) {
  if (!numbers.areNumbers()) return false;
  const std::string_view rest = text.rest();
  const std::size_t same = numbers.takeNumbersIn(rest);
  if (same == 0) return false;
  makeText();
  keep(rest.substr(0, same));
  text.take(same);
  return true;
}

bool TextComparison::areSame() {
  for (;;) {
    const Record* const numbersA = a_.numbers();
    const Record* const numbersB = b_.numbers();
    if (numbersA && numbersB && numbersA->body == numbersB->body) {
      keepNumbers(numbersA->body);
      a_.takeNumbers();
      b_.takeNumbers();
      continue;
    }
    if (takeNumbers(a_, b_) || takeNumbers(b_, a_)) continue;
    const std::string_view a = a_.rest();
    const std::string_view b = b_.rest();
    const std::size_t size = std::min(a.size(), b.size());
    if (size == 0) break;
    const bool isEqual = std::memcmp(a.data(), b.data(), size) == 0;
    const std::size_t same = isEqual ? size : firstDifference(a, b);
    makeText();
    keep(a.substr(0, same));
    a_.take(same);
    b_.take(same);
    if (!isEqual) break;
  }
  const bool isAtEnd = a_.rest().empty() || b_.rest().empty();
  if (isAtEnd && a_.rest().empty() && b_.rest().empty()) return true;
  makeText();
  excerptA_ = excerpt(a_);
  excerptB_ = excerpt(b_);
  if (!isAtEnd) return false;
  skip();
  return a_.isCutOff() || b_.isCutOff();
}

void TextComparison::skip() {
  a_.skip();
  b_.skip();
}

}  // namespace tool
