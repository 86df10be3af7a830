#include <Tavrin/Factories.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLReader.h>
#include <Tavrin/XMLWriter.h>

#include <exception>
#include <memory>
#include <string>

#include "Commands.h"
#include "Input.h"
#include "Output.h"
#include "Reading.h"
#include "Relay.h"
#include "TypeChoice.h"

namespace tool {

namespace {

constexpr char kHelp[] =
    R"(Copies a document, in the same format or in another.

Usage: tavrin convert [OPTIONS] IN [OUT]

  IN                the document to read; - is standard input
  OUT               where to write it; - or nothing is standard output

Options:
  --indent          begin every tag, comment and instruction on a line of its own
  --no-declaration  write no XML declaration at the beginning; both are for XML text only
  --force           replace OUT if it exists
  --from TYPE       the type of reader, instead of going by the first octets of IN
  --to TYPE         the type of writer, instead of going by the name of OUT: .fi and .finf
                    mean Fast Infoset, any other name means XML text
  -h, --help        print this help

OUT appears when it is complete, and not at all if the work fails. Standard output may have
received a part of the document by then.

The copy has the elements, attributes, namespace declarations, text, comments, processing
instructions and CDATA sections, and the name and identifiers of the document type. In place
of internal entities stands their text. The declarations of the internal subset are not
copied.

External entities and the external subset are not read. If the content refers to an entity
that was not read, the work fails. In an attribute value such a reference is not noticed if
the document has an external subset or refers to parameter entities: no text stands for it.

Fast Infoset keeps no document type. A text becomes part of the CDATA section behind it. Typed
content stays what it is from Fast Infoset to Fast Infoset, and becomes text in XML text. If an
encoding algorithm is unknown, the work fails. The document type has no name when it comes from
Fast Infoset, and references to unexpanded entities are only named on standard error: in both
cases the copy in XML text is not the document.

A Fast Infoset document in which the 17th or a later different text of fewer than 7 octets
comes again is written all the same, but cannot be read back.

Examples:
  tavrin convert --indent in.xml out.xml
  tavrin convert in.xml out.fi
)";

struct Options {
  std::string in;
  std::string out = "-";
  std::string from;
  std::string to;
  bool indent = false;
  bool noDeclaration = false;
  bool force = false;
};

std::unique_ptr<Tavrin::XMLWriter> createWriter(const Options& options) {
  auto writer = Tavrin::XMLWriterFactory::createXMLWriter(
      options.to.empty() ? writerTypeFor(options.out) : options.to);
  if (options.indent) writer->setFeature(Tavrin::features::autoIndent, true);
  if (options.noDeclaration) writer->setFeature(Tavrin::features::xmlDeclaration, false);
  return writer;
}

/// Reads the document into the relay. Of all failures the one is thrown that led to the others.
void parseInto(Relay& relay, Tavrin::XMLReader& reader, Input& input) {
  try {
    parse(reader, input);
  } catch (...) {
    relay.check();
    throw;
  }
  relay.check();
}

ExitStatus convert(const Options& options) {
  Output output(options.out, options.force);
  const auto writer = createWriter(options);
  Input input(options.in, output.isTerminal());
  const auto reader = createReader(input, options.from);
  output.open();
  writer->setOutputStream(&output.stream());
  Relay relay(*writer, &output, input);
  relay.attachTo(*reader);
  parseInto(relay, *reader, input);
  output.commit();
  return Done;
}

}  // namespace

Command makeConvert(CLI::App& app) {
  CLI::App* command = addCommand(app, "convert", kHelp);
  const auto options = std::make_shared<Options>();
  command->add_option("IN", options->in)->required();
  command->add_option("OUT", options->out);
  command->add_flag("--indent", options->indent);
  command->add_flag("--no-declaration", options->noDeclaration);
  command->add_flag("--force", options->force);
  command->add_option("--from", options->from)->type_name("TYPE");
  command->add_option("--to", options->to)->type_name("TYPE");
  return {command, [options] { return convert(*options); }};
}

}  // namespace tool
