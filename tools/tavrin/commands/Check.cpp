#include <Tavrin/TypedData.h>
#include <Tavrin/XMLReader.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "commands/Commands.h"
#include "files/EntityFiles.h"
#include "files/Input.h"
#include "files/Output.h"
#include "options/ReadingOptions.h"
#include "printing/Text.h"
#include "reading/Losses.h"
#include "reading/Reading.h"

namespace tool {

namespace {

constexpr char kHelp[] =
    R"(Tells whether documents are well-formed.

Usage: tavrin check [OPTIONS] FILE...

  FILE              a document; - is standard input

Options:
%options%
  --from TYPE       the type of reader, instead of going by the first octets of FILE
  -h, --help        print this help

Every FILE is checked. A well-formed one is named on standard output:

  FILE: well-formed
  FILE: well-formed (3 documents)

Any other is named on standard error, with what is wrong:

  FILE:LINE:COLUMN: MESSAGE     in XML text
  FILE: octet NUMBER: MESSAGE   in Fast Infoset

A reference in an attribute value to an entity that is not read is no error. It is told of on
standard error, because no reader can tell it to a program:

  FILE:LINE:COLUMN: warning: MESSAGE

A document that begins with the octets E0 00, or with an XML declaration of the encoding finf, is
taken for Fast Infoset. It is well-formed if it could be written as XML text. Others like it may
follow it in FILE, and nothing else. NUMBER is the last octet of FILE that was read, counted from 1.

%limits%

Example:
  tavrin check chapter-*.xml
)";

struct Options {
  std::vector<std::string> files;
  ReadingOptions reading;
};

/// Reads every document of a file. Returns how many there are.
/// @throws Failure when one of them is not well-formed
std::uint64_t readAll(const std::string& name, const ReadingOptions& options) {
  Input input(name);
  EntityFiles entities(name, options.entityAccess());
  while (const auto reader = nextReader(input, options)) {
    reader->setEntityResolver(entities.resolver());
    AnyAlgorithm anyAlgorithm;
    connect(*reader, anyAlgorithm);
    const Losses losses(*reader, input, warn);
    parse(*reader, input, &entities);
  }
  return input.documentNumber();
}

/// Returns the line about a file that is well-formed.
std::string lineAbout(const std::string& name, const ReadingOptions& options) {
  const std::uint64_t documents = readAll(name, options);
  const std::string number = " (" + std::to_string(documents) + " documents)";
  return escaped(name) + ": well-formed" + (documents > 1 ? number : "") + "\n";
}

ExitStatus check(const Options& options) {
  Output output("-", false);
  output.open();
  ExitStatus worst = Done;
  for (const std::string& file : options.files) {
    std::string line;
    try {
      line = lineAbout(file, options.reading);
    } catch (const Failure& failure) {
      // By now a progress bar is gone.
      failure.report();
      worst = std::max(worst, failure.status());
    }
    output.stream() << line;
    output.flush();  // Both streams may end in one place, where the order of the lines counts.
  }
  return worst;
}

}  // namespace

Command makeCheck(CLI::App& app) {
  CLI::App* command = addReadingCommand(app, "check", kHelp);
  const auto options = std::make_shared<Options>();
  command->add_option("FILE", options->files)->required();
  addReadingOptions(*command, options->reading);
  command->add_option("--from", options->reading.from)->type_name("TYPE");
  return {command, [options] { return check(*options); }};
}

}  // namespace tool
