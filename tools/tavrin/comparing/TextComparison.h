#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "comparing/RecordReader.h"

namespace tool {

/// A part of a text around the place of a difference.
struct Excerpt {
  std::string text;
  std::size_t index = 0;        ///< Where in it the difference is.
  bool isContinuation = false;  ///< Octets in front of it are left out.
  bool isContinued = false;     ///< Octets behind it are left out.

  /// In quotes; of a long text only what is near the difference.
  std::string quoted() const;
  /// Likewise, as it is but for what would break the line.
  std::string plain() const;

 private:
  template <typename Append>
  std::string print(Append append) const;
};

/// The beginning of the text that comes next.
Excerpt beginningOf(TextPieces& text);

/// Where two whole texts begin to differ, in the first of them.
Excerpt differenceFrom(std::string_view text, std::string_view other);

/// Compares two texts, from the current records on, without keeping them.
class TextComparison {
 public:
  TextComparison(RecordReader& a, RecordReader& b) : a_(a), b_(b) {}

  /// Takes the texts as far as they are the same. That may be to the end of both, or of one that
  /// could not be read on: what would have followed is a matter of the failure.
  bool areSame();
  /// The parts at the difference.
  const Excerpt& inA() const { return excerptA_; }
  const Excerpt& inB() const { return excerptB_; }
  /// Takes what is left of both.
  void skip();

 private:
  void keep(std::string_view common);
  void keepNumbers(std::string_view common);
  bool takeNumbers(TextPieces& numbers, TextPieces& text);
  void makeText();
  Excerpt excerpt(TextPieces& pieces) const;

  TextPieces a_;
  TextPieces b_;
  std::string common_;   // The last octets that both have.
  std::string numbers_;  // The last numbers behind these, as a record has them.
  bool isContinuation_ = false;
  Excerpt excerptA_;
  Excerpt excerptB_;
};

}  // namespace tool
