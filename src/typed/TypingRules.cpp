#include <Tavrin/TypedContentFilter.h>

#include <algorithm>
#include <string_view>
#include <tuple>
#include <utility>

#include "TextForms.h"
#include "TypingPaths.h"

namespace Tavrin {

namespace {

struct Word {
  std::string text;
  std::size_t begin;  // Its first octet in the line.
};

/// The words of a line, without a comment.
std::vector<Word> wordsOf(std::string_view line) {
  std::vector<Word> words;
  for (std::size_t at = 0; at < line.size();) {
    if (isWhiteSpace(line[at])) {
      ++at;
      continue;
    }
    if (line[at] == '#') break;
    std::size_t end = at;
    while (end < line.size() && !isWhiteSpace(line[end])) ++end;
    words.push_back({std::string(line.substr(at, end - at)), at});
    at = end;
  }
  return words;
}

/// The column of an octet of a line, in characters from 1.
std::int32_t columnOf(std::string_view line, std::size_t octet) {
  const auto isFirstOfCharacter = [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80;
  };
  const std::string_view before = line.substr(0, octet);
  return static_cast<std::int32_t>(std::count_if(before.begin(), before.end(), isFirstOfCharacter) +
                                   1);
}

/// @param at where a failure is
void addLine(const std::string& line, TypingRules& rules, std::size_t& at) {
  const std::vector<Word> words = wordsOf(line);
  if (words.empty()) return;
  if (words.size() != 2) {
    at = words.size() > 2 ? words[2].begin : words[0].begin + words[0].text.size();
    throw SAXException("A rule is a path and a type");
  }
  const auto& [path, type] = std::tie(words[0], words[1]);
  at = type.begin;
  static_cast<void>(typeNamed(type.text));  // Throws where there is none.
  at = path.begin;
  rules.add(path.text, type.text);
}

}  // namespace

void TypingRules::add(const std::string& path, const std::string& type) {
  Rule rule{path, type};
  static_cast<void>(TypingPath(rule));  // Throws where it is none.
  rules_.push_back(std::move(rule));
}

TypingRules TypingRules::read(std::istream& stream) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  TypingRules rules;
  std::string line;
  for (std::int32_t number = 1; std::getline(stream, line); ++number) {
    if (number == 1 && line.starts_with(kByteOrderMark)) line.erase(0, kByteOrderMark.size());
    std::size_t at = 0;
    try {
      addLine(line, rules, at);
    } catch (const SAXException& failure) {
      throw SAXParseException(failure.getMessage(), number, columnOf(line, at));
    }
  }
  if (!stream.eof()) throw SAXException("The rules cannot be read");
  return rules;
}

}  // namespace Tavrin
