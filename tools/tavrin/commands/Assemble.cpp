#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "commands/Commands.h"
#include "files/Input.h"
#include "files/Output.h"
#include "octets/Assembler.h"

namespace tool {

namespace {

constexpr char kAssembleHelp[] =
    R"(Makes the octets of a document of the text that inspect shows.

Usage: tavrin assemble [OPTIONS] [IN [OUT]]

  IN                the text; - or nothing is standard input
  OUT               where to write the octets; - or nothing is standard output

Options:
  --force           replace OUT if it exists
  -h, --help        print this help

Of what inspect shows of a file, whatever it is, assemble makes the octets of that file. The text
may be changed, or written by hand. On each line there are, and each may be missing:

  OFFSET:           hexadecimal digits and a colon; they may be wrong, nobody reads them
  OCTETS            pairs of hexadecimal digits, and texts in quotes, which become their UTF-8; in
                    texts, \" \\ \n \r \t \xNN and \uNNNN stand for a quote, a backslash, controls,
                    an octet and a character
  # COMMENT         anything, up to the end of the line

Lengths and indexes are octets like any others: whoever changes a text changes its length, too.

A text of another form is refused with its line and column, FILE:LINE:COLUMN. OUT appears when it is
complete, and not at all if the work fails.

Example:
  tavrin inspect in.fi > in.txt
  tavrin assemble in.txt out.fi
)";

struct AssembleOptions {
  std::string in = "-";
  std::string out = "-";
  bool force = false;
};

ExitStatus assemble(const AssembleOptions& options) {
  constexpr std::size_t kBlock = 65536;
  Output output(options.out, options.force);
  Input input(options.in, output.isTerminal());
  output.open();
  octets::Assembler assembler(options.in, [&](std::string_view octets) {
    output.stream().write(octets.data(), static_cast<std::streamsize>(octets.size()));
    output.checkWritten();
  });
  std::vector<char> block(kBlock);
  while (const std::streamsize count =
             input.stream().rdbuf()->sgetn(block.data(), static_cast<std::streamsize>(kBlock))) {
    assembler.read({block.data(), static_cast<std::size_t>(count)});
  }
  input.checkRead();
  assembler.end();
  output.commit();
  return Done;
}

}  // namespace

Command makeAssemble(CLI::App& app) {
  CLI::App* command = addCommand(app, "assemble", kAssembleHelp);
  const auto options = std::make_shared<AssembleOptions>();
  command->add_option("IN", options->in);
  command->add_option("OUT", options->out);
  command->add_flag("--force", options->force);
  return {command, [options] { return assemble(*options); }};
}

}  // namespace tool
