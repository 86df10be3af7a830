#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

#include "commands/Commands.h"
#include "files/Failure.h"
#include "files/Input.h"
#include "files/Output.h"
#include "octets/Inspection.h"
#include "options/ReadingOptions.h"
#include "options/Suggestion.h"

namespace tool {

namespace {

constexpr char kInspectHelp[] =
    R"(Shows what every octet of a Fast Infoset document is.

Usage: tavrin inspect [OPTIONS] FILE

  FILE              the document; - is standard input

Options:
  --at OCTET        show the lines around an octet, and read no further. OCTET is a number as
                    messages have it, counted from 1, or an offset as the lines have it behind 0x
  --tables          show the tables of the vocabulary behind each document
  --color WHEN      auto, always or never: whether to use colours. auto, which is so without the
                    option, does on a terminal unless the environment has NO_COLOR
%options%
  -h, --help        print this help

Every line has an offset, octets in hexadecimal and a comment, which tells what the octets are, with
the clauses of ITU-T X.891 that say so; then the value, the entry of a table that an index names,
behind =, the entry that is added to a table, behind ->, and the path of the element:

    00000014: 40 31                    #       value (C.14, C.19, C.23): "1" -> ATTRIBUTE VALUE[1]

Octets of a long text or typed value follow on lines of their own. Typed values are decoded. Lines
that begin with "# !" tell what is wrong.

Of a document that is broken, the octets up to the break are shown so, then what was expected, and
then the other octets as they are. The work fails then. It also fails where the octets can be
followed, but the reader X891 refuses what they say, such as a character that XML does not allow.
All octets are shown as what they are then. So it fails where check does, but for XML text, which is
no Fast Infoset, and for what comes behind a string of more than 16M octets, of which the octets
alone are judged.

The entries of an external vocabulary are those of --vocabulary, where its URI is that of --uri.
Otherwise they are not known: indexes are shown as they are.

%limits%

The command assemble makes the same octets of the lines again.

Examples:
  tavrin inspect --tables in.fi
  tavrin inspect --at 1042 broken.fi
)";

std::string inspectHelpText() {
  std::string text = kInspectHelp;
  replaceLine(text, "%options%\n", std::string(kLimitOptionHelp) + kVocabularyOptionsHelp);
  replaceLine(text, "%limits%\n", kLimitsHelp + Limits::help());
  return text;
}

struct InspectOptions {
  std::string file;
  octets::InspectionOptions inspection;
  std::string colour = "auto";
};

bool usesColour(const std::string& when, const Output& output) {
  if (when != "auto") return when == "always";
  const char* const refusal = std::getenv("NO_COLOR");
  return output.isTerminal() && (refusal == nullptr || *refusal == '\0');
}

/// The offset of an octet, as --at has it.
/// @throws CLI::ValidationError for what is no number
std::uint64_t offsetOf(const std::string& text) {
  const bool isOffset = text.starts_with("0x") || text.starts_with("0X");
  const std::size_t begin = isOffset ? 2 : 0;
  std::uint64_t number = 0;
  const auto [end, error] =
      std::from_chars(text.data() + begin, text.data() + text.size(), number, isOffset ? 16 : 10);
  const bool isWhole = error == std::errc() && end == text.data() + text.size();
  if (!isWhole || (!isOffset && number == 0)) {
    throw CLI::ValidationError("--at: \"" + text + "\" is not the number of an octet");
  }
  return isOffset ? number : number - 1;
}

ExitStatus inspect(const InspectOptions& options) {
  Output output("-", false);
  Input input(options.file, output.isTerminal());
  output.open();
  octets::InspectionOptions how = options.inspection;
  how.isColoured = usesColour(options.colour, output);
  const auto write = [&](std::string_view text) {
    output.stream().write(text.data(), static_cast<std::streamsize>(text.size()));
    output.checkWritten();
  };
  const auto read = [&](char* octets, std::size_t size) {
    const auto count = input.stream().rdbuf()->sgetn(octets, static_cast<std::streamsize>(size));
    if (count == 0) input.checkRead();
    return static_cast<std::size_t>(count);
  };
  octets::Inspection inspection(how, read, write);
  const auto finding = inspection.run();
  output.commit();
  if (inspection.isTooShort()) {
    throw Failure::usage(options.file + " has " + std::to_string(inspection.octets()) + " octets");
  }
  if (finding) {
    throw Failure::document(placeIn(options.file, finding->octet), finding->message);
  }
  return Done;
}

}  // namespace

Command makeInspect(CLI::App& app) {
  CLI::App* command = addCommand(app, "inspect", inspectHelpText());
  const auto options = std::make_shared<InspectOptions>();
  command->add_option("FILE", options->file)->required();
  command->add_flag("--tables", options->inspection.hasTables);
  command
      ->add_option_function<std::string>(
          "--at", [options](const std::string& text) { options->inspection.near = offsetOf(text); })
      ->type_name("OCTET");
  command->add_option("--color", options->colour)
      ->type_name("WHEN")
      ->check(oneOf({"auto", "always", "never"}));
  addLimitOption(*command, options->inspection.limits);
  addVocabularyOptions(*command, options->inspection.vocabularies, VocabularyUse::Reading);
  return {command, [options] { return inspect(*options); }};
}

}  // namespace tool
