#include <Tavrin/XMLReader.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>

#include "commands/Commands.h"
#include "files/EntityFiles.h"
#include "files/Failure.h"
#include "files/Input.h"
#include "files/Output.h"
#include "options/ReadingOptions.h"
#include "printing/EventPrinter.h"
#include "reading/Losses.h"
#include "reading/Reading.h"

namespace tool {

namespace {

constexpr char kEventsHelp[] =
    R"(Shows the events that a reader makes of a document.

Usage: tavrin events [OPTIONS] FILE

  FILE              the document to read; - is standard input

Options:
  --json            print JSON lines
  --declarations    also set the handlers of declarations
%options%
  --from TYPE       the type of reader, instead of going by the first octets of FILE
  -h, --help        print this help

Every line is one call of a handler, in document order. Arguments are JSON strings, in the
order of the call. An attribute is namespace name, local name, qualified name, type, value:

  startElement("urn:x", "a", "p:a", [{"", "id", "id", "CDATA", "1"}])

With --json every line is an object: "event" is the name of the call, the other members are
its arguments, and "attributes" is an array of objects (here broken to fit the page):

  {"event":"startElement","uri":"urn:x","localName":"a","qName":"p:a",
   "attributes":[{"uri":"","localName":"id","qName":"id","type":"CDATA","value":"1"}]}

Typed content, which Fast Infoset has, shows as an array of values, and octets as base64:

  doubles([0.1, -2, "nan"])
  bytes("AQID")
  object("", 8, "f81d4fae-7dec-11d0-a765-00a0c91e6bf6")

An attribute with a typed value has two more parts behind its value: the URI and the number of
the encoding algorithm, in JSON "algorithmURI" and "algorithmIndex". object is the content of an
algorithm that has no call of its own, such as UUIDs, as text; octets that of an algorithm that is
not known.

resolveEntity is a reference to an external entity or to the external subset. What is not read is
skipped: skippedEntity follows.

A reference in an attribute value to an entity that is not read is in no event. It is told of on
standard error.

Nothing else is left out, and all shows as it is: a character that would break the line, control the
terminal or turn the direction of text stands as \uXXXX, and an octet NN that is not part of valid
UTF-8, which the reader FI delivers as it is, as \uDCNN.

In Fast Infoset, documents may follow each other in one file. In front of each but the first, a
line tells its number and its first octet, in JSON {"document":2,"octet":72}:

  --- document 2: octet 72 ---

Where FILE comes through a pipe, events show as it comes.

With --declarations the reader Expat stops at a declaration with a system identifier: that
of a notation, of an external entity or of an unparsed entity.

%limits%

Example:
  tavrin events --json in.xml
)";

struct EventsOptions {
  std::string file;
  bool json = false;
  bool declarations = false;
  ReadingOptions reading;
};

void printAll(Input& input, const EventsOptions& options, std::ostream& out) {
  const auto write = [&out](const std::string& line) {
    out.write(line.data(), static_cast<std::streamsize>(line.size()));
    // There is no use in reading on. The output knows why.
    if (!out) throw std::runtime_error("events cannot be written");
  };
  EntityFiles entities(options.file, options.reading.entityAccess());
  EventPrinter printer(write,
                       options.json ? EventPrinter::Format::JSON : EventPrinter::Format::Text,
                       entities.resolver());
  while (const auto reader = nextReader(input, options.reading)) {
    if (input.documentNumber() > 1) {
      printer.printBorder(input.documentNumber(), input.documentStart() + 1);
    }
    attach(*reader, printer, options.declarations);
    const Losses losses(*reader, input, warn);
    parse(*reader, input, &entities);
  }
}

ExitStatus events(const EventsOptions& options) {
  Output output("-", false);
  output.open();
  Input input(options.file, output.isTerminal());
  // A failure to write shows at the next line.
  input.callBeforeWaiting([&output] { output.stream().flush(); });
  try {
    printAll(input, options, output.stream());
  } catch (...) {
    output.commit();  // What came before the failure is shown. A failure to write it comes first.
    throw;
  }
  output.commit();
  return Done;
}

}  // namespace

Command makeEvents(CLI::App& app) {
  CLI::App* command = addReadingCommand(app, "events", kEventsHelp);
  const auto options = std::make_shared<EventsOptions>();
  command->add_option("FILE", options->file)->required();
  command->add_flag("--json", options->json);
  command->add_flag("--declarations", options->declarations);
  addReadingOptions(*command, options->reading);
  command->add_option("--from", options->reading.from)->type_name("TYPE");
  return {command, [options] { return events(*options); }};
}

}  // namespace tool
