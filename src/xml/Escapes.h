#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>

#include "Characters.h"
#include "simd/OctetClasses.h"

namespace Tavrin::xml {

/// Which characters are written as a reference, so that a parser reads the text unchanged.
class Escapes {
 public:
  struct Escape {
    char character;
    std::string_view reference;
  };

  constexpr Escapes(std::initializer_list<Escape> escapes) {
    for (std::size_t octet = 0; octet < numbers_.size(); ++octet) {
      const bool isSafe = (octet >= 0x20 && octet < 0x80) || octet == '\t' || octet == '\n';
      numbers_[octet] = isSafe ? 0 : kSuspect;
    }
    for (const Escape& escape : escapes) {
      blocks_[count_].fill(escape.character);
      if (escape.character >= 0x20) printable_ = count_ + 1;
      classes_.addFault(escape.character);
      references_[++count_] = escape.reference;
      numbers_[static_cast<unsigned char>(escape.character)] = count_;
    }
  }

  /// Whether a text is valid and has nothing to escape, as far as that can be checked quickly.
  bool isVerbatim(std::string_view text) const;

  /// The position of the next character to escape, or the end.
  std::size_t find(std::string_view text, std::size_t begin) const;
  /// What is written for a character to escape.
  std::string_view reference(char c) const { return references_[numberOf(c)]; }

  /// Appends a text with its characters escaped.
  /// @param out has the operator `+=` of a string
  /// @return kAllValid; or the position that findInvalid returns, where a part of the text may have
  ///         been appended
  template <typename Out>
  std::size_t append(Out& out, std::string_view text) const {
    bool isValid = false;  // Whether all the rest is.
    for (std::size_t begin = 0;;) {
      const std::size_t end = isValid ? find(text, begin) : findSuspect(text, begin);
      out += text.substr(begin, end - begin);
      if (end == text.size()) return kAllValid;
      begin = end;
      if (isValid || numberOf(text[end]) != 0) {
        out += reference(text[end]);
        ++begin;
        continue;
      }
      const std::size_t invalid = findInvalid(text.substr(end));
      if (invalid != kAllValid) return end + invalid;
      isValid = true;
    }
  }

 private:
  static constexpr std::size_t kMost = 6;
  using Block = std::array<char, 16>;

  static constexpr std::uint8_t kSuspect = 0x80;  // Part of a character that may be invalid.

  std::size_t findSuspect(std::string_view text, std::size_t begin) const;

  std::uint8_t lookUp(char c) const { return numbers_[static_cast<unsigned char>(c)]; }
  unsigned numberOf(char c) const { return lookUp(c) & ~unsigned{kSuspect}; }

  OctetClasses classes_;                     // Faults: what is escaped, or may be invalid.
  std::array<Block, kMost> blocks_{};        // Each has one of the characters to escape, repeated.
  std::uint8_t count_ = 0;                   // How many characters are escaped.
  std::uint8_t printable_ = 0;               // How many of them, the first ones, are not controls.
  std::array<std::uint8_t, 256> numbers_{};  // Of the reference for an octet, kSuspect, or 0.
  std::array<std::string_view, kMost + 1> references_{};  // By number.
};

/// Of text between tags (XML 1.0, sections 2.4 and 2.11). A parser turns a carriage return that is
/// not a reference into a line feed.
inline constexpr Escapes kTextEscapes{
    {'<', "&lt;"}, {'>', "&gt;"}, {'&', "&amp;"}, {'\r', "&#xD;"}};

/// Of attribute values between apostrophes (section 3.3.3). A parser turns white space that is not
/// a reference into spaces.
inline constexpr Escapes kApostropheEscapes{{'<', "&lt;"},   {'&', "&amp;"},  {'\'', "&apos;"},
                                            {'\t', "&#x9;"}, {'\n', "&#xA;"}, {'\r', "&#xD;"}};

/// Of attribute values between quotation marks.
inline constexpr Escapes kQuotationMarkEscapes{{'<', "&lt;"},   {'&', "&amp;"},  {'"', "&quot;"},
                                               {'\t', "&#x9;"}, {'\n', "&#xA;"}, {'\r', "&#xD;"}};

/// Of attribute values between quotes of either kind.
constexpr const Escapes& attributeEscapes(char quote) {
  return quote == '"' ? kQuotationMarkEscapes : kApostropheEscapes;
}

/// Of the replacement text of entities between quotation marks (section 4.5). A parser expands
/// nothing but character references there, so a reference in the text remains one.
inline constexpr Escapes kEntityValueEscapes{
    {'&', "&#38;"}, {'%', "&#37;"}, {'"', "&#34;"}, {'\r', "&#13;"}};

}  // namespace Tavrin::xml
