#include "manual/HelpText.h"

#include <CLI/CLI.hpp>
#include <algorithm>

namespace tool {

namespace {

using Kind = HelpBlock::Kind;

constexpr std::size_t kIndentation = 2;
/// What stands further to the right continues the text of a row.
constexpr std::size_t kContinuation = 5;

std::size_t indentationOf(std::string_view line) {
  return std::min(line.find_first_not_of(' '), line.size());
}

std::vector<std::string_view> linesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

void appendLine(std::string& text, std::string_view line) {
  if (!text.empty()) text += ' ';
  text += line.substr(indentationOf(line));
}

class Parser {
 public:
  explicit Parser(std::string_view help) : lines_(linesOf(help)) {}

  std::vector<HelpBlock> parse() {
    while (next_ < lines_.size()) {
      const std::string_view line = lines_[next_];
      if (line.empty()) {
        ++next_;
      } else if (indentationOf(line) > 0) {
        parseIndented();
      } else if (line.starts_with(kUsage)) {
        blocks_.push_back({Kind::Usage, "", std::string(line.substr(kUsage.size()))});
        ++next_;
      } else if (line.back() == ':' && indentationAt(next_ + 1) > 0) {
        blocks_.push_back({Kind::Heading, "", std::string(line.substr(0, line.size() - 1))});
        ++next_;
      } else {
        parseParagraph();
      }
    }
    return std::move(blocks_);
  }

 private:
  static constexpr std::string_view kUsage = "Usage: ";

  /// That of a line; 0 for one that is empty or not there.
  std::size_t indentationAt(std::size_t index) const {
    return index < lines_.size() ? indentationOf(lines_[index]) : 0;
  }
  bool continues(std::size_t index) const { return indentationAt(index) >= kContinuation; }

  void parseParagraph() {
    HelpBlock block{Kind::Paragraph, "", ""};
    for (; next_ < lines_.size() && !lines_[next_].empty() && indentationAt(next_) == 0; ++next_) {
      appendLine(block.text, lines_[next_]);
    }
    blocks_.push_back(std::move(block));
  }

  void parseIndented() {
    const std::string_view line = lines_[next_];
    const std::size_t start = indentationOf(line);
    const std::size_t gap = line.find("  ", start);
    const bool isRow =
        start == kIndentation && (gap != std::string_view::npos || continues(next_ + 1));
    ++next_;
    if (!isRow) {
      blocks_.push_back({Kind::Literal, "", std::string(line)});
      return;
    }
    HelpBlock row{Kind::Row, std::string(line.substr(start, gap - start)), ""};
    if (gap != std::string_view::npos) appendLine(row.text, line.substr(gap));
    for (; continues(next_); ++next_) appendLine(row.text, lines_[next_]);
    blocks_.push_back(std::move(row));
  }

  std::vector<std::string_view> lines_;
  std::size_t next_ = 0;
  std::vector<HelpBlock> blocks_;
};

/// Whether the term of a row names an option, maybe beside others and with a value.
bool names(std::string_view term, std::string_view option) {
  for (std::size_t at = term.find(option); at != std::string_view::npos;
       at = term.find(option, at + 1)) {
    const std::size_t end = at + option.size();
    const bool begins = at == 0 || term[at - 1] == ' ';
    const bool ends =
        end == term.size() || std::string_view(" ,=[").find(term[end]) != std::string_view::npos;
    if (begins && ends) return true;
  }
  return false;
}

}  // namespace

std::vector<HelpBlock> helpOf(const CLI::App& command) {
  return Parser(command.get_formatter()->make_help(&command, "", CLI::AppFormatMode::Normal))
      .parse();
}

std::string summaryOf(const std::vector<HelpBlock>& help, std::string_view option) {
  for (const HelpBlock& block : help) {
    if (block.kind != Kind::Row || !names(block.term, option)) continue;
    std::size_t end = std::min(block.text.find_first_of(":;"), block.text.find(". "));
    if (end == std::string::npos && block.text.ends_with('.')) end = block.text.size() - 1;
    return block.text.substr(0, end);
  }
  return {};
}

}  // namespace tool
