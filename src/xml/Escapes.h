#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace Tavrin::xml {

/// Which characters are written as a reference, so that a text comes back as it was.
class Escapes {
 public:
  struct Escape {
    char character;
    std::string_view reference;
  };

  constexpr Escapes(std::initializer_list<Escape> escapes) {
    std::uint8_t number = 0;
    for (const Escape& escape : escapes) {
      characters_[number] = escape.character;
      references_[++number] = escape.reference;
      numbers_[static_cast<unsigned char>(escape.character)] = number;
    }
    for (std::size_t i = number; i < kMost; ++i) characters_[i] = characters_[0];
  }

  /// Appends a text with its references.
  /// @return kAllValid, or where the text goes wrong as findInvalid tells it; nothing was appended
  ///         then
  std::size_t append(std::string& out, std::string_view text) const;

 private:
  static constexpr std::size_t kMost = 6;

  unsigned numberOf(char c) const { return numbers_[static_cast<unsigned char>(c)]; }
  std::size_t findEscaped(std::string_view text, std::size_t begin) const;

  std::array<char, kMost> characters_{};     // Where there are fewer, the first one again.
  std::array<std::uint8_t, 256> numbers_{};  // 0 where a character stands for itself.
  std::array<std::string_view, kMost + 1> references_{};  // By number.
};

/// Of text between tags (XML 1.0, sections 2.4 and 2.11). A parser turns a carriage return that
/// stands for itself into a line feed.
inline constexpr Escapes kTextEscapes{
    {'<', "&lt;"}, {'>', "&gt;"}, {'&', "&amp;"}, {'\r', "&#xD;"}};

/// Of attribute values between apostrophes (section 3.3.3). A parser turns white space that stands
/// for itself into spaces.
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
/// character references in it and nothing else, so that a reference in the text remains one.
inline constexpr Escapes kEntityValueEscapes{
    {'&', "&#38;"}, {'%', "&#37;"}, {'"', "&#34;"}, {'\r', "&#13;"}};

}  // namespace Tavrin::xml
