#include "manual/ManualPage.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string_view>

#include "manual/HelpText.h"

namespace tool {

namespace {

using Kind = HelpBlock::Kind;

std::string upperCase(std::string text) {
  std::ranges::transform(text, text.begin(), [](char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
  });
  return text;
}

/// Text that troff shows as it is. A dash that begins a word is that of an option, and a long one
/// in the output would not be what a user has to type.
std::string escaped(std::string_view text) {
  std::string result;
  if (text.starts_with('.') || text.starts_with('\'')) result = "\\&";
  char before = ' ';
  for (const char c : text) {
    const bool isOption = c == '-' && (before == ' ' || before == '-' || before == '(');
    if (c == '\\') {
      result += "\\e";
    } else {
      if (isOption) result += '\\';
      result += c;
    }
    before = c;
  }
  return result;
}

/// Text to be typed: all of its dashes are what they look like.
std::string escapedLiteral(std::string_view text) {
  std::string result;
  if (text.starts_with('.') || text.starts_with('\'')) result = "\\&";
  for (const char c : text) {
    if (c == '-' || c == '\\') result += '\\';
    result += c == '\\' ? 'e' : c;
  }
  return result;
}

class Page {
 public:
  void line(const std::string& text) { text_ += text + '\n'; }
  void section(const std::string& name) { heading(".SH " + name); }

  /// @param macro that that begins a part under a heading
  void append(const std::vector<HelpBlock>& blocks, const std::string& macro) {
    for (const HelpBlock& block : blocks) append(block, macro);
    endLiteral();
  }

  std::string take() { return std::move(text_); }

 private:
  void append(const HelpBlock& block, const std::string& macro) {
    if (block.kind != Kind::Literal) endLiteral();
    switch (block.kind) {
      case Kind::Usage:
        beginParagraph();
        line(".B " + escapedLiteral(block.text));
        break;
      case Kind::Heading:
        this->heading(macro + " " + (macro == ".SH" ? upperCase(block.text) : block.text));
        break;
      case Kind::Row:
        isBelowHeading_ = false;
        line(".TP");
        line(".B " + escapedLiteral(block.term));
        line(escaped(block.text));
        break;
      case Kind::Paragraph:
        beginParagraph();
        line(escaped(block.text));
        break;
      case Kind::Literal:
        if (!isLiteral_) {
          beginParagraph();
          line(".nf");
        }
        isLiteral_ = true;
        line(escapedLiteral(block.text));
        break;
    }
  }

  void heading(const std::string& text) {
    line(text);
    isBelowHeading_ = true;
  }

  /// Below a heading, one begins by itself.
  void beginParagraph() {
    if (!isBelowHeading_) line(".PP");
    isBelowHeading_ = false;
  }

  void endLiteral() {
    if (isLiteral_) line(".fi");
    isLiteral_ = false;
  }

  std::string text_;
  bool isLiteral_ = false;
  bool isBelowHeading_ = false;
};

}  // namespace

std::string manualPage(const CLI::App& app, const std::string& version) {
  Page page;
  page.line(".\\\" Made of the texts that --help prints.");
  page.line(".TH TAVRIN 1 \"\" \"" + version + "\" \"User Commands\"");
  page.section("NAME");
  page.line("tavrin \\- reads, checks, compares and converts XML text and Fast Infoset");
  std::vector<HelpBlock> help = helpOf(app);
  page.section("SYNOPSIS");
  const auto usage = std::ranges::find(help, Kind::Usage, &HelpBlock::kind);
  page.append(std::vector<HelpBlock>{*usage}, ".SH");
  help.erase(usage);
  page.section("DESCRIPTION");
  page.append(help, ".SH");
  for (const CLI::App* command : app.get_subcommands({})) {
    if (command->get_group().empty()) continue;  // Not for users.
    const std::string title = "TAVRIN " + upperCase(command->get_name());
    page.section('"' + title + '"');
    page.append(helpOf(*command), ".SS");
    for (const CLI::App* below : command->get_subcommands({})) {
      page.section('"' + title + " " + upperCase(below->get_name()) + '"');
      page.append(helpOf(*below), ".SS");
    }
  }
  return page.take();
}

}  // namespace tool
