#include "octets/TextForm.h"

#include <algorithm>
#include <utility>

#include "octets/Content.h"

namespace tool::octets {

namespace {

constexpr unsigned kOffsetDigits = 8;
constexpr std::size_t kEnoughText = 65536;
constexpr std::size_t kMostLevels = 20;  // Of indentation: documents may be a million deep.
constexpr std::size_t kLinesBefore = 8;
constexpr std::size_t kLinesAfter = 8;

}  // namespace

bool TextForm::isWanted(std::uint64_t offset) const {
  return !near_ || hasPassed_ || offset + (kLinesBefore + 1) * kMostOctets >= *near_;
}

void TextForm::remark(std::uint64_t offset, std::string text) {
  remark_ = {offset, std::move(text)};
}

void TextForm::beginLine(std::uint64_t offset, std::string_view octets) {
  line_.clear();
  lineBegin_ = offset;
  if (isColoured_) line_ += colour::kDim;
  unsigned digits = kOffsetDigits;
  while (digits < 16 && offset >> (4 * digits) != 0) ++digits;
  while (digits-- > 0) line_ += kDigits[offset >> (4 * digits) & 0xF];
  line_ += ':';
  if (isColoured_) line_ += colour::kOff;
  for (const char c : octets) {
    const auto octet = static_cast<unsigned char>(c);
    const char pair[] = {' ', kDigits[octet >> 4], kDigits[octet & 0xF]};
    line_.append(pair, sizeof pair);
  }
}

void TextForm::appendIndented(std::size_t level, const Note& note) {
  line_ += "# ";
  line_.append(2 * std::min(level, kMostLevels), ' ');
  line_ += note.text();
}

void TextForm::line(std::uint64_t offset, std::string_view octets, std::size_t level,
                    const Note& note) {
  beginLine(offset, octets);
  const std::size_t places = octets.size() <= kMostAligned ? kMostAligned : kMostOctets;
  line_.append(3 * (places - octets.size()) + 2, ' ');
  appendIndented(level, note);
  endLine(offset + octets.size());
}

void TextForm::line(std::uint64_t offset, std::string_view octets) {
  beginLine(offset, octets);
  endLine(offset + octets.size());
}

void TextForm::comment(std::size_t level, const Note& note) {
  line_.clear();
  appendIndented(level, note);
  line_ += '\n';
  writeLine(0);
}

/// @param end the offset behind the octets of the line
void TextForm::endLine(std::uint64_t end) {
  line_ += '\n';
  const bool isMarked = near_ && *near_ >= lineBegin_ && *near_ < end;
  if (isMarked) {
    Note mark(isColoured_);
    const std::string line = std::exchange(line_, {});
    mark.failure("octet " + std::to_string(*near_ + 1) + ":");
    comment(0, mark);
    line_ = line;
  }
  writeLine(end);
  if (remark_ && remark_->offset < end) {
    Note note(isColoured_);
    hasRemarked_ = true;
    note.failure(std::exchange(remark_, std::nullopt)->text);
    comment(0, note);
  }
}

/// @param end 0 for a line without octets
void TextForm::writeLine(std::uint64_t end) {
  if (near_ && !hasPassed_) {
    before_.push_back(line_);
    if (end > *near_) {
      // The line itself, and the mark in front of it, come on top of those before.
      hasPassed_ = true;
      for (const std::string& line : before_) text_ += line;
      before_.clear();
    } else if (before_.size() > kLinesBefore + 1) {
      before_.pop_front();
    }
    return;
  }
  if (near_ && after_++ == kLinesAfter) {
    flush();
    throw Enough();
  }
  text_ += line_;
  if (text_.size() >= kEnoughText) flush();
}

void TextForm::flush() {
  // Where the octet does not exist, these are the last lines.
  for (const std::string& line : std::exchange(before_, {})) text_ += line;
  if (!text_.empty()) sink_(text_);
  text_.clear();
}

}  // namespace tool::octets
