#include "DeclaredEncoding.h"

#include <string>

#include "SingleByteEncoding.h"

namespace Tavrin {

namespace {

constexpr std::string_view kSpace = " \t\r\n";

/// What follows a word, and nothing where it does not come first.
std::optional<std::string_view> behind(std::string_view word, std::string_view text) {
  if (!text.starts_with(word)) return std::nullopt;
  return text.substr(word.size());
}

std::string_view withoutSpace(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kSpace);
  return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

/// The encoding that a declaration names, or an empty one. Whether all else is right is expat's.
std::string_view encodingOf(std::string_view declaration) {
  constexpr std::string_view kName = "encoding";
  const std::size_t name = declaration.find(kName);
  if (name == std::string_view::npos) return {};
  auto rest = behind("=", withoutSpace(declaration.substr(name + kName.size())));
  if (!rest) return {};
  const std::string_view value = withoutSpace(*rest);
  if (value.empty() || (value[0] != '\'' && value[0] != '"')) return {};
  const std::size_t end = value.find(value[0], 1);
  return end == std::string_view::npos ? std::string_view() : value.substr(1, end - 1);
}

}  // namespace

std::optional<bool> declaresUTF8ByAnotherName(std::string_view start) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  constexpr std::string_view kDeclaration = "<?xml";
  if (start.size() < kByteOrderMark.size() && kByteOrderMark.starts_with(start)) return {};
  const std::string_view text = behind(kByteOrderMark, start).value_or(start);
  if (text.size() < kDeclaration.size() && kDeclaration.starts_with(text)) return {};
  if (!text.starts_with(kDeclaration)) return false;
  const std::size_t end = text.find("?>");
  if (end == std::string_view::npos) {
    if (start.size() < kLongestDeclaration) return {};
    return false;
  }
  return isUTF8(std::string(encodingOf(text.substr(0, end))).c_str());
}

}  // namespace Tavrin
