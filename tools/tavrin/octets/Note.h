#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tool::octets {

/// A string as a table holds it, or as much of it as a line has room for.
struct Excerpt {
  /// So many octets of a literal are shown on the line that begins it, and kept in a table.
  static constexpr std::size_t kMost = 64;

  std::string text;
  bool isWhole = true;

  /// That of a text in UTF-8.
  static Excerpt of(std::string_view text);
};

/// What stands behind the octets of a line, piece by piece.
class Note {
 public:
  explicit Note(bool isColoured) : isColoured_(isColoured) {}

  const std::string& text() const { return text_; }

  /// What the octets are, and the clauses that say so.
  Note& begin(std::string_view what, std::string_view clauses);
  /// Words in between.
  Note& add(std::string_view words);
  Note& add(std::string_view words, std::uint64_t number);
  /// A value: a text in quotes.
  Note& quote(const Excerpt& text);
  /// A value that is no text, such as numbers.
  Note& value(std::string_view words);
  /// The entry of a table that an index names.
  Note& entry(std::string_view table, std::uint64_t index);
  /// The place of a table at which an entry is added; 0 where it has none.
  Note& adds(std::string_view table, std::uint64_t index);
  /// The path of the element; nothing where it is empty.
  Note& path(std::string_view path);
  /// A line of its own that tells of a failure.
  Note& failure(std::string_view words);
  void clear() { text_.clear(); }

 private:
  void paint(const char* colour);

  bool isColoured_;
  std::string text_;
};

/// The colours of a terminal.
namespace colour {
inline constexpr char kOff[] = "\x1B[0m";
inline constexpr char kDim[] = "\x1B[2m";
inline constexpr char kWhat[] = "\x1B[1m";
inline constexpr char kValue[] = "\x1B[32m";
inline constexpr char kTable[] = "\x1B[36m";
inline constexpr char kPath[] = "\x1B[35m";
inline constexpr char kFailure[] = "\x1B[1;31m";
}  // namespace colour

}  // namespace tool::octets
