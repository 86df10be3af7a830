#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "AttributeTypes.h"
#include "XML10Position.h"

namespace Tavrin {

/// A declaration as a text, which comes in pieces. Its syntax has been checked.
class DeclarationText {
 public:
  bool isEmpty() const { return text_.empty(); }
  /// Appends a piece.
  /// @return whether the declaration is complete
  bool take(std::string_view piece);
  /// Names and key words, literals with their quotes, enumerations without blanks.
  std::vector<std::string> tokens() const;
  void clear() { *this = {}; }

 private:
  std::string text_;
  char quote_ = '\0';  // That of the open literal.
};

inline bool isLiteral(std::string_view token) {
  return token.starts_with('"') || token.starts_with('\'');
}

/// The tokens of a declaration, one after another; behind the last one they are empty.
class DeclarationTokens {
 public:
  explicit DeclarationTokens(const std::vector<std::string>& tokens) : tokens_(tokens) {}

  bool isAtEnd() const { return next_ == tokens_.size(); }
  std::string_view take() { return isAtEnd() ? std::string_view() : tokens_[next_++]; }
  /// Takes a token, if it comes next.
  bool takeIf(std::string_view token) {
    const bool isNext = !isAtEnd() && tokens_[next_] == token;
    if (isNext) ++next_;
    return isNext;
  }
  bool isAtLiteral() const { return !isAtEnd() && isLiteral(tokens_[next_]); }
  /// Takes a literal, without its quotes.
  std::string_view takeLiteral() {
    const std::string_view literal = take();
    return literal.size() < 2 ? std::string_view() : literal.substr(1, literal.size() - 2);
  }

 private:
  const std::vector<std::string>& tokens_;
  std::size_t next_ = 0;
};

/// What a document declares where expat no longer processes declarations, because a parameter
/// entity in front of them was not read (XML 1.0, section 5.1).
struct PassedDeclarations {
  DeclarationText text;         ///< The one that is coming.
  XML10Position position = {};  ///< Where it begins.
  bool isInInternalEntity = false;
  bool isIncomplete = false;       ///< A part of it is in an external entity.
  std::set<std::string> entities;  ///< By the names that SAX2 reports.
  AttributeTypes attributes;
};

}  // namespace Tavrin
