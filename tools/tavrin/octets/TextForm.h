#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "octets/Note.h"

namespace tool::octets {

/// Writes octets in the text form that Assembler reads: on each line an offset, octets, and a
/// comment that tells what they are.
class TextForm {
 public:
  /// Takes text, some lines at a time. What it throws leaves the operation that wrote a line.
  using Sink = std::function<void(std::string_view)>;

  /// A line holds no more octets.
  static constexpr std::size_t kMostOctets = 16;
  /// A line that tells what its octets are holds no more, so that such comments stand in a column.
  static constexpr std::size_t kMostAligned = 8;

  /// Is thrown when all lines are written that were asked for.
  struct Enough {};

  TextForm(Sink sink, bool isColoured) : sink_(std::move(sink)), isColoured_(isColoured) {}

  bool isColoured() const { return isColoured_; }
  /// Writes nothing but the lines near an octet, with a mark at its own.
  /// @param offset of the octet
  void keepNear(std::uint64_t offset) { near_ = offset; }
  /// Whether a line that begins with an octet may be written: nobody needs to compose others.
  bool isWanted(std::uint64_t offset) const;
  /// A text that is to stand behind the line with an octet.
  void remark(std::uint64_t offset, std::string text);
  void forgetRemark() { remark_.reset(); }
  /// Whether that text was written.
  bool hasRemarked() const { return hasRemarked_; }

  /// @param level how deep the comment is indented
  void line(std::uint64_t offset, std::string_view octets, std::size_t level, const Note& note);
  /// A line of octets that explain themselves.
  void line(std::uint64_t offset, std::string_view octets);
  /// A line that has a comment alone.
  void comment(std::size_t level, const Note& note);
  /// Hands on what is left.
  void flush();

 private:
  struct Remark {
    std::uint64_t offset;
    std::string text;
  };

  void beginLine(std::uint64_t offset, std::string_view octets);
  void endLine(std::uint64_t end);
  void writeLine(std::uint64_t end);
  void appendIndented(std::size_t level, const Note& note);

  Sink sink_;
  bool isColoured_;
  std::string line_;
  std::uint64_t lineBegin_ = 0;
  std::string text_;  // Lines that are not yet handed on.
  std::optional<Remark> remark_;
  bool hasRemarked_ = false;

  std::optional<std::uint64_t> near_;
  std::deque<std::string> before_;  // The last lines in front of that octet.
  std::size_t after_ = 0;           // How many lines behind it were written.
  bool hasPassed_ = false;
};

}  // namespace tool::octets
