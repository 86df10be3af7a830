#include "files/RecentOctets.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace tool {

namespace {

// The library asks a stream for blocks of 1 MiB, and its failures are in the last of them.
constexpr std::size_t kKept = std::size_t{2} << 20;

/// Text in UTF-8, up to the first octets that are none in the encoding; nothing where the encoding
/// is unknown.
std::optional<std::string> toUTF8(std::string_view text, const std::string& encoding) {
  iconv_t converter = iconv_open("UTF-8", encoding.c_str());
  // The interface is that of POSIX. NOLINTNEXTLINE(performance-no-int-to-ptr)
  if (converter == iconv_t(-1)) return std::nullopt;
  std::string result;
  std::array<char, 4096> block{};
  // iconv does not write there. NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast)
  char* from = const_cast<char*>(text.data());
  std::size_t left = text.size();
  bool goesOn = true;
  while (goesOn && left > 0) {
    char* to = block.data();
    std::size_t room = block.size();
    goesOn = iconv(converter, &from, &left, &to, &room) != static_cast<std::size_t>(-1) ||
             errno == E2BIG;
    result.append(block.data(), block.size() - room);
  }
  iconv_close(converter);
  return result;
}

std::uint64_t charactersIn(std::string_view text) {
  return static_cast<std::uint64_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80;
  }));
}

}  // namespace

void RecentOctets::append(std::string_view octets) {
  while (!octets.empty()) {
    const std::string_view part = octets.substr(0, kKept);
    // Dropping rarely, and much at a time, lets every octet be moved once at most.
    if (kept_.size() + part.size() > 2 * kKept) drop(kept_.size() - kKept);
    const bool isFirst = start_ == 0 && kept_.size() < kLongestDeclaration;
    kept_ += part;
    if (isFirst) recogniseEncoding();
    octets.remove_prefix(part.size());
  }
}

void RecentOctets::restartAt(std::uint64_t octet) {
  kept_.clear();
  start_ = octet;
  linesLost_ = 0;
  charactersLost_ = 0;
  beganInLine_ = false;
}

void RecentOctets::recogniseEncoding() {
  encoding_ = TextEncoding::of(std::string_view(kept_).substr(0, kLongestDeclaration));
}

char32_t RecentOctets::unitAt(std::size_t position) const {
  char32_t unit = 0;
  for (std::size_t i = 0; i < encoding_.unitSize; ++i) {
    const std::size_t octet = encoding_.isBigEndian ? i : encoding_.unitSize - 1 - i;
    unit = unit << 8 | static_cast<unsigned char>(kept_[position + octet]);
  }
  return unit;
}

std::optional<RecentOctets::Break> RecentOctets::nextBreak(std::size_t from) const {
  const std::size_t unitSize = encoding_.unitSize;
  std::size_t at = from;
  if (unitSize == 1) {
    const std::string_view rest = std::string_view(kept_).substr(from);
    const std::size_t feed = rest.find('\n');
    const std::size_t found = std::min(rest.substr(0, feed).find('\r'), feed);
    if (found == std::string_view::npos) return std::nullopt;
    at += found;
  } else {
    while (at + unitSize <= kept_.size() && unitAt(at) != '\n' && unitAt(at) != '\r') {
      at += unitSize;
    }
    if (at + unitSize > kept_.size()) return std::nullopt;
  }
  std::size_t end = at + unitSize;
  const bool hasNext = end + unitSize <= kept_.size();
  if (unitAt(at) == '\r' && hasNext && unitAt(end) == '\n') end += unitSize;
  return Break{at, end};
}

/// Drops so many octets, or a few less: a unit and a line's end stay whole.
void RecentOctets::drop(std::size_t size) {
  size -= size % 4;
  std::size_t line = 0;
  for (auto next = nextBreak(0); next && next->end <= size; next = nextBreak(line)) {
    ++linesLost_;
    charactersLost_ = 0;
    beganInLine_ = false;
    line = next->end;
  }
  if (line < size) {
    if (kept_[size - 1] == '\r' || kept_[size - 1] == '\n') size -= std::min(size - line, 4UL);
    charactersLost_ += charactersIn(std::string_view(kept_).substr(line, size - line));
    beganInLine_ = beganInLine_ || size > line;
  }
  kept_.erase(0, size);
  start_ += size;
}

std::optional<RecentOctets::Line> RecentOctets::line(std::uint64_t number) const {
  if (number <= linesLost_) return std::nullopt;
  std::size_t begin = 0;
  auto end = nextBreak(0);
  for (std::uint64_t passed = linesLost_ + 1; passed < number; ++passed) {
    if (!end) return std::nullopt;
    begin = end->end;
    end = nextBreak(begin);
  }
  const std::size_t size = (end ? end->begin : kept_.size()) - begin;
  const std::string_view octets = std::string_view(kept_).substr(begin, size);
  const bool isCut = begin == 0 && beganInLine_;
  if (encoding_.name.empty()) return Line{std::string(octets), isCut ? charactersLost_ : 0};
  auto text = isCut ? std::nullopt : toUTF8(octets, encoding_.name);
  if (!text) return std::nullopt;
  return Line{std::move(*text), 0};
}

}  // namespace tool
