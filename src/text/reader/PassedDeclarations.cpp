#include "PassedDeclarations.h"

#include <algorithm>

namespace Tavrin {

namespace {

constexpr std::string_view kSpace = " \t\r\n";

/// How many octets the first token of a text takes, which is not a blank.
std::size_t tokenLength(std::string_view text) {
  const char first = text.front();
  std::size_t end = 0;
  if (first == '"' || first == '\'') {
    end = text.find(first, 1);
    if (end != std::string_view::npos) ++end;
  } else if (first == '(') {
    end = text.find(')');
    if (end != std::string_view::npos) ++end;
  } else if (first == '%') {
    end = 1;
  } else {
    end = text.find_first_of(" \t\r\n\"'(", 1);
  }
  return std::min(end, text.size());
}

}  // namespace

bool DeclarationText::take(std::string_view piece) {
  text_ += piece;
  const bool isEnd = std::ranges::any_of(piece, [this](char c) {
    if (quote_ != '\0') {
      if (c == quote_) quote_ = '\0';
    } else if (c == '"' || c == '\'') {
      quote_ = c;
    }
    return quote_ == '\0' && c == '>';
  });
  if (isEnd) text_.pop_back();  // It is a token by itself.
  return isEnd;
}

std::vector<std::string> DeclarationText::tokens() const {
  std::vector<std::string> tokens;
  std::string_view rest = text_;
  for (;;) {
    const std::size_t start = rest.find_first_not_of(kSpace);
    if (start == std::string_view::npos) return tokens;
    rest.remove_prefix(start);
    std::string& token = tokens.emplace_back(rest.substr(0, tokenLength(rest)));
    rest.remove_prefix(token.size());
    if (token.front() == '(')
      std::erase_if(token, [](char c) { return kSpace.find(c) != std::string_view::npos; });
  }
}

}  // namespace Tavrin
