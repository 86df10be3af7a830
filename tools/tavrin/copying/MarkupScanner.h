#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tool {

/// Follows XML text that is well-formed, and tells what the next character would be a part of. Text
/// in UTF-8 may come in pieces, cut anywhere.
class MarkupScanner {
 public:
  enum class Place {
    Content,     ///< Text; only here and in the next two is a reference to a character one.
    Value,       ///< That of an attribute, written or declared, or of an entity.
    Section,     ///< CDATA.
    Name,        ///< Or anything else of a tag or declaration.
    Identifier,  ///< A public or system identifier.
    Comment,
    Instruction,
  };

  void take(std::string_view octets);
  Place place() const;

 private:
  enum class State {
    Text,     // Content, or what is outside of the root element.
    Opening,  // Behind "<", as long as it is not known what it opens.
    Tag,
    TagValue,
    Comment,
    Instruction,
    Section,
    Declaration,
    Literal,  // In a declaration.
    Subset,   // Between the declarations of the document type.
  };

  void takeOne(char c);
  void takeInOpening(char c);
  void takeInDeclaration(char c);
  void endWord();
  void endMarkup() { state_ = inSubset_ ? State::Subset : State::Text; }
  void endAt(std::string_view end, char c);

  State state_ = State::Text;
  bool inSubset_ = false;
  char quote_ = '\0';
  std::string token_;  // What has come behind "<", or the end of what has come.
  // Of the declaration.
  std::string kind_;
  std::string word_;
  std::size_t words_ = 0;
  bool isExternal_ = false;
};

}  // namespace tool
