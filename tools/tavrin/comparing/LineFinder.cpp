#include "comparing/LineFinder.h"

#include <array>
#include <cstddef>
#include <string_view>

#include "files/TextEncoding.h"

namespace tool {

namespace {

constexpr std::size_t kBlockSize = 16384;

/// Goes over text, from one character to another.
class LineCounter {
 public:
  explicit LineCounter(const Place& place)
      : line_(static_cast<std::uint32_t>(place.line())),
        column_(static_cast<std::uint32_t>(place.column())) {}

  void count(std::string_view text) {
    for (const char c : text) {
      if (c == '\n' || c == '\r') {
        if (c == '\r' || before_ != '\r') ++line_;
        column_ = 1;
      } else if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80) {
        ++column_;
      }
      before_ = c;
    }
  }
  Place place() const {
    return Place::inLine(static_cast<std::int32_t>(line_), static_cast<std::int32_t>(column_));
  }

 private:
  std::uint32_t line_;
  std::uint32_t column_;
  char before_ = '\0';
};

}  // namespace

bool LineFinder::isPossible() const {
  if (!input_.canLookUp() || input_.documentStart() > 0) return false;
  std::array<char, kLongestDeclaration> beginning{};
  const std::size_t size = input_.lookUp(0, beginning.data(), beginning.size());
  return isSurelyUTF8({beginning.data(), size});
}

Place LineFinder::placeOf(const Place& place, const Anchor& anchor) {
  if (place.hasLine() || !anchor.place.hasLine()) return place;
  const std::uint64_t octet = place.octet();
  const bool isNear = last_.place.hasLine() && last_.octet >= anchor.octet && last_.octet <= octet;
  if (!isNear) last_ = anchor;
  countTo(octet);
  return last_.place;
}

/// A file that has become shorter meanwhile has no more lines.
void LineFinder::countTo(std::uint64_t octet) {
  LineCounter counter(last_.place);
  while (last_.octet < octet) {
    const std::string_view text = octetsFrom(last_.octet).substr(0, octet - last_.octet);
    if (text.empty()) break;
    counter.count(text);
    last_.octet += text.size();
  }
  last_.place = counter.place();
}

/// Some octets of the file, or none.
std::string_view LineFinder::octetsFrom(std::uint64_t octet) {
  if (octet < blockStart_ || octet >= blockStart_ + block_.size()) {
    block_.resize(kBlockSize);
    block_.resize(input_.lookUp(octet, block_.data(), block_.size()));
    blockStart_ = octet;
  }
  return std::string_view(block_).substr(octet - blockStart_);
}

}  // namespace tool
