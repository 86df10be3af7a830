#include <Tavrin/XMLReader.h>

#include <memory>
#include <string>

#include "Commands.h"
#include "EventPrinter.h"
#include "Input.h"
#include "Output.h"
#include "Reading.h"

namespace tool {

namespace {

constexpr char kHelp[] =
    R"(Shows the events that a reader makes of a document.

Usage: tavrin events [OPTIONS] FILE

  FILE              the document to read; - is standard input

Options:
  --json            print JSON lines
  --declarations    also set the handlers of declarations
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

resolveEntity is a reference to an external entity or to the external subset. None is read, so
skippedEntity follows.

With --declarations the reader Expat stops at a declaration with a system identifier: that
of a notation, of an external entity or of an unparsed entity.

Example:
  tavrin events --json in.xml
)";

struct Options {
  std::string file;
  bool json = false;
  bool declarations = false;
  std::string from;
};

ExitStatus events(const Options& options) {
  Output output("-", false);
  output.open();
  Input input(options.file, output.isTerminal());
  const auto reader = createReader(input, options.from);
  EventPrinter printer(output.stream(),
                       options.json ? EventPrinter::Format::JSON : EventPrinter::Format::Text);
  printer.attachTo(*reader);
  if (options.declarations) printer.attachDeclarationsTo(*reader);
  try {
    parse(*reader, input);
  } catch (...) {
    output.commit();  // What came before the failure is shown. A failure to write it comes first.
    throw;
  }
  output.commit();
  return Done;
}

}  // namespace

Command makeEvents(CLI::App& app) {
  CLI::App* command = addCommand(app, "events", kHelp);
  const auto options = std::make_shared<Options>();
  command->add_option("FILE", options->file)->required();
  command->add_flag("--json", options->json);
  command->add_flag("--declarations", options->declarations);
  command->add_option("--from", options->from)->type_name("TYPE");
  return {command, [options] { return events(*options); }};
}

}  // namespace tool
