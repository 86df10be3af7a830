#include "writing/HeldOctets.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace tool {

namespace {

constexpr std::size_t kLevels = 100;
constexpr std::size_t kRoomAtFirst = std::size_t{256} << 10U;

}  // namespace

HeldOctets::HeldOctets(std::string unit) : unit_(std::move(unit)), line_("\n") {
  for (std::size_t i = 0; i < kLevels; ++i) line_ += unit_;
  area_.resize(kRoomAtFirst);
  setSize(0);
}

void HeldOctets::breakLine(std::uint64_t position, std::uint64_t length, std::size_t depth) {
  breaks_.push_back({position, length, std::min(depth, kLevels)});
}

void HeldOctets::dropBreaksFrom(std::uint64_t number) {
  breaks_.resize(static_cast<std::size_t>(number - firstBreak_));
}

void HeldOctets::release(std::uint64_t end, std::ostream* target) {
  const std::string_view held(pbase(), size());
  const auto place = [this](std::uint64_t position) {
    return static_cast<std::size_t>(position - released_);
  };
  std::size_t done = 0;
  std::size_t count = 0;
  composed_.clear();
  for (; count < breaks_.size() && breaks_[count].position <= end; ++count) {
    const Break& next = breaks_[count];
    if (next.position == end && end < position()) break;
    composed_ += held.substr(done, place(next.position) - done);
    composed_.append(line_, 0, 1 + next.depth * unit_.size());
    done = place(next.position + next.length);
  }
  composed_ += held.substr(done, place(end) - done);
  if (target) target->write(composed_.data(), static_cast<std::streamsize>(composed_.size()));
  breaks_.erase(breaks_.begin(), breaks_.begin() + static_cast<std::ptrdiff_t>(count));
  firstBreak_ += count;
  const std::size_t kept = size() - place(end);
  std::memmove(area_.data(), area_.data() + place(end), kept);
  released_ = end;
  setSize(kept);
}

void HeldOctets::clear() {
  breaks_.clear();
  firstBreak_ = released_ = 0;
  setSize(0);
}

void HeldOctets::reserve(std::size_t more) {
  const std::size_t kept = size();
  if (area_.size() - kept > more) return;
  area_.resize(std::max(2 * area_.size(), kept + more + 1));
  setSize(kept);
}

/// So many octets are held, at the beginning of the area.
void HeldOctets::setSize(std::size_t size) {
  setp(area_.data(), area_.data() + area_.size());
  constexpr auto kLargest = static_cast<std::size_t>(std::numeric_limits<int>::max());
  for (; size > kLargest; size -= kLargest) pbump(static_cast<int>(kLargest));
  pbump(static_cast<int>(size));
}

HeldOctets::int_type HeldOctets::overflow(int_type c) {
  if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
  reserve(1);
  return sputc(traits_type::to_char_type(c));
}

std::streamsize HeldOctets::xsputn(const char* text, std::streamsize size) {
  const auto count = static_cast<std::size_t>(size);
  reserve(count);
  std::memcpy(pptr(), text, count);
  setSize(this->size() + count);
  return size;
}

}  // namespace tool
