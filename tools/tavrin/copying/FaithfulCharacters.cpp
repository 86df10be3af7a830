#include "copying/FaithfulCharacters.h"

#include <strings.h>

#include <algorithm>

#include "copying/Characters.h"

namespace tool {

namespace {

constexpr const char* kUTF8 = "UTF-8";
constexpr std::size_t kCodePoints = 0x110000;
constexpr std::size_t kTriesInOctet = 4;
// More than any encoding has in one character, what it begins and ends with included.
constexpr std::size_t kMostOctets = 64;

/// Whether an encoding has all characters by definition.
bool hasAll(const std::string& encoding) {
  constexpr std::array kNames = {kUTF8,    "UTF-16",   "UTF-16BE", "UTF-16LE",
                                 "UTF-32", "UTF-32BE", "UTF-32LE"};
  return std::ranges::any_of(
      kNames, [&](const char* name) { return strcasecmp(encoding.c_str(), name) == 0; });
}

/// What a text is in another encoding, in some octets of the caller's. Empty where it is inexact.
std::string_view recoded(Recoding& recoding, std::string_view text,
                         std::array<char, kMostOctets>& octets) {
  char* to = octets.data();
  std::size_t room = octets.size();
  recoding.reset();
  const bool isExact = recoding.convert(text, to, room) == Recoding::Outcome::Done &&
                       recoding.finish(to, room) == Recoding::Outcome::Done;
  return {octets.data(), isExact ? octets.size() - room : 0};
}

}  // namespace

FaithfulCharacters::FaithfulCharacters(const std::string& encoding)
    : encoder_(kUTF8, encoding), decoder_(encoding, kUTF8), areAll_(hasAll(encoding)) {
  if (!areKnown() || areAll_) return;
  tried_.resize(kCodePoints / kTriesInOctet);
  for (unsigned code = 1; code < ascii_.size(); ++code) {
    const char character = static_cast<char>(code);
    ascii_[code] = comeBackWhole({&character, 1});
  }
}

bool FaithfulCharacters::contain(std::string_view character) {
  if (areAll_) return true;
  const unsigned code = codePointOf(character);
  if (code < ascii_.size()) return ascii_[code];
  if (code >= kCodePoints) return false;
  constexpr unsigned kTried = 1;
  constexpr unsigned kCameBack = 2;
  const unsigned shift = 2 * (code % kTriesInOctet);
  std::uint8_t& tries = tried_[code / kTriesInOctet];
  if ((tries >> shift & kTried) == 0) {
    const unsigned result = kTried | (comeBackWhole(character) ? kCameBack : 0);
    tries = static_cast<std::uint8_t>(tries | result << shift);
  }
  return (tries >> shift & kCameBack) != 0;
}

std::size_t FaithfulCharacters::lengthOfRun(std::string_view text) {
  if (areAll_) return text.size();
  std::size_t i = 0;
  while (i < text.size()) {
    const auto octet = static_cast<unsigned char>(text[i]);
    if (octet < ascii_.size()) {
      if (!ascii_[octet]) return i;
      ++i;
    } else {
      const std::string_view character = firstOf(text.substr(i));
      if (!contain(character)) return i;
      i += character.size();
    }
  }
  return i;
}

bool FaithfulCharacters::comeBackTogether() {
  if (areAll_) return true;
  // Chinese of two sets, as ISO-2022-CN switches between them, and Tamil, a vowel sign of which
  // TSCII has in front of a consonant.
  constexpr std::string_view kTexts[] = {"\u4EF4\u4E5C", "\u0BC7\u0BA9"};
  return std::ranges::all_of(kTexts, [this](std::string_view text) {
    return lengthOfRun(text) < text.size() || comeBack(text);
  });
}

bool FaithfulCharacters::comeBack(std::string_view text) {
  std::array<char, kMostOctets> there{};
  std::array<char, kMostOctets> back{};
  return recoded(decoder_, recoded(encoder_, text, there), back) == text;
}

bool FaithfulCharacters::comeBackWhole(std::string_view character) {
  std::array<char, kMostOctets> there{};
  if (!comeBack(character)) return false;
  // A base and a mark may be one character, or two to a reader that takes octets one by one.
  const std::string_view octets = recoded(encoder_, character, there);
  return octets.size() == 1 || saysNothing(octets.substr(0, 1));
}

bool FaithfulCharacters::saysNothing(std::string_view octets) {
  std::array<char, kMostOctets> text{};
  char* to = text.data();
  std::size_t room = text.size();
  decoder_.reset();
  decoder_.convert(octets, to, room);
  decoder_.finish(to, room);
  return room == text.size();
}

}  // namespace tool
