#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "commands/Commands.h"
#include "files/Listener.h"
#include "many/Work.h"
#include "measuring/Timing.h"
#include "options/ReadingOptions.h"
#include "printing/Quantities.h"
#include "printing/Text.h"
#include "reading/ReadThrough.h"

namespace tool {

namespace {

constexpr char kCheckHelp[] =
    R"(Tells whether documents are well-formed.

Usage: tavrin check [OPTIONS] FILE...

  FILE              a document, or a folder: all documents in it and below it; - is standard input

Options:
%work%
%timing%
%options%
  --from TYPE       the type of reader, instead of going by the first octets of FILE
  -h, --help        print this help

Every FILE is checked. A well-formed one is named on standard output:

  FILE: well-formed
  FILE: well-formed (3 documents)

--quiet leaves these lines out. Any other is named on standard error, with what is wrong:

  FILE:LINE:COLUMN: MESSAGE     in XML text
  FILE: octet NUMBER: MESSAGE   in Fast Infoset

A reference in an attribute value to an entity that is not read is no error. It is told of on
standard error, because no reader can tell it to a program; so is a version of XML other than 1.0,
which is read by the rules of 1.0:

  FILE:LINE:COLUMN: warning: MESSAGE

A document that begins with the octets E0 00, or with an XML declaration of the encoding finf, is
taken for Fast Infoset. It is well-formed if it could be written as XML text. Others like it may
follow it in FILE, and nothing else. NUMBER is the last octet of FILE that was read, counted from 1.

%folders%

%limits%

Example:
  tavrin check chapter-*.xml
)";

struct CheckOptions {
  std::vector<std::string> files;
  ReadingOptions reading;
  WorkOptions work;
  TimingOptions timing;
};

/// Returns the line about a file that is well-formed.
std::string lineAbout(const std::string& name, const ReadThrough& read) {
  const std::string number = " (" + std::to_string(read.documents) + " documents)";
  return escaped(name) + ": well-formed" + (read.documents > 1 ? number : "") + "\n";
}

ExitStatus checkFile(const std::string& name, const CheckOptions& options, Turn& turn) {
  const Stopwatch stopwatch;
  const ReadThrough read = readThrough(name, options.reading);
  const double seconds = stopwatch.seconds();
  if (!options.work.quiet) turn.print(lineAbout(name, read));
  turn.flush();
  if (options.timing.isAsked()) {
    say(escaped(name) + ": read " + std::to_string(read.octets) + " octets in " +
        milliseconds(seconds) + ", " + rate(read.octets, seconds) + "\n");
  }
  if (options.timing.repeat > 0) {
    measure(name, "reading", options.timing.repeat, read.octets,
            [&] { readThrough(name, options.reading); });
  }
  return Done;
}

ExitStatus check(const CheckOptions& options) {
  refuseToRepeat(options.timing, options.files);
  Documents documents;
  for (const std::string& file : options.files) documents.add(file);
  const auto work = [&](const Document& document, std::size_t, Turn& turn) {
    return checkFile(document.name, options, turn);
  };
  return std::max(workOnAll(documents.all(), options.work, work), documents.status());
}

}  // namespace

Command makeCheck(CLI::App& app) {
  CLI::App* command = addReadingCommand(app, "check", kCheckHelp);
  const auto options = std::make_shared<CheckOptions>();
  command->add_option("FILE", options->files)->required();
  addWorkOptions(*command, options->work);
  addTimingOptions(*command, options->timing);
  addReadingOptions(*command, options->reading);
  command->add_option("--from", options->reading.from)->type_name("TYPE");
  return {command, [options] { return check(*options); }};
}

}  // namespace tool
