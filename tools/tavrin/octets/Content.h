#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tool::octets {

inline constexpr std::string_view kDigits = "0123456789abcdef";

/// Whether an octet of UTF-8 goes on with a character.
inline bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

/// A restricted alphabet: the characters by their codes (7.17.6).
class Alphabet {
 public:
  /// @param characters in order, in UTF-8
  explicit Alphabet(std::string_view characters);

  unsigned bits() const { return bits_; }  ///< Of a code.
  /// The character of a code, or nothing.
  std::string_view characterOf(std::uint64_t code) const;

 private:
  std::string characters_;
  std::vector<std::uint32_t> begins_;  // Where each character begins, and where the last one ends.
  unsigned bits_ = 1;
};

/// The octets of a literal, as the text or the values that they are. They come in pieces.
class Content {
 public:
  enum class Kind {
    UTF8,
    UTF16,
    Alphabet,
    Hexadecimal,
    Base64,
    Short,
    Int,
    Long,
    Boolean,
    Float,
    Double,
    UUID
  };

  explicit Content(Kind kind) : kind_(kind) {}
  /// @param alphabet outlives the object
  explicit Content(const Alphabet& alphabet) : kind_(Kind::Alphabet), alphabet_(&alphabet) {}
  /// The content of a built-in algorithm (clause 10).
  /// @param algorithm its number, counted from 1
  static Content ofAlgorithm(unsigned algorithm);

  /// Whether it is a text, to be quoted.
  bool isText() const { return kind_ <= Kind::Alphabet; }
  bool isBoolean() const { return kind_ == Kind::Boolean; }
  /// How many octets a value takes; 1 where that does not matter.
  std::size_t sizeOfValue() const;
  /// How many of the octets at hand make a piece, so that no value and no character is cut.
  std::size_t sizeOfPiece(std::string_view octets, bool isLast) const;
  /// Appends what a piece says.
  void append(std::string_view piece, bool isLast, std::string& text);

 private:
  void appendUTF16(std::string_view piece, std::string& text) const;
  void appendCharacters(std::string_view piece, std::string& text);
  void appendBooleans(std::string_view piece, bool isLast, std::string& text);

  Kind kind_;
  const Alphabet* alphabet_ = nullptr;
  // Bits of a code that is not complete, and whether the padding has been met.
  std::uint64_t pending_ = 0;
  unsigned pendingBits_ = 0;
  bool isOver_ = false;
  unsigned unusedBits_ = 0;  // Of the last octet of booleans.
  bool hasBegun_ = false;
};

}  // namespace tool::octets
