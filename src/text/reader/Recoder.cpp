#include "Recoder.h"

#include <algorithm>

namespace Tavrin::text {

namespace {

/// More than any encoding has in one character, escape sequences included.
constexpr std::size_t kMostPending = 64;

std::string hexadecimal(std::string_view octets) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (const char c : octets) {
    const auto octet = static_cast<unsigned char>(c);
    if (!text.empty()) text += ' ';
    text += kDigits[octet >> 4];
    text += kDigits[octet & 15];
  }
  return text;
}

}  // namespace

std::string_view Recoder::convert(std::string_view octets, bool areLast) {
  before_ += converted_.size();
  converted_.clear();
  if (hasFailed_) return converted_;
  pending_ += octets;
  char block[4096];
  char* from = pending_.data();
  std::size_t fromLeft = pending_.size();
  int error = E2BIG;
  while (error == E2BIG) {
    char* to = block;
    std::size_t toLeft = sizeof block;
    error = iconv_.convert(from, fromLeft, to, toLeft);
    converted_.append(block, sizeof block - toLeft);
  }
  const bool isCut = error == EINVAL && fromLeft <= kMostPending;
  if (error != 0 && (!isCut || areLast)) {
    fail({from, fromLeft}, isCut);
    return converted_;
  }
  pending_.erase(0, pending_.size() - fromLeft);
  if (areLast) {
    char* to = block;
    std::size_t toLeft = sizeof block;
    iconv_.finish(to, toLeft);
    converted_.append(block, sizeof block - toLeft);
  }
  return converted_;
}

/// @param areAll whether only what follows is missing
void Recoder::fail(std::string_view octets, bool areAll) {
  // What a converter keeps comes before the failure.
  char block[64];
  char* to = block;
  std::size_t room = sizeof block;
  iconv_.finish(to, room);
  converted_.append(block, sizeof block - room);
  hasFailed_ = true;
  failedAt_ = before_ + converted_.size();
  // Of a character that is wrong, what follows may not have come yet.
  failure_ = areAll ? ": the character of \"" + name_ + "\" is cut off after " + hexadecimal(octets)
                    : ": octet " + hexadecimal(octets.substr(0, 1)) +
                          " is not part of a character of \"" + name_ + '"';
  converted_ += kInvalid;
}

std::string Recoder::describeFailure(std::uint64_t octet) const {
  return hasFailed_ && octet == failedAt_ ? failure_ : std::string();
}

}  // namespace Tavrin::text
