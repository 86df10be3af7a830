#include "copying/MarkupScanner.h"

namespace tool {

using namespace std::string_view_literals;

namespace {

bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

}  // namespace

MarkupScanner::Place MarkupScanner::place() const {
  switch (state_) {
    case State::Text:
      return Place::Content;
    case State::TagValue:
      return Place::Value;
    case State::Section:
      return Place::Section;
    case State::Comment:
      return Place::Comment;
    case State::Instruction:
      return Place::Instruction;
    case State::Literal:
      return kind_ == "ATTLIST" || (kind_ == "ENTITY" && !isExternal_) ? Place::Value
                                                                       : Place::Identifier;
    default:
      return Place::Name;
  }
}

void MarkupScanner::take(std::string_view octets) {
  while (!octets.empty()) {
    // Most octets are those of text and values.
    if (state_ == State::Text || state_ == State::TagValue) {
      const std::size_t end = octets.find(state_ == State::Text ? '<' : quote_);
      if (end == std::string_view::npos) return;
      octets.remove_prefix(end);
    }
    takeOne(octets.front());
    octets.remove_prefix(1);
  }
}

void MarkupScanner::takeOne(char c) {
  switch (state_) {
    case State::Text:
    case State::Subset:
      if (c == '<') {
        state_ = State::Opening;
        token_.clear();
      } else if (c == ']' && state_ == State::Subset) {
        inSubset_ = false;
        state_ = State::Declaration;
        kind_ = "DOCTYPE";
      }
      return;
    case State::Opening:
      return takeInOpening(c);
    case State::Tag:
      if (c == '>') state_ = State::Text;
      if (c != '"' && c != '\'') return;
      quote_ = c;
      state_ = State::TagValue;
      return;
    case State::TagValue:
      if (c == quote_) state_ = State::Tag;
      return;
    case State::Comment:
      return endAt("-->", c);
    case State::Instruction:
      return endAt("?>", c);
    case State::Section:
      return endAt("]]>", c);
    case State::Declaration:
      return takeInDeclaration(c);
    case State::Literal:
      if (c == quote_) state_ = State::Declaration;
      return;
  }
}

void MarkupScanner::takeInOpening(char c) {
  constexpr std::string_view kComment = "!--";
  constexpr std::string_view kSection = "![CDATA[";
  token_ += c;
  if (token_ == kComment) {
    state_ = State::Comment;
  } else if (token_ == kSection) {
    state_ = State::Section;
  } else if (token_ == "?") {
    state_ = State::Instruction;
  } else if (token_[0] != '!') {
    state_ = State::Tag;
  } else if (!kComment.starts_with(token_) && !kSection.starts_with(token_)) {
    state_ = State::Declaration;
    kind_.clear();
    word_ = c;
    words_ = 0;
    isExternal_ = false;
  }
  if (state_ != State::Opening) token_.clear();
}

void MarkupScanner::takeInDeclaration(char c) {
  if (isSpace(c)) return endWord();
  if (c == '"' || c == '\'') {
    endWord();
    quote_ = c;
    state_ = State::Literal;
  } else if (c == '[' && kind_ == "DOCTYPE") {
    inSubset_ = true;
    state_ = State::Subset;
  } else if (c == '>') {
    endMarkup();
  } else if (c != '%') {
    word_ += c;
  }
}

/// The third word of the declaration of an external entity is one of two; its name may be, too.
void MarkupScanner::endWord() {
  if (word_.empty()) return;
  if (words_ == 0) kind_ = word_;
  if (words_ == 2 && (word_ == "SYSTEM" || word_ == "PUBLIC")) isExternal_ = true;
  ++words_;
  word_.clear();
}

void MarkupScanner::endAt(std::string_view end, char c) {
  token_ += c;
  if (token_.size() > end.size()) token_.erase(0, 1);
  if (token_ == end) endMarkup();
}

}  // namespace tool
