#include <Tavrin/TypedContentFilter.h>

#include <string_view>
#include <utility>

#include "TextForms.h"
#include "TypingPaths.h"

namespace Tavrin {

namespace {

/// The words of a line, without a comment.
std::vector<std::string> wordsOf(std::string_view line) {
  std::vector<std::string> words;
  for (std::size_t at = 0; at < line.size();) {
    if (isWhiteSpace(line[at])) {
      ++at;
      continue;
    }
    if (line[at] == '#') break;
    std::size_t end = at;
    while (end < line.size() && !isWhiteSpace(line[end])) ++end;
    words.emplace_back(line.substr(at, end - at));
    at = end;
  }
  return words;
}

void addLine(const std::string& line, TypingRules& rules) {
  const std::vector<std::string> words = wordsOf(line);
  if (words.empty()) return;
  if (words.size() != 2) throw SAXException("A rule is a path and a type");
  rules.add(words[0], words[1]);
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
  for (std::size_t number = 1; std::getline(stream, line); ++number) {
    if (number == 1 && line.starts_with(kByteOrderMark)) line.erase(0, kByteOrderMark.size());
    try {
      addLine(line, rules);
    } catch (const SAXException& failure) {
      throw SAXException("Line " + std::to_string(number) + ": " + failure.getMessage());
    }
  }
  if (!stream.eof()) throw SAXException("The rules cannot be read");
  return rules;
}

}  // namespace Tavrin
