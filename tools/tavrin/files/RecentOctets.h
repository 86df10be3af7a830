#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "files/TextEncoding.h"

namespace tool {

/// The octets of an input that were read last, with the numbers of their lines, to show the place
/// of a failure in what cannot be read again. Older ones are only counted.
class RecentOctets {
 public:
  /// A line of text.
  struct Line {
    std::string text;              ///< In UTF-8; of a line that is too long, its end.
    std::uint64_t charactersLost;  ///< So many characters stand before it.
  };

  /// Puts octets behind the others.
  void append(std::string_view octets);
  /// Forgets all; what comes next has so many octets before it.
  void restartAt(std::uint64_t octet);

  /// The octets that are kept, and how many there were before them.
  std::string_view octets() const { return kept_; }
  std::uint64_t start() const { return start_; }
  /// A line of the input, by its number from 1. Lines end as in XML 1.0, section 2.11.
  /// @return nothing where it is not kept any more, or in an encoding that nobody knows here
  std::optional<Line> line(std::uint64_t number) const;

 private:
  struct Break {
    std::size_t begin;  // Of the line's end,
    std::size_t end;    // and of the next line.
  };

  void recogniseEncoding();
  char32_t unitAt(std::size_t position) const;
  std::optional<Break> nextBreak(std::size_t from) const;
  void drop(std::size_t size);

  std::string kept_;
  std::uint64_t start_ = 0;
  std::uint64_t linesLost_ = 0;       // Line ends before what is kept,
  std::uint64_t charactersLost_ = 0;  // and characters of the line that goes on there.
  bool beganInLine_ = false;          // That line does.
  TextEncoding encoding_;
};

}  // namespace tool
