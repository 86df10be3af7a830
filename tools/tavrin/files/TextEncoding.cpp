#include "files/TextEncoding.h"

#include <algorithm>

namespace tool {

using namespace std::string_view_literals;

namespace {

constexpr std::string_view kDeclaration = "<?xml";
constexpr std::string_view kMark = "\xEF\xBB\xBF";

/// How each encoding begins that has units of more than an octet, and those that have a mark.
struct Beginning {
  std::string_view octets;
  const char* encoding;
  std::size_t unitSize;
  bool isBigEndian;
};

constexpr Beginning kBeginnings[] = {
    {"\0\0\xFE\xFF"sv, "UTF-32BE", 4, true}, {"\xFF\xFE\0\0"sv, "UTF-32LE", 4, false},
    {"\0\0\0<"sv, "UTF-32BE", 4, true},      {"<\0\0\0"sv, "UTF-32LE", 4, false},
    {"\xFE\xFF"sv, "UTF-16BE", 2, true},     {"\xFF\xFE"sv, "UTF-16LE", 2, false},
    {"\0<"sv, "UTF-16BE", 2, true},          {"<\0"sv, "UTF-16LE", 2, false},
};

std::string_view withoutMark(std::string_view beginning) {
  return beginning.substr(beginning.starts_with(kMark) ? kMark.size() : 0);
}

/// The encoding that an XML declaration names, or nothing (XML 1.0, production 80).
std::string_view declaredEncoding(std::string_view beginning) {
  constexpr std::string_view kName = "encoding";
  // A byte order mark of UTF-8 has less weight.
  beginning = withoutMark(beginning);
  if (!beginning.starts_with(kDeclaration)) return {};
  beginning = beginning.substr(0, beginning.find("?>"));
  const std::size_t name = beginning.find(kName);
  if (name == std::string_view::npos) return {};
  const std::size_t open = beginning.find_first_of("'\"", name + kName.size());
  if (open == std::string_view::npos) return {};
  const std::size_t close = beginning.find(beginning[open], open + 1);
  return close == std::string_view::npos ? std::string_view()
                                         : beginning.substr(open + 1, close - open - 1);
}

bool isUTF8(std::string_view name) {
  std::string upper(name);
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 0x20) : c; });
  return upper.empty() || upper == "UTF-8" || upper == "US-ASCII";
}

}  // namespace

TextEncoding TextEncoding::of(std::string_view beginning) {
  for (const auto& [octets, encoding, unitSize, isBigEndian] : kBeginnings) {
    if (beginning.starts_with(octets)) return {encoding, unitSize, isBigEndian};
  }
  const std::string_view declared = declaredEncoding(beginning);
  return {isUTF8(declared) ? std::string() : std::string(declared)};
}

bool isSurelyUTF8(std::string_view beginning) {
  constexpr std::string_view kFirst = "<\t\n\r ";
  const std::string_view text = withoutMark(beginning);
  // Units of several octets have zeros there, and in EBCDIC other octets are the markup.
  if (text.size() < 2 || kFirst.find(text[0]) == std::string_view::npos || text[1] == '\0') {
    return false;
  }
  const bool isDeclarationWhole =
      !text.starts_with(kDeclaration) || text.find("?>") != std::string_view::npos;
  return isDeclarationWhole && TextEncoding::of(beginning).name.empty();
}

}  // namespace tool
