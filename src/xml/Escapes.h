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
    passed_[0].fill('\n');
    passed_[1].fill('\t');
    for (std::size_t octet = 0; octet < numbers_.size(); ++octet) {
      const bool isSafe = (octet >= 0x20 && octet < 0x80) || octet == '\t' || octet == '\n';
      numbers_[octet] = isSafe ? 0 : kSuspect;
    }
    for (const Escape& escape : escapes) {
      blocks_[count_].fill(escape.character);
      classes_.addFault(escape.character);
      allClasses_.addFault(escape.character);
      for (Block& passed : passed_) {
        if (passed[0] == escape.character) passed.fill(' ');
      }
      references_[++count_] = escape.reference;
      for (std::size_t i = 0; i < escape.reference.size(); ++i) {
        words_[count_][i] = escape.reference[i];
      }
      numbers_[static_cast<unsigned char>(escape.character)] = count_;
    }
  }

  /// How many of the characters that are escaped are no controls: the first ones.
  static constexpr std::size_t kPrintable = 3;

  /// Whether a text is valid and has nothing to escape, as far as that can be checked quickly.
  bool isVerbatim(std::string_view text) const;

  /// The position of the next character to escape, or the end.
  std::size_t find(std::string_view text, std::size_t begin) const;
  /// What is written for a character to escape.
  std::string_view reference(char c) const { return references_[numberOf(c)]; }

  /// Copies a text with its characters escaped. It is checked, searched and copied at once.
  /// @param end of the room, all of which may be overwritten
  /// @return the end of the copy; or null for a text that is not valid, or may have too little room
  char* copy(std::string_view text, char* to, const char* end) const;

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
  static constexpr std::size_t kWord = 8;  // No reference is longer.
  using Block = std::array<char, 16>;

  static constexpr std::uint8_t kSuspect = 0x80;  // Part of a character that may be invalid.

  char* copyLong(std::string_view text, char* to, const char* end) const;
  std::size_t findSuspect(std::string_view text, std::size_t begin) const;

  std::uint8_t lookUp(char c) const { return numbers_[static_cast<unsigned char>(c)]; }
  unsigned numberOf(char c) const { return lookUp(c) & ~unsigned{kSuspect}; }

  OctetClasses classes_;  // Faults: what is escaped, or may be invalid.
  OctetClasses allClasses_{OctetClasses::Characters::all};  // What is escaped or a control.
  std::array<Block, kMost> blocks_{};        // Each has one of the characters to escape, repeated.
  std::uint8_t count_ = 0;                   // How many characters are escaped.
  std::array<std::uint8_t, 256> numbers_{};  // Of the reference for an octet, kSuspect, or 0.
  std::array<Block, 2> passed_{};            // Controls that are not escaped, or a space.
  std::array<std::string_view, kMost + 1> references_{};    // By number.
  std::array<std::array<char, kWord>, kMost + 1> words_{};  // They, with zeros.
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
