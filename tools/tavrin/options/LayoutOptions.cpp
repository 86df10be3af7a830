#include "options/LayoutOptions.h"

#include <Tavrin/Exceptions.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/TypedData.h>

#include <CLI/CLI.hpp>
#include <charconv>
#include <utility>

#include "writing/IndentingWriter.h"

namespace tool {

const char kLayoutOptionsHelp[] =
    R"(  --indent          begin every tag, comment, instruction and declaration on a line of its own,
                    two blanks deeper than what it stands in, in place of white space, and end
                    the last line
  --indent=N        N blanks deeper, at most 16
  --tabs            one tab deeper
)";

const char kLayoutHelp[] =
    R"(--indent and --tabs give XML text a new layout, whatever it had; done twice they change nothing any
more. An element that has text is left as it is, with all that is in it. So is one whose xml:space
is "preserve", but for elements in it that say "default". White space is text where an element has
nothing else, and in CDATA sections. Memory does not grow with the document: text that begins more
than 64 KiB behind the first child of its element does not change what stands in front of it.
)";

namespace {

constexpr unsigned kMostBlanks = 16;

/// Why a text is not a number of blanks; empty where it is one.
std::string whyNotBlanks(const std::string& text) {
  unsigned blanks = 0;
  const char* const end = text.data() + text.size();
  const auto [last, error] = std::from_chars(text.data(), end, blanks);
  const bool isNumber = error == std::errc() && last == end;
  return isNumber && blanks <= kMostBlanks
             ? ""
             : "\"" + text + "\" is not a number of blanks from 0 to " +
                   std::to_string(kMostBlanks);
}

}  // namespace

std::unique_ptr<Tavrin::XMLWriter> LayoutOptions::layOut(
    std::unique_ptr<Tavrin::XMLWriter> writer) const {
  if (!indent && !tabs) return writer;
  const std::size_t blanks = indent ? std::stoul(*indent) : 2;
  try {
    writer->setFeature(Tavrin::features::autoIndent, false);  // Only writers of text know it.
  } catch (const Tavrin::SAXNotRecognizedException&) {
    const bool isBinary = dynamic_cast<Tavrin::EncodingAlgorithmContentHandler*>(writer.get());
    if (!isBinary) throw;
    throw Tavrin::SAXException(std::string(tabs ? "--tabs" : "--indent") +
                               ": the copy is not XML text, and has no lines");
  }
  const std::string unit = tabs ? "\t" : std::string(blanks, ' ');
  return std::make_unique<IndentingWriter>(std::move(writer), unit);
}

void addLayoutOptions(CLI::App& command, LayoutOptions& options) {
  // A flag that may have a value; as an option it would take the name of the document for one.
  command.add_flag("--indent{2}", options.indent)
      ->disable_flag_override(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
      ->check(whyNotBlanks);
  command.add_flag("--tabs", options.tabs);
}

}  // namespace tool
