#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace tool::octets {

/// Reads the text form of octets, and makes the octets of it. The text comes in blocks, of any
/// size.
///
/// Each line has an offset that nobody reads, octets and a comment, all of them optional:
///
///     0000001a: 92 01 "text"   # characters
///
/// Octets are pairs of hexadecimal digits, or texts in quotes, which are taken as UTF-8.
class Assembler {
 public:
  /// Takes octets. What it throws leaves the operation that had them.
  using Sink = std::function<void(std::string_view)>;

  /// @param name of the text, for messages
  Assembler(std::string name, Sink sink) : name_(std::move(name)), sink_(std::move(sink)) {}

  /// @throws Failure with line and column, where the text has another form
  void read(std::string_view block);
  /// The text is complete.
  void end();

 private:
  enum class State {
    Begin,  // Of a line: digits may be an offset.
    Between,
    Digit,  // The second of a pair is to come.
    Comment,
    Text,
    Escape,
    EscapeDigits,
    Colour,
    ColourParameters,
  };

  void take(char c);
  void takeFirst(char c);
  void takeBetween(char c);
  void beginPair(char digit, std::uint64_t column);
  void takeSecondDigit(char c);
  void takeText(char c);
  void takeEscape(char c);
  void takeEscapeDigit(char c);
  void endEscape();
  void endFirst();
  void endLine();
  void put(char octet);
  void putCharacter(char32_t code);
  void checkNoHalf();
  [[noreturn]] void fail(const std::string& message) const { failAt(column_, message); }
  [[noreturn]] void failAt(std::uint64_t column, const std::string& message) const;

  std::string name_;
  Sink sink_;
  std::string octets_;
  State state_ = State::Begin;
  State outsideColour_ = State::Begin;
  bool hasBegun_ = false;
  std::string first_;  // Digits that begin a line.
  unsigned digit_ = 0;
  std::uint64_t line_ = 1;
  std::uint64_t column_ = 0;
  std::uint64_t digitColumn_ = 0;  // Where the first of a pair stands.
  std::uint64_t textColumn_ = 0;   // Where a text began, an escape, and a half of a pair.
  std::uint64_t escapeColumn_ = 0;
  std::uint64_t halfColumn_ = 0;
  std::size_t digitsLeft_ = 0;
  bool isCode_ = false;  // The escape is that of a character, not of an octet.
  char32_t code_ = 0;
  char32_t half_ = 0;  // The first half of a surrogate pair.
};

}  // namespace tool::octets
