#include <Tavrin/XMLReader.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "Input.h"
#include "Output.h"
#include "Reading.h"
#include "Text.h"

namespace tool {

namespace {

constexpr char kHelp[] =
    R"(Tells whether documents are well-formed.

Usage: tavrin check [OPTIONS] FILE...

  FILE              a document; - is standard input

Options:
  --from TYPE       the type of reader, instead of going by the first octets of FILE
  -h, --help        print this help

Every FILE is checked. A well-formed one is named on standard output:

  FILE: well-formed

Any other is named on standard error, with what is wrong:

  FILE:LINE:COLUMN: MESSAGE     in XML text
  FILE: octet NUMBER: MESSAGE   in Fast Infoset

A document that begins with the octets E0 00, or with an XML declaration of the encoding finf, is
taken for Fast Infoset. NUMBER is the last octet that was read, counted from 1.

External entities and the external subset are not read.

Example:
  tavrin check chapter-*.xml
)";

struct Options {
  std::vector<std::string> files;
  std::string from;
};

ExitStatus checkFile(const std::string& name, const std::string& from) {
  try {
    Input input(name);
    parse(*createReader(input, from), input);
    return Done;
  } catch (const Failure& failure) {
    // By now a progress bar is gone.
    failure.report();
    return failure.status();
  }
}

ExitStatus check(const Options& options) {
  Output output("-", false);
  output.open();
  ExitStatus worst = Done;
  for (const std::string& file : options.files) {
    const ExitStatus status = checkFile(file, options.from);
    worst = std::max(worst, status);
    if (status != Done) continue;
    output.stream() << oneLine(file) << ": well-formed\n";
    output.flush();  // Both streams may end in one place, where the order of the lines counts.
  }
  return worst;
}

}  // namespace

Command makeCheck(CLI::App& app) {
  CLI::App* command = addCommand(app, "check", kHelp);
  const auto options = std::make_shared<Options>();
  command->add_option("FILE", options->files)->required();
  command->add_option("--from", options->from)->type_name("TYPE");
  return {command, [options] { return check(*options); }};
}

}  // namespace tool
