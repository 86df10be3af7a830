#include "DeclarationText.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "../../xml/Characters.h"
#include "../../xml/Declarations.h"

namespace Tavrin::text {

namespace {

constexpr std::string_view kSpace = " \t\r\n";

/// The length of the first token of a text that does not begin with white space.
std::size_t tokenLength(std::string_view text) {
  const char first = text.front();
  const auto through = [text](char last) {
    const std::size_t end = text.find(last, 1);
    return end == std::string_view::npos ? text.size() : end + 1;
  };
  if (first == '"' || first == '\'') return through(first);
  if (first == '(') return through(')');
  if (first == '%') return 1;
  return std::min(text.find_first_of(" \t\r\n\"'(", 1), text.size());
}

/// Appends the character of a reference (production 66).
/// @param reference what is between "&#" and ";"
/// @return whether there is such a character
bool appendReferredCharacter(std::string& text, std::string_view reference) {
  const bool isHexadecimal = reference.starts_with('x');
  if (isHexadecimal) reference.remove_prefix(1);
  std::uint32_t character = 0;
  const auto [end, error] =
      std::from_chars(reference.begin(), reference.end(), character, isHexadecimal ? 16 : 10);
  if (error != std::errc() || end != reference.end() || character > 0x10FFFF) return false;
  const std::size_t before = text.size();
  xml::appendUTF8(character, text);
  return xml::findInvalid(std::string_view(text).substr(before)) == xml::kAllValid;
}

/// Appends the expansion of a reference.
/// @param name      what is between "&" and ";"
/// @param isDefault as for expandLiteral
XML_Error expandReference(std::string_view name, bool isDefault, std::string& text) {
  if (name.starts_with('#')) {
    return appendReferredCharacter(text, name.substr(1)) ? XML_ERROR_NONE : XML_ERROR_BAD_CHAR_REF;
  }
  if (!xml::isName(name)) return XML_ERROR_INVALID_TOKEN;
  if (!isDefault) {
    text.append(1, '&').append(name).append(1, ';');
  } else if (const char character = xml::predefinedCharacter(name)) {
    text += character;
  }
  return XML_ERROR_NONE;
}

/// Expands the references of a literal. Line ends become line feeds (section 2.11).
/// @param isDefault whether it is the default of an attribute, and not the text of an entity
LiteralValue expandLiteral(std::string_view literal, bool isDefault) {
  LiteralValue value;
  for (std::size_t i = 0; i < literal.size() && value.error == XML_ERROR_NONE; ++i) {
    const char c = literal[i];
    if (c == '\r' && literal.substr(i + 1).starts_with('\n')) continue;
    if (c == '&') {
      const std::size_t end = literal.find(';', i);
      if (end == std::string_view::npos) return {{}, XML_ERROR_INVALID_TOKEN};
      value.error = expandReference(literal.substr(i + 1, end - i - 1), isDefault, value.text);
      i = end;
    } else if (!isDefault) {
      value.text += c == '\r' ? '\n' : c;
    } else if (c == '<') {
      value.error = XML_ERROR_INVALID_TOKEN;
    } else {
      value.text += c == '\t' || c == '\n' || c == '\r' ? ' ' : c;
    }
  }
  return value;
}

/// A text without spaces at its start and end, and with one instead of several.
std::string collapsed(std::string_view text) {
  std::string result;
  for (const char c : text) {
    const bool isDropped = c == ' ' && (result.empty() || result.back() == ' ');
    if (!isDropped) result += c;
  }
  if (result.ends_with(' ')) result.pop_back();
  return result;
}

}  // namespace

bool DeclarationText::append(std::string_view piece) {
  text_ += piece;
  const bool isEnd = std::ranges::any_of(piece, [this](char c) {
    if (quote_ != '\0') {
      if (c == quote_) quote_ = '\0';
    } else if (c == '"' || c == '\'') {
      quote_ = c;
    }
    return quote_ == '\0' && c == '>';
  });
  if (isEnd) text_.pop_back();  // expat passes the ">" on as a piece of its own.
  return isEnd;
}

DeclarationTokens::DeclarationTokens(std::string_view declaration) {
  for (;;) {
    const std::size_t start = declaration.find_first_not_of(kSpace);
    if (start == std::string_view::npos) return;
    declaration.remove_prefix(start);
    std::string& token = tokens_.emplace_back(declaration.substr(0, tokenLength(declaration)));
    declaration.remove_prefix(token.size());
    if (token.front() == '(')
      std::erase_if(token, [](char c) { return kSpace.find(c) != std::string_view::npos; });
  }
}

LiteralValue replacementText(std::string_view literal) {
  const std::size_t percent = literal.find('%');
  if (percent != std::string_view::npos) {
    const std::string_view rest = literal.substr(percent + 1);
    const std::size_t end = rest.find(';');
    const bool refers = end != std::string_view::npos && xml::isName(rest.substr(0, end));
    return {{}, refers ? XML_ERROR_PARAM_ENTITY_REF : XML_ERROR_INVALID_TOKEN};
  }
  return expandLiteral(literal, false);
}

LiteralValue attributeDefault(std::string_view literal, bool isCDATA) {
  LiteralValue value = expandLiteral(literal, true);
  if (!isCDATA) value.text = collapsed(value.text);
  return value;
}

std::string publicIdentifier(std::string_view literal) {
  std::string text(literal);
  std::ranges::replace_if(
      text, [](char c) { return c == '\r' || c == '\n'; }, ' ');
  return collapsed(text);
}

}  // namespace Tavrin::text
