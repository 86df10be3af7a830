#include "Literals.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "../../xml/Characters.h"
#include "../../xml/Declarations.h"

namespace Tavrin {

namespace {

void appendCharacter(std::string& text, std::uint32_t character) {
  const auto append = [&](std::uint32_t octet) { text += static_cast<char>(octet); };
  if (character < 0x80) return append(character);
  if (character < 0x800) {
    append(0xC0 | character >> 6U);
  } else {
    if (character < 0x10000) {
      append(0xE0 | character >> 12U);
    } else {
      append(0xF0 | character >> 18U);
      append(0x80 | (character >> 12U & 0x3FU));
    }
    append(0x80 | (character >> 6U & 0x3FU));
  }
  append(0x80 | (character & 0x3FU));
}

/// Appends the character that a reference stands for (production 66).
/// @param reference what is between "&#" and ";"
/// @return whether there is one
bool appendReferredCharacter(std::string& text, std::string_view reference) {
  const bool isHexadecimal = reference.starts_with('x');
  if (isHexadecimal) reference.remove_prefix(1);
  std::uint32_t character = 0;
  const auto [end, error] =
      std::from_chars(reference.begin(), reference.end(), character, isHexadecimal ? 16 : 10);
  if (error != std::errc() || end != reference.end() || character > 0x10FFFF) return false;
  const std::size_t before = text.size();
  appendCharacter(text, character);
  return xml::findInvalid(std::string_view(text).substr(before)) == xml::kAllValid;
}

/// Takes what is between "&" and ";".
template <typename TakeReference>
XML_Error takeReferred(std::string_view name, std::string& text, TakeReference takeReference) {
  if (name.starts_with('#')) {
    return appendReferredCharacter(text, name.substr(1)) ? XML_ERROR_NONE : XML_ERROR_BAD_CHAR_REF;
  }
  if (!xml::isName(name)) return XML_ERROR_INVALID_TOKEN;
  takeReference(name);
  return XML_ERROR_NONE;
}

/// Takes a literal apart.
/// @param takeCharacter gets each octet; line ends are line feeds (section 2.11)
/// @param takeReference gets the names of general entities
template <typename TakeCharacter, typename TakeReference>
XML_Error forEachPart(std::string_view literal, std::string& text, TakeCharacter takeCharacter,
                      TakeReference takeReference) {
  for (std::size_t i = 0; i < literal.size(); ++i) {
    const char c = literal[i];
    if (c == '\r') {
      if (i + 1 < literal.size() && literal[i + 1] == '\n') ++i;
      takeCharacter('\n');
    } else if (c != '&') {
      const XML_Error error = takeCharacter(c);
      if (error != XML_ERROR_NONE) return error;
    } else {
      const std::size_t end = literal.find(';', i);
      if (end == std::string_view::npos) return XML_ERROR_INVALID_TOKEN;
      const XML_Error error = takeReferred(literal.substr(i + 1, end - i - 1), text, takeReference);
      if (error != XML_ERROR_NONE) return error;
      i = end;
    }
  }
  return XML_ERROR_NONE;
}

/// Without spaces in front and at the end, and with one in place of several.
std::string collapsed(std::string_view text) {
  std::string result;
  for (const char c : text) {
    const bool isDropped = c == ' ' && (result.empty() || result.back() == ' ');
    if (!isDropped) result += c;
  }
  if (result.ends_with(' ')) result.pop_back();
  return result;
}

bool isReference(std::string_view text) {
  return xml::isName(text.substr(0, text.find(';'))) && text.find(';') != std::string_view::npos;
}

}  // namespace

LiteralValue replacementText(std::string_view literal) {
  const std::size_t percent = literal.find('%');
  if (percent != std::string_view::npos) {
    const bool refers = isReference(literal.substr(percent + 1));
    return {{}, refers ? XML_ERROR_PARAM_ENTITY_REF : XML_ERROR_INVALID_TOKEN};
  }
  LiteralValue value;
  std::string& text = value.text;
  value.error = forEachPart(
      literal, text,
      [&](char c) {
        text += c;
        return XML_ERROR_NONE;
      },
      [&](std::string_view name) { text.append(1, '&').append(name).append(1, ';'); });
  return value;
}

LiteralValue attributeDefault(std::string_view literal, bool isCDATA) {
  LiteralValue value;
  std::string& text = value.text;
  value.error = forEachPart(
      literal, text,
      [&](char c) {
        if (c == '<') return XML_ERROR_INVALID_TOKEN;
        text += c == '\t' || c == '\n' ? ' ' : c;
        return XML_ERROR_NONE;
      },
      [&](std::string_view name) {
        if (const char character = xml::predefinedCharacter(name)) text += character;
      });
  if (!isCDATA) text = collapsed(text);
  return value;
}

std::string publicIdentifier(std::string_view literal) {
  std::string text(literal);
  std::ranges::replace_if(
      text, [](char c) { return c == '\r' || c == '\n'; }, ' ');
  return collapsed(text);
}

}  // namespace Tavrin
