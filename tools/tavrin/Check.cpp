#include <Tavrin/Identifiers.h>
#include <Tavrin/TypedData.h>
#include <Tavrin/XMLReader.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "EntityFiles.h"
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
  --entities        read external entities and the external subset, as far as they are files
  --from TYPE       the type of reader, instead of going by the first octets of FILE
  -h, --help        print this help

Every FILE is checked. A well-formed one is named on standard output:

  FILE: well-formed

Any other is named on standard error, with what is wrong:

  FILE:LINE:COLUMN: MESSAGE     in XML text
  FILE: octet NUMBER: MESSAGE   in Fast Infoset

A document that begins with the octets E0 00, or with an XML declaration of the encoding finf, is
taken for Fast Infoset. It is well-formed if it could be written as XML text, and what stands
behind its end is not looked at. NUMBER is the last octet that was read, counted from 1.

Example:
  tavrin check chapter-*.xml
)";

struct Options {
  std::vector<std::string> files;
  std::string from;
  bool entities = false;
};

ExitStatus checkFile(const std::string& name, const Options& options) {
  try {
    Input input(name);
    EntityFiles entities(name);
    const auto reader = createReader(input, options.from);
    if (options.entities) reader->setEntityResolver(&entities);
    // Takes the content of unknown algorithms, which readers may refuse where nobody does.
    Tavrin::EncodingAlgorithmContentHandler anyAlgorithm;
    setPropertyIfKnown(*reader, Tavrin::properties::encodingAlgorithmContentHandler, &anyAlgorithm);
    parse(*reader, input, &entities);
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
    const ExitStatus status = checkFile(file, options);
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
  command->add_flag("--entities", options->entities);
  command->add_option("--from", options->from)->type_name("TYPE");
  return {command, [options] { return check(*options); }};
}

}  // namespace tool
