#pragma once

#include <expat.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// Declarations that expat passes on as text. It has checked their syntax.

namespace Tavrin::text {

/// A declaration whose text comes in pieces.
class DeclarationText {
 public:
  bool isEmpty() const { return text_.empty(); }
  /// Appends a piece.
  /// @return whether the declaration is complete
  bool append(std::string_view piece);
  const std::string& text() const { return text_; }
  void clear() { *this = {}; }

 private:
  std::string text_;
  char quote_ = '\0';  // That of the open literal.
};

inline bool isLiteral(std::string_view token) {
  return token.starts_with('"') || token.starts_with('\'');
}

/// The tokens of a declaration: names and keywords, literals with their quotes, enumerations
/// without white space. After the last one, empty tokens follow.
class DeclarationTokens {
 public:
  explicit DeclarationTokens(std::string_view declaration);

  const std::vector<std::string>& all() const { return tokens_; }
  bool isAtEnd() const { return next_ == tokens_.size(); }
  bool isAtLiteral() const { return !isAtEnd() && isLiteral(tokens_[next_]); }
  std::string_view next() { return isAtEnd() ? std::string_view() : tokens_[next_++]; }
  /// Consumes a token, if it comes next.
  bool consume(std::string_view token) {
    const bool isNext = !isAtEnd() && tokens_[next_] == token;
    if (isNext) ++next_;
    return isNext;
  }
  /// The next token, a literal, without its quotes.
  std::string_view nextLiteral() {
    const std::string_view literal = next();
    return literal.size() < 2 ? std::string_view() : literal.substr(1, literal.size() - 2);
  }

 private:
  std::vector<std::string> tokens_;
  std::size_t next_ = 0;
};

/// The value of a literal, or its error.
struct LiteralValue {
  std::string text;
  XML_Error error = XML_ERROR_NONE;
};

/// The replacement text of an entity (XML 1.0, section 4.5): character references are replaced,
/// references to general entities stay.
/// @return the error XML_ERROR_PARAM_ENTITY_REF for a reference to a parameter entity: none is
///         allowed here in the internal subset
LiteralValue replacementText(std::string_view literal);

/// The default of an attribute, normalized (section 3.3.3). References to general entities other
/// than the predefined ones are dropped.
LiteralValue attributeDefault(std::string_view literal, bool isCDATA);

/// A public identifier, normalized (section 4.2.2).
std::string publicIdentifier(std::string_view literal);

}  // namespace Tavrin::text
